// What namespaces and folders have in common.
#include "objects/containers/smsectiontype2_002_000.h"

#include <gmock/gmock.h>

#include "tests/support/capturedlog.h"
#include "tests/support/contexts.h"
#include "tests/support/documents.h"
#include "tests/support/plainobjects.h"

using namespace schema_002_000;
using namespace smtest;
using testing::ElementsAre;
using testing::IsEmpty;

namespace {

class Section : public testing::Test {
  protected:
    /** Names of the children in display order. */
    static std::vector<std::string> Order(const SMSectionType2& section) {
        std::vector<std::string> names;
        for (const SMObjectBase* item : section.GetDisplayOrderItems()) names.push_back(item->GetNameForSMPath().c_str());
        return names;
    }
    static std::vector<int> Numbers(const SMSectionType2& section) {
        std::vector<int> numbers;
        for (const SMObjectBase* item : section.GetDisplayOrderItems()) numbers.push_back(item->displayOrder);
        return numbers;
    }
    void Read(const std::string& content) {
        SMSectionTypeBuilder builder(root);
        ParseInside(builder, content);
    }

    ProjectPtr project = NewProject("root");
    SMNamespace2* root = project->GetRootNamespace();
    CapturedLog log;
};

using SectionModel = Section;
using SectionXml = Section;
using SectionBuilder = Section;
using SectionRows = Section;

}  // namespace

TEST_F(SectionModel, FindsAFolderBeforeItMakesOne) {
    SMFolder2* folder = root->AddOrUpdateFolder("f");
    EXPECT_EQ(root->AddOrUpdateFolder("f"), folder);
    EXPECT_NE(root->AddOrUpdateFolder("F"), folder);
    EXPECT_THAT(Numbers(*root), ElementsAre(0, 1)) << "finding takes no number";
    EXPECT_EQ(folder->parent, root);
    EXPECT_EQ(folder->GetName(), "f");
    EXPECT_TRUE(folder->GetDescriptions().empty());
}

TEST_F(SectionModel, FindsAFolderOfItsOwnOnly) {
    SMFolder2* inner = root->AddOrUpdateFolder("f")->AddOrUpdateFolder("g");
    EXPECT_NE(root->AddOrUpdateFolder("g"), inner);
}

TEST_F(SectionModel, RecordsNoFolder) {
    project->m_keepIdMap = true;
    root->AddOrUpdateFolder("f");
    EXPECT_TRUE(project->m_idMap.empty());
}

TEST_F(SectionModel, KnowsItsNamespace) {
    SMFolder2* folder = root->AddOrUpdateFolder("f");
    SMFolder2* deeper = folder->AddOrUpdateFolder("g");
    EXPECT_EQ(deeper->GetContainingNamespace(), root);
    EXPECT_EQ(deeper->GetThisOrContainingNamespace(), root);
    EXPECT_EQ(root->GetThisOrContainingNamespace(), root);
    EXPECT_THAT(log.Events(), IsEmpty());
    EXPECT_EQ(root->GetContainingNamespace(), nullptr);
    EXPECT_EQ(log.Events().size(), 1u);
}

TEST_F(SectionModel, SortsItsDisplayListAlone) {
    SMFolder2* a = root->AddOrUpdateFolder("a");
    SMFolder2* b = root->AddOrUpdateFolder("b");
    a->displayOrder = 5;
    b->displayOrder = 1;
    root->SortDisplayOrder();
    EXPECT_THAT(Order(*root), ElementsAre("b", "a"));
    EXPECT_EQ(root->GetFolders()[0].get(), a);
}

TEST_F(SectionModel, ListsScopeToShortcutAsChildren) {
    root->AddOrUpdateNamespace("n", "");
    root->AddOrUpdateFolder("f");
    QvULCollection<IOObject, QvULIdExtract<IOObject>> children;
    root->getChildObjects(children);
    ASSERT_EQ(children.size(), 2u);
    EXPECT_EQ(children[0].get(), root->GetFolders()[0].get());
}

