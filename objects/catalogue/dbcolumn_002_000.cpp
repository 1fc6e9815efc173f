#include "objects/catalogue/dbcolumn_002_000.h"

#include <array>
#include <cstddef>
#include <string_view>

#include "objects/base/smlog_002_000.h"
#include "objects/catalogue/dbforeignkey_002_000.h"
#include "objects/catalogue/dbindex_002_000.h"
#include "objects/catalogue/dbtable_002_000.h"
#include "core/qvutils/base/qvuuid.h"
#include "core/qvutils/params/ioparams.h"
#include "core/qvutils/text/qvstringformat.h"

namespace schema_002_000 {

namespace {

const SMLogWords WORDS = {"qvdbobjects", "DBColumn"};

struct FixedId {
    EDB_TYPE type;
    std::string_view id;
};

constexpr FixedId FIXED_IDS[] = {
#define SM_DB_KIND(NUMBER, NAME, FIXED_ID) {EDB_TYPE::NAME, FIXED_ID},
#include "objects/catalogue/edbtype_list.inc"
};

constexpr std::size_t NUMBERS = static_cast<std::size_t>(std::end(FIXED_IDS)[-1].type) + 1;

/** By number; empty for a kind without a fixed id. */
std::array<QvULString, NUMBERS> MakeFixedIds() {
    std::array<QvULString, NUMBERS> ids;
    for (const FixedId& row : FIXED_IDS) ids[static_cast<std::size_t>(row.type)] = QvULString::Immortal(row.id);
    return ids;
}

const QvULString& FixedIdOf(EDB_TYPE type) {
    static const auto& ids = *new const auto(MakeFixedIds());  // never destroyed: others read it at their own end
    const auto number = static_cast<std::size_t>(type);
    return ids[number < ids.size() ? number : 0];
}

I18NString TextOf(int number) {
    I18NString text;
    QvStringFormat::GetInstance()->_num2string(number, text);
    return text;
}

I18NString TextOf(bool flag) {
    return flag ? "true" : "false";
}

}  // namespace

void DBColumn::SetId(const QvULString& id) {
    for (const auto& [table, times] : m_listings.tables) table->NoteIdChange(*this, id);
    m_id = id;
}

QvULString DBColumn::GetWarehouseItemId() const {
    return IsExternalWarehouseItemId() ? m_warehouseItemId : FixedIdOf(getType());
}

QvULString DBColumn::RegenerateIds(std::map<QvULString, QvULString>& idMap) {
    if (const auto known = idMap.find(GetWarehouseItemId()); known != idMap.end()) SetWarehouseItemId(known->second);
    const QvULString newId = QvUUIDGen::Create().GetAsQvULString();
    idMap.emplace(GetId(), newId);
    SetId(newId);
    return newId;
}

void DBColumn::setInFKey(DBForeignKey* key) {
    if (key) m_fkeys.emplace(I18NString(key->GetId()), key);
}

void DBColumn::unsetInFKey(DBForeignKey* key) {
    if (key) m_fkeys.erase(key->GetId());
}

void DBColumn::setInIndex(DBIndex* index) {
    if (index) m_indexes.emplace(I18NString(index->GetId()), index);
}

void DBColumn::unsetInIndex(DBIndex* index) {
    if (index) m_indexes.erase(index->GetId());
}

QvSmartPtr<IOParameter> DBColumn::GetByName(const QvULString& key) const {
    struct Field {
        std::string_view name;
        I18NString (*text)(const DBColumn&);
    };
    static constexpr Field FIELDS[] = {
        {"id", [](const DBColumn& column) -> I18NString { return column.m_id; }},
        {"wh_id", [](const DBColumn& column) -> I18NString { return column.m_warehouseItemId; }},
        {"name", [](const DBColumn& column) { return column.GetName(); }},
        {"type", [](const DBColumn& column) { return DT2String(column.getType()); }},
        {"dbtype", [](const DBColumn& column) { return TklDBTypes::get()->getName(column.m_dataType); }},
        {"size", [](const DBColumn& column) { return TextOf(column.m_size); }},
        {"precision", [](const DBColumn& column) { return TextOf(column.m_precision); }},
        {"scale", [](const DBColumn& column) { return TextOf(column.m_scale); }},
        {"null", [](const DBColumn& column) { return TextOf(column.m_allowNulls); }},
        {"dbName", [](const DBColumn& column) { return column.GetDBName(); }},
        {"schema", [](const DBColumn& column) { return column.GetSchema(); }},
    };
    try {
        for (const Field& field : FIELDS)
            if (field.name == key.utf8()) return new IOQvStringParam(field.text(*this));
    } catch (const std::exception& failure) {
        throw IOParamException(failure.what());
    }
    return nullptr;
}

I18NString DBColumn::print() const {
    return "DBColumn::" + GetName() + ", type=" + TklDBTypes::get()->getName(m_dataType) + ", len=" + TextOf(m_size) +
           ", null=" + TextOf(m_allowNulls) + "\n" + "DBColumn::DBObject.properties:\n" + DBObject::print();
}

bool DBColumn::operator==(const DBColumn& other) const {
    const bool isTime = m_dataType == SqlColType::date || m_dataType == SqlColType::time || m_dataType == SqlColType::timestamp;
    if (GetName() != other.GetName() || (!isTime && m_dataType != other.m_dataType) || m_allowNulls != other.m_allowNulls) return false;
    switch (m_dataType) {
    case SqlColType::decimal: return m_scale == other.m_scale && m_precision == other.m_precision;
    case SqlColType::char_:
    case SqlColType::varchar:
    case SqlColType::nchar:
    case SqlColType::nvarchar: return m_precision == other.m_precision;
    default: return true;
    }
}

bool DBColumn::validate(const DBColumn* other) const {
    if (!other) return false;
    bool valid = true;
    const auto report = [&valid](bool differs, const char* message) {
        if (!differs) return;
        SMLog(SM_MISUSE, WORDS, "validate", message);
        valid = false;
    };
    report(GetName() != other->GetName(), "Column Name doesn't match");
    report(m_dataType != other->m_dataType, "Column data type doesn't match");
    report(m_size != other->m_size, "Column size doesn't match");
    report(m_scale != other->m_scale, "Column scale doesn't match");
    report(m_allowNulls && !other->m_allowNulls, "Column allows nulls but comparison column doesn't");
    report(!m_allowNulls && other->m_allowNulls, "Column doesn't allow nulls but comparison column does");
    return valid;
}

}  // namespace schema_002_000
