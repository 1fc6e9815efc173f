#pragma once

// For the sources of sections alone: the making of children, and the headers of their classes.

#include <type_traits>

#include "objects/containers/smfolder2_002_000.h"
#include "objects/containers/smnamespace2_002_000.h"
#include "objects/containers/smsectiontype2_002_000.h"
#include "objects/dimensional/smdimension2_002_000.h"
#include "objects/links/smrelationship2_002_000.h"
#include "objects/links/smrelationshipshortcut2_002_000.h"
#include "objects/links/smscoperelationship2_002_000.h"
#include "objects/links/smshortcut2_002_000.h"
#include "objects/publication/smfunction2_002_000.h"
#include "objects/query/smcalculation2_002_000.h"
#include "objects/query/smfilter2_002_000.h"
#include "objects/query/smquerysubject2_002_000.h"
#include "objects/query/smupdatesubject2_002_000.h"

namespace schema_002_000 {

template <class T>
T* SMSectionType2::Make() {
    if constexpr (std::is_base_of_v<SMQuerySubjectType2, T>)
        return new T(this, m_project, GetThisOrContainingNamespace());
    else
        return new T(this, m_project);
}

template <class T, class Children>
void SMSectionType2::Add(T* child, Children& children) {
    children.Append(child);
    m_displayOrder.Append(child);
}

template <class T, class Children>
T* SMSectionType2::Create(Children& children, const I18NString& name) {
    T* child = Make<T>();
    child->displayOrder = TakeDisplayOrder();
    Add(child, children);
    if constexpr (std::is_base_of_v<SMNamedObject2, T>)
        child->ChangeDefaultName(name);
    else
        child->SetName(name);
    return child;
}

}  // namespace schema_002_000
