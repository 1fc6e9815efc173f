#include "tests/support/contexts.h"

#include <gtest/gtest.h>

#include "core/repository/catalogue.h"

namespace smtest {

namespace {

std::string Text(const IOParameter& hash, const QvULString& key) {
    return hash.HasKey(key) ? std::string(hash.GetByName(key)->GetQvStringValue().utf8()) : std::string();
}

qv::CellKind KindOf(const IOParameter& value) {
    switch (value.GetKind()) {
    case IOParameter::kindLong: return qv::CellKind::number;
    case IOParameter::kindBool: return qv::CellKind::flag;
    case IOParameter::kindDate: return qv::CellKind::date;
    default: return qv::CellKind::text;
    }
}

QvSmartPtr<IOParameter> NullOf(qv::CellKind kind) {
    switch (kind) {
    case qv::CellKind::number: return IOLongParam::Null();
    case qv::CellKind::flag: return IOBoolParam::Null();
    case qv::CellKind::date: return new QvDateParam();
    default: return IOQvStringParam::Null();
    }
}

QvULString Key(std::string_view text) {
    return QvULString(text);
}

/** The stored row of a table, by row key. */
QvSmartPtr<IOParameter> ByKey(const qv::CatalogueTable& table, const IOParameter& stored) {
    QvSmartPtr<IOParameter> row = new IOHashParam;
    const auto take = [&](std::string_view column, std::string_view key, qv::CellKind readAs) {
        if (column.empty() || !stored.HasKey(Key(column))) {
            row->insertOrReplace(Key(key), NullOf(readAs));
            return;
        }
        const QvSmartPtr<IOParameter> value = stored.GetByName(Key(column));
        if (KindOf(*value) == readAs)
            row->insertOrReplace(Key(key), value);
        else  // what readers expect as text
            row->insertOrReplace(Key(key), new IOQvStringParam(I18NString(std::to_string(value->GetLongValue()).c_str())));
    };
    take(table.id, "id", qv::CellKind::text);
    take(table.version, "version", qv::CellKind::number);
    for (const qv::CatalogueColumn& column : table.columns)
        if (!column.key.empty()) take(column.name, column.key, column.readAs);
    return row;
}

/** A row with the key columns of its table: a class that names none of its own writes them under the names of the base. */
QvSmartPtr<IOParameter> UnderOwnKeys(const qv::CatalogueTable& table, const QvSmartPtr<IOParameter>& attributes) {
    if (!attributes->HasKey("ID")) return attributes;
    const std::pair<const char*, std::string_view> keys[] = {
        {"ID", table.id}, {"VERSION", table.version}, {"PARENT_ID", table.parentId}, {"PARENT_VERSION", table.parentVersion}};
    const QvSmartPtr<IOParameter> row = new IOHashParam;
    for (auto pair = attributes->GetPairIterator(); !pair->atEnd(); pair->advance()) {
        QvULString name = pair->key();
        for (const auto& [base, own] : keys)
            if (name == QvULString(base)) name = Key(own);
        row->insertOrReplace(name, pair->value());
    }
    return row;
}

}  // namespace

std::string TextOf(const IOParameter& value) {
    switch (value.GetKind()) {
    case IOParameter::kindLong: return value.IsNull() ? "L null" : "L " + std::to_string(value.GetLongValue());
    case IOParameter::kindBool: return value.IsNull() ? "B null" : value.GetBoolValue() ? "B true" : "B false";
    case IOParameter::kindDate: return value.IsNull() ? "D null" : "D " + std::string(value.GetDateValue().ToString().utf8());
    case IOParameter::kindHash: {
        std::string text;
        for (const std::string& line : LinesOf(value)) text += (text.empty() ? "" : ", ") + line;
        return "{" + text + "}";
    }
    default: return value.IsNull() ? "S null" : "S \"" + std::string(value.GetQvStringValue().utf8()) + "\"";
    }
}

std::vector<std::string> LinesOf(const IOParameter& hash) {
    std::vector<std::string> lines;
    for (auto pair = hash.GetPairIterator(); !pair->atEnd(); pair->advance())
        lines.push_back(pair->key().c_str() + std::string(" ") + TextOf(*pair->value()));
    return lines;
}

// ---- recording

bool RecordingContext::Note(std::string name, const IOHashParam* params) {
    QvSmartPtr<IOHashParam> copy;
    if (params) {
        copy = new IOHashParam;
        for (auto pair = params->GetPairIterator(); !pair->atEnd(); pair->advance()) copy->insertOrReplace(pair->key(), pair->value());
    }
    m_actions.push_back({std::move(name), copy});
    return m_actions.size() != m_failAt;
}

bool RecordingContext::DoReadAction(const I18NString& action, const IOHashParam& params, IOArrayParam& results) {
    results.clear();
    const std::string object = Text(params, IOParamTag::OBJECT);
    if (!Note(action.c_str() + (object.empty() ? object : " " + object), &params)) return false;
    Answer(action.c_str(), params, results);
    return true;
}

bool RecordingContext::DoWriteAction(const I18NString& action, const IOHashParam& params) {
    const std::string object = Text(params, IOParamTag::OBJECT);
    if (!Note(action.c_str() + (object.empty() ? object : " " + object), &params)) return false;
    Store(action.c_str(), params);
    return true;
}

void RecordingContext::doReadAddToRemainingInfoMap(const QvULString& id, int version, int parentVersion, const QvULString& value) {
    records[id.c_str()] = {version, parentVersion, value};
}

const RemainingInfoEntry* RecordingContext::doWriteLookUpRemainingInfo(const QvULString& id) const {
    const auto found = records.find(id.c_str());
    return found == records.end() ? nullptr : &found->second;
}

void RecordingContext::Answer(const std::string&, const IOHashParam&, IOArrayParam& results) {
    if (m_nextAnswer == answers.size()) return;
    for (const auto& row : answers[m_nextAnswer]) results.push_back(row);
    ++m_nextAnswer;
}

std::vector<std::string> RecordingContext::Names() const {
    std::vector<std::string> names;
    for (const Action& action : m_actions) names.push_back(action.name);
    return names;
}

std::vector<std::string> RecordingContext::Attributes(std::size_t place) const {
    return LinesOf(*m_actions.at(place).params->GetByName(IOParamTag::ATTRIBUTES));
}

// ---- storing

void StoreContext::Check(const std::string& table, const IOParameter& attributes) {
    const qv::CatalogueTable* known = qv::FindTable(table);
    if (!known) return m_faults.push_back("unknown table " + table);
    for (auto pair = attributes.GetPairIterator(); !pair->atEnd(); pair->advance()) {
        const std::string name = pair->key().c_str();
        const bool isKey = name == known->id || name == known->version || name == known->parentId || name == known->parentVersion ||
                           name == "ID" || name == "VERSION" || name == "PARENT_ID" || name == "PARENT_VERSION";
        if (isKey) continue;
        const qv::CatalogueColumn* column = qv::FindColumn(*known, name);
        if (!column)
            m_faults.push_back("unknown column " + table + "." + name);
        else if (column->kind != KindOf(*pair->value()))
            m_faults.push_back("another kind in " + table + "." + name);
    }
}

void StoreContext::Store(const std::string& action, const IOHashParam& params) {
    const QvSmartPtr<IOParameter> attributes = params.GetByName(IOParamTag::ATTRIBUTES);
    if (action == IOAction::AT_WriteRemainingInfo.c_str()) {
        records[Text(*attributes, IOParamTag::XML_ELEMENT_ID)] = {
            attributes->GetByName(IOParamTag::XML_ELEMENT_VERSION)->GetLongValue(),
            attributes->GetByName(IOParamTag::XML_ELEMENT_PARENT_VERSION)->GetLongValue(),
            attributes->GetByName(IOParamTag::XML_ELEMENT_VALUE)->GetQvULStringValue()};
        const std::string key =
            Text(*attributes, IOParamTag::XML_ELEMENT_PARENT_ID) + "/" + Text(*attributes, IOParamTag::XML_ELEMENT_NAME);
        for (auto& record : m_records)
            if (record.first == key) {
                record.second = attributes;
                return;
            }
        m_records.emplace_back(key, attributes);
    } else if (action == IOAction::AT_InsertObject.c_str()) {
        const std::string table = Text(params, IOParamTag::TABLE_NAME);
        Check(table, *attributes);
        const qv::CatalogueTable* known = qv::FindTable(table);
        if (!known) return;
        const QvSmartPtr<IOParameter> stored = UnderOwnKeys(*known, attributes);
        const std::string id = Text(*stored, Key(known->id));
        for (StoredRow& row : TableOf(table))
            if (row.id == id) {
                row.attributes = stored;
                return;
            }
        TableOf(table).push_back({id, stored});
    }
}

void StoreContext::Answer(const std::string& action, const IOHashParam& params, IOArrayParam& results) {
    if (action == IOAction::AT_ReadSMProject.c_str()) {
        for (const StoredRow& row : TableOf("SM_PROJECT")) results.push_back(ByKey(*qv::FindTable("SM_PROJECT"), *row.attributes));
        return;
    }
    const std::string parent = Text(*params.GetByName(IOParamTag::CLAUSES), IOParamTag::XML_ELEMENT_PARENT_ID);
    if (action == IOAction::AT_ReadRemainingInfo.c_str()) {
        for (const auto& record : m_records)
            if (Text(*record.second, IOParamTag::XML_ELEMENT_PARENT_ID) == parent) results.push_back(record.second);
        return;
    }
    const std::string tag = Text(params, IOParamTag::OBJECT);
    const qv::CatalogueKind* kind = qv::FindKind(tag);
    if (!kind) return m_faults.push_back("unknown kind " + tag);
    const qv::CatalogueTable& table = *qv::FindTable(kind->table);
    for (const StoredRow& row : TableOf(std::string(kind->table))) {
        if (Text(*row.attributes, table.parentId.empty() ? QvULString("PARENT_ID") : Key(table.parentId)) != parent) continue;
        if (!kind->typeColumn.empty() && Text(*row.attributes, Key(kind->typeColumn)) != kind->type) continue;
        results.push_back(Handed(table, *row.attributes));
    }
}

QvSmartPtr<IOParameter> StoreContext::Handed(const qv::CatalogueTable& table, const IOParameter& stored) const {
    QvSmartPtr<IOParameter> row = ByKey(table, stored);
    const auto definitions = m_tables.find("SM_DEFINITION");
    if (table.name != "SM_UPDATE_SUBJECT" || definitions == m_tables.end()) return row;
    for (const StoredRow& definition : definitions->second)
        if (Text(*definition.attributes, "QS_ID") == Text(*row, "id")) {
            const char* type = definition.attributes->HasKey("MULTIDB") ? "dbQuery" : "modelQuery";
            row->insertOrReplace(IOParamTag::OBJECT_TYPE, new IOQvStringParam(type));
        }
    return row;
}

QvSmartPtr<IOParameter> StoreContext::RowOf(const std::string& table, const std::string& id) const {
    const auto rows = m_tables.find(table);
    if (rows == m_tables.end()) return nullptr;
    for (const StoredRow& row : rows->second)
        if (row.id == id) return Handed(*qv::FindTable(table), *row.attributes);
    return nullptr;
}

}  // namespace smtest
