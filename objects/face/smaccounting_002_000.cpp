#include "objects/face/smaccounting_002_000.h"

#include <algorithm>
#include <atomic>
#include <optional>
#include <set>
#include <string>
#include <string_view>
#include <tuple>
#include <unordered_set>

#include "core/qvutils/content/contentdiff.h"
#include "core/qvutils/content/contentsums.h"
#include "core/qvutils/content/contenttree.h"
#include "core/qvutils/content/differingcontent.h"
#include "core/qvutils/content/forkedsink.h"
#include "core/qvutils/content/writtencontent.h"
#include "core/qvutils/diag/codes.h"
#include "core/qvutils/diag/heldobjects.h"
#include "core/qvutils/diag/tklerrors.h"
#include "core/qvutils/diag/valuewitness.h"
#include "core/qvutils/text/shortened.h"
#include "core/qvutils/xml/limits.h"
#include "objects/face/smfindings_002_000.h"
#include "objects/face/smguard_002_000.h"
#include "objects/face/smlossreasons_002_000.h"
#include "objects/face/smmodelwalk_002_000.h"
#include "objects/face/smreading_002_000.h"

namespace schema_002_000 {

namespace {

using qv::ContentLoss;

/** Whether the vocabulary has the name; another name may have the number of one that it has. */
bool IsTag(std::string_view name) {
    const SMEnum_xmltag* tags = SMEnum_xmltag::GetInstance();
    return tags->_enum2string(tags->_string2enum(I18NString(name))).utf8() == name;
}

/**
 * References and locales. Lists write references under names of their own, take the one in a definition without an element of its own,
 * and take entries that stand beside them.
 */
bool IsEntry(const qv::ContentNode& node) {
    static const std::unordered_set<std::string_view> NAMES = {"refobj", "viewref", "hierarchies", "dimensions", "locale"};
    return NAMES.count(node.name) != 0;
}

/** Namespaces and their names: a clash of names moves them from one namespace to another, so that all of them are looked at. */
bool IsOfNamespace(const qv::EndedElement& element) {
    const std::string_view tag = SMEnum_xmltag::GetInstance()->namespace_.utf8();
    return element.name == tag || (element.outer == tag && element.name == "name");
}

/** The name of a namespace that had to get another one than the document has. */
std::string NewNameOf(const qv::ContentNode& node) {
    const auto* const object = node.object ? dynamic_cast<const SMObjectBase*>(&*node.object) : nullptr;
    if (!object || object->GetSMType() != SMEnum_xmltag::Enum::namespace_) return {};
    if (node.name != SMEnum_xmltag::GetInstance()->namespace_.utf8()) return {};
    std::string name = SMNameOf(*object);
    const bool isGiven = name == node.key || std::find(node.otherNames.begin(), node.otherNames.end(), name) != node.otherNames.end();
    return isGiven ? std::string() : name;
}

/** Tells a sink the content of the document that a save would write. */
class WatchedContent final : public qv::WrittenContent {
  public:
    WatchedContent(const SMControl& control, qv::ContentSink& sink) : WrittenContent(sink), m_cancelled(control.cancelled) {}

    void startElement(const I18NString& uri, const I18NString& localName, const I18NString& qName, const QvXMLAttributes& attrs) override {
        if (m_cancelled && m_cancelled->load(std::memory_order_relaxed)) throw SMCancelled();
        WrittenContent::startElement(uri, localName, qName, attrs);
    }

