#pragma once

#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "objects/face/smaccounting_002_000.h"

/** The losses of a document as they are printed. */
inline std::vector<std::string> LossesOf(const std::string& document) {
    const schema_002_000::SMAccountedResult result = schema_002_000::SMLoadModelBytesAccounted(document);
    EXPECT_TRUE(result.IsDone());
    std::vector<std::string> told;
    for (const schema_002_000::SMLoss& loss : result.losses) told.push_back(FormatDiagnostic(schema_002_000::SMDiagnosticOf(loss)));
    return told;
}
