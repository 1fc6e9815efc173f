#include "tools/smodel/terminal.h"

#include <cerrno>
#include <cmath>
#include <cstdlib>
#include <cstring>
#include <map>
#include <tuple>

#include <unistd.h>

#include "tools/smodel/interrupt.h"

namespace {

constexpr std::chrono::milliseconds BETWEEN_UPDATES{100};

const char* CodeOf(Colour colour) {
    switch (colour) {
    case Colour::bold: return "1";
    case Colour::dim: return "2";
    case Colour::red: return "1;31";
    case Colour::yellow: return "1;33";
    case Colour::green: return "32";
    case Colour::cyan: return "36";
    case Colour::none: break;
    }
    return "0";
}

Colour ColourOf(SMSeverity severity) {
    return severity == SMSeverity::error ? Colour::red : severity == SMSeverity::warning ? Colour::yellow : Colour::cyan;
}

/** The diagnostic with its head, up to the severity, in colour. */
std::string Line(std::FILE* stream, const SMDiagnostic& diagnostic) {
    const std::string line = Printable(FormatDiagnostic(diagnostic));
    SMDiagnostic bare = diagnostic;
    bare.message.clear();
    bare.objectPath.clear();
    const std::string head = Printable(FormatDiagnostic(bare));
    return Paint(stream, ColourOf(diagnostic.severity), head) + line.substr(head.size());
}

void Write(std::FILE* stream, const std::string& line) {
    std::fwrite(line.data(), 1, line.size(), stream);
}

/** Events of one kind in one document: all but their place and object is the same. */
using FoldKey = std::tuple<SMSeverity, std::string_view, std::string_view, std::string_view>;

FoldKey KeyOf(const SMDiagnostic& diagnostic) {
    return {diagnostic.severity, diagnostic.code, diagnostic.file, diagnostic.message};
}

int g_outputError = 0;

}  // namespace

bool HasColour(std::FILE* stream) {
    const char* const no = std::getenv("NO_COLOR");
    const char* const terminal = std::getenv("TERM");
    return ::isatty(::fileno(stream)) && !(no && *no) && !(terminal && std::strcmp(terminal, "dumb") == 0);
}

std::string Paint(std::FILE* stream, Colour colour, std::string_view text) {
    if (colour == Colour::none || text.empty() || !HasColour(stream)) return std::string(text);
    return std::string("\x1b[") + CodeOf(colour) + "m" + std::string(text) + "\x1b[0m";
}

void Print(std::string_view text) {
    if (std::fwrite(text.data(), 1, text.size(), stdout) != text.size() && g_outputError == 0) g_outputError = errno;
}

bool FlushOutput() {
    if (std::fflush(stdout) != 0 && g_outputError == 0) g_outputError = errno;
    return g_outputError == 0;
}

bool FinishOutput() {
    if (FlushOutput()) return true;
    Complain(std::string("cannot write standard output: ") + std::strerror(g_outputError));
    return false;
}

void Complain(std::string_view text) {
    Write(stderr, "smodel: " + Paint(stderr, Colour::red, "error: ") + Printable(text) + "\n");
}

std::string Printable(std::string_view text) {
    static const char DIGITS[] = "0123456789abcdef";
    std::string out;
    out.reserve(text.size());
    for (std::size_t i = 0; i < text.size(); ++i) {
        const auto byte = static_cast<unsigned char>(text[i]);
        const bool isC1 = byte == 0xC2 && i + 1 < text.size() && static_cast<unsigned char>(text[i + 1]) < 0xA0;
        const unsigned char control = isC1 ? static_cast<unsigned char>(text[i + 1]) : byte;
        if (byte == '\t')
            out += "\\t";
        else if (byte == '\n')
            out += "\\n";
        else if (byte == '\r')
            out += "\\r";
        else if (byte < 0x20 || byte == 0x7F || isC1)
            out.append("\\x") += {DIGITS[control >> 4], DIGITS[control & 15]};
        else
            out += text[i];
        if (isC1) ++i;
    }
    return out;
}

std::string Field(std::string_view text) {
    std::string doubled;
    for (const char c : text) doubled.append(c == '\\' ? 2 : 1, c);
    return Printable(doubled);
}

