// The project's face towards the repository, and the sets and maps of a save.
#include "objects/base/smreadguard_002_000.h"
#include "objects/base/smxmlobject2_002_000.h"
#include "objects/containers/smnamespace2_002_000.h"
#include "objects/project/smproject2_002_000.h"
#include "objects/project/smprojectdocument_002_000.h"
#include "objects/publication/smdatasource2_002_000.h"
#include "objects/publication/smpackage2_002_000.h"
#include "objects/publication/smparametermap2_002_000.h"
#include "objects/publication/smsecurityview2_002_000.h"

namespace schema_002_000 {

namespace {

const SMTable TABLE = {"SM_PROJECT", "PROJECT_ID", "PROJECT_VERSION_NO", "", ""};
const SMLogWords WORDS = {"smproject2", "SMProject2"};
const QvULString COL_NAME = SMColumn("NAME");
const QvULString COL_DEFAULTLOCALE = SMColumn("DEFAULTLOCALE");

}  // namespace

SM_DEFINE_KEY_COLUMNS(SMProject2, TABLE)

// ---- rows

void SMProject2::getAttributes(IOParameter& attrs, IOParameter& historyAttrs) {
    SMObjectBase::getAttributes(attrs, historyAttrs);
    SMRowWriter row(attrs);
    row.Text(COL_NAME, m_name);
    row.Text(COL_DEFAULTLOCALE, m_defaultLocale);
}

void SMProject2::constructFromIOParameter(const IOParameter& row) {
    FillGuarded(row, WORDS, [&] {
        m_defaultLocale = TextOf(row, m_tags->defaultLocale);
        m_name = TextOf(row, m_tags->name);
    });
    SMObjectBase::constructFromIOParameter(row);  // last here, unlike in the other classes
}

// ---- reading

bool SMProject2::readObjectType(IOHelper& helper, const I18NString& objectName, QvSmartPtr<IOArrayParam>& rows) {
    return SelectRows(helper, objectName, rows);
}

template <class T>
bool SMProject2::ReadOwned(IOHelper& helper, const I18NString& objectName, SMChildren<T>& owned) {
    return ReadChildren<T>(helper, objectName, [&](T* object) { owned.Append(object); });
}

bool SMProject2::ReadRootNamespace(IOHelper& helper) {
    QvSmartPtr<IOArrayParam> rows;
    if (!readObjectType(helper, m_tags->namespace_, rows)) return false;
    if (rows->Size() == 0) return true;
    const QvSmartPtr<SMNamespace2> root = new SMNamespace2(this, this);
    if (m_rootNamespace) m_formerRoots.push_back(m_rootNamespace);
    m_rootNamespace = root;
    AdoptRow(helper, *root, *rows->At(0));  // further rows are ignored
    AddNamespaceToMap(root);
    return root->read(helper);
}

bool SMProject2::read(IOHelper& helper) {
    SMLocal<IOHashParam> params;
    AddHash(params, IOParamTag::ATTRIBUTES);
    AddHash(params, IOParamTag::HISTORY_ATTRIBUTES);
    AddHash(params, IOParamTag::CLAUSES);
    SMRowWriter(params).Text(IOParamTag::OBJECT, m_tags->project);
    SMLocal<IOArrayParam> rows;
    if (!ReadGuarded(WORDS, "read", [&] { return helper.DoReadAction(IOAction::AT_ReadSMProject, params, rows); })) return false;
    if (rows.Size() > 0) AdoptRow(helper, *this, *rows.At(0));

    std::map<QvULString, long*> wanted{{m_tags->locales, &m_localesVersion}};
    SMProjectBuilder builder(this);
    if (!read_remaining_info_into_builder(helper, this, &builder, wanted)) return false;
    if (m_locales.empty()) {
        SMLog(SM_NOTICE, WORDS, "read", "Upgrading Meridian RTM database to Meridian hotsite version");
        helper.SetFixingLostRemainingInfo(true);
        if (!read_remaining_info_into_builder(helper, this, &builder, wanted)) return false;
    }
    return ReadRootNamespace(helper) && ReadOwned(helper, m_tags->dataSource, m_dataSources) &&
           ReadChildren<SMPackage2>(helper, m_tags->package, [&](SMPackage2* package) { m_packages.push_back(package); }) &&
           ReadOwned(helper, m_tags->parameterMap, m_parameterMaps) && ReadOwned(helper, m_tags->securityView, m_securityViews);
}

// ---- writing

bool SMProject2::write_no_seq_inc(IOHelper& helper) {
    return InsertRow(helper, TABLE) && write_next(helper) && helper.EndObject();
}

template <class Owned>
bool SMProject2::WriteOwned(IOHelper& helper, const Owned& owned, const char* failure) {
    for (const auto& object : owned) {
        if (object->write(helper)) continue;
        SMLog(SM_FAILURE, WORDS, "write_next", failure);
        return false;
    }
    return true;
}

bool SMProject2::write_next(IOHelper& helper) {
    const struct EndOfWrite {
        SMProject2& project;
        IOHelper& helper;
        ~EndOfWrite() {
            project.m_packages.ForgetIndex();          // the write gives ids to packages that had none
            helper.SetFixingLostRemainingInfo(false);  // also after a failure
        }
    } end{*this, helper};
    if (helper.GetFixingLostRemainingInfo())
        SMLog(SM_NOTICE, WORDS, "write_next", "This save will be slow - saving upgraded Meridian database.  This should only happen once.");
    const auto writeLocales = [&] {
        return m_locales.empty() || write_remaining_info(helper, m_tags->locales,
                                                         WriteListToString(m_tags->locales, m_tags->locale, m_locales), m_localesVersion);
    };
    return writeLocales() && (!m_rootNamespace || m_rootNamespace->write(helper)) &&
           WriteOwned(helper, m_dataSources, "Failed to write a Datasource child of smproject.") &&
           WriteOwned(helper, m_packages, "Failed to write a Package child of smproject.") &&
           WriteOwned(helper, m_securityViews, "Failed to write a SecurityViews child of smproject.") &&
           WriteOwned(helper, m_parameterMaps, "Failed to write a ParameterMap child of smproject.");
}

// ---- sets and maps of a save

template <class Owned>
void SMProject2::RegisterOwned(const Owned& owned) {
    for (const auto& object : owned) {
        AddToSetPIDIDAndMiniObject(object);
        object->AddToSetPIDIDAndMiniObject();
    }
}

void SMProject2::InitAndAddSetPIDIDAndMiniObject(std::set<QvULString>* pidid, std::set<QvULString>* ids, MapId2MiniObject* miniObjects,
                                                 MapId2RemainingInfo* remainingInfo) {
    m_setPIDID = pidid;
    m_setID = ids;
    m_miniObjectMap = miniObjects;
    m_remainingInfoMap = remainingInfo;
    if (m_setPIDID) m_setPIDID->clear();
    if (m_setID) m_setID->clear();
    if (m_miniObjectMap) m_miniObjectMap->Clear();
    if (m_remainingInfoMap) m_remainingInfoMap->Clear();
    AddToSetPIDIDAndMiniObject(this);
    if (m_rootNamespace) {
        AddToSetPIDIDAndMiniObject(m_rootNamespace);
        m_rootNamespace->AddToSetPIDIDAndMiniObject();
    }
    RegisterOwned(m_dataSources);
    RegisterOwned(m_packages);
    m_packages.ForgetIndex();  // a doubled id has become another
    RegisterOwned(m_parameterMaps);
    RegisterOwned(m_securityViews);
    AddToMiniRemainingInfoMap(GetId(), GetVersionNo(), m_tags->locales, static_cast<int>(m_localesVersion),
                              WriteListToString(m_tags->locales, m_tags->locale, m_locales));
}

void SMProject2::AddToSetPIDIDAndMiniObject(SMObjectBase* object) {
    // the map sees the object before a doubled id is replaced
    if (m_miniObjectMap) m_miniObjectMap->AddObject(object);
    if (m_setPIDID) {
        I18NString key = object->parent ? I18NString(object->parent->GetId()) : I18NString();
        key += "+";
        key += object->GetId();
        m_setPIDID->insert(key);
    }
    if (m_setID && !m_setID->insert(object->GetId()).second) {
        object->RegenerateIds();
        m_setID->insert(object->GetId());
    }
}

void SMProject2::AddToMiniRemainingInfoMap(const QvULString& objectId, int parentVersion, const SMXMLObject2* object) {
    if (!m_remainingInfoMap || !object) return;
    AddToMiniRemainingInfoMap(objectId, parentVersion, object->tagName, static_cast<int>(object->version),
                              QvULString(object->buffer.view()));
}

void SMProject2::AddToMiniRemainingInfoMap(const QvULString& objectId, int parentVersion, const I18NString& tag, int version,
                                           const QvULString& text) {
    if (!m_remainingInfoMap) return;
    I18NString recordId;
    GetRemainingInfoId(objectId, tag, recordId);
    AddToMiniRemainingInfoMap(QvULString(recordId), parentVersion, version, text);
}

void SMProject2::AddToMiniRemainingInfoMap(const QvULString& recordId, int parentVersion, int version, const QvULString& text) {
    if (m_remainingInfoMap) m_remainingInfoMap->AddObject(recordId, version, parentVersion, text);
}

}  // namespace schema_002_000
