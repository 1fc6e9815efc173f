#pragma once

#include <cstddef>
#include <span>
#include <string>

#include "core/qvutils/base/smapi.h"
#include "core/qvutils/diag/tklerrors.h"

/** Bounds on a document; one beyond a bound raises TklRuntimeError with the code of the bound. No honest model meets the defaults. */
struct SM_API SMXMLLimits {
    /** Bytes of the document; those of its separate files count as well, as they do for all that is counted as a whole. */
    std::size_t documentBytes = std::size_t{16} << 30;
    std::size_t depth = 1'000;
    std::size_t elements = 1'000'000'000;
    /** Attributes of a start tag. */
    std::size_t attributes = 10'000;
    /** An attribute value. */
    std::size_t attributeBytes = std::size_t{16} << 20;
    /** Different element names of one file. */
    std::size_t names = 100'000;
    /** A text, a tag, a comment, or the whole of a DOCTYPE. */
    std::size_t textBytes = std::size_t{256} << 20;
    /** Separate files of a model. */
    std::size_t partFiles = 100'000;
    /**
     * Total size of expanded internal entities, in characters, nested ones included, and of attributes that the DOCTYPE gives by
     * default. A reference inside an attribute value counts as one to the longest entity, but all of a tag as no more than its values
     * where these have no declared types.
     */
    std::size_t entityCharacters = std::size_t{1} << 20;
    /** References to internal entities, nested ones included. */
    std::size_t entityReferences = 100'000;
    /**
     * Of each kind that is held until it is told: events of the log, values that cannot be read, findings, losses. A plain read ends no
     * earlier for more events, and tells how many there are.
     */
    std::size_t findings = 100'000;
};

/** What the files of one read have come to together. */
struct SMXMLTotals {
    std::size_t bytes = 0, elements = 0, entityCharacters = 0, entityReferences = 0;
    /** Elements open now. */
    std::size_t depth = 0;
};

/** A bound as users know it. */
struct SM_API SMXMLLimitInfo {
    /** Its name for `--limits`. */
    const char* name;
    std::size_t SMXMLLimits::*bound;
    /** The code of a document that passes it. */
    const char* code;
    const char* meaning;
};

/** All bounds. */
SM_API std::span<const SMXMLLimitInfo> SMXMLLimitInfos();

namespace qv {

/** A number with K, M or G behind it where that is exact. */
SM_API std::string SizeText(std::size_t number);

/** The error of a document that passes a bound: "what", and how to raise the bound. */
SM_API TklRuntimeError LimitError(const SMXMLLimits& limits, std::size_t SMXMLLimits::*bound, const std::string& what,
                                  const std::string& file, long line = 0, long column = 0);

}  // namespace qv
