#pragma once

#include "objects/base/smchildren_002_000.h"
#include "objects/base/smnamedobjectbuilder_002_000.h"

namespace schema_002_000 {

class SMMeasure2;

/** Groups measures and further folders for display, in the order in which they are added: it has no counter and never sorts. */
class SM_API SMMeasureFolder2 : public SMNameDescObject2 {
  public:
    SMMeasureFolder2(SMObjectBase* owner, SMProject2* project);
    ~SMMeasureFolder2() override;

    void constructFromIOParameter(const IOParameter& row) override;
    /** Measures first, then folders: their interleaving stands in the document alone. */
    bool read(IOHelper& helper) override;
    void getAttributes(IOParameter& attrs, IOParameter& historyAttrs) override;
    SM_DECLARE_KEY_COLUMNS
    void getChildObjects(QvULCollection<IOObject, QvULIdExtract<IOObject>>& children) const override;
    bool write_no_seq_inc(IOHelper& helper) override;
    bool write_next(IOHelper& helper) override;
    using SMNameDescObject2::WriteXMLElement;
    void WriteXMLElement(QvContentHandler* handler, QvXMLFormatTarget& target) const override;
    bool IsFolder() const override { return true; }
    SMEnum_xmltag::Enum GetSMType() const override { return SMEnum_xmltag::Enum::measureFolder; }
    using SMNameDescObject2::RegenerateIds;
    void RegenerateIds(std::map<QvULString, QvULString>& idMap) override;
    void RenameObjects(SMRenameList2& list);

    bool IsHidden() const { return m_hidden; }
    void SetHidden(bool hidden) { m_hidden = hidden; }
    /** Share the child. */
    void AddMeasure(SMMeasure2* measure);
    void AddMeasureFolder(SMMeasureFolder2* folder);
    const QvSmartVector<SMMeasure2>& GetMeasures() const { return m_measures.Items(); }
    const QvSmartVector<SMMeasureFolder2>& GetMeasureFolders() const { return m_measureFolders.Items(); }
    const std::vector<SMObjectBase*>& GetDisplayOrderItems() const { return m_displayOrder.Items(); }
    SMMeasureFolder2* AddOrUpdateMeasureFolder(const I18NString& name, const I18NString& description);
    /** Found or new, the measure is recorded; a new one keeps the display order number 0. */
    SMMeasure2* AddOrReturnExistingMeasure(const I18NString& name);
    /** The first direct measure of that warehouse reference; null for an empty one. */
    SMMeasure2* GetMeasureByWHOID(const I18NString& whoid) const;
    /** Leave the display list alone: what is deleted so is still written. */
    void DeleteMeasureById(const I18NString& id);
    void DeleteMeasureFolderById(const I18NString& id);
    void SetSMProject(SMProject2* project);
    void AddToSetPIDIDAndMiniObject();

  private:
    SMDisplayList m_displayOrder;
    SMChildren<SMMeasure2, SMByName, SMByQvRef> m_measures;
    SMChildren<SMMeasureFolder2> m_measureFolders;
    bool m_hidden = false;
};

class SM_API SMMeasureFolderBuilder : public SMNameDescObjectBuilder {
  public:
    /** The folder is borrowed. */
    explicit SMMeasureFolderBuilder(SMMeasureFolder2* folder) : SMNameDescObjectBuilder(folder), m_folder(folder) {}
    void smtagStartElement(const I18NString& module, const I18NString& className, SMEnum_xmltag::Enum tag,
                           const QvXMLAttributes& attrs) override;
    void smtagEndElement(const I18NString& module, const I18NString& className, SMEnum_xmltag::Enum tag) override;

  private:
    SMMeasureFolder2* m_folder;
};

}  // namespace schema_002_000
