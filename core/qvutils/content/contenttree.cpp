#include "core/qvutils/content/contenttree.h"

#include <algorithm>
#include <iterator>
#include <utility>

namespace qv {
namespace {

/** What names an object among its siblings: its first name, or an attribute that every document uses so. */
std::string KeyOf(const ContentNode& node, const std::string& name) {
    if (!name.empty()) return name;
    for (const char* const naming : {"name", "locale", "id"})
        for (const ContentAttribute& attribute : node.attributes)
            if (attribute.name == naming) return attribute.value;
    return {};
}

}  // namespace

ContentTreeSink::ContentTreeSink(const ContentSums& sums, ContentWitness witness)
    : m_sums(sums), m_witness(std::move(witness)), m_open(1) {}

void ContentTreeSink::Start(std::string_view name) {
    m_hasher.Start(name);
    m_open.back().startsText = true;
    Level& level = m_open.emplace_back();
    level.node.name = name;
    level.node.place = m_behindMarkup = Here();
}

void ContentTreeSink::Attribute(std::string_view name, std::string_view value) {
    m_hasher.Attribute(name, value);
    m_open.back().node.attributes.push_back({std::string(name), std::string(value), m_behindMarkup});
}

void ContentTreeSink::Forget(std::string_view name, std::string_view value) {
    m_hasher.Forget(name, value);
    std::erase_if(m_open.back().node.attributes, [&](const ContentAttribute& attribute) { return attribute.name == name; });
}

void ContentTreeSink::Text(std::string_view text) {
    m_hasher.Text(text);
    if (m_open.size() == 1) return;
    Level& level = m_open.back();
    if (level.startsText)
        level.node.texts.push_back({std::string(text), m_behindMarkup});
    else
        level.node.texts.back().text += text;
    level.startsText = false;
}

void ContentTreeSink::End() {
    const auto digest = m_hasher.End();
    Level level = std::move(m_open.back());
    m_open.pop_back();
    m_behindMarkup = Here();
    Level& outer = m_open.back();
    outer.startsText = true;
    ContentNode& node = level.node;
    if (node.name == "name" && outer.name.empty() && !node.texts.empty()) outer.name = node.texts.front().text;
    if (!digest) return Become(outer, std::move(level));
    if (m_sums.IsBalanced(*digest)) return;
    std::erase_if(node.texts, [](const ContentText& text) { return IsLayout(text.text); });
    node.digest = *digest;
    node.key = KeyOf(node, level.name);
    if (m_witness.object) node.object = m_witness.object();
    outer.node.children.push_back(std::move(node));
}

void ContentTreeSink::Become(Level& placeholder, Level root) {
    ContentNode& node = placeholder.node;
    const auto append = [](auto& to, auto& from) {
        to.insert(to.end(), std::make_move_iterator(from.begin()), std::make_move_iterator(from.end()));
    };
    node.name = std::move(root.node.name);
    append(node.attributes, root.node.attributes);
    append(node.texts, root.node.texts);
    append(node.children, root.node.children);
    placeholder.name = std::move(root.name);
}

void ContentTreeSink::StartPart() {
    m_hasher.StartPart();
    m_parts.push_back({m_open.size(), m_open.back().node});
}

void ContentTreeSink::EndPart(bool isWhole) {
    m_hasher.EndPart(isWhole);
    m_open.resize(m_parts.back().depth);
    if (!isWhole) m_open.back().node = std::move(m_parts.back().placeholder);
    m_parts.pop_back();
    m_behindMarkup = Here();
}

}  // namespace qv
