#include "objects/face/smmodelfiles_002_000.h"

#include <sys/resource.h>
#include <sys/stat.h>

#include <algorithm>
#include <atomic>
#include <csignal>
#include <filesystem>
#include <set>
#include <sstream>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "objects/containers/smfolder2_002_000.h"
#include "objects/containers/smnamespace2_002_000.h"
#include "objects/face/smmodelwalk_002_000.h"
#include "objects/publication/smpackage2_002_000.h"
#include "tests/support/facemodel.h"
#include "tests/support/toolrun.h"

namespace {

using namespace schema_002_000;
using testing::Contains;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::SizeIs;
namespace fs = std::filesystem;

const std::string MODELS = SMODEL_SOURCE_DIR "/examples/models/";

std::string PackageElement(const std::string& name, const std::string& attributes = "") {
    return "<package" + attributes + "><name locale=\"en\">" + name + "</name><adminAccess></adminAccess></package>";
}

std::string FolderElement(const std::string& name, const std::string& content = "") {
    return "<folder><name locale=\"en\">" + name + "</name>" + content + "</folder>";
}

std::string Placeholder(const std::string& file, const std::string& content = "", const std::string& path = "") {
    return "<smnamespacefile id=\"i\" name=\"n\" filename=\"" + file + "\" filepath=\"" + path + "\">" + content + "</smnamespacefile>";
}

/** The notes of what the files do not keep. */
std::vector<std::string> LossesOf(const SMResult& result) {
    std::vector<std::string> codes;
    for (const SMDiagnostic& found : result.diagnostics)
        if (found.severity == SMSeverity::note) codes.push_back(found.code);
    return codes;
}

std::string Told(const SMResult& result) {
    std::string text;
    for (const SMDiagnostic& found : result.diagnostics) text += FormatDiagnostic(found) + "\n";
    return text;
}

/** The lines of the document laid out for people, in an order of their own: what two documents have in common but for places. */
std::string Contents(const SMProject2& project) {
    I18NString text;
    QvStringWriter writer(text);
    SMSaveOptions options;
    options.indent = true;
    SMWriteModel(project, writer, options);
    std::istringstream stream{std::string(text.utf8())};
    std::vector<std::string> lines;
    for (std::string line; std::getline(stream, line);) {
        if (const std::size_t at = line.find("<package isRoleBased=\"true\">"); at != std::string::npos)
            line.replace(at, std::string::npos, "<package>");
        lines.push_back(line);
    }
    std::sort(lines.begin(), lines.end());
    std::string sorted;
    for (const std::string& line : lines) sorted += line + "\n";
    return sorted;
}

class SMModelFiles : public testing::Test {
  protected:
    /** Splits a document, joins the files, and gives the canonical text. */
    std::string RoundTrip(const std::string& document, SMSplitResult& split) {
        const SMLoadResult loaded = SMLoadModelBytes(document);
        EXPECT_TRUE(loaded.IsDone()) << Told(loaded);
        split = SMSplitModel(*loaded.project, m_dir.Path("parts"));
        EXPECT_TRUE(split.IsDone()) << Told(split);
        return Joined();
    }
    std::string Joined() {
        const SMSaveResult joined = SMJoinModel(m_dir.Path("parts/main.xml"), m_dir.Path("joined.xml"));
        EXPECT_TRUE(joined.IsDone()) << Told(joined);
        return m_dir.Read("joined.xml");
    }
    SMSaveResult Join(const std::string& main = "main.xml") const { return SMJoinModel(m_dir.Path(main), m_dir.Path("joined.xml")); }
    std::vector<std::string> Parts() const {
        std::vector<std::string> names;
        for (const auto& entry : fs::directory_iterator(m_dir.Path("parts"))) names.push_back(entry.path().filename().string());
        std::sort(names.begin(), names.end());
        return names;
    }

