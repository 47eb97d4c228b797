// What every engine has in common, through ODBC: on a PostgreSQL server and, where no SQL has to be run, on the tests'
// own driver.
#include "doubles/postgres_server.h"
#include "engines/every_engine.h"

namespace zenqay {
namespace {

class PostgresDatabase : public TestedDatabase {
 public:
  PostgresDatabase() {
    static PostgresServer server;
    static int count = 0;
    const Text name = "engine" + std::to_string(++count);
    server.Psql("postgres", "CREATE DATABASE " + name);
    connectionString = server.ConnectionString(name);
    source = "PostgreSQL Unicode";
  }
};

class DriverOfTheTests : public TestedDatabase {
 public:
  DriverOfTheTests() {
    connectionString = "Driver=" ZENQAY_TEST_DRIVER ";Catalogs=Y";
    source = "libzenqay_test_driver.so";
  }
};

const auto kServer = testing::Values(EngineOf<PostgresDatabase>("Server"));
const auto kDriver = testing::Values(EngineOf<DriverOfTheTests>("Driver"));

INSTANTIATE_TEST_SUITE_P(Postgres, EveryConnection, kServer, testing::PrintToStringParamName());
INSTANTIATE_TEST_SUITE_P(Postgres, EveryDatabase, kServer, testing::PrintToStringParamName());
INSTANTIATE_TEST_SUITE_P(TestDriver, EveryConnection, kDriver, testing::PrintToStringParamName());

}  // namespace
}  // namespace zenqay
