#include "core/qvutils/io/tklsmdir.h"

#include <algorithm>
#include <string_view>

void TklSmDir::joinPath(I18NString& path, const I18NString& more) {
    if (more.empty()) return;
    if (path.empty()) {
        path = more;
        return;
    }
    const I18NString added = more;  // may be the path itself
    const std::string_view name = added.utf8();
    if (path.utf8().back() != '/') path.append("/");
    path.append(name.substr(std::min(name.find_first_not_of('/'), name.size())));
}

void TklSmDir::splitPath(const I18NString& path, I18NString* directory, I18NString* file) {
    const I18NString whole = path;  // the outputs may be the path itself
    const std::string_view text = whole.utf8();
    const std::size_t separator = text.rfind('/');
    const std::size_t name = separator == std::string_view::npos ? 0 : separator + 1;
    const std::size_t cut = separator == 0 ? 1 : name == 0 ? 0 : separator;  // the root keeps its separator
    if (directory) *directory = I18NString(text.substr(0, cut));
    if (file) *file = I18NString(text.substr(name));
}