std::string Grouped(std::size_t number) {
    std::string digits = std::to_string(number);
    for (std::size_t at = digits.size(); at > 3; at -= 3) digits.insert(at - 3, ",");
    return digits;
}

std::string Counted(std::size_t number, const std::string& noun) {
    return Grouped(number) + " " + noun + (number == 1 ? "" : "s");
}

void PrintDiagnostics(std::FILE* stream, const std::vector<SMDiagnostic>& diagnostics, bool fold) {
    std::map<FoldKey, std::size_t> counts;
    if (fold)
        for (const SMDiagnostic& diagnostic : diagnostics) ++counts[KeyOf(diagnostic)];
    for (const SMDiagnostic& diagnostic : diagnostics) {
        std::string line = Line(stream, diagnostic);
        if (fold) {
            std::size_t& count = counts[KeyOf(diagnostic)];
            if (count == 0) continue;
            if (count > 1) line += Paint(stream, Colour::dim, " (" + Grouped(count) + " times)");
            count = 0;
        }
        Write(stream, line + "\n");
    }
}

ProgressLine::ProgressLine(std::string what)
    : m_what(std::move(what)), m_isTerminal(::isatty(STDERR_FILENO)), m_next(std::chrono::steady_clock::now() + 3 * BETWEEN_UPDATES) {}

ProgressLine::~ProgressLine() {
    if (!m_shown) return;
    Write(stderr, "\r\x1b[K");
    SetProgressShown(false);
}

schema_002_000::SMControl ProgressLine::Control() {
    static const char* const UNITS[] = {"elements", "bytes", "objects"};
    schema_002_000::SMControl control;
    control.cancelled = &Interrupted();
    if (m_isTerminal)
        control.progress = [this](const schema_002_000::SMProgress& progress) {
            using Progress = schema_002_000::SMProgress;
            const std::size_t total = progress.unit == Progress::objects ? m_objects : progress.unit == Progress::bytes ? m_bytes : 0;
            // separate files count too, so that more may be read than the document has
            const bool isPart = m_bytes > 0 && progress.unit == Progress::elements && progress.bytesRead <= m_bytes;
            Show(UNITS[progress.unit], progress.done, total,
                 isPart ? static_cast<double>(progress.bytesRead) / static_cast<double>(m_bytes) : 0);
        };
    return control;
}

void ProgressLine::Show(const char* things, std::size_t done, std::size_t total, double share) {
    const auto now = Clock::now();
    if (m_things != things) {
        if (!m_things.empty()) m_counts[m_things].spent += now - m_begin;
        m_things = things;
        m_begin = now;
    }
    Count& count = m_counts[m_things];
    if (done < count.last) count.earlier += count.last;
    count.last = done;
    done += count.earlier;
    if (total != 0) total += count.earlier;
    if (!m_isTerminal || now < m_next) return;
    m_next = now + BETWEEN_UPDATES;
    m_shown = true;
    SetProgressShown(true);
    std::string line = "\r" + m_what + ": " + Grouped(done) + (total ? " of " + Grouped(total) : "") + " " + things;
    // the first count comes at once, and tells nothing of the speed
    if (const double seconds = std::chrono::duration<double>(count.spent + (now - m_begin)).count(); seconds > 0.05 && done > 0) {
        const double rate = static_cast<double>(done) / seconds;
        line += ", " + Grouped(static_cast<std::size_t>(rate)) + "/s";
        double left = -1;
        if (total > 0) left = static_cast<double>(total) - static_cast<double>(done);
        if (total == 0 && share > 0) left = static_cast<double>(count.last) / share - static_cast<double>(count.last);
        if (left >= 0) line += ", " + Clocked(left / rate) + " left";
    }
    Write(stderr, line + "\x1b[K");
}

std::string Clocked(double seconds) {
    const auto all = static_cast<std::size_t>(std::ceil(seconds));
    const auto twoDigits = [](std::size_t number) { return (number < 10 ? "0" : "") + std::to_string(number); };
    const std::string minutes = all < 3600 ? std::to_string(all / 60) : std::to_string(all / 3600) + ":" + twoDigits(all / 60 % 60);
    return minutes + ":" + twoDigits(all % 60);
}
