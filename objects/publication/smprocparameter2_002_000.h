#pragma once

#include "core/qvutils/text/i18nstring.h"
#include "objects/base/smenums_002_000.h"

namespace schema_002_000 {

/** The type of a value that a database function takes or returns. */
class SM_API SMDataColumnProperties2 {
  public:
    SMDataColumnProperties2() = default;
    SMDataColumnProperties2(const SMDataColumnProperties2&) = default;
    SMDataColumnProperties2& operator=(const SMDataColumnProperties2&) = default;
    virtual ~SMDataColumnProperties2() = default;

    SMEnum_datatype::Enum dataType = SMEnum_datatype::Enum(-1);
    int precision = 0;
    int scale = 0;
    int size = 0;
    bool nullable = false;
    /** Of a function's result: whether it has one. */
    bool isPresent = false;
    SMEnum_aggregationRule::Enum aggregationRule = SMEnum_aggregationRule::Enum(-1);
};

/** One parameter of a database function. Copied by value. */
class SM_API SMProcParameter2 {
  public:
    SMProcParameter2() = default;
    SMProcParameter2(const SMProcParameter2&) = default;
    SMProcParameter2& operator=(const SMProcParameter2&) = default;
    virtual ~SMProcParameter2() = default;

    I18NString parameterName;
    I18NString mode;
    SMDataColumnProperties2 properties;
};

}  // namespace schema_002_000
