#include "core/qvutils/content/contentdiff.h"

#include <algorithm>
#include <cctype>
#include <map>
#include <set>
#include <string_view>
#include <utility>

#include "core/qvutils/base/stack.h"

namespace qv {
namespace {

std::string_view Trimmed(std::string_view text) {
    const std::size_t start = text.find_first_not_of(" \t\r\n");
    if (start == std::string_view::npos) return {};
    return text.substr(start, text.find_last_not_of(" \t\r\n") - start + 1);
}

/** A whole number without what does not count: a plus, leading zeros. Empty for other texts. */
std::string_view DigitsOf(std::string_view text) {
    if (text.starts_with('+')) text.remove_prefix(1);
    if (text.empty() || !std::all_of(text.begin(), text.end(), [](char c) { return c >= '0' && c <= '9'; })) return {};
    return text.substr(std::min(text.find_first_not_of('0'), text.size() - 1));
}

/** Whether a value that was read as `written` has lost nothing but its spelling. */
bool IsSameValue(std::string_view value, std::string_view written) {
    value = Trimmed(value);
    written = Trimmed(written);
    if (value == written) return true;
    const std::string_view digits = DigitsOf(value);
    if (!digits.empty() && digits == DigitsOf(written)) return true;
    std::string word(value);
    std::transform(word.begin(), word.end(), word.begin(), [](unsigned char c) { return static_cast<char>(std::tolower(c)); });
    if (written == "true") return word == "true" || word == "1" || word == "yes";
    return written == "false" && (word == "false" || word == "0" || word == "no");
}

std::string WholeText(const ContentNode& node) {
    std::string whole;
    for (const ContentText& text : node.texts) whole += text.text;
    return whole;
}

bool IsSimple(const ContentNode& node) {
    return node.children.empty();
}

const ContentAttribute* AttributeOf(const ContentNode& node, std::string_view name) {
    const auto found = std::find_if(node.attributes.begin(), node.attributes.end(),
                                    [&](const ContentAttribute& attribute) { return attribute.name == name; });
    return found == node.attributes.end() ? nullptr : &*found;
}

/** The name under which a simple element could also stand as an attribute. */
std::string_view FieldName(const ContentNode& node) {
    const ContentAttribute* const name = node.name == "property" ? AttributeOf(node, "name") : nullptr;
    return name ? std::string_view(name->value) : std::string_view(node.name);
}

/** The comparison of one element with the one that was written for it. */
class Comparison {
  public:
    struct Caller {
        const std::function<bool(std::string_view)>& isKnown;
        const std::function<void(const ContentLoss&)>& tell;
    };

    Comparison(const ContentNode& document, const ContentNode& written, const Caller& caller)
        : m_document(document), m_written(written), m_caller(caller) {}

    void Run(const ContentNode* outer) {
        RequireStack();
        MatchChildren();
        CompareAttributes(outer);
        CompareTexts(outer);
        for (const auto& [child, counterpart] : m_pairs) Comparison(*child, *counterpart, m_caller).Run(&m_document);
        for (const ContentNode* child : m_unmatched)
            if (!StandsInAnotherForm(*child)) m_caller.tell({ContentLoss::Kind::element, child, &m_document});
    }

  private:
    using Nodes = std::vector<const ContentNode*>;

    /** Pairs what agrees in `by`, the last with the last: of several where one is taken, readers take the last. */
    template <class Key>
    void Match(Nodes& rest, Key by) {
        std::multimap<decltype(by(m_document)), const ContentNode*> candidates;
        for (const ContentNode* node : rest) candidates.emplace(by(*node), node);
        for (auto at = m_unmatched.rbegin(); at != m_unmatched.rend(); ++at) {
            const auto [first, end] = candidates.equal_range(by(**at));
            if (first == end) continue;
            const auto last = std::prev(end);
            if ((*at)->digest != last->second->digest) m_pairs.emplace_back(*at, last->second);
            candidates.erase(last);
            *at = nullptr;
        }
        std::erase(m_unmatched, nullptr);
        std::set<const ContentNode*> left;
        for (const auto& candidate : candidates) left.insert(candidate.second);
        std::erase_if(rest, [&](const ContentNode* node) { return left.count(node) == 0; });
    }

