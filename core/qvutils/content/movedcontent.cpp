#include "core/qvutils/content/movedcontent.h"

#include <algorithm>
#include <cstdint>
#include <iterator>
#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <tuple>
#include <unordered_map>
#include <unordered_set>
#include <utility>

#include "core/qvutils/content/plainvalue.h"

namespace qv {
namespace {

/** Name and value of a simple element. */
using Field = std::pair<std::string_view, std::string_view>;

bool IsPlain(const ContentNode& element) {
    return IsSimple(element) && element.attributes.empty() && element.texts.size() == 1;
}

bool HasAttribute(const ContentNode& element, const ContentAttribute& attribute) {
    return std::any_of(element.attributes.begin(), element.attributes.end(),
                       [&](const ContentAttribute& one) { return one.name == attribute.name && IsSameValue(attribute.value, one.value); });
}

/** Whether the written element may be a simple one of the document, which may have more attributes: these are lost. */
bool IsOf(const ContentNode& element, const ContentNode& written) {
    return std::all_of(written.attributes.begin(), written.attributes.end(), [&](const ContentAttribute& attribute) {
        const bool mayBeAdded = attribute.name == "id" || attribute.name == "version";
        return mayBeAdded || HasAttribute(element, attribute);
    });
}

/** What an object has when it is written, and no list: a name, or an id or version, be it unset. */
bool IsObject(const ContentNode& element) {
    const auto isOfObject = [](const ContentAttribute& attribute) { return attribute.name == "id" || attribute.name == "version"; };
    const auto& attributes = element.attributes;
    return !element.key.empty() || std::any_of(attributes.begin(), attributes.end(), isOfObject) ||
           std::any_of(element.children.begin(), element.children.end(), [](const ContentNode& child) {
               return std::any_of(child.attributes.begin(), child.attributes.end(), [](const ContentAttribute& one) {
                   return one.name == "name" && (one.value == "id" || one.value == "version");
               });
           });
}

/** Things by a key and by the element around them, so that many that are alike are looked at only around the same one. */
template <class Key, class Thing>
class ThingsAround {
  public:
    void Add(const Key& key, const ContentNode& around, Thing thing) { m_things[key][&around].push_back(thing); }
    /** Takes the first that may be taken from where it is; none when there is no such one. */
    template <class MayBeTaken, class IsWanted>
    std::optional<Thing> Take(const Key& key, MayBeTaken mayBeTaken, IsWanted isWanted) {
        const auto alike = m_things.find(key);
        if (alike == m_things.end()) return std::nullopt;
        for (auto place = alike->second.begin(); place != alike->second.end(); ++place) {
            if (!mayBeTaken(*place->first)) continue;
            std::vector<Thing>& things = place->second;
            const auto found = std::find_if(things.rbegin(), things.rend(), isWanted);
            if (found == things.rend()) continue;
            const Thing taken = *found;
            things.erase(std::prev(found.base()));
            if (things.empty()) alike->second.erase(place);
            return taken;
        }
        return std::nullopt;
    }

  private:
    std::map<Key, std::map<const ContentNode*, std::vector<Thing>>> m_things;
};

/**
 * Whether a reader may have taken the lost element for one of the same object in the counterpart of `around`: it stands deeper than
 * that, or in a list that stands twice, or, as an entry, beside its list.
 */
bool MayBeTaken(const ContentLoss& loss, const ContentNode& around, const ContentModel& model) {
    if (loss.twin == &around) return true;
    return around.range.Contains(loss.element->range) || (model.isEntry(*loss.element) && loss.outer->range.Contains(around.range));
}

/** The simple elements that are to be had in the written document, each for one that is missed in its own place. */
class Gains {
  public:
    Gains(const std::vector<ContentLoss>& losses, const std::vector<ContentGain>& gains, const ContentModel& model) : m_model(model) {
        for (const ContentGain& gain : gains) Add(*gain.element, *gain.around);
        for (const ContentLoss& loss : losses)
            if (loss.kind == ContentLoss::Kind::text && loss.instead && loss.outer)
                m_values.Add({Field(loss.element->name, *loss.instead), loss.element->filled}, *loss.outer, loss.element);
    }

