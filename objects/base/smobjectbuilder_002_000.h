#pragma once

#include <cstddef>
#include <memory>
#include <vector>

#include "core/qvutils/base/qvsmartptr.h"
#include "core/qvutils/base/tklreferencecount.h"
#include "core/qvutils/diag/diagnostics.h"
#include "core/qvutils/text/qvulstring.h"
#include "core/qvutils/xml/qvcontenthandler.h"
#include "objects/base/smenum_002_000.h"
#include "objects/base/smenum_xmltag_002_000.h"

namespace schema_002_000 {

class SMObjectBase;
class SMXMLObject2;

/**
 * One storey of the builder stack. While there are storeys above it, it hands every event to the topmost one, whatever their number; a
 * storey goes when its element has ended. A child never sees its own start tag, since the parent has read it, but does see its own
 * end tag.
 */
class SM_API QvXmlBuildBase : public QvContentHandler, public TklReferenceCount, public SMObjectLocator {
  public:
    QvXmlBuildBase();
    ~QvXmlBuildBase() override;
    void characters(const I18NString& text) override;
    void endDocument() override {}
    void endElement(const I18NString& uri, const I18NString& localName, const I18NString& qName) override;
    void ignorableWhitespace(const I18NString&) override {}
    void processingInstruction(const I18NString&, const I18NString&) override {}
    void startDocument() override {}
    void startElement(const I18NString& uri, const I18NString& localName, const I18NString& qName, const QvXMLAttributes& attrs) override;
    void startPrefixMapping(const I18NString&, const I18NString&) override {}
    void endPrefixMapping(const I18NString&) override {}
    void skippedEntity(const I18NString&) override {}

    virtual void realStartElement(const I18NString& uri, const I18NString& localName, const I18NString& qName,
                                  const QvXMLAttributes& attrs) = 0;
    virtual void realCharacters(const I18NString& text) = 0;
    virtual void realEndElement(const I18NString& uri, const I18NString& localName, const I18NString& qName) = 0;

    /** The object that the innermost builder fills. */
    const IOObject* InnermostObject() const override;

  protected:
    /** The builder of the element whose start tag is being handled; shared until the element ends. */
    void Push(QvXmlBuildBase* child);
    /** Pushes and replays the start tag into the child, which so sees its whole element. */
    void PushWithStart(QvXmlBuildBase* child, const I18NString& uri, const I18NString& localName, const I18NString& qName,
                       const QvXMLAttributes& attrs);
    /** The name of the element whose start tag is being handled, as it stands in the document. */
    const I18NString& StartedName() const { return *m_startedName; }
    /** The object that this builder fills; null when it fills none. */
    virtual const IOObject* OwnObject() const { return nullptr; }

  private:
    /** A builder that was pushed, and the elements open since: its own, and those inside that no storey above stands for. */
    struct Storey;
    using Stack = std::vector<Storey>;

    bool HasChild() const;
    void CutTo(std::size_t floor);

    /** Made by the first push of a builder that stands alone, and borrowed by those pushed onto it; null: nothing was pushed. */
    Stack* m_stack = nullptr;
    /** The storeys of the stack up to this one. */
    std::size_t m_floor = 0;
    std::unique_ptr<Stack> m_ownStack;
    /** Borrowed from the event, and only good while it is handled. */
    const I18NString* m_startedName = nullptr;
};

/** The attributes of the "property" element being read. */
struct SMPropertyText {
    I18NString name, type;
    void Start(const QvXMLAttributes& attrs);
};

/** Base of the builders of model objects: gathers the text of simple elements. */
class SM_API SMObjectBuilder : public QvXmlBuildBase {
  public:
    void realCharacters(const I18NString& text) override;

  protected:
    SMObjectBuilder() : m_tags(SMEnum_xmltag::GetInstance()) {}
    SMEnum_xmltag::Enum TagOf(const I18NString& localName) const { return m_tags->_string2enum(localName); }
    /** Starts gathering the text of the element that begins. */
    void CollectText();
    void StopCollecting() { m_collecting = false; }
    /** The text gathered, as a number, as one that may be cut to 32 bits, as a truth value, or as an enumerator. */
    long TextAsLong() const;
    int TextAsInt() const { return static_cast<int>(TextAsLong()); }
    bool TextAsBool() const { return SMEnum_bool::string2bool(m_text); }
    template <class E>
    typename E::Enum TextAsEnum() const {
        return EnumOf<E>(m_text);
    }
    /** A "property" element: gathers its text, and at its end gives it to the object. */
    void StartProperty(const QvXMLAttributes& attrs);
    void EndProperty(SMObjectBase& object) const;
    /** Takes the element that begins, whole and as it stands, into a new kept XML object. */
    QvSmartPtr<SMXMLObject2> KeepXml(const I18NString& tag, const QvXMLAttributes& attrs);
    /** Logs an element that nobody knows, in the words given. */
    void LogUnknownStart(const I18NString& module, const I18NString& className, const char* method, const I18NString& name) const;
    void LogUnknownEnd(const I18NString& module, const I18NString& className, const char* method, const I18NString& name) const;

    I18NString m_text;
    bool m_collecting = false;
    SMPropertyText m_property;
    const SMEnum_xmltag* m_tags;
    static const I18NString ms_strUri;
};

/** Replays the inside of a fragment into a waiting builder, so that the fragment's outermost element is not seen. */
class XmlFragReader : public QvXmlBuildBase {
  public:
    /** The target is borrowed. */
    explicit XmlFragReader(QvXmlBuildBase* target) : m_target(target) {}
    void realStartElement(const I18NString& uri, const I18NString& localName, const I18NString& qName,
                          const QvXMLAttributes& attrs) override;
    void realCharacters(const I18NString& text) override;
    void realEndElement(const I18NString& uri, const I18NString& localName, const I18NString& qName) override;

  protected:
    const IOObject* OwnObject() const override { return m_target->InnermostObject(); }

  private:
    int m_nesting = 0;
    QvXmlBuildBase* m_target;
};

}  // namespace schema_002_000
