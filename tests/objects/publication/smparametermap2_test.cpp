#include "objects/publication/smparametermap2_002_000.h"

#include <gmock/gmock.h>

#include "objects/transforms/smrenamelist2_002_000.h"
#include "tests/support/capturedlog.h"
#include "tests/support/contexts.h"
#include "tests/support/documents.h"

using namespace schema_002_000;
using namespace smtest;
using testing::ElementsAre;
using testing::IsEmpty;

namespace {

class ParameterMap : public testing::Test {
  protected:
    SMParameterMapEntry2* Entry(std::size_t place) const { return map->GetEntries()[place]; }
    void Read(const std::string& content) {
        SMParameterMapBuilder builder(map);
        ParseInside(builder, content);
    }
    void SetQueryItemMap(const char* key, const char* value) { map->SetQueryItemMap(new SM_QUERY_ITEM_MAP{key, value}); }

    ProjectPtr project = NewProject();
    QvSmartPtr<SMParameterMap2> map = new SMParameterMap2(project, project);
    CapturedLog log;
};

using ParameterMapModel = ParameterMap;
using ParameterMapXml = ParameterMap;
using ParameterMapBuilder = ParameterMap;
using ParameterMapRows = ParameterMap;

}  // namespace

TEST_F(ParameterMapModel, HasItsKind) {
    map->AddOrUpdateParameterMapEntry("a", "1");
    EXPECT_EQ(static_cast<int>(map->GetSMType()), 115);
    EXPECT_EQ(static_cast<int>(Entry(0)->GetSMType()), 116);
}

TEST_F(ParameterMapModel, UpdatesAnEntryInItsPlace) {
    map->AddOrUpdateParameterMapEntry("a", "1");
    map->AddOrUpdateParameterMapEntry("b", "2");
    Entry(0)->SetId("kept");
    map->AddOrUpdateParameterMapEntry("a", "3");
    ASSERT_EQ(map->GetEntries().size(), 2u);
    EXPECT_EQ(Entry(0)->GetValue(), "3");
    EXPECT_EQ(Entry(0)->GetId(), "kept");
    EXPECT_EQ(Entry(0)->parent, map.get());
    EXPECT_FALSE(map->GetLastChangedDate().IsSet());
}

TEST_F(ParameterMapModel, FindsTheFirstOfEqualKeys) {
    Read(
        "<parameterMapEntry><key>k</key><value>1</value></parameterMapEntry>"
        "<parameterMapEntry><key>k</key><value>2</value></parameterMapEntry>");
    EXPECT_EQ(map->GetEntries().size(), 2u);
    EXPECT_EQ(map->GetParameterMapEntryWithKey("k"), Entry(0));
    EXPECT_EQ(map->GetParameterMapEntryWithKey("K"), nullptr);
}

TEST_F(ParameterMapModel, TakesTheEmptyKeyAsAKey) {
    map->AddOrUpdateParameterMapEntry("", "1");
    map->AddOrUpdateParameterMapEntry("", "2");
    ASSERT_EQ(map->GetEntries().size(), 1u);
    EXPECT_EQ(Entry(0)->GetValue(), "2");
}

TEST_F(ParameterMapModel, OwnsItsQueryItemMap) {
    EXPECT_EQ(map->GetQueryItemMap(), nullptr);
    SetQueryItemMap("k", "v");
    SetQueryItemMap("k2", "v2");
    map->SetQueryItemMap(map->GetQueryItemMap());
    EXPECT_EQ(map->GetQueryItemMap()->keyRef, "k2");
    map->SetQueryItemMap(nullptr);
    EXPECT_EQ(map->GetQueryItemMap(), nullptr);
}

TEST_F(ParameterMapModel, ComparesWithACopyByKey) {
    map->SetName("n");
    map->AddOrUpdateParameterMapEntry("a", "1");
    map->AddOrUpdateParameterMapEntry("b", "2");
    SMParameterMapContents copy;
    EXPECT_TRUE(map->CopyContents(copy));
    EXPECT_FALSE(copy.hasQueryItemMap);
    const QvSmartPtr<SMParameterMap2> other = new SMParameterMap2(project, project);
    other->SetName("n");
    other->AddOrUpdateParameterMapEntry("b", "2");
    EXPECT_FALSE(other->IsSameAs(copy));
    other->AddOrUpdateParameterMapEntry("a", "1");
    EXPECT_TRUE(other->IsSameAs(copy));
    copy.text2 = "not looked at";
    EXPECT_TRUE(other->IsSameAs(copy));
}

