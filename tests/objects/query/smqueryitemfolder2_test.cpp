#include "objects/query/smqueryitemfolder2_002_000.h"

#include <gmock/gmock.h>

#include "objects/transforms/smrenamelist2_002_000.h"
#include "tests/support/capturedlog.h"
#include "tests/support/contexts.h"
#include "tests/support/documents.h"

using namespace schema_002_000;
using namespace smtest;

namespace {

struct Fixture {
    ProjectPtr project = NewProject();
    QvSmartPtr<SMQueryItemFolder2> folder = new SMQueryItemFolder2(project, project);

    explicit Fixture(const std::string& elements = "") {
        SMQueryItemFolderBuilder builder(folder);
        ParseInside(builder, elements);
    }
};

std::string Item(const std::string& name) {
    return "<queryItem><name locale=\"en\">" + name + "</name></queryItem>";
}

std::string Folder(const std::string& name, const std::string& content) {
    return "<queryItemFolder><name locale=\"en\">" + name + "</name>" + content + "</queryItemFolder>";
}

}  // namespace

TEST(SMQueryItemFolder2Xml, WritesIdAndVersionTwiceAndHiddenWhenTrue) {
    const Fixture fixture;
    fixture.folder->SetId("f");
    fixture.folder->SetVersionNo(12);
    const std::string properties =
        "<property name=\"id\" type=\"hidden\">f</property><property name=\"version\" type=\"hidden\">12</property>";
    EXPECT_EQ(WriteElement(*fixture.folder),
              "<queryItemFolder id=\"f\" version=\"12\"><lastChanged></lastChanged>" + properties + "</queryItemFolder>");
    fixture.folder->SetHiddenFlag(true);
    EXPECT_EQ(WriteElement(*fixture.folder), "<queryItemFolder id=\"f\" version=\"12\"><lastChanged></lastChanged>" + properties +
                                                 "<hidden>true</hidden></queryItemFolder>");
}

TEST(SMQueryItemFolder2Xml, WritesItemsAndFoldersInDisplayOrder) {
    const Fixture fixture(Item("a") + Folder("b", Item("c")) + Item("d"));
    const std::string text = WriteElement(*fixture.folder);
    std::vector<std::size_t> places;
    for (const char* name : {">a<", ">b<", ">c<", ">d<"}) places.push_back(text.find(name));
    EXPECT_TRUE(std::is_sorted(places.begin(), places.end()));
    EXPECT_NE(places.back(), std::string::npos);
}

TEST(SMQueryItemFolder2Builder, NumbersItsChildrenAndSortsThemAtItsEnd) {
    const Fixture fixture(Folder("outer", Item("a") + Folder("b", "") + Item("c")));
    const SMQueryItemFolder2& outer = *fixture.folder->GetQueryItemFolders().at(0);
    ASSERT_EQ(outer.GetDisplayOrderItems().size(), 3u);
    EXPECT_EQ(outer.GetItems()[0]->displayOrder, 0);
    EXPECT_EQ(outer.GetQueryItemFolders()[0]->displayOrder, 1);
    EXPECT_EQ(outer.GetItems()[1]->displayOrder, 2);
}

TEST(SMQueryItemFolder2Builder, SortsAFolderAtTheEndOfItsElement) {
    const Fixture fixture;
    SMQueryItemFolderBuilder builder(fixture.folder);
    builder.startElement("", "queryItemFolder", "queryItemFolder", QvXMLAttributesImpl());
    SMQueryItemFolder2& inner = *fixture.folder->GetQueryItemFolders().at(0);
    for (const int number : {5, 1}) {
        auto* item = new SMQueryItem2(&inner, fixture.project);
        item->displayOrder = number;
        inner.AddQueryItem(item);
    }
    builder.endElement("", "queryItemFolder", "queryItemFolder");
    EXPECT_EQ(inner.GetDisplayOrderItems().at(0), inner.GetItems().at(1));
}

TEST(SMQueryItemFolder2Builder, TakesPropertiesHiddenAndTexts) {
    const CapturedLog log;
    const Fixture fixture(
        "<name locale=\"en\">n</name><description locale=\"en\">d</description><screenTip locale=\"en\">s</screenTip>"
        "<lastChanged>2020-01-02T03:04:05</lastChanged><property name=\"id\">i</property><hidden>true</hidden>");
    EXPECT_EQ(fixture.folder->GetName(), "n");
    EXPECT_EQ(fixture.folder->GetDescription(), "d");
    EXPECT_EQ(fixture.folder->GetScreenTip(), "s");
    EXPECT_EQ(fixture.folder->GetLastChangedDate().ToString(), "2020-01-02T03:04:05");
    EXPECT_EQ(fixture.folder->GetId(), "i");
    EXPECT_TRUE(fixture.folder->GetHiddenFlag());
    EXPECT_THAT(log.Events(), testing::IsEmpty());
}

