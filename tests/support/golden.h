#pragma once

#include <string>

namespace smtest {

/** Compares a text with a file under tests/data/golden; writes the file anew when SMODEL_UPDATE_GOLDENS is set. */
void ExpectGolden(const std::string& file, const std::string& text);

}  // namespace smtest
