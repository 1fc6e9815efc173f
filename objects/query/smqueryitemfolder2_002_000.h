#pragma once

#include "objects/base/smchildren_002_000.h"
#include "objects/query/smqueryitem2_002_000.h"

namespace schema_002_000 {

/** Groups query items, and folders of them, for display; leaves no trace in paths and ids. */
class SM_API SMQueryItemFolder2 : public SMNameDescObject2 {
  public:
    SMQueryItemFolder2(SMObjectBase* owner, SMProject2* project) : SMNameDescObject2(owner, project) {}
    ~SMQueryItemFolder2() override;

    void constructFromIOParameter(const IOParameter& row) override;
    bool read(IOHelper& helper) override;
    void getAttributes(IOParameter& attrs, IOParameter& historyAttrs) override;
    /** The parent columns are named after subjects, whatever the parent is. */
    SM_DECLARE_KEY_COLUMNS
    void getChildObjects(QvULCollection<IOObject, QvULIdExtract<IOObject>>& children) const override;
    bool write_no_seq_inc(IOHelper& helper) override;
    /** The children only: the repository keeps no custom properties and no texts of other locales for folders. */
    bool write_next(IOHelper& helper) override;
    using SMNameDescObject2::WriteXMLElement;
    void WriteXMLElement(QvContentHandler* handler, QvXMLFormatTarget& target) const override;
    bool IsFolder() const override { return true; }
    SMEnum_xmltag::Enum GetSMType() const override { return SMEnum_xmltag::Enum::queryItemFolder; }
    using SMNameDescObject2::RegenerateIds;
    void RegenerateIds(std::map<QvULString, QvULString>& idMap) override;

    /** Share the child and put it at the end of the display list. The caller sets the display order number. */
    void AddQueryItem(SMQueryItem2* item);
    void AddQueryItemFolder(SMQueryItemFolder2* folder);
    /** Not GetQueryItems, which is for subjects and stays empty here. */
    const QvSmartVector<SMQueryItem2>& GetItems() const { return queryItems.Items(); }
    const QvSmartVector<SMQueryItemFolder2>& GetQueryItemFolders() const { return queryItemFolders.Items(); }
    const std::vector<SMObjectBase*>& GetDisplayOrderItems() const { return displayOrderItems.Items(); }
    int TakeDisplayOrder() { return nextDisplayOrder++; }
    void SortDisplayOrder() { displayOrderItems.Sort(); }
    /** Direct items first, then each sub-folder, depth first; null when there is none of that default name. */
    SMQueryItem2* GetQueryItemByName(const I18NString& name) const;
    /** The first direct item whose physical column is of the type, else what the first folder finds: later ones are not searched. */
    SMQueryItem2* GetQueryItemByDBType(EDB_TYPE type) const;
    bool GetHiddenFlag() const { return hidden; }
    void SetHiddenFlag(bool isHidden) { hidden = isHidden; }

    void RenameObjects(SMRenameList2& list);
    void SetSMProject(SMProject2* project);
    void AddToSetPIDIDAndMiniObject();

  private:
    SMDisplayList displayOrderItems;
    SMChildren<SMQueryItemFolder2> queryItemFolders;
    SMChildren<SMQueryItem2> queryItems;
    int nextDisplayOrder = 0;
    bool hidden = false;
};

class SM_API SMQueryItemFolderBuilder : public SMNameDescObjectBuilder {
  public:
    /** The folder is borrowed. */
    explicit SMQueryItemFolderBuilder(SMQueryItemFolder2* folder) : SMNameDescObjectBuilder(folder), m_folder(folder) {}
    void smtagStartElement(const I18NString& module, const I18NString& className, SMEnum_xmltag::Enum tag,
                           const QvXMLAttributes& attrs) override;
    void smtagEndElement(const I18NString& module, const I18NString& className, SMEnum_xmltag::Enum tag) override;

  private:
    void StartItem();
    void StartFolder();

    SMQueryItemFolder2* m_folder;
};

}  // namespace schema_002_000
