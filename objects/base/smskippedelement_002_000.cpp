#include "objects/base/smskippedelement_002_000.h"

#include "objects/base/smlog_002_000.h"

namespace schema_002_000 {

SMSkippedElementBuilder::SMSkippedElementBuilder(const I18NString& tag) {
    SMLog(SM_MISUSE, {"smskippedelement", "SMSkippedElementBuilder"}, "realStartElement",
          "Objects of the kind '" + tag + "' are not read: the element is skipped.");
}

}  // namespace schema_002_000