TEST_F(SectionModel, GivesNewIdsToAllBelow) {
    SMFolder2* folder = root->AddOrUpdateFolder("f");
    SMNamespace2* ns = folder->AddOrUpdateNamespace("n", "");
    ns->SetQvRef("w");
    std::map<QvULString, QvULString> ids = {{"w", "x"}};
    root->RegenerateIds(ids);
    EXPECT_EQ(ns->GetQvRef(), "x");
    for (const SMObjectBase* object :
         {static_cast<SMObjectBase*>(root), static_cast<SMObjectBase*>(folder), static_cast<SMObjectBase*>(ns)})
        EXPECT_EQ(object->GetId().length(), 36);
}

TEST_F(SectionModel, EntersAllBelowIntoTheSetsOfASave) {
    root->SetId("r");
    SMFolder2* folder = root->AddOrUpdateFolder("f");
    folder->SetId("f");
    folder->AddOrUpdateNamespace("n", "")->SetId("n");
    std::set<QvULString> pairs;
    project->InitAndAddSetPIDIDAndMiniObject(&pairs, nullptr, nullptr, nullptr);
    EXPECT_THAT(pairs, testing::UnorderedElementsAre("+", "+r", "r+f", "f+n"));
}

TEST_F(SectionModel, TakesItsFoldersToAnotherProjectButNotItsNamespaces) {
    SMFolder2* folder = root->AddOrUpdateFolder("f");
    SMNamespace2* ns = root->AddOrUpdateNamespace("n", "");
    const ProjectPtr other = NewProject();
    root->SetSMProject(other);
    EXPECT_EQ(folder->GetSMProject(), other.get());
    EXPECT_EQ(ns->GetSMProject(), project.get());
    root->SetSMProject(project);
}

TEST_F(SectionModel, CanBeFilledWithoutAProject) {
    const QvSmartPtr<SMFolder2> folder = new SMFolder2(nullptr, nullptr);
    SMNamespace2* ns = folder->AddOrUpdateNamespace("n", "d");
    EXPECT_EQ(folder->GetNamespaces()[0].get(), ns);
    EXPECT_EQ(folder->GetChildNamespaceByName("n"), nullptr);
}

// ---- document

TEST_F(SectionXml, HasTextsThenTheDateThenProperties) {
    SMFolder2* folder = root->AddOrUpdateFolder("f");
    folder->SetId("i");
    folder->AddDescription("en", "d");
    folder->AddScreenTip("en", "s");
    folder->SetProperty("a", "", "v");
    folder->SetSMLastChangedDate("2001-02-03T04:05:06");
    EXPECT_EQ(WriteElement(*folder),
              R"(<folder><name locale="en">f</name><description locale="en">d</description><screenTip locale="en">s</screenTip>)"
              R"(<lastChanged>2001-02-03T04:05:06</lastChanged><property name="id" type="hidden">i</property>)"
              R"(<property name="version" type="hidden">0</property><property name="a">v</property></folder>)");
}

TEST_F(SectionXml, HasItsChildrenInDisplayOrder) {
    SMFolder2* folder = root->AddOrUpdateFolder("f");
    for (const char* name : {"a", "b"}) folder->AddOrUpdateFolder(name)->SetLastChangedDate(QvDate(false));
    SMNamespace2* ns = folder->AddOrUpdateNamespace("n", "");
    for (SMObjectBase* object : {static_cast<SMObjectBase*>(folder), static_cast<SMObjectBase*>(ns)})
        object->SetLastChangedDate(QvDate(false));
    ns->displayOrder = -1;
    folder->SortDisplayOrder();
    EXPECT_TRUE(SameXml(FolderElement("f", NamespaceElement("n") + FolderElement("a") + FolderElement("b")), WriteElement(*folder)));
}

// ---- builder

