#include "core/qvutils/diag/diagnostics.h"

#include "core/qvutils/base/qvulcollection.h"
#include "core/qvutils/diag/tklerrors.h"
#include "core/qvutils/persist/ioobject.h"

#include <gtest/gtest.h>

#include <functional>
#include <string>
#include <vector>

namespace {

/** An object whose path is told by the test. */
class PathObject : public IOObject {
  public:
    PathObject(IOObject* above, const char* name, int& alive) : IOObject(above, false), m_name(name), m_alive(alive) { ++m_alive; }
    ~PathObject() override { --m_alive; }

    void getPath(I18NString& out) const override {
        if (asked) asked();
        if (parent) {
            parent->getPath(out);
            out += "/";
        }
        out += m_name;
    }
    void SetName(const char* name) { m_name = name; }
    std::function<void()> asked;

    void constructFromIOParameter(const IOParameter&) override {}
    bool read(IOHelper&) override { return true; }
    I18NString GetVersionCol() const override { return {}; }
    I18NString GetIdCol() const override { return {}; }
    I18NString GetParentVersionCol() const override { return {}; }
    I18NString GetParentIdCol() const override { return {}; }
    int GetModelType() override { return 0; }
    void getChildObjects(QvULCollection<IOObject, QvULIdExtract<IOObject>>&) const override {}
    bool write_no_seq_inc(IOHelper&) override { return true; }
    bool write_next(IOHelper&) override { return true; }

  private:
    I18NString m_name;
    int& m_alive;
};

QvLogEvent Event(LOG_LEVEL level, const char* message, const char* detail = "") {
    return QvLogEvent(level, "code", "QvOne", "m", "c", "f", 0, message, detail);
}

SMSourceContext At(const IOObject* object, long line = 3, long column = 9) {
    SMSourceContext context;
    context.file = "model.xml";
    context.line = line;
    context.column = column;
    context.element = "filter";
    context.object = object;
    return context;
}

}  // namespace

TEST(SMDiagnostic, SeverityFollowsTheLevel) {
    EXPECT_EQ(SeverityOfLevel(1), SMSeverity::error);
    EXPECT_EQ(SeverityOfLevel(3), SMSeverity::note);
    EXPECT_EQ(SeverityOfLevel(4), SMSeverity::warning);
    EXPECT_EQ(SeverityOfLevel(0), SMSeverity::warning);
}

TEST(SMDiagnostic, IsFormattedWithoutWhatIsNotKnown) {
    SMDiagnostic diagnostic;
    diagnostic.message = "broken";
    EXPECT_EQ(FormatDiagnostic(diagnostic), "error: broken");
    diagnostic.objectPath = "root/sales";
    EXPECT_EQ(FormatDiagnostic(diagnostic), "error: broken [root/sales]");
    diagnostic.file = "a.xml";
    diagnostic.severity = SMSeverity::warning;
    EXPECT_EQ(FormatDiagnostic(diagnostic), "a.xml: warning: broken [root/sales]");
    diagnostic.line = 12;
    diagnostic.severity = SMSeverity::note;
    EXPECT_EQ(FormatDiagnostic(diagnostic), "a.xml:12: note: broken [root/sales]");
    diagnostic.column = 5;
    EXPECT_EQ(FormatDiagnostic(diagnostic), "a.xml:12:5: note: broken [root/sales]");
    diagnostic.file.clear();
    EXPECT_EQ(FormatDiagnostic(diagnostic), "12:5: note: broken [root/sales]");
}

TEST(SMDiagnostic, IsOneLineWhateverStandsInIt) {
    SMDiagnostic diagnostic;
    diagnostic.message =
        "a\r\nb\vc\fd\xC2\x85"
        "e\xE2\x80\xA8"
        "f\xE2\x80\xA9g";
    diagnostic.objectPath = "h\ni";
    EXPECT_EQ(FormatDiagnostic(diagnostic), "error: a  b c d e f g [h i]");
}

