#include "objects/base/smrow_002_000.h"

namespace schema_002_000 {

QvSmartPtr<IOParameter> IfPresent(const IOParameter& row, const QvULString& key) {
    if (!row.HasKey(key)) return nullptr;
    QvSmartPtr<IOParameter> value = row.GetByName(key);
    if (value && value->IsNull()) return nullptr;
    return value;
}

void LogReadFailure(const IOParameter& row, const SMLogWords& words, const IOParamException& failure) {
    SMLog(SM_FAILURE, words, "constructFromIOParameter", I18NString("Error reading object. Message: ") + failure.what(),
          I18NString("Probably a missing parameter: ") + row.toString(I18NString()));
}

IOHashParam* AddHash(IOHashParam& params, const QvULString& key) {
    auto* hash = new IOHashParam();
    params.insertOrReplace(key, hash);
    return hash;
}

}  // namespace schema_002_000