TEST_F(SectionBuilder, NumbersFoldersAndNamespacesInTurn) {
    Read(FolderElement("a") + NamespaceElement("b") + FolderElement("c"));
    EXPECT_THAT(Order(*root), ElementsAre("a", "b", "c"));
    EXPECT_THAT(Numbers(*root), ElementsAre(0, 1, 2));
    root->AddOrUpdateFolder("d");
    EXPECT_EQ(Numbers(*root).back(), 3);
    EXPECT_THAT(log.Events(), IsEmpty());
}

TEST_F(SectionBuilder, AddsAFolderAtItsStartAndANamespaceAtItsEnd) {
    const std::string cut = "<folder><name locale='en'>f</name></folder><namespace><name locale='en'>n</name>";
    SMSectionTypeBuilder builder(root);
    EXPECT_ANY_THROW(ParseInside(builder, cut + "<folder>"));
    EXPECT_THAT(Order(*root), ElementsAre("f"));
    EXPECT_EQ(project->FindNamespaceByName("n"), nullptr);
}

TEST_F(SectionBuilder, SortsAFolderAtItsEnd) {
    Read("<folder><name locale='en'>f</name>" + NamespaceElement("n") + FolderElement("a") + FolderElement("b") + "</folder>");
    EXPECT_THAT(Order(*root->GetFolders()[0]), ElementsAre("n", "a", "b")) << "numbers, not the order of coming";
}

TEST_F(SectionBuilder, TakesPropertiesAndTexts) {
    Read("<property name='a' type='t'>v</property><property name='id'>i</property><description locale='en'>d</description>");
    EXPECT_EQ(root->GetProperty("a")->value, "v");
    EXPECT_EQ(root->GetId(), "i");
    EXPECT_EQ(root->GetDescription(), "d");
}

TEST_F(SectionBuilder, LogsAnUnknownTagInItsOwnWordsWhereItHasNone) {
    Read("<zeb/>");
    EXPECT_THAT(log.Events(), ElementsAre(LoggedEvent{4, "", "", "realStartElement", "Unknown tag ''", ""},
                                          LoggedEvent{4, "", "", "realEndElement", "Unknown tag ''", ""}));
}

TEST_F(SectionBuilder, LogsAnUnknownTagInTheWordsOfTheNamespaceOrFolder) {
    Read("<namespace><name locale='en'>n</name><zeb/></namespace><folder><xmlns/></folder>");
    EXPECT_THAT(log.Events(), ElementsAre(LoggedEvent{4, "SMNamespaceBuilder", "smnamespace2", "realStartElement", "Unknown tag ''", ""},
                                          LoggedEvent{4, "SMNamespaceBuilder", "smnamespace2", "realEndElement", "Unknown tag ''", ""},
                                          LoggedEvent{4, "SMFolderBuilder", "smfolder2", "realStartElement", "Unknown tag 'xmlns'", ""},
                                          LoggedEvent{4, "SMFolderBuilder", "smfolder2", "realEndElement", "Unknown tag 'xmlns'", ""}));
}

// ---- rows

TEST_F(SectionRows, TellFoldersAndNamespacesApart) {
    RecordingContext context;
    const auto row = [](const char* type, const char* id, int number) {
        return Row()
            .Text("id", id)
            .Text("name", id)
            .Text("description", "")
            .Text("screenTip", "")
            .Text("object_type", type)
            .Number("display_order", number);
    };
    context.answers = {{}, {row("folder", "f", 7), row("namespace", "n", 3), row("dimension", "d", 1), row("", "e", 2)}};
    EXPECT_TRUE(root->read(context));
    EXPECT_THAT(Order(*root), ElementsAre("n", "f")) << "sorted at the end; other types are passed over";
    EXPECT_EQ(root->GetFolders()[0]->GetId(), "f");
    EXPECT_EQ(project->FindNamespaceByName("n"), root->GetNamespaces()[0].get());
    EXPECT_THAT(context.noted, ElementsAre("f", "n"));
    root->AddOrUpdateFolder("next");
    EXPECT_EQ(root->GetFolders().back()->displayOrder, 0) << "a read hands out no numbers";
}

