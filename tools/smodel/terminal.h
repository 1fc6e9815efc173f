#pragma once

#include <chrono>
#include <cstdio>
#include <map>
#include <string>
#include <string_view>
#include <vector>

#include "core/qvutils/diag/diagnostics.h"
#include "objects/face/smoperation_002_000.h"

/** Whether what goes to the stream may bear colours: it is a terminal, and NO_COLOR is not set. */
bool HasColour(std::FILE* stream);

enum class Colour { none, bold, dim, red, yellow, green, cyan };

/** The text, coloured when the stream has colours. */
std::string Paint(std::FILE* stream, Colour colour, std::string_view text);

/** Standard output; failures show at `FinishOutput`. */
void Print(std::string_view text);
/** Brings what was printed out now. False when something did not reach its end, which also shows at `FinishOutput`. */
bool FlushOutput();
/** False, with the reason on standard error, when something printed did not reach its end. */
bool FinishOutput();

/** "smodel: error: ..." on standard error. */
void Complain(std::string_view text);

/** One line of the text, control characters as escapes: a terminal obeys nothing that stands in a model. */
std::string Printable(std::string_view text);
/** The same for a field of a line: a backslash is doubled, so that it is told from an escape. */
std::string Field(std::string_view text);
/** "1,234,567". */
std::string Grouped(std::size_t number);
/** "1 object", "2 objects". */
std::string Counted(std::size_t number, const std::string& noun);

/** One line a diagnostic; `fold` tells those that differ in their place only once, with their number. */
void PrintDiagnostics(std::FILE* stream, const std::vector<SMDiagnostic>& diagnostics, bool fold);

/** A line on standard error that tells how far an operation is, when that is a terminal. */
class ProgressLine {
  public:
    /** `what`: "reading". */
    explicit ProgressLine(std::string what);
    ~ProgressLine();
    ProgressLine(const ProgressLine&) = delete;
    ProgressLine& operator=(const ProgressLine&) = delete;

    /** For an operation that ends before this does; it also ends at a signal. */
    schema_002_000::SMControl Control();
    /** How many objects there are, so that the time left can be told. */
    void SetObjects(std::size_t total) { m_objects = total; }
    /** The same for the bytes of the document that is read or written. */
    void SetBytes(std::size_t total) { m_bytes = total; }
    /** Tells how far it is, where a count that begins again goes on from what it had come to: with how many things a second, and, where
     * `total` is not 0, the time that is left. `share`: how much of all this is, where only that is known. */
    void Show(const char* things, std::size_t done, std::size_t total, double share = 0);

  private:
    using Clock = std::chrono::steady_clock;

    std::string m_what;
    bool m_isTerminal;
    bool m_shown = false;
    std::size_t m_objects = 0, m_bytes = 0;
    Clock::time_point m_next;
    /** What is counted now, and since when. */
    std::string m_things;
    Clock::time_point m_begin;
    struct Count {
        /** What was told last, and what counts had come to that have begun again since. */
        std::size_t last = 0, earlier = 0;
        /** Until other things were counted. */
        Clock::duration spent{};
    };
    std::map<std::string, Count> m_counts;
};

/** "0:07", "2:05:09": at least as much time as is given. */
std::string Clocked(double seconds);
