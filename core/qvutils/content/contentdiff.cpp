#include "core/qvutils/content/contentdiff.h"

#include <algorithm>
#include <map>
#include <memory>
#include <set>
#include <string>
#include <string_view>
#include <tuple>
#include <unordered_map>
#include <unordered_set>
#include <utility>

#include "core/qvutils/base/stack.h"
#include "core/qvutils/content/movedcontent.h"
#include "core/qvutils/content/plainvalue.h"

namespace qv {
namespace {

constexpr std::string_view PROPERTY = "property";

/** The attributes of an element by their names. Most elements have so few that looking at each is fastest. */
class AttributesByName {
  public:
    /** `node` is borrowed. */
    explicit AttributesByName(const ContentNode& node) : m_attributes(node.attributes) {
        if (m_attributes.size() <= FEW) return;
        for (const ContentAttribute& attribute : m_attributes) m_byName.emplace(attribute.name, &attribute);
    }
    const ContentAttribute* Find(std::string_view name) const {
        if (!m_byName.empty()) {
            const auto found = m_byName.find(name);
            return found == m_byName.end() ? nullptr : found->second;
        }
        const auto found = std::find_if(m_attributes.begin(), m_attributes.end(),
                                        [&](const ContentAttribute& attribute) { return attribute.name == name; });
        return found == m_attributes.end() ? nullptr : &*found;
    }

  private:
    static constexpr std::size_t FEW = 16;
    const std::vector<ContentAttribute>& m_attributes;
    std::unordered_map<std::string_view, const ContentAttribute*> m_byName;
};

/** The texts of an element and of all that is in it, in their order. */
std::vector<const ContentText*> TextsIn(const ContentNode& element) {
    std::vector<const ContentText*> texts;
    std::vector<const ContentNode*> left{&element};
    while (!left.empty()) {
        const ContentNode& one = *left.back();
        left.pop_back();
        for (const ContentText& text : one.texts) texts.push_back(&text);
        for (const ContentNode& child : one.children) left.push_back(&child);
    }
    const auto placeOf = [](const ContentText* text) { return std::tie(text->place.file, text->place.line, text->place.column); };
    std::stable_sort(texts.begin(), texts.end(), [&](const auto* a, const auto* b) { return placeOf(a) < placeOf(b); });
    return texts;
}

using Pieces = std::unordered_set<const ContentText*>;

/** What is written and not yet taken. The layout at its end is none of the texts. */
class UntakenText {
  public:
    enum class Side { front, back };
    UntakenText(std::string_view text, Side side) : m_side(side) { Set(text); }

    /** Takes a text away at that side; false when it is not there. */
    bool Take(std::string_view text) {
        for (const std::string_view from : {m_text, m_trimmed}) {
            if (m_side == Side::front ? !from.starts_with(text) : !from.ends_with(text)) continue;
            Set(m_side == Side::front ? from.substr(text.size()) : from.substr(0, from.size() - text.size()));
            return true;
        }
        return false;
    }
    bool IsLayout() const { return m_trimmed.empty(); }

  private:
    /** Looked for once, since there may be much of it, and many that ask. */
    void Set(std::string_view text) {
        constexpr std::string_view BLANKS = " \n\t\r";
        m_text = text;
        m_trimmed = m_side == Side::front ? text.substr(std::min(text.find_first_not_of(BLANKS), text.size()))
                                          : text.substr(0, text.find_last_not_of(BLANKS) + 1);
    }

    Side m_side;
    std::string_view m_text, m_trimmed;
};

/** Those of the texts that what is written is made of, taken away in this order; none when more is written. */
Pieces PiecesFrom(const std::vector<const ContentText*>& texts, UntakenText written) {
    Pieces pieces;
    for (const ContentText* text : texts)
        if (written.Take(text->text)) pieces.insert(text);
    return written.IsLayout() ? pieces : Pieces();
}

/** The texts in an element of which a written text is made: readers take the first of several, or the last; none of another text. */
Pieces PiecesOf(std::string_view written, const ContentNode& element) {
    if (IsLayout(written)) return {};
    std::vector<const ContentText*> texts = TextsIn(element);
    Pieces pieces = PiecesFrom(texts, UntakenText(written, UntakenText::Side::front));
    if (!pieces.empty()) return pieces;
    std::reverse(texts.begin(), texts.end());
    return PiecesFrom(texts, UntakenText(written, UntakenText::Side::back));
}

/** The name under which a simple element could also stand as an attribute. */
std::string_view FieldName(const ContentNode& node) {
    const ContentAttribute* const name = node.name == PROPERTY ? AttributesByName(node).Find("name") : nullptr;
    return name ? std::string_view(name->value) : std::string_view(node.name);
}

/** Whether it holds elements and is no object: these have fields of their own. */
bool IsList(const ContentNode& node) {
    return !IsSimple(node) && !node.isHollow && std::none_of(node.children.begin(), node.children.end(), [](const ContentNode& child) {
        return child.name == PROPERTY || child.name == "name";
    });
}

/** The values of simple elements that only the written document has, for those that the other has in another form. */
class AddedValues {
  public:
    /** Both are borrowed, and `added` is looked at when a value is first asked for. */
    AddedValues(const std::vector<const ContentNode*>& added, const ContentModel& model) : m_added(added), m_model(model) {}

