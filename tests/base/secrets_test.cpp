#include "base/secrets.h"

#include <gtest/gtest.h>

namespace zenqay {
namespace {

TEST(WithoutSecrets, HidesThePasswordOfAConnectionString) {
  const std::pair<const char*, const char*> cases[] = {
      {"", ""},
      {"Provider=SQLite;Data Source=C:\\a.db", "Provider=SQLite;Data Source=C:\\a.db"},
      {"User ID=sa;Password=secret;Database=x", "User ID=sa;Password=***;Database=x"},
      {"User ID=sa;Password=secret", "User ID=sa;Password=***"},
      {"PWD=secret;UID=sa", "PWD=***;UID=sa"},
      {"pwd = secret ; UID=sa", "pwd = ***; UID=sa"},
      {"PASSWORD  =  secret", "PASSWORD  =  ***"},
      {"password=", "password=***"},
      {"Password=;UID=sa", "Password=***;UID=sa"},
      {"Password=\"se;cret\";UID=sa", "Password=***;UID=sa"},
      {"Password='se;cret';UID=sa", "Password=***;UID=sa"},
      {"Pwd={se;cret};UID=sa", "Pwd=***;UID=sa"},
      {"Password=\"se\"\"cr;et\";UID=sa", "Password=***;UID=sa"},
      {"Pwd={se}}cr;et};UID=sa", "Pwd=***;UID=sa"},
      {"Pwd={se}}", "Pwd=***"},
      {"Pwd={left open;UID=sa", "Pwd=***"},
      {"Jet OLEDB:Database Password=secret;x=1", "Jet OLEDB:Database Password=***;x=1"},
      {"Password=one;Pwd=two", "Password=***;Pwd=***"},
      {"the password is long", "the password is long"},
      {"Password", "Password"},
      {"Login failed: Password=secret", "Login failed: Password=***"},
  };
  for (const auto& [text, clean] : cases) EXPECT_EQ(WithoutSecrets(text), clean);
}

}  // namespace
}  // namespace zenqay
