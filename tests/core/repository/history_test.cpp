#include <algorithm>

#include <gmock/gmock.h>

#include "core/qvutils/io/qvxmlformattarget.h"
#include "core/qvutils/text/tklbytebuffer.h"
#include "tests/core/repository/repositorytest.h"

namespace {

class RepositoryHistory : public RepositoryTest {
  protected:
    /** "changed ID: NAME=before->after ...", one line a change. */
    static std::string Tell(const std::vector<SMRepositoryChange>& changes) {
        const auto side = [](bool there, const I18NString& text) { return there ? std::string(text.utf8()) : "null"; };
        std::string text;
        for (const SMRepositoryChange& change : changes) {
            text += change.what == SMRepositoryChange::added     ? "added "
                    : change.what == SMRepositoryChange::removed ? "removed "
                                                                 : "changed ";
            text += std::string(change.id.utf8()) + ":";
            if (change.what == SMRepositoryChange::changed)
                for (const SMRepositoryValue& value : change.values)
                    text += " " + std::string(value.name.utf8()) + "=" + side(value.isThereBefore, value.before) + "->" +
                            side(value.isThereAfter, value.after);
            if (change.order) text += " order";
            text += "\n";
        }
        return text;
    }
    /** Three revisions: the sample; a renamed map with an entry less; a record more. */
    long PutThree() {
        const long number = Put(*project);
        Map(*project).Named("Renamed");
        Map(*project).children.pop_back();
        Save(*project, number);
        Root(*project).records["property"] = "<a></a>";
        const auto context = repository->OpenProject(number);
        context->Describe("ada", "a record");
        EXPECT_TRUE(project->write(*context));
        return number;
    }
    /** Their numbers. */
    std::string RevisionsOf(long number, const char* id) {
        std::string text;
        for (const SMRepositoryRevision& revision : repository->RevisionsOf(number, QvULString(id)))
            text += std::to_string(revision.number);
        return text;
    }
    /** "NAME=value in REVISION", one line a value. */
    std::string BlameOf(long number, const char* id) {
        std::string text;
        for (const SMRepositoryBlame& line : repository->Blame(number, QvULString(id)))
            text +=
                std::string(line.name.utf8()) + "=" + std::string(line.value.utf8()) + " in " + std::to_string(line.revision.number) + "\n";
        return text;
    }
    QvSmartPtr<TestNode> project = Sample();
};

TEST_P(RepositoryHistory, CountsWhatTheChangesTell) {
    const long number = PutThree();
    for (const auto& [from, to] : {std::pair<long, long>{0, 1}, {0, 3}, {1, 2}, {2, 3}, {3, 1}, {2, 2}}) {
        std::size_t told[3] = {};
        for (const SMRepositoryChange& change : repository->Changes(number, from, to)) ++told[change.what];
        const SMRepositoryChangeCounts counts = repository->CountChanges(number, from, to);
        EXPECT_EQ(counts.added, told[SMRepositoryChange::added]) << from << " " << to;
        EXPECT_EQ(counts.changed, told[SMRepositoryChange::changed]) << from << " " << to;
        EXPECT_EQ(counts.removed, told[SMRepositoryChange::removed]) << from << " " << to;
    }
}

TEST_P(RepositoryHistory, KnowsWhereANameCanHaveStoodForTheLastTime) {
    const long number = PutThree();
    EXPECT_EQ(repository->LastRevisionsOf(number, {"", "parameterMaps", "Map"}), std::vector<long>{1});
    EXPECT_EQ(repository->LastRevisionsOf(number, {"Root", "Zebra"}), std::vector<long>()) << "nothing of these names has ended";
    EXPECT_EQ(repository->LastRevisionsOf(number, {"Map", "Nobody"}), std::vector<long>());
    EXPECT_EQ(repository->LastRevisionsOf(number, {}), std::vector<long>());
}

TEST_P(RepositoryHistory, FindsNoFaultInWhatItSaved) {
    const long number = PutThree();
    for (long revision = 1; revision <= 3; ++revision) EXPECT_EQ(repository->Faults(number, revision), std::vector<std::string>());
}

TEST_P(RepositoryHistory, TakesTheDateThatReadersGiveForNone) {
    const long number = Put(*project);
    const auto context = repository->OpenProject(number);
    Map(*project).SetLastChangedDate(QvDate(true));
    EXPECT_TRUE(project->write(*context));
    EXPECT_EQ(context->Counters().rowsWritten, 0);
    Map(*project).SetLastChangedDate(QvDate("2001-02-03T04:05:06"));
    EXPECT_TRUE(project->write(*context));
    EXPECT_GT(context->Counters().rowsWritten, 0) << "another date is one that somebody gave";
}

INSTANTIATE_TEST_SUITE_P(Stores, RepositoryHistory, testing::ValuesIn(STORE_KINDS), [](const auto& kind) { return kind.param.name; });

}  // namespace

