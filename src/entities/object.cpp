// Object: the numbered units of a configuration, with a key of three columns. Only generation 3 has the component; the
// full copy asks for it under every generation, the only-changed pass under generation 3 alone.
#include "entities/passes.h"
#include "entities/row_literals.h"
#include "entities/sql_text.h"
#include "job/clsDataCopy.h"
#include "process/QTMDeclarations.h"
#include "process/labels.h"

namespace zenqay {
namespace {

constexpr const char* kColumns[] = {"SITE",     "OBJECT",       "OBJECTNR", "OBJECTDESC",        "ITEM",
                                    "ITEMDESC", "SERIALNUMBER", "WARRANTY", "INSTALLATION_DATE", "DELIVERY_DATE",
                                    "upd_flag"};

constexpr KeyField kKeys[] = {{"getConfiguration", "SITE"}, {"GetObject", "OBJECT"}, {"GetObjectNumber", "OBJECTNR"}};

constexpr EntitySource kSources[] = {
    {kGeneration3, "Kv50QTMtscfgObjects.ObjectsManager", "tscfg200", "STIT0095", kColumns, kKeys,
     /*isFollowedByWarrantyExpiry=*/true},
};
constexpr const EntitySource& kObjects = kSources[0];

constexpr std::int16_t kLowestNumber = 0;
constexpr std::int16_t kHighestNumber = 9999;

}  // namespace

const Entity clsDataCopy::kObject = {
    .name = "object",
    .label = "STIT0015",
    .sources = kSources,
    .copy = &clsDataCopy::CopyObject,
};

void clsDataCopy::CopyObject(const Text& TableName, const Text& KXWBusComponent, std::int16_t SyncMethod) {
  if (SyncMethod == 1) CopyObjectFull(TableName, KXWBusComponent);
  if (SyncMethod == 2) CopyObjectChanged(TableName, KXWBusComponent);
}

void clsDataCopy::CopyObjectFull(const Text& TableName, const Text& KXWBusComponent) {
  CopyFull(TableName, KXWBusComponent,
           {.entity = kObject,
            .open =
                [this](ErpSource& erp) {
                  erp.manager = Manager(process_.components.Create(kObjects.managerClass));
                  erp.erpLabel = GetLabel(process_, kObjects.erpLabel);
                },
            .list =
                [](const Manager& objects) {
                  return objects.List("", HighValueString(8), "", HighValueString(50), kLowestNumber, kHighestNumber);
                },
            .apply = [&](const Row& row) { ApplyObjectRow(row, TableName); }});
}

void clsDataCopy::CopyObjectChanged(const Text& TableName, const Text& KXWBusComponent) {
  OnlyChangedPass objects = {.entity = kObject,
                             .failureSource = "Objects - Only Changed",
                             .parameterCount = 3,
                             .ranges = {{"ccfg", "", HighValueString(8)},
                                        {"crob", "", HighValueString(50)},
                                        {"oseq", kLowestNumber, kHighestNumber}},
                             .fields = {"ccfg", "crob", "oseq", "desc", "item", "cser", "indt", "dldt", "cwte"},
                             .listing = "NetListObjects"};
  objects.change = [&](const Row& row, const Text& action) {
    if (action != "D") return ApplyObjectRow(row, TableName);
    SqlText deletion("DELETE FROM ", TableName);
    deletion.Add(" WHERE SITE = ", Encoded(process_, row, "getConfiguration"));
    deletion.Add(" AND OBJECT = ", Encoded(process_, row, "GetObject"));
    deletion.Add(" AND OBJECTNR = ", Encoded(process_, row, "GetObjectNumber"));
    CountDelete(deletion);
  };
  CopyOnlyChanged(TableName, KXWBusComponent, objects);
}

void clsDataCopy::ApplyObjectRow(const Row& row, const Text& TableName) {
  SqlText update("UPDATE ", TableName, " SET ");
  update.Add("SITE = ", Encoded(process_, row, "getConfiguration"));
  update.Add(",OBJECT = ", Encoded(process_, row, "GetObject"));
  update.Add(", OBJECTNR = ", Encoded(process_, row, "GetObjectNumber"));
  if (row.Has("hasDescription")) update.Add(", OBJECTDESC = ", Encoded(process_, row, "getDescription"));
  if (row.Has("hasDerivedFromItem")) update.Add(", ITEM = ", Encoded(process_, row, "getDerivedFromItem"));
  if (row.Has("hasDerivedFromItemDescription")) {
    update.Add(", ITEMDESC = ", Encoded(process_, row, "getDerivedFromItemDescription"));
  }
  if (row.Has("hasSerialNumber")) update.Add(", SERIALNUMBER= ", Encoded(process_, row, "getSerialNumber"));
  if (row.Has("hasWarranty")) update.Add(", WARRANTY= ", Encoded(process_, row, "getWarranty"));
  if (row.Has("hasInstallationDate")) update.Add(", INSTALLATION_DATE= ", EncodedDate(row, "getInstallationDate"));
  if (row.Has("hasDeliveryDate")) update.Add(", DELIVERY_DATE= ", EncodedDate(row, "getDeliveryDate"));
  update.Add(", upd_flag = 0 WHERE ");
  update.Add("SITE = ", Encoded(process_, row, "getConfiguration"));
  update.Add("AND OBJECT = ", Encoded(process_, row, "GetObject"));  // right behind the closing quote, as the next one
  update.Add("AND OBJECTNR = ", Encoded(process_, row, "GetObjectNumber"));
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
  insert.Add(Encoded(process_, row, "getConfiguration"));
  insert.Add(",", Encoded(process_, row, "GetObject"));
  insert.Add(",", Encoded(process_, row, "GetObjectNumber"));
  if (row.Has("hasDescription")) insert.Add(",", Encoded(process_, row, "getDescription"));
  if (row.Has("hasDerivedFromItem")) insert.Add(",", Encoded(process_, row, "getDerivedFromItem"));
  if (row.Has("hasDerivedFromItemDescription"))
    insert.Add(",", Encoded(process_, row, "getDerivedFromItemDescription"));
  if (row.Has("hasSerialNumber")) insert.Add(",", Encoded(process_, row, "getSerialNumber"));
  if (row.Has("hasWarranty")) insert.Add(",", Encoded(process_, row, "getWarranty"));
  if (row.Has("hasInstallationDate")) insert.Add(",", EncodedDate(row, "getInstallationDate"));
  if (row.Has("hasDeliveryDate")) insert.Add(",", EncodedDate(row, "getDeliveryDate"));
  insert.Add(",0)");
  CountInsert(insert);
}

}  // namespace zenqay