    /**
     * Of several elements with one key, the first keeps it when the others come back with keys of their own: none of them is gone then,
     * they are as many as before.
     */
    void MatchRenamed(Nodes& rest) {
        using Key = std::pair<std::string_view, std::string_view>;
        std::map<std::string_view, std::ptrdiff_t> surplus;
        std::map<Key, std::size_t> sharing;
        std::multimap<Key, const ContentNode*> candidates;
        for (const ContentNode* node : m_unmatched) {
            ++surplus[node->name];
            ++sharing[{node->name, node->key}];
        }
        for (const ContentNode* node : rest) {
            --surplus[node->name];
            candidates.emplace(Key(node->name, node->key), node);
        }
        std::set<const ContentNode*> taken;
        for (const ContentNode*& node : m_unmatched) {
            const Key key(node->name, node->key);
            const auto first = candidates.lower_bound(key);
            if (node->key.empty() || surplus[node->name] != 0 || first == candidates.end() || first->first != key || sharing[key] == 1)
                continue;
            m_pairs.emplace_back(node, first->second);
            taken.insert(first->second);
            candidates.erase(first);
            node = nullptr;
        }
        std::erase(m_unmatched, nullptr);
        std::erase_if(rest, [&](const ContentNode* node) { return taken.count(node) != 0; });
    }

    void MatchChildren() {
        for (const ContentNode& child : m_document.children) m_unmatched.push_back(&child);
        for (const ContentNode& child : m_written.children) m_added.push_back(&child);
        Match(m_added, [](const ContentNode& node) { return node.digest; });
        Match(m_added, [](const ContentNode& node) { return node.bareDigest; });
        MatchRenamed(m_added);
        Match(m_added, [](const ContentNode& node) { return std::make_pair(std::string_view(node.name), std::string_view(node.key)); });
        Match(m_added, [](const ContentNode& node) { return std::string_view(node.name); });
        std::reverse(m_pairs.begin(), m_pairs.end());
    }

    void CompareAttributes(const ContentNode* outer) {
        for (const ContentAttribute& attribute : m_document.attributes) {
            const ContentAttribute* const written = AttributeOf(m_written, attribute.name);
            if (written ? IsSameValue(attribute.value, written->value) : IsElement(attribute.name, attribute.value)) continue;
            m_caller.tell({ContentLoss::Kind::attribute, &m_document, outer, &attribute, nullptr, written ? &written->value : nullptr});
        }
    }

    void CompareTexts(const ContentNode* outer) {
        const std::string written = WholeText(m_written);
        if (written == WholeText(m_document)) return;
        const bool isValue = m_document.texts.size() == 1 && m_written.texts.size() == 1 && IsSimple(m_document);
        if (isValue && IsSameValue(m_document.texts.front().text, written)) return;
        std::size_t from = 0;
        for (const ContentText& text : m_document.texts) {
            const std::size_t at = isValue ? std::string::npos : written.find(text.text, from);
            if (at != std::string::npos)
                from = at + text.text.size();
            else if (!IsChild(text.text))
                m_caller.tell(
                    {ContentLoss::Kind::text, &m_document, outer, nullptr, &text, isValue ? &m_written.texts.front().text : nullptr});
        }
    }

    /** Whether the written element has the value in an element that the document had not. */
    bool IsElement(std::string_view name, std::string_view value) const {
        return std::any_of(m_added.begin(), m_added.end(), [&](const ContentNode* node) {
            return IsSimple(*node) && FieldName(*node) == name && IsSameValue(value, WholeText(*node));
        });
    }

    /** Whether the value stands in an element of another name that the document had not; each stands for one value. */
    bool IsChild(std::string_view text) {
        const auto found = std::find_if(m_added.begin(), m_added.end(),
                                        [&](const ContentNode* node) { return IsSimple(*node) && WholeText(*node) == Trimmed(text); });
        if (found == m_added.end()) return false;
        m_added.erase(found);
        return true;
    }

    bool StandsInAnotherForm(const ContentNode& child) {
        const bool isPlain = IsSimple(child) && (child.name == "property" || child.attributes.empty());
        if (!isPlain) return false;
        const std::string_view name = FieldName(child);
        const std::string value = WholeText(child);
        const ContentAttribute* const attribute = AttributeOf(m_written, name);
        if (attribute && !AttributeOf(m_document, name) && IsSameValue(value, attribute->value)) return true;
        return !value.empty() && (IsElement(name, value) || (m_caller.isKnown(child.name) && IsChild(value)));
    }

    const ContentNode& m_document;
    const ContentNode& m_written;
    const Caller& m_caller;
    std::vector<std::pair<const ContentNode*, const ContentNode*>> m_pairs;
    Nodes m_unmatched, m_added;
};

}  // namespace

void FindContentLosses(const ContentNode& document, const ContentNode& written, const std::function<bool(std::string_view)>& isKnown,
                       const std::function<void(const ContentLoss&)>& tell) {
    const Comparison::Caller caller{isKnown, tell};
    Comparison(document, written, caller).Run(nullptr);
}

}  // namespace qv
