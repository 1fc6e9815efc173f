#include "core/qvutils/xml/qvsax2parser.h"

#include "core/qvutils/diag/tklerrors.h"
#include "tests/core/qvutils/xml/eventlog.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

using testing::ElementsAre;

namespace {

std::vector<std::string> EventsOf(std::string_view document) {
    EventLog log;
    QvSAX2Parser parser;
    parser.setContentHandler(&log);
    parser.parse(document.data(), document.size());
    return log.lines;
}

}  // namespace

TEST(QvSAX2ParserEvents, JoinsTextCDataAndReferencesIntoOneEvent) {
    EXPECT_THAT(EventsOf("<a>x&amp;<![CDATA[<y>]]>z<!-- c -->&#x1F600;</a>"),
                ElementsAre("start document", "start a", "text:x&<y>z\xF0\x9F\x98\x80", "end a", "end document"));
}

TEST(QvSAX2ParserEvents, CutsLocalNamesAndKeepsXmlnsAttributesInTheirPlace) {
    EXPECT_THAT(EventsOf("<b:c x='1' xmlns:b=\"u\" b:y=\"2\"/>"),
                ElementsAre("start document", "start b:c(c) x=1 xmlns:b=u b:y=2", "end b:c(c)", "end document"));
}
