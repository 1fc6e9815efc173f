#pragma once

#include <string_view>

#include "core/qvutils/xml/limits.h"

namespace qv {

/**
 * Told where the scanner stands behind each start tag, each end tag, and each reference to an entity in content. All that an entity
 * holds has the place of the reference.
 */
class MarkupWatcher {
  public:
    virtual ~MarkupWatcher() = default;
    virtual void Mark(long line, long column) = 0;
};

/** Scans a document in UTF-8, whatever encoding it names. `watcher` is borrowed. Raises TklRuntimeError where the scan ends early. */
void WatchMarkup(std::string_view document, MarkupWatcher& watcher, const SMXMLLimits& limits);

}  // namespace qv
