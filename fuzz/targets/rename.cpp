#include <string>
#include <vector>

#include "fuzz/models.h"
#include "fuzz/targets.h"
#include "objects/containers/smnamespace2_002_000.h"
#include "objects/face/smmodelrename_002_000.h"
#include "objects/transforms/smrenamelist2_002_000.h"

using namespace schema_002_000;

namespace {

void RenameInText(const std::vector<SMNamespaceRename>& renames, std::string_view text) {
    SMRenameList2 list;
    for (const SMNamespaceRename& rename : renames)
        list.AddRenameNamespace(I18NString(std::string_view(rename.oldName)), I18NString(std::string_view(rename.newName)));
    I18NString renamed(text);
    const I18NString before = renamed;
    fuzz::Require(list.PerformRenames(renamed) || renamed == before, "only a text that is renamed changes");
}

std::string Escaped(std::string_view text) {
    std::string escaped;
    for (const char c : text)
        if (c == '&')
            escaped += "&amp;";
        else if (c == '<')
            escaped += "&lt;";
        else
            escaped += c;
    return escaped;
}

/** A namespace by the old name of the first rename, in which a text stands in all ways. */
std::string DocumentOf(std::string_view name, std::string_view text) {
    const std::string escaped = Escaped(text);
    return "<project id=\"p\"><name>p</name><locales><locale>en</locale></locales><defaultLocale>en</defaultLocale>"
           "<namespace><name locale=\"en\">root</name><namespace><name locale=\"en\">" +
           Escaped(name) + "</name><filter><name locale=\"en\">f</name><expression>" + escaped + "<refobj>" + escaped +
           "</refobj></expression></filter><shortcut><name locale=\"en\">s</name><refobj>" + escaped +
           "</refobj></shortcut></namespace></namespace></project>";
}

void RenameInModel(const std::vector<SMNamespaceRename>& renames, std::string_view text) {
    const fuzz::Model model = fuzz::LoadModel(DocumentOf(renames.front().oldName, text));
    if (!model.project) return;
    const SMResult result = SMRenameNamespaces(*model.project, renames, "renamed");
    fuzz::RequireReason(result);
    if (!result.IsDone()) {
        fuzz::Require(fuzz::CanonicalText(*model.project) == model.text, "a rename that is refused changes nothing");
        return;
    }
    fuzz::Require(fuzz::LoadModel(fuzz::CanonicalText(*model.project)).project, "a model that was renamed can be read");
}

}  // namespace

// a text, then old and new names in turn, all parted by NUL
void fuzz::Rename(std::string_view input) {
    const std::string_view text = TakePart(input);
    std::vector<SMNamespaceRename> renames;
    while (!input.empty()) {
        const std::string_view from = TakePart(input), to = TakePart(input);
        renames.push_back({std::string(from), std::string(to)});
    }
    RenameInText(renames, text);
    if (!renames.empty()) RenameInModel(renames, text);
    const SMNamespaceMap taken{{QvULString(text), nullptr}};
    Require(taken.find(SMRenameList2::GenerateUniqueNamespaceName(I18NString(text), taken)) == taken.end(), "a new name is not taken");
}
