#include "localdb/copy_state.h"

#include "base/numbers.h"
#include "contracts/named_calls.h"
#include "localdb/sql_literals.h"
#include "process/QTMDeclarations.h"
#include "process/labels.h"
#include "process/logs.h"

namespace zenqay {
namespace {

/// The name goes in as it is: a quote in it breaks this query and the two updates of the flag, but not the inserts.
Text StateQuery(const Text& tableName) {
  return "SELECT * FROM tstables WHERE tablename = N'" + tableName + "'";
}

void OpenStateQuery(modDeclarations& process, Recordset& row, const Text& query) {
  row.Open(query, process.LocalConnection, CursorType::Keyset, LockType::Optimistic, CommandType::SqlText);
}

Text TodayLiteral(modDeclarations& process) {
  const Text midnight = IsoText(process.platform.Now().DateOnly());
  if (process.DatabasePlatform == 2) return "TO_DATE( '" + midnight + "','yyyy-mm-dd HH24:MI:SS')";
  return "'" + midnight + "'";
}

void StoreCopyInProgress(modDeclarations& process, const Text& tableName, const Text& flag) {
  const Text today = TodayLiteral(process);
  // No blank in front of WHERE: the statement stands as it is.
  const Text update = "UPDATE tstables SET in_use = " + flag + "WHERE tablename = N'" + tableName + "'";
  std::int16_t recordsAffected = 0;
  process.LocalConnection->Execute(update, recordsAffected);
  if (recordsAffected != 0) return;
  const Text insert = "INSERT INTO tstables(tablename,lutm,in_use, reqd) VALUES(" +
                      EncodeSqlString(process, tableName) + "," + today + "," + flag + ",1)";
  process.LocalConnection->Execute(insert, recordsAffected);
}

void SetMinutesOf(modDeclarations& process, const Object& date, int minute, std::int32_t zoneOffset) {
  const Text product = process.ProductId;
  if (product == "4010" || product == "4009") {
    CallNamed(date, "setMinutes", minute - zoneOffset);
  } else if (product == "1028") {
    CallNamed(date, "setMinutes", minute);
  }
}

}  // namespace

bool IsCopyInProgress(modDeclarations& process, const Text& tableName) {
  const Text query = StateQuery(tableName);
  std::shared_ptr<Recordset> row;
  try {
    row = process.database.CreateRecordset();
    OpenStateQuery(process, *row, query);
    const bool inUse = row->RecordCount() > 0 && row->FieldValue("in_use").EqualsNumber(1);
    row->Close();
    return inUse;
  } catch (...) {
    const RuntimeError error = ErrorInFlight();
    WriteErrorLog(process, error);
    if (row != nullptr && row->State() != 0) row->Close();
    const Text description = FilledLabel(process, "SLBL0041", tableName);
    throw RuntimeError(CheckedAdd(error.number(), 100), "Data Copy In Progress", description);
  }
}

void SetCopyInProgress(modDeclarations& process, const Text& tableName) {
  StoreCopyInProgress(process, tableName, "1");
}

void ReleaseCopyInProgress(modDeclarations& process, const Text& tableName) {
  try {
    StoreCopyInProgress(process, tableName, "0");
  } catch (...) {
    const RuntimeError error = ErrorInFlight();
    process.platform.NameCause("table \"" + tableName + "\" may still be marked as in use: " + error.description());
    throw;
  }
}

void SetLastUpdateTime(modDeclarations& process, const Text& tableName, const Text& lutm) {
  const Text update =
      "UPDATE tstables SET lutm  = " + lutm + " WHERE tablename = " + EncodeSqlString(process, tableName);
  std::int16_t recordsAffected = 0;
  process.LocalConnection->Execute(update, recordsAffected);
  if (recordsAffected != 0) return;
  const Text insert = "INSERT INTO tstables(tablename,lutm, reqd, in_use) VALUES(" +
                      EncodeSqlString(process, tableName) + "," + lutm + ", 0, 0)";
  process.LocalConnection->Execute(insert, recordsAffected);
}

Object GetLastUpdateDate(modDeclarations& process, const Text& tableName) {
  const std::shared_ptr<Recordset> row = process.database.CreateRecordset();
  const Text query = StateQuery(tableName);
  const Object date = process.components.Create(kDateClass);
  OpenStateQuery(process, *row, query);
  const std::int32_t zoneOffset = CallForInt32(date, "getTimeZoneOffset");
  if (row->RecordCount() > 0 && row->FieldValue("lutm").IsGreaterThan(0)) {
    const DateTimeParts stored = row->FieldValue("lutm").AsDateTime().Parts();
    CallNamed(date, "setDate", stored.day);
    CallNamed(date, "setmonth", stored.month - 1);
    CallNamed(date, "SetYear", stored.year - 1900);
    CallNamed(date, "setHours", stored.hour);
    CallNamed(date, "setSeconds", stored.second);
    SetMinutesOf(process, date, stored.minute, zoneOffset);
  } else {
    CallNamed(date, "setDate", 1);
    CallNamed(date, "setmonth", 0);
    CallNamed(date, "SetYear", 70);
  }
  row->Close();
  return date;
}

}  // namespace zenqay
