#include "core/qvutils/content/writtencontent.h"

#include <gtest/gtest.h>

#include "tests/support/contentnotes.h"

TEST(WrittenContent, TellsEventsAndKeptXmlInTheirOrder) {
    ContentNotes notes;
    qv::WrittenContent content(notes);
    QvXMLAttributesImpl attributes;
    attributes.push_back({"", "c", "x:c", "CDATA", "1 & 2"});
    content.startElement("", "a", "x:a", attributes);
    content.characters("<t>");
    content.Target().write(std::string_view("k<b>l&lt;</b>m"));
    content.startElement("", "d", "d", QvXMLAttributesImpl());
    content.endElement("", "d", "d");
    content.Target().write(std::string_view("n"));
    content.characters("");
    content.ignorableWhitespace(" ");
    content.endElement("", "a", "x:a");
    EXPECT_EQ(notes.text, "<a x:c=1 & 2[<t>][k]<b[l<]>[m]<d>[n][ ]>");
}
