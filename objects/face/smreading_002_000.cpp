#include "objects/face/smreading_002_000.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <cstdlib>
#include <cstring>
#include <exception>
#include <map>
#include <memory>
#include <optional>
#include <unordered_set>
#include <utility>
#include <vector>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include "core/qvutils/content/contenttee.h"
#include "core/qvutils/content/sourcebytes.h"
#include "core/qvutils/content/sourceplaces.h"
#include "core/qvutils/diag/codes.h"
#include "core/qvutils/diag/tklerrors.h"
#include "core/qvutils/xml/documentsource.h"
#include "core/qvutils/xml/elementerror.h"
#include "objects/containers/smfolder2_002_000.h"
#include "objects/containers/smnamespace2_002_000.h"
#include "objects/face/smguard_002_000.h"
#include "objects/project/smprojectdocument_002_000.h"

namespace schema_002_000 {

namespace {

constexpr std::size_t ELEMENTS_PER_TICK = 4'096;

/** Which objects owe their date to the document. */
class DateWatch {
  public:
    /** At the end of an element that told the date of an object. */
    void Note(const IOObject* object) {
        if (object && IsOfNow(*object)) m_dated.insert(object);
    }
    /**
     * Reading a description dates its object, and the document may have no date to set it right. Such an object has none: so a document
     * tells the same whenever it is read.
     */
    void Undate(const SMProject2& project) const {
        for (SMObjectBase* const object : project.GetAllObjects().GetObjects())
            if (object && IsOfNow(*object) && m_dated.count(object) == 0) object->SetLastChangedDate(QvDate(false));
    }

  private:
    bool IsOfNow(const IOObject& object) const {
        const QvDate& date = object.GetLastChangedDate();
        return date.IsSet() && Fields(date) >= m_start;
    }
    static std::array<int, 6> Fields(const QvDate& date) {
        return {date.Year(), date.Month(), date.Day(), date.Hour(), date.Minute(), date.Second()};
    }

    std::array<int, 6> m_start = Fields(QvDate(true));
    /** Those that the document dates at the time of its reading or later: mostly none. */
    std::unordered_set<const IOObject*> m_dated;
};

/** Builds the project, and looks at its caller's wishes at each element. */
class WatchedBuilder : public SMProjectBuilder {
  public:
    WatchedBuilder(SMProject2* project, const SMControl& control)
        : SMProjectBuilder(project), m_ticker(control, SMProgress::elements, ELEMENTS_PER_TICK) {
        m_ticker.WatchBytes(project->m_partFiles.Totals().bytes);
    }

    void startElement(const I18NString& uri, const I18NString& localName, const I18NString& qName, const QvXMLAttributes& attrs) override {
        if (m_ticker.Done() == 0 && localName != "project") FailAtRoot(qName);
        m_ticker.Add(1);
        SMProjectBuilder::startElement(uri, localName, qName, attrs);
    }
    void endElement(const I18NString& uri, const I18NString& localName, const I18NString& qName) override {
        SMProjectBuilder::endElement(uri, localName, qName);
        if (localName == m_tags->lastChanged) m_dates.Note(InnermostObject());
    }
    /** For an element of a separate file. */
    void Watch() { m_ticker.Add(1); }
    const DateWatch& Dates() const { return m_dates; }

  private:
    [[noreturn]] static void FailAtRoot(const I18NString& name) {
        qv::FailAtToldElement("no model document: the root element is <" + std::string(name.utf8()) + ">, not <project>",
                              qv::code::WRONG_ROOT);
    }

