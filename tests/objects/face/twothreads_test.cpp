// Different threads work on different projects; the thread sanitizer reads along.
#include <functional>
#include <string>
#include <thread>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "core/repository/smrepository.h"
#include "objects/face/smaccounting_002_000.h"
#include "objects/face/smmodelfiles_002_000.h"
#include "objects/face/smmodelrename_002_000.h"
#include "objects/face/smmodelstore_002_000.h"
#include "objects/face/smmodelwalk_002_000.h"
#include "objects/face/smreferences_002_000.h"
#include "tests/support/facemodel.h"
#include "tests/support/tempdir.h"

using namespace schema_002_000;

namespace {

std::string ModelOf(int thread) {
    std::string subjects;
    for (int i = 0; i < 20; ++i) {
        const std::string number = std::to_string(i);
        subjects += "<querySubject><name locale=\"en\">s" + number +
                    "</name><lastChanged>2001-02-03T04:05:06</lastChanged><definition><modelQuery></modelQuery></definition>"
                    "<queryItem><name locale=\"en\">i</name><expression>1 + <refobj>[root].[s" +
                    number + "].[i]</refobj></expression><usage>fact</usage></queryItem></querySubject>";
    }
    return ModelDocument(NamespaceElement("root", "<odd></odd>" + subjects) + MapElement("map", std::to_string(thread)));
}

/** All that a program does with a model. */
void Work(int thread, std::string& text) {
    const TempDir directory;
    const SMLoadResult loaded = SMLoadModelBytes(ModelOf(thread));
    ASSERT_TRUE(loaded.IsDone());
    ASSERT_TRUE(loaded.HasFindings());
    ASSERT_EQ(SMLoadModelBytesAccounted(ModelOf(thread)).losses.size(), 1u);
    SMProject2& project = *loaded.project;
    project.SetName(I18NString(std::string_view("p" + std::to_string(thread))));
    project.AddParameterMapOrReturnExisting("new", true);
    ASSERT_TRUE(SMCheckReferences(project).IsDone());
    std::size_t objects = 0;
    SMForEachObject(project, [&](const SMObjectBase& object, int) { objects += SMDescribeObject(object).kind.empty() ? 0 : 1; });
    ASSERT_GT(objects, 40u);
    ASSERT_TRUE(SMSaveModel(project, directory.Path("a.xml")).IsDone());
    ASSERT_TRUE(SMSplitModel(project, directory.Path("d")).IsDone());
    ASSERT_TRUE(SMJoinModel(directory.Path("d/main.xml"), directory.Path("j.xml")).status != SMStatus::cancelled);

    SMRepository repository(directory.Path("r.db"), SMRepository::createIfAbsent);
    const auto context = repository.NewProject();
    ASSERT_TRUE(SMPutModel(project, *context).IsDone());
    project.SetName(I18NString(std::string_view("q" + std::to_string(thread))));
    ASSERT_TRUE(SMPutModel(project, *context).IsDone());
    const SMGetResult got = SMGetModel(*context);
    ASSERT_TRUE(got.IsDone());
    text = CanonicalText(*got.project);
    ASSERT_EQ(text, CanonicalText(project));
    // a document that cannot be read, beside one that can
    ASSERT_EQ(SMLoadModelBytes("<project><name>").diagnostics.back().code, "SM2004");
}

}  // namespace

TEST(TwoThreads, WorkOnTwoProjects) {
    SMEnum_xmltag::GetInstance();
    std::string before;
    Work(0, before);  // makes the enumerations, and starts the XML library
    constexpr int ROUNDS = 3;
    for (int round = 0; round < ROUNDS; ++round) {
        std::vector<std::string> texts(2);
        std::thread first([&] { Work(1, texts[0]); }), second([&] { Work(2, texts[1]); });
        first.join();
        second.join();
        EXPECT_NE(texts[0], texts[1]);
        EXPECT_EQ(texts[0].size(), before.size());
        EXPECT_EQ(texts[1].size(), before.size());
    }
}
