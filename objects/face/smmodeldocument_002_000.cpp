#include "objects/face/smmodeldocument_002_000.h"

#include <algorithm>
#include <array>
#include <exception>
#include <unordered_set>

#include "core/qvutils/diag/codes.h"
#include "core/qvutils/diag/tklerrors.h"
#include "core/qvutils/xml/qvsax2printhandler.h"
#include "objects/face/smwatchedtarget_002_000.h"
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
        : SMProjectBuilder(project), m_ticker(control, SMProgress::elements, ELEMENTS_PER_TICK) {}

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
        const SMSourceContext at = SMSourceFrame::Innermost()->Describe();
        throw TklRuntimeError("no model document: the root element is <" + std::string(name.utf8()) + ">, not <project>",
                              std::string(at.file), at.line, at.column, qv::code::WRONG_ROOT);
    }

    SMTicker m_ticker;
    DateWatch m_dates;
};

/** Dates that separate files tell are not watched. */
bool HasSeparateFiles(const SMProject2& project) {
    const SMEnum_xmltag* const tags = SMEnum_xmltag::GetInstance();
    return project.m_partFiles.ReadCount(tags->namespace_) + project.m_partFiles.ReadCount(tags->package) > 0;
}

std::string DirectoryOf(const std::string& path) {
    const std::size_t slash = path.rfind('/');
    return slash == std::string::npos ? std::string() : path.substr(0, std::max<std::size_t>(slash, 1));
}

using Parse = std::function<void(QvSAX2Parser&)>;

/** What a watcher raised inside a separate file comes out as it was. */
void ParseAll(const std::function<void()>& parse) {
    try {
        parse();
    } catch (const SMReadEnded& ended) {
        if (ended.why) std::rethrow_exception(ended.why);
        throw;
    }
}

SMLoadResult Load(const SMLoadOptions& options, const std::string& baseDirectory, const Parse& parse) {
    SMLoadResult result;
    QvSmartPtr<SMProject2> project;
    SMRunGuarded(result, [&] {
        project = new SMProject2;
        const std::string& directory = options.baseDirectory.empty() ? baseDirectory : options.baseDirectory;
        project->m_baseDirectory = I18NString(std::string_view(directory));
        WatchedBuilder builder(project, options.control);
        project->m_partFiles.SetRoot(directory.empty() ? "." : directory);
        project->m_partFiles.SetLimits(options.limits);
        project->m_partFiles.SetWatch([&] { builder.Watch(); });
        QvSAX2Parser parser;
        parser.setLimits(options.limits);
        parser.setTotals(&project->m_partFiles.Totals());
        parser.setContentHandler(&builder);
        ParseAll([&] { parse(parser); });
        project->m_partFiles.SetWatch(nullptr);
        if (!HasSeparateFiles(*project)) builder.Dates().Undate(*project);
        return true;
    });
    if (result.IsDone()) result.project = project;
    return result;
}

void Write(const SMProject2& project, QvXMLFormatTarget& target, const SMSaveOptions& options, std::size_t& bytes) {
    SMTicker ticker(options.control, SMProgress::bytes, 1);
    SMWatchedTarget watched(target, ticker);
    QvSAX2PrintHandler printer("UTF-8", false, watched, false);
    printer.SetIndent(options.indent);
    project.WriteXMLDocument(nullptr, &printer, watched);
    watched.flush();
    bytes = ticker.Done();
}

SMSaveResult Save(const std::string& path, const std::function<void(QvXMLFormatTarget&, std::size_t&)>& write) {
    SMSaveResult result;
    SMRunGuarded(result, [&] {
        QvFileWriter writer(path.c_str());
        write(writer, result.bytes);
        writer.close();
        return true;
    });
    return result;
}

}  // namespace

SMLoadResult SMLoadModel(const std::string& path, const SMLoadOptions& options) {
    SMLoadResult result = Load(options, DirectoryOf(path), [&](QvSAX2Parser& parser) { parser.parse(I18NString(std::string_view(path))); });
    if (options.name.empty()) return result;
    for (SMDiagnostic& diagnostic : result.diagnostics)
        if (diagnostic.file == path) diagnostic.file = options.name;
    return result;
}

SMLoadResult SMLoadModelBytes(std::string_view document, const SMLoadOptions& options) {
    return Load(options, std::string(), [&](QvSAX2Parser& parser) {
        parser.setSourceName(I18NString(std::string_view(options.name)));
        parser.parse(document.data(), document.size());
    });
}

SMSaveResult SMSaveModel(const SMProject2& project, const std::string& path, const SMSaveOptions& options) {
    return Save(path, [&](QvXMLFormatTarget& target, std::size_t& bytes) { Write(project, target, options, bytes); });
}

SMSaveResult SMSaveDocument(const std::string& path, const std::function<void(QvXMLFormatTarget&)>& write, const SMSaveOptions& options) {
    return Save(path, [&](QvXMLFormatTarget& target, std::size_t& bytes) {
        SMTicker ticker(options.control, SMProgress::bytes, 1);
        SMWatchedTarget watched(target, ticker);
        write(watched);
        watched.flush();
        bytes = ticker.Done();
    });
}

SMSaveResult SMWriteModel(const SMProject2& project, QvXMLFormatTarget& target, const SMSaveOptions& options) {
    SMSaveResult result;
    SMRunGuarded(result, [&] {
        Write(project, target, options, result.bytes);
        return true;
    });
    return result;
}

}  // namespace schema_002_000
