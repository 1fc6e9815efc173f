#include <gtest/gtest.h>

#include <climits>
#include <random>
#include <thread>

#include <unistd.h>

#include "core/repository/smrepository.h"
#include "tests/support/numberedputs.h"
#include "tests/support/cuttingproxy.h"
#include "tests/support/postgresserver.h"
#include "tests/support/tempdir.h"
#include "tests/support/toolrun.h"
#include "tests/support/waitfor.h"

namespace {

/** What stands must be the put that was acknowledged last, or the next one, whole. */
long ExpectWhole(const std::string& location, long acknowledged) {
    std::string fault;
    const long standing = NumberedPuts::Standing(location, fault);
    EXPECT_EQ(fault, "");
    EXPECT_GE(standing, acknowledged);
    EXPECT_LE(standing, acknowledged + 1);
    return standing;
}

/** No row tells of a revision that does not stand. */
void ExpectNoTraces(const std::string& address) {
    EXPECT_EQ(PostgresSql(address,
                          "SELECT count(*) FROM sm_section_type s, repo_project p WHERE first_revision > head_revision OR "
                          "end_revision > head_revision"),
              "0");
    EXPECT_EQ(PostgresSql(address, "SELECT count(*) - max(revision_no) FROM repo_revision"), "0");
    EXPECT_EQ(PostgresSql(address, "SELECT count(*) FROM sm_section_type WHERE end_revision IS NULL"), "30");
}

/** Where puts are fast, many pass between two of them. */
constexpr int KILLS = 16;

/** Kills the process that puts at random moments until so many puts were acknowledged. A new process costs more than many puts. */
void KillPutters(const std::string& location, long puts, unsigned seed) {
    std::mt19937 random(seed);
    NumberedPuts::MakeFirst(location);
    long standing = 1;
    int kills = 0;
    while (standing < puts || kills < KILLS) {
        Putter putter(location);
        // some puts later, somewhere in the next one
        const long goal = standing + 1 + static_cast<long>(random() % 12);
        WaitFor([&] { return putter.Acknowledged() >= goal; });
        ::usleep(static_cast<useconds_t>(random() % 20'000));
        putter.Kill();
        ++kills;
        // what the server was told last it may still be doing
        standing = ExpectWhole(location, putter.Acknowledged());
        ASSERT_FALSE(testing::Test::HasFailure()) << "kill " << kills;
    }
}

TEST(PostgresCrash, OfAProcessThatPutsLeavesOneOrTheOtherRevision) {
    PostgresSchema schema;
    KillPutters(schema.Location(), 200, 1);
    ExpectNoTraces(schema.Location());
}

TEST(RepositoryCrash, OfAProcessThatPutsLeavesOneOrTheOtherRevision) {
    const TempDir directory;
    KillPutters(directory.Path("models.db"), 200, 2);
}

TEST(PostgresCrash, OfTheServerLosesNoAcknowledgedPut) {
    PostgresServer server({"fsync = off"});  // what was written stays with the system, which goes on; it starts again sooner so
    NumberedPuts::MakeFirst(server.Address());
    Putter putter(server.Address());
    std::mt19937 random(3);
    for (int round = 0; round < 4; ++round) {
        const long before = putter.Acknowledged();
        WaitFor([&] { return putter.Acknowledged() > before; });
        ::usleep(static_cast<useconds_t>(random() % 200'000));
        server.Kill();
        const long acknowledged = putter.Acknowledged();
        server.Start();
        std::string fault;
        EXPECT_GE(NumberedPuts::Standing(server.Address(), fault), acknowledged);
        EXPECT_EQ(fault, "") << "round " << round;
    }
    putter.Kill();
    ExpectWhole(server.Address(), putter.Acknowledged());
    ExpectNoTraces(server.Address());
}

/** The wire of a put, cut behind many of its bytes. */
class PostgresWire : public testing::Test {
  protected:
    PostgresWire() {
        const std::string location = schema.Location();
        proxy = std::make_unique<CuttingProxy>(schema.Host());
        cut = schema.LocationBy(proxy->Host());
        NumberedPuts::MakeFirst(location);
        for (int number = 2; number <= 10; ++number) NumberedPuts::PutNext(location);  // from here on all have two digits
        standing = 10;
        Measure();
        const long before = fromServer;
        Measure();
        growth = fromServer - before;
    }
    /** One put over a whole wire, which tells how much the next one will need. */
    void Measure() {
        PutCut(LONG_MAX, LONG_MAX);
        toServer = proxy->ToServer();
        fromServer = proxy->FromServer();
    }
    /** One put over a wire that ends behind so many bytes. */
    void PutCut(long to, long from) {
        proxy->Allow(to, from);
        std::string told;
        const long acknowledged = NumberedPuts::PutNext(cut, &told);
        std::string fault;
        const long now = NumberedPuts::Standing(schema.Location(), fault);
        ASSERT_EQ(fault, "");
        ASSERT_TRUE(acknowledged == 0 ? now == standing || now == standing + 1 : now == acknowledged) << now << " " << acknowledged;
        ASSERT_EQ(told.empty(), acknowledged != 0) << told;
        if (acknowledged == 0 && now > standing) {
            ++unknown;
            ASSERT_NE(told.find("It is not known whether the save stands"), std::string::npos) << told;
        }
        failed += acknowledged == 0;
        standing = now;
    }

    PostgresSchema schema;
    std::unique_ptr<CuttingProxy> proxy;
    std::string cut;
    long toServer, fromServer, standing;
    /** A put looks at what has ended, which each put makes more by as much. */
    long growth;
    int failed = 0, unknown = 0;
};

TEST_F(PostgresWire, CutOnTheWayToTheServerLeavesTheOldRevision) {
    constexpr int CUTS = 25;
    for (int at = 0; at < CUTS && !HasFailure(); ++at) PutCut(toServer * at / CUTS, LONG_MAX);
    // the commit is the last that goes over it
    for (long at = 1; at <= 40 && !HasFailure(); at += 3) {
        Measure();
        PutCut(toServer - at, LONG_MAX);
    }
    EXPECT_GT(failed, CUTS);
    ExpectNoTraces(schema.Location());
}

TEST_F(PostgresWire, CutOnTheWayBackNeverTellsSuccess) {
    constexpr int CUTS = 25;
    for (int at = 0; at < CUTS && !HasFailure(); ++at) PutCut(LONG_MAX, fromServer * at / CUTS);
    for (long at = 1; at <= 40 && !HasFailure(); at += 3) {
        Measure();
        PutCut(LONG_MAX, fromServer + growth - at);
    }
    EXPECT_GT(failed, CUTS);
    EXPECT_GT(unknown, 0);
    ExpectNoTraces(schema.Location());
}

/** A primary that acknowledges what its standby has too. */
class PostgresStandby : public testing::Test {
  protected:
    PostgresStandby() {
        NumberedPuts::MakeFirst(primary.Address());
        standby = PostgresServer::StandbyOf(primary, "second");
        primary.Sql("ALTER SYSTEM SET synchronous_standby_names = 'second'");
        primary.Sql("SELECT pg_reload_conf()");
        WaitFor([&] { return primary.Sql("SELECT count(*) FROM pg_stat_replication WHERE sync_state = 'sync'") == "1"; });
    }
    std::string Both() const { return PostgresServer::AddressOf(primary.Host() + "," + standby->Host()); }

    PostgresServer primary;
    std::unique_ptr<PostgresServer> standby;
};

TEST_F(PostgresStandby, HasEveryAcknowledgedPutWhenThePrimaryIsKilled) {
    Putter putter(Both());
    WaitFor([&] { return putter.Acknowledged() > 20; });
    ::usleep(37'000);
    primary.Kill();
    const long acknowledged = putter.Acknowledged();
    standby->Promote();
    std::string fault;
    EXPECT_GE(NumberedPuts::Standing(standby->Address(), fault), acknowledged);
    EXPECT_EQ(fault, "");
    // those who know both find the one that writes
    WaitFor([&] { return putter.Acknowledged() > acknowledged + 5; });
    putter.Kill();
    ExpectWhole(Both(), putter.Acknowledged());
    ExpectNoTraces(standby->Address());
}

TEST_F(PostgresStandby, ServesLoadsAndTellsThatItDoesNotSave) {
    WaitFor([&] { return standby->Sql("SELECT count(*) FROM repo_project") == "1"; });
    const ToolRun got = RunTool({"repo", "get", standby->Address(), "-o", "-"});
    EXPECT_EQ(got.status, 0) << got.err;
    EXPECT_NE(got.out.find("<project"), std::string::npos) << got.out;
    std::string told;
    EXPECT_EQ(NumberedPuts::PutNext(standby->Address(), &told), 0);
    EXPECT_NE(told.find("This server only reads; a save needs the one that writes."), std::string::npos) << told;
    EXPECT_EQ(NumberedPuts::PutNext(Both(), &told), 2);
    EXPECT_EQ(NumberedPuts::PutNext(PostgresServer::AddressOf(standby->Host() + "," + primary.Host()), &told), 3);
}

TEST(PostgresCommit, ThatDidNotWaitForItsStandbyIsNoAcknowledgement) {
    PostgresServer server;
    NumberedPuts::MakeFirst(server.Address());
    server.Sql("ALTER SYSTEM SET synchronous_standby_names = 'nobody'");
    server.Sql("SELECT pg_reload_conf()");
    WaitFor([&] { return server.Sql("SHOW synchronous_standby_names") == "nobody"; });
    std::string told;
    long acknowledged = -1;
    std::thread put([&] { acknowledged = NumberedPuts::PutNext(server.Address(), &told); });
    WaitFor([&] { return server.Sql("SELECT count(pg_cancel_backend(pid)) FROM pg_stat_activity WHERE wait_event = 'SyncRep'") != "0"; });
    put.join();
    EXPECT_EQ(acknowledged, 0);
    EXPECT_NE(told.find("The server committed the save with a warning, so a failure may still undo it: canceling wait for synchronous"),
              std::string::npos)
        << told;
}

}  // namespace