TEST(SMQueryItemFolder2Model, FindsAnItemTwoFoldersDown) {
    const Fixture fixture(Item("a") + Folder("f", Folder("g", Item("deep"))) + Folder("h", Item("deep") + Item("a")));
    SMQueryItem2* deep = fixture.folder->GetQueryItemByName("deep");
    ASSERT_NE(deep, nullptr);
    EXPECT_EQ(deep->GetParentSMObj()->GetNameForSMPath(), "g");
    EXPECT_EQ(fixture.folder->GetQueryItemByName("a")->GetParentSMObj(), fixture.folder);
    EXPECT_EQ(fixture.folder->GetQueryItemByName("none"), nullptr);
}

TEST(SMQueryItemFolder2Model, IsAFolderWithoutQueryItemsOfASubject) {
    const Fixture fixture(Item("a"));
    EXPECT_TRUE(fixture.folder->IsFolder());
    EXPECT_THAT(static_cast<SMNameDescObject2&>(*fixture.folder).GetQueryItems(), testing::IsEmpty());
}

TEST(SMQueryItemFolder2Model, SortsByDisplayOrder) {
    const Fixture fixture(Item("a") + Item("b"));
    fixture.folder->GetItems()[0]->displayOrder = 5;
    fixture.folder->SortDisplayOrder();
    EXPECT_EQ(fixture.folder->GetDisplayOrderItems()[0], fixture.folder->GetItems()[1]);
}

TEST(SMQueryItemFolder2Model, CarriesItsWalksToAllBelow) {
    const std::string item = "<queryItem><expression>[A].[x].[y] 'old'</expression></queryItem>";
    const Fixture fixture(item + Folder("f", item));
    const SMQueryItem2& direct = *fixture.folder->GetItems()[0];
    const SMQueryItemFolder2& inner = *fixture.folder->GetQueryItemFolders()[0];
    SMRenameList2 list;
    list.AddRenameNamespace("A", "B");
    fixture.folder->RenameObjects(list);
    std::map<QvULString, QvULString> ids{{"old", "new"}};
    fixture.folder->RegenerateIds(ids);
    const ProjectPtr other = NewProject();
    fixture.folder->SetSMProject(other);
    for (const SMQueryItem2* each : {&direct, static_cast<const SMQueryItem2*>(inner.GetItems()[0])}) {
        EXPECT_EQ(each->GetExpressionStr(), "[B].[x].[y] 'new'");
        EXPECT_NE(each->GetId(), "");
        EXPECT_EQ(each->GetSMProject(), other);
    }
    EXPECT_NE(inner.GetId(), "");
    EXPECT_NE(fixture.folder->GetId(), "");
    EXPECT_EQ(inner.GetSMProject(), other);
}

TEST(SMQueryItemFolder2Model, ListsItemsBeforeFolders) {
    const Fixture fixture(Folder("f", "") + Item("a"));
    QvULCollection<IOObject, QvULIdExtract<IOObject>> children;
    fixture.folder->getChildObjects(children);
    std::vector<IOObject*> listed(children.begin(), children.end());
    EXPECT_THAT(listed, testing::ElementsAre(fixture.folder->GetItems()[0].get(), fixture.folder->GetQueryItemFolders()[0].get()));
}

TEST(SMQueryItemFolder2Rows, WriteItemsThenFoldersAndNoTextsOfOtherLocales) {
    const Fixture fixture("<name locale=\"en\">n</name><name locale=\"fr\">m</name>" + Folder("f", Item("b")) + Item("a"));
    fixture.folder->SetProperty("custom", "", "lost");
    RecordingContext context;
    ASSERT_TRUE(fixture.folder->write(context));
    EXPECT_THAT(context.Names(), testing::ElementsAre("AT_InsertObject SM_QUERY_ITEM_FOLDER", "AT_InsertObject SM_QUERY_ITEM", "EndObject",
                                                      "AT_InsertObject SM_QUERY_ITEM_FOLDER", "AT_InsertObject SM_QUERY_ITEM", "EndObject",
                                                      "EndObject", "EndObject"));
}

TEST(SMQueryItemFolder2Rows, ComeBackInDisplayOrder) {
    const CapturedLog log;
    const Fixture fixture(Folder("f", Item("b")) + Item("a"));
    fixture.folder->SetId("top");
    fixture.folder->SetHiddenFlag(true);
    StoreContext store;
    ASSERT_TRUE(fixture.folder->write(store));
    const QvSmartPtr<SMQueryItemFolder2> read = new SMQueryItemFolder2(fixture.project, fixture.project);
    read->constructFromIOParameter(*store.RowOf("SM_QUERY_ITEM_FOLDER", "top"));
    ASSERT_TRUE(read->read(store));
    EXPECT_TRUE(read->GetHiddenFlag());
    EXPECT_EQ(read->GetDisplayOrderItems()[0], read->GetQueryItemFolders()[0]);
    EXPECT_EQ(read->GetDisplayOrderItems()[1], read->GetItems()[0]);
    EXPECT_NE(read->GetQueryItemByName("b"), nullptr);
    EXPECT_EQ(read->TakeDisplayOrder(), 0);
    EXPECT_THAT(store.Faults(), testing::IsEmpty());
    EXPECT_THAT(log.Events(), testing::IsEmpty());
}
