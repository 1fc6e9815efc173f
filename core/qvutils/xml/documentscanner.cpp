#include "core/qvutils/xml/documentscanner.h"

#include <xercesc/internal/DGXMLScanner.hpp>
#include <xercesc/internal/EndOfEntityException.hpp>
#include <xercesc/internal/WFXMLScanner.hpp>

namespace qv {
namespace {

class FastScanner final : public DocumentScanner, public xercesc::WFXMLScanner {
  public:
    explicit FastScanner(ReaderMemory& memory) : DocumentScanner(memory), WFXMLScanner(nullptr, &m_grammars, &memory) {
        setURIStringPool(m_grammars.getStringPool());
    }
    xercesc::XMLScanner& Xerces() override { return *this; }
    char16_t TakeCharacter() override { return fReaderMgr.getNextChar(); }
    std::size_t AttributeSlots() const override { return fAttrList->size(); }
};

class GeneralScanner final : public DocumentScanner, public xercesc::DGXMLScanner {
  public:
    explicit GeneralScanner(ReaderMemory& memory) : DocumentScanner(memory), DGXMLScanner(nullptr, &m_grammars, &memory) {
        setURIStringPool(m_grammars.getStringPool());
        setSecurityManager(&m_security);
    }
    xercesc::XMLScanner& Xerces() override { return *this; }
    char16_t TakeCharacter() override {
        while (true) {
            try {
                const char16_t character = fReaderMgr.getNextChar();
                if (fReaderMgr.getCurrentReader()->getSource() == xercesc::XMLReader::Source_External) return character;
            } catch (const xercesc::EndOfEntityException&) {
                continue;
            }
        }
    }
    std::size_t AttributeSlots() const override { return fAttrList->size(); }
    std::size_t TakeReferences() override {
        const std::size_t count = fEntityExpansionCount;
        fEntityExpansionCount = 0;
        return count;
    }
    void AllowReferences(std::size_t count) override { fEntityExpansionLimit = count; }

  private:
    xercesc::SecurityManager m_security;
};

}  // namespace

std::unique_ptr<DocumentScanner> MakeScanner(ScannerKind kind, ReaderMemory& memory) {
    if (kind == ScannerKind::fast) return std::unique_ptr<DocumentScanner>(new (&memory) FastScanner(memory));
    return std::unique_ptr<DocumentScanner>(new (&memory) GeneralScanner(memory));
}

}  // namespace qv
