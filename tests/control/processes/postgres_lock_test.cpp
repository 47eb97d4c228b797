// What becomes of a table's lock when its server, or its client, goes away.
#include <gtest/gtest.h>
#include <signal.h>
#include <unistd.h>

#include "job_site.h"

namespace zenqay {
namespace {

const Text kLocations = "Location:text:cloc:key,Description:text:desc,Customer:text:cuno\nA1,North,C7\n";
const Text kLocationsFile = "Kv40QTMtssmaLocations.csv";

TEST(PostgresLock, OfAServerThatIsStartedAnewIsFreeForTheNextRun) {
  PostgresServer server;
  const JobSite site(Engine::PostgreSql, {}, &server);
  {
    std::filesystem::remove(site.Export(kLocationsFile));
    HeldExport held(site.Export(kLocationsFile));
    RunningCtl ctl = site.Start("run demo");
    held.WaitUntilOpened(ctl);

    server.Kill();
    held.Write(kLocations);
    held.Finish();
    const CtlRun run = ctl.Wait();

    EXPECT_EQ(run.status, 1) << run.said;
    EXPECT_NE(run.said.find("zenqayctl check demo says what cannot be reached; then: zenqayctl run demo --table SITE"),
              Text::npos)
        << run.said;
  }
  std::filesystem::remove(site.Export(kLocationsFile));
  site.directory().Write("home/erp/" + kLocationsFile, kLocations);
  server.Restart();
  site.WriteJobFile();
  EXPECT_EQ(site.Rows("SELECT in_use FROM tstables WHERE tablename = 'SITE'"), "1\n");  // it could not be given back

  const CtlRun next = site.Run("run demo");

  EXPECT_EQ(next.status, 0) << next.said;
  EXPECT_NE(next.said.find("SITE: copying (it was left taken by a job that has died)"), Text::npos) << next.said;
  EXPECT_EQ(site.Rows("SELECT SITE FROM SITE"), "A1\n");
  EXPECT_EQ(site.Rows("SELECT in_use FROM tstables WHERE tablename = 'SITE'"), "0\n");
}

/// The sweep waits in a trigger for a lock that the test holds.
TEST(PostgresLock, IsHeldUntilTheServerHasEndedADeadJobsLastStatement) {
  const JobSite site(Engine::PostgreSql);
  site.directory().Write("home/erp/" + kLocationsFile, kLocations);
  site.Execute("INSERT INTO site (site, upd_flag) VALUES ('X1', 0)");
  SharedServer().Psql(site.database(),
                      "CREATE FUNCTION wait() RETURNS trigger LANGUAGE plpgsql AS 'BEGIN PERFORM "
                      "pg_advisory_xact_lock(1); RETURN NULL; END';"
                      "CREATE TRIGGER wait BEFORE DELETE ON site EXECUTE FUNCTION wait()");
  std::shared_ptr<Connection> other = LocalDatabases().CreateConnection();
  other->PutConnectionString(site.ConnectionString());
  other->Open();
  other->Execute("SELECT pg_advisory_lock(1)");
  RunningCtl ctl = site.Start("run demo");
  while (site.Rows("SELECT 1 FROM pg_stat_activity WHERE wait_event = 'advisory' AND datname = current_database()") ==
         "") {
    ASSERT_FALSE(ctl.HasEnded()) << ctl.Said();
    ::usleep(1000);
  }

  ::kill(ctl.Jobs().at(0), SIGKILL);
  const CtlRun killed = ctl.Wait();
  const CtlRun heldOff = site.Run("run demo");
  const CtlRun status = site.Run("status demo");
  const CtlRun unlock = site.Run("unlock demo SITE");
  other->Close();
  while (site.Run("status demo").said.find("; its lock is held") != Text::npos) ::usleep(1000);
  const Text rows = site.Rows("SELECT site FROM site ORDER BY site");
  const CtlRun next = site.Run("run demo");

  EXPECT_EQ(killed.status, 1) << killed.said;
  EXPECT_EQ(heldOff.status, 3) << heldOff.said;
  EXPECT_NE(status.said.find(", which is gone; its lock is held"), Text::npos) << status.said;
  EXPECT_EQ(unlock.status, 3) << unlock.said;
  EXPECT_EQ(rows, "A1\n");  // the dead job's sweep has come to its end
  EXPECT_EQ(next.status, 0) << next.said;
  EXPECT_NE(next.said.find("SITE: copying (it was left taken by a job that has died)"), Text::npos) << next.said;
  EXPECT_EQ(site.Rows("SELECT in_use FROM tstables WHERE tablename = 'SITE'"), "0\n");
}

}  // namespace
}  // namespace zenqay