TEST_F(SectionRows, EndWithTheFirstReadThatFails) {
    RecordingContext context;
    const Row row = Row().Text("id", "f").Text("name", "f").Text("description", "").Text("screenTip", "").Text("object_type", "folder");
    context.answers = {{}, {row}};
    context.FailAt(3);
    EXPECT_FALSE(root->read(context));
    EXPECT_TRUE(root->GetFolders().empty()) << "a folder joins when it has been read";
    EXPECT_EQ(context.Actions().size(), 3u);
}

TEST_F(SectionRows, AskForTheObjectKindWhenTold) {
    RecordingContext context;
    QvSmartPtr<IOArrayParam> rows;
    EXPECT_TRUE(root->readObjectType(context, "filter", rows, false));
    EXPECT_TRUE(root->readObjectType(context, "filter", rows, true));
    EXPECT_THAT(context.Attributes(0), IsEmpty());
    EXPECT_THAT(context.Attributes(1), ElementsAre("object S \"\""));
    EXPECT_EQ(rows->Size(), 0);
    context.FailAt(3);
    EXPECT_FALSE(root->readObjectType(context, "filter", rows, true));
}

TEST_F(SectionRows, StopAtTheFirstChildThatFails) {
    SMFolder2* folder = root->AddOrUpdateFolder("f");
    for (const char* name : {"a", "b", "c"}) folder->AddOrUpdateFolder(name)->SetId(name);
    RecordingContext context;
    context.FailAt(3);
    EXPECT_FALSE(folder->write_next(context));
    EXPECT_THAT(log.Events(),
                ElementsAre(LoggedEvent{1, "smfolder2", "SMFolder2", "write_next", "Failed to write a child of a folder.", "b"}));
    EXPECT_EQ(context.Actions().size(), 3u);
}

TEST_F(SectionRows, KeepPropertiesOfNamespacesOnly) {
    RecordingContext context;
    root->SetProperty("a", "", "v");
    EXPECT_TRUE(root->write_next(context));
    EXPECT_THAT(context.Names(), ElementsAre("AT_WriteRemainingInfo SM_REMAIN_INFO", "EndObject"));
    SMFolder2* folder = root->AddOrUpdateFolder("f");
    folder->SetProperty("a", "", "v");
    RecordingContext other;
    EXPECT_TRUE(folder->write_next(other));
    EXPECT_THAT(other.Names(), IsEmpty());
}

TEST_F(SectionRows, FailWithATypeOfAnotherKind) {
    for (const std::size_t place : {1u, 2u}) {
        RecordingContext context;
        context.answers.resize(place + 1);
        context.answers[place] = {Row().Text("id", "x").Number("object_type", 1).Number("object", 1)};
        EXPECT_FALSE(root->read(context));
        EXPECT_EQ(context.Actions().size(), place + 1);
    }
    const std::string refused = "Error reading object. Message: A number was asked for a text.";
    EXPECT_THAT(log.Events(), ElementsAre(LoggedEvent{1, "smsectiontype2", "SMSectionType2", "read", refused, ""},
                                          LoggedEvent{1, "smsectiontype2", "SMSectionType2", "read", refused, ""}));
}

TEST_F(SectionRows, FailWithAContextThatRefusesItsParameters) {
    struct : IOHelper {
        bool DoReadAction(const I18NString& action, const IOHashParam& params, IOArrayParam&) override {
            if (action == IOAction::AT_ReadSMObject) params.GetByName("nowhere");
            return true;
        }
    } context;
    EXPECT_FALSE(root->read(context));
    EXPECT_THAT(log.Messages(), ElementsAre("1 Error reading object. Message: There is no parameter 'nowhere'."));
}