  private:
    const std::atomic<bool>* m_cancelled;
};

void TellWritten(const SMProject2& project, const SMControl& control, qv::ContentSink& sink) {
    SMQuietSink dropped;
    const SMLogScope scope(dropped);
    WatchedContent content(control, sink);
    project.WriteXMLDocument(nullptr, &content, content.Target());
}

const qv::ContentPlace& PlaceOf(const ContentLoss& found) {
    if (found.kind == ContentLoss::Kind::text) return found.text->place;
    return found.kind == ContentLoss::Kind::attribute ? found.attribute->place : found.element->place;
}

/** Whether it is a placeholder, or an attribute or a text of one and not of the root of the file for which that stands. */
bool IsOfPlaceholder(const ContentLoss& found) {
    const qv::ContentNode& element = *found.element;
    return !element.placeholder.empty() && PlaceOf(found).file == element.place.file;
}

using UnknownPlaces = std::set<std::tuple<std::string, long, long>>;

/** Of the start tags that the readers do not know where they stand; places are those of the parser. */
UnknownPlaces UnknownOf(const SMLoadResult& read) {
    UnknownPlaces places;
    for (const SMDiagnostic& event : read.diagnostics)
        if (event.message.starts_with("Unknown tag")) places.emplace(event.file, event.line, event.column);
    return places;
}

bool IsDateOfObject(const ContentLoss& found) {
    return found.kind == ContentLoss::Kind::text && found.element->name == SMEnum_xmltag::GetInstance()->lastChanged.utf8();
}

SMLoss LossOf(const ContentLoss& found) {
    SMLoss loss;
    loss.elementName = IsOfPlaceholder(found) ? found.element->placeholder : found.element->name;
    const qv::ContentNode* holder = found.element;
    switch (found.kind) {
    case ContentLoss::Kind::element:
        loss.kind = SMLoss::element;
        holder = found.outer;
        break;
    case ContentLoss::Kind::attribute:
        loss.kind = SMLoss::attribute;
        loss.attributeName = found.attribute->name;
        loss.value = found.attribute->value;
        if (IsOfPlaceholder(found) && (loss.attributeName == "id" || loss.attributeName == "name"))
            loss.why = "what the placeholder stands for does not say so";
        break;
    case ContentLoss::Kind::text:
        loss.kind = SMLoss::text;
        loss.value = found.text->text;
        break;
    }
    if (found.instead) loss.instead = *found.instead;
    if (holder && holder->object) loss.objectPath = qv::QuietPathOf(*holder->object);
    return loss;
}

qv::PlaceQuestion QuestionOf(const ContentLoss& found) {
    using What = qv::PlaceQuestion::What;
    const qv::ContentPlace& place = PlaceOf(found);
    const What what = found.kind == ContentLoss::Kind::text        ? What::text
                      : found.kind == ContentLoss::Kind::attribute ? What::attribute
                                                                   : What::element;
    qv::PlaceQuestion question{what, place.line, place.column, {}};
    if (found.kind == ContentLoss::Kind::attribute) {
        question.name = found.attribute->name;
        question.bytes = question.name.size() + std::string_view("=\"\"").size() + found.attribute->value.size();  // as a tag would have it
    }
    return question;
}

/** Counts what is misread. */
struct MisreadCount final : qv::ValueWitness {
    void Tell(What, std::string_view, std::string_view) override { ++count; }
    std::size_t count = 0;
};

template <class T>
auto PlaceKey(const T& told) {
    return std::tie(told.file, told.line, told.column);
}

template <class T>
void SortByPlace(std::vector<T>& told) {
    std::stable_sort(told.begin(), told.end(), [](const T& a, const T& b) { return PlaceKey(a) < PlaceKey(b); });
}

/** The read of a model together with the account of what it keeps. */
class Account {
  public:
    enum class Scope { losses, findingsToo };

    Account(SMModelInput input, const SMLoadOptions& options, Scope scope = Scope::losses)
        : m_reading(std::move(input), options), m_options(options), m_scope(scope) {}

    SMCheckResult Run() {
        Step([&] {
            m_reading.Input().MakeRepeatable();
            return true;
        });
        if (!m_result.IsDone()) return std::move(m_result);
        const std::string stamp = m_reading.Input().Stamp();
        const std::size_t misread = ReadFirst();
        if (!m_result.IsDone()) return std::move(m_result);
        Step([&] {
            RequireFewEvents();
            RequireFew(misread, " values cannot be read");
            TakeWritten();
            m_keepsAll = m_sums.AreCovered();
            if (m_scope == Scope::findingsToo) m_findings.emplace(m_result, m_options);
            if (!m_keepsAll || (m_findings && (misread != 0 || !m_findings->AreNone()))) ReadAgain();
            SMDropToldEvents(m_result);
            if (m_reading.Input().Stamp() == stamp) return true;
            throw TklRuntimeError("the document was changed while it was read; read it again", m_reading.Input().Name());
        });
        if (!m_result.IsDone()) DropAll();
        return std::move(m_result);
    }

  private:
    /** But what tells why. */
    void DropAll() {
        m_result.project = nullptr;
        m_result.losses.clear();
        m_result.findings.clear();
        m_result.dangling.clear();
        if (!m_result.diagnostics.empty() && m_result.diagnostics.back().code == qv::code::TOO_MANY_FINDINGS)
            m_result.diagnostics.erase(m_result.diagnostics.begin(), std::prev(m_result.diagnostics.end()));
    }