TEST_F(ParameterMapModel, SeesEachDifferenceFromACopy) {
    map->SetName("n");
    map->SetDefaultValue("by default");
    map->AddOrUpdateParameterMapEntry("a", "1");
    SetQueryItemMap("k", "v");
    SMParameterMapContents same;
    map->CopyContents(same);
    EXPECT_TRUE(map->IsSameAs(same));
    const auto differs = [&](auto change) {
        SMParameterMapContents copy = same;
        change(copy);
        return !map->IsSameAs(copy);
    };
    EXPECT_TRUE(differs([](auto& copy) { copy.name = "m"; }));
    EXPECT_TRUE(differs([](auto& copy) { copy.hidden = true; }));
    EXPECT_TRUE(differs([](auto& copy) { copy.defaultValue = "d"; }));
    EXPECT_TRUE(differs([](auto& copy) { copy.entries["b"] = "2"; }));
    EXPECT_TRUE(differs([](auto& copy) { copy.entries["a"] = "2"; }));
    EXPECT_TRUE(differs([](auto& copy) { copy.entries = {{"b", "1"}}; }));
    EXPECT_TRUE(differs([](auto& copy) { copy.hasQueryItemMap = false; }));
    EXPECT_TRUE(differs([](auto& copy) { copy.keyRef = "x"; }));
    EXPECT_TRUE(differs([](auto& copy) { copy.valueRef = "x"; }));
    EXPECT_FALSE(differs([](auto& copy) { copy.text2 = "x"; }));
}

TEST_F(ParameterMapModel, KeepsWhatACopyHoldsUnderAKey) {
    map->AddOrUpdateParameterMapEntry("a", "1");
    SMParameterMapContents copy;
    copy.entries["a"] = "before";
    copy.hasQueryItemMap = true;
    copy.keyRef = "before";
    copy.text2 = "before";
    map->CopyContents(copy);
    EXPECT_EQ(copy.text2, "");
    EXPECT_EQ(copy.entries["a"], "before");
    EXPECT_FALSE(copy.hasQueryItemMap);
    EXPECT_EQ(copy.keyRef, "");
}

TEST_F(ParameterMapModel, IsNeverTheSameAsACopyWhenAKeyStandsTwice) {
    Read("<parameterMapEntry><key>k</key></parameterMapEntry><parameterMapEntry><key>k</key></parameterMapEntry>");
    SMParameterMapContents copy;
    map->CopyContents(copy);
    EXPECT_FALSE(map->IsSameAs(copy));
}

TEST_F(ParameterMapModel, RenamesValuesAndTheValueReference) {
    SMRenameList2 list;
    list.AddRenameNamespace("A", "B");
    map->SetDefaultValue("[A].[x].[y]");
    map->AddOrUpdateParameterMapEntry("[A].[x].[y]", "[A].[x].[y]");
    SetQueryItemMap("[A].[x].[y]", "[A].[x].[y]");
    map->RenameObjects(list);
    EXPECT_EQ(Entry(0)->GetValue(), "[B].[x].[y]");
    EXPECT_EQ(map->GetQueryItemMap()->valueRef, "[B].[x].[y]");
    EXPECT_EQ(Entry(0)->GetKey(), "[A].[x].[y]");
    EXPECT_EQ(map->GetQueryItemMap()->keyRef, "[A].[x].[y]");
    EXPECT_EQ(map->GetDefaultValue(), "[A].[x].[y]");
}

TEST_F(ParameterMapModel, GivesNewIdsWithoutTheMap) {
    map->SetId("m");
    map->AddOrUpdateParameterMapEntry("a", "1");
    Entry(0)->SetId("e");
    std::map<QvULString, QvULString> ids = {{"m", "1"}, {"e", "2"}};
    map->RegenerateIds(ids);
    EXPECT_EQ(map->GetId().length(), 36);
    EXPECT_EQ(Entry(0)->GetId().length(), 36);
}

TEST_F(ParameterMapModel, MovesWithItsEntries) {
    map->AddOrUpdateParameterMapEntry("a", "1");
    const ProjectPtr other = NewProject();
    map->SetSMProject(other);
    EXPECT_EQ(Entry(0)->GetSMProject(), other.get());
    EXPECT_EQ(project->GetAllObjects().GetCount(), 0);
    EXPECT_EQ(other->GetAllObjects().GetCount(), 2);
}

