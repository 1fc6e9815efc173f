#include "objects/base/smlog_002_000.h"

namespace schema_002_000 {

void SMLog(LOG_LEVEL level, const SMLogWords& words, const char* method, const I18NString& message, const I18NString& detail) {
    QvLogEvent(level, "code", "QvOne", words.module, words.className, method, 0, message, detail).Log();
}

}  // namespace schema_002_000
