#include "objects/face/smmodelwalk_002_000.h"

#include <string>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "objects/containers/smnamespace2_002_000.h"
#include "tests/support/facemodel.h"

namespace {

using namespace schema_002_000;
using ::testing::ElementsAre;

SMLoadResult Load(const std::string& content) {
    return SMLoadModelBytes(ModelDocument(content));
}

std::vector<std::string> Walk(const SMProject2& project) {
    std::vector<std::string> lines;
    SMForEachObject(project, [&](const SMObjectBase& object, int depth) {
        lines.push_back(std::to_string(depth) + " " + SMKindOf(object) + " " + SMNameOf(object));
    });
    return lines;
}

TEST(SMModelWalk, VisitsParentsBeforeChildrenInTheOrderOfTheDocument) {
    const SMLoadResult loaded =
        Load(NamespaceElement("a", NamespaceElement("b", "<folder><name locale=\"en\">f</name></folder>") + NamespaceElement("c")) +
             MapElement("m", "v"));
    EXPECT_THAT(Walk(*loaded.project), ElementsAre("0 project Test", "1 namespace a", "2 namespace b", "3 folder f", "2 namespace c",
                                                   "1 parameterMap m", "2 parameterMapEntry k"));
}

TEST(SMModelWalk, LeavesOutARootThatWasReplaced) {
    const SMLoadResult loaded = Load(NamespaceElement("old", NamespaceElement("child")) + NamespaceElement("new"));
    EXPECT_THAT(Walk(*loaded.project), ElementsAre("0 project Test", "1 namespace new"));
}

TEST(SMModelWalk, VisitsEachLiveObjectOnce) {
    const SMLoadResult loaded = SMLoadModel(SMODEL_SOURCE_DIR "/examples/models/everything.xml");
    ASSERT_TRUE(loaded.IsDone());
    std::size_t live = 1;  // the project is not in its own registry
    for (const SMObjectBase* object : loaded.project->GetAllObjects().GetObjects()) live += object ? 1 : 0;
    EXPECT_EQ(Walk(*loaded.project).size(), live);
}

TEST(SMModelWalk, GivesPathsThroughNamespacesWhereTheyAreDefined) {
    const SMLoadResult loaded = Load(NamespaceElement("root", NamespaceElement("a")));
    const SMObjectLine line = SMDescribeObject(*loaded.project->FindNamespaceByName("a"));
    EXPECT_EQ(line.kind, "namespace");
    EXPECT_EQ(line.objectId, "[a]");
    EXPECT_EQ(line.path, "[root].[a]");
}

TEST(SMModelWalk, NamesObjectsOutsideOfNamespacesByKindAndId) {
    const SMLoadResult loaded = Load(NamespaceElement("root") + MapElement("m", "v"));
    std::vector<SMObjectLine> lines;
    SMForEachObject(*loaded.project, [&](const SMObjectBase& object, int) { lines.push_back(SMDescribeObject(object)); });
    ASSERT_EQ(lines.size(), 4u);
    EXPECT_EQ(lines[0].path, "(project).().(p)");
    EXPECT_EQ(lines[1].path, "[root]");
    EXPECT_EQ(lines[3].path, "(parameterMapEntry).().(e1)");
    EXPECT_EQ(lines[3].objectId, "");
    EXPECT_EQ(lines[3].id, "e1");
}

}  // namespace
