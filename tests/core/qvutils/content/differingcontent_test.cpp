#include "core/qvutils/content/differingcontent.h"

#include <functional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include <gtest/gtest.h>

#include "core/qvutils/content/contentdiff.h"
#include "core/qvutils/content/contenttree.h"
#include "core/qvutils/content/printedcontent.h"

#include "tests/support/cputime.h"

namespace {

void Tell(std::string_view document, qv::ContentSink& sink) {
    qv::PrintedContent content(sink);
    content.write(document);
    content.flush();
}

/** Of those that are chosen. */
std::size_t NodesIn(const qv::ContentNode& node) {
    std::size_t count = 0;
    for (const qv::ContentNode& child : node.children) count += (child.isChosen ? 1 : 0) + NodesIn(child);
    return count;
}

/** The two documents in all the steps in which they are compared. */
class Compared {
  public:
    Compared(std::string_view document, std::string_view written) : m_documentText(document), m_writtenText(written) {
        for (const auto& [text, way] : {std::pair{document, qv::SummingSink::Way::add}, {written, qv::SummingSink::Way::take}}) {
            qv::SummingSink sink(m_sums, way);
            Tell(text, sink);
        }
        {
            qv::GivenSink given(m_differing);
            Tell(written, given);
        }
        Tell(document, m_document);
        Tell(written, m_written);
    }

    bool IsCovered() { return m_sums.AreCovered(); }
    std::size_t Chosen() { return NodesIn(m_document.Document()); }
    std::size_t ChosenWritten() { return NodesIn(m_written.Document()); }
    std::string Losses() {
        std::string told;
        const qv::WantedContent wanted = TellLosses(m_document, m_written, told);
        if (wanted.IsNone()) return told;
        qv::ContentTreeSink document(m_isOfDocument), written(m_isOfWritten);
        document.KeepWhole(wanted.document);
        written.KeepWhole(wanted.written);
        Tell(m_documentText, document);
        Tell(m_writtenText, written);
        EXPECT_EQ(told, "");
        EXPECT_TRUE(TellLosses(document, written, told).IsNone());
        return "again: " + told;
    }

  private:
    static qv::WantedContent TellLosses(qv::ContentTreeSink& document, qv::ContentTreeSink& written, std::string& told) {
        const auto any = [](const qv::ContentNode&) { return true; };
        return qv::FindContentLosses(document.Document(), written.Document(), {any, any, nullptr}, [&](const qv::ContentLoss& loss) {
            told += loss.element->name;
            if (loss.attribute) told += "@" + loss.attribute->name + "=" + loss.attribute->value;
            if (loss.text) told += ":" + loss.text->text;
            told += " ";
        });
    }

    const std::string m_documentText, m_writtenText;
    qv::ContentSums m_sums;
    qv::DifferingContent m_differing{m_sums};
    const qv::ContentChoice m_isOfDocument = [this](const qv::EndedElement& element) {
        return m_differing.IsOfDocument(element.digests, element.given, element.holds);
    };
    const qv::ContentChoice m_isOfWritten = [this](const qv::EndedElement& element) {
        return m_differing.IsOfWritten(element.digests, element.holds);
    };
    qv::ContentTreeSink m_document{m_isOfDocument}, m_written{m_isOfWritten};
};

}  // namespace

TEST(DifferingContent, IsNothingInDocumentsThatAreAlike) {
    Compared both("<a x=\"1\" id=\"i\"><b/><c>t</c></a>", "<a id=\"i\" x=\"1\"><c>t</c> <b></b></a>");
    EXPECT_TRUE(both.IsCovered());
    EXPECT_EQ(both.Chosen(), 0u);
}

TEST(DifferingContent, IsNothingWhereASaveHasAdded) {
    Compared both("<a><b>t</b><b>u</b></a>",
                  "<a id=\"\" xmlns=\"u\" xsi:l=\"l\"><b><property name=\"id\" type=\"hidden\"></property>t</b><b version=\"0\">u</b>"
                  "<property name=\"version\">0</property><c></c></a>");
    EXPECT_TRUE(both.IsCovered());
    EXPECT_EQ(both.Chosen(), 0u);
    EXPECT_EQ(both.ChosenWritten(), 0u);
}

TEST(DifferingContent, IsAnIdThatNoSaveAdds) {
    for (const char* const added : {"<a id=\"i\">t</a>", "<a version=\"1\">t</a>", "<a>t<property name=\"id\">i</property></a>",
                                    "<a>t<property name=\"version\">1</property></a>"}) {
        EXPECT_FALSE(Compared("<a>t</a>", added).IsCovered()) << added;
        EXPECT_EQ(Compared("<a>t</a>", added).Losses(), "") << added;
        EXPECT_NE(Compared(added, "<a>t</a>").Losses(), "") << added;
    }
}

