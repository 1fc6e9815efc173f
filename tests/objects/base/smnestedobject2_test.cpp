#include "objects/base/smnestedobject2_002_000.h"

#include <gmock/gmock.h>

#include "tests/support/documents.h"
#include "tests/support/plainobjects.h"

using namespace schema_002_000;
using namespace smtest;

namespace {

/** The class as it stands, but for its kind. */
class Nested : public SMNestedObject2 {
  public:
    explicit Nested(SMProject2* project) : SMNestedObject2(nullptr, project) {}
    SMEnum_xmltag::Enum GetSMType() const override { return SMEnum_xmltag::Enum::hierarchy; }
};

std::string Content(const Nested& object) {
    I18NString text;
    QvStringWriter writer(text);
    QvSAX2PrintHandler handler("UTF-8", false, writer, true);
    object.WriteXMLElement(&handler, writer);
    return Str(text);
}

const std::string HIDDEN = R"(<property name="id" type="hidden">i</property><property name="version" type="hidden">0</property>)";

}  // namespace

TEST(NestedObjectXml, WritesTheDateBeforeTheScreenTips) {
    const ProjectPtr project = NewProject();
    Nested object(project);
    object.SetId("i");
    object.AddName("en", "n");
    object.AddDescription("en", "d");
    object.AddScreenTip("en", "s");
    object.SetSMLastChangedDate("2001-02-03T04:05:06");
    EXPECT_EQ(Content(object), R"(<name locale="en">n</name><description locale="en">d</description>)"
                               "<lastChanged>2001-02-03T04:05:06</lastChanged>"
                               R"(<screenTip locale="en">s</screenTip>)" +
                                   HIDDEN);
}

TEST(NestedObjectXml, WrapsItsChildrenInOneElement) {
    const ProjectPtr project = NewProject();
    Nested object(project);
    object.SetId("i");
    for (const char* key : {"a", "b"}) {
        auto* entry = new SMParameterMapEntry2(&object, project);
        entry->SetKey(key);
        object.AddNestedChild(entry);
    }
    const std::string entry = "<parameterMapEntry version=\"0\"><key>";
    EXPECT_EQ(Content(object), "<lastChanged></lastChanged>" + HIDDEN + "<object>" + entry + "a</key><value></value></parameterMapEntry>" +
                                   entry + "b</key><value></value></parameterMapEntry></object>");
}

TEST(NestedObjectRows, StoreNothingOfTheirOwn) {
    const ProjectPtr project = NewProject();
    Nested object(project);
    IOHelper helper;
    EXPECT_TRUE(object.read(helper));
    EXPECT_TRUE(object.write_no_seq_inc(helper));
    EXPECT_TRUE(object.write_next(helper));
    EXPECT_EQ(object.GetIdCol(), "");
    EXPECT_EQ(object.GetParentVersionCol(), "");
}

TEST(NestedObjectModel, ListsItsChildren) {
    const ProjectPtr project = NewProject();
    QvSmartPtr<SMParameterMapEntry2> held;
    {
        Nested object(project);
        held = new SMParameterMapEntry2(&object, project);
        object.AddNestedChild(held);
        QvULCollection<IOObject, QvULIdExtract<IOObject>> children;
        object.getChildObjects(children);
        ASSERT_EQ(children.size(), 1u);
        EXPECT_EQ(children[0].get(), held.get());
    }
    EXPECT_EQ(held->parent, nullptr) << "a child that outlives its container has no parent";
}
