#pragma once

#include "objects/base/smnamedobject2_002_000.h"

namespace schema_002_000 {

class SMQueryItem2;

/** A named object with a description and a screen tip per locale. */
class SM_API SMNameDescObject2 : public SMNamedObject2 {
  public:
    SMNameDescObject2(IOObject* owner, SMProject2* project) : SMNamedObject2(owner, project) {}

    void constructFromIOParameter(const IOParameter& row) override;
    /**
     * Adds description, screen tip and warehouse link. The texts come from the maps by find-or-insert, as callers rely on: after a
     * repository write every such object has default-locale entries in both maps; empty ones are never written to a document.
     */
    void getAttributes(IOParameter& attrs, IOParameter& historyAttrs) override;
    bool write_lang_elements(IOHelper& helper) override;
    void VisitLangElements(IOTextVisitor& visitor) const override;
    /** The query items of a subject; none at this level. */
    virtual const QvSmartVector<SMQueryItem2>& GetQueryItems() const;

    /** As AddName; a default text that is another also sets the date. */
    void AddDescription(const QvULString& locale, const QvULString& text);
    void SetDescription(const QvULString& text);
    const QvULString& GetDescription() const { return defaultDescription; }
    const QvULString& GetDescription(const QvULString& locale) const { return GetLocaleMapEntry(descriptions, locale); }
    const SMLocaleMap& GetDescriptions() const { return descriptions; }
    /** As AddName: the date stays. */
    void AddScreenTip(const QvULString& locale, const QvULString& text);
    void ChangeDefaultScreenTip(const QvULString& text);
    const QvULString& GetScreenTip() const { return defaultScreenTip; }
    const QvULString& GetScreenTip(const I18NString& locale) const { return GetLocaleMapEntry(screenTips, QvULString(locale)); }
    const SMLocaleMap& GetScreenTips() const { return screenTips; }
    /** Sends the custom properties and the texts of other locales as the record "property"; nothing when there are none. */
    bool write_custom_property_locale(IOHelper& helper);

  protected:
    /** Names, descriptions, date, screen tips and properties: what most elements begin with. */
    void WriteCommonElements(QvContentHandler* handler) const;

    SMLocaleMap descriptions;
    SMLocaleMap screenTips;
    QvULString defaultDescription;
    QvULString defaultScreenTip;
};

}  // namespace schema_002_000
