#include <csignal>
#include <memory>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "tests/support/postgresserver.h"
#include "tests/support/waitfor.h"
#include "tests/tools/smodel/repomodel.h"

namespace {

using ::testing::AllOf;
using ::testing::EndsWith;
using ::testing::HasSubstr;
using ::testing::IsEmpty;
using ::testing::Not;
using ::testing::StartsWith;

/** An element with a name, and an id if there is one. */
std::string Named(const std::string& tag, const std::string& name, const std::string& id, const std::string& content) {
    const std::string property = id.empty() ? "" : "<property name=\"id\" type=\"hidden\">" + id + "</property>";
    return "<" + tag + "><name locale=\"en\">" + name + "</name>" + property + content + "</" + tag + ">";
}

std::string Item(const std::string& name, const std::string& id = {}, const std::string& expression = "1") {
    return Named("queryItem", name, id, "<expression>" + expression + "</expression>");
}

std::string Subject(const std::string& name, const std::string& content, const std::string& id = {}) {
    return Named("querySubject", name, id, "<definition><dbQuery><sources></sources></dbQuery></definition>" + content);
}

/** So many folders around it, one in the other. */
std::string InFolders(int depth, std::string content) {
    for (; depth > 0; --depth) content = Named("folder", "f" + std::to_string(depth), {}, content);
    return content;
}

/** The same on each kind of store. */
class SmodelRepoRestore : public testing::TestWithParam<const char*> {
  protected:
    SmodelRepoRestore() {
        if (GetParam() == std::string("Sqlite")) return;
        m_schema = std::make_unique<PostgresSchema>();
        repository.SetLocation(m_schema->Location());
    }
    /** Puts them in turn; each changes something. */
    void Put(const std::vector<std::string>& models) {
        for (const std::string& model : models) ASSERT_THAT(repository.Put(model).out, StartsWith("revision "));
    }
    ToolRun Restore(const std::string& what, const std::vector<std::string>& rest = {}) {
        std::vector<std::string> words{what};
        words.insert(words.end(), rest.begin(), rest.end());
        return repository.Run("restore", words);
    }
    /** The restoration ends well, and leaves a sound store whose newest document is that of the model. */
    ToolRun ExpectRestored(const std::string& what, const std::string& model) {
        const std::string before = Newest();
        ToolRun run = Restore(what);
        EXPECT_EQ(run.status, 0) << run.err;
        EXPECT_THAT(run.out, StartsWith("revision ")) << what;
        EXPECT_EQ(repository.Get(), Formatted(model)) << what;
        EXPECT_NE(Newest(), before);
        EXPECT_EQ(repository.Run("verify", {"--all"}).status, 0) << repository.Run("verify", {"--all"}).out;
        return run;
    }
    /** It fails with a text, and changes nothing. */
    void ExpectRefused(const std::string& what, const std::string& text) {
        const std::string before = Newest();
        const ToolRun run = Restore(what);
        EXPECT_EQ(run.status, 2) << run.out;
        EXPECT_THAT(run.err, HasSubstr(text));
        EXPECT_EQ(Newest(), before);
    }
    /** The id of what the second revision removed. */
    std::string Removed(const std::string& what) {
        const std::string diff = repository.Run("diff", {"1", "2"}).out, before = "removed " + what + " (";
        EXPECT_THAT(diff, HasSubstr(before));
        const std::size_t start = diff.find(before) + before.size();
        return diff.substr(start, diff.find(')', start) - start);
    }
    std::string Newest() { return repository.Run("ls").out; }

  private:
    std::unique_ptr<PostgresSchema> m_schema;

  protected:
    ToolRepository repository;
};

INSTANTIATE_TEST_SUITE_P(Each, SmodelRepoRestore, testing::Values("Sqlite", "Postgres"), [](const auto& store) { return store.param; });

}  // namespace

