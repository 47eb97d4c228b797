// What a copy on PostgreSQL has left when all of the server's processes are killed in the middle of it: rows that were
// committed without waiting may be lost, but no update time ever stands ahead of its rows.
//
// A run tries a few places of the copy; with ZENQAY_FAULTS=all in the environment, as scripts/faults sets it, fifty.
#include <gtest/gtest.h>

#include <cstdlib>
#include <filesystem>
#include <set>

#include "components/component_catalogue.h"
#include "doubles/disturbance.h"
#include "doubles/fake_platform.h"
#include "doubles/postgres_server.h"
#include "doubles/temp_directory.h"
#include "doubles/tries_all.h"
#include "engines/databases.h"
#include "startup/modStartUp.h"

namespace zenqay {
namespace {

constexpr int kSites = 60;
constexpr const char* kDatabase = "service";

/// A server that keeps what it was told as every server does, and a home for jobs that copy the sites.
class PostgresDurability : public testing::Test {
 protected:
  PostgresDurability() {
    server_.Psql("postgres", Text("CREATE DATABASE ") + kDatabase);
    const Text schema = ZENQAY_SHARE "/schema/";
    server_.PsqlFiles(kDatabase, {schema + "postgresql.sql", schema + "control-rows.sql"});
    for (const char* name : {"erp", "log"}) std::filesystem::create_directory(home_.path() / name);
    for (const char* name : {"I18nText.xml", "Components.xml"}) {
      std::filesystem::copy_file(std::filesystem::path(ZENQAY_SHARE) / name, home_.path() / name);
    }
    Text sites = "Location:text:cloc:key,Description:text:desc,Customer:text:cuno\n";
    for (int i = 1; i <= kSites; ++i) sites += "S" + std::to_string(i) + ",new,C\n";
    home_.Write("erp/Kv40QTMtssmaLocations.csv", sites);
  }

  /// Half of the sites are there and old, three more are gone from the ERP. All of it is on the disk.
  void Reset() {
    server_.Psql(
        kDatabase,
        "TRUNCATE SITE;"
        "INSERT INTO SITE (SITE, DESCRIPTION, upd_flag) SELECT 'S' || n, 'old', 0 FROM generate_series(1, 30) n;"
        "INSERT INTO SITE (SITE, DESCRIPTION, upd_flag) SELECT 'X' || n, 'old', 0 FROM generate_series(1, 3) n;"
        "UPDATE tstables SET lutm = '2026-01-01', in_use = 0 WHERE tablename = 'SITE';");
  }

  std::vector<Step> RunJob(std::size_t step, When when, const std::function<void()>& deed) {
    Journal journal;
    FakePlatform platform(journal, home_.path().string());
    ComponentCatalogue catalogue(home_.path().string());
    LocalDatabases databases;
    Disturbance disturbance;
    if (deed) disturbance.Plan(step, when, deed);
    DisturbedDatabase database(databases, disturbance);
    modDeclarations process{.platform = platform, .components = catalogue, .database = database};
    RunProcess(process, server_.ConnectionString(kDatabase) + "{}public{}1{}1{}" + home_.path().string() +
                            "/log{}MAIN{}-1{}{}1{}0{}1{}");
    return disturbance.steps();
  }

  /// "taken|update time is new|new rows|old rows|marked rows"
  Text State() {
    return server_.Psql(kDatabase,
                        "SELECT in_use, lutm > '2026-01-01', (SELECT count(*) FROM SITE WHERE DESCRIPTION = 'new'), "
                        "(SELECT count(*) FROM SITE WHERE DESCRIPTION = 'old'), "
                        "(SELECT count(*) FROM SITE WHERE upd_flag = 1) FROM tstables WHERE tablename = 'SITE'");
  }

  TempDirectory home_;
  PostgresServer server_{{"fsync=on"}};
};

std::size_t StepOf(const std::vector<Step>& steps, const char* begin) {
  const auto found =
      std::find_if(steps.begin(), steps.end(), [&](const Step& step) { return step.text.starts_with(begin); });
  return static_cast<std::size_t>(found - steps.begin());
}

TEST_F(PostgresDurability, NoUpdateTimeStandsAheadOfItsRowsWhereverTheServerIsKilled) {
  Reset();
  const std::vector<Step> steps = RunJob(0, When::Before, {});
  ASSERT_EQ(State(), "0|t|60|0|0\n");
  const std::size_t taking = StepOf(steps, "UPDATE tstables SET in_use = 1");
  const std::size_t sweep = StepOf(steps, "DELETE FROM SITE");
  const std::size_t time = StepOf(steps, "UPDATE tstables SET lutm");
  const std::size_t release = StepOf(steps, "UPDATE tstables SET in_use = 0");
  std::set<std::size_t> places = {taking, sweep, time, release};
  for (std::size_t i = taking; TriesAll() && places.size() < 50; i += (release - taking) / 46) places.insert(i);

  int lost = 0;
  for (const std::size_t place : places) {
    Reset();
    RunJob(place, When::Behind, [this] { server_.Crash(); });
    server_.Restart();

    const Text state = State();
    const Text what = "step " + std::to_string(place) + ", " + steps[place].text + ": " + state;
    const bool isMoved = place >= time;
    const Text complete = place < release ? "1|t|60|0|0\n" : "0|t|60|0|0\n";
    EXPECT_EQ(isMoved ? state : state.substr(0, 4), isMoved ? complete : Text("1|f|")) << what;
    if (place == sweep && state != "1|f|60|0|0\n") ++lost;
  }
  std::printf("tried  SIGKILL of a server: %zu places of %zu; rows behind the sweep lost: %d\n", places.size(),
              release - taking + 1, lost);
}

}  // namespace
}  // namespace zenqay
