// Object: the numbered units of a configuration, with a key of three columns. Only generation 3 has the component; the
// full copy asks for it under every generation, the only-changed pass under generation 3 alone.
#include "job/clsDataCopy.h"
#include "localdb/sql_literals.h"
#include "process/QTMDeclarations.h"
#include "process/labels.h"

namespace zenqay {
namespace {

constexpr const char* kObjectLabel = "STIT0015";
constexpr const char* kErpLabel = "STIT0095";

constexpr std::int16_t kLowestNumber = 0;
constexpr std::int16_t kHighestNumber = 9999;

}  // namespace

void clsDataCopy::CopyObject(const Text& TableName, const Text& KXWBusComponent, std::int16_t SyncMethod) {
  if (SyncMethod == 1) CopyObjectFull(TableName, KXWBusComponent);
  if (SyncMethod == 2) CopyObjectChanged(TableName, KXWBusComponent);
}

void clsDataCopy::CopyObjectFull(const Text& TableName, const Text& KXWBusComponent) {
  CopyFull(TableName, KXWBusComponent,
           {.entityLabel = kObjectLabel,
            .open =
                [this](ErpSource& erp) {
                  erp.manager = Manager(process_.components.Create(kObjectsManager3));
                  erp.erpLabel = GetLabel(process_, kErpLabel);
                },
            .list =
                [](const Manager& objects) {
                  return objects.List("", HighValueString(8), "", HighValueString(50), kLowestNumber, kHighestNumber);
                },
            .apply = [&](const Row& row) { ApplyObjectRow(row, TableName); }});
}

void clsDataCopy::CopyObjectChanged(const Text& TableName, const Text& KXWBusComponent) {
  CopyOnlyChanged(TableName, KXWBusComponent,
                  {.entityLabel = kObjectLabel,
                   .failureSource = "Objects - Only Changed",
                   .open =
                       [this](ErpSource& erp) {
                         if (process_.ErpGeneration != kGeneration3) return;
                         erp.manager = Manager(process_.components.Create(kObjectsManager3));
                         erp.tableCode = "tscfg200";
                         erp.erpLabel = GetLabel(process_, kErpLabel);
                       },
                   .parameterCount = 3,
                   .ranges = {{"ccfg", "", HighValueString(8)},
                              {"crob", "", HighValueString(50)},
                              {"oseq", kLowestNumber, kHighestNumber}},
                   .fields = {"ccfg", "crob", "oseq", "desc", "item", "cser", "indt", "dldt", "cwte"},
                   .listing = "NetListObjects",
                   .change =
                       [&](const Row& row, const Text& action) {
                         if (action != "D") return ApplyObjectRow(row, TableName);
                         SqlText deletion("DELETE FROM ", TableName);
                         deletion.Add(" WHERE SITE = ", Encoded(row, "getConfiguration"));
                         deletion.Add(" AND OBJECT = ", Encoded(row, "GetObject"));
                         deletion.Add(" AND OBJECTNR = ", Encoded(row, "GetObjectNumber"));
                         CountDelete(deletion);
                       }});
}

void clsDataCopy::ApplyObjectRow(const Row& row, const Text& TableName) {
  SqlText update("UPDATE ", TableName, " SET ");
  update.Add("SITE = ", Encoded(row, "getConfiguration"));
  update.Add(",OBJECT = ", Encoded(row, "GetObject"));
  update.Add(", OBJECTNR = ", Encoded(row, "GetObjectNumber"));
  if (row.Has("hasDescription")) update.Add(", OBJECTDESC = ", Encoded(row, "getDescription"));
  if (row.Has("hasDerivedFromItem")) update.Add(", ITEM = ", Encoded(row, "getDerivedFromItem"));
  if (row.Has("hasDerivedFromItemDescription")) {
    update.Add(", ITEMDESC = ", Encoded(row, "getDerivedFromItemDescription"));
  }
  if (row.Has("hasSerialNumber")) update.Add(", SERIALNUMBER= ", Encoded(row, "getSerialNumber"));
  if (row.Has("hasWarranty")) update.Add(", WARRANTY= ", Encoded(row, "getWarranty"));
  if (row.Has("hasInstallationDate")) update.Add(", INSTALLATION_DATE= ", EncodedDate(row, "getInstallationDate"));
  if (row.Has("hasDeliveryDate")) update.Add(", DELIVERY_DATE= ", EncodedDate(row, "getDeliveryDate"));
  update.Add(", upd_flag = 0 WHERE ");
  update.Add("SITE = ", Encoded(row, "getConfiguration"));
  update.Add("AND OBJECT = ", Encoded(row, "GetObject"));  // right behind the closing quote, as the next one
  update.Add("AND OBJECTNR = ", Encoded(row, "GetObjectNumber"));
  if (CountUpdate(update)) return;

  SqlText insert("INSERT INTO ", TableName, " (SITE, OBJECT, OBJECTNR ");
  if (row.Has("hasDescription")) insert.Add(",OBJECTDESC ");
  if (row.Has("hasDerivedFromItem")) insert.Add(",ITEM ");
  if (row.Has("hasDerivedFromItemDescription")) insert.Add(", ITEMDESC ");
  if (row.Has("hasSerialNumber")) insert.Add(",SERIALNUMBER ");
  if (row.Has("hasWarranty")) insert.Add(",WARRANTY ");
  if (row.Has("hasInstallationDate")) insert.Add(",INSTALLATION_DATE ");
  if (row.Has("hasDeliveryDate")) insert.Add(",DELIVERY_DATE ");
  insert.Add(",upd_flag )VALUES (");
  insert.Add(Encoded(row, "getConfiguration"));
  insert.Add(",", Encoded(row, "GetObject"));
  insert.Add(",", Encoded(row, "GetObjectNumber"));
  if (row.Has("hasDescription")) insert.Add(",", Encoded(row, "getDescription"));
  if (row.Has("hasDerivedFromItem")) insert.Add(",", Encoded(row, "getDerivedFromItem"));
  if (row.Has("hasDerivedFromItemDescription")) insert.Add(",", Encoded(row, "getDerivedFromItemDescription"));
  if (row.Has("hasSerialNumber")) insert.Add(",", Encoded(row, "getSerialNumber"));
  if (row.Has("hasWarranty")) insert.Add(",", Encoded(row, "getWarranty"));
  if (row.Has("hasInstallationDate")) insert.Add(",", EncodedDate(row, "getInstallationDate"));
  if (row.Has("hasDeliveryDate")) insert.Add(",", EncodedDate(row, "getDeliveryDate"));
  insert.Add(",0)");
  CountInsert(insert);
}

}  // namespace zenqay
