#include "objects/face/smmodelstore_002_000.h"

#include <atomic>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "core/qvutils/diag/tklerrors.h"
#include "objects/publication/smparametermap2_002_000.h"
#include "tests/support/facemodel.h"

namespace {

using namespace schema_002_000;

SMLoadResult Load() {
    return SMLoadModelBytes(ModelDocument(NamespaceElement("root", NamespaceElement("a")) + MapElement("m", "v")));
}

/** Refuses or breaks at its n-th row. */
class FailingContext : public IOHelper {
  public:
    FailingContext(int place, bool throws) : m_left(place), m_throws(throws) {}
    bool DoWriteAction(const I18NString&, const IOHashParam&) override {
        if (m_left-- > 0) return true;
        if (m_throws) throw TklRuntimeError("the store is gone");
        return false;
    }

  private:
    int m_left;
    bool m_throws;
};

TEST(SMModelStore, CountsTheObjectsOfAPut) {
    const SMLoadResult loaded = Load();
    IOHelper context;
    const SMPutResult put = SMPutModel(*loaded.project, context);
    EXPECT_TRUE(put.IsDone());
    EXPECT_EQ(put.objects, 5u);
}

TEST(SMModelStore, GivesIdsToObjectsThatHaveNone) {
    const SMLoadResult loaded = Load();
    IOHelper context;
    SMPutModel(*loaded.project, context);
    EXPECT_FALSE(loaded.project->GetParameterMaps().front()->GetId().empty());
}

TEST(SMModelStore, TellsThatAPutFailed) {
    const SMLoadResult loaded = Load();
    FailingContext context(2, false);
    const SMPutResult put = SMPutModel(*loaded.project, context);
    EXPECT_EQ(put.status, SMStatus::failed);
    ASSERT_FALSE(put.diagnostics.empty());
    EXPECT_EQ(put.diagnostics.back().severity, SMSeverity::error);
}

TEST(SMModelStore, TurnsWhatAContextThrowsIntoADiagnostic) {
    const SMLoadResult loaded = Load();
    FailingContext context(1, true);
    const SMPutResult put = SMPutModel(*loaded.project, context);
    EXPECT_EQ(put.status, SMStatus::failed);
    EXPECT_EQ(put.diagnostics.back().message, "the store is gone");
}

TEST(SMModelStore, EndsAPutThatIsCancelled) {
    const SMLoadResult loaded = Load();
    IOHelper context;
    std::atomic<bool> cancelled{true};
    EXPECT_EQ(SMPutModel(*loaded.project, context, {nullptr, &cancelled}).status, SMStatus::cancelled);
    cancelled = false;
    EXPECT_EQ(SMPutModel(*loaded.project, context, {nullptr, &cancelled}).status, SMStatus::done);
}

TEST(SMModelStore, GetsAnEmptyProjectFromAnEmptyContext) {
    IOHelper context;
    const SMGetResult got = SMGetModel(context);
    ASSERT_TRUE(got.IsDone());
    EXPECT_FALSE(got.project->GetRootNamespace());
}

}  // namespace
