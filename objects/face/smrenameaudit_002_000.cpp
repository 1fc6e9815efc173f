#include "objects/face/smrenameaudit_002_000.h"

#include <algorithm>
#include <functional>

#include "core/qvutils/diag/tklerrors.h"
#include "core/qvutils/xml/qvneutralhandler.h"
#include "core/qvutils/xml/qvsax2parser.h"
#include "objects/base/smlog_002_000.h"
#include "objects/face/smguard_002_000.h"
#include "objects/project/smprojectdocument_002_000.h"

namespace schema_002_000 {

namespace {

constexpr std::size_t ELEMENTS_PER_TICK = 4'096;
constexpr std::size_t EXCERPT = 120;

using TakeText = std::function<void(std::string_view)>;

void TakeAttributes(const QvXMLAttributes& attrs, const TakeText& take) {
    for (int i = 0; i < attrs.getLength(); ++i) take(attrs.getValue(i).utf8());
}

/** Hands on the texts of a document, in their order. */
class TextReader : public QvNeutralHandler {
  public:
    explicit TextReader(const TakeText& take) : m_take(take) {}
    void characters(const I18NString& text) override { m_take(text.utf8()); }
    void startElement(const I18NString&, const I18NString&, const I18NString&, const QvXMLAttributes& attrs) override {
        TakeAttributes(attrs, m_take);
    }

  private:
    const TakeText& m_take;
};

/** The same, while it builds a model, so that events know their object. */
class TextAndModelReader : public SMProjectBuilder {
  public:
    TextAndModelReader(SMProject2* project, const TakeText& take, const SMControl& control)
        : SMProjectBuilder(project), m_take(take), m_ticker(control, SMProgress::elements, ELEMENTS_PER_TICK) {}
    void characters(const I18NString& text) override {
        SMProjectBuilder::characters(text);
        m_take(text.utf8());
    }
    void startElement(const I18NString& uri, const I18NString& localName, const I18NString& qName, const QvXMLAttributes& attrs) override {
        m_ticker.Add(1);
        SMProjectBuilder::startElement(uri, localName, qName, attrs);
        TakeAttributes(attrs, m_take);
    }

  private:
    const TakeText& m_take;
    SMTicker m_ticker;
};

/** The start of a text, cut between characters. */
std::string Excerpt(std::string_view text) {
    if (text.size() <= EXCERPT) return std::string(text);
    std::size_t end = EXCERPT;
    while (end > 0 && (static_cast<unsigned char>(text[end]) & 0xC0) == 0x80) --end;
    return std::string(text.substr(0, end)) + "...";
}

void Tell(SMLogSink& sink, const std::string& what, std::string_view text) {
    const QvLogEvent event(SM_MISUSE, "code", "QvOne", "smrenameaudit", "SMRenameAudit", "CompareAfter", 0,
                           I18NString(std::string_view(what)), I18NString(std::string_view(Excerpt(text))));
    const SMSourceContext at = SMSourceFrame::Innermost()->Describe();
    sink.Take(event, &at);
}

std::ptrdiff_t OpenBrackets(std::string_view text) {
    return std::count(text.begin(), text.end(), '[');
}

}  // namespace

SMRenameAudit::SMRenameAudit(const std::vector<SMNamespaceRename>& renames) {
    for (const SMNamespaceRename& rename : renames)
        if (rename.oldName != rename.newName) m_newNames.emplace(rename.oldName, rename.newName);
}

const std::string* SMRenameAudit::NewNameOf(std::string_view name) const {
    const auto found = m_newNames.find(name);
    return found == m_newNames.end() ? nullptr : &found->second;
}

std::vector<std::string_view> SMRenameAudit::MentionsIn(std::string_view text) const {
    std::vector<std::string_view> mentions;
    for (std::size_t open = text.find('['); open != std::string_view::npos; open = text.find('[', open + 1)) {
        const std::size_t close = text.find_first_of("[]", open + 1);
        if (close == std::string_view::npos) break;
        if (text[close] == '[' || (open >= 2 && text.substr(open - 2, 2) == "].")) continue;
        const std::string_view name = text.substr(open + 1, close - open - 1);
        const bool isNewName = std::any_of(m_newNames.begin(), m_newNames.end(), [&](const auto& rename) { return rename.second == name; });
        if (isNewName || NewNameOf(name)) mentions.push_back(name);
    }
    return mentions;
}

SMRenameAudit::Verdict SMRenameAudit::Judge(std::string_view before, std::string_view after) const {
    Verdict verdict;
    const std::vector<std::string_view> old = MentionsIn(before);
    if (old.empty()) return verdict;
    verdict.lostBracket = OpenBrackets(after) < OpenBrackets(before);
    const std::vector<std::string_view> now = MentionsIn(after);
    if (old.size() != now.size()) return verdict;  // a mention lost its bracket, so that they do not pair
    for (std::size_t i = 0; i < old.size(); ++i) {
        if (!NewNameOf(old[i]) || now[i] != old[i]) continue;
        const auto& said = verdict.stillNamed;
        if (std::find(said.begin(), said.end(), old[i]) == said.end()) verdict.stillNamed.emplace_back(old[i]);
    }
    return verdict;
}

void SMRenameAudit::ReadBefore(const I18NString& document) {
    m_count = 0;
    const TakeText take = [&](std::string_view text) {
        const std::size_t place = m_count++;
        if (!MentionsIn(text).empty()) m_before.emplace(place, text);
    };
    TextReader reader(take);
    QvSAX2Parser parser;
    parser.setContentHandler(&reader);
    parser.parse(document.c_str(), document.utf8().size());
}

void SMRenameAudit::CompareAfter(const I18NString& document, const std::string& documentName, const SMControl& control) {
    SMLogSink& sink = CurrentLogSink();
    std::size_t count = 0;
    const TakeText take = [&](std::string_view text) {
        const auto before = m_before.find(count++);
        if (before == m_before.end()) return;
        const Verdict verdict = Judge(before->second, text);
        for (const std::string& name : verdict.stillNamed) Tell(sink, "This text still names the namespace '" + name + "'", text);
        if (verdict.lostBracket) Tell(sink, "This text lost a bracket", text);
    };
    SMQuietSink quiet;  // what reading the model logs was told when it was loaded
    const SMLogScope scope(quiet);
    const QvSmartPtr<SMProject2> project = new SMProject2;
    TextAndModelReader reader(project, take, control);
    QvSAX2Parser parser;
    parser.setSourceName(I18NString(std::string_view(documentName)));
    parser.setContentHandler(&reader);
    parser.parse(document.c_str(), document.utf8().size());
    if (count != m_count)
        throw TklRuntimeError("the rename has changed the number of texts, so that they cannot be compared", documentName);
}

}  // namespace schema_002_000
