#include "objects/base/smrow_002_000.h"

#include "objects/base/smxmlobject2_002_000.h"

namespace schema_002_000 {

namespace {

bool BeginsWithStartTag(std::string_view text, std::string_view tag) {
    if (text.size() < tag.size() + 2 || text[0] != '<' || text.substr(1, tag.size()) != tag) return false;
    const char next = text[tag.size() + 1];
    return next == '>' || next == '/' || next == ' ' || next == '\t' || next == '\n' || next == '\r';
}

}  // namespace

void SMRowWriter::InnerXml(const QvULString& column, const SMXMLObject2* kept) {
    Text(column, InnerXmlOf(kept));
}

void SMRowWriter::WholeXml(const QvULString& column, const SMXMLObject2* kept) {
    Text(column, kept ? I18NString(kept->buffer.view()) : I18NString());
}

QvSmartPtr<SMXMLObject2> KeptXmlOf(const IOParameter& row, const QvULString& tag) {
    const I18NString text = TextOf(row, tag);
    if (text.empty()) return nullptr;
    return new SMXMLObject2(tag, text, !BeginsWithStartTag(text.utf8(), tag.utf8()));
}

QvSmartPtr<SMXMLObject2> WholeXmlOf(const IOParameter& row, const QvULString& tag) {
    const I18NString text = TextOf(row, tag);
    if (text.empty()) return nullptr;
    return new SMXMLObject2(tag, text, false);
}

QvSmartPtr<IOParameter> IfPresent(const IOParameter& row, const QvULString& key) {
    if (!row.HasKey(key)) return nullptr;
    QvSmartPtr<IOParameter> value = row.GetByName(key);
    if (value && value->IsNull()) return nullptr;
    return value;
}

void ReadIfPresent(const IOParameter& row, const QvULString& key, I18NString& field) {
    if (const auto value = IfPresent(row, key)) field = value->GetQvStringValue();
}

void ReadIfPresent(const IOParameter& row, const QvULString& key, QvULString& field) {
    if (const auto value = IfPresent(row, key)) field = value->GetQvULStringValue();
}

void ReadIfPresent(const IOParameter& row, const QvULString& key, int& field) {
    if (const auto value = IfPresent(row, key)) field = static_cast<int>(value->GetLongValue());
}

void ReadIfPresent(const IOParameter& row, const QvULString& key, long& field) {
    if (const auto value = IfPresent(row, key)) field = value->GetLongValue();
}

void ReadIfPresent(const IOParameter& row, const QvULString& key, bool& field) {
    if (const auto value = IfPresent(row, key)) field = value->GetBoolValue();
}

void ReadKeptXmlIfPresent(const IOParameter& row, const QvULString& tag, QvSmartPtr<SMXMLObject2>& field) {
    if (!IfPresent(row, tag)) return;
    if (QvSmartPtr<SMXMLObject2> kept = KeptXmlOf(row, tag)) field = std::move(kept);
}

void LogReadFailure(const IOParameter& row, const SMLogWords& words, const std::exception& failure) {
    SMLog(SM_FAILURE, words, "constructFromIOParameter", I18NString("Error reading object. Message: ") + failure.what(),
          I18NString("Probably a missing parameter: ") + row.toString(I18NString()));
}

IOHashParam* AddHash(IOHashParam& params, const QvULString& key) {
    auto* hash = new IOHashParam();
    params.insertOrReplace(key, hash);
    return hash;
}

}  // namespace schema_002_000
