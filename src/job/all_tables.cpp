// The all-tables run.
#include "job/clsDataCopy.h"
#include "localdb/local_connection.h"
#include "localdb/table_registry.h"

namespace zenqay {

void clsDataCopy::CopyAllTables(const Text& ConnectionString, const Text& LocalDatabase, std::int16_t SyncMethod,
                                const Text& LogFilePath, const Text& KXWBusComponent, const Value& DatabasePlatform) {
  process_.DatabasePlatform = DatabasePlatform.AsInt16();
  OpenLocalConnection(process_, ConnectionString, LocalDatabase);

  const std::shared_ptr<Recordset> group = process_.database.CreateRecordset();
  group->Open(GroupQuery(process_), process_.LocalConnection, CursorType::Keyset, LockType::Optimistic,
              CommandType::Unspecified);

  // The field object stands in the events for the table id; its value is that of the current row.
  const Value tableId = Object(std::make_shared<Field>(group, "TableID"));
  while (!group->AtEnd() && !process_.interruption->isRequested()) {
    SetRunLogPath(LogFilePath, tableId.AsInt32());
    const CopyResult result =
        CopyGuardedTable(ConnectionString, LocalDatabase, tableId.AsInt16(), SyncMethod, LogFilePath, KXWBusComponent);
    if (result == CopyResult::Stopped) break;
    RaiseResult(result, tableId);
    group->MoveNext();
  }
  CloseLocalConnection(process_);
  RaiseDone();
}

}  // namespace zenqay