TEST_P(RepositoryHistory, TellsWhoSavedAndWhy) {
    const long number = PutThree();
    const std::vector<SMRepositoryRevision> revisions = repository->Revisions(number);
    ASSERT_EQ(revisions.size(), 3u);
    EXPECT_EQ(revisions[0].author, I18NString(""));
    EXPECT_EQ(revisions[2].number, 3);
    EXPECT_EQ(revisions[2].author, I18NString("ada"));
    EXPECT_EQ(revisions[2].message, I18NString("a record"));
    EXPECT_TRUE(revisions[2].savedAt.IsSet());
}

TEST_P(RepositoryHistory, TellsWhatTwoRevisionsHaveDifferent) {
    const long number = PutThree();
    EXPECT_EQ(Tell(repository->Changes(number, 1, 2)), "changed m: NAME=Map->Renamed\nremoved e2:\n");
    EXPECT_EQ(Tell(repository->Changes(number, 2, 3)), "changed r: record property=null-><a></a>\n");
    EXPECT_EQ(Tell(repository->Changes(number, 3, 1)),
              "changed m: NAME=Renamed->Map\nadded e2:\nchanged r: record property=<a></a>->null\n");
    EXPECT_EQ(Tell(repository->Changes(number, 2, 2)), "");
}

TEST_P(RepositoryHistory, TellsThatAnObjectOfAnotherKindTookAnId) {
    const long number = Put(*project);
    project->children.pop_back();
    project->AddSection("Section", "m");
    Save(*project, number);
    EXPECT_EQ(Tell(repository->Changes(number, 1, 2)), "removed m:\nadded m:\nremoved e1:\nremoved e2:\nremoved e3:\n");
    EXPECT_EQ(Tell(repository->Changes(number, 2, 1)), "added m:\nadded e1:\nadded e2:\nadded e3:\nremoved m:\n");
    for (const auto& [kind, path] : {std::pair("parameterMap", "Map"), std::pair("namespace", "Section")}) {
        const std::vector<SMRepositoryChange> changes = repository->Changes(number, 1, 2);
        const auto found =
            std::find_if(changes.begin(), changes.end(), [&](const auto& change) { return change.path.back() == I18NString(path); });
        ASSERT_NE(found, changes.end()) << path;
        EXPECT_EQ(found->name, I18NString(path));
        EXPECT_EQ(found->kind, QvULString(kind));
    }
}

TEST_P(RepositoryHistory, TellsWhereAChangedObjectStands) {
    const long number = PutThree();
    const std::vector<SMRepositoryChange> changes = repository->Changes(number, 1, 2);
    ASSERT_EQ(changes.size(), 2u);
    EXPECT_EQ(changes[0].kind, QvULString("parameterMap"));
    EXPECT_EQ(changes[0].path, (std::vector<I18NString>{I18NString("Sample"), I18NString("Renamed")}));
    EXPECT_EQ(changes[1].parentId, QvULString("m"));
}

TEST_P(RepositoryHistory, TellsOfANewOrder) {
    const long number = Put(*project);
    std::swap(Root(*project).children[0], Root(*project).children[1]);
    Save(*project, number);
    EXPECT_EQ(Tell(repository->Changes(number, 1, 2)), "changed r: order\n");
}

TEST_P(RepositoryHistory, TellsOfNoOrderWhereTheSameCameBack) {
    const long number = Put(*project);
    for (int i = 0; i < 2; ++i) {
        std::swap(Root(*project).children[0], Root(*project).children[1]);
        Save(*project, number);
    }
    EXPECT_EQ(Tell(repository->Changes(number, 2, 3)), "changed r: order\n");
    EXPECT_EQ(Tell(repository->Changes(number, 1, 3)), "");
    EXPECT_EQ(Tell(repository->Changes(number, 3, 1)), "");
}

