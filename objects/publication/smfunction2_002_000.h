#pragma once

#include <vector>

#include "objects/base/smnamedobjectbuilder_002_000.h"
#include "objects/publication/smprocparameter2_002_000.h"

namespace schema_002_000 {

/** One database function or stored procedure: its name in the database and its signature. */
class SM_API SMFunction2 : public SMNameDescObject2 {
  public:
    SMFunction2(SMObjectBase* owner, SMProject2* project) : SMNameDescObject2(owner, project) {}

    void constructFromIOParameter(const IOParameter& row) override;
    /** Asks for the parameters under another name than they are written: they do not come back, as the format has it. */
    bool read(IOHelper& helper) override;
    void getAttributes(IOParameter& attrs, IOParameter& historyAttrs) override;
    /** All four are empty: the context knows the key columns of the table. */
    SM_DECLARE_KEY_COLUMNS
    void getChildObjects(QvULCollection<IOObject, QvULIdExtract<IOObject>>&) const override {}
    bool write_no_seq_inc(IOHelper& helper) override;
    bool write_next(IOHelper& helper) override;
    using SMNameDescObject2::WriteXMLElement;
    void WriteXMLElement(QvContentHandler* handler, QvXMLFormatTarget& target) const override;
    SMEnum_xmltag::Enum GetSMType() const override { return SMEnum_xmltag::Enum::function; }

    const SMLocaleMap& GetSyntaxTips() const { return m_syntaxTip; }
    void AddSyntaxTip(const QvULString& locale, const QvULString& text) { SetLocaleText(m_syntaxTip, locale, text); }
    /** The name that identifies the function to the database. */
    const I18NString& GetCanonicalName() const { return m_canonicalName; }
    void SetCanonicalName(const I18NString& name) { m_canonicalName = name; }
    const I18NString& GetDataSourceRef() const { return m_dataSourceRef; }
    void SetDataSourceRef(const I18NString& reference) { m_dataSourceRef = reference; }
    const SMDataColumnProperties2& GetResult() const { return m_result; }
    void SetResult(const SMDataColumnProperties2& result) { m_result = result; }
    const std::vector<SMProcParameter2>& GetProcParameters() const { return m_procParameters; }
    void AppendProcParameter(const SMProcParameter2& parameter) { m_procParameters.push_back(parameter); }

    /** The elements "procParameters" and "result" as text. */
    I18NString WriteProcParametersToString() const;
    I18NString WriteResultToString() const;

  private:
    void WriteProcParameters(QvContentHandler* handler) const;
    void WriteResult(QvContentHandler* handler) const;
    void WriteDataColumnProperties(QvContentHandler* handler, const SMDataColumnProperties2& properties) const;

    SMLocaleMap m_syntaxTip;
    I18NString m_canonicalName;
    I18NString m_dataSourceRef;
    SMDataColumnProperties2 m_result;
    std::vector<SMProcParameter2> m_procParameters;
    /** Versions of the records that keep the two. */
    long m_procParametersInfoId = 0, m_resultInfoId = 0;
};

class SM_API SMFunctionBuilder : public SMNameDescObjectBuilder {
  public:
    /** The function is borrowed. */
    explicit SMFunctionBuilder(SMFunction2* function) : SMNameDescObjectBuilder(function), m_function(function) {}
    void smtagStartElement(const I18NString& module, const I18NString& className, SMEnum_xmltag::Enum tag,
                           const QvXMLAttributes& attrs) override;
    void smtagEndElement(const I18NString& module, const I18NString& className, SMEnum_xmltag::Enum tag) override;

  private:
    void AddSyntaxTip();
    void EndParameter();
    void EndResult();

    SMFunction2* m_function;
    SMProcParameter2 m_parameter;
    SMDataColumnProperties2 m_properties;
};

}  // namespace schema_002_000
