#include "engines/odbc/driver_strings.h"

#include <gtest/gtest.h>

#include "doubles/outcome.h"

namespace zenqay {
namespace {

const std::vector<Text> kInstalled = {"FreeTDS", "PostgreSQL Unicode", "Oracle 21 ODBC driver"};

TEST(DriverConnectString, LeavesTheDriversOwnTextAsItIs) {
  const char* texts[] = {
      "Driver=FreeTDS;Server=db,1433;UID=sa;PWD=secret",
      " driver = {PostgreSQL Unicode} ;; Pwd={a}}b;c} ",
      "DSN=service",
      "",
  };
  for (const char* text : texts) EXPECT_EQ(DriverConnectString(text, {}), text);
}

TEST(DriverConnectString, TakesTheProviderOfOdbcOffTheText) {
  const std::pair<const char*, const char*> cases[] = {
      {"Provider=MSDASQL;DSN=service;UID=a;PWD={b;c}", "DSN=service;UID=a;PWD={b;c}"},
      {"DSN=service;provider=msdasql.1", "DSN=service"},
      {"Driver={FreeTDS};Provider=MSDASQL;Server=db", "Driver={FreeTDS};Server=db"},
  };
  for (const auto& [text, driverText] : cases) EXPECT_EQ(DriverConnectString(text, {}), driverText);
}

TEST(DriverConnectString, SpeaksTheWordsOfASqlServerDriver) {
  const std::pair<const char*, const char*> cases[] = {
      {"Provider=SQLOLEDB;Data Source=db;Initial Catalog=SERVICE;User ID=sa;Password=secret",
       "Driver={FreeTDS};Server=db;Database=SERVICE;UID=sa;PWD=secret"},
      {"Provider=SQLOLEDB.1;data source=db\\one,1433;Integrated Security=SSPI",
       "Driver={FreeTDS};Server=db\\one,1433;Trusted_Connection=Yes"},
      {"Provider=MSOLEDBSQL19;Data Source=db;Integrated Security=false;Encrypt=yes",
       "Driver={FreeTDS};Server=db;Encrypt=yes"},
      {"Provider=SQLNCLI11;Server=db;Database=SERVICE;UID=sa;PWD=secret",
       "Driver={FreeTDS};Server=db;Database=SERVICE;UID=sa;PWD=secret"},
      {"Provider=SQLOLEDB;Password=\"a;b\"", "Driver={FreeTDS};PWD={a;b}"},
      {"Provider=SQLOLEDB;Password='{a}'", "Driver={FreeTDS};PWD={{a}}}"},
      {"Provider=SQLOLEDB;Password=' a'", "Driver={FreeTDS};PWD={ a}"},
      {"Provider=SQLOLEDB;Data Source=one;Data Source=two", "Driver={FreeTDS};Server=two"},
  };
  for (const auto& [text, driverText] : cases) EXPECT_EQ(DriverConnectString(text, kInstalled), driverText);
}

TEST(DriverConnectString, SpeaksTheWordsOfAnOracleDriver) {
  const std::pair<const char*, const char*> cases[] = {
      {"Provider=OraOLEDB.Oracle;Data Source=//db:1521/service;User ID=erp;Password=secret",
       "Driver={Oracle 21 ODBC driver};DBQ=//db:1521/service;UID=erp;PWD=secret"},
      {"Provider=MSDAORA;Data Source=service;Initial Catalog=none;Integrated Security=yes",
       "Driver={Oracle 21 ODBC driver};DBQ=service;UID=/"},
  };
  for (const auto& [text, driverText] : cases) EXPECT_EQ(DriverConnectString(text, kInstalled), driverText);
}

TEST(DriverConnectString, PrefersTheNewestDriverOfTheMaker) {
  const std::pair<std::vector<Text>, Text> cases[] = {
      {{"SQL Server", "FreeTDS"}, "FreeTDS"},
      {{"FreeTDS", "SQL Server Native Client 11.0"}, "SQL Server Native Client 11.0"},
      {{"FreeTDS", "ODBC Driver 9 for SQL Server", "ODBC Driver 18 for SQL Server", "ODBC Driver 17 for SQL Server"},
       "ODBC Driver 18 for SQL Server"},
      {{"SQL Server"}, "SQL Server"},
  };
  for (const auto& [installed, driver] : cases) {
    EXPECT_EQ(DriverConnectString("Provider=SQLOLEDB;Data Source=db", installed), "Driver={" + driver + "};Server=db");
  }
}

TEST(DriverConnectString, SaysWhichDriversItLookedFor) {
  const std::vector<Text> installed = {"PostgreSQL Unicode"};

  EXPECT_EQ(
      Raised([&] { DriverConnectString("Provider=SQLOLEDB;Password=secret", installed); }),
      "-2147467259 ZenqayDBSync: No ODBC driver for SQL Server is installed. Looked for drivers whose names begin "
      "with \"ODBC Driver\", \"SQL Server Native Client\", \"FreeTDS\", \"SQL Server\".");
  EXPECT_EQ(Raised([&] { DriverConnectString("Provider=MSDAORA;Password=secret", installed); }),
            "-2147467259 ZenqayDBSync: No ODBC driver for Oracle is installed. Looked for drivers whose names begin "
            "with \"Oracle\".");
}

TEST(DriverConnectString, NamesAnUnknownProviderAndNothingBehindIt) {
  EXPECT_EQ(Raised([] { DriverConnectString("Provider=Jet.OLEDB Password=secret", kInstalled); }),
            "-2147467259 ZenqayDBSync: This build has no driver for the provider Jet.OLEDB.");
}

TEST(WithoutDeclareFetch, SwitchesItOffWhateverTheTextSays) {
  const std::pair<const char*, const char*> cases[] = {
      {"DSN=service", "DSN=service;UseDeclareFetch=0"},
      {"DSN=service;usedeclarefetch=1;PWD={a;b}", "DSN=service;PWD={a;b};UseDeclareFetch=0"},
      {"B6=1;DSN=service;", "DSN=service;UseDeclareFetch=0"},
  };
  for (const auto& [text, left] : cases) EXPECT_EQ(WithoutDeclareFetch(text), left);
}

TEST(PasswordsOf, GivesThemAsWrittenAndAsMeantTheLongestFirst) {
  const std::pair<const char*, std::vector<Text>> cases[] = {
      {"DSN=service", {}},
      {"Password=;PWD=", {}},
      {"UID=a;PWD=secret", {"secret", "secret"}},
      {"Password={a;}}b};pwd=x", {"{a;}}b}", "a;}b", "x", "x"}},
  };
  for (const auto& [text, passwords] : cases) EXPECT_EQ(PasswordsOf(text), passwords) << text;
}

}  // namespace
}  // namespace zenqay
