#include "core/qvutils/diag/qvlogevent.h"

#include "core/qvutils/diag/diagnostics.h"

#include <gtest/gtest.h>

#include <string>
#include <thread>
#include <vector>

namespace {

QvLogEvent Event(const char* message) {
    return QvLogEvent(4, "code", "QvOne", "smobjects", "SMObjectBase", "Method", 0, message, "a detail");
}

class Recorder : public SMLogSink {
  public:
    void Take(const QvLogEvent& event, const SMSourceContext* context) override {
        messages.emplace_back(event.message.utf8());
        places.push_back(context ? context->line : -1);
    }
    std::vector<std::string> messages;
    std::vector<long> places;
};

class Place : public SMSourceFrame {
  public:
    explicit Place(long line) : m_line(line) {}
    SMSourceContext Describe() const override {
        SMSourceContext context;
        context.file = "a.xml";
        context.line = m_line;
        return context;
    }

  private:
    long m_line;
};

/** Puts the default sink back whatever a test does. */
class DefaultSink {
  public:
    explicit DefaultSink(SMLogSink* sink) : m_before(SetDefaultLogSink(sink)) {}
    ~DefaultSink() { SetDefaultLogSink(m_before); }
    SMLogSink* Before() const { return m_before; }

  private:
    SMLogSink* m_before;
};

using Texts = std::vector<std::string>;

}  // namespace

TEST(QvLogEvent, KeepsItsPartsInOrder) {
    const QvLogEvent event(1, "category", "product", "module", "class", "method", 0, "message", "detail");
    const QvLogEvent copy(event);
    EXPECT_EQ(copy.level, 1);
    EXPECT_EQ(copy.category.utf8(), "category");
    EXPECT_EQ(copy.product.utf8(), "product");
    EXPECT_EQ(copy.module.utf8(), "module");
    EXPECT_EQ(copy.className.utf8(), "class");
    EXPECT_EQ(copy.method.utf8(), "method");
    EXPECT_EQ(copy.action, 0);
    EXPECT_EQ(copy.message.utf8(), "message");
    EXPECT_EQ(copy.detail.utf8(), "detail");
}

TEST(QvLogEvent, IsThrownByValue) {
    try {
        throw Event("raised");
    } catch (const QvLogEvent& event) {
        EXPECT_STREQ(event.what(), "raised");
        EXPECT_EQ(event.detail.utf8(), "a detail");
    }
}

TEST(QvLogEvent, GoesToTheInnermostScopeOfItsThread) {
    Recorder byDefault, outer, inner;
    const DefaultSink guard(&byDefault);
    Event("0").Log();
    {
        const SMLogScope outerScope(outer);
        Event("1").Log();
        {
            const SMLogScope innerScope(inner);
            Event("2").Log();
            std::thread([] { Event("of another thread").Log(); }).join();
        }
        Event("3").Log();
    }
    Event("4").Log();
    EXPECT_EQ(byDefault.messages, (Texts{"0", "of another thread", "4"}));
    EXPECT_EQ(outer.messages, (Texts{"1", "3"}));
    EXPECT_EQ(inner.messages, Texts{"2"});
}

TEST(QvLogEvent, CarriesTheInnermostPlaceOfTheParse) {
    Recorder recorder;
    const SMLogScope scope(recorder);
    Event("outside").Log();
    {
        const Place document(10);
        Event("document").Log();
        {
            const Place part(20);
            Event("part").Log();
            EXPECT_EQ(SMSourceFrame::Innermost(), &part);
        }
        Event("document").Log();
        std::thread([&recorder] {
            const SMLogScope other(recorder);
            Event("another thread").Log();
        }).join();
    }
    EXPECT_EQ(SMSourceFrame::Innermost(), nullptr);
    EXPECT_EQ(recorder.places, (std::vector<long>{-1, 10, 20, 10, -1}));
}

TEST(QvLogEvent, GoesToStandardErrorAsOneLineByDefault) {
    const DefaultSink guard(nullptr);
    testing::internal::CaptureStderr();
    Event("first\nsecond").Log();
    {
        const Place place(7);
        QvLogEvent(3, "code", "QvOne", "m", "c", "f", 0, "a note", "").Log();
    }
    EXPECT_EQ(testing::internal::GetCapturedStderr(), "warning: first second: a detail\na.xml:7: note: a note\n");
}

TEST(QvLogEvent, DefaultSinkIsReplacedAndGivenBack) {
    Recorder a, b;
    const DefaultSink guard(&a);
    EXPECT_EQ(&CurrentLogSink(), &a);
    EXPECT_EQ(SetDefaultLogSink(&b), &a);
    EXPECT_EQ(SetDefaultLogSink(nullptr), &b);
    EXPECT_EQ(SetDefaultLogSink(&a), nullptr);
}

TEST(QvLogEvent, ThreadsLogIntoScopesOfTheirOwn) {
    std::vector<Recorder> recorders(4);
    std::vector<std::thread> threads;
    for (Recorder& recorder : recorders)
        threads.emplace_back([&recorder] {
            const SMLogScope scope(recorder);
            for (int i = 0; i < 500; ++i) Event("own").Log();
        });
    for (std::thread& thread : threads) thread.join();
    for (const Recorder& recorder : recorders) EXPECT_EQ(recorder.messages.size(), 500U);
}
