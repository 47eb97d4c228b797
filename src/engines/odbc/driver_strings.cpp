#include "engines/odbc/driver_strings.h"

#include <algorithm>
#include <array>
#include <optional>

#include "base/numbers.h"
#include "engines/connection_string.h"
#include "engines/provider_errors.h"

namespace zenqay {
namespace {

[[noreturn]] void Raise(const Text& description) {
  throw RuntimeError(kGeneralProviderFailure, kPlatformSource, description);
}

/// Only the word itself: behind it may stand a password whose separator was forgotten.
[[noreturn]] void RaiseUnknownProvider(const Text& provider) {
  constexpr std::string_view kWordCharacters = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789._-";
  Raise("This build has no driver for the provider " + provider.substr(0, provider.find_first_not_of(kWordCharacters)) +
        ".");
}

bool IsProvider(const Text& provider, std::initializer_list<std::string_view> names) {
  return std::any_of(names.begin(), names.end(),
                     [&](std::string_view name) { return StartsWithIgnoringCase(provider, name); });
}

/// Of the installed drivers whose names begin so, the one with the highest number behind that: "ODBC Driver 18 …".
std::optional<Text> NewestDriver(const std::vector<Text>& installed, std::string_view beginning) {
  std::optional<Text> newest;
  double newestNumber = -1;
  for (const Text& name : installed) {
    if (!StartsWithIgnoringCase(name, beginning)) continue;
    const double number = Val(std::string_view(name).substr(beginning.size()));
    if (number <= newestNumber) continue;
    newest = name;
    newestNumber = number;
  }
  return newest;
}

Text DriverFor(std::string_view database, const std::vector<Text>& installed,
               std::initializer_list<std::string_view> beginnings) {
  Text lookedFor;
  for (const std::string_view beginning : beginnings) {
    if (const std::optional<Text> driver = NewestDriver(installed, beginning)) return *driver;
    lookedFor += (lookedFor.empty() ? "\"" : ", \"") + Text(Trim(beginning)) + "\"";
  }
  Raise("No ODBC driver for " + Text(database) + " is installed. Looked for drivers whose names begin with " +
        lookedFor + ".");
}

/// A switch of the connection string that is on.
bool IsOn(const Text& value) {
  return EqualsIgnoringCase(value, "SSPI") || EqualsIgnoringCase(value, "true") || EqualsIgnoringCase(value, "yes") ||
         value == "1";
}

/// What a driver calls a key of the connection string; empty where it has no such thing.
struct Word {
  std::string_view key;
  std::string_view driverKey;
};

struct DriverWords {
  std::array<Word, 4> words;
  std::string_view integratedSecurity;  // the whole entry
};

constexpr DriverWords kSqlServerWords = {
    .words = {{{"Data Source", "Server"}, {"Initial Catalog", "Database"}, {"User ID", "UID"}, {"Password", "PWD"}}},
    .integratedSecurity = "Trusted_Connection=Yes"};

/// Oracle has no catalogs; its user "/" is the one that the operating system knows.
constexpr DriverWords kOracleWords = {
    .words = {{{"Data Source", "DBQ"}, {"Initial Catalog", ""}, {"User ID", "UID"}, {"Password", "PWD"}}},
    .integratedSecurity = "UID=/"};

Text DriverKey(const DriverWords& driver, const Text& key) {
  for (const Word& word : driver.words) {
    if (EqualsIgnoringCase(word.key, key)) return Text(word.driverKey);
  }
  return key;
}

using Quote = Text (*)(const Text& value);

Text Translated(const ConnectionString& connectionString, const Text& driver, const DriverWords& words, Quote quoted) {
  Text text = "Driver={" + driver + "}";
  for (const auto& [key, value] : connectionString.entries()) {
    if (EqualsIgnoringCase(key, "Provider")) continue;
    if (EqualsIgnoringCase(key, "Integrated Security")) {
      if (IsOn(value)) text.append(";").append(words.integratedSecurity);
      continue;
    }
    const Text driverKey = DriverKey(words, key);
    if (!driverKey.empty()) text += ";" + driverKey + "=" + quoted(value);
  }
  return text;
}

/// A server as SQL Server's own drivers read it: [tcp:]host[\instance][,port].
struct ServerAddress {
  explicit ServerAddress(Text text) {
    if (StartsWithIgnoringCase(text, "tcp:")) text.erase(0, 4);
    const std::size_t comma = text.find(',');
    if (comma != Text::npos) port = Trim(std::string_view(text).substr(comma + 1));
    const Text server = Trim(std::string_view(text).substr(0, comma));
    const std::size_t backslash = server.find('\\');
    if (backslash != Text::npos) instance = server.substr(backslash + 1);
    host = server.substr(0, backslash);
    if (host == "." || EqualsIgnoringCase(host, "(local)")) host = "localhost";
  }