    void RequireFewEvents() const {
        if (m_result.diagnostics.empty() || m_result.diagnostics.back().code != qv::code::TOO_MANY_FINDINGS) return;
        const SMDiagnostic& beyond = m_result.diagnostics.back();
        FailOfTooMany("reading logs more events than are to be listed", beyond);
    }
    void RequireFew(std::size_t count, const char* what) const {
        if (count > m_options.limits.findings) FailOfTooMany(std::to_string(count) + what + ", more than are to be listed");
    }
    [[noreturn]] void FailOfTooMany(const std::string& what, const SMDiagnostic& at = {}) const {
        throw qv::LimitError(m_options.limits, &SMXMLLimits::findings, what, at.file, at.line, at.column);
    }

    void Step(const std::function<bool()>& body) {
        SMResult step;
        SMRunGuarded(step, body);
        m_result.status = step.status;
        for (SMDiagnostic& found : step.diagnostics)
            if (found.file.empty()) found.file = m_reading.Input().Name();
        m_result.diagnostics.insert(m_result.diagnostics.end(), step.diagnostics.begin(), step.diagnostics.end());
    }

    /** How many values were misread. */
    std::size_t ReadFirst() {
        qv::SummingSink sink(m_sums, qv::SummingSink::Way::add);
        std::optional<MisreadCount> misread;
        if (m_scope == Scope::findingsToo) misread.emplace();
        static_cast<SMLoadResult&>(m_result) = m_reading.ReadContent(sink);
        m_reading.Finish(m_result);
        return misread ? misread->count : 0;
    }

    void TakeWritten() {
        qv::SummingSink sink(m_sums, qv::SummingSink::Way::take);
        TellWritten(*m_result.project, m_options.control, sink);
    }

    /** For the places of all that is told. */
    void ReadAgain() {
        qv::WantedContent wanted;
        do wanted = TellPlaces(wanted);
        while (!wanted.IsNone());
    }

    /** Gives what the account has to know with all that is in it before it can tell anything. */
    qv::WantedContent TellPlaces(const qv::WantedContent& known) {
        static const std::unordered_set<std::string> NONE;
        SMReadWitness witness;
        SMFindingPlaces places(witness, m_findings ? m_findings->Texts() : NONE);
        std::vector<SMReading::Question> questions;
        qv::WantedContent wanted = known;
        const SMLoadResult again = m_keepsAll ? Reread(places) : FindLosses(witness, places, questions, wanted);
        if (!wanted.IsNone()) return wanted;
        if (m_findings)
            for (SMModelFindings::Placed& placed : m_findings->Place(places, witness)) {
                m_result.findings.push_back(std::move(placed.finding));
                questions.push_back(std::move(placed.question));
            }
        m_reading.Answer(*m_result.project, questions);
        PutPlaces(questions);
        return wanted;
    }

    /** What it gives takes the place of the model that was read first: memory holds one of them. */
    SMLoadResult Reread(qv::ContentSink& sink) {
        m_result.project = nullptr;
        SMLoadResult again = m_reading.ReadContent(sink);
        if (again.status == SMStatus::cancelled) throw SMCancelled();
        if (!again.IsDone()) throw TklRuntimeError("the document cannot be read a second time", m_reading.Input().Name());
        m_result.project = again.project;
        return again;
    }

    /** Gives what it read again, of which `places` are told too; and asks for the places of the losses, unless it wants more. */
    SMLoadResult FindLosses(SMReadWitness& witness, SMFindingPlaces& places, std::vector<SMReading::Question>& questions,
                            qv::WantedContent& wanted) {
        qv::DifferingContent differing(m_sums);
        {
            qv::GivenSink sink(differing);
            TellWritten(*m_result.project, m_options.control, sink);
        }
        const bool hasClash = std::any_of(m_result.diagnostics.begin(), m_result.diagnostics.end(),
                                          [](const SMDiagnostic& event) { return event.code == qv::code::NAME_CLASH; });
        qv::ContentTreeSink document(
            [&](const qv::EndedElement& element) {
                const bool differs = differing.IsOfDocument(element.digests, element.given, element.holds);
                return differs || (hasClash && IsOfNamespace(element));
            },
            witness.ForTree());
        qv::ContentTreeSink written([&](const qv::EndedElement& element) {
            return differing.IsOfWritten(element.digests, element.holds) || (hasClash && IsOfNamespace(element));
        });
        document.KeepWhole(wanted.document);
        written.KeepWhole(wanted.written);
        qv::ForkedSink both(document, places);
        SMLoadResult again = Reread(both);
        TellWritten(*m_result.project, m_options.control, written);
        const UnknownPlaces unknown = UnknownOf(again);
        const auto isKnown = [&](const qv::ContentPlace& place) {
            return unknown.count({witness.File(place.file), place.line, place.column}) == 0;
        };
        qv::ContentModel model{[&](const qv::ContentNode& node) {
                                   return IsTag(node.name) && !places.IsMisread(node) && (unknown.empty() || isKnown(node.place));
                               },
                               [](const qv::ContentNode& node) { return IsEntry(node); },  // a lambda, whose type no library exports
                               nullptr};
        if (hasClash) model.newName = [](const qv::ContentNode& node) { return NewNameOf(node); };
        std::size_t count = 0;
        wanted = qv::FindContentLosses(document.Document(), written.Document(), model, [&](const ContentLoss& found) {
            if (++count > m_options.limits.findings) return;
            m_result.losses.push_back(LossOf(found));
            if (const SMFindingPlaces::Misread* const why = places.ReasonOf(found))
                SMGiveReason(m_result.losses.back(), SMToldMisread(*why));
            else if (IsDateOfObject(found))
                m_result.losses.back().why =
                    "another date or a description behind it, or another name that the object gets, dates the object anew";
            questions.push_back({witness.File(PlaceOf(found).file), QuestionOf(found)});
        });
        RequireFew(count, " parts of the document would not be kept");
        return again;
    }

