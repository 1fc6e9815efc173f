// What holds for every class of the model, held against each of them.
#include <gtest/gtest.h>

#include <algorithm>
#include <cstdlib>
#include <fstream>
#include <sstream>

#include "tests/support/capturedlog.h"
#include "tests/support/contexts.h"
#include "tests/support/documents.h"
#include "tests/support/golden.h"
#include "tests/support/modelclasses.h"

using namespace schema_002_000;
using namespace smtest;

namespace {

ProjectPtr ProjectFor() {
    ProjectPtr project = NewProject();
    project->SetId("project");
    return project;
}

/** Every action, and below it what it carries, one value a line. */
std::vector<std::string> LinesOfActions(const RecordingContext& context) {
    std::vector<std::string> lines;
    for (std::size_t place = 0; place < context.Actions().size(); ++place) {
        lines.push_back(context.Actions()[place].name);
        const auto& params = context.Actions()[place].params;
        if (!params || !params->HasKey(IOParamTag::ATTRIBUTES)) continue;
        for (const std::string& line : context.Attributes(place)) lines.push_back("  " + line);
    }
    return lines;
}

/** What a longest common part leaves over: lines of `before` with "-", lines of `after` with "+", each below its action. */
std::vector<std::string> Differences(const std::vector<std::string>& before, const std::vector<std::string>& after) {
    std::vector<std::vector<int>> common(before.size() + 1, std::vector<int>(after.size() + 1));
    for (std::size_t i = before.size(); i-- > 0;)
        for (std::size_t j = after.size(); j-- > 0;)
            common[i][j] = before[i] == after[j] ? common[i + 1][j + 1] + 1 : std::max(common[i + 1][j], common[i][j + 1]);
    std::vector<std::string> lines;
    std::string action, told;
    const auto tell = [&](const char* sign, const std::string& line) {
        if (line[0] != ' ')
            told = line;
        else if (told != action)
            lines.push_back("  " + (told = action));
        lines.push_back(sign + line);
    };
    for (std::size_t i = 0, j = 0; i < before.size() || j < after.size();) {
        if (i < before.size() && before[i][0] != ' ') action = before[i];
        if (i < before.size() && j < after.size() && before[i] == after[j])
            ++i, ++j;
        else if (j == after.size() || (i < before.size() && common[i + 1][j] >= common[i][j + 1]))
            tell("- ", before[i++]);
        else
            tell("+ ", after[j++]);
    }
    return lines;
}

std::string Paragraph(const std::string& title, const std::vector<std::string>& lines) {
    std::string text = title + "\n";
    for (const std::string& line : lines) text += "  " + line + "\n";
    return text;
}

/** Runs `attempt(n)` with each action failing in turn, until one run gets through; tells the log of each. */
template <class Attempt>
std::vector<std::string> LogOfFailures(std::size_t actions, Attempt attempt) {
    std::vector<std::string> lines;
    for (std::size_t at = 1; at <= actions; ++at) {
        CapturedLog log;
        lines.push_back(std::to_string(at) + " " + attempt(at));
        for (const LoggedEvent& event : log.Events()) {
            std::ostringstream text;
            text << "  " << event;
            lines.push_back(text.str());
        }
    }
    return lines;
}

class EveryClass : public testing::TestWithParam<ModelClass> {
  protected:
    /** The object that a store gives back for a stored one; the project stays with the caller. */
    ModelClass::Object ReadBack(StoreContext& store, const SMObjectBase& stored, SMProject2& project) const {
        ModelClass::Object object = GetParam().make(project);
        const auto row = store.RowOf(TableOf(store), std::string(stored.GetId().utf8()));
        if (!row) {
            ADD_FAILURE() << "no row";
            return object;
        }
        object->constructFromIOParameter(*row);
        EXPECT_TRUE(object->read(store));
        return object;
    }
    /** The table of the first row written. */
    static std::string TableOf(const RecordingContext& store) {
        return store.Actions().at(0).params->GetByName(IOParamTag::TABLE_NAME)->GetQvStringValue().c_str();
    }
};

}  // namespace

TEST_P(EveryClass, WritesItsGoldenDocument) {
    const ProjectPtr project = ProjectFor();
    const auto object = GetParam().Filled(*project);
    ExpectGolden(GetParam().name + ".xml", WriteElement(*object, true) + "\n");
}

