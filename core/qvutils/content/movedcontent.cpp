#include "core/qvutils/content/movedcontent.h"

#include <cstddef>
#include <map>
#include <string>
#include <string_view>
#include <utility>

namespace qv {
namespace {

/** Name and value of a simple element. */
using Field = std::pair<std::string_view, std::string_view>;

bool IsPlain(const ContentNode& element) {
    return element.children.empty() && element.attributes.empty() && element.texts.size() == 1;
}

/** Whether the element is somewhere in `around`, but not right in it. */
bool IsDeepIn(const ContentNode& around, const ContentNode* element) {
    std::vector<const ContentNode*> left;
    for (const ContentNode& child : around.children) left.push_back(&child);
    while (!left.empty()) {
        const ContentNode& outer = *left.back();
        left.pop_back();
        for (const ContentNode& child : outer.children) {
            if (&child == element) return true;
            left.push_back(&child);
        }
    }
    return false;
}

}  // namespace

void DropMovedContent(std::vector<ContentLoss>& losses) {
    std::map<Field, const ContentNode*> taken;
    for (const ContentLoss& loss : losses)
        if (loss.kind == ContentLoss::Kind::text && loss.instead && loss.outer)
            taken.emplace(Field(loss.element->name, *loss.instead), loss.outer);
    for (std::size_t i = losses.size(); i-- > 0 && !taken.empty();) {
        const ContentNode& element = *losses[i].element;
        if (losses[i].kind != ContentLoss::Kind::element || !IsPlain(element)) continue;
        const auto found = taken.find(Field(element.name, element.texts.front().text));
        if (found == taken.end() || !IsDeepIn(*found->second, &element)) continue;
        taken.erase(found);
        losses.erase(losses.begin() + static_cast<std::ptrdiff_t>(i));
    }
}

}  // namespace qv
