#pragma once

#include <list>

#include "core/qvutils/text/i18nstring.h"
#include "objects/base/smenums_002_000.h"

namespace schema_002_000 {

/** The references of a security view that fall under one include rule. All its entries are of one kind. */
struct SM_API SMSecurityDefinitionSet2 {
    /** Whether the entries name objects or other views; -1 stands for neither. */
    enum ERefTag : int { refobj = 0, viewref = 1 };

    ERefTag refTag = refobj;
    SMEnum_includeRule::Enum includeRule = SMEnum_includeRule::Enum(-1);
    std::list<I18NString> refs;
};

}  // namespace schema_002_000
