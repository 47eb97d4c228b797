// Serialized item: only generation 8 has the component, and its class is asked for under every generation. Site and
// object may be unknown and then stand as NULL.
#include "entities/passes.h"
#include "entities/row_literals.h"
#include "entities/sql_text.h"
#include "job/clsDataCopy.h"
#include "process/QTMDeclarations.h"
#include "process/labels.h"

namespace zenqay {
namespace {

constexpr const char* kColumns[] = {"OBJECT",   "OBJECTNR",          "OBJECTDESC",    "SITE",     "SERIALNUMBER",
                                    "WARRANTY", "INSTALLATION_DATE", "DELIVERY_DATE", "CUSTOMER", "upd_flag"};

constexpr KeyField kKeys[] = {{"getCluster", "SITE"}, {"getItem", "OBJECT"}, {"getSerialNumber", "OBJECTNR"}};

constexpr EntitySource kSources[] = {
    {kGeneration8, "Kv61QTMtscfgSerializedItems.SerializedItemsManager", "tscfg200", "STIT0097", kColumns, kKeys},
};
constexpr const EntitySource& kSerializedItems = kSources[0];

/// The literal of a date object of the row, which must be one.
Text EncodedTime(const Row& row, std::string_view getX) {
  return Naming(getX, [&] {
    const Object time = row.Get(getX).AsObject();
    return SQLEncodeForDateTime(time);
  });
}

/// The texts come first: where the component is missing, the failure still names the ERP.
void OpenSerializedItems(modDeclarations& process, ErpSource& erp) {
  erp.tableCode = kSerializedItems.tableCode;
  erp.erpLabel = GetLabel(process, kSerializedItems.erpLabel);
  erp.manager = Manager(process.components.Create(kSerializedItems.managerClass));
}

}  // namespace

const Entity clsDataCopy::kSerializedItem = {
    .name = "serializeditem",
    .label = "STIT0101",
    .sources = kSources,
    .hasPrimaryKey = false,
    .copy = &clsDataCopy::CopySerializedItem,
};

void clsDataCopy::CopySerializedItem(const Text& TableName, const Text& KXWBusComponent, std::int16_t SyncMethod) {
  if (SyncMethod == 1) CopySerializedItemFull(TableName, KXWBusComponent);
  if (SyncMethod == 2) CopySerializedItemChanged(TableName, KXWBusComponent);
}

void clsDataCopy::CopySerializedItemFull(const Text& TableName, const Text& KXWBusComponent) {
  CopyFull(TableName, KXWBusComponent,
           {.entity = kSerializedItem,
            .open = [this](ErpSource& erp) { OpenSerializedItems(process_, erp); },
            .list = [](const Manager& items) { return items.List("", HighValueString(47), "", HighValueString(30)); },
            .apply = [&](const Row& row) { ApplySerializedItemRow(row, TableName); }});
}

void clsDataCopy::CopySerializedItemChanged(const Text& TableName, const Text& KXWBusComponent) {
  OnlyChangedPass items = {.entity = kSerializedItem,
                           // A failure does not tell which pass it came from.
                           .failureSource = GetLabel(process_, kSerializedItem.label),
                           .open = [this](ErpSource& erp) { OpenSerializedItems(process_, erp); },
                           .parameterCount = 3,  // the third is left as it is
                           .ranges = {{"item", "", HighValueString(47)}, {"sern", "", HighValueString(30)}},
                           .fields = {"item", "desc", "sern", "clst", "ofbp"},
                           .listing = "NetListSerializedItems"};
  items.change = [&](const Row& row, const Text& action) {
    const ClusterItemKey key(process_, row);  // worked out for every row, also where it is not used
    if (action != "D") return ApplySerializedItemRow(row, TableName);
    SqlText deletion("DELETE FROM ", TableName, " WHERE ");
    deletion.Add(" SITE = ", key.site);
    deletion.Add(" AND OBJECT = ", key.object);
    if (row.Has("hasSerialNumber")) deletion.Add(" AND OBJECTNR = ", Encoded(process_, row, "getSerialNumber"));
    CountDelete(deletion);
  };
  CopyOnlyChanged(TableName, KXWBusComponent, items);
}

void clsDataCopy::ApplySerializedItemRow(const Row& row, const Text& TableName) {
  const ClusterItemKey key(process_, row);
  SqlText update("UPDATE ", TableName, " SET ");
  update.Add("OBJECT = ", key.object);
  if (row.Has("hasDescription")) update.Add(", OBJECTDESC = ", Encoded(process_, row, "getDescription"));
  update.Add(", SITE = ", key.site);
  if (row.Has("hasWarranty")) update.Add(", WARRANTY= ", Encoded(process_, row, "getWarranty"));
  if (row.Has("hasInstallationTime")) update.Add(", INSTALLATION_DATE= ", EncodedTime(row, "getInstallationTime"));
  if (row.Has("hasDeliveryTime")) update.Add(", DELIVERY_DATE= ", EncodedTime(row, "getDeliveryTime"));
  if (row.Has("hasSoldtoBusinessPartner"))
    update.Add(", CUSTOMER= ", Encoded(process_, row, "getSoldtoBusinessPartner"));
  update.Add(", upd_flag = 0 ");
  update.Add(" WHERE SITE = ", key.site);
  update.Add(" AND OBJECT = ", key.object);
  // Without a serial number the row stands for every local row of the item at the site.
  if (row.Has("hasSerialNumber")) update.Add(" AND OBJECTNR = ", Encoded(process_, row, "getSerialNumber"));
  if (CountUpdate(update)) return;

  const ClusterItemKey keyAgain(process_, row);
  SqlText insert("INSERT INTO ", TableName, " ( OBJECTNR ");
  insert.Add(",OBJECT ");
  if (row.Has("hasDescription")) insert.Add(",OBJECTDESC ");
  insert.Add(",SITE ");
  if (row.Has("hasAlternateSerialNumber")) insert.Add(",SERIALNUMBER ");
  if (row.Has("hasWarranty")) insert.Add(",WARRANTY ");
  if (row.Has("hasInstallationTime")) insert.Add(",INSTALLATION_DATE ");
  if (row.Has("hasDeliveryTime")) insert.Add(",DELIVERY_DATE ");
  if (row.Has("hasSoldtoBusinessPartner")) insert.Add(",CUSTOMER");
  insert.Add(",upd_flag )VALUES (");
  insert.Add(Encoded(process_, row, "getSerialNumber"));  // no gate: the column always receives a value
  insert.Add(",", keyAgain.object);
  if (row.Has("hasDescription")) insert.Add(",", Encoded(process_, row, "getDescription"));
  insert.Add(",", keyAgain.site);
  if (row.Has("hasAlternateSerialNumber")) insert.Add(",", Encoded(process_, row, "getAlternateSerialNumber"));
  if (row.Has("hasWarranty")) insert.Add(",", Encoded(process_, row, "getWarranty"));
  if (row.Has("hasInstallationTime")) insert.Add(",", EncodedTime(row, "getInstallationTime"));
  if (row.Has("hasDeliveryTime")) insert.Add(",", EncodedTime(row, "getDeliveryTime"));
  if (row.Has("hasSoldtoBusinessPartner")) insert.Add(",", Encoded(process_, row, "getSoldtoBusinessPartner"));
  insert.Add(",0)");
  CountInsert(insert);
}

}  // namespace zenqay