  Text host;
  Text instance;  // FreeTDS asks the server's browser for its port
  Text port;
};

/// The connection string in what FreeTDS needs, for the words of SQL Server to become its own.
ConnectionString ForFreeTds(const ConnectionString& connectionString) {
  ConnectionString adapted = connectionString;
  const Text server = connectionString.Value("Server");
  const ServerAddress address(server.empty() ? connectionString.Value("Data Source") : server);
  const bool namesPort = !address.port.empty();
  const bool asksBrowser = !namesPort && !address.instance.empty();
  adapted.Remove("Data Source");
  adapted.Put("Server", asksBrowser ? address.host + "\\" + address.instance : address.host);
  if (namesPort) adapted.Put("Port", address.port);
  const bool needsPort = !asksBrowser && adapted.Value("Port").empty();
  if (needsPort) adapted.Put("Port", "1433");
  if (adapted.Value("TDS_Version").empty()) adapted.Put("TDS_Version", "7.4");
  if (IsOn(adapted.Value("Encrypt"))) adapted.Put("Encryption", "require");
  adapted.Remove("Encrypt");  // the login alone is encrypted without being asked, where the server can
  return adapted;
}

DriverString ForSqlServer(const ConnectionString& connectionString, const Text& driver) {
  if (!StartsWithIgnoringCase(driver, "FreeTDS")) {
    return {Translated(connectionString, driver, kSqlServerWords, QuotedDriverValue), driver, ""};
  }
  const ConnectionString adapted = ForFreeTds(connectionString);
  return {Translated(adapted, driver, kSqlServerWords, QuotedFreeTdsValue) + ";", driver, ""};
}

/// What the caller wrote for the driver itself.
DriverString DriversOwn(const Text& text) {
  const ConnectionString read(text);
  return {text, read.Value("Driver"), read.Value("DSN")};
}

}  // namespace

DriverString DriverConnectString(const Text& connectionString, const std::vector<Text>& installedDrivers) {
  const ConnectionString read(connectionString);
  const Text provider = read.Value("Provider");
  if (provider.empty()) return DriversOwn(connectionString);
  if (IsProvider(provider, {"MSDASQL"})) return DriversOwn(WithoutEntry(connectionString, "Provider"));
  if (IsProvider(provider, {"SQLOLEDB", "MSOLEDBSQL", "SQLNCLI"})) {
    return ForSqlServer(read, DriverFor("SQL Server", installedDrivers,
                                        {"ODBC Driver ", "SQL Server Native Client ", "FreeTDS", "SQL Server"}));
  }
  if (IsProvider(provider, {"OraOLEDB.Oracle", "MSDAORA"})) {
    const Text driver = DriverFor("Oracle", installedDrivers, {"Oracle"});
    return {Translated(read, driver, kOracleWords, QuotedDriverValue), driver, ""};
  }
  RaiseUnknownProvider(provider);
}

Text WithoutDeclareFetch(const Text& driverString) {
  const Text text = WithoutEntry(WithoutEntry(driverString, "UseDeclareFetch"), "B6");  // B6 is its short name
  return text + ";UseDeclareFetch=0";
}

Text QuotedDriverValue(const Text& value) {
  const bool hasMark = value.find_first_of(";{}") != Text::npos;
  const bool hasBlankEnd = !value.empty() && (value.front() == ' ' || value.back() == ' ');
  if (!hasMark && !hasBlankEnd) return value;
  return "{" + Replaced(value, "}", "}}") + "}";
}

Text QuotedFreeTdsValue(const Text& value) {
  const bool needsBraces = value.starts_with('{') || value.find(';') != Text::npos;
  if (!needsBraces) return value;
  if (value.find("};") != Text::npos) {
    Raise("FreeTDS takes no value that holds a closing brace in front of a semicolon. Change the password.");
  }
  return "{" + value + "}";
}

std::vector<Text> PasswordsOf(const Text& connectionString) {
  std::vector<Text> passwords;
  for (const auto& [key, value, written] : EntriesOf(connectionString)) {
    const bool isPassword = EqualsIgnoringCase(key, "Password") || EqualsIgnoringCase(key, "PWD");
    if (!isPassword || value.empty()) continue;
    passwords.push_back(written);
    passwords.push_back(value);
  }
  std::sort(passwords.begin(), passwords.end(), [](const Text& a, const Text& b) { return a.size() > b.size(); });
  return passwords;
}

}  // namespace zenqay
