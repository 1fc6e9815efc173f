#include "core/qvutils/diag/diagnostics.h"

#include "core/qvutils/diag/codes.h"
#include "core/qvutils/diag/heldobjects.h"
#include "core/qvutils/diag/place.h"
#include "core/qvutils/diag/tklerrors.h"
#include "core/qvutils/persist/ioobject.h"
#include "core/qvutils/text/shortened.h"

#include <atomic>
#include <cstdio>
#include <utility>

namespace {

thread_local SMLogSink* t_sink = nullptr;
thread_local SMSourceFrame* t_frame = nullptr;
std::atomic<SMLogSink*> g_defaultSink{nullptr};

std::string MessageOf(const QvLogEvent& event) {
    std::string message(event.message.utf8());
    if (!event.detail.empty()) message.append(": ").append(event.detail.utf8());
    return message;
}

SMDiagnostic DiagnosticOf(const QvLogEvent& event, const SMSourceContext* context) {
    SMDiagnostic diagnostic;
    diagnostic.code = event.code;
    diagnostic.severity = SeverityOfLevel(event.level);
    diagnostic.message = MessageOf(event);
    if (context) {
        diagnostic.file = context->file;
        diagnostic.line = context->line;
        diagnostic.column = context->column;
    }
    return diagnostic;
}

/** One line an event. The object's path is left out: in the middle of a parse it may not be known, and asking may log again. */
class StandardErrorSink : public SMLogSink {
  public:
    void Take(const QvLogEvent& event, const SMSourceContext* context) override {
        const std::string line = FormatDiagnostic(DiagnosticOf(event, context)) + '\n';
        std::fwrite(line.data(), 1, line.size(), stderr);
    }
};

class DroppingSink : public SMLogSink {
  public:
    void Take(const QvLogEvent&, const SMSourceContext*) override {}
};

const char* WordOf(SMSeverity severity) {
    switch (severity) {
    case SMSeverity::error: return "error";
    case SMSeverity::warning: return "warning";
    case SMSeverity::note: return "note";
    }
    return "error";
}

}  // namespace

std::string qv::QuietPathOf(const IOObject& object) {
    constexpr std::size_t LONGEST = 1'000;
    DroppingSink quiet;
    const SMLogScope scope(quiet);
    try {
        I18NString path;
        for (const IOObject* at = &object; at; at = at->parent) {
            at->getPath(path);
            const bool isNamed = !path.utf8().ends_with(".().()") && !path.utf8().ends_with("[]");
            if (isNamed) return Shortened(path.utf8(), LONGEST);
        }
        object.getPath(path);
        return Shortened(path.utf8(), LONGEST);
    } catch (const std::exception&) {
        return {};
    }
}

SMLogScope::SMLogScope(SMLogSink& sink) : m_outer(std::exchange(t_sink, &sink)) {}
SMLogScope::~SMLogScope() {
    t_sink = m_outer;
}

SMLogSink* SetDefaultLogSink(SMLogSink* sink) {
    return g_defaultSink.exchange(sink, std::memory_order_acq_rel);
}

SMLogSink& CurrentLogSink() {
    static StandardErrorSink& standardError = *new StandardErrorSink;  // never destroyed: destructors log too
    if (t_sink) return *t_sink;
    SMLogSink* const sink = g_defaultSink.load(std::memory_order_acquire);
    return sink ? *sink : standardError;
}

SMSeverity SeverityOfLevel(LOG_LEVEL level) {
    return level == 1 ? SMSeverity::error : level == 3 ? SMSeverity::note : SMSeverity::warning;
}