    /** Takes an element that holds the value under the name; false when there is none. */
    bool TakeField(std::string_view name, std::string_view value) {
        LookOnce();
        const auto found = m_fields.find({std::string(name), PlainValue(value)});
        if (found == m_fields.end() || found->second == 0) return false;
        --found->second;
        return true;
    }
    /** Takes an entry of a list that holds the text, whatever its name; false when there is none. */
    bool TakeEntry(std::string_view text) {
        LookOnce();
        const auto found = m_byText.find(std::string(text));
        if (found == m_byText.end() || found->second.empty()) return false;
        --m_fields[{std::string(FieldName(*found->second.back())), PlainValue(text)}];
        m_taken.insert(found->second.back());
        found->second.pop_back();
        return true;
    }
    bool IsTaken(const ContentNode& element) const { return m_taken.count(&element) != 0; }

  private:
    void LookOnce() {
        if (std::exchange(m_isLooked, true)) return;
        for (const ContentNode* node : m_added) {
            if (!IsSimple(*node)) continue;
            std::string text = WholeText(*node);
            ++m_fields[{std::string(FieldName(*node)), PlainValue(text)}];
            if (m_model.isEntry(*node)) m_byText[std::move(text)].push_back(node);
        }
    }

    const std::vector<const ContentNode*>& m_added;
    const ContentModel& m_model;
    bool m_isLooked = false;
    /** How many elements there are by their names and values. */
    std::map<std::pair<std::string, std::string>, std::size_t> m_fields;
    /** The entries. */
    std::unordered_map<std::string, std::vector<const ContentNode*>> m_byText;
    std::unordered_set<const ContentNode*> m_taken;
};

/** The comparison of one element with the one that was written for it. */
class Comparison {
  public:
    struct Caller {
        const ContentModel& model;
        std::vector<ContentLoss>& losses;
        std::vector<ContentGain>& gains;
        WantedContent& wanted;
        /** The losses of lists that are told piece by piece. */
        std::vector<ContentLoss>& lists;
    };

    Comparison(const ContentNode& document, const ContentNode& written, const Caller& caller)
        : m_document(document), m_written(written), m_caller(caller) {}

    /** Compares the two, or wants them whole. */
    static void Pair(const ContentNode& element, const ContentNode& counterpart, const ContentNode* outer, const Caller& caller) {
        if (!element.isHollow && !counterpart.isHollow) return std::make_unique<Comparison>(element, counterpart, caller)->Run(outer);
        caller.wanted.document.push_back(element.range);
        caller.wanted.written.push_back(counterpart.range);
    }

    /** Calls itself for what is in the element: all that takes room is in memory of its own, or in functions that have ended by then. */
    void Run(const ContentNode* outer) {
        RequireStack();
        MatchChildren();
        CompareAttributes(outer);
        for (const auto& [child, counterpart] : m_pairs)
            if (child->isChosen || child->bareDigest != counterpart->bareDigest)  // else it differs in what a save adds
                Pair(*child, *counterpart, &m_document, m_caller);
        for (const ContentNode* child : m_unmatched)
            if (!StandsInAnotherForm(*child)) TellElement(*child);
        CompareTexts(outer);
        for (const ContentNode* child : m_added)
            if (!m_values.IsTaken(*child)) m_caller.gains.push_back({child, &m_document});
    }

  private:
    using Nodes = std::vector<const ContentNode*>;

    void Tell(const ContentLoss& loss) { m_caller.losses.push_back(loss); }

    /** Of a list that stands twice, readers may have taken the pieces into the other one. */
    [[gnu::noinline]] void TellElement(const ContentNode& child) {
        const ContentLoss whole{ContentLoss::Kind::element, &child, &m_document};
        const ContentNode* const twin = TwinOf(child);
        if (!twin) return Tell(whole);
        m_caller.lists.push_back(whole);
        for (const ContentAttribute& attribute : child.attributes)
            Tell({ContentLoss::Kind::attribute, &child, &m_document, &attribute, nullptr, nullptr, twin});
        for (const ContentText& text : child.texts) Tell({ContentLoss::Kind::text, &child, &m_document, nullptr, &text, nullptr, twin});
        for (const ContentNode& piece : child.children) Tell({ContentLoss::Kind::element, &piece, &child, nullptr, nullptr, nullptr, twin});
    }

