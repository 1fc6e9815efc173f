#include "tests/support/values.h"

#include "objects/base/smnamedescobject2_002_000.h"

using namespace schema_002_000;

namespace smtest {

std::string Values::Id() {
    return "id-" + std::to_string(++m_ids);
}

std::string Values::Name(const std::string& what) {
    if (!m_random) return what;
    return "n" + std::to_string(++m_names) + Text(what);
}

std::string Values::Text(const std::string& what) {
    if (!m_random) return what;
    static const char* const PIECES[] = {"a",   "B",  "7",  " ",  "  ", "&", "<",   ">",        "\"",           "'",
                                         "]]>", "\t", "\n", "\r", "[",  "]", "].[", "\xC3\xA9", "\xE6\xBC\xA2", "\xF0\x9F\x98\x80",
                                         "{0}"};
    std::string text;
    for (int piece = Below(9); piece > 0; --piece) text += PIECES[Below(static_cast<int>(std::size(PIECES)))];
    return text;
}

QvDate Values::Date() {
    QvDate date(false);
    if (!m_random)
        date.SetFields(2021, 3, 4, 5, 6, ++m_dates);
    else if (Flag())
        date.SetFields(1970 + Below(99), 1 + Below(12), 1 + Below(28), Below(24), Below(60), Below(60));
    return date;
}

void FillNames(SMNamedObject2& object, Values& values) {
    const std::string tag = SMEnum_xmltag::GetInstance()->_enum2string(object.GetSMType()).c_str();
    object.AddName("en", values.Name(tag + " name").c_str());
    if (values.Flag()) object.AddName("fr", values.Text("nom de " + tag).c_str());
    if (values.Flag()) object.AddName("de-AT", values.Text("Name von " + tag).c_str());
    object.SetQvRef(values.Text("warehouse-" + tag).c_str());
}

void FillTexts(SMNameDescObject2& object, Values& values) {
    FillNames(object, values);
    if (values.Flag()) object.AddDescription("en", values.Text("description").c_str());
    if (values.Flag()) object.AddDescription("fr", values.Text("la description").c_str());
    if (values.Flag()) object.AddScreenTip("en", values.Text("screen tip").c_str());
    if (values.Flag()) object.AddScreenTip("fr", values.Text("le conseil").c_str());
}

void FillIdentity(SMObjectBase& object, Values& values) {
    object.SetId(values.Id().c_str());
    object.SetVersionNo(values.Number(3));
    object.SetLastChangedDate(values.Date());
}

void FillBase(SMObjectBase& object, Values& values) {
    for (int count = values.Count(2); count > 0; --count) {
        const std::string name = values.Name("custom " + std::to_string(count));
        object.SetProperty(name.c_str(), values.Text(count == 1 ? "" : "type").c_str(), values.Text("value").c_str());
    }
    FillIdentity(object, values);
}

}  // namespace smtest