TEST_P(RepositoryHistory, TellsOfNoOrderWhereOneCameInFrontOfTheOthers) {
    const long number = Put(*project);
    Map(*project).AddEntry("z", "26", "z");
    std::rotate(Map(*project).children.begin(), Map(*project).children.end() - 1, Map(*project).children.end());
    Save(*project, number);
    EXPECT_EQ(Tell(repository->Changes(number, 1, 2)), "added z:\n");
    EXPECT_EQ(DumpOf(number), project->Dump());
}

TEST_P(RepositoryHistory, TellsWhichDocumentsAreTheSame) {
    long number = 0;
    for (const char* const text : {"<a/>", "<b/>", "<a/>"}) {
        const auto context = number == 0 ? repository->NewProject() : repository->OpenProject(number);
        context->DocumentTarget()->write(text);
        ASSERT_TRUE(project->write(*context));
        number = context->ProjectNumber();
    }
    Map(*project).Named("Other");
    Save(*project, number);
    const std::vector<SMRepositoryRevision> revisions = repository->Revisions(number);
    ASSERT_EQ(revisions.size(), 4u);
    EXPECT_FALSE(revisions[0].documentDigest.empty());
    EXPECT_NE(revisions[0].documentDigest, revisions[1].documentDigest);
    EXPECT_EQ(revisions[0].documentDigest, revisions[2].documentDigest);
    EXPECT_TRUE(revisions[3].documentDigest.empty()) << "it was saved without one";
    EXPECT_EQ(revisions[2].documentBytes, 4u);
    EXPECT_EQ(revisions[3].documentBytes, 0u);
}

TEST_P(RepositoryHistory, FindsTheRevisionsOfAnObject) {
    const long number = PutThree();
    EXPECT_EQ(RevisionsOf(number, "m"), "12");
    EXPECT_EQ(RevisionsOf(number, "e2"), "12") << "it went in the second";
    EXPECT_EQ(RevisionsOf(number, "r"), "13");
    EXPECT_EQ(RevisionsOf(number, "nobody"), "");
    Map(*project).Child(0).Set("VALUE", TestNode::Text("4"));
    Save(*project, number);
    EXPECT_EQ(RevisionsOf(number, "m"), "124") << "an entry has no address of its own";
}

TEST_P(RepositoryHistory, BlamesTheRevisionThatSetAValue) {
    const long number = PutThree();
    EXPECT_EQ(BlameOf(number, "m"),
              "DEFAULTVALUE= in 1\nHIDDEN=false in 1\nNAME=Renamed in 2\n"
              "parameterMapEntry [a].KEY=a in 1\nparameterMapEntry [a].VALUE=1 in 1\n"
              "parameterMapEntry [c].KEY=c in 1\nparameterMapEntry [c].VALUE=3 in 1\n");
    EXPECT_TRUE(repository->Blame(number, QvULString("e2")).empty());
}

TEST_P(RepositoryHistory, CountsPartsWithoutAnAddressAsTheirObject) {
    TestNode& outer = Root(*project).Child(1);
    TestNode& inner = outer.AddSection("Inner", "s3", "folder");
    outer.AddSection("Other", "n").AddSection("Far", "s4", "folder");
    const long number = Put(*project);
    inner.records["property"] = "<a></a>";
    Save(*project, number);
    outer.Set("DESCRIPTION", TestNode::Text("fruit")).names["fr"] = "Pomme";
    Save(*project, number);
    outer.Child(1).Child(0).Named("Farther");
    Save(*project, number);
    EXPECT_EQ(RevisionsOf(number, "r"), "123") << "a namespace and what is below it have addresses";
    EXPECT_EQ(RevisionsOf(number, "n"), "14");
    EXPECT_EQ(RevisionsOf(number, "s2"), "1");
    const std::string blame = BlameOf(number, "r");
    EXPECT_THAT(blame, testing::HasSubstr("\nfolder [Apple].folder [Inner].record property=<a></a> in 2\n"));
    EXPECT_THAT(blame, testing::HasSubstr("\nfolder [Apple].name[fr]=Pomme in 3\n"));
    EXPECT_THAT(blame, testing::Not(testing::HasSubstr("Far")));
    outer.Remove(inner);
    Save(*project, number);
    EXPECT_EQ(RevisionsOf(number, "r"), "1235");
    EXPECT_THAT(BlameOf(number, "r"), testing::Not(testing::HasSubstr("Inner")));
}

TEST_P(RepositoryHistory, LoadsWhatStoodInARevision) {
    const std::string first = Sample()->Dump(false);
    const long number = PutThree();
    const auto context = repository->OpenProject(number);
    context->ReadAt(1);
    EXPECT_EQ(ReadTestProject(*context)->Dump(false), first);
    EXPECT_EQ(context->Newest(), 3);
}