TEST(DifferingContent, IsAnObjectWhoseIdIsAnotherOne) {
    Compared both("<a><b><c id=\"1\">t</c><c id=\"2\">u</c></b><d>v</d></a>", "<a><b><c id=\"3\">t</c><c id=\"2\">u</c></b><d>v</d></a>");
    EXPECT_EQ(both.Chosen(), 3u) << "the element and what is around it";
    EXPECT_EQ(both.ChosenWritten(), 3u);
    EXPECT_EQ(both.Losses(), "c@id=1 ");
}

TEST(DifferingContent, IsAnIdThatIsWrittenOnceAndStoodTwice) {
    const std::string id = "<property name=\"id\">1</property>";
    EXPECT_EQ(Compared("<a>" + id + id + "t</a>", "<a>" + id + "t</a>").Losses(), "property ");
    EXPECT_EQ(Compared("<a><b>" + id + "</b><b>" + id + id + "</b></a>", "<a><b>" + id + "</b><b>" + id + "</b></a>").Losses(),
              "property ");
}

TEST(DifferingContent, IsWhatIsWrittenAtAnotherPlaceOnly) {
    EXPECT_EQ(Compared("<a><b><c>0</c>x</b><d>y</d></a>", "<a><b>x</b><d><c>0</c>y</d></a>").Losses(), "c ");
    EXPECT_EQ(Compared("<a><b><c>0</c><c>0</c>x</b><b>y</b></a>", "<a><b><c>0</c>x</b><b><c>0</c>y</b></a>").Losses(), "c ");
    EXPECT_EQ(Compared("<a><b><c><e>0</e></c>x</b><d>y</d></a>", "<a><b>x</b><d><c><e>0</e></c>y</d></a>").Losses(), "c ")
        << "only an object may be anywhere";
}

TEST(DifferingContent, IsWantedWhereAllOfAnElementIsSomewhereElse) {
    EXPECT_EQ(Compared("<a><b><c><e>0</e><e>1</e></c></b><d><c><e>0</e></c></d></a>",
                       "<a><b><c><e>0</e></c></b><d><c><e>0</e><e>1</e></c></d></a>")
                  .Losses(),
              "again: e ");
}

TEST(DifferingContent, IsAnUnsetIdThatIsLostWhereOthersAreAdded) {
    std::string elements, written;
    for (int i = 0; i < 50'000; ++i) {
        const std::string number = std::to_string(i);
        elements += "<b>" + number + "</b>";
        written += "<b id=\"\" version=\"0\">" + number + "</b>";
    }
    const std::string has = "<c version=\"00\" id=\"\">t</c>", lacks = "<c version=\"0\">t</c>";
    EXPECT_TRUE(Compared("<a>" + elements + has + "</a>", "<a>" + written + has + "</a>").IsCovered());
    Compared both("<a>" + elements + has + "</a>", "<a>" + written + lacks + "</a>");
    EXPECT_FALSE(both.IsCovered());
    EXPECT_EQ(both.Losses(), "c@id= ");
}

TEST(DifferingContent, IsAnUnsetIdThatStoodTwiceBesideAnElementAlikeThatHadNone) {
    const std::string id = "<property name=\"id\"></property>";
    Compared both("<a><b>" + id + id + "t</b><b>t</b></a>", "<a><b>" + id + "t</b><b>" + id + "t</b></a>");
    EXPECT_FALSE(both.IsCovered());
    EXPECT_EQ(both.Losses(), "property ");
}

TEST(ContentSums, TellNothingOfMoreThanTheyKeep) {
    using Kind = qv::ContentSums::Kind;
    qv::ContentSums sums;
    for (std::uint64_t i = 0; i <= qv::ContentSums::MOST; ++i) sums.Add(Kind::given, i << 20);
    for (std::uint64_t i = 0; i <= qv::ContentSums::MOST; ++i) sums.Take(Kind::given, i << 20);
    sums.Settle();
    EXPECT_TRUE(sums.AreCovered());
    sums.Take(Kind::given, 1);
    sums.Settle();
    EXPECT_FALSE(sums.AreCovered()) << "what was added is not told from what is missing";
}

TEST(DifferingContent, IsAnEmptyElementThatIsLost) {
    EXPECT_EQ(Compared("<a><b><odd/>t</b></a>", "<a><b>t</b></a>").Losses(), "odd ");
}

