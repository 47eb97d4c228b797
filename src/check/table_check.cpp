#include "check/table_check.h"

#include "check/database_check.h"
#include "check/table_key.h"
#include "check/undated_objects.h"
#include "entities/entity.h"
#include "localdb/table_registry.h"
#include "postcopy/warranty_expiry.h"
#include "process/QTMDeclarations.h"
#include "startup/modStartUp.h"

namespace zenqay {
namespace {

/// One table on its way through the check; what is wrong with it is said as it is met.
class TableCheck {
 public:
  TableCheck(modDeclarations& process, const JobLine& line, const std::shared_ptr<Connection>& connection,
             CheckReport& report)
      : process_(process), line_(line), connection_(connection), report_(report) {}

  /// True when the table has a copy.
  bool Run(std::int32_t tableId);

 private:
  bool CheckColumns(const Text& table, std::span<const char* const> columns);
  void CheckKey(std::span<const KeyField> keys);
  void CheckExpiry();
  void CheckState();
  Text CurrentUpTo(const Recordset& state) const;

  void Mend(const Text& detail) {
    report_.Mend(step_, detail);
    isWell_ = false;
  }
  void Warn(const Text& detail) {
    report_.Warn(step_, detail);
    isWell_ = false;
  }

  modDeclarations& process_;
  const JobLine& line_;
  std::shared_ptr<Connection> connection_;
  CheckReport& report_;
  Text step_;
  Text name_;
  Text state_;
  bool isWell_ = true;
};

bool TableCheck::Run(std::int32_t tableId) {
  step_ = "table " + std::to_string(tableId);
  const bool isInRange = tableId >= 0 && tableId <= kHighestTableId;
  name_ = isInRange ? GetTableName(process_, tableId) : "";
  if (name_.empty()) {
    Mend("it has no row in tstables with a name and the productid " + process_.ProductId + ", no node in the group " +
         process_.ErpGeneration + ", or no caption in tsi18ntext");
    return false;
  }
  const Text caption = GetTableCaption(process_, tableId);
  step_ += " " + name_;
  if (!Trim(caption).empty()) {
    step_ += " (" + caption + ")";
  } else {
    Warn("its caption in tsi18ntext is blank");
  }
  const Entity* entity = FindEntity(name_);
  if (entity == nullptr) {
    Mend("there is no copy for a table of this name; the name in tstables decides which entity is copied");
    return false;
  }
  if (const EntitySource* source = entity->SourceUnder(process_.ErpGeneration)) {
    const bool isComplete = CheckColumns(name_, source->columns);
    if (isComplete && entity->hasPrimaryKey) CheckKey(source->keys);
    if (source->isFollowedByWarrantyExpiry) CheckExpiry();
  }
  CheckState();
  if (isWell_) report_.Ok(step_, state_);
  return true;
}

bool TableCheck::CheckColumns(const Text& table, std::span<const char* const> columns) {
  try {
    const Text missing = MissingColumns(process_.database, connection_, table, columns);
    if (missing.empty()) return true;
    Mend("the local table " + table + " lacks the column " + missing);
  } catch (const RuntimeError& error) {
    Mend("the local table " + table + ": " + CheckReport::ErrorText(error));
  }
  return false;
}

void TableCheck::CheckKey(std::span<const KeyField> keys) {
  std::set<Text> columns;
  Text shown;
  for (const KeyField& key : keys) {
    columns.insert(key.column);
    shown += (shown.empty() ? "" : ", ") + Text(key.column);
  }
  const std::optional<bool> hasKey = HasKeyOver(process_.database, line_, connection_, name_, columns);
  if (!hasKey.value_or(true)) {
    Warn("the local table " + name_ + " has no primary or unique key over " + shown +
         ": the whole table may be read for each row, and nothing keeps a row from standing twice");
  }
}

/// The expiry runs on SQL Server alone.
void TableCheck::CheckExpiry() {
  if (line_.platform != 1) return;
  bool isComplete = true;
  for (const ExpiryTable& table : kExpiryTables) {
    const Text step = Text("the warranty expiry needs ") + table.name;
    try {
      const Text missing = MissingColumns(process_.database, connection_, table.name, table.columns);
      if (missing.empty()) continue;
      Mend(step + " to have the column " + missing);
    } catch (const RuntimeError& error) {
      Mend(step + ": " + CheckReport::ErrorText(error));
    }
    isComplete = false;
  }
  if (!isComplete) return;
  try {
    const Text undated = UndatedObjects(process_.database, connection_);
    if (!undated.empty()) Warn(undated);
  } catch (const RuntimeError& error) {
    Mend("the join of the warranty expiry: " + CheckReport::ErrorText(error));
  }
}

void TableCheck::CheckState() {
  const std::shared_ptr<Recordset> state = process_.database.CreateRecordset();
  try {
    state->Open("SELECT * FROM tstables WHERE tablename = N'" + name_ + "'", connection_, CursorType::Static,
                LockType::ReadOnly, CommandType::SqlText);
    if (state->RecordCount() > 0 && state->FieldValue("in_use").EqualsNumber(1)) {
      Warn(
          "a copy of it is running, or died and left it in use; then: UPDATE tstables SET in_use = 0 WHERE "
          "tablename = '" +
          name_ + "'");
    }
    const Text currentUpTo = state->RecordCount() > 0 ? CurrentUpTo(*state) : "";
    state_ = currentUpTo.empty() ? "never copied" : "current up to " + currentUpTo;
    if (currentUpTo.empty() && line_.syncMethod == kOnlyChanged) {
      Warn("it was never copied: all changes since 1 January 1970 would be asked for; run a full copy first");
    }
    state->Close();
  } catch (const RuntimeError& error) {
    Mend("its row in tstables: " + CheckReport::ErrorText(error));
  }
}

/// As an only-changed pass reads it; empty when there is none. A full copy only overwrites it.
Text TableCheck::CurrentUpTo(const Recordset& state) const {
  const Value lutm = state.FieldValue("lutm");
  if (line_.syncMethod != kOnlyChanged && !lutm.Is<DateTime>()) return lutm.Joined();
  return lutm.IsGreaterThan(0) ? IsoText(lutm.AsDateTime()) : "";
}

/// The tables of the group, in the order in which an all-tables run copies them.
std::vector<std::int32_t> TablesOfGroup(modDeclarations& process, const std::shared_ptr<Connection>& connection) {
  const std::shared_ptr<Recordset> group = process.database.CreateRecordset();
  group->Open(GroupQuery(process), connection, CursorType::Static, LockType::ReadOnly, CommandType::SqlText);
  std::vector<std::int32_t> ids;
  for (; !group->AtEnd(); group->MoveNext()) ids.push_back(group->FieldValue("tableid").AsInt32());
  group->Close();
  return ids;
}

}  // namespace

std::vector<Text> CheckTables(modDeclarations& process, const JobLine& line,
                              const std::shared_ptr<Connection>& connection, CheckReport& report) {
  std::vector<std::int32_t> ids = {line.tableId};
  try {
    if (line.tableId == kAllTables) ids = TablesOfGroup(process, connection);
  } catch (const RuntimeError& error) {
    report.Mend("tables of the group", CheckReport::ErrorText(error));
    return {};
  }
  std::vector<Text> names;
  for (const std::int32_t id : ids) {
    TableCheck table(process, line, connection, report);
    if (table.Run(id)) names.push_back(GetTableName(process, id));
  }
  return names;
}

}  // namespace zenqay
