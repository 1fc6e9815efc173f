#include "objects/base/smobjectbase_002_000.h"

#include <algorithm>
#include <climits>

#include "core/qvutils/base/qvuuid.h"
#include "core/qvutils/diag/valuewitness.h"
#include "core/qvutils/text/qvstringformat.h"
#include "objects/base/smreadguard_002_000.h"
#include "objects/containers/smnamespace2_002_000.h"
#include "objects/project/smproject2_002_000.h"

namespace schema_002_000 {

namespace {

const SMLogWords WORDS = {"smobjectbase", "SMObjectBase"};

const QvULString KEY_ID = QvULString::Immortal("id");
const QvULString KEY_VERSION = QvULString::Immortal("version");
const QvULString KEY_LAST_CHANGED = QvULString::Immortal("lastChanged");
const QvULString KEY_DISPLAY_ORDER = QvULString::Immortal("display_order");

}  // namespace

const I18NString SMObjectBase::EMPTY_QVSTRING;
const QvULString SMObjectBase::EMPTY_QVULSTRING;
const I18NString SMObjectBase::ms_strUri;

SMObjectBase::SMObjectBase(IOObject* parentObject, SMProject2* project)
    : IOObject(parentObject, false), m_tags(SMEnum_xmltag::GetInstance()), m_project(project) {
    if (m_project) m_project->m_allObjects.Add(this);
}

SMObjectBase::~SMObjectBase() {
    if (!m_project || m_project->m_beingDestroyed) return;
    m_project->ForgetObject(this);
    m_project->m_allObjects.Remove(this);
}

// ---- links

SMObjectBase* SMObjectBase::GetParentSMObj() const {
    return parent && IsSMObject(parent) ? static_cast<SMObjectBase*>(parent) : nullptr;
}

void SMObjectBase::SetSMProject(SMProject2* project) {
    if (project == m_project) return;
    if (m_project && !m_project->m_beingDestroyed) {
        m_project->ForgetObject(this);
        if (GetSMType() == SMEnum_xmltag::Enum::namespace_) m_project->ForgetNamespace(static_cast<SMNamespace2*>(this));
        m_project->NameEpochs().names.NoteRenamed();
        m_project->NameEpochs().links.NoteRenamed();
        m_project->m_allObjects.Remove(this);
    }
    m_registryIndex = -1;  // a slot of the old registry says nothing in the new one
    m_project = project;
    if (!m_project) return;
    m_project->m_allObjects.Add(this);
    // indexes that were built under the old project must not pass for ones of this project
    m_project->NameEpochs().names.NoteRenamed();
    m_project->NameEpochs().links.NoteRenamed();
}

void SMObjectBase::NoteChange(SMNameEpoch SMNameEpochs::*kind, std::string_view before, std::string_view after) {
    if (!m_project || before == after) return;
    SMNameEpoch& epoch = m_project->NameEpochs().*kind;
    if (before.empty())
        epoch.NoteNamed(this);
    else
        epoch.NoteRenamed();
}

void SMObjectBase::NoteNameChange(std::string_view before, std::string_view after) {
    NoteChange(&SMNameEpochs::names, before, after);
}

void SMObjectBase::NoteLinkChange(std::string_view before, std::string_view after) {
    NoteChange(&SMNameEpochs::links, before, after);
}

// ---- properties

void SMObjectBase::SetProperty(const QvULString& name, const QvULString& type, const QvULString& value) {
    if (name == KEY_ID) {
        SetId(value);
    } else if (name == KEY_VERSION) {
        const QvStringFormat* format = QvStringFormat::GetInstance();
        const bool isNumber = format->_isNumeric(value);
        const long number = isNumber ? format->_string2long(value) : 0;
        if (isNumber) SetVersionNo(static_cast<int>(number));
        if (!isNumber || number > INT_MAX) qv::TellMisread(qv::ValueWitness::What::number, value.utf8());
    } else if (name == KEY_LAST_CHANGED) {
        SetLastChangedDate(QvDate(value));
    } else {
        m_properties[name] = SMProperty2{type, value};
    }
}

void SMObjectBase::SetHiddenProperty(const QvULString& name, const QvULString& value) {
    SetProperty(name, m_tags->hidden, value);
}

void SMObjectBase::AddOrUpdateProperty(const QvULString& name, const QvULString& type, const QvULString& value) {
    if (name.empty() || type.empty() || value.empty()) return;
    m_properties[name] = SMProperty2{type, value};
}

const SMProperty2* SMObjectBase::GetProperty(const QvULString& name) const {
    const auto found = m_properties.find(name);
    return found == m_properties.end() ? nullptr : &found->second;
}

void SMObjectBase::RegenerateIds() {
    SetId(QvUUIDGen::Create().GetAsQvULString());
}

// ---- dates

const I18NString& SMObjectBase::GetSMDateFormat() {
    static const I18NString format = I18NString::Immortal("yyyy-MM-dd'T'HH:mm:ss");
    return format;
}

void SMObjectBase::SetSMLastChangedDate(const I18NString& text) {
    QvDate date(false);
    QvStringFormat::GetInstance()->_string2datetimewithpattern(text, GetSMDateFormat(), date, nullptr);
    SetLastChangedDate(date);
}

void SMObjectBase::SetLastChangedDateToNow() {
    SetLastChangedDate(QvDate(true));
}

// ---- rows

void SMObjectBase::getAttributes(IOParameter& attrs, IOParameter& historyAttrs) {
    IOObject::getAttributes(attrs, historyAttrs);
}

void SMObjectBase::constructFromIOParameter(const IOParameter& row) {
    FillGuarded(row, WORDS, [&] {
        id = row.GetByName(KEY_ID)->GetQvULStringValue();
        if (const auto version = IfPresent(row, KEY_VERSION)) SetVersionNo(static_cast<int>(version->GetLongValue()));
        // a row without a date was just made
        const QvSmartPtr<IOParameter> date = row.HasKey(KEY_LAST_CHANGED) ? row.GetByName(KEY_LAST_CHANGED) : QvSmartPtr<IOParameter>();
        SetLastChangedDate(date ? date->GetDateValue() : QvDate(true));
        if (const auto order = IfPresent(row, KEY_DISPLAY_ORDER)) displayOrder = static_cast<int>(order->GetLongValue());
    });
}

QvSmartPtr<IOParameter> SMObjectBase::PrepareReadAttributes(const IOHelper& helper, const I18NString& objectName) {
    const QvSmartPtr<IOHashParam> result = new IOHashParam();
    const QvSmartPtr<IOHashParam> attrs = new IOHashParam();
    if (const QvSmartPtr<IOParameter> mapping = helper.GetObjectMapping(objectName)) {
        for (const QvULString* group : {&IOParamTag::SMATTRIBUTE, &IOParamTag::SMSIMPLEELEMENT, &IOParamTag::SMMIXEDELEMENT,
                                        &IOParamTag::SMLANGELEMENT, &IOParamTag::SMPROPERTYELEMENT}) {
            const QvSmartPtr<IOParameter> keys = IfPresent(*mapping, *group);
            if (!keys || !(keys->GetKind() & IOParameter::kindHash)) continue;
            for (auto pair = keys->GetPairIterator(); !pair->atEnd(); pair->advance()) attrs->insertOrReplace(pair->key(), pair->value());
        }
        if (mapping->HasKey(IOParamTag::XML_ELEMENT_ORDER)) attrs->insertOrReplace(IOParamTag::XML_ELEMENT_ORDER, new IOLongParam());
        if (mapping->HasKey(IOParamTag::OBJECT_TYPE)) attrs->insertOrReplace(IOParamTag::OBJECT_TYPE, new IOQvStringParam());
    }
    getInputParams(*result, objectName, nullptr);
    result->insertOrReplace(IOParamTag::ATTRIBUTES, attrs);
    return result.get();
}

bool SMObjectBase::InsertRow(IOHelper& helper, const SMTable& table) {
    const QvSmartPtr<IOHashParam> attrs = new IOHashParam();
    const QvSmartPtr<IOHashParam> history = new IOHashParam();
    getAttributes(*attrs, *history);
    const QvSmartPtr<IOQvStringParam> tableName = new IOQvStringParam(table.name);
    SMLocal<IOHashParam> params;
    params.insertOrReplace(IOParamTag::ATTRIBUTES, attrs);
    params.insertOrReplace(IOParamTag::HISTORY_ATTRIBUTES, history);
    params.insertOrReplace(IOParamTag::TABLE_NAME, tableName);
    params.insertOrReplace(IOParamTag::OBJECT, tableName);
    return helper.DoWriteAction(IOAction::AT_InsertObject, params);
}

bool SMObjectBase::SelectRows(IOHelper& helper, const I18NString& objectName, QvSmartPtr<IOArrayParam>& rows) {
    rows = new IOArrayParam();
    if (!helper.MayHaveRows(objectName, GetId())) return true;
    return ReadGuarded(WORDS, "read", [&] {
        const QvSmartPtr<IOParameter> params = PrepareReadAttributes(helper, objectName);
        return helper.DoReadAction(IOAction::AT_ReadSMObject, static_cast<const IOHashParam&>(*params), *rows);
    });
}

void SMObjectBase::AdoptRow(IOHelper& helper, SMObjectBase& child, const IOParameter& row) {
    child.constructFromIOParameter(row);
    helper.Visit(child);
    helper.doReadAddToMiniObjectMap(&child);
}

// ---- order

bool DisplayOrderSort(SMObjectBase* a, SMObjectBase* b) {
    return a && b && a->displayOrder < b->displayOrder;
}

void RemoveDisplayOrderItemById(std::vector<SMObjectBase*>& items, const QvULString& id) {
    const auto found = std::find_if(items.begin(), items.end(), [&](const SMObjectBase* item) { return item && item->GetId() == id; });
    if (found != items.end()) items.erase(found);
}

}  // namespace schema_002_000
