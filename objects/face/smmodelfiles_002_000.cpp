#include "objects/face/smmodelfiles_002_000.h"

#include <algorithm>
#include <new>

#include "core/qvutils/diag/codes.h"
#include "core/qvutils/diag/tklerrors.h"
#include "core/qvutils/io/stagedfiles.h"
#include "core/qvutils/persist/multifilehelper.h"
#include "core/qvutils/text/asciifold.h"
#include "core/qvutils/xml/qvsax2printhandler.h"
#include "objects/containers/smnamespace2_002_000.h"
#include "objects/face/smmodelwalk_002_000.h"
#include "objects/face/smwatchedtarget_002_000.h"
#include "objects/publication/smpackage2_002_000.h"

namespace schema_002_000 {

namespace {

using Tag = SMEnum_xmltag::Enum;

/** Lets the files be written under the eyes of the caller. */
class WatchedFiles : public MultiFileHelper {
  public:
    WatchedFiles(std::set<QvULString> tags, SMTicker& ticker) : MultiFileHelper(std::move(tags)), m_ticker(ticker) {}

    void WriteFile(QvFileWriter& file, const std::function<void(QvXMLFormatTarget&)>& print) override {
        SMWatchedTarget watched(file, m_ticker);
        print(watched);
        watched.flush();
    }

  private:
    SMTicker& m_ticker;
};

/** Puts a project into the state in which its files are written, and back. */
class ReadyToSplit {
  public:
    ReadyToSplit(SMProject2& project, const std::string& directory)
        : m_project(project), m_baseDirectory(project.m_baseDirectory), m_version(project.GetVersionNo()) {
        project.m_baseDirectory = I18NString(std::string_view(directory));
        // a project of version 0 would keep its connections out of the files
        if (m_version == 0) project.SetVersionNo(1);
    }
    ~ReadyToSplit() {
        m_project.m_baseDirectory = m_baseDirectory;
        m_project.SetVersionNo(m_version);
    }
    ReadyToSplit(const ReadyToSplit&) = delete;
    ReadyToSplit& operator=(const ReadyToSplit&) = delete;