    /** The sibling of the name that has a counterpart, when both are lists; null when there is none. */
    const ContentNode* TwinOf(const ContentNode& child) {
        if (!IsList(child) || !m_caller.model.isRead(child)) return nullptr;
        if (!std::exchange(m_isMatchedKnown, true)) {
            const std::set<const ContentNode*> unmatched(m_unmatched.begin(), m_unmatched.end());
            for (const ContentNode& one : m_document.children)
                if (unmatched.count(&one) == 0) m_matched[one.name] = &one;
        }
        const auto found = m_matched.find(child.name);
        return found == m_matched.end() ? nullptr : found->second;
    }

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

    /** Pairs objects that got other names with what is written under these, whatever else has the names that they had. */
    void MatchRenamed(Nodes& rest) {
        if (!m_caller.model.newName) return;
        std::multimap<std::string_view, const ContentNode*> written;
        for (const ContentNode* node : rest) {
            written.emplace(node->key, node);
            for (const std::string& name : node->otherNames) written.emplace(name, node);
        }
        std::set<const ContentNode*> taken;
        for (const ContentNode*& node : m_unmatched) {
            const std::string name = m_caller.model.newName(*node);
            if (name.empty()) continue;
            const auto [first, end] = written.equal_range(name);
            const auto found = std::find_if(first, end, [&](const auto& one) { return one.second->name == node->name; });
            if (found == end || !taken.insert(found->second).second) continue;
            m_pairs.emplace_back(node, found->second);
            node = nullptr;
        }
        std::erase(m_unmatched, nullptr);
        std::erase_if(rest, [&](const ContentNode* node) { return taken.count(node) != 0; });
    }

    [[gnu::noinline]] void MatchChildren() {
        for (const ContentNode& child : m_document.children) m_unmatched.push_back(&child);
        // what an element without a file adds to an object is not its counterpart
        std::stable_partition(m_unmatched.begin(), m_unmatched.end(), [](const ContentNode* child) { return !child->placeholder.empty(); });
        for (const ContentNode& child : m_written.children) m_added.push_back(&child);
        MatchRenamed(m_added);
        Match(m_added, [](const ContentNode& node) { return node.digest; });
        Match(m_added, [](const ContentNode& node) { return node.bareDigest; });
        // lists may give their entries another name
        Match(m_added, [&](const ContentNode& node) {
            const bool isEntry = IsSimple(node) && !node.texts.empty() && m_caller.model.isEntry(node) && m_caller.model.isRead(node);
            return std::make_pair(isEntry ? WholeText(node) : std::string(), isEntry ? nullptr : &node);
        });
        const auto byId = [](const ContentNode& node, std::string_view key) {
            std::string id = IdOf(node);
            const ContentNode* const alone = id.empty() ? &node : nullptr;
            return std::make_tuple(std::string_view(node.name), key, std::move(id), alone);
        };
        Match(m_added, [&](const ContentNode& node) { return byId(node, node.key); });
        Match(m_added, [&](const ContentNode& node) { return byId(node, {}); });
        Match(m_added, [](const ContentNode& node) { return std::make_pair(std::string_view(node.name), std::string_view(node.key)); });
        // another name is one that it got, unless all that has the old name is somewhere else, and a property gets none
        Match(m_added, [](const ContentNode& node) {
            const bool mayBeRenamed = node.isChosen && node.name != PROPERTY;
            return std::make_pair(std::string_view(node.name), mayBeRenamed ? std::string_view() : std::string_view(node.key));
        });
        std::reverse(m_pairs.begin(), m_pairs.end());
    }

    [[gnu::noinline]] void CompareAttributes(const ContentNode* outer) {
        for (const ContentAttribute& attribute : m_document.attributes) {
            const ContentAttribute* const written = m_writtenAttributes.Find(attribute.name);
            if (written ? IsSameValue(attribute.value, written->value)
                        : IsNaming(attribute) && (IsRepeated(attribute) || m_values.TakeField(attribute.name, attribute.value)))
                continue;
            Tell({ContentLoss::Kind::attribute, &m_document, outer, &attribute, nullptr, written ? &written->value : nullptr});
        }
    }

    [[gnu::noinline]] void CompareTexts(const ContentNode* outer) {
        const std::string written = WholeText(m_written);
        if (written == WholeText(m_document)) return;
        const bool isValue = m_document.texts.size() == 1 && m_written.texts.size() == 1 && IsSimple(m_document);
        if (isValue && IsSameValue(m_document.texts.front().text, written)) return;
        const Pieces kept = isValue ? Pieces() : PiecesOf(written, m_document);
        for (const ContentText& text : m_document.texts)
            if (kept.count(&text) == 0 && !m_values.TakeEntry(text.text))
                Tell({ContentLoss::Kind::text, &m_document, outer, nullptr, &text, isValue ? &m_written.texts.front().text : nullptr});
    }

