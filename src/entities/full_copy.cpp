// The full copy: mark every local row, apply every row that the ERP lists, sweep what was not met.
#include "base/numbers.h"
#include "entities/passes.h"
#include "erp/date_bridge.h"
#include "erp/session.h"
#include "job/clsDataCopy.h"
#include "localdb/copy_state.h"
#include "localdb/sweep_guard.h"
#include "process/labels.h"
#include "process/logs.h"

namespace zenqay {

void clsDataCopy::CopyFull(const Text& TableName, const Text& KXWBusComponent, const FullCopy& pass) {
  icount = 0;
  ErpSource erp;
  // The listing and its last row outlive the closing of the manager, also behind a failure.
  Enumeration rows;
  Row row;
  RowKey key(KeysOf(process_, pass.entity));
  try {
    OpenSource(process_, pass.entity, pass.open, erp);
    erp.manager = Manager(RegisterManager(process_, erp.manager.object()));
    erp.manager.Initialize(KXWBusComponent);
    rows = pass.list(erp.manager);
    // The next only-changed pass starts from here: after the listing was asked for, before its first row is read.
    lutm = GetCurrentSqlDateTime(process_);
    if (!rows.IsNothing()) {
      SweepGuard sweepGuard(process_, TableName);
      process_.LocalConnection->Execute("UPDATE " + TableName + " SET upd_flag = 1 ");
      RowCounts counts;
      while (rows.HasMoreElements()) {
        row = rows.NextElement(&key);
        NamingRow(key, [&] { pass.apply(row); });
        counts = {.met = counts.met + 1, .inserted = icount, .updated = ucount};
        process_.listener->RowDone(counts);
      }
      icount = CheckedAdd(icount, ucount);
      ucount = 0;
      sweepGuard.RequireWithinLimit();
      Sweep(TableName, counts);
      SetLastUpdateTime(process_, TableName, lutm);
      WriteTableRunLog(process_, TableName, icount, 0, 0);
    }
    erp.manager.Close();
    rows.Release();
    row.Release();
  } catch (...) {
    const RuntimeError error = ErrorInFlight();
    process_.interruption->Forbid();
    WriteErrorLog(process_, error);
    erp.manager.Close();
    rows.Release();
    row.Release();
    RaiseCopyFailure(error, GetLabel(process_, pass.entity.label), pass.entity, erp.erpLabel);
  }
}

void clsDataCopy::Sweep(const Text& TableName, RowCounts counts) {
  const bool isCounted = process_.listener->wantsSweptRows();
  counts.deleted =
      process_.LocalConnection->Run("DELETE FROM " + TableName + " WHERE upd_flag = 1",
                                    isCounted ? Connection::Count::AskedAside : Connection::Count::NotAsked);
  if (isCounted) process_.listener->PassDone(counts, counts.deleted);
}

void clsDataCopy::RaiseCopyFailure(const RuntimeError& error, const Text& failureSource, const Entity& entity,
                                   const Text& erpLabel) {
  const Text source = FilledLabel(process_, "SLBL0456", failureSource);
  const Text caption = GetLabel(process_, entity.label);
  const Text description = FormatFailedMessage(caption, erpLabel);
  throw RuntimeError(CheckedAdd(error.number(), 100), source, description);
}

}  // namespace zenqay
