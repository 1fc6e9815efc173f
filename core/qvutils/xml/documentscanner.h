#pragma once

#include <cstddef>
#include <memory>

#include "core/qvutils/xml/readermemory.h"

#include <xercesc/internal/XMLScanner.hpp>
#include <xercesc/validators/common/GrammarResolver.hpp>

namespace qv {

/** The scanner beneath: the fast one knows no DOCTYPE; the general one reads internal entities. */
enum class ScannerKind { fast, general };

/** The scanner with a look at what it keeps to itself. */
class DocumentScanner {
  public:
    explicit DocumentScanner(ReaderMemory& memory) : m_grammars(nullptr, &memory) {}
    virtual ~DocumentScanner() = default;
    DocumentScanner(const DocumentScanner&) = delete;
    DocumentScanner& operator=(const DocumentScanner&) = delete;
    virtual xercesc::XMLScanner& Xerces() = 0;
    /** The next character of the document itself; 0 at the end. */
    virtual char16_t TakeCharacter() = 0;
    /** Attributes of the largest start tag met, the one being read included. */
    virtual std::size_t AttributeSlots() const = 0;
    /** References to entities since the last call. */
    virtual std::size_t TakeReferences() { return 0; }
    /** References from now on that are no error. */
    virtual void AllowReferences(std::size_t) {}

  protected:
    xercesc::GrammarResolver m_grammars;
};

/** `memory` is borrowed. */
std::unique_ptr<DocumentScanner> MakeScanner(ScannerKind kind, ReaderMemory& memory);

}  // namespace qv
