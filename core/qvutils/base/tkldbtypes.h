#pragma once

#include "core/qvutils/text/i18nstring.h"

/** Types of database columns. The numbers stand in stores; any int can come from there, named here or not. */
enum class SqlColType : int {
    unknown = 0,
    char_ = 1,
    varchar = 2,
    smallint = 3,
    integer = 4,
    bigint = 5,
    decimal = 6,
    float_ = 7,
    real = 8,
    double_ = 9,
    binary = 10,
    varbinary = 11,
    date = 12,
    time = 13,
    timestamp = 14,
    interval = 15,
    boolean = 16,
    clob = 17,
    blob = 18,
    nchar = 25,
    nvarchar = 26,
    nclob = 27,
};

/** Names of the types of database columns. A singleton without state; any thread may use it. */
class SM_API TklDBTypes {
  public:
    static TklDBTypes* get();

    /** The name in lower case, "unknown" for a number without one. The text lives to the end of the process. */
    const I18NString& getName(SqlColType type) const;

  private:
    TklDBTypes() = default;
};
