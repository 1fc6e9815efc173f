#pragma once

#include <stdexcept>
#include <string>
#include <string_view>

/**
 * What reads foreign bytes, each with the statements that must hold for any bytes at all. The fuzzer calls these functions, and a test
 * replays the corpus through them. A new target is a file in targets/, a line here, and seeds from seeds.cpp.
 */
namespace fuzz {

/** A statement that must hold for every input does not. */
struct Broken : std::logic_error {
    using std::logic_error::logic_error;
};

inline void Require(bool holds, const std::string& statement) {
    if (!holds) throw Broken(statement);
}

/** A model document: what is written of it, read and written again is the same. */
void Document(std::string_view input);
/** A document accounted for: what is written of it loses nothing, and a stranger put into that is told alone, at its place. */
void Accounting(std::string_view input);
/** The same model stored and loaded: the store is clear about what it refuses, and a second save of what it took changes nothing. */
void Storing(std::string_view input);
/** A main document and its separate files: split again, they are the same model. */
void Files(std::string_view input);
/** An element that is kept as XML: references are found in both ways alike, and what a rename leaves is XML. */
void KeptXml(std::string_view input);
/** Fragments of remaining info, as the records of every tag of objects of one kind. */
void RemainingInfo(std::string_view input);
/** The two columns of a determinant. */
void Determinant(std::string_view input);
/** Texts with references, and lists of renames, through a list and through a whole model. */
void Rename(std::string_view input);
/** Object ids, looked up in a model in all ways. */
void ObjectId(std::string_view input);
/** Dates, numbers, enumerated texts, file names. */
void Values(std::string_view input);
/** Rows with any values in their cells, through all readers of a repository. */
void Rows(std::string_view input);

struct Target {
    const char* name;
    void (*run)(std::string_view input);
};
inline constexpr Target TARGETS[] = {{"document", Document},
                                     {"accounting", Accounting},
                                     {"storing", Storing},
                                     {"files", Files},
                                     {"keptxml", KeptXml},
                                     {"remaininginfo", RemainingInfo},
                                     {"determinant", Determinant},
                                     {"rename", Rename},
                                     {"objectid", ObjectId},
                                     {"values", Values},
                                     {"rows", Rows}};

}  // namespace fuzz
