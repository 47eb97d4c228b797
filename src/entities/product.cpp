// Product: the installations of the ERP. Only generation 1 has the component, and its class is asked for under every
// generation.
#include "entities/passes.h"
#include "entities/row_literals.h"
#include "entities/sql_text.h"
#include "job/clsDataCopy.h"
#include "process/QTMDeclarations.h"
#include "process/labels.h"

namespace zenqay {
namespace {

constexpr const char* kColumns[] = {"PRODUCT",     "DESCRIPTION", "SITE",         "CONTRACT", "EFFECTIVE_DATE",
                                    "EXPIRY_DATE", "WARRANTY",    "WEXPIRY_DATE", "upd_flag"};

constexpr KeyField kKeys[] = {{"getInstallation", "PRODUCT"}};

constexpr EntitySource kSources[] = {
    {kGeneration1, "Kv40QTMtssmaInstallations.InstallationsManager", "tssma102", "STIT0088", kColumns, kKeys},
};
constexpr const EntitySource& kInstallations = kSources[0];

}  // namespace

const Entity clsDataCopy::kProduct = {
    .name = "product",
    .label = "STIT0090",
    .sources = kSources,
    .copy = &clsDataCopy::CopyProduct,
};

void clsDataCopy::CopyProduct(const Text& TableName, const Text& KXWBusComponent, std::int16_t SyncMethod) {
  if (SyncMethod == 1) CopyProductFull(TableName, KXWBusComponent);
  if (SyncMethod == 2) CopyProductChanged(TableName, KXWBusComponent);
}

void clsDataCopy::CopyProductFull(const Text& TableName, const Text& KXWBusComponent) {
  CopyFull(TableName, KXWBusComponent,
           {.entity = kProduct,
            .open =
                [this](ErpSource& erp) {
                  erp.manager = Manager(process_.components.Create(kInstallations.managerClass));
                  erp.erpLabel = GetLabel(process_, kInstallations.erpLabel);
                },
            .list = [](const Manager& products) { return products.List("", HighValueString(20)); },
            .apply = [&](const Row& row) { ApplyProductRow(row, TableName); }});
}

void clsDataCopy::CopyProductChanged(const Text& TableName, const Text& KXWBusComponent) {
  OnlyChangedPass products = {
      .entity = kProduct,
      .failureSource = "Product - Only Changed",
      .open =
          [this](ErpSource& erp) { erp.manager = Manager(process_.components.Create(kInstallations.managerClass)); },
      .ranges = {{"cins", "", HighValueString(20)}},
      .fields = {"cins", "desc", "cloc", "ccon", "cgua", "gdat", "sdat", "edat"},
      .listing = "NetListInstallations"};
  // Not among the members above: where memory runs out there, gcc 12 lets go of a member's members twice.
  products.erp.tableCode = kInstallations.tableCode;
  products.erp.erpLabel = GetLabel(process_, kInstallations.erpLabel);
  products.change = [&](const Row& row, const Text& action) {
    if (action != "D") return ApplyProductRow(row, TableName);
    CountDelete(SqlText("DELETE FROM ", TableName, " WHERE PRODUCT= ", Encoded(process_, row, "getInstallation")));
  };
  CopyOnlyChanged(TableName, KXWBusComponent, products);
}

void clsDataCopy::ApplyProductRow(const Row& row, const Text& TableName) {
  SqlText update("UPDATE ", TableName, " SET ");
  update.Add("PRODUCT = ", Encoded(process_, row, "getInstallation"));
  if (row.Has("hasDescription")) update.Add(", DESCRIPTION = ", Encoded(process_, row, "getDescription"));
  if (row.Has("hasLocation")) update.Add(", SITE = ", Encoded(process_, row, "getLocation"));
  if (row.Has("hasContract")) {
    // A blank contract clears the column here; the insert below stores it as it comes.
    const bool blank = Trim(row.GetText("getContract")).empty();
    update.Add(", CONTRACT = ", blank ? "NULL" : Encoded(process_, row, "getContract"));
  }
  if (row.Has("hasMaintenanceStartDate")) {
    update.Add(", EFFECTIVE_DATE = ", EncodedDate(row, "getMaintenanceStartDate"));
  }
  if (row.Has("hasMaintenanceEndDate")) update.Add(", EXPIRY_DATE = ", EncodedDate(row, "getMaintenanceEndDate"));
  if (row.Has("hasWarranty")) update.Add(", WARRANTY = ", Encoded(process_, row, "getWarranty"));
  if (row.Has("hasWarrantyExpiryDate")) update.Add(", WEXPIRY_DATE = ", EncodedDate(row, "getWarrantyExpiryDate"));
  update.Add(", upd_flag = 0 WHERE ");
  update.Add("PRODUCT =", Encoded(process_, row, "getInstallation"));
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
  insert.Add(Encoded(process_, row, "getInstallation"));
  if (row.Has("hasDescription")) insert.Add(",", Encoded(process_, row, "getDescription"));
  if (row.Has("hasLocation")) insert.Add(",", Encoded(process_, row, "getLocation"));
  if (row.Has("hasContract")) insert.Add(",", Encoded(process_, row, "getContract"));
  if (row.Has("hasMaintenanceStartDate")) insert.Add(",", EncodedDate(row, "getMaintenanceStartDate"));
  if (row.Has("hasMaintenanceEndDate")) insert.Add(",", EncodedDate(row, "getMaintenanceEndDate"));
  if (row.Has("hasWarranty")) insert.Add(",", Encoded(process_, row, "getWarranty"));
  if (row.Has("hasWarrantyExpiryDate")) insert.Add(",", EncodedDate(row, "getWarrantyExpiryDate"));
  insert.Add(",0)");
  CountInsert(insert);
}

}  // namespace zenqay