TEST_F(ParameterMapModel, ListsItsEntriesAsChildren) {
    map->AddOrUpdateParameterMapEntry("a", "1");
    map->AddOrUpdateParameterMapEntry("b", "2");
    QvULCollection<IOObject, QvULIdExtract<IOObject>> children;
    map->getChildObjects(children);
    ASSERT_EQ(children.size(), 2u);
    EXPECT_EQ(children[1].get(), Entry(1));
}

// ---- document

TEST_F(ParameterMapXml, WritesNameKeyAndValueAlsoWhenEmpty) {
    map->AddOrUpdateParameterMapEntry("", "");
    EXPECT_EQ(WriteElement(*map), R"(<parameterMap hidden="false"><name></name><property name="id" type="hidden"></property>)"
                                  R"(<property name="version" type="hidden">0</property><parameterMapEntry version="0">)"
                                  "<key></key><value></value></parameterMapEntry></parameterMap>");
}

TEST_F(ParameterMapXml, HasNoQueryItemMapAfterNull) {
    SetQueryItemMap("", "");
    EXPECT_THAT(WriteElement(*map), testing::HasSubstr("<queryItemMap><keyRef></keyRef><valueRef></valueRef></queryItemMap>"));
    EXPECT_EQ(map->WriteQueryItemMapToString(), "<queryItemMap><keyRef></keyRef><valueRef></valueRef></queryItemMap>");
    map->SetQueryItemMap(nullptr);
    EXPECT_THAT(WriteElement(*map), testing::Not(testing::HasSubstr("queryItemMap")));
    EXPECT_EQ(map->WriteQueryItemMapToString(), "");
}

// ---- builder

TEST_F(ParameterMapBuilder, TakesIdAndVersionOfAnEntryFromAttributes) {
    Read(R"(<parameterMapEntry id="e" version="7"/><parameterMapEntry version="x"/><parameterMapEntry/>)");
    ASSERT_EQ(map->GetEntries().size(), 3u);
    EXPECT_EQ(Entry(0)->GetId(), "e");
    EXPECT_EQ(Entry(0)->GetVersionNo(), 7);
    EXPECT_EQ(Entry(1)->GetVersionNo(), 0);
    EXPECT_EQ(Entry(2)->GetId(), "");
    EXPECT_THAT(log.Events(), IsEmpty());
}

TEST_F(ParameterMapBuilder, TakesTheElementsInAnyOrder) {
    Read(
        "<queryItemMap><valueRef>v</valueRef><keyRef>k</keyRef></queryItemMap><defaultValue>d</defaultValue>"
        "<property name=\"id\">i</property><name> n </name>");
    EXPECT_EQ(map->GetQueryItemMap()->keyRef, "k");
    EXPECT_EQ(map->GetDefaultValue(), "d");
    EXPECT_EQ(map->GetId(), "i");
    EXPECT_EQ(map->GetName(), " n ");
}

TEST_F(ParameterMapBuilder, EmptiesTheReferencesOfEachQueryItemMap) {
    Read("<queryItemMap><valueRef>v</valueRef><keyRef>k</keyRef></queryItemMap><queryItemMap><keyRef>k2</keyRef></queryItemMap>");
    EXPECT_EQ(map->GetQueryItemMap()->keyRef, "k2");
    EXPECT_EQ(map->GetQueryItemMap()->valueRef, "");
    Read("<queryItemMap><valueRef>v3</valueRef></queryItemMap>");
    EXPECT_EQ(map->GetQueryItemMap()->keyRef, "");
    Read("<queryItemMap><keyRef>k</keyRef><valueRef>v</valueRef></queryItemMap><queryItemMap></queryItemMap>");
    EXPECT_EQ(map->GetQueryItemMap()->keyRef, "");
}

TEST_F(ParameterMapBuilder, LogsWhatItDoesNotKnowAtBothEnds) {
    Read("<zeb/><parameterMapEntry><lastChanged/></parameterMapEntry>");
    const auto unknown = [](const char* builder, const char* module, const char* method, const char* tag) {
        return LoggedEvent{4, module, std::string(builder) + "::" + method, method, std::string("Unknown tag:") + tag, ""};
    };
    EXPECT_THAT(log.Events(), ElementsAre(unknown("SMParameterMapBuilder", "smparametermap2", "smtagStartElement", "zeb"),
                                          unknown("SMParameterMapBuilder", "smparametermap2", "smtagEndElement", "zeb"),
                                          unknown("SMParameterMapEntryBuilder", "smparametermapentry2", "smtagStartElement", "lastChanged"),
                                          unknown("SMParameterMapEntryBuilder", "smparametermapentry2", "smtagEndElement", "lastChanged")));
}