TEST(SMDiagnostic, ShortensAPathThatIsVeryLong) {
    SMDiagnostic diagnostic;
    diagnostic.message = "broken";
    diagnostic.objectPath = "[" + std::string(40'000, 'x') + "].[y]";
    EXPECT_EQ(FormatDiagnostic(diagnostic), "error: broken [[" + std::string(249, 'x') + "..." + std::string(245, 'x') + "].[y]]");
}

TEST(SMDiagnostic, ShowsItsCodeInsteadOfAColon) {
    SMDiagnostic diagnostic;
    diagnostic.code = "SM0001";
    diagnostic.message = "broken";
    diagnostic.objectPath = "[a].[b]";
    EXPECT_EQ(FormatDiagnostic(diagnostic), "error[SM0001] broken [[a].[b]]");
    diagnostic.message = "<c> in [a].[b] is not kept";
    EXPECT_EQ(FormatDiagnostic(diagnostic), "error[SM0001] <c> in [a].[b] is not kept");
    diagnostic.message = "no object [a].[b].[c]";  // is not the object, but below it
    EXPECT_EQ(FormatDiagnostic(diagnostic), "error[SM0001] no object [a].[b].[c] [[a].[b]]");
    diagnostic.message = "no object [z].[a].[b]";
    EXPECT_EQ(FormatDiagnostic(diagnostic), "error[SM0001] no object [z].[a].[b] [[a].[b]]");
    diagnostic.message = "[a].[b].[c] is not in [a].[b]";
    EXPECT_EQ(FormatDiagnostic(diagnostic), "error[SM0001] [a].[b].[c] is not in [a].[b]");
}

TEST(SMDiagnostic, IsOneLine) {
    SMDiagnostic diagnostic;
    diagnostic.message = "first\r\nsecond";
    EXPECT_EQ(FormatDiagnostic(diagnostic), "error: first  second");
}

TEST(SMDiagnosticCollector, TellsEventsInTheOrderOfTheirComing) {
    SMDiagnosticCollector collector;
    const SMSourceContext context = At(nullptr);
    collector.Take(Event(1, "failed", "the detail"), &context);
    collector.Take(Event(4, "odd"), nullptr);
    SMDiagnostic own;
    own.code = "own";
    collector.Add(own);
    collector.Add(TklRuntimeError("cannot be read", "b.xml", 4, 2));
    const std::vector<SMDiagnostic> found = collector.Finish();
    ASSERT_EQ(found.size(), 4U);
    EXPECT_EQ(FormatDiagnostic(found[0]), "model.xml:3:9: error: failed: the detail");
    EXPECT_EQ(found[0].code, "");
    EXPECT_EQ(FormatDiagnostic(found[1]), "warning: odd");
    EXPECT_EQ(found[2].code, "own");
    EXPECT_EQ(FormatDiagnostic(found[3]), "b.xml:4:2: error: cannot be read");
    EXPECT_TRUE(collector.Finish().empty());
}

TEST(SMDiagnosticCollector, CountsWhatIsMoreThanItLists) {
    SMDiagnosticCollector collector(2);
    const SMSourceContext context = At(nullptr);
    for (const char* const what : {"one", "two"}) collector.Take(Event(4, what), nullptr);
    collector.Take(Event(4, "three"), &context);
    collector.Take(Event(4, "four"), nullptr);
    collector.Add(TklRuntimeError("cannot be read"));
    std::vector<SMDiagnostic> found = collector.Finish();
    ASSERT_EQ(found.size(), 4U);
    EXPECT_EQ(FormatDiagnostic(found[2]), "error: cannot be read");
    EXPECT_EQ(FormatDiagnostic(found[3]), "model.xml:3:9: warning[SM2113] 2 more events are not listed");
    EXPECT_TRUE(collector.Finish().empty());
    for (int i = 0; i < 3; ++i) collector.Take(Event(1, "failed"), nullptr);
    found = collector.Finish();
    ASSERT_EQ(found.size(), 3U);
    EXPECT_EQ(FormatDiagnostic(found[2]), "error[SM2113] 1 more events are not listed");
}

TEST(SMDiagnosticCollector, ResolvesPathsWhenNamesAreKnown) {
    int alive = 0;
    SMDiagnosticCollector collector;
    const QvSmartPtr<PathObject> root = new PathObject(nullptr, "root", alive);
    const QvSmartPtr<PathObject> child = new PathObject(root, "", alive);
    const SMSourceContext context = At(child);
    collector.Take(Event(4, "odd"), &context);
    child->SetName("sales");
    const std::vector<SMDiagnostic> found = collector.Finish();
    EXPECT_EQ(found.at(0).objectPath, "root/sales");
    EXPECT_EQ(child->getReferenceCount(), 1);
    EXPECT_EQ(root->getReferenceCount(), 1);
}

TEST(SMDiagnosticCollector, ShortensPathsThatWouldMultiply) {
    int alive = 0;
    SMDiagnosticCollector collector;
    const QvSmartPtr<PathObject> object = new PathObject(nullptr, std::string(100'000, 'a').c_str(), alive);
    const SMSourceContext context = At(object);
    collector.Take(Event(4, "odd"), &context);
    EXPECT_EQ(collector.Finish().at(0).objectPath.size(), 1'003U);
}

TEST(SMDiagnosticCollector, KeepsObjectsAndTheirAncestorsUntilThePathsAreResolved) {
    int alive = 0;
    SMDiagnosticCollector collector;
    {
        const QvSmartPtr<PathObject> root = new PathObject(nullptr, "root", alive);
        const QvSmartPtr<PathObject> folder = new PathObject(root, "folder", alive);
        const QvSmartPtr<PathObject> child = new PathObject(folder, "child", alive);
        for (const IOObject* object : {static_cast<IOObject*>(child), static_cast<IOObject*>(folder), static_cast<IOObject*>(child)}) {
            const SMSourceContext context = At(object);
            collector.Take(Event(4, "odd"), &context);
        }
    }
    EXPECT_EQ(alive, 3);
    const std::vector<SMDiagnostic> found = collector.Finish();
    EXPECT_EQ(found.at(0).objectPath, "root/folder/child");
    EXPECT_EQ(found.at(1).objectPath, "root/folder");
    EXPECT_EQ(found.at(2).objectPath, "root/folder/child");
    EXPECT_EQ(alive, 0);
}

TEST(SMDiagnosticCollector, LetsGoOfObjectsWhenItIsNeverFinished) {
    int alive = 0;
    {
        SMDiagnosticCollector collector;
        const QvSmartPtr<PathObject> object = new PathObject(nullptr, "root", alive);
        const SMSourceContext context = At(object);
        collector.Take(Event(4, "odd"), &context);
    }
    EXPECT_EQ(alive, 0);
}

TEST(SMDiagnosticCollector, LeavesAnObjectAloneThatNobodyShares) {
    int alive = 0;
    SMDiagnosticCollector collector;
    {
        const PathObject onTheStack(nullptr, "stack", alive);
        const SMSourceContext context = At(&onTheStack);
        collector.Take(Event(4, "odd"), &context);
        EXPECT_EQ(onTheStack.getReferenceCount(), 0);
    }
    EXPECT_EQ(collector.Finish().at(0).objectPath, "");
}

TEST(SMDiagnosticCollector, AFailingPathIsLeftOut) {
    int alive = 0;
    SMDiagnosticCollector collector;
    const QvSmartPtr<PathObject> object = new PathObject(nullptr, "root", alive);
    object->asked = [] { TKL_ASSERT(false); };
    const SMSourceContext context = At(object);
    collector.Take(Event(4, "odd"), &context);
    const std::vector<SMDiagnostic> found = collector.Finish();
    ASSERT_EQ(found.size(), 1U);
    EXPECT_EQ(found[0].objectPath, "");
    EXPECT_EQ(found[0].message, "odd");
}

TEST(SMDiagnosticCollector, WhatAPathLogsIsDropped) {
    int alive = 0;
    SMDiagnosticCollector collector;
    const SMLogScope scope(collector);
    const QvSmartPtr<PathObject> object = new PathObject(nullptr, "root", alive);
    object->asked = [] { Event(4, "logged while a path is asked for").Log(); };
    const SMSourceContext context = At(object);
    collector.Take(Event(4, "odd"), &context);
    EXPECT_EQ(collector.Finish().at(0).objectPath, "root");
    EXPECT_TRUE(collector.Finish().empty());
    Event(4, "again").Log();
    EXPECT_EQ(collector.Finish().size(), 1U);
}
