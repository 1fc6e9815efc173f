#include "core/qvutils/content/movedcontent.h"

#include <algorithm>
#include <cstdint>
#include <map>
#include <string>
#include <string_view>
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

/** What is to be had in the written document, each for one element that is missed in its own place. */
class Gains {
  public:
    Gains(const std::vector<ContentLoss>& losses, const std::vector<ContentGain>& gains, const ContentModel& model) : m_model(model) {
        for (const ContentGain& gain : gains) Add(*gain.element, *gain.around);
        for (const ContentLoss& loss : losses)
            if (loss.kind == ContentLoss::Kind::text && loss.instead && loss.outer)
                m_values.emplace(Field(loss.element->name, *loss.instead), loss);
    }

    bool Take(const ContentLoss& loss) { return TakeElement(loss) || TakeValue(loss); }

  private:
    /** With all in it, for it may be a list that the document does without. */
    void Add(const ContentNode& element, const ContentNode& around) {
        std::vector<const ContentNode*> left{&element};
        while (!left.empty()) {
            const ContentNode& one = *left.back();
            left.pop_back();
            m_elements.emplace(one.bareDigest, ContentGain{&one, &around});
            for (const ContentNode& child : one.children) left.push_back(&child);
        }
    }

    bool TakeElement(const ContentLoss& loss) {
        const ContentNode& element = *loss.element;
        const auto [first, end] = m_elements.equal_range(element.bareDigest);
        const auto found = std::find_if(first, end, [&](const auto& gain) {
            const ContentNode& around = *gain.second.around;
            return !IsSimple(element) || MayBeTaken(loss, around, around.filled);
        });
        if (found == end) return false;
        m_elements.erase(found);
        return true;
    }

    bool TakeValue(const ContentLoss& loss) {
        const ContentNode& element = *loss.element;
        if (!IsPlain(element)) return false;
        const auto [first, end] = m_values.equal_range(Field(element.name, element.texts.front().text));
        const auto found = std::find_if(
            first, end, [&](const auto& value) { return MayBeTaken(loss, *value.second.outer, value.second.element->filled); });
        if (found == end) return false;
        m_values.erase(found);
        return true;
    }

    /**
     * Whether a reader may have taken the lost element for one that is in the counterpart of `around`: of the same object, it stands deeper
     * than that, or, as an entry, beside its list.
     */
    bool MayBeTaken(const ContentLoss& loss, const ContentNode& around, const IOObject* object) const {
        if (loss.element->filled != object || !m_model.isRead(*loss.element)) return false;
        return around.range.Contains(loss.element->range) || (m_model.isEntry(*loss.element) && loss.outer->range.Contains(around.range));
    }

    const ContentModel& m_model;
    std::multimap<std::uint64_t, ContentGain> m_elements;
    /** The losses in whose place the values are. */
    std::multimap<Field, ContentLoss> m_values;
};

}  // namespace

void DropMovedContent(std::vector<ContentLoss>& losses, const std::vector<ContentGain>& gains, const ContentModel& model) {
    Gains left(losses, gains, model);
    const auto isMoved = [&](const ContentLoss& loss) { return loss.kind == ContentLoss::Kind::element && left.Take(loss); };
    losses.erase(losses.begin(), std::remove_if(losses.rbegin(), losses.rend(), isMoved).base());
}

}  // namespace qv