    SMTicker m_ticker;
    DateWatch m_dates;
};

/** Dates that separate files tell are not watched. */
bool HasSeparateFiles(const SMProject2& project) {
    const SMEnum_xmltag* const tags = SMEnum_xmltag::GetInstance();
    return project.m_partFiles.ReadCount(tags->namespace_) + project.m_partFiles.ReadCount(tags->package) > 0;
}

void NumberSiblings(SMSectionType2& section) {
    const std::vector<SMObjectBase*>& items = section.GetDisplayOrderItems();
    const auto isAhead = [](const SMObjectBase* a, const SMObjectBase* b) { return a && b && a->displayOrder >= b->displayOrder; };
    if (std::adjacent_find(items.begin(), items.end(), isAhead) == items.end()) return;
    int number = 0;
    for (SMObjectBase* const item : items)
        if (item) item->displayOrder = number++;
    while (section.TakeDisplayOrder() + 1 < number) continue;  // the next child comes behind them
}

/**
 * A namespace that stands in a file of its own, or that a placeholder stands for, takes no number in the order of its siblings. They all
 * get those of the one document that the model is written as, so that its rows tell the same, however it was read.
 */
void NumberSiblings(const SMProject2& project) {
    std::vector<SMSectionType2*> sections;
    if (SMNamespace2* const root = project.GetRootNamespace()) sections.push_back(root);
    while (!sections.empty()) {
        SMSectionType2& section = *sections.back();
        sections.pop_back();
        NumberSiblings(section);
        for (const auto& below : section.GetNamespaces()) sections.push_back(below.get());
        for (const auto& below : section.GetFolders()) sections.push_back(below.get());
    }
}

std::string DirectoryOf(const std::string& path) {
    const std::size_t slash = path.rfind('/');
    return slash == std::string::npos ? std::string() : path.substr(0, std::max<std::size_t>(slash, 1));
}

/** What a watcher raised inside a separate file comes out as it was. */
void ParseAll(const std::function<void()>& parse) {
    try {
        parse();
    } catch (const SMReadEnded& ended) {
        if (ended.why) std::rethrow_exception(ended.why);
        throw;
    }
}

[[noreturn]] void FailToSpool(const std::string& path) {
    throw TklRuntimeError(std::string("cannot keep what comes from it: ") + std::strerror(errno), path);
}

qv::Descriptor NamelessFile(const std::string& path) {
    const char* const wanted = std::getenv("TMPDIR");
    std::string name = std::string(wanted && *wanted ? wanted : "/tmp") + "/smodelXXXXXX";
    qv::Descriptor file(::mkostemp(name.data(), O_CLOEXEC));
    if (!file) FailToSpool(path);
    ::unlink(name.c_str());
    return file;
}

/** Keeps in a file what is read from somewhere else. */
class KeptSource final : public qv::DocumentSource {
  public:
    /** The file is borrowed. */
    KeptSource(const std::string& path, int file) : m_source(path), m_path(path), m_file(file) {}
    std::string_view Head() const override { return m_source.Head(); }
    std::string_view NextBlock() override {
        const std::string_view block = m_source.NextBlock();
        for (std::string_view rest = block; !rest.empty();) {
            const ssize_t count = ::write(m_file, rest.data(), rest.size());
            if (count < 0 && errno != EINTR) FailToSpool(m_path);
            if (count > 0) rest.remove_prefix(static_cast<std::size_t>(count));
        }
        return block;
    }
    void LookBack(std::size_t size, const std::function<void(std::string_view)>& look) const override {
        const qv::SourceBytes kept(m_file, 0, size);
        if (!kept.Utf8().empty()) look(kept.Utf8());
    }

