#include "objects/face/smaccounting_002_000.h"

#include <algorithm>
#include <atomic>
#include <tuple>

#include "core/qvutils/content/contentdiff.h"
#include "core/qvutils/content/contentsums.h"
#include "core/qvutils/content/contenttree.h"
#include "core/qvutils/content/differingcontent.h"
#include "core/qvutils/content/writtencontent.h"
#include "core/qvutils/diag/codes.h"
#include "core/qvutils/diag/heldobjects.h"
#include "core/qvutils/diag/tklerrors.h"
#include "objects/face/smguard_002_000.h"
#include "objects/face/smreading_002_000.h"

namespace schema_002_000 {

namespace {

using qv::ContentLoss;

/** Whether the vocabulary has the name; another name may have the number of one that it has. */
bool IsTag(std::string_view name) {
    const SMEnum_xmltag* tags = SMEnum_xmltag::GetInstance();
    return tags->_enum2string(tags->_string2enum(I18NString(name))).utf8() == name;
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

/** Says where the parser stands, and keeps the files and the objects that it names. */
class Witness {
  public:
    qv::ContentWitness Wished() {
        return {[this] { return Place(); }, [this] { return Object(); }};
    }
    const std::string& File(std::size_t file) const { return m_files[file]; }

  private:
    qv::ContentPlace Place() {
        const SMSourceContext at = SMSourceFrame::Innermost()->Describe();
        if (m_files.empty() || m_files[m_last] != at.file) {
            const auto found = std::find(m_files.begin(), m_files.end(), at.file);
            m_last = static_cast<std::size_t>(found - m_files.begin());
            if (found == m_files.end()) m_files.emplace_back(at.file);
        }
        return {m_last, at.line, at.column};
    }
    QvSmartPtr<IOObject> Object() { return m_held.Hold(SMSourceFrame::Innermost()->Describe().object); }

    std::vector<std::string> m_files;
    std::size_t m_last = 0;
    qv::HeldObjects m_held;
};

SMLoss LossOf(const ContentLoss& found) {
    SMLoss loss;
    loss.elementName = found.element->name;
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

const qv::ContentPlace& PlaceOf(const ContentLoss& found) {
    if (found.kind == ContentLoss::Kind::text) return found.text->place;
    return found.kind == ContentLoss::Kind::attribute ? found.attribute->place : found.element->place;
}

qv::PlaceQuestion QuestionOf(const ContentLoss& found) {
    using What = qv::PlaceQuestion::What;
    const qv::ContentPlace& place = PlaceOf(found);
    const What what = found.kind == ContentLoss::Kind::text        ? What::text
                      : found.kind == ContentLoss::Kind::attribute ? What::attribute
                                                                   : What::element;
    return {what, place.line, place.column, found.attribute ? found.attribute->name : std::string()};
}

/** The read of a model together with the account of what it keeps. */
class Account {
  public:
    Account(SMModelInput input, const SMLoadOptions& options) : m_reading(std::move(input), options), m_options(options) {}

    SMAccountedResult Run() {
        Step([&] {
            m_reading.Input().MakeRepeatable();
            return true;
        });
        if (!m_result.IsDone()) return std::move(m_result);
        const std::string stamp = m_reading.Input().Stamp();
        AddRead();
        if (!m_result.IsDone()) return std::move(m_result);
        Step([&] {
            TakeWritten();
            if (!m_sums.AreBalanced()) FindLosses();
            if (!m_result.losses.empty()) DropUnknownTags();
            if (m_reading.Input().Stamp() == stamp) return true;
            throw TklRuntimeError("the document was changed while it was read; read it again", m_reading.Input().Name());
        });
        if (!m_result.IsDone()) m_result.project = nullptr;
        return std::move(m_result);
    }

  private:
    void Step(const std::function<bool()>& body) {
        SMResult step;
        SMRunGuarded(step, body);
        m_result.status = step.status;
        for (SMDiagnostic& found : step.diagnostics)
            if (found.file.empty()) found.file = m_reading.Input().Name();
        m_result.diagnostics.insert(m_result.diagnostics.end(), step.diagnostics.begin(), step.diagnostics.end());
    }

    void AddRead() {
        qv::SummingSink sink(m_sums, qv::SummingSink::Way::add);
        static_cast<SMLoadResult&>(m_result) = m_reading.ReadContent(sink);
        m_reading.Finish(m_result);
    }

    void TakeWritten() {
        qv::SummingSink sink(m_sums, qv::SummingSink::Way::take);
        TellWritten(*m_result.project, m_options.control, sink);
    }

    void FindLosses() {
        qv::DifferingContent differing(m_sums);
        {
            qv::GivenSink sink(differing);
            TellWritten(*m_result.project, m_options.control, sink);
        }
        Witness witness;
        qv::ContentTreeSink document(
            [&](const auto& element, const auto& given, bool holds) { return differing.IsOfDocument(element, given, holds); },
            witness.Wished());
        qv::ContentTreeSink written([&](const auto& element, const auto&, bool holds) { return differing.IsOfWritten(element, holds); });
        const SMLoadResult again = m_reading.ReadContent(document);
        if (again.status == SMStatus::cancelled) throw SMCancelled();
        if (!again.IsDone()) throw TklRuntimeError("the document cannot be read a second time", m_reading.Input().Name());
        TellWritten(*m_result.project, m_options.control, written);
        std::vector<SMReading::Question> questions;
        qv::FindContentLosses(
            document.Document(), written.Document(), [](std::string_view name) { return IsTag(name); },
            [&](const ContentLoss& found) {
                m_result.losses.push_back(LossOf(found));
                const qv::ContentPlace& place = PlaceOf(found);
                questions.push_back({witness.File(place.file), QuestionOf(found)});
            });
        m_reading.Answer(*again.project, questions);
        for (std::size_t i = 0; i < questions.size(); ++i) Place(m_result.losses[i], questions[i]);
        std::stable_sort(m_result.losses.begin(), m_result.losses.end(), [&](const SMLoss& a, const SMLoss& b) {
            const auto key = [&](const SMLoss& loss) { return std::tie(loss.file, loss.line, loss.column); };
            return key(a) < key(b);
        });
    }

    /** The log tells of elements that nobody knows; each of them is a loss, or stands in one. */
    void DropUnknownTags() {
        std::erase_if(m_result.diagnostics, [](const SMDiagnostic& found) { return found.message.starts_with("Unknown tag"); });
    }

    void Place(SMLoss& loss, const SMReading::Question& answered) const {
        loss.file = answered.file == m_reading.Input().Path() ? m_reading.Input().Name() : answered.file;
        loss.line = answered.place.startLine;
        loss.column = answered.place.startColumn;
        loss.bytes = answered.place.bytes;
    }

    SMReading m_reading;
    const SMLoadOptions& m_options;
    qv::ContentSums m_sums;
    SMAccountedResult m_result;
};

}  // namespace

SMAccountedResult SMLoadModelAccounted(const std::string& path, const SMLoadOptions& options) {
    return Account(SMModelInput::File(path, options), options).Run();
}

SMAccountedResult SMLoadModelBytesAccounted(std::string_view document, const SMLoadOptions& options) {
    return Account(SMModelInput::Bytes(document, options), options).Run();
}

SMDiagnostic SMDiagnosticOf(const SMLoss& loss) {
    SMDiagnostic found;
    found.file = loss.file;
    found.line = loss.line;
    found.column = loss.column;
    found.objectPath = loss.objectPath;
    const std::string element = "<" + loss.elementName + ">";
    switch (loss.kind) {
    case SMLoss::element:
        found.code = qv::code::ELEMENT_NOT_KEPT;
        found.message = element;
        break;
    case SMLoss::attribute:
        found.code = qv::code::ATTRIBUTE_NOT_KEPT;
        found.message = "the attribute " + loss.attributeName + " of " + element;
        break;
    case SMLoss::text:
        found.code = qv::code::TEXT_NOT_KEPT;
        found.message = "the text of " + element;
        break;
    }
    if (!loss.objectPath.empty()) found.message += " in " + loss.objectPath;
    found.message += " is not kept (" + std::to_string(loss.bytes) + (loss.bytes == 1 ? " byte)" : " bytes)");
    return found;
}

}  // namespace schema_002_000
