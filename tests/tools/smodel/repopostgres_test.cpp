#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "tests/support/postgresserver.h"
#include "tests/tools/smodel/repomodel.h"

namespace {

using ::testing::HasSubstr;
using ::testing::StartsWith;

TEST(SmodelRepoOnPostgres, KeepsTheHistoryOfAModel) {
    const PostgresSchema schema;
    ToolRepository repository;
    repository.SetLocation(schema.Location());
    const std::string models[] = {SalesModel(SubjectElement("Orders", {"Amount"})),
                                  SalesModel(SubjectElement("Orders", {"Amount", "Day"}))};
    EXPECT_EQ(repository.Put(models[0]).out, "revision 1: 4 objects added, 0 changed, 0 removed\n");
    EXPECT_EQ(repository.Put(models[1]).out, "revision 2: 1 object added, 0 changed, 0 removed\n");
    EXPECT_EQ(repository.Put(SalesModel(""), {"--base", "1"}).status, 4);
    EXPECT_EQ(repository.Get("1"), Formatted(models[0]));
    EXPECT_EQ(repository.Get(), Formatted(models[1]));
    EXPECT_THAT(repository.Run("log").out, StartsWith("2\t"));
    EXPECT_THAT(repository.Run("diff", {"1"}).out, StartsWith("added queryItem Test / Sales / Orders / Day "));
    EXPECT_EQ(repository.Run("blame", {"[Sales].[Orders].[Day]"}).status, 0);
    EXPECT_EQ(repository.Run("verify", {"--all"}).out, "revision 1: clean\nrevision 2: clean\n");
    EXPECT_THAT(repository.Run("prune", {"--keep", "1"}).out, HasSubstr("the oldest revision is now 2"));
    EXPECT_EQ(repository.Run("verify").out, "revision 2: clean\n");
}

}  // namespace
