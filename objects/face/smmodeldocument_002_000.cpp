#include "objects/face/smmodeldocument_002_000.h"

#include "core/qvutils/xml/qvsax2printhandler.h"
#include "objects/face/smreading_002_000.h"
#include "objects/face/smwatchedtarget_002_000.h"

namespace schema_002_000 {

namespace {

using Writer = std::function<void(QvXMLFormatTarget&)>;

void WriteWatched(QvXMLFormatTarget& target, const SMSaveOptions& options, std::size_t& bytes, const Writer& write) {
    SMTicker ticker(options.control, SMProgress::bytes, 1);
    SMWatchedTarget watched(target, ticker);
    write(watched);
    watched.flush();
    bytes = ticker.Done();
}

/** What writes a model as a document. */
Writer WriterOf(const SMProject2& project, const SMSaveOptions& options) {
    return [&](QvXMLFormatTarget& target) {
        QvSAX2PrintHandler printer("UTF-8", false, target, false);
        printer.SetIndent(options.indent);
        project.WriteXMLDocument(nullptr, &printer, target);
    };
}

}  // namespace

SMLoadResult SMLoadModel(const std::string& path, const SMLoadOptions& options) {
    return SMReading(SMModelInput::File(path, options), options).Read();
}

SMLoadResult SMLoadModelBytes(std::string_view document, const SMLoadOptions& options) {
    return SMReading(SMModelInput::Bytes(document, options), options).Read();
}

SMSaveResult SMSaveModel(const SMProject2& project, const std::string& path, const SMSaveOptions& options) {
    return SMSaveDocument(path, WriterOf(project, options), options);
}

SMSaveResult SMSaveDocument(const std::string& path, const std::function<void(QvXMLFormatTarget&)>& write, const SMSaveOptions& options) {
    SMSaveResult result;
    SMRunGuarded(result, [&] {
        QvFileWriter writer(path.c_str());
        WriteWatched(writer, options, result.bytes, write);
        writer.close();
        return true;
    });
    return result;
}

SMSaveResult SMWriteModel(const SMProject2& project, QvXMLFormatTarget& target, const SMSaveOptions& options) {
    SMSaveResult result;
    SMRunGuarded(result, [&] {
        WriteWatched(target, options, result.bytes, WriterOf(project, options));
        return true;
    });
    return result;
}

}  // namespace schema_002_000
