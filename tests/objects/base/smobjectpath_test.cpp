// Ids and paths of objects.
#include <gmock/gmock.h>

#include "core/qvutils/diag/tklerrors.h"
#include "tests/support/capturedlog.h"
#include "tests/support/documents.h"
#include "tests/support/plainobjects.h"

using namespace schema_002_000;
using namespace smtest;
using testing::ElementsAre;

namespace {

std::string Id(bool escape, const char* a, const char* b, const char* c, const char* d, const char* e) {
    return Str(SMObjectBase::BuildSMObjectID(escape, a, b, c, d, e));
}

std::vector<std::string> Parts(const char* id) {
    I18NString a("x"), b("y"), c("z");
    SMObjectBase::DeconstructSMObjectID(id, a, b, c);
    return {Str(a), Str(b), Str(c)};
}

QvSmartPtr<PlainNamed> Named(SMProject2* project, SMObjectBase* parent, const char* name) {
    const QvSmartPtr<PlainNamed> object = new PlainNamed(project, parent);
    object->AddName("en", name);
    return object;
}

const SMEnum_xmltag::Enum NONE = SMEnum_xmltag::Enum(-1);

}  // namespace

TEST(ObjectId, EndsAtItsFirstEmptyPart) {
    EXPECT_EQ(Id(false, "", "dataSources", "x", "", ""), "[].[dataSources].[x]");
    EXPECT_EQ(Id(false, "a", "", "c", "", ""), "[a]");
    EXPECT_EQ(Id(false, "", "", "", "", ""), "[]");
    EXPECT_EQ(Id(false, "a", "b", "c", "d", "e"), "[a].[b].[c].[d].[e]");
}

TEST(ObjectId, EscapesItsPartsWhenAsked) {
    EXPECT_EQ(Id(true, "a]b", "c.d", "<&>", "\"'", ""), "[a&#93;b].[c&#46;d].[&lt;&amp;&gt;].[&quot;&apos;]");
    EXPECT_EQ(Id(false, "a]b", "c.d", "", "", ""), "[a]b].[c.d]");
    I18NString id("[x]");
    SMObjectBase::AppendToSMObjectID(true, id, "[");
    EXPECT_EQ(id, "[x].[&#91;]");
}

TEST(ObjectId, IsCutIntoItsFirstThreeParts) {
    EXPECT_THAT(Parts("[1].[2].[3].[4]"), ElementsAre("1", "2", "3"));
    EXPECT_THAT(Parts("[1]"), ElementsAre("1", "y", "z"));
    EXPECT_THAT(Parts("[].[securityViews].[v]"), ElementsAre("", "securityViews", "v"));
    EXPECT_THAT(Parts("none"), ElementsAre("x", "y", "z"));
    EXPECT_THAT(Parts("[a&#93;]"), ElementsAre("a&#93;", "y", "z"));
}

TEST(ObjectId, BecomesAReferenceWithItsTags) {
    const ProjectPtr project = NewProject("a.b");
    EXPECT_EQ(project->GetRootNamespace()->GetRefObjEscSMID(), "<refobj>[a&#46;b]</refobj>");
    EXPECT_EQ(PlainObject(nullptr).GetRefObjEscSMID(), "<refobj></refobj>");
}

TEST(RemainingInfoId, IsCutToFiftyCharacters) {
    I18NString id;
    SMObjectBase::GetRemainingInfoId(std::string(48, 'x').c_str(), "abc", id);
    EXPECT_EQ(Str(id), std::string(48, 'x') + "/a");
    SMObjectBase::GetRemainingInfoId(std::string(46, 'x').c_str(), "abc", id);
    EXPECT_EQ(id.length(), 50);
    EXPECT_EQ(Str(id), std::string(46, 'x') + "/abc");
    SMObjectBase::GetRemainingInfoId(std::string(47, 'x').c_str(), "abc", id);
    EXPECT_EQ(Str(id), std::string(47, 'x') + "/ab");
}

TEST(RemainingInfoId, CountsCharactersNotBytes) {
    std::string owner;
    for (int i = 0; i < 48; ++i) owner += "\xC3\xA9";
    I18NString id;
    SMObjectBase::GetRemainingInfoId(owner.c_str(), "abc", id);
    EXPECT_EQ(Str(id), owner + "/a");
}

TEST(ObjectPath, StartsAtTheInnermostNamespace) {
    const ProjectPtr project = NewProject("root");
    SMNamespace2* top = project->GetRootNamespace()->AddOrUpdateNamespace("top", "");
    SMNamespace2* inner = top->AddOrUpdateNamespace("inner", "");
    const auto subject = Named(project, inner, "subject");
    const auto item = Named(project, subject, "item");
    I18NString path;
    EXPECT_EQ(item->GetSMPath(path), "top");
    EXPECT_EQ(path, "[inner].[subject].[item]");
    EXPECT_EQ(Named(project, top, "s")->GetSMPath(path), "top");
    EXPECT_EQ(path, "[top].[s]");
}

