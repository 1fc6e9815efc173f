#include "objects/face/smmodeldocument_002_000.h"

#include "core/qvutils/xml/qvsax2printhandler.h"
#include "objects/face/smreading_002_000.h"
#include "objects/face/smwatchedtarget_002_000.h"

namespace schema_002_000 {

namespace {

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
    return SMReading(SMModelInput::File(path, options), options).Read();
}

SMLoadResult SMLoadModelBytes(std::string_view document, const SMLoadOptions& options) {
    return SMReading(SMModelInput::Bytes(document, options), options).Read();
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
