#include "core/qvutils/content/contenttree.h"

#include <algorithm>
#include <iterator>
#include <utility>

namespace qv {
namespace {

/** What names an object among its siblings: its first name, or an attribute that every document uses so. */
void GiveKey(ContentNode& node, std::vector<std::string>& names) {
    node.key.clear();
    if (!names.empty()) {
        node.key = std::move(names.front());
        node.otherNames.assign(std::make_move_iterator(names.begin() + 1), std::make_move_iterator(names.end()));
        return;
    }
    for (const char* const naming : {"name", "locale", "id"})
        for (const ContentAttribute& attribute : node.attributes)
            if (attribute.name == naming) {
                node.key = attribute.value;
                return;
            }
}

/** What is left of it without what it holds, whose memory stays. */
ContentNode HollowOf(ContentNode& node) {
    ContentNode hollow;
    hollow.name = node.name;
    hollow.digest = node.digest;
    hollow.bareDigest = node.bareDigest;
    hollow.isHollow = true;
    hollow.range = node.range;
    hollow.key = std::move(node.key);
    hollow.otherNames = std::move(node.otherNames);
    hollow.place = node.place;
    hollow.filled = node.filled;
    return hollow;
}

}  // namespace

ContentNode::~ContentNode() {
    std::vector<ContentNode> rest = std::move(children);
    while (!rest.empty()) {
        std::vector<ContentNode> below = std::move(rest.back().children);
        rest.pop_back();
        std::move(below.begin(), below.end(), std::back_inserter(rest));
    }
}

std::string IdOf(const ContentNode& object) {
    const auto valueOf = [](const ContentNode& node, std::string_view name) -> const std::string* {
        const auto found = std::find_if(node.attributes.begin(), node.attributes.end(),
                                        [&](const ContentAttribute& attribute) { return attribute.name == name; });
        return found == node.attributes.end() ? nullptr : &found->value;
    };
    if (const std::string* const id = valueOf(object, "id")) return *id;
    for (auto child = object.children.rbegin(); child != object.children.rend(); ++child) {
        const std::string* const name = IsSimple(*child) && child->name == "property" ? valueOf(*child, "name") : nullptr;
        if (name && *name == "id") return WholeText(*child);
    }
    return {};
}

ContentTreeSink::ContentTreeSink(ContentChoice isChosen, ContentWitness witness)
    : m_isChosen(std::move(isChosen)), m_witness(std::move(witness)), m_open(1) {}

void ContentTreeSink::Level::Clear() {
    node.placeholder.clear();
    node.attributes.clear();
    node.texts.clear();
    node.children.clear();
    node.otherNames.clear();
    node.object = nullptr;
    node.filled = nullptr;
    names.clear();
    startsText = true;
    holds = false;
}

void ContentTreeSink::Start(std::string_view name) {
    m_hasher.Start(name);
    Innermost().startsText = true;
    if (m_depth == m_open.size()) m_open.emplace_back();
    Level& level = m_open[m_depth++];
    level.Clear();
    level.node.name = name;
    level.node.place = m_behindMarkup = Here();
    level.node.range.first = m_started++;
}

void ContentTreeSink::Attribute(std::string_view name, std::string_view value) {
    m_hasher.Attribute(name, value);
    Innermost().node.attributes.push_back({std::string(name), std::string(value), m_behindMarkup});
}

void ContentTreeSink::Forget(std::string_view name, std::string_view value) {
    m_hasher.Forget(name, value);
    std::erase_if(Innermost().node.attributes, [&](const ContentAttribute& attribute) { return attribute.name == name; });
}

void ContentTreeSink::Text(std::string_view text) {
    m_hasher.Text(text);
    if (m_depth == 1) return;
    Level& level = Innermost();
    if (level.startsText)
        level.node.texts.push_back({std::string(text), m_behindMarkup});
    else
        level.node.texts.back().text += text;
    level.startsText = false;
}

void ContentTreeSink::End() {
    const ContentHasher::Digests* const digests = m_hasher.End();
    Level& level = Innermost();
    Level& outer = m_open[--m_depth - 1];
    m_behindMarkup = Here();
    outer.startsText = true;
    ContentNode& node = level.node;
    if (node.name == "name" && !node.texts.empty()) outer.names.push_back(node.texts.front().text);
    node.range.end = m_started;
    if (!digests) return TakeRoot(outer, level);
    if (Finish(level, *digests, outer.node.name)) outer.holds = true;
    if (node.isHollow)
        outer.node.children.push_back(HollowOf(node));
    else
        outer.node.children.push_back(std::move(node));
}

bool ContentTreeSink::IsWhole(const ContentRange& range) const {
    const auto behind = std::upper_bound(m_whole.begin(), m_whole.end(), range.first,
                                         [](std::size_t first, const ContentRange& whole) { return first < whole.first; });
    return behind != m_whole.begin() && std::prev(behind)->Contains(range);
}

/** Makes the node of an element that ends, and tells whether what is around it is chosen for it. */
bool ContentTreeSink::Finish(Level& level, const ContentHasher::Digests& digests, std::string_view outer) {
    ContentNode& node = level.node;
    node.digest = digests.whole;
    node.bareDigest = digests.bare;
    node.isChosen = digests.isGiven || m_isChosen({digests, m_hasher.Given(), level.holds, node.name, outer});
    node.isHollow = !node.isChosen && !node.children.empty() && !IsWhole(node.range);
    GiveKey(node, level.names);
    if (m_witness.filled && !node.filled) node.filled = m_witness.filled();
    if (node.isHollow) return false;
    std::erase_if(node.texts, [](const ContentText& text) { return IsLayout(text.text); });
    if (m_witness.object && node.isChosen && !digests.isGiven) {
        if (!node.object) node.object = m_witness.object();
        for (ContentNode& child : node.children)
            if (!child.object) child.object = node.object;
    }
    return node.isChosen && !digests.isGiven;
}

void ContentTreeSink::Become(std::string_view name) {
    m_hasher.Become(name);
    ContentNode& node = Innermost().node;
    node.placeholder = std::exchange(node.name, std::string(name));
}

void ContentTreeSink::TakeRoot(Level& placeholder, Level& root) const {
    ContentNode& node = placeholder.node;
    if (m_witness.filled) node.filled = m_witness.filled();
    if (m_witness.object) node.object = m_witness.object();  // at the end of the placeholder, its object may be behind the parser
    const auto append = [](auto& to, auto& from) {
        to.insert(to.end(), std::make_move_iterator(from.begin()), std::make_move_iterator(from.end()));
    };
    node.placeholder = std::exchange(node.name, std::move(root.node.name));
    append(node.attributes, root.node.attributes);
    append(node.texts, root.node.texts);
    append(node.children, root.node.children);
    placeholder.names = std::move(root.names);
    placeholder.holds = placeholder.holds || root.holds;
}

void ContentTreeSink::StartPart() {
    m_hasher.StartPart();
    m_parts.push_back({m_depth, Innermost()});
}

void ContentTreeSink::EndPart(bool isWhole) {
    m_hasher.EndPart(isWhole);
    m_depth = m_parts.back().depth;
    if (!isWhole) Innermost() = std::move(m_parts.back().placeholder);
    m_parts.pop_back();
    m_behindMarkup = Here();
}

}  // namespace qv