TEST_P(SmodelRepoRestore, ReadsDocumentsWithinTheLimitsThatAreGiven) {
    repository.leftUnverified = true;
    const std::string limits = "depth=2000", address = "[Sales].[Orders]";
    for (const char* const expression : {"1", "2"})
        ASSERT_EQ(
            repository.Put(SalesModel(InFolders(1'000, Subject("Orders", Item("Amount", {}, expression)))), {"--limits", limits}).status,
            0);
    EXPECT_THAT(Restore(address + "@1").err, HasSubstr("raise the limit, as by --limits"));
    EXPECT_EQ(Restore(address + "@1", {"--limits", limits}).out, "revision 3: 0 objects added, 1 changed, 0 removed\n");
    EXPECT_EQ(repository.Get(), repository.Get("1"));
}

TEST_P(SmodelRepoRestore, BringsBackWhatWasEditedAndNothingElse) {
    Put({SalesModel(Subject("Orders", Item("Amount") + Item("Day"))),
         SalesModel(Subject("Orders", Item("Amount", "", "2") + Item("Day", "", "3")))});
    const ToolRun run = ExpectRestored("[Sales].[Orders].[Amount]@1", SalesModel(Subject("Orders", Item("Amount") + Item("Day", "", "3"))));
    EXPECT_EQ(run.out, "revision 3: 0 objects added, 1 changed, 0 removed\n");
    EXPECT_THAT(repository.Run("log").out, HasSubstr("\trestore [Sales].[Orders].[Amount]@1\n"));
    EXPECT_EQ(repository.Get("2"), Formatted(SalesModel(Subject("Orders", Item("Amount", "", "2") + Item("Day", "", "3")))));
}

TEST(SmodelRepoRestoring, TellsWhyARevisionCannotBeCompared) {
    const ToolRepository repository;
    repository.Put(SalesModel(Subject("Orders", Item("Amount"))));
    repository.Put(SalesModel(Subject("Orders", "")));
    ChangeByHand(repository, "DROP VIEW current_filter; DROP TABLE SM_FILTER");
    const ToolRun run = repository.Run("restore", {"[Sales].[Orders].[Amount]@1"});
    EXPECT_EQ(run.status, 2);
    EXPECT_THAT(run.err, AllOf(HasSubstr("no such table: SM_FILTER"), HasSubstr("error: revision 2 cannot be compared with its rows")));
}

TEST(SmodelRepoRestoring, EndsOrderlyWhenItIsInterruptedBeforeItsPreparation) {
    const ToolRepository repository;
    repository.Put(SalesModel(Subject("Orders", Item("Amount"))));
    sqlite3* database = nullptr;
    ASSERT_EQ(sqlite3_open(repository.Location().c_str(), &database), SQLITE_OK);
    ASSERT_EQ(sqlite3_exec(database, "PRAGMA locking_mode=EXCLUSIVE; BEGIN EXCLUSIVE", nullptr, nullptr, nullptr), SQLITE_OK);
    RunningTool tool({"repo", "restore", repository.Location(), "[Sales].[Orders]@1"}, {});
    WaitFor([&] { return tool.HasOpen(repository.Location()); });
    tool.Interrupt(SIGINT);
    sqlite3_close(database);
    EXPECT_EQ(tool.Wait().status, 130);
}

TEST_P(SmodelRepoRestore, KeepsMessageAndAuthor) {
    Put({SalesModel(Subject("Orders", "")), SalesModel("")});
    EXPECT_EQ(Restore("[Sales].[Orders]@1", {"-m", "back", "--author", "ada", "--project", "p"}).status, 0);
    EXPECT_THAT(repository.Run("log").out, HasSubstr("\tada\tback\n"));
}

TEST_P(SmodelRepoRestore, BringsAChildBackToItsPlaceWithItsHistory) {
    const std::string a = Item("a"), b = Item("b"), c = Item("c"), whole = SalesModel(Subject("Orders", a + b + c));
    const std::pair<const char*, std::string> gone[] = {{"a", b + c}, {"b", a + c}, {"c", a + b}};
    Put({whole});
    std::size_t revision = 1;
    for (const auto& [name, rest] : gone) {
        Put({SalesModel(Subject("Orders", rest))});
        const std::string object = "[Sales].[Orders].[" + std::string(name) + "]";
        ExpectRestored(object + "@1", whole);
        revision += 2;
        const std::string log = repository.Run("log", {object}).out;
        EXPECT_THAT(log, AllOf(StartsWith(std::to_string(revision) + "\t"), HasSubstr("\n1\t"))) << "it is the object that went";
    }
}

TEST_P(SmodelRepoRestore, PlacesAnObjectBehindTheElderSiblingThatIsLeft) {
    const std::string a = Item("a", "i1"), b = Item("b", "i2"), c = Item("c", "i3"), d = Item("d", "i4"), n = Item("new", "i5");
    Put({SalesModel(Subject("Orders", a + b + c + d)), SalesModel(Subject("Orders", a + d + n))});
    ExpectRestored("[Sales].[Orders].[c]@1", SalesModel(Subject("Orders", a + c + d + n)));
    ExpectRestored("[Sales].[Orders].[b]@1", SalesModel(Subject("Orders", a + b + c + d + n)));
}

TEST_P(SmodelRepoRestore, BringsAWholeTreeBack) {
    const std::string folder = "<queryItemFolder><name locale=\"en\">F</name>" + Item("Amount") + "</queryItemFolder>",
                      orders = Subject("Orders", folder + Item("Day")), lines = Subject("Lines", Item("Number"));
    Put({SalesModel(orders + lines), SalesModel(lines)});
    ExpectRestored("[Sales].[Orders]@1", SalesModel(orders + lines));
    Put({SalesModel("")});
    ExpectRestored("[Sales]@1", SalesModel(orders + lines));
}

TEST_P(SmodelRepoRestore, MakesTheElementAroundAnObjectWhereItIsMissing) {
    const auto determinants = [](const std::string& names) {
        std::string all;
        for (const char name : names)
            all += "<determinant><name>" + std::string(1, name) + "</name><key><refobj>[Sales].[Orders].[Day]</refobj></key></determinant>";
        return SalesModel(Subject("Orders", Item("Day") + (all.empty() ? "" : "<determinants>" + all + "</determinants>")));
    };
    Put({determinants("DE"), determinants("")});
    ExpectRestored("id:" + Removed("determinant Test / Sales / Orders / D") + "@1", determinants("D"));
}

TEST_P(SmodelRepoRestore, UsesTheElementAroundAnObjectWhereItIsEmpty) {
    const std::string with = ModelDocument(NamespaceElement("Sales") + MapElement("M", "v"));
    Put({with, ModelDocument(NamespaceElement("Sales"))});
    ExpectRestored("[].[parameterMaps].[M]@1", with);
    EXPECT_EQ(repository.Get().find("<parameterMaps"), repository.Get().rfind("<parameterMaps"));
}

TEST_P(SmodelRepoRestore, FindsWhatWasRenamedByEitherName) {
    const std::string first = SalesModel(Subject("Orders", Item("Amount") + Item("Day"))),
                      second = SalesModel(Subject("Orders", Item("Sum") + Item("Day")));
    Put({first, second});
    EXPECT_EQ(ExpectRestored("[Sales].[Orders].[Amount]@1", first).out, "revision 3: 0 objects added, 1 changed, 0 removed\n");
    Put({second});
    ExpectRestored("[Sales].[Orders].[Sum]@1", first);
}

TEST_P(SmodelRepoRestore, TellsReferencesThatLeadNowhereAfterwards) {
    const auto model = [](const std::string& name) {
        return SalesModel(Subject("Orders", Item(name)) +
                          Subject("Lines", Item("Of", "", "<refobj>[Sales].[Orders].[" + name + "]</refobj>")));
    };
    Put({model("Amount"), model("Sum")});
    const ToolRun run = Restore("[Sales].[Orders].[Amount]@1");
    EXPECT_EQ(run.status, 0);
    EXPECT_THAT(run.err, HasSubstr("note: '[Sales].[Orders].[Sum]' leads nowhere now, in [Sales].[Lines].[Of]: expression"));
}

TEST_P(SmodelRepoRestore, MovesAnObjectBackToWhereItStood) {
    const std::string amount = Item("Amount", "i1"),
                      moved = SalesModel(Subject("Orders", Item("Day", "i2"), "s1") + Subject("Lines", amount, "s2")),
                      first = SalesModel(Subject("Orders", Item("Day", "i2") + amount, "s1") + Subject("Lines", "", "s2"));
    Put({first, moved});
    EXPECT_EQ(ExpectRestored("id:i1@1", first).out, "revision 3: 0 objects added, 1 changed, 0 removed\n");
}

TEST_P(SmodelRepoRestore, TakesBackWhatWasMovedOutOfTheObject) {
    const std::string amount = Item("Amount", "i1"), lines = Subject("Lines", amount, "s2");
    Put({SalesModel(Subject("Orders", amount, "s1") + Subject("Lines", "", "s2")), SalesModel(lines)});
    const ToolRun run = ExpectRestored("[Sales].[Orders]@1", SalesModel(Subject("Orders", amount, "s1") + Subject("Lines", "", "s2")));
    EXPECT_THAT(run.err, HasSubstr("note: the queryItem '[Sales].[Lines].[Amount]' is taken back from where it stands now"));
}

TEST_P(SmodelRepoRestore, SendsForTheParentFirst) {
    Put({SalesModel(Subject("Orders", Item("Amount"))), SalesModel("")});
    ExpectRefused(
        "[Sales].[Orders].[Amount]@1",
        "the queryItem '[Sales].[Orders].[Amount]' cannot be restored: what it hung below, the querySubject '[Sales].[Orders]' (id:");
    ExpectRefused("[Sales].[Orders].[Amount]@1", "is gone; restore that first");
}

TEST_P(SmodelRepoRestore, RefusesAPlaceInsideOfTheObjectItself) {
    const auto folder = [](const std::string& name, const std::string& content) { return Named("folder", name, "f" + name, content); };
    Put({SalesModel(folder("A", folder("B", ""))), SalesModel(folder("B", folder("A", "")))});
    ExpectRefused("id:fB@1", "stands inside of what is to be restored now; move that out first");
}

TEST_P(SmodelRepoRestore, RefusesWhatIsNotThere) {
    Put({SalesModel(Subject("Orders", "")), SalesModel(Subject("Orders", "") + Subject("Lines", ""))});
    ExpectRefused("[Sales].[Order]@1", "No revision has an object '[Sales].[Order]'");
    ExpectRefused("id:nobody@1", "No revision has an object of the id 'nobody'; 'smodel repo diff' tells the ids of what changed.");
    ExpectRefused("[Sales].[Lines]@1", "'[Sales].[Lines]' does not stand in revision 1; 'smodel repo log ");
    ExpectRefused("[Sales].[Orders]@3", "There is no revision 3; there are 1 to 2.");
    ExpectRefused("[Sales].[Orders]", "'[Sales].[Orders]' names no revision: give the object and the revision");
    repository.Run("prune", {"--keep", "1"});
    ExpectRefused("[Sales].[Orders]@1", "There is no revision 1; there are 2 to 2.");
}

TEST_P(SmodelRepoRestore, TakesNothingAwayThatHasTheIdNow) {
    const std::string taken = Named("filter", "F", "i1", "<expression>1</expression>");
    Put({SalesModel(Subject("Orders", Item("Amount", "i1"), "s1")), SalesModel(Subject("Orders", "", "s1") + taken)});
    const std::string why =
        "the id 'i1' of the queryItem '[Sales].[Orders].[Amount]' is that of the filter '[Sales].[F]' by now; give that another id, or "
        "remove it, first";
    ExpectRefused("id:i1@1", "the queryItem '[Sales].[Orders].[Amount]' cannot be restored: " + why);
    ExpectRefused("id:s1@1", "the querySubject '[Sales].[Orders]' cannot be restored: " + why);
    Put({SalesModel(Named("filter", "F", "s1", "<expression>1</expression>"))});
    ExpectRefused("id:i1@1", "what it hung below, the querySubject '[Sales].[Orders]' (id:s1), is gone; restore that first");
    ExpectRefused("id:s1@1", "the id 's1' of the querySubject '[Sales].[Orders]' is that of the filter '[Sales].[F]' by now");
}

TEST_P(SmodelRepoRestore, BringsBackWhatBecameAnotherKindOfTheSameTable) {
    const std::string folder = SalesModel(Named("folder", "A", "f1", "")), space = SalesModel(Named("namespace", "A", "f1", ""));
    Put({folder, space});
    EXPECT_EQ(ExpectRestored("id:f1@1", folder).out, "revision 3: 0 objects added, 1 changed, 0 removed\n");
}

TEST_P(SmodelRepoRestore, GivesNothingTheNameOfAnother) {
    Put({SalesModel(Subject("Orders", Item("Amount", "i1") + Item("Day", "i2"), "s1")),
         SalesModel(Subject("Orders", Item("Sum", "i1") + Item("Day", "i2") + Item("Amount", "i3"), "s1"))});
    ExpectRefused("id:i1@1", "there is another queryItem '[Sales].[Orders].[Amount]' by now; rename or remove it first");
}

TEST_P(SmodelRepoRestore, LetsObjectsShareANameThatSharedItThen) {
    const std::string twice = SalesModel(Subject("Orders", Item("Amount", "i1") + Item("Amount", "i2"), "s1"));
    Put({twice, SalesModel(Subject("Orders", Item("Amount", "i2"), "s1"))});
    ExpectRestored("id:i1@1", twice);
}

TEST_P(SmodelRepoRestore, GivesNoNamespaceANumberBehindItsName) {
    const auto space = [](const std::string& name, const std::string& id) { return Named("namespace", name, id, ""); };
    Put({SalesModel(space("A", "n1") + space("C", "n2")), SalesModel(space("B", "n1") + space("A", "n2"))});
    ExpectRefused("id:n1@1", "a namespace 'A' stands elsewhere by now; rename or remove it first");
}

TEST_P(SmodelRepoRestore, RefusesASecondPartOfWhichThereIsOne) {
    const std::string with = SalesModel(Subject("Orders", Item("Amount"), "s1"));
    Put({with, SalesModel(Named("querySubject", "Orders", "s1", Item("Amount"))), with});
    ExpectRefused("id:" + Removed("definition Test / Sales / Orders / definition") + "@1",
                  "another definition stands in its place; restore what it belongs to instead");
}

TEST_P(SmodelRepoRestore, WritesNothingWhereNothingChanged) {
    Put({SalesModel(Subject("Orders", Item("Amount"))), SalesModel(Subject("Orders", Item("Amount")) + Subject("Lines", ""))});
    const ToolRun run = Restore("[Sales].[Orders]@1");
    EXPECT_EQ(run.status, 0);
    EXPECT_EQ(run.out, "nothing changed; the newest revision is 2\n");
}

TEST_P(SmodelRepoRestore, WritesNothingWhereTheStoreHasMovedOn) {
    Put({SalesModel(Subject("Orders", "")), SalesModel(""), SalesModel(Subject("Lines", ""))});
    const ToolRun run = Restore("[Sales].[Orders]@1", {"--base", "2"});
    EXPECT_EQ(run.status, 4);
    EXPECT_THAT(run.err, HasSubstr("nothing was written"));
    EXPECT_EQ(repository.Get(), Formatted(SalesModel(Subject("Lines", ""))));
    EXPECT_EQ(repository.Run("log", {"--json"}).out.find("\"revision\": 4"), std::string::npos);
}

TEST_P(SmodelRepoRestore, BringsTheWholeProjectBack) {
    const std::string first = SalesModel(Subject("Orders", Item("Amount")));
    Put({first, ModelDocument(NamespaceElement("Other"))});
    ExpectRestored("id:p@1", first);
}
