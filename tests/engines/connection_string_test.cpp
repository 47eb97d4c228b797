#include "engines/connection_string.h"

#include <gtest/gtest.h>

#include "base/runtime_error.h"

namespace zenqay {
namespace {

TEST(ConnectionString, ReadsAValueByItsKey) {
  struct Case {
    const char* text;
    const char* key;
    const char* value;
  };
  const Case cases[] = {
      {"Provider=SQLite;Data Source=C:\\data\\service.db", "Data Source", "C:\\data\\service.db"},
      {"Provider=SQLite;Data Source=C:\\data\\service.db;", "Provider", "SQLite"},
      {"PROVIDER=SQLite", "provider", "SQLite"},
      {"  Provider =  SQLite  ; Data Source = a b ", "Data Source", "a b"},
      {";;Provider=SQLite; ;", "Provider", "SQLite"},
      {"Provider=SQLite", "Data Source", ""},
      {"", "Provider", ""},
      {" ", "Provider", ""},
      {"Data Source=;Provider=SQLite", "Data Source", ""},
      {"Password=a=b", "Password", "a=b"},
      {"Password=\"a;b\" ;User ID=x", "Password", "a;b"},
      {"Password=\"a;b\" ;User ID=x", "User ID", "x"},
      {"Password='a;b'", "Password", "a;b"},
      {"Password={a;b}", "Password", "a;b"},
      {"Password=\"a\"\"b\"", "Password", "a\"b"},
      {"Password='it''s'", "Password", "it's"},
      {"Password={a}}b}", "Password", "a}b"},
      {"Password='  a '", "Password", "  a "},
      {"Password=''", "Password", ""},
      {"Data Source=it's here", "Data Source", "it's here"},
      {"Data Source=größe.db", "Data Source", "größe.db"},
      {"Data Source=first;data source=second", "Data Source", "second"},
      {"Provider=SQLite;Provider=SQLOLEDB", "Provider", "SQLite"},
  };
  for (const auto& [text, key, value] : cases) {
    EXPECT_EQ(ConnectionString(text).Value(key), value) << text;
  }
}

TEST(ConnectionString, RefusesAMalformedTextWithoutRepeatingIt) {
  const char* texts[] = {
      "secret",
      "Provider=SQLite;secret",
      "Provider=SQLite;secret;Data Source=x",
      "=secret",
      "Password='secret",
      "Password=\"secret",
      "Password={secret",
      "Password={secret}}",
      "Password='secret' more",
      "Password='secret'more;User ID=x",
  };
  for (const char* text : texts) {
    try {
      ConnectionString{text};
      ADD_FAILURE() << text;
    } catch (const RuntimeError& error) {
      EXPECT_EQ(error.number(), -2147467259) << text;
      EXPECT_EQ(error.source(), "ZenqayDBSync") << text;
      EXPECT_EQ(error.description(), "The connection string is malformed.") << text;
    }
  }
}

}  // namespace
}  // namespace zenqay
