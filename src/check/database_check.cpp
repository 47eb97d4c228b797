#include "check/database_check.h"

#include <array>
#include <filesystem>

#include "engines/connection_string.h"
#include "localdb/local_connection.h"
#include "localdb/table_registry.h"
#include "system/output_file.h"
#include "system/paths.h"

namespace zenqay {
namespace {

constexpr std::array kSteps = {"driver",         "login",    "database",
                               "control tables", "registry", "tables and their ERP components"};

/// Leaves out the steps behind `failed`, the position of one in kSteps.
void LeaveOutBehind(std::size_t failed, CheckReport& report) {
  for (std::size_t step = failed + 1; step < kSteps.size(); ++step) {
    report.LeaveOut(kSteps[step], Text("the ") + kSteps[failed]);
  }
}

Text ProviderOf(const JobLine& line) {
  const Text provider = ConnectionString(line.connectionString).Value("Provider");
  return provider.empty() ? "named by the connection string itself" : provider;
}

/// A database that could be asked has left items in the error collection; a driver that is missing has not.
bool Connect(const JobLine& line, const std::shared_ptr<Connection>& connection, CheckReport& report) {
  connection->PutConnectionString(line.connectionString + ";Mode=Read");
  try {
    connection->Open();
    report.Ok("driver", ProviderOf(line));
    return true;
  } catch (const RuntimeError& error) {
    const std::shared_ptr<Errors> items = connection->ErrorCollection();
    if (items->count() == 0) {
      report.Mend("driver", CheckReport::ErrorText(error));
      LeaveOutBehind(0, report);
      return false;
    }
    report.Ok("driver", ProviderOf(line));
    for (const ProviderError& item : *items) {
      report.Mend("login", CheckReport::ErrorText(item));
    }
    LeaveOutBehind(1, report);
    return false;
  }
}

bool IsFile(const JobLine& line) {
  return EqualsIgnoringCase(ConnectionString(line.connectionString).Value("Provider"), "SQLite");
}

/// A job also writes: the file itself, and its log beside it.
void CheckFileIsWritable(const Text& dataSource, CheckReport& report) {
  const std::filesystem::path path = std::filesystem::absolute(NativePath(dataSource));
  if (!MayWriteFile(path.string())) {
    report.Mend("login", "the file " + path.string() + " may not be written");
  } else if (!MayWriteIn(path.parent_path().string())) {
    report.Mend("login", "the directory of " + path.string() + " may not be written, where its log stands");
  } else {
    report.Ok("login", path.string());
  }
}

void CheckLogin(const JobLine& line, CheckReport& report) {
  if (IsFile(line)) {
    CheckFileIsWritable(ConnectionString(line.connectionString).Value("Data Source"), report);
  } else {
    report.Ok("login");
  }
}

bool SelectNamedDatabase(const JobLine& line, Connection& connection, CheckReport& report) {
  return report.Step("database", [&] {
    SelectDatabase(connection, line.platform, line.database);
    const Text name = line.platform == 1 ? connection.DefaultDatabase() : line.database;
    return Trim(name).empty() ? Text("that of the connection") : name;
  });
}

bool CheckControlTables(modDeclarations& process, const std::shared_ptr<Connection>& connection, CheckReport& report) {
  struct ControlTable {
    const char* name;
    std::vector<const char*> columns;
  };
  const std::array<ControlTable, 3> tables = {{
      {"tstables", {"tablename", "ERPTableID", "tableid", "productid", "lutm", "in_use", "reqd"}},
      {"tstreenodes", {"groupid", "tableid", "label"}},
      {"tsi18ntext", {"label", "text"}},
  }};
  bool complete = true;
  for (const ControlTable& table : tables) {
    const Text step = Text("control table ") + table.name;
    try {
      const Text missing = MissingColumns(process.database, connection, table.name, table.columns);
      if (missing.empty()) {
        report.Ok(step);
        continue;
      }
      report.Mend(step, "it lacks the column " + missing);
    } catch (const RuntimeError& error) {
      report.Mend(step, CheckReport::ErrorText(error));
    }
    complete = false;
  }
  return complete;
}

/// Proves that the database has locks that keep others out, by one that no job asks for. Beside a file it would leave
/// the file of its locks behind, so there it is only said.
void CheckLock(const JobLine& line, Connection& connection, CheckReport& report) {
  constexpr const char* kNoTable = "zenqay-dbsync-check";
  report.Step("table lock", [&]() -> Text {
    if (IsFile(line)) return "a file beside the database";
    if (connection.TakeLock(kNoTable)) connection.GiveLockBack(kNoTable);
    return "the database's";
  });
}

Text RegisteredTables(const modDeclarations& process) {
  Text names;
  for (const TableEntry& entry : process.TableRegistry) {
    if (!Trim(entry.TableName).empty()) names += (names.empty() ? "" : ", ") + Trim(entry.TableName);
  }
  return names;
}

bool CheckRegistry(modDeclarations& process, const std::shared_ptr<Connection>& connection, CheckReport& report) {
  constexpr const char* kStep = "registry";
  const std::shared_ptr<Recordset> rows = process.database.CreateRecordset();
  try {
    if (ReadTableRegistry(process, connection, *rows)) {
      report.Ok(kStep, RegisteredTables(process));
      return true;
    }
    report.Mend(kStep, "no row of tstables with the productid " + process.ProductId + " has a node in the group " +
                           process.ErpGeneration + " of tstreenodes whose label stands in tsi18ntext");
  } catch (const RuntimeError& error) {
    const bool isTableId = error.number() == static_cast<std::int32_t>(PlatformFault::SubscriptOutOfRange);
    report.Mend(kStep, CheckReport::ErrorText(error) +
                           (isTableId ? " (a tableid of this product's rows in tstables must be 0 to 128)" : ""));
  }
  return false;
}

}  // namespace

bool CheckDatabase(modDeclarations& process, const JobLine& line, std::shared_ptr<Connection>& connection,
                   CheckReport& report) {
  connection = process.database.CreateConnection();
  if (!Connect(line, connection, report)) return false;
  CheckLogin(line, report);
  std::size_t failed = 0;
  if (!SelectNamedDatabase(line, *connection, report)) {
    failed = 2;
  } else if (!CheckControlTables(process, connection, report)) {
    failed = 3;
  } else if (!CheckRegistry(process, connection, report)) {
    failed = 4;
  }
  if (failed > 0) LeaveOutBehind(failed, report);
  if (process.safeguards.lock != TableLock::NotUsed) CheckLock(line, *connection, report);
  return failed == 0;
}

Text MissingColumns(Database& database, const std::shared_ptr<Connection>& connection, const Text& table,
                    std::span<const char* const> columns) {
  const std::shared_ptr<Recordset> none = database.CreateRecordset();
  none->Open("SELECT * FROM " + table + " WHERE 1 = 0", connection, CursorType::Static, LockType::ReadOnly,
             CommandType::SqlText);
  Text missing;
  for (const char* column : columns) {
    try {
      none->FieldValue(column);
    } catch (const RuntimeError& error) {
      const auto fault = static_cast<DatabaseFault>(error.number());
      if (fault == DatabaseFault::NoCurrentRow) continue;  // the column is known
      if (fault != DatabaseFault::NoSuchField) throw;
      missing += Text(missing.empty() ? "" : ", ") + column;
    }
  }
  none->Close();
  return missing;
}

}  // namespace zenqay
