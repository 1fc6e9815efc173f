#pragma once

#include <map>

#include "core/qvutils/base/qvsmartptr.h"
#include "core/qvutils/base/tklreferencecount.h"
#include "core/qvutils/io/qvxmlformattarget.h"
#include "core/qvutils/text/qvulstring.h"
#include "core/qvutils/text/tklbytebuffer.h"
#include "core/qvutils/xml/qvsax2printhandler.h"
#include "objects/base/smobjectbuilder_002_000.h"

namespace schema_002_000 {

class SMRenameList2;

/** Kept XML: the raw bytes of one element, its own tags included, as UTF-8. Shared by count. */
class SM_API SMXMLObject2 : public TklReferenceCount {
  public:
    explicit SMXMLObject2(const QvULString& tag);
    /** `text` is XML either way: with `wrap` the inside of the element, else the whole element. */
    SMXMLObject2(const QvULString& tag, const I18NString& text, bool wrap);

    void WriteBytes(QvXMLFormatTarget& target) const;
    void SetInnerXML(const char* text);
    /**
     * The inside of the element. Empty for an element whose start tag has attributes: such an element is kept and written as a
     * whole, and must not be wrapped anew.
     */
    void GetInnerXML(TklByteBuffer& out) const;
    void GetInnerXMLStr(I18NString& out) const;
    /** Sets the inside if it differs; true when it did. */
    bool ChangeInnerXML(const char* text);
    /** Compares the whole element. */
    bool IsXMLDifferentFrom(const char* text) const;

    void RegenerateIds(std::map<QvULString, QvULString>& idMap);
    /** Replaces each text in apostrophes that is a key of the map, wherever it stands in the text. */
    void UpdateWHID(std::map<QvULString, QvULString>& idMap, I18NString& text) const;
    void RenameObjects(SMRenameList2& list);

    /** The version of the record that it came from or went to. */
    long version = 1;
    QvULString tagName;
    TklByteBuffer buffer;

  private:
    std::string_view InnerView() const;
};

/** The inside of a kept element, as GetInnerXMLStr gives it; empty when there is none. */
SM_API I18NString InnerXmlOf(const SMXMLObject2* kept);

/** Sets the inside of a kept element, which is made if there is none. True when it is new or was another. */
SM_API bool ChangeKeptXml(QvSmartPtr<SMXMLObject2>& kept, const QvULString& tag, const I18NString& inner);

/**
 * Captures an element as it stands: prints the parser's events into the buffer of a kept XML object. Of an element that does not end,
 * since its file is broken, nothing is kept, for half of it would break what it is written into.
 */
class SM_API SMXMLObjectBuilder : public QvXmlBuildBase {
  public:
    explicit SMXMLObjectBuilder(SMXMLObject2* object);
    ~SMXMLObjectBuilder() override;
    void realStartElement(const I18NString& uri, const I18NString& localName, const I18NString& qName,
                          const QvXMLAttributes& attrs) override;
    void realCharacters(const I18NString& text) override;
    void realEndElement(const I18NString& uri, const I18NString& localName, const I18NString& qName) override;

  private:
    QvSmartPtr<SMXMLObject2> m_object;
    QvByteBufferWriter m_writer;
    QvSAX2PrintHandler m_printer;
    std::size_t m_depth = 0;
};

}  // namespace schema_002_000