// ---- rows

TEST_F(ParameterMapRows, ReadTheBaseFirstAndLogAMissingKey) {
    map->constructFromIOParameter(*Row().Text("id", "i").Text("name", "n").Text("hidden", "true"));
    EXPECT_EQ(map->GetId(), "i");
    EXPECT_EQ(map->GetName(), "n");
    EXPECT_FALSE(map->IsHidden()) << "what follows the missing default value stays unread";
    ASSERT_EQ(log.Events().size(), 1u);
    EXPECT_EQ(log.Events()[0].level, 1);
    EXPECT_EQ(log.Events()[0].module, "smparametermap2");
    EXPECT_EQ(log.Events()[0].className, "SMParameterMap2");
    log.Clear();
    SMParameterMapEntry2 entry(map, project);
    entry.constructFromIOParameter(*Row().Text("id", "e").Text("key", "k"));
    EXPECT_EQ(entry.GetKey(), "k");
    ASSERT_EQ(log.Events().size(), 1u);
    EXPECT_EQ(log.Events()[0].module, "smparametermapentry2");
    EXPECT_EQ(log.Events()[0].className, "SMParameterMapEntry2");
}

TEST_F(ParameterMapRows, TakeOnlyTheWordTrueAsHidden) {
    for (const char* text : {"true", "TRUE", "1", ""}) {
        map->constructFromIOParameter(*Row().Text("id", "i").Text("name", "").Text("defaultValue", "").Text("hidden", text));
        EXPECT_EQ(map->IsHidden(), std::string(text) == "true") << text;
    }
    EXPECT_THAT(log.Events(), IsEmpty());
}

TEST_F(ParameterMapRows, AreReadBehindEntriesThatAreThere) {
    map->AddOrUpdateParameterMapEntry("a", "1");
    RecordingContext context;
    context.answers = {{Row().Text("id", "e").Text("key", "k").Text("value", "v")}};
    EXPECT_TRUE(map->read(context));
    ASSERT_EQ(map->GetEntries().size(), 2u);
    EXPECT_EQ(Entry(1)->GetKey(), "k");
    EXPECT_THAT(context.noted, ElementsAre("e"));
}

TEST_F(ParameterMapRows, LogOnceForTheEntryThatFailsAndForEachThatIsLeft) {
    for (const char* key : {"a", "b", "c"}) map->AddOrUpdateParameterMapEntry(key, "");
    SetQueryItemMap("k", "v");
    RecordingContext context;
    context.FailAt(2);
    EXPECT_FALSE(map->write_next(context));
    const LoggedEvent event = {1, "smparametermap2", "SMParameterMap2", "write_next", "Failed to write a parameter map entry.", ""};
    EXPECT_THAT(log.Events(), ElementsAre(event, event));
    EXPECT_EQ(context.Actions().size(), 2u);
}

TEST_F(ParameterMapRows, SendNothingForAQueryItemMapThatIsGone) {
    SetQueryItemMap("k", "v");
    StoreContext store;
    EXPECT_TRUE(map->write_next(store));
    EXPECT_EQ(store.Actions().size(), 2u);
    EXPECT_TRUE(map->write_next(store)) << "nothing has changed";
    map->SetQueryItemMap(nullptr);
    EXPECT_TRUE(map->write_next(store));
    EXPECT_EQ(store.Actions().size(), 2u);
}

TEST_F(ParameterMapRows, EnterTheSetsAndMapsOfASave) {
    map->SetId("m");
    map->SetVersionNo(2);
    map->AddOrUpdateParameterMapEntry("a", "1");
    Entry(0)->SetId("e");
    SetQueryItemMap("k", "v");
    std::set<QvULString> pairs;
    MapId2MiniObject objects;
    MapId2RemainingInfo records;
    project->InitAndAddSetPIDIDAndMiniObject(&pairs, nullptr, &objects, &records);
    map->AddToSetPIDIDAndMiniObject();
    EXPECT_EQ(pairs.count("m+e"), 1u);
    EXPECT_NE(objects.Find("e"), nullptr);
    ASSERT_NE(records.Find("m/queryItemMap"), nullptr);
    EXPECT_EQ(records.Find("m/queryItemMap")->parentVersion, 2);
    EXPECT_EQ(records.Find("m/queryItemMap")->value, map->WriteQueryItemMapToString());
}
