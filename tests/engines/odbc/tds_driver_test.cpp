// FreeTDS in front of what is no SQL Server.
#include <arpa/inet.h>
#include <gtest/gtest.h>
#include <unistd.h>

#include "engines/odbc/odbc_session.h"
#include "engines/odbc/tds_listener.h"
#include "engines/provider_errors.h"

namespace zenqay {
namespace {

Text StringFor(int port) {
  return "Provider=SQLOLEDB;Data Source=127.0.0.1," + std::to_string(port) +
         ";Initial Catalog=SERVICE;User ID=sa;TDS_Version=7.4;Password={s;ecret}";
}

/// The failure to connect: its number and source, once all of its texts are known to be without the password.
Text FailureAt(int port) {
  try {
    OdbcSession session(StringFor(port));
  } catch (const RuntimeError& failure) {
    Text first;
    for (const ProviderError& item : failure.items()) {
      EXPECT_EQ(item.Description.find("s;ecret"), Text::npos) << item.Description;
      EXPECT_FALSE(item.Description.empty());
      if (first.empty()) first = std::to_string(item.Number) + " " + item.Source + ": " + item.Description;
    }
    return first;
  }
  return "connected";
}

constexpr const char* kUnreachable = "-2147467259 FreeTDS: [FreeTDS][SQL Server]Unable to connect to data source";

TEST(TdsDriver, SaysThatThePortIsClosed) {
  const TdsListener closed;

  EXPECT_EQ(FailureAt(closed.port()),
            "-2147467259 FreeTDS: [FreeTDS][SQL Server]Unable to connect: Adaptive Server is unavailable or does not "
            "exist");
}

TEST(TdsDriver, SaysThatTheServerIsNone) {
  TdsListener listener;
  listener.Answer("HTTP/1.1 400 Bad Request\r\nConnection: close\r\n\r\n");

  EXPECT_EQ(FailureAt(listener.port()), kUnreachable);
}

TEST(TdsDriver, SaysThatTheServerWentAwayWithoutAWord) {
  TdsListener listener;
  listener.Answer("");

  EXPECT_EQ(FailureAt(listener.port()), kUnreachable);
}

/// A password, as a value of a connection string.
Text Written(const Text& password) {
  return "\"" + Replaced(password, "\"", "\"\"") + "\"";
}

Text FirstItem(const Text& connectionString) {
  try {
    OdbcSession session(connectionString);
  } catch (const RuntimeError& failure) {
    const ProviderError& item = failure.items().at(0);
    return std::to_string(item.Number) + " " + item.SqlState + " " + std::to_string(item.NativeError) + ": " +
           item.Description;
  }
  return "connected";
}

TEST(TdsDriver, BringsOddPasswordsToTheServerAsTheyAre) {
  const char* passwords[] = {"secret", "a;b",  ";",     ";a",    "a;",       "a}b",       "}",      "}}",   "{",
                             "{a",     "{a}",  "a{b}c", "a;}",   "a;b}c",    " a",        "a ",     " a; ", " ",
                             "a=b",    "=",    "'a'",   "\"a\"", "a\"b",     "PWD=x",     "größe€", "東京", "😀;",
                             "{}",     "a{;b", "%a%",   "a\\b",  "a'b;c\"d", "a,b:c@d/e", "{a;b}",  "}{"};
  for (const Text password : passwords) {
    for (const bool isLast : {false, true}) {
      TdsListener listener;
      listener.AnswerLogin(18456, "Login failed for user 'zenqay'.");
      const Text address = "127.0.0.1," + std::to_string(listener.port());
      const Text written = "Password=" + Written(password);

      FirstItem("Provider=SQLOLEDB;Data Source=" + address + ";User ID=zenqay;" + (isLast ? "" : written + ";") +
                "Initial Catalog=SERVICE" + (isLast ? ";" + written : ""));

      const TdsLogin login = listener.Login();
      EXPECT_EQ(login.user, "zenqay") << password;
      EXPECT_EQ(login.password, password);
      EXPECT_EQ(login.database, "SERVICE") << password;
    }
  }
}

TEST(TdsDriver, FindsTheServerByItsPortHoweverThatIsGiven) {
  for (const char* const form :
       {"Data Source=127.0.0.1,PORT", "Data Source=127.0.0.1;Port=PORT", "Data Source=tcp:127.0.0.1,PORT",
        "Data Source=127.0.0.1\\one,PORT", "Server=127.0.0.1,PORT"}) {
    TdsListener listener;
    listener.AnswerLogin(18456, "Login failed for user 'zenqay'.");

    FirstItem("Provider=MSOLEDBSQL;User ID=zenqay;Password=secret;" +
              Replaced(form, "PORT", std::to_string(listener.port())));

    EXPECT_EQ(listener.Login().user, "zenqay") << form;
  }
}

TEST(TdsDriver, FindsTheServerAtItsUsualPortWhenNoneIsGiven) {
  // The loopback network is large: an address of this process' own, so that the port is free.
  const auto address = static_cast<std::uint32_t>(0x7F400000 | (::getpid() & 0x3FFFFF));
  TdsListener listener(address, 1433);
  listener.AnswerLogin(18456, "Login failed for user 'zenqay'.");
  const in_addr binary{htonl(address)};

  FirstItem(Text("Provider=SQLOLEDB;Data Source=") + ::inet_ntoa(binary) + ";User ID=zenqay;Password=secret");

  EXPECT_EQ(listener.Login().user, "zenqay");
}

/// What becomes of a login that the server refuses by this error.
Text Refused(std::int32_t number, const Text& text) {
  TdsListener listener;
  listener.AnswerLogin(number, text);
  return FirstItem("Provider=SQLOLEDB;Data Source=127.0.0.1," + std::to_string(listener.port()) +
                   ";User ID=zenqay;Password=secret");
}

TEST(TdsDriver, HasOneNumberForARefusedLoginAndAnotherForAnUnknownDatabase) {
  EXPECT_EQ(Refused(18456, "Login failed for user 'zenqay'."),
            "-2147217843 42000 18456: [FreeTDS][SQL Server]Login failed for user 'zenqay'.");
  EXPECT_EQ(Refused(18470, "Login failed for user 'zenqay'. Reason: The account is disabled."),
            "-2147217843 42000 18470: [FreeTDS][SQL Server]Login failed for user 'zenqay'. Reason: The account is "
            "disabled.");
  EXPECT_EQ(Refused(4060, "Cannot open database \"SERVICE\" requested by the login. The login failed."),
            "-2147467259 42000 4060: [FreeTDS][SQL Server]Cannot open database \"SERVICE\" requested by the login. The "
            "login failed.");
}

TEST(TdsDriver, KeepsARefusedPasswordToItself) {
  for (const char* const password : {"s;ecret", "{secret", "secret", " s "}) {
    TdsListener listener;
    listener.AnswerLogin(18456, Text("Login failed with ") + password + ".");

    const Text failure = FirstItem("Provider=SQLOLEDB;Data Source=127.0.0.1," + std::to_string(listener.port()) +
                                   ";User ID=zenqay;Password=" + Written(password));

    EXPECT_EQ(failure, "-2147217843 42000 18456: [FreeTDS][SQL Server]Login failed with ***.");
  }
}

}  // namespace
}  // namespace zenqay
