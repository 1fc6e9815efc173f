#include "tools/smodel/demopage.h"

#include <algorithm>
#include <clocale>
#include <cstdio>
#include <cstdlib>
#include <cstring>

#include <langinfo.h>

#include "objects/face/smmodelwalk_002_000.h"
#include "tools/smodel/kinds.h"
#include "tools/smodel/terminal.h"

namespace page {

namespace {

constexpr int TREE_LEVELS = 4;
constexpr std::size_t TREE_CHILDREN = 5;
constexpr std::size_t LONGEST_LINE = 110;
constexpr std::size_t LONGEST_BAR = 32;

/** Lines and bars are drawn for eyes only. */
bool Draws() {
    static const bool s_draws = HasColour(stdout) && std::setlocale(LC_CTYPE, "") && std::strcmp(::nl_langinfo(CODESET), "UTF-8") == 0;
    return s_draws;
}

std::string Repeat(const std::string& text, std::size_t count) {
    std::string out;
    while (count-- > 0) out += text;
    return out;
}

std::string Right(const std::string& text, std::size_t width) {
    return (text.size() < width ? std::string(width - text.size(), ' ') : std::string()) + text;
}

std::string Left(const std::string& text, std::size_t width) {
    return text + (text.size() < width ? std::string(width - text.size(), ' ') : std::string());
}

std::string Number(double value, int digits) {
    char text[64];
    std::snprintf(text, sizeof text, "%.*f", digits, value);
    return text;
}

std::string Megabytes(std::size_t bytes) {
    if (bytes < 100'000) return Number(static_cast<double>(bytes) / 1e3, 1) + " kB";
    return Number(static_cast<double>(bytes) / 1e6, 2) + " MB";
}

std::string Cut(std::string_view text) {
    std::string line = Printable(text);
    if (line.size() <= LONGEST_LINE) return line;
    std::size_t end = LONGEST_LINE;
    while (end > 0 && (static_cast<unsigned char>(line[end]) & 0xC0) == 0x80) --end;
    return line.substr(0, end) + "...";
}

/** The start of a line's element: its name, or the line. */
std::string_view ElementOf(std::string_view line) {
    const std::size_t open = line.find('<');
    if (open == std::string_view::npos) return line;
    return line.substr(open, line.find_first_of(" >", open) - open);
}

struct Node {
    std::string kind, name;
    std::size_t below = 0;
    std::vector<std::size_t> children;
};

std::vector<Node> Nodes(const schema_002_000::SMProject2& project) {
    std::vector<Node> nodes;
    std::vector<std::size_t> open;
    schema_002_000::SMForEachObject(project, [&](const schema_002_000::SMObjectBase& object, int depth) {
        open.resize(static_cast<std::size_t>(depth));
        for (const std::size_t ancestor : open) ++nodes[ancestor].below;
        if (!open.empty() && open.size() < TREE_LEVELS) nodes[open.back()].children.push_back(nodes.size());
        open.push_back(nodes.size());
        if (open.size() <= TREE_LEVELS)
            nodes.push_back({schema_002_000::SMKindOf(object), schema_002_000::SMNameOf(object), 0, {}});
        else
            nodes.emplace_back();
    });
    return nodes;
}

std::string Label(const Node& node) {
    std::string label = Paint(stdout, Colour::dim, node.kind);
    if (!node.name.empty()) label += " " + Paint(stdout, Colour::bold, Cut(node.name));
    if (node.children.empty() && node.below > 0) label += Paint(stdout, Colour::dim, ", " + Counted(node.below, "object") + " below");
    return label;
}

void Branch(const std::vector<Node>& nodes, const Node& node, const std::string& margin) {
    const std::size_t shown = std::min(node.children.size(), TREE_CHILDREN), rest = node.children.size() - shown;
    for (std::size_t i = 0; i < shown; ++i) {
        const bool isLast = i + 1 == shown && rest == 0;
        const Node& child = nodes[node.children[i]];
        Print(margin + Paint(stdout, Colour::dim, !Draws() ? "  " : isLast ? "└─ " : "├─ ") + Label(child) + "\n");
        Branch(nodes, child, margin + (!Draws() ? "  " : isLast ? "   " : Paint(stdout, Colour::dim, "│  ")));
    }
    if (rest > 0) Print(margin + Paint(stdout, Colour::dim, (Draws() ? "└─ " : "  ") + ("and " + Grouped(rest) + " more")) + "\n");
}

}  // namespace

void Title(const std::string& path, std::size_t bytes) {
    const std::string rule = Draws() ? "━━ " : "== ";
    Print("\n" + Paint(stdout, Colour::cyan, rule) + Paint(stdout, Colour::bold, Printable(path)) + "  " + Megabytes(bytes) + "\n\n");
}

void Step(const std::string& name, std::chrono::duration<double> time, std::size_t bytes, const std::string& outcome) {
    const double seconds = std::max(time.count(), 1e-9);
    Print("   " + Left(name, 6) + Right(Number(seconds * 1e3, 1), 9) + " ms" +
          Right(Number(static_cast<double>(bytes) / 1e6 / seconds, 1), 9) + " MB/s   " + outcome + "\n");
}

void Kinds(const schema_002_000::SMProject2& project) {
    const std::vector<KindCount> kinds = CountKinds(project);
    std::size_t most = 1, width = 0;
    for (const KindCount& kind : kinds) {
        most = std::max(most, kind.count);
        width = std::max(width, kind.kind.size());
    }
    Print("\n");
    for (const KindCount& kind : kinds) {
        const std::size_t bar = Draws() ? std::max<std::size_t>(1, kind.count * LONGEST_BAR / most) : 0;
        Print("   " + Left(kind.kind, width) + Right(Grouped(kind.count), 11) + (bar ? "  " : "") +
              Paint(stdout, Colour::cyan, Repeat("▇", bar)) + "\n");
    }
}

void Tree(const schema_002_000::SMProject2& project) {
    const std::vector<Node> nodes = Nodes(project);
    Print("\n   " + Label(nodes.front()) + "\n");
    Branch(nodes, nodes.front(), "   ");
}

void Notes(const std::string& heading, const std::vector<std::string>& lines, std::size_t most) {
    if (lines.empty()) return;
    Print("\n   " + Paint(stdout, Colour::yellow, heading) + "\n");
    for (std::size_t i = 0; i < std::min(most, lines.size()); ++i) Print("     " + Cut(lines[i]) + "\n");
    if (lines.size() > most) Print("     and " + Grouped(lines.size() - most) + " more\n");
}

void Differences(const std::vector<LineChange>& changes, std::size_t most) {
    struct Group {
        const LineChange* first;
        std::size_t count;
    };
    std::vector<Group> groups;
    for (const LineChange& change : changes) {
        const auto known = std::find_if(groups.begin(), groups.end(), [&](const Group& group) {
            return group.first->sign == change.sign && ElementOf(group.first->line) == ElementOf(change.line);
        });
        if (known == groups.end())
            groups.push_back({&change, 1});
        else
            ++known->count;
    }
    for (std::size_t i = 0; i < std::min(most, groups.size()); ++i) {
        const LineChange& change = *groups[i].first;
        const Colour colour = change.sign == '-' ? Colour::red : Colour::green;
        std::string line = change.sign + (" " + Cut(change.line.substr(std::min(change.line.find_first_not_of(' '), change.line.size()))));
        line = Right(std::to_string(change.number), 8) + " " + Paint(stdout, colour, line);
        if (groups[i].count > 1) line += Paint(stdout, Colour::dim, "  and " + Grouped(groups[i].count - 1) + " more of its kind");
        Print("   " + line + "\n");
    }
    if (groups.size() > most) Print("     and " + Counted(groups.size() - most, "kind") + " of lines more\n");
}

void Good(const std::string& sentence) {
    Print("\n   " + Paint(stdout, Colour::green, (Draws() ? "✔ " : "") + sentence) + "\n");
}

void Bad(const std::string& sentence) {
    Print("\n   " + Paint(stdout, Colour::red, (Draws() ? "✘ " : "") + sentence) + "\n");
}

void Summary(std::size_t models, std::size_t same) {
    Print("\n" + Paint(stdout, Colour::cyan, Draws() ? "━━ " : "== ") + Counted(models, "model") +
          " taken to a repository and back: " + Grouped(same) + " the same to the byte, " + Grouped(models - same) + " with differences\n");
}

}  // namespace page
