#include "engines/odbc/driver_strings.h"

#include <gtest/gtest.h>

#include "doubles/outcome.h"

namespace zenqay {
namespace {

const std::vector<Text> kInstalled = {"ODBC Driver 18 for SQL Server", "PostgreSQL Unicode", "Oracle 21 ODBC driver"};

TEST(DriverConnectString, LeavesTheDriversOwnTextAsItIs) {
  const char* texts[] = {
      "Driver=FreeTDS;Server=db,1433;UID=sa;PWD=secret",
      " driver = {PostgreSQL Unicode} ;; Pwd={a}}b;c} ",
      "DSN=service",
      "",
  };
  for (const char* text : texts) EXPECT_EQ(DriverConnectString(text, {}).text, text);
}

TEST(DriverConnectString, TakesTheProviderOfOdbcOffTheText) {
  const std::pair<const char*, const char*> cases[] = {
      {"Provider=MSDASQL;DSN=service;UID=a;PWD={b;c}", "DSN=service;UID=a;PWD={b;c}"},
      {"DSN=service;provider=msdasql.1", "DSN=service"},
      {"Driver={FreeTDS};Provider=MSDASQL;Server=db", "Driver={FreeTDS};Server=db"},
  };
  for (const auto& [text, driverText] : cases) EXPECT_EQ(DriverConnectString(text, {}).text, driverText);
}

TEST(DriverConnectString, SpeaksTheWordsOfASqlServerDriver) {
  const std::pair<const char*, const char*> cases[] = {
      {"Provider=SQLOLEDB;Data Source=db;Initial Catalog=SERVICE;User ID=sa;Password=secret",
       "Driver={ODBC Driver 18 for SQL Server};Server=db;Database=SERVICE;UID=sa;PWD=secret"},
      {"Provider=SQLOLEDB.1;data source=db\\one,1433;Integrated Security=SSPI",
       "Driver={ODBC Driver 18 for SQL Server};Server=db\\one,1433;Trusted_Connection=Yes"},
      {"Provider=MSOLEDBSQL19;Data Source=db;Integrated Security=false;Encrypt=yes",
       "Driver={ODBC Driver 18 for SQL Server};Server=db;Encrypt=yes"},
      {"Provider=SQLNCLI11;Server=db;Database=SERVICE;UID=sa;PWD=secret",
       "Driver={ODBC Driver 18 for SQL Server};Server=db;Database=SERVICE;UID=sa;PWD=secret"},
      {"Provider=SQLOLEDB;Password=\"a;b\"", "Driver={ODBC Driver 18 for SQL Server};PWD={a;b}"},
      {"Provider=SQLOLEDB;Password='{a}'", "Driver={ODBC Driver 18 for SQL Server};PWD={{a}}}"},
      {"Provider=SQLOLEDB;Password=' a'", "Driver={ODBC Driver 18 for SQL Server};PWD={ a}"},
      {"Provider=SQLOLEDB;Data Source=one;Data Source=two", "Driver={ODBC Driver 18 for SQL Server};Server=two"},
  };
  for (const auto& [text, driverText] : cases) EXPECT_EQ(DriverConnectString(text, kInstalled).text, driverText);
}

TEST(DriverConnectString, SpeaksTheWordsOfAnOracleDriver) {
  const std::pair<const char*, const char*> cases[] = {
      {"Provider=OraOLEDB.Oracle;Data Source=//db:1521/service;User ID=erp;Password=secret",
       "Driver={Oracle 21 ODBC driver};DBQ=//db:1521/service;UID=erp;PWD=secret"},
      {"Provider=MSDAORA;Data Source=service;Initial Catalog=none;Integrated Security=yes",
       "Driver={Oracle 21 ODBC driver};DBQ=service;UID=/"},
  };
  for (const auto& [text, driverText] : cases) EXPECT_EQ(DriverConnectString(text, kInstalled).text, driverText);
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
    const DriverString string = DriverConnectString("Provider=SQLOLEDB;Data Source=db", installed);

    EXPECT_EQ(string.driver, driver);
    EXPECT_TRUE(string.text.starts_with("Driver={" + driver + "};Server=db")) << string.text;
  }
}

TEST(DriverConnectString, TellsFreeTdsWhatTheVendorsDriverKnowsByItself) {
  const std::pair<const char*, const char*> cases[] = {
      {"Provider=SQLOLEDB;Data Source=db;User ID=sa;Password=secret",
       "Driver={FreeTDS};UID=sa;PWD=secret;Server=db;Port=1433;TDS_Version=7.4;"},
      {"Provider=SQLOLEDB;Server=db;UID=sa", "Driver={FreeTDS};Server=db;UID=sa;Port=1433;TDS_Version=7.4;"},
      {"Provider=SQLOLEDB;Data Source=db,1500", "Driver={FreeTDS};Server=db;Port=1500;TDS_Version=7.4;"},
      {"Provider=SQLOLEDB;Data Source=tcp:db , 1500", "Driver={FreeTDS};Server=db;Port=1500;TDS_Version=7.4;"},
      {"Provider=SQLOLEDB;Data Source=db;Port=1500", "Driver={FreeTDS};Port=1500;Server=db;TDS_Version=7.4;"},
      {"Provider=SQLOLEDB;Data Source=db\\one", "Driver={FreeTDS};Server=db\\one;TDS_Version=7.4;"},
      {"Provider=SQLOLEDB;Data Source=db\\one,1500", "Driver={FreeTDS};Server=db;Port=1500;TDS_Version=7.4;"},
      {"Provider=SQLOLEDB;Data Source=(local)", "Driver={FreeTDS};Server=localhost;Port=1433;TDS_Version=7.4;"},
      {"Provider=SQLOLEDB;Data Source=.\\one", "Driver={FreeTDS};Server=localhost\\one;TDS_Version=7.4;"},
      {"Provider=SQLOLEDB;Data Source=db;TDS_Version=7.2", "Driver={FreeTDS};TDS_Version=7.2;Server=db;Port=1433;"},
      {"Provider=SQLOLEDB;Data Source=db;Encrypt=yes",
       "Driver={FreeTDS};Server=db;Port=1433;TDS_Version=7.4;Encryption=require;"},
      {"Provider=SQLOLEDB;Data Source=db;Encrypt=no", "Driver={FreeTDS};Server=db;Port=1433;TDS_Version=7.4;"},
      {"Provider=SQLOLEDB;Data Source=db;Integrated Security=SSPI",
       "Driver={FreeTDS};Trusted_Connection=Yes;Server=db;Port=1433;TDS_Version=7.4;"},
  };
  for (const auto& [text, driverText] : cases) EXPECT_EQ(DriverConnectString(text, {"FreeTDS"}).text, driverText);
}

TEST(QuotedFreeTdsValue, IsReadByFreeTdsAsItWas) {
  const std::pair<const char*, const char*> cases[] = {
      {"", ""},       {"secret", "secret"}, {" a ", " a "},       {"a}b", "a}b"},   {"}", "}"},
      {"a{b", "a{b"}, {"{a", "{{a}"},       {"a;b", "{a;b}"},     {"a;}", "{a;}}"}, {";", "{;}"},
      {"'", "'"},     {"{a}", "{{a}}"},     {"a;b}c", "{a;b}c}"},
  };
  for (const auto& [value, quoted] : cases) EXPECT_EQ(QuotedFreeTdsValue(value), quoted) << value;
  EXPECT_EQ(
      Raised([] { QuotedFreeTdsValue("secret};x"); }),
      "-2147467259 ZenqayDBSync: FreeTDS takes no value that holds a closing brace in front of a semicolon. Change "
      "the password.");
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
