#include "tests/core/repository/repositorytest.h"

namespace {

class RepositoryRoundTrip : public RepositoryTest {};

INSTANTIATE_TEST_SUITE_P(Stores, RepositoryRoundTrip, testing::ValuesIn(STORE_KINDS), [](const auto& kind) { return kind.param.name; });

TEST_P(RepositoryRoundTrip, GivesBackWhatWasPut) {
    const QvSmartPtr<TestNode> project = Sample();
    const long number = Put(*project);
    EXPECT_EQ(DumpOf(number), project->Dump());
    EXPECT_EQ(project->GetVersionNo(), 1);
}

TEST_P(RepositoryRoundTrip, AnAbsentProjectIsNoRows) {
    const auto context = repository->NewProject();
    const QvSmartPtr<TestNode> project = ReadTestProject(*context);
    ASSERT_TRUE(project);
    EXPECT_EQ(project->Dump(), "SM_PROJECT  v0\n");
}

TEST_P(RepositoryRoundTrip, KeepsTheVersionThatAnObjectCameWith) {
    const QvSmartPtr<TestNode> project = Sample();
    Root(*project).SetVersionNo(7);
    EXPECT_EQ(Root(*Get(Put(*project))).GetVersionNo(), 7);
}

TEST_P(RepositoryRoundTrip, KeepsDatesNumbersFlagsAndTextsOfAllLengths) {
    const QvSmartPtr<TestNode> project = Sample();
    project->SetLastChangedDate(QvDate("1999-12-31T23:59:58"));
    TestNode& subject = Root(*project).Add("SM_QUERY_SUBJECT", "q");
    subject.Named("\xe2\x82\xac '\"; DROP TABLE x; --").Set("QUERY_SUBJECT_TYPE_NAME", TestNode::Text("querySubject"));
    const long numbers[] = {
        0, 1, -1, 246, 247, 248, 255, 256, 32767, -32768, 65536, 2147483647, -2147483648L, 9223372036854775807L, -9223372036854775807L - 1};
    for (const long value : numbers)
        subject.Add("SM_QUERY_ITEM", "i" + std::to_string(value))
            .Named(std::to_string(value))
            .Set("QS_ITEM_TYPE_NAME", TestNode::Text("queryItem"))
            .Set("SIZE", TestNode::Number(value))
            .Set("NULLABLE", TestNode::Flag(value > 0));
    for (const std::size_t size : {0, 1, 126, 127, 128, 16382, 16383, 16384, 70000, 300000})
        Map(*project).AddEntry(std::to_string(size), std::string(size, 'x'));
    const QvSmartPtr<TestNode> got = Get(Put(*project));
    EXPECT_EQ(got->GetLastChangedDate(), QvDate("1999-12-31T23:59:58"));
    // columns come back in the order of the table, ids of items in that of the save
    const TestNode& items = Root(*got).Child(2);
    ASSERT_EQ(items.children.size(), std::size(numbers));
    for (std::size_t at = 0; at < std::size(numbers); ++at) {
        const std::string wanted = std::string("NULLABLE=") + (numbers[at] > 0 ? "true" : "false") +
                                   " QS_ITEM_TYPE_NAME=\"queryItem\" SIZE=" + std::to_string(numbers[at]);
        EXPECT_NE(items.Child(at).Dump().find(wanted), std::string::npos) << items.Child(at).Dump();
    }
    EXPECT_EQ(Map(*got).Dump(), Map(*project).Dump());
    EXPECT_NE(items.Dump().find("\xe2\x82\xac '\"; DROP TABLE x; --"), std::string::npos);
}

TEST_P(RepositoryRoundTrip, AColumnThatWasNotSentIsPresentAndNull) {
    const QvSmartPtr<TestNode> project = Sample();
    TestNode& item = Root(*project).Add("SM_QUERY_SUBJECT", "q").Add("SM_QUERY_ITEM", "i");
    item.Named("n").Set("QS_ITEM_TYPE_NAME", TestNode::Text("queryItem")).Set("FORMAT", TestNode::Text(""));
    const auto context = repository->OpenProject(Put(*project));
    QvSmartPtr<IOArrayParam> rows = new IOArrayParam;
    QvSmartPtr<TestNode> subject = new TestNode(nullptr, "SM_QUERY_SUBJECT", "q");
    ASSERT_TRUE(subject->ReadKind(*context, "queryItem", *rows));
    ASSERT_EQ(rows->Size(), 1);
    const QvSmartPtr<IOParameter> row = rows->At(0);
    EXPECT_TRUE(row->GetByName("description")->IsNull());
    EXPECT_EQ(row->GetByName("description")->GetQvStringValue(), "");
    EXPECT_TRUE(row->GetByName("size")->IsNull());
    EXPECT_EQ(row->GetByName("size")->GetLongValue(), 0);
    EXPECT_TRUE(row->GetByName("hidden")->IsNull());
    EXPECT_TRUE(row->GetByName("lastChanged")->IsNull());
    EXPECT_FALSE(row->GetByName("format")->IsNull());
    EXPECT_THROW(row->GetByName("no such key"), IOParamException);
    EXPECT_THROW(row->GetByName("name")->GetLongValue(), IOParamException);
}

TEST_P(RepositoryRoundTrip, EveryKindHandsBackTheKeysOfItsMapping) {
    const auto context = repository->NewProject();
    for (const qv::CatalogueKind& kind : qv::CatalogueKinds()) {
        const QvSmartPtr<IOParameter> mapping = context->GetObjectMapping(QvULString(kind.tag));
        ASSERT_TRUE(mapping) << kind.tag;
        const QvSmartPtr<TestNode> node = new TestNode(nullptr, kind.table, "x");
        const qv::CatalogueTable& table = node->table;
        for (const qv::CatalogueColumn& column : table.columns) {
            if (column.key.empty()) continue;
            bool told = column.group == qv::KeyGroup::object;
            for (const QvULString& group : {IOParamTag::SMATTRIBUTE, IOParamTag::SMSIMPLEELEMENT, IOParamTag::SMMIXEDELEMENT,
                                            IOParamTag::SMLANGELEMENT, IOParamTag::SMPROPERTYELEMENT})
                told |= mapping->GetByName(group)->HasKey(QvULString(column.key));
            told |= mapping->HasKey(QvULString(column.key));
            EXPECT_TRUE(told) << kind.tag << " " << column.key;
        }
    }
    EXPECT_FALSE(context->GetObjectMapping("noSuchKind"));
}

TEST_P(RepositoryRoundTrip, AnUnknownKindHasNoRows) {
    const QvSmartPtr<TestNode> project = Sample();
    const auto context = repository->OpenProject(Put(*project));
    QvSmartPtr<IOArrayParam> rows = new IOArrayParam;
    rows->push_back(new IOLongParam(1));
    EXPECT_TRUE(project->ReadKind(*context, "noSuchKind", *rows));
    EXPECT_EQ(rows->Size(), 0);
}

TEST_P(RepositoryRoundTrip, KindsOfOneTableStayApart) {
    const QvSmartPtr<TestNode> project = Sample();
    TestNode& subject = Root(*project).Add("SM_QUERY_SUBJECT", "q");
    for (const char* const id : {"a", "b", "c", "d"})
        subject.Add("SM_QUERY_ITEM", id).Named(id).Set("QS_ITEM_TYPE_NAME", TestNode::Text(*id % 2 ? "measure" : "queryItem"));
    const auto context = repository->OpenProject(Put(*project));
    const auto ids = [&](const char* kind) {
        QvSmartPtr<IOArrayParam> rows = new IOArrayParam;
        EXPECT_TRUE(subject.ReadKind(*context, kind, *rows));
        std::string text;
        for (int at = 0; at < rows->Size(); ++at) text += std::string(rows->At(at)->GetByName("id")->GetQvStringValue().utf8());
        return text;
    };
    EXPECT_EQ(ids("queryItem"), "bd");
    EXPECT_EQ(ids("measure"), "ac");
    EXPECT_EQ(ids("measure"), "ac") << "asked for again";
    EXPECT_EQ(ids("queryItem"), "bd");
    EXPECT_EQ(ids("measureFolder"), "");
}

TEST_P(RepositoryRoundTrip, TheQueryOfAnUpdateSubjectIsToldByItsDefinition) {
    const QvSmartPtr<TestNode> project = Sample();
    Root(*project)
        .Add("SM_UPDATE_SUBJECT", "u1")
        .Named("1")
        .Add("SM_DEFINITION", "d1")
        .Named("")
        .Set("TABLE_TYPE", TestNode::Text("table"));
    Root(*project).Add("SM_UPDATE_SUBJECT", "u2").Named("2").Add("SM_DEFINITION", "d2").Named("").Set("GENERATE_SQL", TestNode::Text(""));
    Root(*project).Add("SM_UPDATE_SUBJECT", "u3").Named("3");
    const auto context = repository->OpenProject(Put(*project));
    QvSmartPtr<IOArrayParam> rows = new IOArrayParam;
    ASSERT_TRUE(Root(*project).ReadKind(*context, "updateSubject", *rows));
    ASSERT_EQ(rows->Size(), 3);
    EXPECT_EQ(rows->At(0)->GetByName(IOParamTag::OBJECT_TYPE)->GetQvStringValue(), "dbQuery");
    EXPECT_EQ(rows->At(1)->GetByName(IOParamTag::OBJECT_TYPE)->GetQvStringValue(), "modelQuery");
    EXPECT_EQ(rows->At(2)->GetByName(IOParamTag::OBJECT_TYPE)->GetQvStringValue(), "");
}

TEST_P(RepositoryRoundTrip, AClassThatNamesNoKeyColumnsIsStored) {
    const QvSmartPtr<TestNode> project = Sample();
    Root(*project).Add("SM_FUNCTION", "f").Named("Sum").Set("CANONICALNAME", TestNode::Text("SUM"));
    EXPECT_EQ(Root(*Get(Put(*project))).Child(2).Dump(), "SM_FUNCTION f v1 CANONICALNAME=\"SUM\" NAME=\"Sum\"\n");
}

TEST_P(RepositoryRoundTrip, ProjectsOfOneStoreDoNotSeeEachOther) {
    const QvSmartPtr<TestNode> one = Sample(), two = Sample();
    two->SetId("p2");
    two->Named("Other");
    Root(*two).Child(0).Named("Changed");
    const long first = Put(*one), second = Put(*two);
    EXPECT_EQ(DumpOf(first), one->Dump());
    EXPECT_EQ(DumpOf(second), two->Dump());
    const std::vector<SMRepositoryProject> projects = repository->Projects();
    ASSERT_EQ(projects.size(), 2u);
    EXPECT_EQ(projects[0].name, "Sample");
    EXPECT_EQ(projects[0].id, "p");
    EXPECT_EQ(projects[0].revision, 1);
    EXPECT_TRUE(projects[0].savedAt.IsSet());
    EXPECT_EQ(projects[1].name, "Other");
    EXPECT_EQ(repository->OpenProject("p2")->ProjectNumber(), second);
    EXPECT_EQ(repository->OpenProject("Sample")->ProjectNumber(), first);
    EXPECT_THROW(repository->OpenProject("nobody"), TklRuntimeError);
    EXPECT_THROW(repository->OpenProject(99), TklRuntimeError);
}

TEST_P(RepositoryRoundTrip, ASecondNewProjectOfTheSameIdIsRefused) {
    const QvSmartPtr<TestNode> project = Sample();
    Put(*project);
    CaughtLog log;
    const auto context = repository->NewProject();
    EXPECT_FALSE(Sample()->write(*context));
    EXPECT_EQ(log.Only(), "Repository '" + backend->Name() +
                              "': The repository has another project with the id 'p'. Save into that one, or give this one another id.");
    EXPECT_EQ(repository->Projects().size(), 1u);
}

TEST_P(RepositoryRoundTrip, AReadSeesOneRevisionWholeWhileAnotherContextSaves) {
    const QvSmartPtr<TestNode> project = Sample();
    const long number = Put(*project);
    const auto reading = repository->OpenProject(number);
    const std::string before = project->Dump();
    QvSmartPtr<TestNode> node = new TestNode(nullptr, "SM_PROJECT", "p");
    QvSmartPtr<IOArrayParam> rows = new IOArrayParam;
    ASSERT_TRUE(node->ReadKind(*reading, "namespace", *rows));
    Root(*project).Named("Later");
    Map(*project).Child(0).Set("VALUE", TestNode::Text("later"));
    Save(*project, number);
    ASSERT_TRUE(node->ReadKind(*reading, "parameterMap", *rows));
    QvSmartPtr<TestNode> map = new TestNode(nullptr, "SM_PARAMETER_MAP", "m");
    ASSERT_TRUE(map->read(*reading));
    EXPECT_NE(map->Dump().find("VALUE=\"3\""), std::string::npos) << "the revision that the read began with";
    EXPECT_EQ(ReadTestProject(*reading)->Dump(), project->Dump()) << "a new read sees the newest";
}

TEST_P(RepositoryRoundTrip, ASecondReadOfOneContextGivesTheSame) {
    const QvSmartPtr<TestNode> project = Sample();
    const auto context = repository->OpenProject(Put(*project));
    EXPECT_EQ(ReadTestProject(*context)->Dump(), project->Dump());
    EXPECT_EQ(ReadTestProject(*context)->Dump(), project->Dump());
}

}  // namespace
