#pragma once

#include <functional>
#include <string>
#include <vector>

#include "tools/smodel/command.h"
#include "objects/face/smaccounting_002_000.h"
#include "objects/face/smmodelcheck_002_000.h"
#include "objects/face/smmodeldocument_002_000.h"
#include "tools/smodel/status.h"

/** The path that the library gets for what the user gave: "-" is standard input, or output. */
std::string InputPath(const std::string& given);
std::string OutputPath(const std::string& given);
/** What messages call it. */
std::string NameOfOutput(const std::string& given);

/** How to read what the user gave. */
schema_002_000::SMLoadOptions LoadOptionsFor(const std::string& given);

/** Reads a model while progress is shown. What the reading found is not printed when `quiet`; why it failed always is. */
schema_002_000::SMLoadResult ReadModel(const std::string& given, bool quiet = false);

/** What a command needs to know that writes a model which it has read. */
struct LossArguments {
    bool acceptLoss = false;
};
void AddLossOption(const Command& command, LossArguments& arguments);

/** The losses in the form that is printed. */
std::vector<SMDiagnostic> DiagnosticsOf(const std::vector<schema_002_000::SMLoss>& losses);

/** Checks a model while progress is shown; prints nothing. */
schema_002_000::SMCheckResult CheckModel(const std::string& given);

/**
 * Reads a model that is to be written. What the reading found is printed, and so is the content that would be lost; unless that is
 * accepted, there is no project then; nor is there one when a separate file could not be read, whatever is accepted, since nobody has
 * seen what the model lacks then. `status` tells how it ended.
 */
schema_002_000::SMAccountedResult ReadModelToWrite(const std::string& given, const LossArguments& arguments, int& status);

/** Writes a model while progress is shown; prints what went wrong. */
schema_002_000::SMSaveResult SaveModel(const schema_002_000::SMProject2& project, const std::string& given, bool indent = false);

/** The same for a document of so many bytes that `write` gives. */
schema_002_000::SMSaveResult SaveDocument(const std::function<void(QvXMLFormatTarget&)>& write, const std::string& given,
                                          std::size_t bytes);

/**
 * For a model that the process ends with: the system takes its memory back at once, while to free a million objects takes a second. A build
 * that looks for leaks frees them.
 */
void LeaveToTheSystem(schema_002_000::SMProject2& project);

/** The exit status that tells how an operation ended. */
int StatusOf(const schema_002_000::SMResult& result);
/**
 * The same for an operation that writes a model. A warning counts for nothing there: all was written, and what is wrong with the model
 * decides about the status of reading it.
 */
int StatusOfWriting(const schema_002_000::SMResult& result);
/** The one that weighs more. */
int Worse(int a, int b);