    /** These of a placeholder are read as what elements say elsewhere; all other attributes are read as such only. */
    bool IsNaming(const ContentAttribute& attribute) const {
        return !m_document.placeholder.empty() && (attribute.name == "id" || attribute.name == "name");
    }

    /** Whether an element in the placeholder says the same. */
    bool IsRepeated(const ContentAttribute& attribute) const {
        return std::any_of(m_document.children.begin(), m_document.children.end(), [&](const ContentNode& child) {
            return IsSimple(child) && FieldName(child) == attribute.name && IsSameValue(attribute.value, WholeText(child));
        });
    }

    [[gnu::noinline]] bool StandsInAnotherForm(const ContentNode& child) {
        const bool isPlain = IsSimple(child) && (child.name == PROPERTY || child.attributes.empty());
        if (!isPlain || !m_caller.model.isRead(child)) return false;
        const std::string_view name = FieldName(child);
        const std::string value = WholeText(child);
        const ContentAttribute* const attribute = m_writtenAttributes.Find(name);
        if (attribute && !m_documentAttributes.Find(name) && IsSameValue(value, attribute->value) && m_taken.insert(attribute).second)
            return true;
        return !value.empty() && m_caller.model.isEntry(child) && m_values.TakeEntry(value);
    }

    const ContentNode& m_document;
    const ContentNode& m_written;
    const Caller& m_caller;
    std::vector<std::pair<const ContentNode*, const ContentNode*>> m_pairs;
    Nodes m_unmatched, m_added;
    /** Children that have counterparts, the last of each name; made when it is asked for. */
    std::unordered_map<std::string_view, const ContentNode*> m_matched;
    bool m_isMatchedKnown = false;
    AttributesByName m_documentAttributes{m_document}, m_writtenAttributes{m_written};
    /** Written attributes that stand for elements. */
    std::set<const ContentAttribute*> m_taken;
    AddedValues m_values{m_added, m_caller.model};
};

/** A list of which nothing was taken anywhere is lost as a whole. */
void JoinLists(std::vector<ContentLoss>& losses, const std::vector<ContentLoss>& lists) {
    std::unordered_map<const ContentNode*, std::size_t> pieces;
    const auto listOf = [](const ContentLoss& loss) {
        const bool isInList = loss.kind == ContentLoss::Kind::element;
        return loss.twin ? (isInList ? loss.outer : loss.element) : nullptr;
    };
    for (const ContentLoss& loss : losses) ++pieces[listOf(loss)];
    std::unordered_set<const ContentNode*> whole;
    for (const ContentLoss& list : lists) {
        const ContentNode& element = *list.element;
        if (pieces[&element] == element.children.size() + element.attributes.size() + element.texts.size()) whole.insert(&element);
    }
    std::erase_if(losses, [&](const ContentLoss& loss) { return whole.count(listOf(loss)) != 0; });
    for (const ContentLoss& list : lists)
        if (whole.count(list.element) != 0) losses.push_back(list);
}

/** Those that are in no other one. */
void SortRanges(std::vector<ContentRange>& ranges) {
    std::sort(ranges.begin(), ranges.end(),
              [](const ContentRange& a, const ContentRange& b) { return a.first != b.first ? a.first < b.first : a.end > b.end; });
    std::size_t end = 0;
    std::erase_if(ranges, [&](const ContentRange& range) { return range.end <= std::exchange(end, std::max(end, range.end)); });
}

}  // namespace

WantedContent FindContentLosses(const ContentNode& document, const ContentNode& written, const ContentModel& model,
                                const std::function<void(const ContentLoss&)>& tell) {
    std::vector<ContentLoss> losses;
    std::vector<ContentGain> gains;
    std::vector<ContentLoss> lists;
    WantedContent wanted;
    const Comparison::Caller caller{model, losses, gains, wanted, lists};
    Comparison(document, written, caller).Run(nullptr);
    for (std::vector<ContentMove> moves; !(moves = TakeMovedObjects(losses, gains, model)).empty();)
        for (const ContentMove& move : moves) Comparison::Pair(*move.loss.element, *move.written, move.loss.outer, caller);
    SortRanges(wanted.document);
    SortRanges(wanted.written);
    if (!wanted.IsNone()) return wanted;
    DropMovedContent(losses, gains, model);
    JoinLists(losses, lists);
    std::for_each(losses.begin(), losses.end(), tell);
    return wanted;
}

}  // namespace qv