    void PutPlaces(const std::vector<SMReading::Question>& answered) {
        const std::size_t losses = m_result.losses.size();
        for (std::size_t i = 0; i < losses; ++i) {
            PutPlace(m_result.losses[i], answered[i]);
            m_result.losses[i].bytes = answered[i].place.bytes;
            if (answered[i].place.isDefault && m_result.losses[i].why.empty()) m_result.losses[i].why = "it is a default of the DOCTYPE";
        }
        for (std::size_t i = losses; i < answered.size(); ++i) PutPlace(m_result.findings[i - losses], answered[i]);
        SortByPlace(m_result.losses);
        SortByPlace(m_result.findings);
    }

    template <class T>
    void PutPlace(T& told, const SMReading::Question& answered) const {
        const bool isMain = answered.file.empty() || answered.file == m_reading.Input().Path();
        told.file = isMain ? m_reading.Input().Name() : answered.file;
        told.line = answered.place.startLine;
        told.column = answered.place.startColumn;
    }

    SMReading m_reading;
    const SMLoadOptions& m_options;
    Scope m_scope;
    qv::ContentSums m_sums;
    bool m_keepsAll = false;
    SMCheckResult m_result;
    std::optional<SMModelFindings> m_findings;
};

}  // namespace

SMAccountedResult SMLoadModelAccounted(const std::string& path, const SMLoadOptions& options) {
    return Account(SMModelInput::File(path, options), options).Run();
}

SMAccountedResult SMLoadModelBytesAccounted(std::string_view document, const SMLoadOptions& options) {
    return Account(SMModelInput::Bytes(document, options), options).Run();
}

SMCheckResult SMCheckModel(const std::string& path, const SMLoadOptions& options) {
    return Account(SMModelInput::File(path, options), options, Account::Scope::findingsToo).Run();
}

SMCheckResult SMCheckModelBytes(std::string_view document, const SMLoadOptions& options) {
    return Account(SMModelInput::Bytes(document, options), options, Account::Scope::findingsToo).Run();
}

SMDiagnostic SMDiagnosticOf(const SMLoss& loss) {
    SMDiagnostic found;
    found.file = loss.file;
    found.line = loss.line;
    found.column = loss.column;
    found.objectPath = loss.objectPath;
    const std::string element = "<" + qv::Shortened(loss.elementName) + ">";
    switch (loss.kind) {
    case SMLoss::element:
        found.code = qv::code::ELEMENT_NOT_KEPT;
        found.message = element;
        break;
    case SMLoss::attribute:
        found.code = qv::code::ATTRIBUTE_NOT_KEPT;
        found.message = "the attribute " + qv::Shortened(loss.attributeName) + " of " + element;
        break;
    case SMLoss::text:
        found.code = qv::code::TEXT_NOT_KEPT;
        found.message = "the text of " + element;
        break;
    }
    if (!loss.objectPath.empty()) found.message += " in " + qv::Shortened(loss.objectPath);
    found.message += " is not kept (" + std::to_string(loss.bytes) + (loss.bytes == 1 ? " byte)" : " bytes)");
    if (!loss.why.empty()) found.message += ": " + loss.why;
    return found;
}

}  // namespace schema_002_000
