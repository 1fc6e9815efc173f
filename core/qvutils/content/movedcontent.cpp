#include "core/qvutils/content/movedcontent.h"

#include <algorithm>
#include <cstdint>
#include <functional>
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

void ForEachIn(const ContentNode& element, const std::function<void(const ContentNode&)>& visit) {
    std::vector<const ContentNode*> left{&element};
    while (!left.empty()) {
        const ContentNode& one = *left.back();
        left.pop_back();
        visit(one);
        for (const ContentNode& child : one.children) left.push_back(&child);
    }
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

/** What is to be had in the written document, each for one element that is missed in its own place. */
class Gains {
  public:
    Gains(const std::vector<ContentLoss>& losses, const std::vector<ContentGain>& gains, const ContentModel& model) : m_model(model) {
        for (const ContentGain& gain : gains) Add(*gain.element, *gain.around);
        for (const ContentLoss& loss : losses)
            if (loss.kind == ContentLoss::Kind::text && loss.instead && loss.outer)
                m_values.Add({Field(loss.element->name, *loss.instead), loss.element->filled}, *loss.outer, loss.element);
    }

    bool Take(const ContentLoss& loss) { return IsSimple(*loss.element) ? TakeSimple(loss) : TakeWhole(loss); }
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
            if (IsSimple(*one)) {
                if (isOfObject) m_simple.Add(SimpleOf(*one, around.filled), around, one);
                continue;
            }
            m_whole.emplace(one->bareDigest, one);
            const bool areOfObject = isOfObject && !IsObject(*one);
            for (const ContentNode& child : one->children) left.emplace_back(&child, areOfObject);
        }
    }

    bool TakeWhole(const ContentLoss& loss) {
        const auto found = m_whole.find(loss.element->bareDigest);
        if (found == m_whole.end()) return false;
        FindLostAttributes(loss, *found->second);
        m_whole.erase(found);
        return true;
    }

    bool TakeSimple(const ContentLoss& loss) {
        const ContentNode& element = *loss.element;
        if (!m_model.isRead(element)) return false;
        const auto mayBeTaken = [&](const ContentNode& around) { return MayBeTaken(loss, around); };
        const auto taken = m_simple.Take(SimpleOf(element, element.filled), mayBeTaken,
                                         [&](const ContentNode* written) { return IsOf(element, *written); });
        if (taken) FindLostAttributes(loss, **taken);
        if (taken || !IsPlain(element)) return taken.has_value();
        const std::pair key{Field(element.name, element.texts.front().text), element.filled};
        return m_values.Take(key, mayBeTaken, [](const ContentNode*) { return true; }).has_value();
    }

    void FindLostAttributes(const ContentLoss& loss, const ContentNode& written) {
        for (const ContentAttribute& attribute : loss.element->attributes)
            if (!HasAttribute(written, attribute)) m_lost.push_back({ContentLoss::Kind::attribute, loss.element, loss.outer, &attribute});
    }

    /**
     * Whether a reader may have taken the lost element for one of the same object in the counterpart of `around`: it stands deeper than
     * that, or in a list that stands twice, or, as an entry, beside its list.
     */
    bool MayBeTaken(const ContentLoss& loss, const ContentNode& around) const {
        if (loss.twin == &around) return true;
        return around.range.Contains(loss.element->range) || (m_model.isEntry(*loss.element) && loss.outer->range.Contains(around.range));
    }

    const ContentModel& m_model;
    ThingsAround<Simple, const ContentNode*> m_simple;
    std::multimap<std::uint64_t, const ContentNode*> m_whole;
    /** The elements in whose place the values are, with the objects that these fill. */
    ThingsAround<std::pair<Field, const IOObject*>, const ContentNode*> m_values;
    std::vector<ContentLoss> m_lost;
};

/** The objects that only the written document has, by their names. */
class NamedObjects {
  public:
    explicit NamedObjects(const std::vector<ContentGain>& gains) {
        for (const ContentGain& gain : gains)
            ForEachIn(*gain.element, [&](const ContentNode& one) {
                if (!IsSimple(one) && !one.key.empty()) m_objects[Field(one.name, one.key)].emplace(one.bareDigest, &one);
            });
    }
    /** Takes one that has all that the object has, but for what a save may have added to either; null when there is none. */
    const ContentNode* TakeWhole(const ContentNode& object) {
        const auto found = m_objects.find(Field(object.name, object.key));
        if (found == m_objects.end()) return nullptr;
        const auto same = found->second.find(object.bareDigest);
        if (same == found->second.end()) return nullptr;
        const ContentNode* const taken = same->second;
        found->second.erase(same);
        return taken;
    }
    /** Null when there is none of its name. */
    const ContentNode* Take(const ContentNode& object) {
        const auto found = m_objects.find(Field(object.name, object.key));
        if (found == m_objects.end() || found->second.empty()) return nullptr;
        const ContentNode* const taken = found->second.begin()->second;
        found->second.erase(found->second.begin());
        return taken;
    }

  private:
    std::map<Field, std::multimap<std::uint64_t, const ContentNode*>> m_objects;
};

}  // namespace

std::vector<ContentMove> TakeMovedObjects(std::vector<ContentLoss>& losses, std::vector<ContentGain>& gains, const ContentModel& model) {
    const auto isMovable = [&](const ContentLoss& loss) {
        return loss.kind == ContentLoss::Kind::element && !IsSimple(*loss.element) && !loss.element->key.empty() &&
               model.isRead(*loss.element);
    };
    if (std::none_of(losses.begin(), losses.end(), isMovable)) return {};
    NamedObjects written(gains);
    std::unordered_map<const ContentNode*, const ContentNode*> whole;
    for (const ContentLoss& loss : losses)
        if (isMovable(loss))
            if (const ContentNode* const counterpart = written.TakeWhole(*loss.element)) whole[loss.element] = counterpart;
    std::vector<ContentMove> moves;
    std::unordered_set<const ContentNode*> taken;
    std::erase_if(losses, [&](const ContentLoss& loss) {
        if (!isMovable(loss)) return false;
        const auto known = whole.find(loss.element);
        const ContentNode* const counterpart = known != whole.end() ? known->second : written.Take(*loss.element);
        if (!counterpart || counterpart->digest == loss.element->digest) return false;
        moves.push_back({loss, counterpart});
        taken.insert(counterpart);
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
