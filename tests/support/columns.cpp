#include "tests/support/columns.h"

#include "tests/support/contexts.h"

namespace smtest {

std::vector<std::string> ColumnsOf(schema_002_000::SMObjectBase& object) {
    const QvSmartPtr<IOHashParam> attrs = new IOHashParam, history = new IOHashParam;
    object.getAttributes(*attrs, *history);
    return LinesOf(*attrs);
}

}  // namespace smtest