TEST_P(RepositoryHistory, TakesNoSaveBasedOnAnOldRevision) {
    const long number = PutThree();
    const auto context = repository->OpenProject(number);
    context->ReadAt(1);
    Map(*project).Named("Too late");
    EXPECT_FALSE(project->write(*context));
    EXPECT_TRUE(context->MovedOn());
}

TEST_P(RepositoryHistory, ComparesAModelWithARevisionAndWritesNothing) {
    const long number = PutThree();
    const auto context = repository->OpenProject(number);
    EXPECT_EQ(Tell(context->Compare(*project)), "");
    context->ReadAt(1);
    EXPECT_EQ(Tell(context->Compare(*project)), "changed m: NAME=Map->Renamed\nremoved e2:\nchanged r: record property=null-><a></a>\n");
    EXPECT_EQ(context->Counters().rowsWritten, 0);
    EXPECT_EQ(context->Newest(), 3);
}

TEST_P(RepositoryHistory, PruningKeepsTheNewestRevisionsWhole) {
    const long number = PutThree();
    const std::string second = [&] {
        const auto context = repository->OpenProject(number);
        context->ReadAt(2);
        return ReadTestProject(*context)->Dump();
    }();
    const SMRepositoryPruned pruned = repository->Prune(number, 2);
    EXPECT_EQ(pruned.revisions, 1);
    EXPECT_EQ(pruned.oldest, 2);
    EXPECT_EQ(pruned.rows, 2) << "the map's old name and the entry that went";
    EXPECT_EQ(repository->Revisions(number).size(), 2u);
    const auto context = repository->OpenProject(number);
    context->ReadAt(2);
    EXPECT_EQ(ReadTestProject(*context)->Dump(), second);
    EXPECT_EQ(repository->Prune(number, 2).revisions, 0) << "nothing is left to do";
}

TEST_P(RepositoryHistory, PruningTakesThePiecesOfOldDocumentsAway) {
    const auto context = repository->NewProject();
    for (const char* const document : {"<a></a>", "<b></b>", "<a></a>"}) {
        context->DocumentTarget()->write(document);
        EXPECT_TRUE(project->write(*context));
    }
    EXPECT_EQ(repository->Prune(1, 1).pieces, 1) << "of the second; the first one's document is that of the third";
    TklByteBuffer bytes;
    QvByteBufferWriter writer(bytes);
    EXPECT_TRUE(repository->OpenProject(1)->ReadDocument(writer));
}

TEST_P(RepositoryHistory, AFailedPruneTakesNothingAway) {
    const long number = PutThree();
    for (long step = 1; step <= 20; ++step) {
        plan->writes = 0;
        plan->failsAt = step;
        try {
            repository->Prune(number, 1);
            break;
        } catch (const TklRuntimeError&) {
            plan->failsAt = 0;
            EXPECT_EQ(repository->Revisions(number).size(), 3u) << step;
            EXPECT_EQ(Tell(repository->Changes(number, 1, 2)), "changed m: NAME=Map->Renamed\nremoved e2:\n") << step;
        }
    }
}

TEST_P(RepositoryHistory, EndsTheTextsOfAnOldVersion) {
    Root(*project).names["fr"] = "Racine";
    const long number = Put(*project);
    Root(*project).Named("Other");
    Save(*project, number);
    EXPECT_EQ(Tell(repository->Changes(number, 1, 2)), "changed r: NAME=Root->Other\n") << "the text is the same in the new version";
    Root(*project).names["fr"] = "Autre";
    Root(*project).Named("Third");
    Save(*project, number);
    EXPECT_EQ(Tell(repository->Changes(number, 2, 3)), "changed r: NAME=Other->Third name[fr]=Racine->Autre\n");
}

TEST_P(RepositoryHistory, ComparesTextsInOtherLocales) {
    Root(*project).names["fr"] = "Racine";
    const long number = Put(*project);
    Root(*project).Named("Other");
    EXPECT_EQ(Tell(repository->OpenProject(number)->Compare(*project)), "changed r: NAME=Root->Other\n");
    Root(*project).names["fr"] = "Autre";
    EXPECT_EQ(Tell(repository->OpenProject(number)->Compare(*project)), "changed r: NAME=Root->Other name[fr]=Racine->Autre\n");
}
