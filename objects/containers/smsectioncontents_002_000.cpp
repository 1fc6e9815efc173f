// The part of sections that deals with subjects, dimensions, calculations and filters.
#include "objects/containers/smsectionchildren_002_000.h"
#include "objects/project/smproject2_002_000.h"
#include "objects/query/smdefinition2_002_000.h"
#include "objects/query/smdefinitionquery_002_000.h"

namespace schema_002_000 {

namespace {

const SMLogWords WORDS = {"smsectiontype2", "SMSectionType2"};
const I18NString TAG_EXPRESSION = I18NString::Immortal("expression");

/** Sets the expression of an object; stamps it when the expression is another one. */
template <class T>
void UpdateExpression(T& object, const I18NString& text) {
    if (SMXMLObject2* expression = object.GetExpression()) {
        if (!expression->ChangeInnerXML(text.c_str())) return;
    } else {
        object.SetExpression(new SMXMLObject2(TAG_EXPRESSION, text, true));
    }
    object.SetLastChangedDateToNow();
}

SMDefinition2* DefinitionOf(SMQuerySubject2& subject) {
    if (!subject.GetDefinition()) subject.SetDefinition(new SMDefinition2(&subject, subject.GetSMProject()));
    return subject.GetDefinition();
}

}  // namespace

// ---- find or create

SMQuerySubject2* SMSectionType2::AddOrUpdateQuerySubject(const I18NString& name, const I18NString& description) {
    SMQuerySubject2* subject = GetQuerySubjectByName(name);
    if (!subject) {
        subject = Create<SMQuerySubject2>(querySubjects, name);
        Record(subject);
    }
    subject->SetDescription(description);
    return subject;
}

SMQuerySubject2* SMSectionType2::AddOrUpdateDBQuerySubject(const I18NString& name, const I18NString& description) {
    SMQuerySubject2* subject = AddOrUpdateQuerySubject(name, description);
    SMDefinition2* definition = DefinitionOf(*subject);
    if (!definition->GetDBQuery()) {
        auto* query = new SMDefinition2::DBQuery(definition, m_project);
        query->tableType = SMEnum_tableType::Enum(0);
        definition->SetDBQuery(query);
    }
    return subject;
}

SMQuerySubject2* SMSectionType2::AddOrUpdateMDLQuerySubject(const I18NString& name, const I18NString& description) {
    SMQuerySubject2* subject = AddOrUpdateQuerySubject(name, description);
    SMDefinition2* definition = DefinitionOf(*subject);
    if (!definition->GetModelQuery()) definition->SetModelQuery(new SMDefinition2::ModelQuery(definition, m_project));
    return subject;
}

SMCalculation2* SMSectionType2::AddOrUpdateCalculation(const I18NString& name, const I18NString& expression, SMEnum_usage::Enum usage,
                                                       SMEnum_datatype::Enum datatype, int precision, int scale, int size, bool nullable,
                                                       SMEnum_aggregationRule::Enum regularAggregate,
                                                       SMEnum_aggregationRule::Enum semiAggregate, const I18NString& description) {
    SMCalculation2* calculation = calculations.Find(name.utf8(), *this);
    if (!calculation) calculation = Create<SMCalculation2>(calculations, name);
    calculation->SetBasicProperties(usage, datatype, precision, scale, size, nullable, regularAggregate, semiAggregate);
    calculation->SetDescription(description);
    calculation->ChangeDefaultScreenTip(description);
    UpdateExpression(*calculation, expression);
    Record(calculation);
    return calculation;
}

SMFilter2* SMSectionType2::AddOrUpdateFilter(const I18NString& name, const I18NString& expression) {
    SMFilter2* filter = filters.Find(name.utf8(), *this);
    if (!filter) {
        filter = Make<SMFilter2>();  // no display order number: its place is decided by the next sort
        AddFilter(filter);
        filter->ChangeDefaultName(name);
        filter->SetStatus(SMEnum_status::valid);
    }
    UpdateExpression(*filter, expression);
    return filter;
}

SMDimension2* SMSectionType2::AddOrUpdateDimension(const I18NString& name, const I18NString& description) {
    return AddOrUpdateDimensionType(name, description, SMEnum_dimensionType::regular);
}

SMDimension2* SMSectionType2::AddOrUpdateMeasureDimension(const I18NString& name, const I18NString& description) {
    return AddOrUpdateDimensionType(name, description, SMEnum_dimensionType::measure);
}

SMDimension2* SMSectionType2::AddOrUpdateDimensionType(const I18NString& name, const I18NString& description,
                                                       SMEnum_dimensionType::Enum type) {
    SMDimension2* dimension = GetDimensionByName(name);
    if (!dimension) {
        dimension = Make<SMDimension2>();
        dimension->displayOrder = TakeDisplayOrder();
        auto* definition = new SMDefinition2(dimension, m_project);
        dimension->SetDefinition(definition);
        definition->SetModelQuery(new SMDefinition2::ModelQuery(definition, m_project));
        AddDimension(dimension);
        dimension->ChangeDefaultName(name);
    }
    dimension->SetDescription(description);
    dimension->SetType(type);
    Record(dimension);
    return dimension;
}

// ---- look-ups

SMQuerySubject2* SMSectionType2::GetQuerySubjectById(const I18NString& subjectId) const {
    return querySubjects.FindById(subjectId);
}

SMQuerySubject2* SMSectionType2::GetQuerySubjectByName(const I18NString& name) const {
    return querySubjects.Find(name.utf8(), *this);
}

SMDimension2* SMSectionType2::GetDimensionByName(const I18NString& name) const {
    return dimensions.Find(name.utf8(), *this);
}

SMNamedObject2* SMSectionType2::GetRefObjectByName(const I18NString& name) const {
    if (SMNamedObject2* subject = GetQuerySubjectByName(name)) return subject;
    if (SMNamedObject2* subject = updateSubjects.Find(name.utf8(), *this)) return subject;
    if (SMNamedObject2* dimension = GetDimensionByName(name)) return dimension;
    return GetShortcutByName(name);
}

SMCalculation2* SMSectionType2::GetCalculationBySMID(const I18NString& name) const {
    if (SMCalculation2* calculation = calculations.Find(name.utf8(), *this)) return calculation;
    for (const auto& folder : folders)
        if (SMCalculation2* calculation = folder->GetCalculationBySMID(name)) return calculation;
    for (const auto& ns : namespaces)
        if (SMCalculation2* calculation = ns->GetCalculationBySMID(name)) return calculation;
    return nullptr;
}

void SMSectionType2::GetSMQuerySubjectsByQvRefID(SubjectCollection& subjects, const I18NString& reference) const {
    if (reference.empty() || !querySubjects.FindBySecond(reference.utf8(), *this)) return;
    for (const auto& subject : querySubjects)
        if (subject->GetQvRef() == reference) subjects.push_back(subject);
}

// ---- deletes

void SMSectionType2::DeleteQuerySubjectById(const I18NString& subjectId) {
    SMDeleteById(querySubjects, m_displayOrder, subjectId);
}

void SMSectionType2::DeleteDimensionById(const I18NString& dimensionId) {
    SMDeleteById(dimensions, m_displayOrder, dimensionId);
}

void SMSectionType2::DeleteQuerySubjectWithId(const I18NString& subjectId) {
    if (const SMQuerySubject2* subject = GetQuerySubjectById(subjectId)) {
        m_displayOrder.Detach(querySubjects.Take(subject).get());
        return;
    }
    SMLog(SM_FAILURE, WORDS, "DeleteQuerySubjectWithId", "Failed to find QuerySubject with id " + subjectId + " to delete");
}

}  // namespace schema_002_000
