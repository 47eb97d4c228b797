#include "control/job_command.h"

#include <algorithm>

#include "control/exit_status.h"
#include "engines/connection_string.h"
#include "engines/odbc/driver_strings.h"

namespace zenqay {
namespace {

constexpr std::string_view kPlaceholder = "{password}";
constexpr std::string_view kSeparator = "{}";

/// As the platform's data access reads it: to its closing mark, which is doubled inside.
Text QuotedForProvider(const Text& password) {
  const bool isPlain = password.find_first_of(";\"'{}= ") == Text::npos;
  return isPlain ? password : "\"" + Replaced(password, "\"", "\"\"") + "\"";
}

/// A driver takes a quote for itself, and what reads the text before it for the start of a quoted value.
Text QuotedForDriver(const Text& password) {
  const Text quoted = QuotedDriverValue(password);
  const bool startsWithQuote = quoted.starts_with('"') || quoted.starts_with('\'');
  return startsWithQuote ? "{" + quoted + "}" : quoted;
}

/// The entries but for the passwords, as they are written.
std::vector<Text> OtherEntries(const Text& connection) {
  std::vector<Text> others;
  for (const ConnectionEntry& entry : EntriesOf(connection)) {
    const bool isPassword = EqualsIgnoringCase(entry.key, "Password") || EqualsIgnoringCase(entry.key, "PWD");
    if (!isPassword) others.push_back(entry.key + "=" + entry.written);
  }
  return others;
}

bool IsReadBack(const Text& connection, const DatabaseSettings& database, const Text& password) {
  try {
    if (OtherEntries(connection) != OtherEntries(database.connection)) return false;
    const std::vector<ConnectionEntry> entries = EntriesOf(connection);
    return std::any_of(entries.begin(), entries.end(), [&](const auto& entry) { return entry.value == password; });
  } catch (const RuntimeError&) {
    return false;
  }
}

}  // namespace

Text ConnectionWithPassword(const DatabaseSettings& database, const Text& password) {
  const Text provider = ConnectionString(database.connection).Value("Provider");
  const bool readByDriver = provider.empty() || StartsWithIgnoringCase(provider, "MSDASQL");
  const Text quoted = readByDriver ? QuotedForDriver(password) : QuotedForProvider(password);
  if (quoted.find(kSeparator) != Text::npos) {
    throw WrongUsage(database.place + ": the password of [database." + database.name +
                     "] holds \"{}\", which separates the items of a job's line, so that no job can be given it: "
                     "change the password, or leave it to the driver (a DSN, PGPASSFILE)");
  }
  Text connection = database.connection;
  if (connection.find(kPlaceholder) != Text::npos) {
    connection = Replaced(connection, kPlaceholder, quoted);
  } else {
    if (!connection.ends_with(';')) connection += ';';
    connection += (readByDriver ? "PWD=" : "Password=") + quoted;
  }
  if (IsReadBack(connection, database, password)) return connection;
  throw WrongUsage(database.place + ": the connection string of [database." + database.name +
                   "] would not be read back as it was made with the password in it: write {password} as the whole "
                   "value of the password's key");
}

Text JobLineOf(const JobFile& file, const JobSettings& job, const Text& connection, std::int32_t tableId,
               Method method) {
  const DatabaseSettings& database = file.DatabaseOf(job);
  const ErpSettings& erp = file.ErpOf(job);
  struct Item {
    const char* what;
    Text value;
  };
  std::vector<Item> items = {
      {"the connection string", connection},
      {"the database's name", database.catalogue},
      {"the table id", std::to_string(tableId)},
      {"the method", std::to_string(static_cast<int>(method))},
      {"the log directory", job.logs},
      {"the bus component", erp.busComponent},
      {"the status handle", std::to_string(job.statusHandle)},
      {"the free text", ""},
      {"the platform", std::to_string(database.platform)},
      {"the status instance", std::to_string(job.statusInstance)},
      {"the generation", erp.generation},
  };
  // A line of exactly twelve items asks for no status component.
  if (!job.hasStatusComponent) items.push_back({"the switch of the status component", ""});
  Text line;
  for (const Item& item : items) {
    if (item.value.find(kSeparator) != Text::npos) {
      throw WrongUsage(job.place + ": the line of [job." + job.name + "] would be split inside " + item.what +
                       ", which holds \"{}\"");
    }
    line += (&item == &items.front() ? "" : Text(kSeparator)) + item.value;
  }
  return line;
}

}  // namespace zenqay
