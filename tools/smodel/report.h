#pragma once

#include <string>

#include "objects/face/smmodelcheck_002_000.h"

#include <nlohmann/json.hpp>

/** All that a check told, for programs. `file` is what the user gave, `status` that of the command, `directory` where it ran. */
struct CheckReport {
    const schema_002_000::SMCheckResult& result;
    std::string file;
    int status = 0;
    std::string directory;

    nlohmann::ordered_json Json() const;
    /** SARIF 2.1.0: one run, with all codes as its rules. */
    nlohmann::ordered_json Sarif() const;
};