namespace {

/** Whether a text has the path, and not only as the beginning or the end of a longer one. */
bool Names(std::string_view text, std::string_view path) {
    for (std::size_t at = text.find(path); at != std::string_view::npos; at = text.find(path, at + 1)) {
        const std::string_view behind = text.substr(at + path.size());
        const bool isWithin = at > 0 && text[at - 1] == '.';
        if (!isWithin && !behind.starts_with(".[") && !behind.starts_with(".(")) return true;
    }
    return false;
}

/** A diagnostic is one line, whatever stands in names and exceptions, and wherever it is shown. */
void BlankLineEnds(std::string& text) {
    for (char& c : text)
        if (c == '\n' || c == '\v' || c == '\f' || c == '\r') c = ' ';
    for (const std::string_view end : {"\xC2\x85", "\xE2\x80\xA8", "\xE2\x80\xA9"})
        for (std::size_t at = 0; (at = text.find(end, at)) != std::string::npos;) text.replace(at, end.size(), " ");
}

}  // namespace

std::string FormatDiagnostic(const SMDiagnostic& diagnostic) {
    std::string text = qv::PlaceText(diagnostic.file, diagnostic.line, diagnostic.column);
    if (!text.empty()) text += ": ";
    text.append(WordOf(diagnostic.severity));
    const bool isCoded = diagnostic.code.starts_with("SM");
    text.append(isCoded ? "[" + diagnostic.code + "] " : ": ").append(diagnostic.message);
    const std::string path = qv::Shortened(diagnostic.objectPath);
    if (!path.empty() && !Names(diagnostic.message, path)) text.append(" [").append(path).append("]");
    BlankLineEnds(text);
    return text;
}

SMSourceFrame::SMSourceFrame() : m_outer(std::exchange(t_frame, this)) {}
SMSourceFrame::~SMSourceFrame() {
    t_frame = m_outer;
}
const SMSourceFrame* SMSourceFrame::Innermost() {
    return t_frame;
}

struct SMDiagnosticCollector::Entry {
    SMDiagnostic diagnostic;
    QvSmartPtr<IOObject> object;
};

struct SMDiagnosticCollector::Held : qv::HeldObjects {};

SMDiagnosticCollector::SMDiagnosticCollector(std::size_t most) : m_most(most), m_held(std::make_unique<Held>()) {}
SMDiagnosticCollector::~SMDiagnosticCollector() = default;

void SMDiagnosticCollector::Take(const QvLogEvent& event, const SMSourceContext* context) {
    if (m_entries.size() < m_most)
        m_entries.push_back({DiagnosticOf(event, context), m_held->Hold(context ? context->object : nullptr)});
    else
        Count(event, context);
}

void SMDiagnosticCollector::Count(const QvLogEvent& event, const SMSourceContext* context) {
    if (m_unlisted++ == 0) {
        m_firstUnlisted = DiagnosticOf(event, context);
        m_firstUnlisted.code = qv::code::TOO_MANY_FINDINGS;
        m_firstUnlisted.severity = SMSeverity::warning;
    }
    if (SeverityOfLevel(event.level) == SMSeverity::error) m_firstUnlisted.severity = SMSeverity::error;
}

void SMDiagnosticCollector::Add(SMDiagnostic diagnostic) {
    m_entries.push_back({std::move(diagnostic), nullptr});
}

void SMDiagnosticCollector::Add(const TklRuntimeError& error) {
    SMDiagnostic diagnostic;
    diagnostic.code = error.code();
    diagnostic.message = error.message();
    diagnostic.file = error.file();
    diagnostic.line = error.line();
    diagnostic.column = error.column();
    Add(std::move(diagnostic));
}

std::vector<SMDiagnostic> SMDiagnosticCollector::Finish() {
    if (m_entries.empty() && m_unlisted == 0) return {};  // what is done and has nothing to tell must not fail for want of memory
    std::vector<SMDiagnostic> diagnostics;
    diagnostics.reserve(m_entries.size());
    for (Entry& entry : m_entries) {
        if (entry.object) entry.diagnostic.objectPath = qv::QuietPathOf(*entry.object);
        diagnostics.push_back(std::move(entry.diagnostic));
    }
    if (m_unlisted > 0) {
        m_firstUnlisted.message = std::to_string(m_unlisted) + " more events are not listed";
        diagnostics.push_back(std::move(m_firstUnlisted));
    }
    m_unlisted = 0;
    m_entries.clear();
    m_held = std::make_unique<Held>();
    return diagnostics;
}
