#include "objects/base/smnestedobject2_002_000.h"

#include "objects/base/smorphan_002_000.h"
namespace schema_002_000 {

namespace {
const SMTable NO_TABLE = {"", "", "", "", ""};
}  // namespace

SM_DEFINE_KEY_COLUMNS(SMNestedObject2, NO_TABLE)

SMNestedObject2::~SMNestedObject2() {
    SMOrphanAll(m_nested);
}

bool SMNestedObject2::read(IOHelper&) {
    return true;
}

bool SMNestedObject2::write_no_seq_inc(IOHelper&) {
    return true;
}

bool SMNestedObject2::write_next(IOHelper&) {
    return true;
}

void SMNestedObject2::getChildObjects(QvULCollection<IOObject, QvULIdExtract<IOObject>>& children) const {
    for (const auto& child : m_nested) children.push_back(child);
}

void SMNestedObject2::WriteXMLElement(QvContentHandler* handler, QvXMLFormatTarget& target) const {
    WriteCommonElements(handler);
    if (m_nested.empty()) return;
    StartElement(handler, m_tags->object);
    for (const auto& child : m_nested) child->WriteXMLElement(handler, target);
    EndElement(handler, m_tags->object);
}

}  // namespace schema_002_000