  private:
    qv::FileSource m_source;
    const std::string& m_path;
    int m_file;
};

}  // namespace

SMModelInput::SMModelInput(std::string path, const SMLoadOptions& options, std::string directory)
    : m_path(std::move(path)),
      m_name(options.name.empty() ? m_path : options.name),
      m_directory(options.baseDirectory.empty() ? std::move(directory) : options.baseDirectory) {}

SMModelInput SMModelInput::File(const std::string& path, const SMLoadOptions& options) {
    return SMModelInput(path, options, DirectoryOf(path));
}

SMModelInput SMModelInput::Bytes(std::string_view document, const SMLoadOptions& options) {
    SMModelInput input(options.name, options, std::string());
    input.m_isBytes = true;
    input.m_bytes = document;
    return input;
}

void SMModelInput::Parse(QvContentHandler& handler, const SMXMLLimits& limits, SMXMLTotals& totals) {
    const auto parse = [&](qv::DocumentSource&& source) { qv::ParseSource(source, m_path, &handler, limits, &totals); };
    if (m_isBytes) return parse(qv::MemorySource(m_bytes));
    if (std::exchange(m_isToBeKept, false)) return parse(KeptSource(m_path, m_file.Get()));
    if (!m_file) return parse(qv::FileSource(m_path));
    if (::lseek(m_file.Get(), static_cast<off_t>(m_start), SEEK_SET) < 0) FailToSpool(m_path);
    parse(qv::FileSource(m_file.Get(), m_path));
}

void SMModelInput::MakeRepeatable() {
    struct stat status {};
    if (m_isBytes || ::stat(m_path.c_str(), &status) != 0 || S_ISDIR(status.st_mode)) return;
    m_isToBeKept = !S_ISREG(status.st_mode);
    if (m_isToBeKept)
        m_file = NamelessFile(m_path);
    else if (m_path == "/dev/stdin")
        ShareStandardInput();
}

void SMModelInput::ShareStandardInput() {
    const off_t start = ::lseek(STDIN_FILENO, 0, SEEK_CUR);
    if (start < 0) FailToSpool(m_path);
    m_start = static_cast<std::size_t>(start);
    m_file = qv::Descriptor(::fcntl(STDIN_FILENO, F_DUPFD_CLOEXEC, 0));
}

void SMModelInput::ForText(const std::function<void(std::string_view)>& look, std::size_t size) const {
    if (m_isBytes) return qv::MemorySource(m_bytes).LookBack(size, look);
    qv::Descriptor opened;
    struct stat status {};
    if (!m_file && ::stat(m_path.c_str(), &status) == 0 && S_ISREG(status.st_mode))
        opened = qv::Descriptor(::open(m_path.c_str(), O_RDONLY | O_CLOEXEC));
    if (m_file || opened) look(qv::SourceBytes(m_file ? m_file.Get() : opened.Get(), m_start, size).Utf8());
}

std::string SMModelInput::Stamp() const {
    struct stat status {};
    if (m_isBytes || m_file || ::stat(m_path.c_str(), &status) != 0) return {};
    std::string stamp;
    for (const long long part :
         {static_cast<long long>(status.st_dev), static_cast<long long>(status.st_ino), static_cast<long long>(status.st_size),
          static_cast<long long>(status.st_mtim.tv_sec), static_cast<long long>(status.st_mtim.tv_nsec)})
        stamp += std::to_string(part) + " ";
    return stamp;
}

std::string SMReading::RootDirectory() const {
    const std::string& directory = m_input.Directory();
    return directory.empty() ? "." : directory;
}

SMLoadResult SMReading::Load(qv::ContentSink* sink) {
    SMLoadResult result;
    QvSmartPtr<SMProject2> project;
    SMRunGuarded(result, m_options.limits.findings, [&] {
        project = new SMProject2;
        const std::string& directory = m_input.Directory();
        project->m_baseDirectory = I18NString(std::string_view(directory));
        WatchedBuilder builder(project, m_options.control);
        std::optional<qv::ContentSource> source;
        if (sink) source.emplace(*sink);
        SMPartFiles& files = project->m_partFiles;
        files.SetRoot(RootDirectory());
        files.SetLimits(m_options.limits);
        files.SetWatch([&] { builder.Watch(); });
        files.SetContentSource(source ? &*source : nullptr);
        std::optional<qv::ContentTee> tee;
        if (source) tee.emplace(*source, builder);
        QvContentHandler& handler = tee ? static_cast<QvContentHandler&>(*tee) : builder;
        ParseAll([&] { m_input.Parse(handler, m_options.limits, files.Totals()); });
        files.SetWatch(nullptr);
        files.SetContentSource(nullptr);
        if (!HasSeparateFiles(*project)) builder.Dates().Undate(*project);
        NumberSiblings(*project);
        return true;
    });
    if (result.IsDone())
        result.project = project;
    else if (project)
        m_most = project->m_partFiles.Totals().bytes;
    return result;
}

SMLoadResult SMReading::Read() {
    SMLoadResult result = Load(nullptr);
    Finish(result);
    return result;
}

SMLoadResult SMReading::ReadContent(qv::ContentSink& sink) {
    return Load(&sink);
}

void SMReading::Answer(const SMProject2& project, std::vector<Question>& questions) const {
    AnswerIn(project.m_partFiles, questions);
}

void SMReading::AnswerIn(const SMPartFiles& files, std::vector<Question>& questions) const {
    std::map<std::string, std::vector<std::size_t>> byFile;
    for (std::size_t i = 0; i < questions.size(); ++i) byFile[questions[i].file].push_back(i);
    for (const auto& [file, indexes] : byFile) {
        std::vector<qv::PlaceQuestion> asked;
        for (const std::size_t i : indexes) asked.push_back(questions[i].place);
        const auto look = [&](std::string_view text) { qv::AnswerPlaces(text, asked, m_options.limits); };
        if (file == m_input.Path())
            m_input.ForText(look, m_most);
        else if (const qv::Descriptor part = files.Open(file))
            look(qv::SourceBytes(part.Get(), 0, m_most).Utf8());
        for (std::size_t i = 0; i < indexes.size(); ++i) questions[indexes[i]].place = asked[i];
    }
}

std::size_t SMReading::IndexOfEnd(const SMLoadResult& result) const {
    const std::size_t count = result.diagnostics.size();
    if (result.status != SMStatus::failed || count == 0) return count;
    const bool hasUnlisted = count - 1 > m_options.limits.findings;
    return count - (hasUnlisted ? 2 : 1);
}

void SMReading::Finish(SMLoadResult& result) const {
    std::vector<Question> questions;
    for (const SMDiagnostic& found : result.diagnostics)
        questions.push_back({found.file, {qv::PlaceQuestion::What::event, found.line, found.column, {}, found.line, found.column}});
    if (std::any_of(questions.begin(), questions.end(), [](const Question& asked) { return asked.place.line > 0; })) {
        SMPartFiles files;
        files.SetRoot(RootDirectory());
        AnswerIn(files, questions);
        const std::size_t ended = IndexOfEnd(result);
        for (std::size_t i = 0; i < questions.size(); ++i) {
            if (i == ended) continue;
            result.diagnostics[i].line = questions[i].place.startLine;
            result.diagnostics[i].column = questions[i].place.startColumn;
        }
    }
    for (SMDiagnostic& found : result.diagnostics)
        if (found.file == m_input.Path()) found.file = m_input.Name();
}

}  // namespace schema_002_000
