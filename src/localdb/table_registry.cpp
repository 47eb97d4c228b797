#include "localdb/table_registry.h"

#include "localdb/local_connection.h"
#include "process/labels.h"
#include "process/logs.h"

namespace zenqay {
namespace {

std::size_t RegistryIndex(std::int32_t tableId) {
  if (tableId < 0 || tableId > kHighestTableId) throw RuntimeError(PlatformFault::SubscriptOutOfRange);
  return static_cast<std::size_t>(tableId);
}

Text RegistryQuery(const modDeclarations& process) {
  Text query = "SELECT a.ERPTableID,a.tableid, a.tablename, c.text from tstables a, tstreenodes b, tsi18ntext c";
  query += " where a.productid = N'" + process.ProductId + "'";
  if (!Trim(process.ErpGeneration).empty()) query += " AND b.groupid = N'" + process.ErpGeneration + "'";
  query += " AND a.tableid = b.tableid";
  query += " AND b.label = c.label";
  return query;
}

void StoreRow(modDeclarations& process, Recordset& row) {
  const std::int32_t tableId = row.FieldValue("TableID").AsInt32();
  TableEntry& entry = process.TableRegistry[RegistryIndex(tableId)];
  entry.ERPTableID = row.FieldValue("ERPTableID").Joined();
  entry.TableName = row.FieldValue("TableName").Joined();
  entry.Text = row.FieldValue("Text").Joined();
}

[[noreturn]] void RefuseEmptyRegistry(modDeclarations& process) {
  process.platform.ShowMessageBox("tstables or tstreenodes table is empty .. Cannot Proceed");
  const Text firstLine = GetLabel(process, "SLBL0321");
  const Text secondLine = GetLabel(process, "SLBL0026");
  throw RuntimeError(100, "zenqa Data Copy - Start", firstLine + "\r\n" + secondLine);
}

}  // namespace

void LoadTableRegistry(modDeclarations& process, const Text& ConnectionString, const Text& LocalDatabase,
                       std::int16_t DatabasePlatform) {
  // Behind a failure both go without a Close, once it is recorded.
  std::shared_ptr<Connection> connection;
  std::shared_ptr<Recordset> rows;
  try {
    connection = process.database.CreateConnection();
    rows = process.database.CreateRecordset();
    connection->PutConnectionString(ConnectionString);
    connection->Open();
    SelectDatabase(*connection, DatabasePlatform, LocalDatabase);
    if (!ReadTableRegistry(process, connection, *rows)) RefuseEmptyRegistry(process);
    connection->Close();
  } catch (...) {
    const RuntimeError error = ErrorInFlight();
    WriteErrorLog(process, error);
  }
}

bool ReadTableRegistry(modDeclarations& process, const std::shared_ptr<Connection>& connection, Recordset& rows) {
  rows.Open(RegistryQuery(process), connection, CursorType::Static, LockType::ReadOnly, CommandType::Unspecified);
  if (rows.AtEnd() && rows.AtBeginning()) return false;
  while (!rows.AtEnd()) {
    StoreRow(process, rows);
    rows.MoveNext();
  }
  rows.Close();
  return true;
}

Text GroupQuery(const modDeclarations& process) {
  return "SELECT tableid FROM tstreenodes WHERE groupid = '" + process.ErpGeneration + "'  AND tableid is not null";
}

Text GetTableCaption(const modDeclarations& process, std::int32_t tableId) {
  return process.TableRegistry[RegistryIndex(tableId)].Text;
}

Text GetErpTableId(const modDeclarations& process, std::int32_t tableId) {
  return Trim(process.TableRegistry[RegistryIndex(tableId)].ERPTableID);
}

Text GetTableName(const modDeclarations& process, std::int32_t tableId) {
  return Trim(process.TableRegistry[RegistryIndex(tableId)].TableName);
}

}  // namespace zenqay
