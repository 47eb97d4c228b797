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

template <typename Database>
std::unique_ptr<TestedDatabase> Make() {
  return std::make_unique<Database>();
}

const auto kServer = [](const auto&) { return "Server"; };

INSTANTIATE_TEST_SUITE_P(Postgres, EveryConnection, testing::Values(&Make<PostgresDatabase>), kServer);
INSTANTIATE_TEST_SUITE_P(Postgres, EveryDatabase, testing::Values(&Make<PostgresDatabase>), kServer);
INSTANTIATE_TEST_SUITE_P(TestDriver, EveryConnection, testing::Values(&Make<DriverOfTheTests>),
                         [](const auto&) { return "Driver"; });

}  // namespace
}  // namespace zenqay