TEST(ObjectPath, HasNoTopNamespaceInTheRoot) {
    const ProjectPtr project = NewProject("root");
    I18NString path;
    EXPECT_EQ(Named(project, project->GetRootNamespace(), "s")->GetSMPath(path), "");
    EXPECT_EQ(path, "[root].[s]");
}

TEST(ObjectPath, ShowsNoFolders) {
    const ProjectPtr project = NewProject("root");
    SMFolder2* folder = project->GetRootNamespace()->AddOrUpdateFolder("folder")->AddOrUpdateFolder("deeper");
    SMNamespace2* inside = folder->AddOrUpdateNamespace("inside", "");
    I18NString path;
    EXPECT_EQ(Named(project, folder, "s")->GetSMPath(path), "");
    EXPECT_EQ(path, "[root].[s]");
    EXPECT_EQ(Named(project, inside, "s")->GetSMPath(path), "inside");
}

TEST(ObjectPath, IsEmptyForAnObjectWithoutAName) {
    PlainObject object(nullptr);
    I18NString path("before");
    EXPECT_EQ(object.GetSMPath(path), "");
    EXPECT_EQ(path, "");
}

TEST(ObjectPath, AssertsWhenTheAncestorsRunOut) {
    const ProjectPtr project = NewProject("root");
    I18NString path;
    try {
        project->GetRootNamespace()->GetSMPath(path);
        FAIL() << "no error";
    } catch (const TklAssertError& error) {
        EXPECT_EQ(error.text(), "TKL_ASSERT(false);");
        EXPECT_EQ(error.code(), 0);
        EXPECT_THAT(error.what(), testing::HasSubstr("smobjectbase_002_000"));
        EXPECT_THAT(error.what(), testing::HasSubstr("TKL_THROW"));
    }
    EXPECT_THROW(Named(project, nullptr, "alone")->GetSMPath(path), TklAssertError);
}

TEST(ObjectPath, NamesAnObjectForMessages) {
    const ProjectPtr project = NewProject("root");
    I18NString text;
    project->GetRootNamespace()->getPath(text);
    EXPECT_EQ(text, "[root]");
    PlainObject object(nullptr);
    object.SetId("7");
    object.getPath(text);
    EXPECT_EQ(text, "(filter).().(7)");
    const auto named = Named(project, nullptr, "n");
    named->getPath(text);
    EXPECT_EQ(text, "(filter).(n).()");
}

TEST(ContainingObject, IsTheNearestOfEitherType) {
    const ProjectPtr project = NewProject("root");
    SMNamespace2* inner = project->GetRootNamespace()->AddOrUpdateNamespace("inner", "");
    SMFolder2* folder = inner->AddOrUpdateFolder("folder");
    const PlainObject object(project, folder);
    const CapturedLog log;
    EXPECT_EQ(object.GetContainingObjectOfType(SMEnum_xmltag::Enum::namespace_, NONE), inner);
    EXPECT_EQ(object.GetContainingObjectOfType(SMEnum_xmltag::Enum::namespace_, SMEnum_xmltag::Enum::folder), folder);
    EXPECT_EQ(object.GetContainingObjectOfType(SMEnum_xmltag::Enum::project, NONE), project.get());
    EXPECT_EQ(object.GetContainingNamespaceName(), "inner");
    EXPECT_THAT(log.Events(), testing::IsEmpty());
}

TEST(ContainingObject, IsLoggedWhenThereIsNone) {
    const PlainObject object(nullptr);
    const CapturedLog log;
    EXPECT_EQ(object.GetContainingObjectOfType(SMEnum_xmltag::Enum::filter, NONE), nullptr);
    EXPECT_EQ(object.GetContainingNamespaceName(), "");
    const LoggedEvent event = {4,
                               "smobjects",
                               "SMObjectBase",
                               "GetContainingObjectOfType",
                               "GetContainingObjectOfType() called on an object that is not inside something of  the required type.",
                               ""};
    EXPECT_THAT(log.Events(), ElementsAre(event, event));
}

TEST(ContainingObject, IsLookedForBehindObjectsOfTheHost) {
    const ProjectPtr project = NewProject("root");
    HostObject host(project->GetRootNamespace());
    const PlainObject object(project, &host);
    const CapturedLog log;
    EXPECT_EQ(object.GetContainingNamespaceName(), "root");
    EXPECT_THAT(log.Events(),
                ElementsAre(LoggedEvent{4, "smobjects", "SMObjectBase", "GetContainingObjectOfType",
                                        "GetContainingObjectOfType called on an object whose parent is not an SM object", ""}));
}
