#include "core/repository/documents/documentrecorder.h"

#include "core/repository/documents/piececodec.h"

namespace qv {

namespace {

constexpr std::size_t WINDOW_BYTES = 64 * 1024;
/** A list ends behind a digest that begins so, which one in 256 does, within these bounds. */
constexpr std::string_view LAST_OF_LIST = "00";
constexpr std::size_t MIN_LINES = 64, MAX_LINES = 1000;
static_assert(MAX_LINES * (piececodec::DIGEST_SIZE + 1) <= PieceCutter::MAX_BYTES);

}  // namespace

DocumentRecorder::DocumentRecorder(std::unordered_set<std::string> known)
    : m_window(WINDOW_BYTES), m_cutter([this](std::string_view piece) { Enter(0, Keep(piece)); }), m_known(std::move(known)) {
    m_at = m_window.data();
    m_end = m_at + m_window.size();
}

void DocumentRecorder::flush() {
    const std::string_view held(m_window.data(), static_cast<std::size_t>(m_at - m_window.data()));
    m_at = m_window.data();
    m_bytes += static_cast<std::int64_t>(held.size());
    m_cutter.Add(held);
}

void DocumentRecorder::overflow(const char* bytes, std::size_t length) {
    flush();
    m_bytes += static_cast<std::int64_t>(length);
    m_cutter.Add({bytes, length});
}

std::string DocumentRecorder::Keep(std::string_view piece) {
    std::string digest = piececodec::Digest(piece);
    if (m_known.insert(digest).second) m_pieces.push_back({digest, piececodec::Pack(piece), piece.size()});
    return digest;
}

void DocumentRecorder::Enter(std::size_t depth, const std::string& digest) {
    if (depth == m_levels.size()) m_levels.emplace_back();
    Level& level = m_levels[depth];
    level.list += digest + '\n';
    ++level.lines;
    if (level.lines == MAX_LINES || (level.lines >= MIN_LINES && digest.compare(0, LAST_OF_LIST.size(), LAST_OF_LIST) == 0))
        CloseList(depth);
}

void DocumentRecorder::CloseList(std::size_t depth) {
    const std::string list = std::move(m_levels[depth].list);
    m_levels[depth] = {{}, 0, true};
    Enter(depth + 1, Keep(list));
}

const DocumentRoot& DocumentRecorder::Finish() {
    if (m_root) return *m_root;
    flush();
    m_cutter.Finish();
    if (m_levels.empty()) Enter(0, Keep(""));
    std::size_t depth = 0;
    // a level of one piece that was not listed is the top
    for (; m_levels[depth].listed || m_levels[depth].lines > 1; ++depth)
        if (m_levels[depth].lines > 0) CloseList(depth);
    m_root = DocumentRoot{m_levels[depth].list.substr(0, piececodec::DIGEST_SIZE), static_cast<std::int64_t>(depth), m_bytes};
    return *m_root;
}

}  // namespace qv
