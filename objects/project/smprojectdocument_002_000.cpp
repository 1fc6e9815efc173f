// The frame of the model document.
#include "objects/project/smprojectdocument_002_000.h"

#include <climits>
#include <string>

#include "core/qvutils/diag/codes.h"
#include "core/qvutils/diag/valuewitness.h"
#include "core/qvutils/persist/multifilehelper.h"
#include "core/qvutils/text/qvstringformat.h"
#include "objects/containers/smnamespace2_002_000.h"
#include "objects/publication/smdatasource2_002_000.h"
#include "objects/publication/smpackage2_002_000.h"
#include "objects/publication/smparametermap2_002_000.h"
#include "objects/publication/smsecurityview2_002_000.h"

namespace schema_002_000 {

namespace {

const SMLogWords WORDS = {"smproject2", "SMProjectBuilder"};
constexpr int HELPER_KIND_MULTI_FILE = 3;
const I18NString XSI_URI = I18NString::Immortal("http://www.w3.org/2001/XMLSchema-instance");

/** The helper of a write into several files; null when there is none. */
MultiFileHelper* FilesOf(IOHelper* helper) {
    return helper && helper->GetHelperKind() == HELPER_KIND_MULTI_FILE ? static_cast<MultiFileHelper*>(helper) : nullptr;
}

}  // namespace

const I18NString& GetModelNamespaceUri() {
    static const I18NString uri = I18NString::Immortal("http://" SMODEL_URI_HOST "/schemas/krt/60/0");
    return uri;
}

const I18NString& GetModelSchemaLocation() {
    static const I18NString location = I18NString::Immortal("http://" SMODEL_URI_HOST "/schemas/krt/60/0 KRTModelSpecification.xsd");
    return location;
}

// ---- writing

void SMProject2::WriteXMLDocument(IOHelper* helper, QvContentHandler* handler, QvXMLFormatTarget& target) const {
    if (MultiFileHelper* files = FilesOf(helper)) files->BeginDocument();
    handler->startDocument();
    WriteXMLElement(helper, handler, target);
    handler->endDocument();
}

void SMProject2::WriteXMLElement(IOHelper* helper, QvContentHandler* handler, QvXMLFormatTarget& target) const {
    QvXMLAttributesImpl attrs;
    attrs.push_back(m_tags->id, GetId());
    attrs.push_back(m_tags->xmlns, GetModelNamespaceUri());
    attrs.push_back(m_tags->xmlns_xsi, XSI_URI);
    attrs.push_back(m_tags->xsi_schemaLocation, GetModelSchemaLocation());
    StartElement(handler, m_tags->project, attrs);
    WriteString(handler, m_tags->name, NoAttributes(), m_name);
    WriteList(handler, m_tags->locales, m_tags->locale, m_locales);
    WriteString(handler, m_tags->defaultLocale, NoAttributes(), m_defaultLocale);
    if (m_rootNamespace) {
        MultiFileHelper* files = FilesOf(helper);
        if (files && files->IsSeparateFile(m_rootNamespace->GetTagName()))
            m_rootNamespace->BreakAndWriteXMLDocument(files, handler, target);
        else
            m_rootNamespace->WriteXMLElement(helper, handler, target);
    }
    WriteDataSources(helper, handler, target);
    StartElement(handler, m_tags->parameterMaps);
    for (const auto& map : m_parameterMaps) map->WriteXMLElement(handler, target);
    EndElement(handler, m_tags->parameterMaps);
    // id and version of this section are read, never written: as the format has it
    StartElement(handler, m_tags->securityViews);
    for (const auto& view : m_securityViews) view->WriteXMLElement(handler, target);
    EndElement(handler, m_tags->securityViews);
    WritePackages(helper, handler, target);
    EndElement(handler, m_tags->project);
}

void SMProject2::WriteDataSources(IOHelper* helper, QvContentHandler* handler, QvXMLFormatTarget& target) const {
    struct Reset {
        bool& flag;
        ~Reset() { flag = true; }
    } const reset{m_writeDataSourceSchema};
    // a model that is not stored yet keeps its connections out of a document in several files
    if (FilesOf(helper) && GetVersionNo() == 0) m_writeDataSourceSchema = false;
    QvXMLAttributesImpl attrs;
    if (m_dataSourcesVersion >= 1 && !m_dataSourcesId.empty()) {
        attrs.push_back(m_tags->id, m_dataSourcesId);
        attrs.push_back(m_tags->version, I18NString(std::to_string(m_dataSourcesVersion).c_str()));
    }
    StartElement(handler, m_tags->dataSources, attrs);
    for (const auto& dataSource : m_dataSources) dataSource->WriteXMLElement(handler, target);
    EndElement(handler, m_tags->dataSources);
}

void SMProject2::WritePackages(IOHelper* helper, QvContentHandler* handler, QvXMLFormatTarget& target) const {
    MultiFileHelper* files = FilesOf(helper);
    const bool separate = files && files->IsSeparateFile(m_tags->package);
    StartElement(handler, m_tags->packages);
    for (const auto& package : m_packages) {
        if (separate)
            package->BreakAndWriteXMLDocument(files, handler, target);
        else
            package->WriteXMLElement(handler, target);
    }
    EndElement(handler, m_tags->packages);
}

// ---- reading

using Tag = SMEnum_xmltag::Enum;

void SMProjectBuilder::realStartElement(const I18NString&, const I18NString& localName, const I18NString&, const QvXMLAttributes& attrs) {
    const Tag tag = TagOf(localName);
    switch (tag) {
    case Tag::project: m_object->SetId(attrs.getValue(m_tags->id)); break;
    case Tag::name:
    case Tag::locale:
    case Tag::defaultLocale: CollectText(); break;
    case Tag::locales:
    case Tag::parameterMaps:
    case Tag::packages: break;
    case Tag::namespace_: StartNamespace(); break;
    case Tag::smnamespacefile: StartNamespaceFile(attrs); break;
    case Tag::property: StartProperty(attrs); break;
    case Tag::dataSources: StartSection(attrs, *m_tags, m_object->m_dataSourcesId, m_object->m_dataSourcesVersion); break;
    case Tag::securityViews: StartSection(attrs, *m_tags, m_object->m_securityViewsId, m_object->m_securityViewsVersion); break;
    case Tag::dataSource: StartDataSource(); break;
    case Tag::parameterMap: StartParameterMap(attrs); break;
    case Tag::securityView: StartSecurityView(attrs); break;
    case Tag::package: StartPackage(attrs); break;
    case Tag::packagefile: StartPackageFile(attrs); break;
    default: LogUnknownStart(WORDS.module, WORDS.className, "realStartElement", localName);
    }
}

void SMProjectBuilder::StartNamespace() {
    // becomes the root at its end tag, by its own builder
    const QvSmartPtr<SMNamespace2> ns = new SMNamespace2(m_object, m_object);
    Push(new SMNamespaceBuilder(ns, false));
}

void SMProjectBuilder::StartNamespaceFile(const QvXMLAttributes& attrs) {
    const int filename = attrs.getIndex(m_tags->filename);
    QvSmartPtr<SMNamespace2> ns;
    if (filename < 0) {
        m_object->m_partFiles.StandsFor(m_tags->namespace_);
        const I18NString name = attrs.getValue(m_tags->name);
        ns = m_object->FindNamespaceByName(name);
        if (!ns) {
            ns = new SMNamespace2(m_object, m_object);
            ns->SetId(attrs.getValue(m_tags->id));
            ns->SetNameDontTouchNamespaceMap(name);
        }
        m_object->SetRootNamespace(ns);
    } else {
        ns = new SMNamespace2(m_object, m_object);
        ns->ReadFromXMLFile(attrs.getValue(m_tags->filepath), attrs.getValue(filename));
    }
    Push(new SMNamespaceBuilder(ns, false));
}

void SMProjectBuilder::StartParameterMap(const QvXMLAttributes& attrs) {
    auto* map = new SMParameterMap2(m_object, m_object);
    m_object->AppendParameterMap(map);
    map->SetHidden(SMEnum_bool::string2bool(attrs.getValue(m_tags->hidden)));
    Push(new SMParameterMapBuilder(map));
}

void SMProjectBuilder::StartDataSource() {
    auto* dataSource = new SMDatasource2(m_object, m_object);
    m_object->AppendDataSource(dataSource);
    Push(new SMDatasourceBuilder(dataSource));
}

void SMProjectBuilder::StartSecurityView(const QvXMLAttributes& attrs) {
    auto* view = new SMSecurityView2(m_object, m_object);
    m_object->AppendSecurityView(view);
    view->SetRoleBased(SMEnum_bool::string2bool(attrs.getValue(m_tags->isRoleBased)));
    Push(new SMSecurityViewBuilder(view));
}

void SMProjectBuilder::StartPackage(const QvXMLAttributes& attrs) {
    auto* package = new SMPackage2(m_object, m_object);
    m_object->AppendPackage(package);
    package->SetRoleBased(SMEnum_bool::string2bool(attrs.getValue(m_tags->isRoleBased)));
    Push(new SMPackageBuilder(package));
}

void SMProjectBuilder::StartPackageFile(const QvXMLAttributes& attrs) {
    const int filename = attrs.getIndex(m_tags->filename);
    if (filename < 0) {
        QvLogEvent event(SM_MISUSE, "code", "QvOne", WORDS.module, WORDS.className, "realStartElement", 0,
                         "No filename attribute in packagefile tag.", I18NString());
        event.code = qv::code::EMPTY_PLACEHOLDER;
        event.Log();
        return;
    }
    const QvSmartPtr<SMPackage2> package = new SMPackage2(m_object, m_object);
    package->ReadFromXMLFile(attrs.getValue(m_tags->filepath), attrs.getValue(filename));
    m_object->AppendPackage(package);
}

void SMProjectBuilder::StartSection(const QvXMLAttributes& attrs, const SMEnum_xmltag& tags, I18NString& id, int& version) {
    id = attrs.getValue(tags.id);
    const I18NString text = attrs.getValue(tags.version);
    const QvStringFormat* format = QvStringFormat::GetInstance();
    const bool isNumber = format->_isNumeric(text);
    const long number = isNumber ? format->_string2long(text) : 0;
    if (isNumber) version = static_cast<int>(number);
    if (!isNumber || number > INT_MAX) qv::TellMisread(qv::ValueWitness::What::number, text.utf8());
}

void SMProjectBuilder::realEndElement(const I18NString&, const I18NString& localName, const I18NString&) {
    StopCollecting();
    switch (TagOf(localName)) {
    case Tag::project:
    case Tag::locales:
    case Tag::smnamespacefile:
    case Tag::dataSources:
    case Tag::parameterMaps:
    case Tag::securityViews:
    case Tag::packages:
    case Tag::packagefile: break;
    case Tag::name: m_object->SetName(m_text); break;
    case Tag::locale: m_object->AddLocale(m_text); break;
    case Tag::defaultLocale: m_object->SetDefaultLocale(m_text); break;
    case Tag::property: EndProperty(*m_object); break;
    default: LogUnknownEnd(WORDS.module, WORDS.className, "realEndElement", localName);
    }
}

}  // namespace schema_002_000
