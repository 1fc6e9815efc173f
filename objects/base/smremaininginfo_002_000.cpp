// The records of XML that have no column of their own.
#include "core/qvutils/diag/tklerrors.h"
#include "core/qvutils/xml/qvsax2parser.h"
#include "objects/base/smobjectbase_002_000.h"
#include "objects/base/smobjectbuilder_002_000.h"
#include "objects/base/smreadguard_002_000.h"
#include "objects/base/smxmlobject2_002_000.h"

namespace schema_002_000 {

namespace {

const SMLogWords WORDS = {"smobjectbase", "SMObjectBase"};
const I18NString TABLE = I18NString::Immortal("SM_REMAIN_INFO");
constexpr long ELEMENT_TYPE = 6;
constexpr std::size_t FRAGMENT_BUFFER = 0x10000;

/** The value of a row may hold several elements side by side, hence the root of our own around it. */
void ReplayFragment(const I18NString& value, SMObjectBuilder* builder) {
    TklByteBuffer document(FRAGMENT_BUFFER, FRAGMENT_BUFFER);
    document.reserve(value.utf8().size() + 16);
    document << "<dummy>";
    document.appendChars(value.utf8().data(), value.utf8().size());
    document << "</dummy>";
    XmlFragReader reader(builder);
    QvSAX2Parser parser;
    parser.setContentHandler(&reader);
    parser.parse(document);
}

/** Whether a record is of the present state of its owner. While lost records are being repaired each one counts. */
bool IsOfOwner(const IOHelper& helper, const IOParameter& row, const SMObjectBase& owner, const char* method) {
    if (helper.GetFixingLostRemainingInfo()) return true;
    const auto parentVersion = IfPresent(row, IOParamTag::XML_ELEMENT_PARENT_VERSION);
    if (!parentVersion) SMLog(SM_MISUSE, WORDS, method, "No parent_version column in remaining info result set.");
    return parentVersion && parentVersion->GetLongValue() == owner.GetVersionNo();
}

/** The same with what does not parse logged; gives false then. */
bool ReplayRecord(const I18NString& value, SMObjectBuilder* builder, const char* method) {
    try {
        ReplayFragment(value, builder);
        return true;
    } catch (const TklRuntimeError& error) {
        SMLog(SM_FAILURE, WORDS, method, "Unable to parse remaining info.", error.what());
        return false;
    }
}

}  // namespace

bool SMObjectBase::WriteKeptInfo(IOHelper& helper, SMXMLObject2* kept) {
    return !kept || write_remaining_info(helper, kept);
}

bool SMObjectBase::ReadKeptInfo(IOHelper& helper, QvSmartPtr<SMXMLObject2>& kept, const QvULString& tag) {
    return read_remaining_info_into_smxmlobject(helper, this, kept, tag);
}

bool SMObjectBase::write_remaining_info(IOHelper& helper, SMXMLObject2* object) {
    long version = object->version;
    const bool success = write_remaining_info(helper, object->tagName, I18NString(object->buffer.view()), version);
    object->version = version;
    return success;
}

bool SMObjectBase::write_remaining_info(IOHelper& helper, const I18NString& tag, const I18NString& text, long& version) {
    I18NString recordId;
    GetRemainingInfoId(GetId(), tag, recordId);
    if (const RemainingInfoEntry* known = helper.doWriteLookUpRemainingInfo(recordId)) {
        version = known->version;
        if (!helper.GetFixingLostRemainingInfo() && known->parentVersion == GetVersionNo() && known->value == text) return true;
        ++version;
    } else {
        version = 1;
    }

    SMLocal<IOHashParam> params;
    SMRowWriter row(*AddHash(params, IOParamTag::ATTRIBUTES));
    row.Text(IOParamTag::XML_ELEMENT_ID, recordId);
    row.Number(IOParamTag::XML_ELEMENT_VERSION, version);
    row.Text(IOParamTag::XML_ELEMENT_PARENT_ID, GetId());
    row.Number(IOParamTag::XML_ELEMENT_PARENT_VERSION, GetVersionNo());
    row.Number(IOParamTag::XML_ELEMENT_TYPE, ELEMENT_TYPE);
    row.Text(IOParamTag::XML_ELEMENT_NAME, tag);
    row.Text(IOParamTag::XML_ELEMENT_VALUE, text);
    row.Number(IOParamTag::XML_ELEMENT_ORDER, 0);
    SMRowWriter history(*AddHash(params, IOParamTag::HISTORY_ATTRIBUTES));
    history.Number(IOParamTag::XML_ELEMENT_VERSION, 0);
    history.Number(IOParamTag::XML_ELEMENT_PARENT_VERSION, GetVersionNo());
    SMRowWriter names(params);
    names.Text(IOParamTag::TABLE_NAME, TABLE);
    names.Text(IOParamTag::OBJECT, TABLE);
    return helper.DoWriteAction(IOAction::AT_WriteRemainingInfo, params) && helper.EndObject();
}

bool SMObjectBase::SelectRemainingInfo(IOHelper& helper, const SMObjectBase* owner, const char* method, QvSmartVector<IOParameter>& rows) {
    if (!helper.MayHaveRows(TABLE, owner->GetId())) return true;
    SMLocal<IOHashParam> params;
    SMRowWriter clause(*AddHash(params, IOParamTag::CLAUSES));
    clause.Text(IOParamTag::XML_ELEMENT_PARENT_ID, owner->GetId());
    clause.Number(IOParamTag::XML_ELEMENT_PARENT_VERSION, owner->GetVersionNo());
    SMLocal<IOArrayParam> found;
    if (!ReadGuarded(WORDS, method, [&] { return helper.DoReadAction(IOAction::AT_ReadRemainingInfo, params, found); })) return false;
    for (int i = 0; i < found.Size(); ++i) rows.push_back(found.At(i));
    return true;
}

bool SMObjectBase::NoteRemainingInfo(IOHelper& helper, const IOParameter& row, const SMObjectBase* owner, const char* method,
                                     long& version) {
    const auto recordId = IfPresent(row, IOParamTag::XML_ELEMENT_ID);
    const auto recordVersion = IfPresent(row, IOParamTag::XML_ELEMENT_VERSION);
    if (recordVersion) version = recordVersion->GetLongValue();
    if (!recordId) {
        SMLog(SM_MISUSE, WORDS, method, "Unable to find an ID for remaining info.");
    } else if (!recordVersion) {
        SMLog(SM_MISUSE, WORDS, method, "Unable to find a version for remaining info.");
    } else {
        helper.doReadAddToRemainingInfoMap(recordId->GetQvULStringValue(), static_cast<int>(version), owner->GetVersionNo(),
                                           row.GetByName(IOParamTag::XML_ELEMENT_VALUE)->GetQvULStringValue());
    }
    return recordVersion != nullptr;
}

bool SMObjectBase::read_remaining_info_into_smxmlobject(IOHelper& helper, const SMObjectBase* owner, QvSmartPtr<SMXMLObject2>& result,
                                                        const QvULString& tag) {
    static constexpr const char* METHOD = "read_remaining_info_into_smxmlobject";
    result = nullptr;
    QvSmartVector<IOParameter> rows;
    if (!SelectRemainingInfo(helper, owner, METHOD, rows)) return false;
    return ReadGuarded(WORDS, METHOD, [&] {
        for (const auto& row : rows) {
            if (!IsOfOwner(helper, *row, *owner, METHOD)) continue;
            const auto name = IfPresent(*row, IOParamTag::XML_ELEMENT_NAME);
            if (!name || name->GetQvULStringValue() != tag || !row->HasKey(IOParamTag::XML_ELEMENT_VALUE)) continue;
            long version = 0;
            const bool hasVersion = NoteRemainingInfo(helper, *row, owner, METHOD, version);
            const I18NString value = TextOf(*row, IOParamTag::XML_ELEMENT_VALUE);
            if (!value.empty()) {
                result = new SMXMLObject2(tag, value, false);
                if (hasVersion) result->version = version;
            }
            break;
        }
        return true;
    });
}

bool SMObjectBase::read_remaining_info_into_builder(IOHelper& helper, const SMObjectBase* owner, SMObjectBuilder* builder,
                                                    std::map<QvULString, long*>& wanted) {
    static constexpr const char* METHOD = "read_remaining_info_into_builder";
    QvSmartVector<IOParameter> rows;
    if (!SelectRemainingInfo(helper, owner, METHOD, rows)) return false;
    return ReadGuarded(WORDS, METHOD, [&] {
        for (const auto& row : rows) {
            if (!IsOfOwner(helper, *row, *owner, METHOD)) continue;
            const auto name = IfPresent(*row, IOParamTag::XML_ELEMENT_NAME);
            const auto target = name ? wanted.find(name->GetQvULStringValue()) : wanted.end();
            if (target == wanted.end() || !row->HasKey(IOParamTag::XML_ELEMENT_VALUE)) continue;
            NoteRemainingInfo(helper, *row, owner, METHOD, *target->second);
            const I18NString value = TextOf(*row, IOParamTag::XML_ELEMENT_VALUE);
            // a record that is read in part must not be saved over the whole one
            if (!value.empty() && !ReplayRecord(value, builder, METHOD)) return false;
        }
        return true;
    });
}

bool SMObjectBase::read_custom_property_locale(IOHelper& helper, const SMObjectBase* owner, SMObjectBuilder* builder) {
    long version = m_propertyVersion;
    std::map<QvULString, long*> wanted{{m_tags->property, &version}};
    const bool success = read_remaining_info_into_builder(helper, owner, builder, wanted);
    m_propertyVersion = static_cast<int>(version);
    return success;
}

}  // namespace schema_002_000
