#include "objects/containers/smsectiontypebuilder_002_000.h"

#include "objects/containers/smsectionchildren_002_000.h"
#include "objects/project/smproject2_002_000.h"

namespace schema_002_000 {

using Tag = SMEnum_xmltag::Enum;

template <class Builder, class T>
void SMSectionTypeBuilder::Fill(T* child) {
    child->displayOrder = m_section->TakeDisplayOrder();
    Push(new Builder(child));
}

template <class T>
T* SMSectionTypeBuilder::WithStatus(T* child, const QvXMLAttributes& attrs) const {
    child->SetStatus(EnumOf<SMEnum_status>(attrs.getValue(m_tags->status)));
    return child;
}

void SMSectionTypeBuilder::smtagStartElement(const I18NString& module, const I18NString& className, Tag tag, const QvXMLAttributes& attrs) {
    SMProject2* project = m_section->GetSMProject();
    const auto ns = [&] { return m_section->GetThisOrContainingNamespace(); };
    // a child joins the section at once, but for a namespace: that joins at its end, when its name is known
    const auto added = [&](auto* child, auto add) {
        (m_section->*add)(child);
        return child;
    };
    switch (tag) {
    case Tag::namespace_: {
        const QvSmartPtr<SMNamespace2> child = new SMNamespace2(m_section, project);
        child->displayOrder = m_section->TakeDisplayOrder();
        Push(new SMNamespaceBuilder(child, false));
        break;
    }
    case Tag::folder: Fill<SMFolderBuilder>(added(new SMFolder2(m_section, project), &SMSectionType2::AddFolder)); break;
    case Tag::querySubject:
        Fill<SMQuerySubjectBuilder>(
            WithStatus(added(new SMQuerySubject2(m_section, project, ns()), &SMSectionType2::AddQuerySubject), attrs));
        break;
    case Tag::updateSubject:
        Fill<SMUpdateSubjectBuilder>(added(new SMUpdateSubject2(m_section, project, ns()), &SMSectionType2::AddUpdateSubject));
        break;
    case Tag::dimension:
        Fill<SMDimensionBuilder>(WithStatus(added(new SMDimension2(m_section, project, ns()), &SMSectionType2::AddDimension), attrs));
        break;
    case Tag::calculation:
        Fill<SMCalculationBuilder>(WithStatus(added(new SMCalculation2(m_section, project), &SMSectionType2::AddCalculation), attrs));
        break;
    case Tag::filter: Fill<SMFilterBuilder>(WithStatus(added(new SMFilter2(m_section, project), &SMSectionType2::AddFilter), attrs)); break;
    case Tag::function: Fill<SMFunctionBuilder>(added(new SMFunction2(m_section, project), &SMSectionType2::AddFunction)); break;
    case Tag::shortcut: Fill<SMShortcutBuilder>(added(new SMShortcut2(m_section, project), &SMSectionType2::AddShortcut)); break;
    case Tag::relationship:  // its status is written, but not read: as the format has it
        Fill<SMRelationshipBuilder>(added(new SMRelationship2(m_section, project), &SMSectionType2::AddRelationship));
        break;
    case Tag::relationshipShortcut:
        Fill<SMRelationshipShortcutBuilder>(
            added(new SMRelationshipShortcut2(m_section, project), &SMSectionType2::AddRelationshipShortcut));
        break;
    case Tag::scopeRelationship:
        Fill<SMScopeRelationshipBuilder>(added(new SMScopeRelationship2(m_section, project), &SMSectionType2::AddScopeRelationship));
        break;
    case Tag::smnamespacefile: StartNamespaceFile(attrs); break;
    case Tag::property: StartProperty(attrs); break;
    default: SMNameDescObjectBuilder::smtagStartElement(module, className, tag, attrs);
    }
}

void SMSectionTypeBuilder::StartNamespaceFile(const QvXMLAttributes& attrs) {
    SMProject2* project = m_section->GetSMProject();
    const int filename = attrs.getIndex(m_tags->filename);
    QvSmartPtr<SMNamespace2> ns;
    if (filename < 0) {
        project->m_partFiles.StandsFor(m_tags->namespace_);
        const I18NString name = attrs.getValue(m_tags->name);
        ns = project->FindNamespaceByName(name);
        if (!ns) {
            ns = new SMNamespace2(m_section, project);
            ns->SetId(attrs.getValue(m_tags->id));
            ns->SetNameDontTouchNamespaceMap(name);
            m_section->AddNamespace(ns);
        }
    } else {
        ns = new SMNamespace2(m_section, project);
        ns->ReadFromXMLFile(attrs.getValue(m_tags->filepath), attrs.getValue(filename));
    }
    Push(new SMNamespaceBuilder(ns, false));  // takes the placeholders inside this one
}

void SMSectionTypeBuilder::smtagEndElement(const I18NString& module, const I18NString& className, Tag tag) {
    StopCollecting();
    switch (tag) {
    case Tag::smnamespacefile: break;
    case Tag::property: EndProperty(*m_section); break;
    default: SMNameDescObjectBuilder::smtagEndElement(module, className, tag);
    }
}

}  // namespace schema_002_000
