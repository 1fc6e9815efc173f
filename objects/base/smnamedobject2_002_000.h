#pragma once

#include <map>

#include "objects/base/localecompare_002_000.h"
#include "objects/base/smobjectbase_002_000.h"

namespace schema_002_000 {

/** What becomes of an object that can stand in a file of its own. */
enum class SMWriteWhat : int { nothing = 0, emptyPlaceholder = 1, file = 2 };

/** A model object with a name per locale, the hidden link to a warehouse object, and the means to stand in a file of its own. */
class SM_API SMNamedObject2 : public SMObjectBase {
  public:
    SMNamedObject2(IOObject* owner, SMProject2* project) : SMObjectBase(owner, project) {}

    void constructFromIOParameter(const IOParameter& row) override;
    void getAttributes(IOParameter& attrs, IOParameter& historyAttrs) override;
    /** The name "qvref" sets the warehouse link, whatever the type; all others go to the base. */
    void SetProperty(const QvULString& name, const QvULString& type, const QvULString& value) override;
    void BreakAndWriteXMLDocument(MultiFileHelper* files, QvContentHandler* handler, QvXMLFormatTarget& target) override;
    const QvULString& GetNameForSMPath() const override { return GetName(); }
    void WriteProperties(QvContentHandler* handler, bool writeHidden) const override;
    /** Extension of the object's own file, without a point. */
    virtual const I18NString& GetFileExtension();
    /** Tag of the element that stands for the object's own file. */
    virtual const I18NString& GetPlaceholderTag() const;
    using SMObjectBase::RegenerateIds;
    /** Gives the object a new id, and its warehouse links the ids that the map has for them. */
    virtual void RegenerateIds(std::map<QvULString, QvULString>& idMap);
    virtual bool write_lang_elements(IOHelper& helper);
    /** What write_lang_elements sends; classes that have language rows answer VisitTexts with it. */
    virtual void VisitLangElements(IOTextVisitor& visitor) const;
    virtual int WriteWhat() const;
    virtual void WriteXMLEmptyPlaceholder(MultiFileHelper* files, QvContentHandler* handler, QvXMLFormatTarget& target) const;

    /** Sets the name in a locale, and the default name where that is the project's. Does not touch the date. */
    void AddName(const QvULString& locale, const QvULString& text);
    /** Sets the name in the project's default locale, and the date, if the name is another. */
    void ChangeDefaultName(const QvULString& text);
    const QvULString& GetName() const { return defaultName; }
    /** The name in a locale (empty: the default one), without a fallback: empty when there is none. */
    const QvULString& GetName(const QvULString& locale) const { return GetLocaleMapEntry(names, locale); }
    const QvULString& GetLocaleMapEntry(const SMLocaleMap& map, const QvULString& locale) const;
    const SMLocaleMap& GetNames() const { return names; }
    /** The warehouse reference, or WHOID. */
    const QvULString& GetQvRef() const { return qvref; }
    void SetQvRef(const QvULString& reference);

    /** One element a text, in map order; empty texts are left out. */
    void WriteLocaleMap(QvContentHandler* handler, const I18NString& tag, const SMLocaleMap& map) const;
    /** Sends the texts of all but the default locale; stops at the first failure. */
    bool write_lang_element(IOHelper& helper, const SMLocaleMap& map, const I18NString& tag);

    void StartXMLPlaceholder(const I18NString& filename, QvContentHandler* handler) const;
    void EndXMLPlaceholder(QvContentHandler* handler) const;
    void WriteXMLPlaceholder(const I18NString& filename, QvContentHandler* handler) const;

  protected:
    void VisitLangElement(IOTextVisitor& visitor, const SMLocaleMap& map, const I18NString& tag) const;
    /** Reads the object's own file, whose root is `rootTag`; `builder` fills this object. False, and logged, if it cannot be read. */
    bool ReadPartFile(const I18NString& filepath, const I18NString& filename, const I18NString& rootTag, const SMLogWords& words,
                      QvContentHandler& builder);
    /** Finds or makes the entry of a locale; a new one keeps the spelling given here. */
    void SetLocaleText(SMLocaleMap& map, const QvULString& locale, const QvULString& text);
    bool IsDefaultLocale(const QvULString& locale) const;
    /** Whether a text of this locale goes to the column of the default text instead of a record of its own. */
    bool IsDefaultLocaleColumn(const QvULString& locale) const;
    void SetDefaultName(const QvULString& text);
    void WriteLocaleTexts(QvContentHandler* handler, const I18NString& tag, const SMLocaleMap& map, bool withDefault) const;
    void WriteQvRef(QvContentHandler* handler) const;

    SMLocaleMap names;
    /** The enclosing document, borrowed for the time in which the object writes its own file; null otherwise. */
    QvContentHandler* parentHandler = nullptr;
    QvXMLFormatTarget* parentTarget = nullptr;
    /** The name in the project's default locale. */
    QvULString defaultName;
    QvULString qvref;
};

}  // namespace schema_002_000
