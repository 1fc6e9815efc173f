#include "tests/core/repository/repositorytest.h"

namespace {

class RepositoryRecords : public RepositoryTest {
  protected:
    using Rows = std::pair<long, long>;

    /** The row's own version and that of its owner, of each record that a context hands out. */
    static std::string Versions(IOHelper& context, TestNode& owner) {
        QvSmartPtr<IOHashParam> params = new IOHashParam;
        QvSmartPtr<IOArrayParam> rows = new IOArrayParam;
        owner.getInputParams(*params, "", nullptr);
        EXPECT_TRUE(context.DoReadAction(IOAction::AT_ReadRemainingInfo, *params, *rows));
        std::string text;
        for (int at = 0; at < rows->Size(); ++at) {
            const QvSmartPtr<IOParameter> row = rows->At(at);
            for (const QvULString& key : {IOParamTag::XML_ELEMENT_ID, IOParamTag::XML_ELEMENT_PARENT_ID, IOParamTag::XML_ELEMENT_TYPE,
                                          IOParamTag::XML_ELEMENT_ORDER})
                EXPECT_TRUE(row->HasKey(key)) << key.c_str();
            text += std::string(row->GetByName(IOParamTag::XML_ELEMENT_NAME)->GetQvStringValue().utf8()) + " " +
                    std::to_string(row->GetByName(IOParamTag::XML_ELEMENT_VERSION)->GetLongValue()) + "/" +
                    std::to_string(row->GetByName(IOParamTag::XML_ELEMENT_PARENT_VERSION)->GetLongValue()) + "=" +
                    std::string(row->GetByName(IOParamTag::XML_ELEMENT_VALUE)->GetQvStringValue().utf8()) + ";";
        }
        return text;
    }
    std::string Versions(long number, TestNode& owner) { return Versions(*repository->OpenProject(number), owner); }
};

INSTANTIATE_TEST_SUITE_P(Stores, RepositoryRecords, testing::ValuesIn(STORE_KINDS), [](const auto& kind) { return kind.param.name; });

TEST_P(RepositoryRecords, AreWrittenOnceAndThenOnlyWhenTheyChange) {
    const QvSmartPtr<TestNode> project = Sample();
    Root(*project).records["property"] = "<a></a>";
    const long number = Put(*project);
    EXPECT_EQ(Versions(number, Root(*project)), "property 1/1=<a></a>;");
    EXPECT_EQ(Save(*project, number), Rows(0, 0));
    Root(*project).records["property"] = "<b></b>";
    EXPECT_EQ(Save(*project, number), Rows(1 + REVISION, 1));
    EXPECT_EQ(Versions(number, Root(*project)), "property 2/1=<b></b>;");
}

TEST_P(RepositoryRecords, FollowANewVersionOfTheirOwner) {
    const QvSmartPtr<TestNode> project = Sample();
    Root(*project).records["property"] = "<a></a>";
    const long number = Put(*project);
    Root(*project).Named("Other");
    EXPECT_EQ(Save(*project, number), Rows(2 + REVISION, 2));
    EXPECT_EQ(Versions(number, Root(*project)), "property 2/2=<a></a>;");
}

TEST_P(RepositoryRecords, OfAnOlderVersionOfTheOwnerAreStillFound) {
    const QvSmartPtr<TestNode> project = Sample();
    Root(*project).records["property"] = "<a></a>";
    const long number = Put(*project);
    Root(*project).records["property"] = "<a2></a2>";
    Save(*project, number);
    Root(*project).Named("Other");
    Root(*project).records["property"] = "<b></b>";
    Save(*project, number);
    EXPECT_EQ(Versions(number, Root(*project)), "property 3/2=<b></b>;");
    Root(*project).SetVersionNo(1);
    EXPECT_EQ(Versions(number, Root(*project)), "property 2/1=<a2></a2>;") << "the newest of that version";
    Root(*project).SetVersionNo(3);
    EXPECT_EQ(Versions(number, Root(*project)), "") << "a version that was never stored";
}

TEST_P(RepositoryRecords, AreGivenWhateverTheVersionWhileLostOnesAreFixed) {
    const QvSmartPtr<TestNode> project = Sample();
    Root(*project).records["property"] = "<a></a>";
    const auto context = repository->OpenProject(Put(*project));
    Root(*project).SetVersionNo(5);
    EXPECT_EQ(Versions(*context, Root(*project)), "");
    context->SetFixingLostRemainingInfo(true);
    EXPECT_EQ(Versions(*context, Root(*project)), "property 1/1=<a></a>;");
}

TEST_P(RepositoryRecords, AreAllWrittenAnewWhileLostOnesAreFixed) {
    const QvSmartPtr<TestNode> project = Sample();
    Root(*project).records["property"] = "<a></a>";
    const auto context = repository->OpenProject(Put(*project));
    context->SetFixingLostRemainingInfo(true);
    ASSERT_TRUE(project->write(*context));
    EXPECT_EQ(context->Counters().rowsWritten, 2 + REVISION);
    EXPECT_EQ(Versions(*context, Root(*project)), "property 2/1=<a></a>;") << "one row for a name";
}

TEST_P(RepositoryRecords, ThatWereTakenAwayDoNotComeBack) {
    const QvSmartPtr<TestNode> project = Sample();
    Root(*project).records["property"] = "<a></a>";
    Root(*project).records["other"] = "<o></o>";
    const long number = Put(*project);
    Root(*project).records.erase("property");
    EXPECT_EQ(Save(*project, number), Rows(REVISION, 1));
    EXPECT_EQ(Versions(number, Root(*project)), "other 1/1=<o></o>;");
    Root(*project).records["property"] = "<c></c>";
    EXPECT_EQ(Save(*project, number), Rows(1 + REVISION, 0));
    EXPECT_EQ(Versions(number, Root(*project)), "other 1/1=<o></o>;property 2/1=<c></c>;");
}

TEST_P(RepositoryRecords, ThatNobodyReadsStayWithTheirOwner) {
    const QvSmartPtr<TestNode> project = Sample();
    Root(*project).records["previewFilters"] = "<f></f>";
    Root(*project).records["securityFilters"] = "<s></s>";
    Root(*project).records["procParameters"] = "<p></p>";
    const long number = Put(*project);
    Root(*project).records.clear();
    EXPECT_EQ(Save(*project, number), Rows(0, 0));
    project->Remove(Root(*project));
    EXPECT_EQ(Save(*project, number).second, 3 + 3 + 1) << "sections, records and an order";
}

TEST_P(RepositoryRecords, OfCutIdsAreKeptApartByTheirNames) {
    const QvSmartPtr<TestNode> project = Sample();
    TestNode& package = project->Add("SM_PACKAGE", std::string(48, 'x')).Named("Package");
    package.records["definition"] = "<definition></definition>";
    package.records["description"] = "<description></description>";
    package.records["zeta"] = "<zeta></zeta>";
    const long number = Put(*project);
    EXPECT_EQ(Get(number)->Child(1).records, package.records);
    EXPECT_EQ(Save(*project, number), Rows(0, 0));
    package.records["description"] = "<new></new>";
    EXPECT_EQ(Save(*project, number), Rows(1 + REVISION, 1));
    EXPECT_EQ(Get(number)->Child(1).records, package.records);
    package.records.erase("definition");
    Save(*project, number);
    EXPECT_EQ(Get(number)->Child(1).records, package.records);
    EXPECT_EQ(Save(*project, number), Rows(0, 0));
}

TEST_P(RepositoryRecords, AreAnsweredWithinTheOwnerBeingWritten) {
    const QvSmartPtr<TestNode> project = Sample();
    const std::string prefix(50, 'x');
    // the ids of the owners agree in all the characters that a record's id keeps
    TestNode& one = project->Add("SM_PACKAGE", prefix + "1").Named("One");
    TestNode& two = project->Add("SM_PACKAGE", prefix + "2").Named("Two");
    one.records["definition"] = "<one></one>";
    two.records["definition"] = "<two></two>";
    const long number = Put(*project);
    EXPECT_EQ(Save(*project, number), Rows(0, 0));
    const QvSmartPtr<TestNode> got = Get(number);
    EXPECT_EQ(got->Child(1).records["definition"], "<one></one>");
    EXPECT_EQ(got->Child(2).records["definition"], "<two></two>");
}

TEST_P(RepositoryRecords, WrittenByThemselvesAreStoredAtOnce) {
    const QvSmartPtr<TestNode> project = Sample();
    const auto context = repository->OpenProject(Put(*project));
    TestNode& root = Root(*project);
    EXPECT_TRUE(root.WriteRecord(*context, "property", "<a></a>"));
    EXPECT_EQ(context->Revision(), 2);
    EXPECT_TRUE(root.WriteRecord(*context, "property", "<a></a>"));
    EXPECT_EQ(context->Revision(), 2) << "the same again is no write";
    EXPECT_TRUE(root.WriteRecord(*context, "property", "<b></b>"));
    EXPECT_EQ(Versions(*context, root), "property 2/1=<b></b>;");
}

TEST_P(RepositoryRecords, AreKnownFromTheStoreWithoutARead) {
    const QvSmartPtr<TestNode> project = Sample();
    Root(*project).records["property"] = "<a></a>";
    const auto context = repository->OpenProject(Put(*project));
    const RemainingInfoEntry* const entry = context->doWriteLookUpRemainingInfo("r/property");
    ASSERT_NE(entry, nullptr);
    EXPECT_EQ(entry->version, 1);
    EXPECT_EQ(entry->parentVersion, 1);
    EXPECT_EQ(entry->value, "<a></a>");
    EXPECT_EQ(context->doWriteLookUpRemainingInfo("r/nothing"), nullptr);
}

}  // namespace
