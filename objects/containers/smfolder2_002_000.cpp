#include "objects/containers/smfolder2_002_000.h"

namespace schema_002_000 {

namespace {

const SMLogWords WORDS = {"smfolder2", "SMFolder2"};
const I18NString BUILDER_CLASS = I18NString::Immortal("SMFolderBuilder");
const I18NString BUILDER_MODULE = I18NString::Immortal("smfolder2");

}  // namespace

bool SMFolder2::write_next(IOHelper& helper) {
    return WriteChildren(helper, WORDS, "Failed to write a child of a folder.");
}

void SMFolderBuilder::smtagStartElement(const I18NString&, const I18NString&, SMEnum_xmltag::Enum tag, const QvXMLAttributes& attrs) {
    SMSectionTypeBuilder::smtagStartElement(BUILDER_CLASS, BUILDER_MODULE, tag, attrs);
}

void SMFolderBuilder::smtagEndElement(const I18NString&, const I18NString&, SMEnum_xmltag::Enum tag) {
    StopCollecting();
    if (tag == SMEnum_xmltag::Enum::folder)
        m_folder->SortDisplayOrder();
    else
        SMSectionTypeBuilder::smtagEndElement(BUILDER_CLASS, BUILDER_MODULE, tag);
}

}  // namespace schema_002_000
