#include "core/qvutils/base/qvdate.h"
#include "core/qvutils/persist/objectfilename.h"
#include "core/qvutils/text/qvmarkedkeytokenizer.h"
#include "core/qvutils/text/qvstringformat.h"
#include "fuzz/models.h"
#include "fuzz/targets.h"
#include "objects/base/smenum_xmltag_002_000.h"

using namespace schema_002_000;

namespace {

void Dates(const I18NString& text, const I18NString& pattern) {
    const QvDate date(text);
    fuzz::Require(QvDate(date.ToString()) == date, "a date comes back from its text");
    const QvStringFormat* format = QvStringFormat::GetInstance();
    QvDate patterned(false);
    format->_string2datetimewithpattern(text, pattern, patterned, nullptr);
    I18NString printed;
    format->_datetime2stringwithpattern(patterned, pattern, printed, nullptr);
    fuzz::Require(patterned.IsSet() || printed.empty(), "an unset date has no text");
}

void Numbers(const I18NString& text) {
    const QvStringFormat* format = QvStringFormat::GetInstance();
    const long number = format->_string2long(text);
    const std::string plain = std::to_string(number);
    fuzz::Require(format->_string2long(I18NString(std::string_view(plain))) == number, "a number comes back from its text");
    if (format->_isNumeric(text)) fuzz::Require(number >= 0, "digits are a number");
    I18NString printed;
    format->_num2string(static_cast<double>(number) / 7, printed);
    fuzz::Require(!printed.empty(), "each number has a text");
}

void FileNames(std::string_view text) {
    const std::string name = qv::ObjectFileName::Of(text);
    fuzz::Require(name.size() <= qv::ObjectFileName::LONGEST && name.find('/') == std::string::npos, "a file name is good for any system");
    const auto back = qv::ObjectFileName::ObjectNameOf(name);
    fuzz::Require(!back || *back == text, "a file name tells the name of its object");
    qv::ObjectFileName::ObjectNameOf(text);
}

void Characters(const I18NString& text, const I18NString& other) {
    const std::string_view bytes = text.utf8();
    const int half = text.size() / 2;
    fuzz::Require(text.substr(0, half) + text.substr(half) == text, "a text is its two halves");
    fuzz::Require(text.find(other) <= text.size(), "a text is found inside of another");
    int walked = 0;
    for (I18NStringIterator at = text.begin(); at != text.end(); ++at) walked += *at >= 0;
    fuzz::Require(walked == text.size(), "a walk meets each character");
    const QvStringFormat* format = QvStringFormat::GetInstance();
    const int order = format->compareIgnoreCase(text, other), reverse = format->compareIgnoreCase(other, text);
    fuzz::Require((order < 0) == (reverse > 0) && (order == 0) == (reverse == 0), "a comparison has a reverse");
    QvMarkedKeyTokenizer tokens(text, "[", other);
    while (tokens.hasMoreTokens()) {
        int start = 0, end = 0;
        const I18NString token = tokens.nextToken(&start, &end);
        fuzz::Require(bytes.substr(static_cast<std::size_t>(start), static_cast<std::size_t>(end - start)) == token.utf8(),
                      "a token stands where it says");
    }
}

}  // namespace

// a text, and a second one to hold it against, parted by NUL
void fuzz::Values(std::string_view input) {
    const std::string_view bytes = TakePart(input);
    const I18NString text(bytes), other(input);
    Dates(text, other);
    Numbers(text);
    FileNames(bytes);
    Characters(text, other);
    const int tag = SMEnum_xmltag::GetInstance()->_string2enum(text);
    Require(tag >= -1, "a tag is known or not");
}
