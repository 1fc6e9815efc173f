#include "objects/face/smmodeloutline_002_000.h"

#include <gtest/gtest.h>

#include "core/qvutils/diag/tklerrors.h"
#include "objects/face/smmodelsplice_002_000.h"
#include "objects/face/smmodelwalk_002_000.h"
#include "tests/support/facemodel.h"

namespace {

using namespace schema_002_000;

/** Each element that is kept: its depth among these as dots, its number, and what it is. */
std::string Told(const SMModelOutline& outline) {
    std::string text;
    for (const SMModelOutline::Element& element : outline.Elements()) {
        for (std::size_t around = element.parent; around != SMModelOutline::NONE; around = outline.Elements()[around].parent) text += '.';
        text += std::to_string(element.number) + "-" + std::to_string(element.end) + " " + std::string(element.name.utf8());
        text += element.object ? " " + SMNameOf(*element.object) + "\n" : "\n";
    }
    return text;
}

const std::string DOCUMENT = ModelDocument(NamespaceElement("root", NamespaceElement("a")) + MapElement("m", "v"));

TEST(SMModelOutline, KnowsWhichElementsAreObjects) {
    EXPECT_EQ(Told(SMModelOutline(DOCUMENT)),
              "0-15 project Test\n"
              ".5-9 namespace root\n"
              "..7-9 namespace a\n"
              ".9-15 parameterMaps\n"
              "..10-15 parameterMap m\n"
              "...12-15 parameterMapEntry k\n");
}

TEST(SMModelOutline, FindsObjectsById) {
    const SMModelOutline outline(DOCUMENT);
    const std::size_t entry = outline.Find("e1");
    ASSERT_NE(entry, SMModelOutline::NONE);
    EXPECT_EQ(outline.Elements()[entry].number, 12u);
    EXPECT_EQ(outline.Around(entry), outline.Find("p")) << "the map has no id, and its group is none";
    EXPECT_EQ(outline.Around(outline.Find("p")), SMModelOutline::NONE);
    EXPECT_EQ(outline.Find("e2"), SMModelOutline::NONE);
    EXPECT_EQ(outline.Find(""), SMModelOutline::NONE);
}

TEST(SMModelOutline, RefusesWhatIsNoDocument) {
    EXPECT_THROW(SMModelOutline("<project>"), TklRuntimeError);
}

/** The document behind its declaration, and the origins of its elements: "d3" of the document, "s3" of the source, "+" of neither. */
std::string Told(const SMSplice& splice, std::size_t elements) {
    std::string text = splice.Document().substr(splice.Document().find('\n') + 1);
    for (std::size_t number = 0; number < elements; ++number) {
        const SMSplice::Origin origin = splice.OriginOf(number);
        text += origin.number == SMSplicePlan::NONE ? " +" : (origin.isFromSource ? " s" : " d") + std::to_string(origin.number);
    }
    return text;
}

const char* const WHOLE = "<r><a>1</a><b><c/></b><d/></r>";
const char* const SOURCE = "<r><x/><y k=\"&lt;\"><z>t &amp; u</z></y></r>";

TEST(SMSplice, PutsAnElementBeforeAnother) {
    SMSplicePlan plan;
    plan.element = 2;
    plan.before = 2;
    EXPECT_EQ(Told(SMSplice(WHOLE, SOURCE, plan), 7),
              "<r><a>1</a><y k=\"&lt;\"><z>t &amp; u</z></y><b><c></c></b><d></d></r> d0 d1 s2 s3 d2 d3 d4");
}

TEST(SMSplice, PutsAnElementBehindAnotherWithAllInside) {
    SMSplicePlan plan;
    plan.element = 1;
    plan.behind = 2;
    EXPECT_EQ(Told(SMSplice(WHOLE, SOURCE, plan), 6), "<r><a>1</a><b><c></c></b><x></x><d></d></r> d0 d1 d2 d3 s1 d4");
}

TEST(SMSplice, PutsAnElementInThePlaceOfOneThatGoes) {
    SMSplicePlan plan;
    plan.element = 1;
    plan.before = 2;
    plan.without = {1, 2};
    EXPECT_EQ(Told(SMSplice(WHOLE, SOURCE, plan), 3), "<r><x></x><d></d></r> d0 s1 d4");
}

TEST(SMSplice, MakesTheElementsAroundThatAreMissing) {
    SMSplicePlan plan;
    plan.element = 1;
    plan.into = 0;
    plan.wrappers = {"b", "w"};
    EXPECT_EQ(Told(SMSplice(WHOLE, SOURCE, plan), 7), "<r><a>1</a><b><c></c><w><x></x></w></b><d></d></r> d0 d1 d2 d3 + s1 d4");
}

}  // namespace
