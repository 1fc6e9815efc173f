#include "tests/core/repository/repositorytest.h"

namespace {

class RepositorySave : public RepositoryTest {};

INSTANTIATE_TEST_SUITE_P(Stores, RepositorySave, testing::ValuesIn(STORE_KINDS), [](const auto& kind) { return kind.param.name; });

using Rows = std::pair<long, long>;

TEST_P(RepositorySave, WritesNothingWhenNothingChanged) {
    const QvSmartPtr<TestNode> project = Sample();
    const long number = Put(*project);
    const std::string before = project->Dump();
    EXPECT_EQ(Save(*project, number), Rows(0, 0));
    EXPECT_EQ(Save(*Get(number), number), Rows(0, 0)) << "what was loaded";
    EXPECT_EQ(project->Dump(), before);
    EXPECT_EQ(repository->Projects()[0].revision, 1);
}

TEST_P(RepositorySave, WritesNothingTwiceOnOneContext) {
    const QvSmartPtr<TestNode> project = Sample();
    const auto context = repository->NewProject();
    ASSERT_TRUE(project->write(*context));
    const long written = context->Counters().rowsWritten;
    ASSERT_TRUE(project->write(*context));
    ASSERT_TRUE(project->write(*context));
    EXPECT_EQ(context->Counters().rowsWritten, written);
    EXPECT_EQ(context->Revision(), 1);
}

TEST_P(RepositorySave, WritesAChangedChildBelowAnUnchangedParent) {
    const QvSmartPtr<TestNode> project = Sample();
    const long number = Put(*project);
    Map(*project).Child(1).Set("VALUE", TestNode::Text("new"));
    EXPECT_EQ(Save(*project, number), Rows(1 + REVISION, 1));
    const QvSmartPtr<TestNode> got = Get(number);
    EXPECT_EQ(got->Dump(), project->Dump());
    EXPECT_EQ(Map(*got).Child(1).GetVersionNo(), 2);
    EXPECT_EQ(Map(*got).GetVersionNo(), 1);
    EXPECT_EQ(repository->Projects()[0].revision, 2);
}

TEST_P(RepositorySave, TakesVersionsFromTheStore) {
    const QvSmartPtr<TestNode> project = Sample();
    const long number = Put(*project);
    Root(*project).SetVersionNo(40);
    EXPECT_EQ(Save(*project, number), Rows(0, 0));
    EXPECT_EQ(Root(*project).GetVersionNo(), 1);
    Root(*project).SetVersionNo(40);
    Root(*project).Named("Other");
    Save(*project, number);
    EXPECT_EQ(Root(*project).GetVersionNo(), 2);
}

TEST_P(RepositorySave, AVersionOfTheParentMakesNoRowDiffer) {
    const QvSmartPtr<TestNode> project = Sample();
    const long number = Put(*project);
    Map(*project).Named("Other");
    EXPECT_EQ(Save(*project, number), Rows(1 + REVISION, 1));
}

TEST_P(RepositorySave, AClearedColumnIsNullAgain) {
    const QvSmartPtr<TestNode> project = Sample();
    Root(*project).Set("DESCRIPTION", TestNode::Text("told"));
    const long number = Put(*project);
    Root(*project).Drop("DESCRIPTION");
    EXPECT_EQ(Save(*project, number), Rows(1 + REVISION, 1));
    EXPECT_EQ(DumpOf(number), project->Dump());
}

TEST_P(RepositorySave, EmptyAndNullAreTwoValues) {
    const QvSmartPtr<TestNode> project = Sample();
    const long number = Put(*project);
    Root(*project).Set("DESCRIPTION", TestNode::Text(""));
    EXPECT_EQ(Save(*project, number), Rows(1 + REVISION, 1));
    EXPECT_EQ(DumpOf(number), project->Dump());
}

TEST_P(RepositorySave, EndsWhatWasDeletedWithAllBelow) {
    const QvSmartPtr<TestNode> project = Sample();
    Map(*project).records["queryItemMap"] = "<x></x>";
    const long number = Put(*project);
    project->Remove(Map(*project));
    // the map, three entries, the map's record, and the order of its entries
    EXPECT_EQ(Save(*project, number), Rows(REVISION, 6));
    EXPECT_EQ(DumpOf(number), project->Dump());
    EXPECT_EQ(Save(*project, number), Rows(0, 0));
}

TEST_P(RepositorySave, ADeletedIdComesBackWithAHigherVersion) {
    const QvSmartPtr<TestNode> project = Sample();
    project->Child(0).records["property"] = "<p></p>";
    const long number = Put(*project);
    const QvSmartPtr<TestNode> entry = &Map(*project).Child(1);
    project->Child(0).records.clear();
    Map(*project).Remove(*entry);
    Save(*project, number);
    Map(*project).children.push_back(entry);
    project->Child(0).records["property"] = "<p></p>";
    EXPECT_EQ(Save(*project, number).first, 2 + 1 + REVISION) << "entry, record and the order of the entries";
    EXPECT_EQ(entry->GetVersionNo(), 2);
    EXPECT_EQ(DumpOf(number), project->Dump());
}

TEST_P(RepositorySave, AMovedObjectKeepsItsIdAndWhatIsBelowIt) {
    const QvSmartPtr<TestNode> project = Sample();
    TestNode& zebra = Root(*project).Child(0);
    zebra.AddSection("Below", "b").AddSection("Deep", "d");
    const long number = Put(*project);
    const QvSmartPtr<TestNode> moved = &zebra.Child(0);
    zebra.Remove(*moved);
    moved->parent = &Root(*project).Child(1);
    Root(*project).Child(1).children.push_back(moved);
    EXPECT_EQ(Save(*project, number), Rows(1 + REVISION, 1));
    EXPECT_EQ(DumpOf(number), project->Dump());
}

TEST_P(RepositorySave, OfAPartLeavesTheRestAlone) {
    const QvSmartPtr<TestNode> project = Sample();
    const long number = Put(*project);
    const QvSmartPtr<TestNode> got = Get(number);
    Map(*got).Remove(Map(*got).Child(0));
    Map(*got).Child(0).Set("VALUE", TestNode::Text("new"));
    got->Child(0).Named("not written");
    EXPECT_EQ(Save(Map(*got), number), Rows(1 + REVISION, 2));
    const QvSmartPtr<TestNode> after = Get(number);
    EXPECT_EQ(Map(*after).Dump(), Map(*got).Dump());
    EXPECT_EQ(Root(*after).Dump(), Root(*project).Dump());
}

TEST_P(RepositorySave, AProjectWithAnotherIdTakesTheOldOnesPlace) {
    const QvSmartPtr<TestNode> project = Sample();
    const long number = Put(*project);
    project->SetId("p9");
    Save(*project, number);
    EXPECT_EQ(DumpOf(number), project->Dump());
    EXPECT_EQ(repository->Projects()[0].id, "p9");
}

TEST_P(RepositorySave, TheRegistryFollowsTheProjectsName) {
    const QvSmartPtr<TestNode> project = Sample();
    const long number = Put(*project);
    project->Named("Renamed");
    Save(*project, number);
    EXPECT_EQ(repository->Projects()[0].name, "Renamed");
    EXPECT_EQ(repository->Projects()[0].id, "p");
}

TEST_P(RepositorySave, KeepsTheOrderOfTheLastSave) {
    const QvSmartPtr<TestNode> project = Sample();
    const long number = Put(*project);
    std::swap(Map(*project).children[0], Map(*project).children[2]);
    EXPECT_EQ(Save(*project, number), Rows(1 + REVISION, 1)) << "one record of order takes the place of another";
    EXPECT_EQ(DumpOf(number), project->Dump());
    EXPECT_EQ(Save(*project, number), Rows(0, 0));
}

TEST_P(RepositorySave, NeedsNoRecordOfOrderWhereIdsGrow) {
    const QvSmartPtr<TestNode> project = Sample();
    TestNode& map = project->Add("SM_PARAMETER_MAP", "m2");
    for (const char* const key : {"z", "y", "x"}) map.AddEntry(key, "");
    const long number = Put(*project);
    EXPECT_EQ(project->Child(2).Dump(), Get(number)->Child(2).Dump());
    map.AddEntry("w", "");
    EXPECT_EQ(Save(*project, number), Rows(1 + REVISION, 0));
    map.Remove(map.Child(1));
    EXPECT_EQ(Save(*project, number), Rows(REVISION, 1));
    EXPECT_EQ(project->Child(2).Dump(), Get(number)->Child(2).Dump());
}

TEST_P(RepositorySave, ANewLastChildNeedsNoNewRecordOfOrder) {
    const QvSmartPtr<TestNode> project = Sample();
    const long number = Put(*project);
    Map(*project).AddEntry("last", "");
    EXPECT_EQ(Save(*project, number), Rows(1 + REVISION, 0));
    EXPECT_EQ(DumpOf(number), project->Dump());
    Map(*project).Remove(Map(*project).Child(1));
    EXPECT_EQ(Save(*project, number), Rows(REVISION, 1));
    EXPECT_EQ(DumpOf(number), project->Dump());
}

TEST_P(RepositorySave, OfOneNewChildPutsItBehindItsSiblings) {
    const QvSmartPtr<TestNode> project = Sample();
    const long number = Put(*project);
    TestNode& entry = Map(*project).AddEntry("0", "", "e0");
    Save(entry, number);
    EXPECT_EQ(DumpOf(number), project->Dump());
}

TEST_P(RepositorySave, TellsOrderOfIdsWithLineFeedsAndBackslashes) {
    const QvSmartPtr<TestNode> project = Sample();
    for (const char* const id : {"\\n", "\n", "\\", "n", "a\nb", "a"}) Map(*project).AddEntry(id, "", id);
    const long number = Put(*project);
    EXPECT_EQ(DumpOf(number), project->Dump());
}

TEST_P(RepositorySave, AnIdThatTwoObjectsHaveStaysWithTheFirst) {
    const QvSmartPtr<TestNode> project = Sample();
    Map(*project).AddEntry("d", "4", "e1");
    project->AddSection("Second root", "m");
    CaughtLog log;
    const long number = Put(*project);
    ASSERT_EQ(log.messages.size(), 2u);
    EXPECT_EQ(log.levels, std::vector<int>({1, 1}));
    EXPECT_EQ(log.messages[0], "The id 'e1' is that of another object; object 'path of e1' gets a new one.");
    EXPECT_EQ(Map(*project).Child(1).GetId(), "e1");
    EXPECT_EQ(Map(*project).Child(3).GetId().length(), 36);
    EXPECT_EQ(project->Child(2).GetId().length(), 36);
    EXPECT_EQ(Get(number)->Child(2).children.size(), 4u) << "the second root stands before the map";
}

TEST_P(RepositorySave, NewObjectsGetIdsAndVersionOne) {
    const QvSmartPtr<TestNode> project = Sample();
    TestNode& entry = Map(*project).AddEntry("d", "4");
    EXPECT_TRUE(entry.GetId().empty());
    const long number = Put(*project);
    EXPECT_EQ(entry.GetId().length(), 36);
    EXPECT_EQ(entry.GetVersionNo(), 1);
    EXPECT_EQ(DumpOf(number), project->Dump());
}

TEST_P(RepositorySave, TextsOfOtherLanguagesAreWrittenWithTheirObject) {
    const QvSmartPtr<TestNode> project = Sample();
    TestNode* const root = &Root(*project);
    const auto context = repository->NewProject();
    root->onWrite = [&](TestNode& node) {
        EXPECT_TRUE(node.WriteText(*context, "name", "de", "Wurzel"));
        EXPECT_TRUE(node.WriteText(*context, "name", "de", "Wurzel, besser"));
        EXPECT_TRUE(node.WriteText(*context, "name", "fr", "Racine"));
    };
    ASSERT_TRUE(project->write(*context));
    const auto connection = backend->Connect();
    const qv::TableShape texts{"SM_LANG_TEXT",
                               {{"PROJECT_NO", qv::ColumnType::integer, true},
                                {"OBJECT_ID", qv::ColumnType::text, true},
                                {"OBJECT_VERSION_NO", qv::ColumnType::integer, true},
                                {"FIRST_REVISION", qv::ColumnType::integer, true},
                                {"END_REVISION", qv::ColumnType::integer, false},
                                {"NAME", qv::ColumnType::text, true},
                                {"LOCALE", qv::ColumnType::text, true},
                                {"VALUE", qv::ColumnType::text, false}},
                               {}};
    const auto source = connection->Prepare(qv::Query{&texts, {1, 5, 6, 7}, {}});
    std::set<std::string> found;
    qv::Cell row[4];
    source->Start({});
    while (source->Next(row))
        found.insert(std::string(row[0].view) + " " + std::string(row[1].view) + " " + std::string(row[2].view) + " " +
                     std::string(row[3].view));
    EXPECT_EQ(found, std::set<std::string>({"r name de Wurzel, besser", "r name fr Racine"}));
}

TEST_P(RepositorySave, ASortThatMemoryCannotHaveOutlivesASave) {
    const QvSmartPtr<TestNode> project = Sample();
    TestNode& item = Root(*project).Add("SM_QUERY_SUBJECT", "q").Named("s").Add("SM_QUERY_ITEM", "i");
    item.Named("n").Set("QS_ITEM_TYPE_NAME", TestNode::Text("queryItem")).Set("SORT", TestNode::Number(1));
    const long number = Put(*project);
    const auto sortOf = [&] {
        const auto context = repository->OpenProject(number);
        QvSmartPtr<TestNode> subject = new TestNode(nullptr, "SM_QUERY_SUBJECT", "q");
        QvSmartPtr<IOArrayParam> rows = new IOArrayParam;
        EXPECT_TRUE(subject->ReadKind(*context, "queryItem", *rows));
        return rows->At(0)->GetByName("sort")->GetQvStringValue();
    };
    EXPECT_EQ(sortOf(), "1") << "a number that is handed back as text";
    item.Drop("SORT");
    EXPECT_EQ(Save(*project, number), Rows(0, 0));
    item.Named("renamed");
    EXPECT_EQ(Save(*project, number), Rows(1 + REVISION, 1));
    EXPECT_EQ(sortOf(), "1");
    item.Set("SORT", TestNode::Number(0));
    EXPECT_EQ(Save(*project, number), Rows(1 + REVISION, 1));
    EXPECT_EQ(sortOf(), "0");
}

TEST_P(RepositorySave, AnEmptyExpressionIsLikeNone) {
    const QvSmartPtr<TestNode> project = Sample();
    TestNode& filter = Root(*project).Add("SM_FILTER", "f").Named("f").Set("EXPRESSION", TestNode::Text(""));
    const long number = Put(*project);
    filter.Drop("EXPRESSION");
    EXPECT_EQ(Save(*project, number), Rows(0, 0)) << "readers bring back none";
    filter.Set("EXPRESSION", TestNode::Text("1 = 1"));
    EXPECT_EQ(Save(*project, number), Rows(1 + REVISION, 1));
    filter.Drop("EXPRESSION");
    EXPECT_EQ(Save(*project, number), Rows(1 + REVISION, 1)) << "one that was taken away is gone";
}

TEST_P(RepositorySave, AVersionOfAnotherRowMakesNoItemDiffer) {
    const QvSmartPtr<TestNode> project = Sample();
    TestNode& item = Root(*project).Add("SM_QUERY_SUBJECT", "q").Named("s").Add("SM_QUERY_ITEM", "i");
    item.Named("n").Set("QS_ITEM_TYPE_NAME", TestNode::Text("queryItem")).Set("QS_VERSION_NO", TestNode::Number(1));
    const long number = Put(*project);
    item.Set("QS_VERSION_NO", TestNode::Number(9));
    EXPECT_EQ(Save(*project, number), Rows(0, 0));
}

TEST_P(RepositorySave, ItemsOfAHierarchyThatNobodyReadsStay) {
    const QvSmartPtr<TestNode> project = Sample();
    TestNode& hierarchy = Root(*project).Add("SM_QUERY_SUBJECT", "q").Named("s").Add("SM_HIERARCHY", "h").Named("h");
    const auto item = [](TestNode& parent, const char* id) {
        parent.Add("SM_QUERY_ITEM", id).Named(id).Set("QS_ITEM_TYPE_NAME", TestNode::Text("queryItem"));
    };
    item(hierarchy, "i");
    TestNode& folder =
        hierarchy.Add("SM_QUERY_ITEM_FOLDER", "f").Named("f").Set("ITEM_FOLDER_TYPE_NAME", TestNode::Text("queryItemFolder"));
    item(folder, "j");
    const long number = Put(*project);
    const QvSmartPtr<TestNode> got = Get(number);
    EXPECT_EQ(Save(*got, number), Rows(0, 0)) << "a load and save keeps them";
    hierarchy.Remove(hierarchy.Child(0));
    item(hierarchy, "k");
    EXPECT_EQ(Save(*project, number), Rows(1 + REVISION, 1)) << "an item takes the place of another, the folder was written";
    project->Child(0).Remove(project->Child(0).Child(2));
    EXPECT_EQ(Save(*project, number).second, 5) << "they go with their hierarchy";
}

TEST_P(RepositorySave, GivesFalseAndKeepsTheStoreWhenAnObjectFails) {
    const QvSmartPtr<TestNode> project = Sample();
    const long number = Put(*project);
    const std::string before = DumpOf(number);
    Root(*project).Named("Other");
    Map(*project).Child(2).writes = false;
    const auto context = repository->OpenProject(number);
    EXPECT_FALSE(project->write(*context));
    EXPECT_EQ(DumpOf(number), before);
    EXPECT_EQ(Root(*project).GetVersionNo(), 2) << "numbers in memory may be ahead";
    Map(*project).Child(2).writes = true;
    EXPECT_TRUE(project->write(*context)) << "the same context goes on";
    EXPECT_EQ(DumpOf(number), project->Dump());
}

TEST_P(RepositorySave, AnExceptionOfAnObjectPassesAndKeepsTheStore) {
    const QvSmartPtr<TestNode> project = Sample();
    const long number = Put(*project);
    const std::string before = DumpOf(number);
    Root(*project).Named("Other");
    Map(*project).Child(2).onWrite = [](TestNode&) { throw std::logic_error("of the model"); };
    const auto context = repository->OpenProject(number);
    EXPECT_THROW(project->write(*context), std::logic_error);
    EXPECT_EQ(DumpOf(number), before);
    Map(*project).Child(2).onWrite = nullptr;
    EXPECT_TRUE(project->write(*context));
    EXPECT_EQ(DumpOf(number), project->Dump());
}

TEST_P(RepositorySave, FailsWhenTheStoreHasMovedOn) {
    const QvSmartPtr<TestNode> project = Sample();
    const long number = Put(*project);
    const auto slow = repository->OpenProject(number);
    const QvSmartPtr<TestNode> mine = ReadTestProject(*slow);
    Root(*project).Named("Theirs");
    Save(*project, number);
    Root(*mine).Named("Mine");
    CaughtLog log;
    EXPECT_FALSE(mine->write(*slow));
    EXPECT_TRUE(slow->MovedOn());
    EXPECT_EQ(log.Only(), "The repository has moved on: revision 1 is not the last any more.");
    EXPECT_EQ(DumpOf(number), project->Dump());
    const QvSmartPtr<TestNode> again = ReadTestProject(*slow);
    Root(*again).Named("Mine");
    EXPECT_TRUE(again->write(*slow)) << "after a new read";
    EXPECT_FALSE(slow->MovedOn());
}

TEST_P(RepositorySave, ARaceBehindTheFirstLookIsSeenAtTheCommit) {
    const QvSmartPtr<TestNode> project = Sample();
    const long number = Put(*project);
    const QvSmartPtr<TestNode> mine = Get(number);
    Root(*mine).Named("Mine");
    Root(*mine).onWrite = [&](TestNode&) {
        Root(*project).Named("Theirs");
        Save(*project, number);
    };
    CaughtLog log;
    const auto context = repository->OpenProject(number);
    EXPECT_FALSE(mine->write(*context));
    EXPECT_TRUE(context->MovedOn());
    EXPECT_EQ(DumpOf(number), project->Dump());
}

TEST_P(RepositorySave, RefusesWhatTheTableDoesNotKnow) {
    const auto refused = [&](const std::function<void(TestNode&)>& spoil) {
        const QvSmartPtr<TestNode> project = Sample();
        spoil(Map(*project));
        CaughtLog log;
        EXPECT_FALSE(project->write(*repository->NewProject()));
        EXPECT_EQ(log.levels, std::vector<int>({1}));
        return log.Only();
    };
    const std::string row = "table SM_PARAMETER_MAP, id 'm', object 'path of m': ";
    EXPECT_EQ(refused([](TestNode& map) { map.Set("COLOUR", TestNode::Text("red")); }), row + "the table has no column 'COLOUR'");
    EXPECT_EQ(refused([](TestNode& map) { map.Set("NAME", TestNode::Number(1)); }),
              row + "the table column 'NAME' takes a text, not a number");
    EXPECT_EQ(refused([](TestNode& map) { map.Set("HIDDEN", TestNode::Flag(true)); }),
              row + "the table column 'HIDDEN' takes a text, not a flag");
    EXPECT_EQ(refused([](TestNode& map) { map.Named(std::string("a\0b", 3)); }),
              row + "the table column 'NAME' cannot hold the character NUL");
    EXPECT_NE(refused([](TestNode& map) {
                  map.SetId(QvULString(std::string_view("m\0x", 3)));
              }).find("the table column 'PARAMETER_MAP_ID' cannot hold the character NUL"),
              std::string::npos);
    EXPECT_EQ(refused([](TestNode& map) { map.sentTable = "SM_NOTHING"; }),
              "table SM_NOTHING, id 'm', object 'path of m': there is no such table of objects");
    EXPECT_TRUE(repository->Projects().empty());
}

}  // namespace
