#pragma once

#include <cstddef>
#include <functional>
#include <string>
#include <string_view>

#include "core/qvutils/io/qvxmlformattarget.h"
#include "core/qvutils/xml/qvsax2parser.h"
#include "objects/face/smoperation_002_000.h"
#include "objects/project/smproject2_002_000.h"

namespace schema_002_000 {

struct SMLoadOptions {
    SMControl control;
    SMXMLLimits limits;
    /** Stands in diagnostics; empty: the path of the document. */
    std::string name;
    /**
     * The directory of the model's separate files; empty: that of the document, or the working directory for bytes. No file outside
     * of it is opened, whatever the document says.
     */
    std::string baseDirectory;
};

struct SMLoadResult : SMResult {
    /** Null unless the status is done. */
    QvSmartPtr<SMProject2> project;
};

struct SMSaveOptions {
    SMControl control;
    /** Lays the document out for people; without it, it is canonical. */
    bool indent = false;
};

struct SMSaveResult : SMResult {
    std::size_t bytes = 0;
};

/**
 * Reads a model document. A root element that is not "project" makes it fail. A separate file that cannot be read is an error among
 * the diagnostics, and `m_partFiles` of the project counts it: the model lacks what it holds. An object that the document gives no date
 * of change has none, unless there are separate files.
 */
SM_API SMLoadResult SMLoadModel(const std::string& path, const SMLoadOptions& options = {});
/** The same for a document in memory, which is not copied. */
SM_API SMLoadResult SMLoadModelBytes(std::string_view document, const SMLoadOptions& options = {});

/** Writes the model to a file, whole or not at all: a save that does not end well leaves the file as it was. */
SM_API SMSaveResult SMSaveModel(const SMProject2& project, const std::string& path, const SMSaveOptions& options = {});
/** Puts a document that `write` gives to its target into a file, whole or not at all. What `write` raises makes the save fail. */
SM_API SMSaveResult SMSaveDocument(const std::string& path, const std::function<void(QvXMLFormatTarget&)>& write,
                                   const SMSaveOptions& options = {});
/** Writes the model to a target, and flushes it. */
SM_API SMSaveResult SMWriteModel(const SMProject2& project, QvXMLFormatTarget& target, const SMSaveOptions& options = {});

}  // namespace schema_002_000
