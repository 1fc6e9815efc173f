#pragma once

#include <string>
#include <vector>

/** A document that means ill, or that cannot be read. */
struct Attack {
    /** The file in tests/data/attacks. */
    const char* name;
    /** Of `smodel check`. */
    int status;
    /** The code it is told by; empty when it does no harm and is read. */
    const char* code;
};

/** All files of tests/data/attacks. */
const std::vector<Attack>& Attacks();

/**
 * Puts the attacks into `directory`/model, with what they look for: files beside that directory, links that lead out of it, and a pipe
 * that whoever opens it waits at.
 */
void LayOutAttacks(const std::string& directory);
