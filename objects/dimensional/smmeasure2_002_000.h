#pragma once

#include "objects/base/smxmlobject2_002_000.h"
#include "objects/query/smqueryitem2_002_000.h"

namespace schema_002_000 {

/** A query item of a dimension or measure folder that carries aggregation behaviour. Measures may stand inside measures. */
class SM_API SMMeasure2 : public SMQueryItem2 {
  public:
    SMMeasure2(SMObjectBase* owner, SMProject2* project) : SMQueryItem2(owner, project) {}
    ~SMMeasure2() override;

    void constructFromIOParameter(const IOParameter& row) override;
    bool read(IOHelper& helper) override;
    void getAttributes(IOParameter& attrs, IOParameter& historyAttrs) override;
    void getChildObjects(QvULCollection<IOObject, QvULIdExtract<IOObject>>& children) const override;
    bool write_next(IOHelper& helper) override;
    using SMQueryItem2::WriteXMLElement;
    void WriteXMLElement(QvContentHandler* handler, QvXMLFormatTarget& target) const override;
    SMEnum_xmltag::Enum GetSMType() const override { return SMEnum_xmltag::Enum::measure; }
    /** The id of the containing dimension and the name; measures and folders between leave no trace. */
    I18NString GetSMID(bool escape) const override;
    using SMQueryItem2::RegenerateIds;
    void RegenerateIds(std::map<QvULString, QvULString>& idMap) override;
    const I18NString& GetQueryItemTypeName() const override { return m_tags->measure; }
    /** Nested measures are not visited: as the model has it. */
    void RenameObjects(SMRenameList2& list) override;

    bool IsHierarchical() const { return m_isHierarchical; }
    void SetIsHierarchical(bool hierarchical) { m_isHierarchical = hierarchical; }
    /** Shares the nested measure. */
    void AppendMeasure(SMMeasure2* measure) { m_measures.emplace_back(measure); }
    const QvSmartVector<SMMeasure2>& GetMeasures() const { return m_measures; }
    void SetSMProject(SMProject2* project);
    void AddToSetPIDIDAndMiniObject();
    /** Whether a row of the table that measures share with query items is a measure's. */
    static bool IsMeasureRow(const IOParameter& row);

    QvSmartPtr<SMXMLObject2> m_aggregateRules;

  private:
    QvSmartVector<SMMeasure2> m_measures;
    bool m_isHierarchical = false;
};

class SM_API SMMeasureBuilder : public SMQueryItemTypeBuilder {
  public:
    /** The measure is borrowed. */
    explicit SMMeasureBuilder(SMMeasure2* measure) : SMQueryItemTypeBuilder(measure), m_measure(measure) {}
    void smtagStartElement(const I18NString& module, const I18NString& className, SMEnum_xmltag::Enum tag,
                           const QvXMLAttributes& attrs) override;
    void smtagEndElement(const I18NString& module, const I18NString& className, SMEnum_xmltag::Enum tag) override;

  private:
    SMMeasure2* m_measure;
};

}  // namespace schema_002_000