  private:
    SMProject2& m_project;
    I18NString m_baseDirectory;
    int m_version;
};

void RequireComplete(const SMProject2& project) {
    const std::size_t unread = project.m_partFiles.UnreadCount();
    if (unread == 0) return;
    throw TklRuntimeError("the model is not complete, so nothing was written: " + std::to_string(unread) +
                          (unread == 1 ? " file of it" : " files of it") +
                          " could not be read; mend what is told above, or take the placeholder out of the document");
}

void RequireMainName(const std::string& name) {
    const bool plain = !name.empty() && name.front() != '.' && name.find('/') == std::string::npos;
    const std::string end = qv::AsciiLowered(name.substr(name.size() - std::min<std::size_t>(name.size(), 4)));
    if (plain && end != ".qvf" && end != ".qva") return;
    throw TklRuntimeError(
        "the main document cannot be called '" + name +
        "': it takes a file name without directory, that begins with no point and does not end like one of the other files");
}

SMDiagnostic Note(const char* code, const SMObjectBase& about, const char* message) {
    SMDiagnostic note;
    note.code = code;
    note.severity = SMSeverity::note;
    const SMObjectLine line = SMDescribeObject(about);
    note.objectPath = line.path.empty() ? SMNameOf(about) : line.path;
    note.message = message;
    return note;
}

const SMSectionType2* SectionOf(const SMObjectBase& object) {
    const Tag kind = object.GetSMType();
    return kind == Tag::namespace_ || kind == Tag::folder ? static_cast<const SMSectionType2*>(&object) : nullptr;
}

bool IsNamespace(const SMObjectBase* item) {
    return item->GetSMType() == Tag::namespace_;
}

std::vector<const SMObjectBase*> ItemsOf(const SMSectionType2& section) {
    std::vector<const SMObjectBase*> items;
    for (const SMObjectBase* item : section.GetDisplayOrderItems())
        if (item) items.push_back(item);
    return items;
}

/**
 * True when the files bring the section's objects back in another order. The namespaces of a namespace come behind its file and
 * all that is in it. Those of a folder have no number in its order, as if they had the first one.
 */
bool LosesOrder(const SMSectionType2& section) {
    const std::vector<const SMObjectBase*> before = ItemsOf(section);
    std::vector<const SMObjectBase*> after = before;
    const auto first = std::find_if_not(after.begin(), after.end(), IsNamespace);
    if (first == after.end()) return false;
    if (IsNamespace(&section))
        std::stable_partition(after.begin(), after.end(), [](const SMObjectBase* item) { return !IsNamespace(item); });
    else
        std::stable_partition(first + 1, after.end(), IsNamespace);
    return after != before;
}

bool HasNamespacesAmongOthers(const SMSectionType2& section) {
    const std::vector<const SMObjectBase*> items = ItemsOf(section);
    const auto namespaces = std::count_if(items.begin(), items.end(), IsNamespace);
    return namespaces != 0 && static_cast<std::size_t>(namespaces) != items.size();
}

void TellWhatIsLost(const SMProject2& project, const SMSplitOptions& options, std::vector<SMDiagnostic>& notes) {
    std::set<QvULString> names;
    SMForEachObject(project, [&](const SMObjectBase& object, int) {
        const SMSectionType2* section = options.namespaces ? SectionOf(object) : nullptr;
        if (section && LosesOrder(*section))
            notes.push_back(Note(qv::code::PLACE_LOST, object, "the files do not keep where its namespaces stand among its other objects"));
        // in one document an inner namespace is there before the root, which keeps its name in any case
        if (section && IsNamespace(section) && !names.insert(section->GetName()).second)
            notes.push_back(Note(qv::code::NAME_LOST, object, "the root has its name, so that it comes back with a number behind it"));
        const bool package = options.packages && object.GetSMType() == Tag::package;
        if (package && static_cast<const SMPackage2&>(object).IsRoleBased())
            notes.push_back(Note(qv::code::ROLE_BASED_LOST, object, "that it is based on roles is not read back from its file"));
    });
}

void TellWhatWasLost(const SMProject2& project, std::vector<SMDiagnostic>& notes) {
    if (project.m_partFiles.ReadCount(SMEnum_xmltag::GetInstance()->namespace_) == 0) return;
    SMForEachObject(project, [&](const SMObjectBase& object, int) {
        const SMSectionType2* section = SectionOf(object);
        if (section && HasNamespacesAmongOthers(*section))
            notes.push_back(
                Note(qv::code::PLACE_UNKNOWN, object, "the files do not tell where its namespaces stood among its other objects"));
    });
}

/** Writes all files of the model into a directory. */
void WriteFiles(SMProject2& project, const std::string& directory, const SMSplitOptions& options, SMTicker& ticker) {
    std::set<QvULString> tags;
    if (options.namespaces) tags.insert("namespace");
    if (options.packages) tags.insert("package");
    WatchedFiles files(std::move(tags), ticker);
    const ReadyToSplit ready(project, directory);
    QvFileWriter writer((directory + "/" + options.mainName).c_str());
    SMWatchedTarget watched(writer, ticker);
    QvSAX2PrintHandler printer("UTF-8", false, watched, false);
    project.WriteXMLDocument(&files, &printer, watched);
    watched.flush();
    writer.close();
}

}  // namespace

SMSplitResult SMSplitModel(SMProject2& project, const std::string& directory, const SMSplitOptions& options) {
    SMSplitResult result;
    std::string staging;
    const std::string place = directory.empty() ? "." : directory;
    SMRunGuarded(result, [&] {
        RequireComplete(project);
        RequireMainName(options.mainName);
        qv::StagedFiles staged(place);
        staging = staged.Path();
        SMTicker ticker(options.control, SMProgress::bytes, 1);
        WriteFiles(project, staging, options, ticker);
        result.changed = staged.Publish(options.mainName);
        result.bytes = ticker.Done();
        return true;
    });
    // what could not be written is known by the place that it was meant for
    for (SMDiagnostic& diagnostic : result.diagnostics)
        if (!staging.empty() && diagnostic.file.starts_with(staging)) diagnostic.file = place + diagnostic.file.substr(staging.size());
    if (!result.IsDone()) return result;
    try {
        TellWhatIsLost(project, options, result.diagnostics);
    } catch (const std::bad_alloc&) {
        // the files stand, and a note that is missing does not make that a failure
    }
    return result;
}

SMSaveResult SMJoinModel(const SMProject2& project, const std::string& path, const SMSaveOptions& saving) {
    SMSaveResult result;
    SMRunGuarded(result, [&] {
        RequireComplete(project);
        return true;
    });
    if (result.IsDone()) result = SMSaveModel(project, path, saving);
    if (result.IsDone()) TellWhatWasLost(project, result.diagnostics);
    return result;
}

SMSaveResult SMJoinModel(const std::string& mainDocument, const std::string& path, const SMLoadOptions& loading,
                         const SMSaveOptions& saving) {
    const SMLoadResult loaded = SMLoadModel(mainDocument, loading);
    SMSaveResult result;
    result.status = loaded.status;
    if (loaded.IsDone()) result = SMJoinModel(*loaded.project, path, saving);
    result.diagnostics.insert(result.diagnostics.begin(), loaded.diagnostics.begin(), loaded.diagnostics.end());
    return result;
}

}  // namespace schema_002_000