    TestDirectory m_dir;
};

class SMModelFilesOf : public SMModelFiles, public testing::WithParamInterface<const char*> {};

TEST_P(SMModelFilesOf, JoinToWhatWasSplit) {
    // what a canonical document does not bring back is lost by `fmt` already
    SMLoadResult loaded = SMLoadModelBytes(CanonicalText(*SMLoadModel(MODELS + GetParam()).project));
    const std::string before = CanonicalText(*loaded.project);
    const SMSplitResult split = SMSplitModel(*loaded.project, m_dir.Path("parts"));
    ASSERT_TRUE(split.IsDone()) << Told(split);
    EXPECT_EQ(CanonicalText(*loaded.project), before) << "the project itself stays";
    const std::string after = Joined();
    const SMLoadResult again = SMLoadModelBytes(after);
    EXPECT_EQ(Contents(*again.project), Contents(*loaded.project));
    EXPECT_EQ(LossesOf(split).empty(), after == before) << Told(split);
    // what the files hold they bring back
    SMSplitModel(*again.project, m_dir.Path("parts"));
    EXPECT_TRUE(Joined() == after);
}

INSTANTIATE_TEST_SUITE_P(Document, SMModelFilesOf,
                         testing::Values("minimal.xml", "everything.xml", "reader_forms.xml", "foodmart.xml", "tpcds.xml",
                                         "multifile/main.xml", "multifile/single.xml"),
                         [](const auto& instance) {
                             std::string name = instance.param;
                             std::replace_if(
                                 name.begin(), name.end(), [](char c) { return !std::isalnum(static_cast<unsigned char>(c)); }, '_');
                             return name;
                         });

/** The numbers of all objects, each behind what it stands in. */
std::multiset<std::string> NumbersOf(const SMProject2& project) {
    std::multiset<std::string> numbers;
    std::vector<std::string> around;
    SMForEachObject(project, [&](const SMObjectBase& object, int depth) {
        around.resize(static_cast<std::size_t>(depth));
        around.push_back((around.empty() ? "" : around.back() + " / ") + SMKindOf(object) + " " + SMNameOf(object));
        numbers.insert(around.back() + " " + std::to_string(object.displayOrder));
    });
    return numbers;
}

TEST_P(SMModelFilesOf, NumberSiblingsAsTheirOneDocumentDoes) {
    const SMLoadResult whole = SMLoadModel(MODELS + GetParam());
    ASSERT_TRUE(SMSplitModel(*whole.project, m_dir.Path("parts")).IsDone());
    const SMLoadResult parts = SMLoadModel(m_dir.Path("parts/main.xml"));
    const SMLoadResult one = SMLoadModelBytes(CanonicalText(*parts.project));
    EXPECT_EQ(NumbersOf(*parts.project), NumbersOf(*one.project));
    for (const SMLoadResult* loaded : {&parts, &one}) {
        SMNamespace2* const root = loaded->project->GetRootNamespace();
        const auto last = static_cast<int>(root->GetDisplayOrderItems().size());
        EXPECT_EQ(root->AddOrUpdateFolder("behind all others")->displayOrder, last);
    }
}

TEST_F(SMModelFiles, NumberTheNamespaceOfAnEmptyPlaceholderToo) {
    const SMLoadResult loaded = SMLoadModelBytes(
        ModelDocument(NamespaceElement("R", FolderElement("A") + FolderElement("B") + "<smnamespacefile id=\"i\" name=\"N\"/>")));
    EXPECT_EQ(NumbersOf(*loaded.project), NumbersOf(*SMLoadModelBytes(CanonicalText(*loaded.project)).project));
}

TEST_F(SMModelFiles, KeepAPlaceholderTreeInTheMainDocument) {
    SMSplitResult split;
    RoundTrip(ModelDocument(NamespaceElement("Root", NamespaceElement("Child", NamespaceElement("Grandchild")))), split);
    EXPECT_THAT(split.changed, ElementsAre("Child.qvf", "Grandchild.qvf", "Root.qvf", "main.xml"));
    EXPECT_THAT(m_dir.Read("parts/main.xml"),
                HasSubstr("<smnamespacefile id=\"\" name=\"Root\" filename=\"Root.qvf\" filepath=\"\">"
                          "<smnamespacefile id=\"\" name=\"Child\" filename=\"Child.qvf\" filepath=\"\">"
                          "<smnamespacefile id=\"\" name=\"Grandchild\" filename=\"Grandchild.qvf\" filepath=\"\"></smnamespacefile>"));
    EXPECT_THAT(m_dir.Read("parts/Root.qvf"), testing::Not(HasSubstr("smnamespacefile")));
}

/** Each order of a folder, a namespace and another one, in a namespace and in a folder. */
TEST_F(SMModelFiles, TellOfEachPlaceThatIsLostAndOfNoOther) {
    std::vector<std::string> items = {FolderElement("A"), FolderElement("B"), NamespaceElement("N"), NamespaceElement("O")};
    std::sort(items.begin(), items.end());
    int lost = 0;
    do {
        std::string content;
        for (const std::string& item : items) content += item;
        for (const std::string& root : {NamespaceElement("R", content), NamespaceElement("R", FolderElement("F", content)),
                                        NamespaceElement("R", FolderElement("E") + NamespaceElement("S", FolderElement("F", content)))}) {
            const std::string before = CanonicalText(*SMLoadModelBytes(ModelDocument(root)).project);
            SMSplitResult split;
            const bool same = RoundTrip(ModelDocument(root), split) == before;
            ASSERT_EQ(LossesOf(split).empty(), same) << root << Told(split);
            lost += same ? 0 : 1;
        }
    } while (std::next_permutation(items.begin(), items.end()));
    EXPECT_GT(lost, 20);
    EXPECT_LT(lost, 70);
}

TEST_F(SMModelFiles, TellOfANameThatTheRootHasToo) {
    const std::string document = ModelDocument(NamespaceElement("N", NamespaceElement("O", NamespaceElement("N"))));
    const SMLoadResult loaded = SMLoadModelBytes(document);
    ASSERT_THAT(loaded.diagnostics, IsEmpty());
    SMSplitModel(*loaded.project, m_dir.Path("parts"));
    const SMSaveResult joined = Join("parts/main.xml");
    EXPECT_THAT(Told(joined), HasSubstr("A namespace with name 'N' already exists"));
    EXPECT_THAT(LossesOf(SMSplitModel(*loaded.project, m_dir.Path("parts"))), ElementsAre("SM3014"));
}

TEST_F(SMModelFiles, TellOfPackagesThatAreBasedOnRoles) {
    SMSplitResult split;
    RoundTrip(ModelDocument("<packages>" + PackageElement("P", " isRoleBased=\"true\"") + PackageElement("Q") + "</packages>"), split);
    EXPECT_THAT(LossesOf(split), ElementsAre("SM3015"));
    EXPECT_FALSE(split.HasFindings());
    const SMSaveResult joined = Join("parts/main.xml");
    EXPECT_THAT(Told(joined), HasSubstr("P.qva:2:1: note: That a package is based on roles is not read"));
}

TEST_F(SMModelFiles, HoldOnlyWhatWasAskedFor) {
    const SMLoadResult loaded = SMLoadModelBytes(
        ModelDocument(NamespaceElement("N") + "<packages>" + PackageElement("P", " isRoleBased=\"true\"") + "</packages>"));
    SMSplitOptions options;
    options.packages = false;
    options.mainName = "model.xml";
    const SMSplitResult split = SMSplitModel(*loaded.project, m_dir.Path("parts"), options);
    EXPECT_THAT(split.changed, ElementsAre("N.qvf", "model.xml"));
    EXPECT_THAT(split.diagnostics, IsEmpty());
    options.packages = true;
    options.namespaces = false;
    SMSplitModel(*loaded.project, m_dir.Path("other"), options);
    EXPECT_THAT(m_dir.Read("other/model.xml"), HasSubstr("<namespace>"));
    EXPECT_THAT(m_dir.Read("other/model.xml"), HasSubstr("filename=\"P.qva\""));
}

TEST_F(SMModelFiles, KeepTheConnectionsOfAModelThatWasNeverStored) {
    const std::string document = ModelDocument(
        "<dataSources><dataSource><name locale=\"en\">d</name><queryProcessing>databaseOnly</queryProcessing><cmDataSource>c</cmDataSource>"
        "<schema>s</schema></dataSource></dataSources>");
    const SMLoadResult loaded = SMLoadModelBytes(document);
    ASSERT_EQ(loaded.project->GetVersionNo(), 0);
    SMSplitModel(*loaded.project, m_dir.Path("parts"));
    EXPECT_EQ(loaded.project->GetVersionNo(), 0);
    EXPECT_THAT(m_dir.Read("parts/main.xml"), HasSubstr("<schema>s</schema>"));
    EXPECT_EQ(Joined(), CanonicalText(*loaded.project));
}

TEST_F(SMModelFiles, TakeNamesThatNoFileSystemTakes) {
    std::string content;
    for (const std::string& name : {std::string("CON"), std::string("a/b"), std::string(".."), std::string("end "), std::string("end."),
                                    std::string(300, 'x'), std::string(301, 'x'), std::string("sales"), std::string("Sales"),
                                    std::string("Caf\xC3\xA9"), std::string("Cafe\xCC\x81"), std::string("main.xml")})
        content += NamespaceElement(name);
    const std::string document = ModelDocument(NamespaceElement("Root", content));
    SMSplitResult split;
    EXPECT_EQ(RoundTrip(document, split), CanonicalText(*SMLoadModelBytes(document).project));
    EXPECT_THAT(split.changed, SizeIs(14));
    EXPECT_THAT(split.diagnostics, IsEmpty());
}

TEST_F(SMModelFiles, HoldPackagesOfOneNameApart) {
    const std::string document =
        ModelDocument("<packages>" + PackageElement("P") + PackageElement("P") + PackageElement("P") + "</packages>");
    SMSplitResult split;
    EXPECT_EQ(RoundTrip(document, split), CanonicalText(*SMLoadModelBytes(document).project));
    EXPECT_THAT(split.changed, ElementsAre("P.qva", "P~~2.qva", "P~~3.qva", "main.xml"));
}

TEST_F(SMModelFiles, AreNotTouchedWhenTheyHoldTheSame) {
    SMLoadResult loaded = SMLoadModelBytes(ModelDocument(NamespaceElement("Root", NamespaceElement("A") + NamespaceElement("B"))));
    SMSplitModel(*loaded.project, m_dir.Path("parts"));
    struct stat before {
    }, after{};
    ASSERT_EQ(0, ::stat(m_dir.Path("parts/A.qvf").c_str(), &before));
    EXPECT_THAT(SMSplitModel(*loaded.project, m_dir.Path("parts")).changed, IsEmpty());
    loaded.project->FindNamespaceByName("B")->SetDescription("new");
    EXPECT_THAT(SMSplitModel(*loaded.project, m_dir.Path("parts")).changed, ElementsAre("B.qvf"));
    ASSERT_EQ(0, ::stat(m_dir.Path("parts/A.qvf").c_str(), &after));
    EXPECT_EQ(before.st_ino, after.st_ino);
    EXPECT_EQ(before.st_mtim.tv_sec, after.st_mtim.tv_sec);
    EXPECT_EQ(before.st_mtim.tv_nsec, after.st_mtim.tv_nsec);
}

TEST_F(SMModelFiles, StayAsTheyWereWhenOneCannotBeWritten) {
    const auto document = [](const std::string& text) {
        return SMLoadModelBytes(
            ModelDocument(NamespaceElement("Root", "<description locale=\"en\">" + text + "</description>" + NamespaceElement("A"))));
    };
    SMSplitModel(*document("old").project, m_dir.Path("parts"));
    const std::string old = m_dir.Read("parts/Root.qvf");
    // a bound on the size of files stands for a full disk
    struct rlimit before {};
    ASSERT_EQ(0, ::getrlimit(RLIMIT_FSIZE, &before));
    const auto handler = std::signal(SIGXFSZ, SIG_IGN);
    const struct rlimit small { 100'000, before.rlim_max };
    const SMLoadResult big = document(std::string(200'000, 'x'));
    ASSERT_EQ(0, ::setrlimit(RLIMIT_FSIZE, &small));
    const SMSplitResult split = SMSplitModel(*big.project, m_dir.Path("parts"));
    ::setrlimit(RLIMIT_FSIZE, &before);
    std::signal(SIGXFSZ, handler);
    EXPECT_EQ(split.status, SMStatus::failed);
    EXPECT_THAT(Told(split), HasSubstr(m_dir.Path("parts/Root.qvf") + ": error: cannot write: File too large"));
    EXPECT_THAT(split.changed, IsEmpty());
    EXPECT_EQ(m_dir.Read("parts/Root.qvf"), old);
    EXPECT_THAT(Parts(), ElementsAre("A.qvf", "Root.qvf", "main.xml"));
}

TEST_F(SMModelFiles, EndCleanlyWhenASplitIsCancelledInsideAFile) {
    std::string content;
    for (int i = 0; i < 3'000; ++i) content += FolderElement("f" + std::to_string(i));
    const SMLoadResult loaded = SMLoadModelBytes(ModelDocument(NamespaceElement("Root", content)));
    std::atomic<bool> cancelled{false};
    SMSplitOptions options;
    options.control.cancelled = &cancelled;
    int calls = 0;
    options.control.progress = [&](const SMProgress& progress) {
        EXPECT_EQ(progress.unit, SMProgress::bytes);
        cancelled = ++calls == 2;
    };
    const SMSplitResult split = SMSplitModel(*loaded.project, m_dir.Path("parts"), options);
    EXPECT_EQ(split.status, SMStatus::cancelled);
    EXPECT_THAT(split.diagnostics, IsEmpty());
    EXPECT_FALSE(fs::exists(m_dir.Path("parts")));
    EXPECT_EQ(loaded.project->GetVersionNo(), 0);
}

TEST_F(SMModelFiles, RefuseANameForTheMainDocumentThatTheyCouldNeed) {
    const SMLoadResult loaded = SMLoadModelBytes(ModelDocument(NamespaceElement("Root")));
    for (const char* name : {"", ".", "..", "../main.xml", "a/b.xml", "Root.qvf", "P.QVA", ".main"}) {
        SMSplitOptions options;
        options.mainName = name;
        const SMSplitResult split = SMSplitModel(*loaded.project, m_dir.Path("parts"), options);
        EXPECT_EQ(split.status, SMStatus::failed) << name;
        EXPECT_THAT(Told(split), HasSubstr("the main document cannot be called '" + std::string(name) + "'"));
    }
    EXPECT_FALSE(fs::exists(m_dir.Path("parts")));
}

TEST_F(SMModelFiles, TellWhereTheyCannotBeWritten) {
    const SMLoadResult loaded = SMLoadModelBytes(ModelDocument(NamespaceElement("Root")));
    const std::string file = m_dir.Write("file", "x");
    EXPECT_THAT(Told(SMSplitModel(*loaded.project, file)), HasSubstr(file + ": error: cannot write: Not a directory"));
    EXPECT_THAT(Told(SMSplitModel(*loaded.project, m_dir.Path("a/b"))),
                HasSubstr(m_dir.Path("a/b") + ": error: cannot write: No such file"));
}

// ---- reading

TEST_F(SMModelFiles, AreAllNeededForAJoin) {
    m_dir.Write("main.xml", ModelDocument("\n" + Placeholder("Root.qvf", "\n" + Placeholder("absent.qvf"))));
    m_dir.Write("Root.qvf", NamespaceElement("Root"));
    const SMSaveResult joined = Join();
    EXPECT_EQ(joined.status, SMStatus::failed);
    EXPECT_THAT(Told(joined), HasSubstr(m_dir.Path("main.xml") + ":4:"));
    EXPECT_THAT(Told(joined),
                HasSubstr("error[SM2021] Error reading SM model from XML: " + m_dir.Path("absent.qvf") + ": cannot open: No such file"));
    EXPECT_THAT(Told(joined),
                HasSubstr("error: the model is not complete, so nothing was written: 1 file of it could not be read; mend what"));
    EXPECT_FALSE(fs::exists(m_dir.Path("joined.xml")));
}

TEST_F(SMModelFiles, AreAllNeededForASplit) {
    const std::string main = m_dir.Write("main.xml", ModelDocument(Placeholder("absent.qvf")));
    const SMLoadResult loaded = SMLoadModel(main);
    ASSERT_TRUE(loaded.IsDone());
    const SMSplitResult split = SMSplitModel(*loaded.project, m_dir.Path("."));
    EXPECT_EQ(split.status, SMStatus::failed);
    EXPECT_THAT(Told(split), HasSubstr("the model is not complete"));
    EXPECT_THAT(m_dir.Files(), ElementsAre("main.xml"));
}

TEST_F(SMModelFiles, AreToldWithThePlaceWhereTheyBreak) {
    m_dir.Write("main.xml", ModelDocument(Placeholder("Root.qvf")));
    m_dir.Write("Root.qvf", "<namespace>\n<name></nome>");
    EXPECT_THAT(Told(Join()), HasSubstr(m_dir.Path("Root.qvf") + ":2:"));
    m_dir.Write("Root.qvf", "");
    EXPECT_THAT(Told(Join()), HasSubstr(m_dir.Path("Root.qvf") + ":1:1: the document is empty"));
}

TEST_F(SMModelFiles, MustHaveTheRootOfTheirObject) {
    m_dir.Write("main.xml", ModelDocument(Placeholder("Root.qvf") + "<packages><packagefile filename=\"P.qva\"></packagefile></packages>"));
    m_dir.Write("Root.qvf", "\n" + FolderElement("Root"));
    m_dir.Write("P.qva", PackageElement("P"));
    EXPECT_THAT(Told(Join()), HasSubstr(m_dir.Path("Root.qvf") + ":2:1: the root element is <folder>, not <namespace>"));
    m_dir.Write("Root.qvf", NamespaceElement("Root"));
    m_dir.Write("P.qva", NamespaceElement("P"));
    EXPECT_THAT(Told(Join()), HasSubstr("P.qva:1:1: the root element is <namespace>, not <package>"));
    m_dir.Write("P.qva", "<x:package xmlns:x=\"u\"><name locale=\"en\">P</name><adminAccess></adminAccess></x:package>");
    EXPECT_TRUE(Join().IsDone()) << "prefixes do not matter";
}

TEST_F(SMModelFiles, ThatStandForTwoObjectsAreReadTwice) {
    m_dir.Write("Root.qvf", NamespaceElement("Root"));
    m_dir.Write("Twin.qvf", NamespaceElement("Twin"));
    m_dir.Write("main.xml", ModelDocument(Placeholder("Root.qvf", Placeholder("Twin.qvf") + Placeholder("Twin.qvf"))));
    const SMSaveResult joined = Join();
    ASSERT_TRUE(joined.IsDone());
    EXPECT_THAT(Told(joined), HasSubstr("error[SM3004] A namespace with name 'Twin' already exists - renaming this namespace to '"));
    EXPECT_TRUE(joined.HasFindings());
}

TEST_F(SMModelFiles, AreNeverReadInsideThemselves) {
    m_dir.Write("Root.qvf", NamespaceElement("Root", Placeholder("Other.qvf")));
    m_dir.Write("Other.qvf", NamespaceElement("Other", Placeholder("sub/../Root.qvf")));
    fs::create_directory(m_dir.Path("sub"));
    m_dir.Write("main.xml", ModelDocument(Placeholder("Root.qvf")));
    const SMSaveResult joined = Join();
    EXPECT_EQ(joined.status, SMStatus::failed);
    EXPECT_THAT(Told(joined), HasSubstr("Other.qvf:1:"));
    EXPECT_THAT(Told(joined), HasSubstr("Root.qvf: the file would be read inside itself; take the placeholder that names it out of it"));
}

TEST_F(SMModelFiles, CannotUnfoldWithoutEnd) {
    // each of 20 names the next one twice
    for (int i = 0; i < 20; ++i) {
        const std::string next = Placeholder("f" + std::to_string(i + 1) + ".qvf");
        m_dir.Write("f" + std::to_string(i) + ".qvf", NamespaceElement("N" + std::to_string(i), next + next));
    }
    m_dir.Write("f20.qvf", NamespaceElement("N20"));
    m_dir.Write("main.xml", ModelDocument(Placeholder("f0.qvf")));
    const SMSaveResult joined = Join();
    EXPECT_EQ(joined.status, SMStatus::failed);
    EXPECT_THAT(Told(joined), HasSubstr("the placeholders of the model name the same files too often"));
}

TEST_F(SMModelFiles, OutsideOfTheDirectoryAreNeverOpened) {
    // who opens it waits for ever, and the test with him
    ASSERT_EQ(0, ::mkfifo(m_dir.Path("secret.qvf").c_str(), 0600));
    fs::create_directories(m_dir.Path("model/sub"));
    fs::create_symlink("../secret.qvf", m_dir.Path("model/link.qvf"));
    fs::create_directory_symlink("..", m_dir.Path("model/up"));
    const std::string secret = m_dir.Path("secret.qvf");
    for (const std::string& placeholder :
         {Placeholder("../secret.qvf"), Placeholder("secret.qvf", "", ".."), Placeholder("link.qvf"), Placeholder("up/secret.qvf"),
          Placeholder("secret.qvf", "", "up"), Placeholder("sub/../../secret.qvf"), Placeholder(secret),
          Placeholder("secret.qvf", "", m_dir.Path("."))}) {
        m_dir.Write("model/main.xml",
                    ModelDocument(placeholder + "<packages><packagefile filename=\"../secret.qvf\"></packagefile></packages>"));
        const SMSaveResult joined = Join("model/main.xml");
        EXPECT_EQ(joined.status, SMStatus::failed) << placeholder;
        EXPECT_THAT(Told(joined), HasSubstr("Error reading SM model from XML: ")) << placeholder;
        EXPECT_THAT(Told(joined), HasSubstr("out of the directory of the model")) << placeholder;
        EXPECT_THAT(Told(joined), HasSubstr("2 files of it could not be read")) << placeholder;
    }
}

TEST_F(SMModelFiles, BelowTheDirectoryAreRead) {
    fs::create_directories(m_dir.Path("sub"));
    m_dir.Write("sub/Root.qvf", NamespaceElement("Root"));
    fs::create_symlink("sub/Root.qvf", m_dir.Path("link.qvf"));
    for (const std::string& placeholder : {Placeholder("Root.qvf", "", "sub"), Placeholder("sub/Root.qvf"), Placeholder("link.qvf")}) {
        m_dir.Write("main.xml", ModelDocument(placeholder));
        EXPECT_TRUE(Join().IsDone()) << placeholder;
        EXPECT_THAT(m_dir.Read("joined.xml"), HasSubstr("Root")) << placeholder;
    }
}

TEST_F(SMModelFiles, OfADocumentInTheWorkingDirectoryAreNotSoughtElsewhere) {
    ASSERT_EQ(0, ::mkfifo(m_dir.Path("secret.qvf").c_str(), 0600));
    fs::create_directory(m_dir.Path("model"));
    m_dir.Write("model/main.xml",
                ModelDocument(Placeholder("Root.qvf", Placeholder(m_dir.Path("secret.qvf")) + Placeholder("../secret.qvf"))));
    m_dir.Write("model/Root.qvf", NamespaceElement("Root"));
    const fs::path before = fs::current_path();
    fs::current_path(m_dir.Path("model"));
    const SMLoadResult loaded = SMLoadModel("main.xml");
    fs::current_path(before);
    ASSERT_TRUE(loaded.IsDone());
    EXPECT_TRUE(loaded.project->FindNamespaceByName("Root"));
    EXPECT_EQ(loaded.project->m_partFiles.UnreadCount(), 2u);
}

TEST_F(SMModelFiles, StandUnderTheLimitsOfTheWholeRead) {
    m_dir.Write("main.xml", ModelDocument(Placeholder("Root.qvf")));
    m_dir.Write("Root.qvf", NamespaceElement("Root", FolderElement("a", FolderElement("b", FolderElement("c")))));
    SMLoadOptions options;
    options.limits.depth = 3;
    const SMSaveResult joined = SMJoinModel(m_dir.Path("main.xml"), m_dir.Path("joined.xml"), options);
    EXPECT_EQ(joined.status, SMStatus::failed);
    EXPECT_THAT(Told(joined), HasSubstr("deeper than 3"));
}

TEST_F(SMModelFiles, AreWatchedWhileTheyAreRead) {
    std::string content;
    for (int i = 0; i < 9'000; ++i) content += FolderElement("f" + std::to_string(i));
    m_dir.Write("Root.qvf", NamespaceElement("Root", content));
    m_dir.Write("main.xml", ModelDocument(Placeholder("Root.qvf")));
    std::atomic<bool> cancelled{false};
    std::size_t calls = 0;
    SMLoadOptions options;
    options.control.cancelled = &cancelled;
    options.control.progress = [&](const SMProgress&) { cancelled = ++calls == 2; };
    const SMLoadResult loaded = SMLoadModel(m_dir.Path("main.xml"), options);
    EXPECT_EQ(loaded.status, SMStatus::cancelled);
    EXPECT_THAT(loaded.diagnostics, IsEmpty());
    EXPECT_EQ(calls, 2u);
    options.control.cancelled = nullptr;
    calls = 0;
    options.control.progress = [&](const SMProgress&) {
        if (++calls == 2) throw std::logic_error("no wish to look");
    };
    EXPECT_EQ(SMLoadModel(m_dir.Path("main.xml"), options).diagnostics.back().message, "no wish to look");
}

TEST_F(SMModelFiles, LeaveTheOldDocumentWhenAJoinFails) {
    m_dir.Write("joined.xml", "old");
    m_dir.Write("main.xml", ModelDocument(Placeholder("absent.qvf")));
    EXPECT_FALSE(Join().IsDone());
    EXPECT_FALSE(Join("nowhere.xml").IsDone());
    EXPECT_EQ(m_dir.Read("joined.xml"), "old");
}

}  // namespace
