#include "core/qvutils/params/ioparameter.h"

namespace {

const char* KindName(int kind) {
    switch (kind) {
    case IOParameter::kindString: return "text";
    case IOParameter::kindFields: return "set of fields";
    case IOParameter::kindLong: return "number";
    case IOParameter::kindBool: return "flag";
    case IOParameter::kindDate: return "date";
    case IOParameter::kindArray: return "sequence";
    case IOParameter::kindHash: return "keyed collection";
    default: return "value of an unknown kind";
    }
}

[[noreturn]] void Refuse(const IOParameter& parameter, const char* wanted) {
    throw IOParamException(std::string("A ") + KindName(parameter.GetKind()) + " was asked for " + wanted + ".");
}

}  // namespace

I18NString IOParameter::GetQvStringValue() const {
    Refuse(*this, "a text");
}

QvULString IOParameter::GetQvULStringValue() const {
    Refuse(*this, "a text");
}

long IOParameter::GetLongValue() const {
    Refuse(*this, "a number");
}

double IOParameter::GetDoubleValue() const {
    Refuse(*this, "a number");
}

bool IOParameter::GetBoolValue() const {
    Refuse(*this, "a flag");
}

QvDate IOParameter::GetDateValue() const {
    Refuse(*this, "a date");
}

QvSmartPtr<IOParameter> IOParameter::GetByName(const QvULString&) const {
    Refuse(*this, "a value by its key");
}

bool IOParameter::HasKey(const QvULString&) const {
    return false;
}

QvSmartPtr<IOParameter> IOParameter::At(int) const {
    Refuse(*this, "a value by its place");
}

int IOParameter::Size() const {
    Refuse(*this, "its size");
}

QvSmartPtr<IOParamIterator> IOParameter::GetIterator() const {
    Refuse(*this, "its values");
}

QvSmartPtr<IOParamPairIterator> IOParameter::GetPairIterator() const {
    Refuse(*this, "its keys and values");
}

void IOParameter::insertOrReplace(const QvULString&, IOParameter*) {
    Refuse(*this, "taking a value under a key");
}

void IOParameter::push_back(IOParameter*) {
    Refuse(*this, "taking a value at its end");
}

void IOParameter::erase(const QvULString&) {
    Refuse(*this, "erasing a key");
}

void IOParameter::clear() {
    Refuse(*this, "clearing");
}
