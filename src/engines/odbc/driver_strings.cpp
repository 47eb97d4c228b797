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

Text Translated(const ConnectionString& connectionString, const Text& driver, const DriverWords& words) {
  Text text = "Driver={" + driver + "}";
  for (const auto& [key, value] : connectionString.entries()) {
    if (EqualsIgnoringCase(key, "Provider")) continue;
    if (EqualsIgnoringCase(key, "Integrated Security")) {
      if (IsOn(value)) text.append(";").append(words.integratedSecurity);
      continue;
    }
    const Text driverKey = DriverKey(words, key);
    if (!driverKey.empty()) text += ";" + driverKey + "=" + QuotedDriverValue(value);
  }
  return text;
}

}  // namespace

Text DriverConnectString(const Text& connectionString, const std::vector<Text>& installedDrivers) {
  const ConnectionString read(connectionString);
  const Text provider = read.Value("Provider");
  if (provider.empty()) return connectionString;
  if (IsProvider(provider, {"MSDASQL"})) return WithoutEntry(connectionString, "Provider");
  if (IsProvider(provider, {"SQLOLEDB", "MSOLEDBSQL", "SQLNCLI"})) {
    const Text driver = DriverFor("SQL Server", installedDrivers,
                                  {"ODBC Driver ", "SQL Server Native Client ", "FreeTDS", "SQL Server"});
    return Translated(read, driver, kSqlServerWords);
  }
  if (IsProvider(provider, {"OraOLEDB.Oracle", "MSDAORA"})) {
    return Translated(read, DriverFor("Oracle", installedDrivers, {"Oracle"}), kOracleWords);
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
