// Warranty: the terms of a warranty, whose periods only generations 3 and 8 have.
#include "entities/passes.h"
#include "entities/row_literals.h"
#include "entities/sql_text.h"
#include "job/clsDataCopy.h"
#include "process/QTMDeclarations.h"

namespace zenqay {
namespace {

constexpr const char* kColumns1[] = {"WARRANTY", "WDESCRIPTION", "upd_flag"};
constexpr const char* kColumns[] = {"WARRANTY",    "WDESCRIPTION",  "NUMBER_OF_PERIODS",
                                    "PERIOD_UNIT", "WARRANTY_TYPE", "upd_flag"};

constexpr KeyField kKeys[] = {{"getWarranty", "WARRANTY"}};

constexpr EntitySource kSources[] = {
    {kGeneration1, "Kv40QTMtssmaWarranties.WarrantiesManager", "tssma130", "STIT0088", kColumns1, kKeys},
    // The table stands in another module than the class.
    {kGeneration3, "Kv50QTMtsctmWarranties.WarrantiesManager", "tscfg020", "STIT0095", kColumns, kKeys,
     /*isFollowedByWarrantyExpiry=*/true},
    {kGeneration8, "Kv61QTMtsctmWarranties.WarrantiesManager", "tsctm020", "STIT0097", kColumns, kKeys},
};

}  // namespace

const Entity clsDataCopy::kWarranty = {
    .name = "warranties",
    .label = "STIT0099",
    .sources = kSources,
    .copy = &clsDataCopy::CopyWarranty,
};

void clsDataCopy::CopyWarranty(const Text& TableName, const Text& KXWBusComponent, std::int16_t SyncMethod) {
  if (SyncMethod == 1) CopyWarrantyFull(TableName, KXWBusComponent);
  if (SyncMethod == 2) CopyWarrantyChanged(TableName, KXWBusComponent);
}

void clsDataCopy::CopyWarrantyFull(const Text& TableName, const Text& KXWBusComponent) {
  CopyFull(TableName, KXWBusComponent,
           {.entity = kWarranty,
            .list =
                [this](const Manager& warranties) {
                  return warranties.List("", HighValueString(process_.ErpGeneration == kGeneration1 ? 3 : 16));
                },
            .apply = [&](const Row& row) { ApplyWarrantyRow(row, TableName); }});
}

void clsDataCopy::CopyWarrantyChanged(const Text& TableName, const Text& KXWBusComponent) {
  OnlyChangedPass warranties = {
      .entity = kWarranty, .failureSource = "Warranties - Only Changed", .listing = "NetListWarranties"};
  if (process_.ErpGeneration == kGeneration1) {
    warranties.ranges = {{"cgua", "", HighValueString(3)}};
    warranties.fields = {"cgua", "desc"};
  } else if (process_.ErpGeneration == kGeneration3 || process_.ErpGeneration == kGeneration8) {
    warranties.ranges = {{"cwte", "", HighValueString(16)}};
    warranties.fields = {"cwte", "desc", "nrpe", "peru", "wttp"};
  }
  warranties.change = [&](const Row& row, const Text& action) {
    if (action != "D") return ApplyWarrantyRow(row, TableName);
    CountDelete(SqlText("DELETE FROM ", TableName, " WHERE WARRANTY=", Encoded(process_, row, "getWarranty")));
  };
  CopyOnlyChanged(TableName, KXWBusComponent, warranties);
}

void clsDataCopy::ApplyWarrantyRow(const Row& row, const Text& TableName) {
  const bool hasPeriods = process_.ErpGeneration == kGeneration3 || process_.ErpGeneration == kGeneration8;

  SqlText update("UPDATE ", TableName, " SET ");
  update.Add("WARRANTY = ", Encoded(process_, row, "getWarranty"));
  if (row.Has("hasDescription")) update.Add(", WDESCRIPTION = ", Encoded(process_, row, "getDescription"));
  if (hasPeriods && row.Has("hasNumberOfPeriods")) {
    update.Add(", NUMBER_OF_PERIODS = ", row.GetJoined("getNumberOfPeriods"));
  }
  if (hasPeriods && row.Has("hasPeriodUnit")) update.Add(", PERIOD_UNIT = ", row.GetJoined("getPeriodUnit"));
  if (hasPeriods && row.Has("hasWarrantyType")) update.Add(", WARRANTY_TYPE = ", row.GetJoined("getWarrantyType"));
  update.Add(", upd_flag = 0 WHERE ");
  update.Add("WARRANTY =", Encoded(process_, row, "getWarranty"));
  if (CountUpdate(update)) return;

  SqlText insert("INSERT INTO ", TableName, " (WARRANTY ");
  if (row.Has("hasDescription")) insert.Add(",WDESCRIPTION ");
  if (hasPeriods && row.Has("hasNumberOfPeriods")) {
    insert.Add(process_.ErpGeneration == kGeneration3 ? ",NUMBER_OF_PERIODS " : ", NUMBER_OF_PERIODS ");
  }
  if (hasPeriods && row.Has("hasPeriodUnit")) insert.Add(", PERIOD_UNIT ");
  if (hasPeriods && row.Has("hasWarrantyType")) insert.Add(", WARRANTY_TYPE ");
  insert.Add(",upd_flag )VALUES (", Encoded(process_, row, "getWarranty"));
  if (row.Has("hasDescription")) insert.Add(",", Encoded(process_, row, "getDescription"));
  if (hasPeriods && row.Has("hasNumberOfPeriods")) insert.Add(",", row.GetJoined("getNumberOfPeriods"));
  if (hasPeriods && row.Has("hasPeriodUnit")) insert.Add(",", row.GetJoined("getPeriodUnit"));
  if (hasPeriods && row.Has("hasWarrantyType")) insert.Add(",", row.GetJoined("getWarrantyType"));
  insert.Add(",0)");
  CountInsert(insert);
}

}  // namespace zenqay
