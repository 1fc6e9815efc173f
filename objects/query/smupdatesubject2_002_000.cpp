#include "objects/query/smupdatesubject2_002_000.h"

namespace schema_002_000 {

namespace {

const SMTable TABLE = {"SM_UPDATE_SUBJECT", "UPDATE_QS_ID", "UPD_QS_VERSION_NO", "SECTION_ID", "SECTION_VERSION_NO"};

}  // namespace

SM_DEFINE_KEY_COLUMNS(SMUpdateSubject2, TABLE)

void SMUpdateSubject2::WriteXMLElement(QvContentHandler* handler, QvXMLFormatTarget& target) const {
    StartElement(handler, m_tags->updateSubject);
    WriteXMLElementChildren(handler, target);
    EndElement(handler, m_tags->updateSubject);
}

bool SMUpdateSubject2::write_no_seq_inc(IOHelper& helper) {
    return InsertRow(helper, TABLE) && write_lang_elements(helper) && write_next(helper) && helper.EndObject();
}

void SMUpdateSubjectBuilder::smtagEndElement(const I18NString& module, const I18NString& className, SMEnum_xmltag::Enum tag) {
    StopCollecting();
    if (tag != SMEnum_xmltag::Enum::updateSubject) SMQuerySubjectTypeBuilder::smtagEndElement(module, className, tag);
}

}  // namespace schema_002_000
