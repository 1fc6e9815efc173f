#pragma once

#include <string>

#include "tests/support/storerows.h"

class SMRepository;

/**
 * What is wrong with a store: revisions that are missing or cannot be loaded, with their documents, rows of revisions that do not stand,
 * two versions of one thing at one time. Empty for a sound one. Of many revisions the oldest and the newest are loaded.
 */
std::string StoreFaults(SMRepository& repository, qv::StoreBackend& backend, const StoreTables& tables);
