// The full copy: mark every local row, apply every row that the ERP lists, sweep what was not met.
#include "base/numbers.h"
#include "erp/date_bridge.h"
#include "erp/session.h"
#include "job/clsDataCopy.h"
#include "localdb/copy_state.h"
#include "process/labels.h"
#include "process/logs.h"

namespace zenqay {

void clsDataCopy::CopyFull(const Text& TableName, const Text& KXWBusComponent, const FullCopy& entity) {
  icount = 0;
  ErpSource erp;
  Enumeration rows;
  try {
    entity.open(erp);
    RegisterManager(process_, erp.manager.object());
    erp.manager.Initialize(KXWBusComponent);
    rows = entity.list(erp.manager);
    // The next only-changed pass starts from here: after the listing was asked for, before its first row is read.
    lutm = GetCurrentSqlDateTime(process_);
    if (!rows.IsNothing()) {
      process_.LocalConnection->Execute("UPDATE " + TableName + " SET upd_flag = 1 ");
      while (rows.HasMoreElements()) entity.apply(rows.NextElement());
      icount = CheckedAdd(icount, ucount);
      ucount = 0;
      process_.LocalConnection->Execute("DELETE FROM " + TableName + " WHERE upd_flag = 1");
      SetLastUpdateTime(process_, TableName, lutm);
      WriteTableRunLog(process_, TableName, icount, 0, 0);
    }
    erp.manager.Close();
    rows.Release();
  } catch (...) {
    const RuntimeError error = ErrorInFlight();
    WriteErrorLog(process_, error);
    erp.manager.Close();
    rows.Release();
    RaiseCopyFailure(error, GetLabel(process_, entity.entityLabel), entity.entityLabel, erp.erpLabel);
  }
}

void clsDataCopy::RaiseCopyFailure(const RuntimeError& error, const Text& failureSource, const Text& entityLabel,
                                   const Text& erpLabel) {
  const Text source = FilledLabel(process_, "SLBL0456", failureSource);
  const Text entity = GetLabel(process_, entityLabel);
  const Text description = FormatFailedMessage(entity, erpLabel);
  throw RuntimeError(CheckedAdd(error.number(), 100), source, description);
}

}  // namespace zenqay