TEST(DifferingContent, IsAnObjectThatIsLostAmongMoreThanTheSumsTellApart) {
    std::string document = "<a>", written = "<a>";
    for (int i = 0; i < 100'000; ++i) {
        const std::string text = "<b>" + std::to_string(i) + "</b>";
        document += text;
        if (i != 77'777) written += "<b id=\"\">" + text.substr(3);
    }
    Compared both(document + "</a>", written + "</a>");
    EXPECT_EQ(both.Losses(), "b ");
    EXPECT_LT(both.Chosen(), 100u);
}

namespace {

constexpr int MANY = 100'000;
/** What looks at each for each of so many takes minutes. */
constexpr double FEW_SECONDS = 20;

}  // namespace

TEST(DifferingContent, IsFoundAmongVeryManyAttributesOfOneElement) {
    std::string document = "<a><b", written = "<a><b";
    for (int i = 0; i < MANY; ++i) {
        document += " a" + std::to_string(i) + "=\"1\"";
        if (i != 77'777) written += " a" + std::to_string(i) + "=\"1\"";
    }
    std::string losses;
    EXPECT_LT(CpuSecondsOf([&] { losses = Compared(document + "/>t</a>", written + "/>t</a>").Losses(); }), FEW_SECONDS);
    EXPECT_EQ(losses, "b@a77777=1 ");
}

TEST(DifferingContent, IsNoneWhereVeryManyElementsHaveBecomeAttributesOrOtherElements) {
    std::string elements, attributes, others;
    for (int i = 0; i < MANY; ++i) {
        const std::string number = std::to_string(i);
        elements += "<e" + number + ">v" + number + "</e" + number + ">";
        attributes += " e" + number + "=\"v" + number + "\"";
        others += "<other>v" + number + "</other>";
    }
    const std::string asElements = "<a><b>" + elements + "</b>t</a>", asAttributes = "<a><b" + attributes + "></b>t</a>";
    EXPECT_LT(CpuSecondsOf([&] {
                  EXPECT_EQ(Compared(asElements, asAttributes).Losses(), "");
                  EXPECT_TRUE(Compared(asAttributes, asElements).Losses().starts_with("b@e0=v0 b@e1=v1 ")) << "nothing reads them as such";
                  EXPECT_EQ(Compared(asElements, "<a><b>" + others + "</b>t</a>").Losses(), "");
                  EXPECT_EQ(Compared("<a><b>" + elements + "<e>v1</e></b>t</a>", "<a><b>" + others + "</b>t</a>").Losses(), "e1 ");
              }),
              4 * FEW_SECONDS);
}

/** Of a whole number the value counts, of a day its midnight, of all else the text. */
TEST(DifferingContent, IsNoneInTheSpellingOfNumbersAndDays) {
    const auto losses = [](const std::string& text, const std::string& written) {
        Compared both("<a><b x=\"" + text + "\"/><c>" + text + "</c></a>", "<a><b x=\"" + written + "\"/><c>" + written + "</c></a>");
        const std::string told = both.Losses();
        EXPECT_EQ(both.IsCovered(), told.empty());
        return told;
    };
    for (const auto& [text, written] : std::vector<std::pair<std::string, std::string>>{
             {"08", "8"}, {"+8", "8"}, {"00", "0"}, {"-0", "0"}, {"-08", "-8"}, {"2026-11-21", "2026-11-21T00:00:00"}})
        EXPECT_EQ(losses(text, written), "") << text;
    for (const auto& [text, written] : std::vector<std::pair<std::string, std::string>>{{" hidden ", "hidden"},
                                                                                        {"0 ", "0"},
                                                                                        {" 8", "8"},
                                                                                        {"8.0", "8"},
                                                                                        {"-8", "8"},
                                                                                        {"+", "0"},
                                                                                        {"True", "true"},
                                                                                        {"0", "false"},
                                                                                        {"1", "true"},
                                                                                        {"2026-11-21Z", "2026-11-21T00:00:00"},
                                                                                        {"2026-11-21", "2026-11-21T00:00:01"}})
        EXPECT_EQ(losses(text, written), "b@x=" + text + " c:" + text + " ") << text;
}

TEST(DifferingContent, ForgetsWhatABrokenPartHadGiven) {
    qv::ContentSums sums;
    {
        qv::SummingSink read(sums, qv::SummingSink::Way::add);
        read.Start("a");
        read.Attribute("id", "i");
        read.Attribute("x", "1");
        read.Forget("id", "i");
        read.StartPart();
        read.Start("a");
        read.Attribute("id", "j");
        read.Start("property");
        read.Attribute("name", "version");
        read.EndPart(false);
        read.Attribute("version", "3");
        read.End();
    }
    {
        qv::SummingSink written(sums, qv::SummingSink::Way::take);
        Tell("<a x=\"1\" version=\"3\"/>", written);
    }
    EXPECT_TRUE(sums.AreCovered());
}
