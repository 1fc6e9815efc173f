#pragma once

#include <string>

#include "core/qvutils/base/smapi.h"
#include "core/qvutils/io/descriptor.h"

namespace qv {

/**
 * Opens a regular file for reading, and nothing outside of a directory on the way there. `path` is relative to `root`, which may be
 * reached through links itself. Each step is looked at before it is taken, without opening what it leads to, and from the directory
 * reached so far: ".." above the root, a link that leads above it, an absolute path or link, and what is no regular file are
 * refused, and nobody can put a link in the place of a step in the meantime. Raises TklRuntimeError, with `shown` as the file.
 */
SM_API Descriptor OpenBeneath(const std::string& root, const std::string& path, const std::string& shown);

}  // namespace qv
