#pragma once

#include "core/qvutils/io/qvxmlformattarget.h"
#include "core/qvutils/xml/qvsax2printhandler.h"

namespace schema_002_000 {

/** The text that `print(handler, target)` prints, without an XML declaration. */
template <class Print>
I18NString SMPrintToString(Print print) {
    I18NString text;
    QvStringWriter writer(text);
    QvSAX2PrintHandler handler("UTF-8", false, writer, true);
    print(&handler, writer);
    return text;
}

}  // namespace schema_002_000
