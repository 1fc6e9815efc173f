#pragma once

#include <cstddef>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "core/qvutils/base/smapi.h"
#include "core/qvutils/diag/qvlogevent.h"

class IOObject;
class TklRuntimeError;

enum class SMSeverity { error, warning, note };

/** One finding about a model, ready to show. */
struct SM_API SMDiagnostic {
    /** Stable word for programs (see codes.h), empty for events of the library's log. */
    std::string code;
    SMSeverity severity = SMSeverity::error;
    std::string file;
    /** From 1; 0 when not known. */
    long line = 0, column = 0;
    /** The object it is about (`IOObject::getPath`), shortened beyond 1,000 bytes, empty when there is none. */
    std::string objectPath;
    std::string message;
};

/** Where a parse stands. `object` is the innermost model object under construction; it is borrowed and may be null. */
struct SM_API SMSourceContext {
    std::string_view file;
    long line = 0, column = 0;
    std::string_view element;
    const IOObject* object = nullptr;
};

/** Implemented by content handlers that know which object the parse is filling. */
class SM_API SMObjectLocator {
  public:
    virtual ~SMObjectLocator() = default;
    virtual const IOObject* InnermostObject() const = 0;
};

/** Takes the events of the log. `context` is null outside a parse; its texts are borrowed for the time of the call. */
class SM_API SMLogSink {
  public:
    virtual ~SMLogSink() = default;
    virtual void Take(const QvLogEvent& event, const SMSourceContext* context) = 0;
};

/** Puts a sink in force for the calling thread as long as it lives; scopes nest. It borrows the sink. */
class SM_API SMLogScope {
  public:
    explicit SMLogScope(SMLogSink& sink);
    ~SMLogScope();
    SMLogScope(const SMLogScope&) = delete;
    SMLogScope& operator=(const SMLogScope&) = delete;

  private:
    SMLogSink* m_outer;
};

/** Replaces the sink of threads without a scope, standard error at the start; null restores that. Borrowed. Returns the one before. */
SM_API SMLogSink* SetDefaultLogSink(SMLogSink* sink);

/** The sink in force for the calling thread: that of its innermost scope, else the default. */
SM_API SMLogSink& CurrentLogSink();

/** Level 1 is an error, 3 a note, all else a warning. */
SM_API SMSeverity SeverityOfLevel(LOG_LEVEL level);

/**
 * "file:line:col: severity[code] message [object path]", leaving out what is not known, and the path when the message names it; a
 * colon instead of a code that there is not. Always one line: line ends become blanks.
 */
SM_API std::string FormatDiagnostic(const SMDiagnostic& diagnostic);

/** The innermost place of a parse on the calling thread, or null. Kept by the parser for the time of a parse. */
class SM_API SMSourceFrame {
  public:
    SMSourceFrame();
    virtual ~SMSourceFrame();
    SMSourceFrame(const SMSourceFrame&) = delete;
    SMSourceFrame& operator=(const SMSourceFrame&) = delete;
    /** Filled on demand, so that a parse without events pays nothing. */
    virtual SMSourceContext Describe() const = 0;
    static const SMSourceFrame* Innermost();

  private:
    SMSourceFrame* m_outer;
};

/**
 * Collects events as diagnostics. Objects are remembered (shared, with their ancestors) and their paths resolved by `Finish`,
 * when names are known; so they live at least until then.
 */
class SM_API SMDiagnosticCollector : public SMLogSink {
  public:
    /** More events than `most` are counted only, and a last diagnostic tells how many there are, where the first of them was. */
    explicit SMDiagnosticCollector(std::size_t most = std::size_t(-1));
    ~SMDiagnosticCollector() override;
    void Take(const QvLogEvent& event, const SMSourceContext* context) override;
    void Add(SMDiagnostic diagnostic);
    void Add(const TklRuntimeError& error);
    /** Resolves the object paths and hands the diagnostics over, in the order of their coming. */
    std::vector<SMDiagnostic> Finish();

  private:
    struct Entry;
    struct Held;
    void Count(const QvLogEvent& event, const SMSourceContext* context);

    std::size_t m_most, m_unlisted = 0;
    SMDiagnostic m_firstUnlisted;
    std::vector<Entry> m_entries;
    std::unique_ptr<Held> m_held;
};
