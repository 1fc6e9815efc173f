#include "core/qvutils/content/movedcontent.h"

#include <algorithm>
#include <cstdint>
#include <functional>
#include <map>
#include <string>
#include <string_view>
#include <unordered_set>
#include <utility>

namespace qv {
namespace {

/** Name and value of a simple element. */
using Field = std::pair<std::string_view, std::string_view>;

bool IsSimple(const ContentNode& element) {
    return element.children.empty() && !element.isHollow;
}

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

/** What is to be had in the written document, each for one element that is missed in its own place. */
class Gains {
  public:
    Gains(const std::vector<ContentLoss>& losses, const std::vector<ContentGain>& gains, const ContentModel& model) : m_model(model) {
        for (const ContentGain& gain : gains) Add(*gain.element, *gain.around);
        for (const ContentLoss& loss : losses)
            if (loss.kind == ContentLoss::Kind::text && loss.instead && loss.outer)
                m_values.emplace(std::make_pair(Field(loss.element->name, *loss.instead), loss.element->filled), loss);
    }

    bool Take(const ContentLoss& loss) { return TakeElement(loss) || TakeValue(loss); }

  private:
    using Whole = std::pair<std::uint64_t, const IOObject*>;

    /** With all in it, for it may be a list that the document does without. */
    void Add(const ContentNode& element, const ContentNode& around) {
        ForEachIn(element, [&](const ContentNode& one) {
            m_elements.emplace(Whole(one.bareDigest, IsSimple(one) ? around.filled : nullptr), ContentGain{&one, &around});
        });
    }

    bool TakeElement(const ContentLoss& loss) {
        const ContentNode& element = *loss.element;
        const auto [first, end] = m_elements.equal_range(Whole(element.bareDigest, IsSimple(element) ? element.filled : nullptr));
        const auto found =
            std::find_if(first, end, [&](const auto& gain) { return !IsSimple(element) || MayBeTaken(loss, *gain.second.around); });
        if (found == end) return false;
        m_elements.erase(found);
        return true;
    }

    bool TakeValue(const ContentLoss& loss) {
        const ContentNode& element = *loss.element;
        if (!IsPlain(element)) return false;
        const auto [first, end] = m_values.equal_range({Field(element.name, element.texts.front().text), element.filled});
        const auto found = std::find_if(first, end, [&](const auto& value) { return MayBeTaken(loss, *value.second.outer); });
        if (found == end) return false;
        m_values.erase(found);
        return true;
    }

    /**
     * Whether a reader may have taken the lost element for one of the same object in the counterpart of `around`: it stands deeper than
     * that, or, as an entry, beside its list.
     */
    bool MayBeTaken(const ContentLoss& loss, const ContentNode& around) const {
        if (!m_model.isRead(*loss.element)) return false;
        return around.range.Contains(loss.element->range) || (m_model.isEntry(*loss.element) && loss.outer->range.Contains(around.range));
    }

    const ContentModel& m_model;
    /** With the object that a simple one fills, for many may be alike in others. */
    std::multimap<Whole, ContentGain> m_elements;
    /** The losses in whose place the values are, with the objects that these fill. */
    std::multimap<std::pair<Field, const IOObject*>, ContentLoss> m_values;
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
    /** Takes one that has all that the object has; false when there is none. */
    bool TakeWhole(const ContentNode& object) {
        const auto found = m_objects.find(Field(object.name, object.key));
        if (found == m_objects.end()) return false;
        const auto same = found->second.find(object.bareDigest);
        if (same == found->second.end()) return false;
        found->second.erase(same);
        return true;
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
    std::unordered_set<const ContentNode*> whole, taken;
    for (const ContentLoss& loss : losses)
        if (isMovable(loss) && written.TakeWhole(*loss.element)) whole.insert(loss.element);
    std::vector<ContentMove> moves;
    std::erase_if(losses, [&](const ContentLoss& loss) {
        if (!isMovable(loss) || whole.count(loss.element) != 0) return false;
        const ContentNode* const counterpart = written.Take(*loss.element);
        if (!counterpart) return false;
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
}

}  // namespace qv
