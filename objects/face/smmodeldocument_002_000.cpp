#include "objects/face/smmodeldocument_002_000.h"

#include <algorithm>
#include <array>

#include "core/qvutils/diag/tklerrors.h"
#include "core/qvutils/xml/qvsax2printhandler.h"
#include "objects/face/smguard_002_000.h"
#include "objects/project/smprojectdocument_002_000.h"

namespace schema_002_000 {

namespace {

constexpr std::size_t ELEMENTS_PER_TICK = 4'096;
constexpr std::size_t WINDOW = std::size_t{64} << 10;

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

  private:
    [[noreturn]] static void FailAtRoot(const I18NString& name) {
        const SMSourceContext at = SMSourceFrame::Innermost()->Describe();
        throw TklRuntimeError("no model document: the root element is <" + std::string(name.utf8()) + ">, not <project>",
                              std::string(at.file), at.line, at.column);
    }

    SMTicker m_ticker;
};

/** Hands bytes on in blocks, counts them, and looks at its caller's wishes at each block. */
class WatchedTarget : public QvXMLFormatTarget {
  public:
    WatchedTarget(QvXMLFormatTarget& target, const SMControl& control) : m_target(target), m_ticker(control, SMProgress::bytes, 1) {
        m_at = m_window.data();
        m_end = m_at + m_window.size();
    }

    void flush() override {
        HandOn();
        m_target.flush();
    }
    std::size_t Count() const { return m_ticker.Done(); }

  protected:
    void overflow(const char* bytes, std::size_t length) override {
        HandOn();
        if (length < m_window.size()) return write(bytes, length);
        m_ticker.Add(length);
        m_target.write(bytes, length);
    }

  private:
    void HandOn() {
        const auto length = static_cast<std::size_t>(m_at - m_window.data());
        m_at = m_window.data();
        m_ticker.Add(length);
        m_target.write(m_window.data(), length);
    }

    QvXMLFormatTarget& m_target;
    SMTicker m_ticker;
    std::array<char, WINDOW> m_window;
};

std::string DirectoryOf(const std::string& path) {
    const std::size_t slash = path.rfind('/');
    return slash == std::string::npos ? std::string() : path.substr(0, std::max<std::size_t>(slash, 1));
}

using Parse = std::function<void(QvSAX2Parser&)>;

SMLoadResult Load(const SMLoadOptions& options, const std::string& baseDirectory, const Parse& parse) {
    SMLoadResult result;
    QvSmartPtr<SMProject2> project;
    SMRunGuarded(result, [&] {
        project = new SMProject2;
        project->m_baseDirectory = I18NString(std::string_view(options.baseDirectory.empty() ? baseDirectory : options.baseDirectory));
        WatchedBuilder builder(project, options.control);
        QvSAX2Parser parser;
        parser.setLimits(options.limits);
        parser.setContentHandler(&builder);
        parse(parser);
        return true;
    });
    if (result.IsDone()) result.project = project;
    return result;
}

void Write(const SMProject2& project, QvXMLFormatTarget& target, const SMSaveOptions& options, std::size_t& bytes) {
    WatchedTarget watched(target, options.control);
    QvSAX2PrintHandler printer("UTF-8", false, watched, false);
    printer.SetIndent(options.indent);
    project.WriteXMLDocument(nullptr, &printer, watched);
    watched.flush();
    bytes = watched.Count();
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
    SMSaveResult result;
    SMRunGuarded(result, [&] {
        QvFileWriter writer(path.c_str());
        Write(project, writer, options, result.bytes);
        writer.close();
        return true;
    });
    return result;
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
