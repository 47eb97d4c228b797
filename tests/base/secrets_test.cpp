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

TEST(WithoutSecrets, KnowsWhatElseDriversCallAPassword) {
  const std::pair<const char*, const char*> cases[] = {
      {"UID=sa;Passwd=secret;Database=x", "UID=sa;Passwd=***;Database=x"},
      {"UID=sa;Pass=secret;Database=x", "UID=sa;Pass=***;Database=x"},
      {"Pass = secret", "Pass = ***"},
      {"ClientSecret=secret;x=1", "ClientSecret=***;x=1"},
      {"Secret=secret;x=1", "Secret=***;x=1"},
      {"AccessToken=secret;x=1", "AccessToken=***;x=1"},
      {"Access Token=secret;x=1", "Access Token=***;x=1"},
      {"access_token=secret", "access_token=***"},
      {"Password\t=\tsecret;UID=sa", "Password\t=\t***;UID=sa"},
      {"compass=north;bypass=1", "compass=north;bypass=1"},
      {"the pass was closed", "the pass was closed"},
  };
  for (const auto& [text, clean] : cases) EXPECT_EQ(WithoutSecrets(text), clean);
}

TEST(WithoutSecrets, HidesThePasswordBehindAUser) {
  const std::pair<const char*, const char*> cases[] = {
      {"User ID=scott/tiger;Data Source=x", "User ID=scott/***;Data Source=x"},
      {"UID=scott/tiger", "UID=scott/***"},
      {"User=scott/ti/ger;x=1", "User=scott/***;x=1"},
      {"uid = scott/tiger{}SERVICE", "uid = scott/***{}SERVICE"},
      {"User ID=scott;Data Source=/srv/a.db", "User ID=scott;Data Source=/srv/a.db"},
      {"User ID=/;Data Source=x", "User ID=/***;Data Source=x"},
      {"user=scott password=ti/ger host=db1", "user=scott password=***"},
      {"user=scott password='ti/ger' host=/run", "user=scott password=*** host=/run"},
      {"user=scott host=/run password=tiger", "user=scott host=/***"},
      {"fluid=a/b", "fluid=a/b"},
  };
  for (const auto& [text, clean] : cases) EXPECT_EQ(WithoutSecrets(text), clean);
}

TEST(WithoutSecrets, TakesASemicolonForThePasswordsOwnUnlessAnotherEntryFollowsIt) {
  const std::pair<const char*, const char*> cases[] = {
      {"Password=se;cret;User ID=sa", "Password=***;User ID=sa"},
      {"Password=se;cret", "Password=***"},
      {"Password=secret;", "Password=***;"},
      {"Password=se;;cret; UID = sa", "Password=***; UID = sa"},
      {"Password=se;cret{}SERVICE{}1", "Password=***{}SERVICE{}1"},
      {"Password={}SERVICE", "Password=***{}SERVICE"},
      {"Password=se;cret\r\nnext line", "Password=***\r\nnext line"},
      {"Password=\"se\"cret;UID=sa", "Password=***;UID=sa"},
      {"Password='secret'; UID=sa", "Password=***; UID=sa"},
  };
  for (const auto& [text, clean] : cases) EXPECT_EQ(WithoutSecrets(text), clean);
}

}  // namespace
}  // namespace zenqay
