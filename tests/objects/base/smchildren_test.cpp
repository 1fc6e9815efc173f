#include "objects/base/smchildren_002_000.h"

#include <gmock/gmock.h>

#include <random>

#include "objects/base/getfromvector_002_000.h"
#include "tests/support/documents.h"
#include "tests/support/plainobjects.h"

using namespace schema_002_000;
using namespace smtest;

namespace {

class Children : public testing::Test {
  protected:
    PlainNamed* Add(const char* name, SMProject2* in = nullptr) {
        auto* child = new PlainNamed(in ? in : project.get(), owner);
        children.Append(child);
        if (*name) child->AddName("en", name);
        return child;
    }
    PlainNamed* Find(const char* name) const { return children.Find(name, *owner); }
    /** Both ways to look up must agree. */
    void ExpectAsASearch(const char* name) const { EXPECT_EQ(Find(name), GetFromVectorByName(children.Items(), name)) << name; }

    ProjectPtr project = NewProject();
    QvSmartPtr<PlainNamed> owner = new PlainNamed(project);
    SMChildren<PlainNamed> children;
};

using ChildrenModel = Children;

}  // namespace

TEST_F(ChildrenModel, AreOnePointerWide) {
    EXPECT_EQ(sizeof(children), sizeof(void*));
    EXPECT_TRUE(children.empty());
    EXPECT_EQ(Find("a"), nullptr);
    EXPECT_EQ(children.FindById("a"), nullptr);
    EXPECT_TRUE(children.Items().empty());
}

TEST_F(ChildrenModel, AnswerWithTheFirstOfEqualNames) {
    PlainNamed* first = Add("a");
    Add("a");
    EXPECT_EQ(Find("a"), first);
    EXPECT_EQ(Find("A"), nullptr) << "case matters";
}

TEST_F(ChildrenModel, FindAChildThatIsNamedLater) {
    PlainNamed* unnamed = Add("");
    Add("b");
    EXPECT_EQ(Find("a"), nullptr);
    unnamed->AddName("en", "a");
    EXPECT_EQ(Find("a"), unnamed);
    PlainNamed* later = Add("c");
    EXPECT_EQ(Find("c"), later);
}

TEST_F(ChildrenModel, PreferAnEarlierPlaceThatIsNamedLater) {
    PlainNamed* early = Add("");
    PlainNamed* late = Add("a");
    EXPECT_EQ(Find("a"), late);
    early->AddName("en", "a");
    EXPECT_EQ(Find("a"), early);
}

TEST_F(ChildrenModel, FollowARename) {
    PlainNamed* child = Add("a");
    PlainNamed* twin = Add("a");
    EXPECT_EQ(Find("a"), child);
    child->ChangeDefaultName("b");
    EXPECT_EQ(Find("a"), twin);
    EXPECT_EQ(Find("b"), child);
}

TEST_F(ChildrenModel, FollowTheNameOfARow) {
    PlainNamed* child = Add("a");
    EXPECT_EQ(Find("a"), child);
    child->constructFromIOParameter(*[] {
        const QvSmartPtr<IOHashParam> row = new IOHashParam;
        row->insertOrReplace("name", new IOQvStringParam("b"));
        row->insertOrReplace("id", new IOQvStringParam("i"));
        return row;
    }());
    EXPECT_EQ(Find("b"), child);
    EXPECT_EQ(Find("a"), nullptr);
}

TEST_F(ChildrenModel, FindTheFirstWithoutAName) {
    Add("a");
    PlainNamed* unnamed = Add("");
    Add("");
    EXPECT_EQ(Find(""), unnamed);
}

TEST_F(ChildrenModel, ForgetWhatIsTaken) {
    PlainNamed* first = Add("a");
    PlainNamed* second = Add("b");
    EXPECT_EQ(Find("a"), first);
    const QvSmartPtr<PlainNamed> taken = children.Take(first);
    EXPECT_EQ(taken.get(), first);
    EXPECT_EQ(Find("a"), nullptr);
    EXPECT_EQ(Find("b"), second);
    EXPECT_EQ(children.Take(first).get(), nullptr);
    EXPECT_FALSE(children.Contains(first));
    EXPECT_TRUE(children.Contains(second));
}

TEST_F(ChildrenModel, AnswerWithoutAProjectToo) {
    const QvSmartPtr<PlainNamed> alone = new PlainNamed(nullptr);
    PlainNamed* child = Add("a");
    EXPECT_EQ(children.Find("a", *alone), child);
    EXPECT_EQ(children.Find("b", *alone), nullptr);
}

TEST_F(ChildrenModel, LeaveBothListsByOneId) {
    SMDisplayList list;
    for (const char* id : {"1", "2", "1"}) {
        PlainNamed* child = Add(id);
        child->SetId(id);
        list.Append(child);
    }
    const PlainObject other(nullptr);
    SMDeleteById(children, list, "1");
    ASSERT_EQ(children.size(), 2u);
    EXPECT_EQ(children[0]->GetId(), "2");
    EXPECT_EQ(list.Items().size(), 2u);
    EXPECT_EQ(list.Items()[0], children[0].get());
    SMDeleteById(children, list, "none");
    EXPECT_EQ(children.size(), 2u);
}

TEST_F(ChildrenModel, LoseTheOwnEntryOfTheTypedObjectOfAnId) {
    SMDisplayList list;
    const QvSmartPtr<PlainObject> foreign = new PlainObject(project);
    PlainNamed* child = Add("a");
    list.Append(foreign);
    list.Append(child);
    SMDeleteById(children, list, "");
    EXPECT_TRUE(children.empty());
    EXPECT_THAT(list.Items(), testing::ElementsAre(foreign.get())) << "not the first entry of the empty id";
    SMDeleteById(children, list, "");
    EXPECT_TRUE(list.Items().empty()) << "where no typed object has the id, the list's entry goes";
}

TEST_F(ChildrenModel, AnswerAsASearchWhateverHappens) {
    std::mt19937 random(7);
    const char* const names[] = {"", "a", "b", "c", "d"};
    const auto below = [&](std::size_t end) { return std::uniform_int_distribution<std::size_t>(0, end - 1)(random); };
    for (int step = 0; step < 3000; ++step) {
        const std::size_t kind = below(8);
        if (kind < 2 || children.empty())
            Add(names[below(5)]);
        else if (kind == 2 && children.size() > 6)
            children.Take(children[below(children.size())]);
        else if (kind < 5)
            children[below(children.size())]->AddName("en", names[below(5)]);
        else
            for (const char* name : names) ExpectAsASearch(name);
    }
}