TEST_P(EveryClass, WritesWhatItHasRead) {
    const CapturedLog log;
    const ProjectPtr project = ProjectFor(), other = ProjectFor(), third = ProjectFor();
    std::string text = WriteElement(*GetParam().Filled(*project));
    if (!GetParam().readsWhatItWrites) text = WriteElement(*GetParam().read(*third, text));
    EXPECT_TRUE(SameXml(text, WriteElement(*GetParam().read(*other, text))));
    EXPECT_THAT(log.Events(), testing::IsEmpty());
}

TEST_P(EveryClass, WritesTheSameTextWhenEmpty) {
    const CapturedLog log;
    const ProjectPtr project = ProjectFor(), other = ProjectFor();
    const std::string text = WriteElement(*GetParam().make(*project));
    EXPECT_TRUE(SameXml(text, WriteElement(*GetParam().read(*other, text))));
    EXPECT_THAT(log.Events(), testing::IsEmpty());
}

TEST_P(EveryClass, WritesItsGoldenRows) {
    const CapturedLog log;
    const ProjectPtr project = ProjectFor(), other = ProjectFor();
    const auto object = GetParam().Filled(*project);
    StoreContext store;
    ASSERT_TRUE(object->write(store));
    EXPECT_THAT(store.Faults(), testing::IsEmpty());
    const std::vector<std::string> written = LinesOfActions(store);
    const std::size_t writes = store.Actions().size();

    const auto readBack = ReadBack(store, *object, *other);
    std::vector<std::string> reads = store.Names();
    reads.erase(reads.begin(), reads.begin() + static_cast<std::ptrdiff_t>(writes));
    RecordingContext again;
    ASSERT_TRUE(readBack->write(again));
    EXPECT_THAT(log.Events(), testing::IsEmpty());

    ExpectGolden(GetParam().name + ".row", Paragraph("written", written) + Paragraph("read", reads) +
                                               Paragraph("differences when written again", Differences(written, LinesOfActions(again))));
}

TEST_P(EveryClass, FailsWithTheActionThatFails) {
    StoreContext store;
    const ProjectPtr stored = ProjectFor();
    const auto object = GetParam().Filled(*stored);
    ASSERT_TRUE(object->write(store));
    const std::size_t writes = store.Actions().size();
    const auto failingWrites = LogOfFailures(writes, [&](std::size_t at) {
        const ProjectPtr project = ProjectFor();
        const auto attempt = GetParam().Filled(*project);
        RecordingContext failing;
        failing.FailAt(at);
        EXPECT_FALSE(attempt->write(failing)) << at;
        EXPECT_EQ(failing.Actions().size(), at) << "goes on after a failure";
        return failing.Actions().back().name;
    });

    const ProjectPtr project = ProjectFor();
    ReadBack(store, *object, *project);
    const std::size_t reads = store.Actions().size() - writes;
    const auto failingReads = LogOfFailures(reads, [&](std::size_t at) {
        const ProjectPtr into = ProjectFor();
        const auto attempt = GetParam().make(*into);
        attempt->constructFromIOParameter(*store.RowOf(TableOf(store), std::string(object->GetId().utf8())));
        store.FailAt(store.Actions().size() + at);
        EXPECT_FALSE(attempt->read(store)) << at;
        return store.Actions().back().name;
    });
    ExpectGolden(GetParam().name + ".failures", Paragraph("writing", failingWrites) + Paragraph("reading", failingReads));
}

TEST_P(EveryClass, LeavesTheRegistryWithItsObjects) {
    const ProjectPtr project = ProjectFor();
    GetParam().make(*project);
    const auto live = [&] {
        const auto& slots = project->GetAllObjects().GetObjects();
        return slots.size() - static_cast<std::size_t>(std::count(slots.begin(), slots.end(), nullptr));
    };
    if (GetParam().name == "SMProject2") return;
    const std::size_t before = live();
    auto object = GetParam().Filled(*project);
    EXPECT_GT(live(), before);
    object = nullptr;
    EXPECT_EQ(live(), before);
}

TEST_P(EveryClass, OutlivesItsProject) {
    ProjectPtr project = ProjectFor();
    auto object = GetParam().Filled(*project);
    if (GetParam().name == "SMProject2") object = nullptr;
    project = nullptr;
    if (!object) return;
    EXPECT_EQ(object->GetSMProject(), nullptr);
    object->SetId("still here");
    EXPECT_FALSE(WriteElement(*object).empty());
}

INSTANTIATE_TEST_SUITE_P(Model, EveryClass, testing::ValuesIn(ModelClasses()), [](const auto& instance) { return instance.param.name; });
