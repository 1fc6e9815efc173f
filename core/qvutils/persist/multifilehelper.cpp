#include "core/qvutils/persist/multifilehelper.h"

#include "core/qvutils/io/qvxmlformattarget.h"
#include "core/qvutils/io/tklsmdir.h"
#include "core/qvutils/persist/objectfilename.h"

namespace {

I18NString PathOf(const I18NString& directory, const std::string& file, const I18NString& extension) {
    I18NString path = directory, name{std::string_view(file)};
    if (!extension.empty()) {
        name.append(".");
        name += extension;
    }
    TklSmDir::joinPath(path, name);
    return path;
}

}  // namespace

MultiFileHelper::MultiFileHelper(std::set<QvULString> separateTags) : m_separateTags(std::move(separateTags)) {}

bool MultiFileHelper::IsSeparateFile(const I18NString& tagName) const {
    return m_separateTags.count(QvULString(tagName)) != 0;
}

void MultiFileHelper::BeginDocument() {
    m_given.clear();
}

void MultiFileHelper::MakeFilePath(const I18NString& name, const I18NString& extension, I18NString& path) {
    path = PathOf(path, qv::ObjectFileName::Of(name.utf8()), extension);
}

void MultiFileHelper::GiveFilePath(const I18NString& name, const I18NString& extension, I18NString& path) {
    const I18NString directory = path;
    MakeFilePath(name, extension, path);
    const std::size_t number = ++m_given[std::string(path.utf8())];
    if (number > 1) path = PathOf(directory, qv::ObjectFileName::Of(name.utf8(), number), extension);
}

void MultiFileHelper::WriteFile(QvFileWriter& file, const std::function<void(QvXMLFormatTarget&)>& print) {
    print(file);
}
