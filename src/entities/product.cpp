// Product: the installations of the ERP. Only generation 1 has the component, and its class is asked for under every
// generation.
#include "job/clsDataCopy.h"
#include "localdb/sql_literals.h"
#include "process/QTMDeclarations.h"
#include "process/labels.h"

namespace zenqay {
namespace {

constexpr const char* kProductLabel = "STIT0090";
constexpr const char* kErpLabel = "STIT0088";

}  // namespace

void clsDataCopy::CopyProduct(const Text& TableName, const Text& KXWBusComponent, std::int16_t SyncMethod) {
  if (SyncMethod == 1) CopyProductFull(TableName, KXWBusComponent);
  if (SyncMethod == 2) CopyProductChanged(TableName, KXWBusComponent);
}

void clsDataCopy::CopyProductFull(const Text& TableName, const Text& KXWBusComponent) {
  CopyFull(TableName, KXWBusComponent,
           {.entityLabel = kProductLabel,
            .open =
                [this](ErpSource& erp) {
                  erp.manager = Manager(process_.components.Create(kInstallationsManager1));
                  erp.erpLabel = GetLabel(process_, kErpLabel);
                },
            .list = [](const Manager& products) { return products.List("", HighValueString(20)); },
            .apply = [&](const Row& row) { ApplyProductRow(row, TableName); }});
}

void clsDataCopy::CopyProductChanged(const Text& TableName, const Text& KXWBusComponent) {
  CopyOnlyChanged(
      TableName, KXWBusComponent,
      {.entityLabel = kProductLabel,
       .failureSource = "Product - Only Changed",
       .known = {.tableCode = "tssma102", .erpLabel = GetLabel(process_, kErpLabel)},
       .open = [this](ErpSource& erp) { erp.manager = Manager(process_.components.Create(kInstallationsManager1)); },
       .ranges = {{"cins", "", HighValueString(20)}},
       .fields = {"cins", "desc", "cloc", "ccon", "cgua", "gdat", "sdat", "edat"},
       .listing = "NetListInstallations",
       .change =
           [&](const Row& row, const Text& action) {
             if (action != "D") return ApplyProductRow(row, TableName);
             CountDelete(SqlText("DELETE FROM ", TableName, " WHERE PRODUCT= ", Encoded(row, "getInstallation")));
           }});
}

void clsDataCopy::ApplyProductRow(const Row& row, const Text& TableName) {
  SqlText update("UPDATE ", TableName, " SET ");
  update.Add("PRODUCT = ", Encoded(row, "getInstallation"));
  if (row.Has("hasDescription")) update.Add(", DESCRIPTION = ", Encoded(row, "getDescription"));
  if (row.Has("hasLocation")) update.Add(", SITE = ", Encoded(row, "getLocation"));
  if (row.Has("hasContract")) {
    // A blank contract clears the column here; the insert below stores it as it comes.
    const bool blank = Trim(row.GetText("getContract")).empty();
    update.Add(", CONTRACT = ", blank ? "NULL" : Encoded(row, "getContract"));
  }
  if (row.Has("hasMaintenanceStartDate")) {
    update.Add(", EFFECTIVE_DATE = ", EncodedDate(row, "getMaintenanceStartDate"));
  }
  if (row.Has("hasMaintenanceEndDate")) update.Add(", EXPIRY_DATE = ", EncodedDate(row, "getMaintenanceEndDate"));
  if (row.Has("hasWarranty")) update.Add(", WARRANTY = ", Encoded(row, "getWarranty"));
  if (row.Has("hasWarrantyExpiryDate")) update.Add(", WEXPIRY_DATE = ", EncodedDate(row, "getWarrantyExpiryDate"));
  update.Add(", upd_flag = 0 WHERE ");
  update.Add("PRODUCT =", Encoded(row, "getInstallation"));
  if (CountUpdate(update)) return;

  SqlText insert("INSERT INTO ", TableName, " (PRODUCT ");
  if (row.Has("hasDescription")) insert.Add(",DESCRIPTION ");
  if (row.Has("hasLocation")) insert.Add(",SITE");
  if (row.Has("hasContract")) insert.Add(",CONTRACT");
  if (row.Has("hasMaintenanceStartDate")) insert.Add(", EFFECTIVE_DATE ");
  if (row.Has("hasMaintenanceEndDate")) insert.Add(", EXPIRY_DATE ");
  if (row.Has("hasWarranty")) insert.Add(",WARRANTY ");
  if (row.Has("hasWarrantyExpiryDate")) insert.Add(",WEXPIRY_DATE ");
  insert.Add(",upd_flag )VALUES (");
  insert.Add(Encoded(row, "getInstallation"));
  if (row.Has("hasDescription")) insert.Add(",", Encoded(row, "getDescription"));
  if (row.Has("hasLocation")) insert.Add(",", Encoded(row, "getLocation"));
  if (row.Has("hasContract")) insert.Add(",", Encoded(row, "getContract"));
  if (row.Has("hasMaintenanceStartDate")) insert.Add(",", EncodedDate(row, "getMaintenanceStartDate"));
  if (row.Has("hasMaintenanceEndDate")) insert.Add(",", EncodedDate(row, "getMaintenanceEndDate"));
  if (row.Has("hasWarranty")) insert.Add(",", Encoded(row, "getWarranty"));
  if (row.Has("hasWarrantyExpiryDate")) insert.Add(",", EncodedDate(row, "getWarrantyExpiryDate"));
  insert.Add(",0)");
  CountInsert(insert);
}

}  // namespace zenqay
