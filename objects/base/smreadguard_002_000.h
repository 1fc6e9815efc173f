#pragma once

#include "objects/base/smrow_002_000.h"

namespace schema_002_000 {

/**
 * Runs a step of a read that looks into what a context answered. A value of another kind than the one expected there, or a key that
 * is not there, is logged in the class's words, and the step gives false.
 */
template <class Step>
bool ReadGuarded(const SMLogWords& words, const char* method, Step step) {
    try {
        return step();
    } catch (const IOParamException& failure) {
        SMLog(SM_FAILURE, words, method, I18NString("Error reading object. Message: ") + failure.what());
        return false;
    }
}

}  // namespace schema_002_000
