#pragma once

#include "core/qvutils/text/i18nstring.h"
#include "objects/base/localecompare_002_000.h"

namespace schema_002_000 {

/** What a security view says of the quality of service of one function. Copied by value. */
class SM_API SMQosOverride2 {
  public:
    SMQosOverride2() = default;
    SMQosOverride2(const SMQosOverride2&) = default;
    SMQosOverride2& operator=(const SMQosOverride2&) = default;
    virtual ~SMQosOverride2() = default;

    I18NString functionId;
    I18NString qosLevel;
    SMLocaleMap description;
};

}  // namespace schema_002_000