    bool Take(const ContentLoss& loss) {
        const ContentNode& element = *loss.element;
        if (!IsSimple(element) || !m_model.isRead(element)) return false;
        const auto mayBeTaken = [&](const ContentNode& around) { return MayBeTaken(loss, around, m_model); };
        const auto taken = m_simple.Take(SimpleOf(element, element.filled), mayBeTaken,
                                         [&](const ContentNode* written) { return IsOf(element, *written); });
        if (taken) FindLostAttributes(loss, **taken);
        if (taken || !IsPlain(element)) return taken.has_value();
        const std::pair key{Field(element.name, element.texts.front().text), element.filled};
        return m_values.Take(key, mayBeTaken, [](const ContentNode*) { return true; }).has_value();
    }
    /** Attributes of elements that were taken, which are not there. */
    const std::vector<ContentLoss>& LostAttributes() const { return m_lost; }

  private:
    /** Name, text and the object that it fills. */
    using Simple = std::tuple<std::string, std::string, const IOObject*>;

    static Simple SimpleOf(const ContentNode& element, const IOObject* filled) {
        return {element.name, PlainValue(WholeText(element)), filled};
    }

    /** With all in it, for it may be a list that the document does without; what is in another object fills that. */
    void Add(const ContentNode& element, const ContentNode& around) {
        std::vector<std::pair<const ContentNode*, bool>> left{{&element, true}};
        while (!left.empty()) {
            const auto [one, isOfObject] = left.back();
            left.pop_back();
            if (IsSimple(*one) && isOfObject) m_simple.Add(SimpleOf(*one, around.filled), around, one);
            const bool areOfObject = isOfObject && !IsObject(*one);
            for (const ContentNode& child : one->children) left.emplace_back(&child, areOfObject);
        }
    }

    void FindLostAttributes(const ContentLoss& loss, const ContentNode& written) {
        for (const ContentAttribute& attribute : loss.element->attributes)
            if (!HasAttribute(written, attribute)) m_lost.push_back({ContentLoss::Kind::attribute, loss.element, loss.outer, &attribute});
    }

    const ContentModel& m_model;
    ThingsAround<Simple, const ContentNode*> m_simple;
    /** The elements in whose place the values are, with the objects that these fill. */
    ThingsAround<std::pair<Field, const IOObject*>, const ContentNode*> m_values;
    std::vector<ContentLoss> m_lost;
};

/**
 * Finds, of the elements with others in them that only the written document has, those that readers made of lost ones: each for one, in
 * their order. An object may be anywhere, since its reader has made it; all else fills the object around it and is not far.
 */
class MovedObjects {
  public:
    MovedObjects(const std::vector<ContentLoss>& losses, const std::vector<ContentGain>& gains, const ContentModel& model)
        : m_model(model) {
        for (const ContentLoss& loss : losses)
            if (loss.kind == ContentLoss::Kind::element && !IsSimple(*loss.element) && model.isRead(*loss.element)) m_lost.push_back(&loss);
        if (m_lost.empty()) return;
        for (const ContentGain& gain : gains) AddWritten(*gain.element, *gain.around);
        Match([](const ContentNode& one) { return Key(one.key, {}, one.bareDigest); });
        Match([](const ContentNode& one) { return Key(one.key, IdOf(one), 0); });
        Match([](const ContentNode& one) { return Key(one.key, {}, 0); });
    }

    /** Null when there is none. */
    const ContentNode* Find(const ContentNode* lost) const {
        const auto found = m_found.find(lost);
        return found == m_found.end() ? nullptr : found->second;
    }

  private:
    /** Key, id and digest, of which those count that are set. */
    struct Key {
        Key(std::string_view k, std::string i, std::uint64_t d) : key(k), id(std::move(i)), digest(d) {}
        std::string_view name, key;
        std::string id;
        std::uint64_t digest;
        /** The object around an element that is none itself; null for an object. */
        const IOObject* filled = nullptr;
        auto operator<=>(const Key&) const = default;
    };

