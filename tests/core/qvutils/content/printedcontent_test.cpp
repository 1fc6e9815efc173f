#include "core/qvutils/content/printedcontent.h"

#include <string>

#include <gtest/gtest.h>

#include "tests/support/contentnotes.h"

namespace {

std::string Told(const std::string& document, std::size_t piece) {
    ContentNotes notes;
    qv::PrintedContent content(notes);
    for (std::size_t at = 0; at < document.size(); at += piece) content.write(std::string_view(document).substr(at, piece));
    content.flush();
    return notes.text;
}

}  // namespace

TEST(PrintedContent, TellsElementsAttributesAndTexts) {
    EXPECT_EQ(Told("<?xml version=\"1.0\"?>\n<p:a b=\"1\" c='\"'><d/>x</p:a>", 1000), "[\n]<a b=1 c=\"<d>[x]>");
}

TEST(PrintedContent, UndoesEscapes) {
    EXPECT_EQ(Told("<a b=\"&quot;&#x9;&lt;\">&amp;&#233;&gt;&other;&</a>", 1000), "<a b=\"\t<[&\xC3\xA9>&other;&]>");
}

TEST(PrintedContent, PassesOverCommentsAndInstructionsAndOpensSections) {
    EXPECT_EQ(Told("<a><!-- <b> --><?c >?><![CDATA[<&amp;]]></a>", 1000), "<a[<&amp;]>");
}

TEST(PrintedContent, IsTheSameHoweverTheBytesCome) {
    const std::string document = "<a x=\"1>\"><!-- -- > --><b>t&lt;u</b><![CDATA[]]]]><?p ?q?></a>";
    const std::string whole = Told(document, document.size());
    for (std::size_t piece = 1; piece < document.size(); ++piece) EXPECT_EQ(Told(document, piece), whole) << piece;
}

TEST(PrintedContent, TakesATextThatIsLongerThanItsWindow) {
    const std::string text(300'000, 'x');
    EXPECT_EQ(Told("<a>" + text + "</a>", 10'000), "<a[" + text + "]>");
}

TEST(PrintedContent, TellsATextThatEndsAPiece) {
    ContentNotes notes;
    qv::PrintedContent content(notes);
    content.write(std::string_view("a <b>c</b> d&amp;"));
    content.flush();
    EXPECT_EQ(notes.text, "[a ]<b[c]>[ d&]");
}
