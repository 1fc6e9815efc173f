#pragma once

#include <cstddef>
#include <memory>
#include <string_view>

#include <xercesc/framework/MemBufInputSource.hpp>
#include <xercesc/sax2/DefaultHandler.hpp>
#include <xercesc/sax2/SAX2XMLReader.hpp>
#include <xercesc/sax2/XMLReaderFactory.hpp>
#include <xercesc/util/PlatformUtils.hpp>
#include <xercesc/util/XMLUni.hpp>

namespace bench {

/**
 * What reading is measured against: a bare SAX2 pass of Xerces-C with the scanner and the features that the library uses, an empty
 * handler, a reader that is used again, and a buffer that is not copied.
 */
class XercesFloor {
  public:
    XercesFloor() {
        xercesc::XMLPlatformUtils::Initialize();
        m_reader.reset(xercesc::XMLReaderFactory::createXMLReader());
        m_reader->setFeature(xercesc::XMLUni::fgSAX2CoreNameSpaces, false);
        m_reader->setFeature(xercesc::XMLUni::fgSAX2CoreValidation, false);
        m_reader->setFeature(xercesc::XMLUni::fgXercesSchema, false);
        m_reader->setFeature(xercesc::XMLUni::fgXercesLoadExternalDTD, false);
        m_reader->setProperty(xercesc::XMLUni::fgXercesScannerName, const_cast<XMLCh*>(xercesc::XMLUni::fgWFXMLScanner));
        m_reader->setContentHandler(&m_handler);
        m_reader->setErrorHandler(&m_handler);
    }

    void Parse(std::string_view document) {
        xercesc::MemBufInputSource source(reinterpret_cast<const XMLByte*>(document.data()), document.size(), "bench");
        source.setCopyBufToStream(false);
        m_reader->parse(source);
    }

  private:
    xercesc::DefaultHandler m_handler;
    std::unique_ptr<xercesc::SAX2XMLReader> m_reader;
};

}  // namespace bench