    static bool IsMade(const ContentLoss& loss) { return loss.element->filled && loss.outer && loss.element->filled != loss.outer->filled; }
    /** By a name, an id, or all that is in it; what has none of these is told by its place in a list that stands twice. */
    static bool TellsApart(const Key& key) { return !key.key.empty() || !key.id.empty() || key.digest != 0; }

    /** What is in another object is that one's. */
    void AddWritten(const ContentNode& element, const ContentNode& around) {
        std::vector<const ContentNode*> left{&element};
        while (!left.empty()) {
            const ContentNode& one = *left.back();
            left.pop_back();
            if (!IsSimple(one)) m_written.push_back({&one, &around});
            if (IsObject(one)) continue;
            for (auto child = one.children.rbegin(); child != one.children.rend(); ++child) left.push_back(&*child);
        }
    }

    template <class KeyOf>
    void Match(KeyOf keyOf) {
        ThingsAround<Key, const ContentNode*> written;
        for (auto gain = m_written.rbegin(); gain != m_written.rend(); ++gain) {
            if (m_taken.count(gain->element) != 0) continue;
            Key key = KeyOfElement(*gain->element, keyOf);
            written.Add(key, NOWHERE, gain->element);
            key.filled = gain->around->filled;
            written.Add(key, *gain->around, gain->element);
        }
        for (const ContentLoss* loss : m_lost) {
            Key key = KeyOfElement(*loss->element, keyOf);
            if (m_found.count(loss->element) != 0 || (!TellsApart(key) && !loss->twin)) continue;
            const bool isAnywhere = TellsApart(key) && IsMade(*loss);
            if (!isAnywhere) key.filled = loss->twin ? loss->twin->filled : loss->element->filled;
            const auto mayBeTaken = [&](const ContentNode& around) {
                return &around == &NOWHERE ? isAnywhere : MayBeTaken(*loss, around, m_model);
            };
            const auto found = written.Take(key, mayBeTaken, [&](const ContentNode* one) { return m_taken.count(one) == 0; });
            if (!found) continue;
            m_found[loss->element] = *found;
            m_taken.insert(*found);
        }
    }
    template <class KeyOf>
    static Key KeyOfElement(const ContentNode& element, KeyOf keyOf) {
        Key key = keyOf(element);
        key.name = element.name;
        return key;
    }

    /** Around what may be anywhere. */
    static inline const ContentNode NOWHERE;
    const ContentModel& m_model;
    std::vector<const ContentLoss*> m_lost;
    std::vector<ContentGain> m_written;
    std::unordered_map<const ContentNode*, const ContentNode*> m_found;
    std::unordered_set<const ContentNode*> m_taken;
};

}  // namespace

std::vector<ContentMove> TakeMovedObjects(std::vector<ContentLoss>& losses, std::vector<ContentGain>& gains, const ContentModel& model) {
    const MovedObjects moved(losses, gains, model);
    std::vector<ContentMove> moves;
    std::unordered_set<const ContentNode*> taken;
    std::erase_if(losses, [&](const ContentLoss& loss) {
        const ContentNode* const written = loss.kind == ContentLoss::Kind::element ? moved.Find(loss.element) : nullptr;
        if (!written) return false;
        if (written->digest != loss.element->digest) moves.push_back({loss, written});
        taken.insert(written);
        return true;
    });
    std::erase_if(gains, [&](const ContentGain& gain) { return taken.count(gain.element) != 0; });
    return moves;
}

void DropMovedContent(std::vector<ContentLoss>& losses, const std::vector<ContentGain>& gains, const ContentModel& model) {
    Gains left(losses, gains, model);
    const auto isMoved = [&](const ContentLoss& loss) { return loss.kind == ContentLoss::Kind::element && left.Take(loss); };
    losses.erase(losses.begin(), std::remove_if(losses.rbegin(), losses.rend(), isMoved).base());
    losses.insert(losses.end(), left.LostAttributes().begin(), left.LostAttributes().end());
}

}  // namespace qv
