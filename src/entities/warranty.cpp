// Warranty: the terms of a warranty, whose periods only generations 3 and 8 have.
#include "job/clsDataCopy.h"
#include "localdb/sql_literals.h"
#include "process/QTMDeclarations.h"
#include "process/labels.h"

namespace zenqay {
namespace {

constexpr const char* kWarrantyLabel = "STIT0099";

}  // namespace

void clsDataCopy::CopyWarranty(const Text& TableName, const Text& KXWBusComponent, std::int16_t SyncMethod) {
  if (SyncMethod == 1) CopyWarrantyFull(TableName, KXWBusComponent);
  if (SyncMethod == 2) CopyWarrantyChanged(TableName, KXWBusComponent);
}

void clsDataCopy::OpenWarranties(ErpSource& erp) {
  if (process_.ErpGeneration == kGeneration1) {
    erp.manager = Manager(process_.components.Create(kWarrantiesManager1));
    erp.tableCode = "tssma130";
    erp.erpLabel = GetLabel(process_, "STIT0088");
  } else if (process_.ErpGeneration == kGeneration3) {
    // The table stands in another module than the class.
    erp.manager = Manager(process_.components.Create(kWarrantiesManager3));
    erp.tableCode = "tscfg020";
    erp.erpLabel = GetLabel(process_, "STIT0095");
  } else if (process_.ErpGeneration == kGeneration8) {
    erp.manager = Manager(process_.components.Create(kWarrantiesManager8));
    erp.tableCode = "tsctm020";
    erp.erpLabel = GetLabel(process_, "STIT0097");
  }
}

void clsDataCopy::CopyWarrantyFull(const Text& TableName, const Text& KXWBusComponent) {
  CopyFull(TableName, KXWBusComponent,
           {.entityLabel = kWarrantyLabel,
            .open = [this](ErpSource& erp) { OpenWarranties(erp); },
            .list =
                [this](const Manager& warranties) {
                  return warranties.List("", HighValueString(process_.ErpGeneration == kGeneration1 ? 3 : 16));
                },
            .apply = [&](const Row& row) { ApplyWarrantyRow(row, TableName); }});
}

void clsDataCopy::CopyWarrantyChanged(const Text& TableName, const Text& KXWBusComponent) {
  OnlyChangedPass warranties = {.entityLabel = kWarrantyLabel,
                                .failureSource = "Warranties - Only Changed",
                                .open = [this](ErpSource& erp) { OpenWarranties(erp); },
                                .listing = "NetListWarranties"};
  if (process_.ErpGeneration == kGeneration1) {
    warranties.ranges = {{"cgua", "", HighValueString(3)}};
    warranties.fields = {"cgua", "desc"};
  } else if (process_.ErpGeneration == kGeneration3 || process_.ErpGeneration == kGeneration8) {
    warranties.ranges = {{"cwte", "", HighValueString(16)}};
    warranties.fields = {"cwte", "desc", "nrpe", "peru", "wttp"};
  }
  warranties.change = [&](const Row& row, const Text& action) {
    if (action != "D") return ApplyWarrantyRow(row, TableName);
    CountDelete(SqlText("DELETE FROM ", TableName, " WHERE WARRANTY=", Encoded(row, "getWarranty")));
  };
  CopyOnlyChanged(TableName, KXWBusComponent, warranties);
}

void clsDataCopy::ApplyWarrantyRow(const Row& row, const Text& TableName) {
  const bool hasPeriods = process_.ErpGeneration == kGeneration3 || process_.ErpGeneration == kGeneration8;

  SqlText update("UPDATE ", TableName, " SET ");
  update.Add("WARRANTY = ", Encoded(row, "getWarranty"));
  if (row.Has("hasDescription")) update.Add(", WDESCRIPTION = ", Encoded(row, "getDescription"));
  if (hasPeriods && row.Has("hasNumberOfPeriods")) {
    update.Add(", NUMBER_OF_PERIODS = ", row.GetText("getNumberOfPeriods"));
  }
  if (hasPeriods && row.Has("hasPeriodUnit")) update.Add(", PERIOD_UNIT = ", row.GetText("getPeriodUnit"));
  if (hasPeriods && row.Has("hasWarrantyType")) update.Add(", WARRANTY_TYPE = ", row.GetText("getWarrantyType"));
  update.Add(", upd_flag = 0 WHERE ");
  update.Add("WARRANTY =", Encoded(row, "getWarranty"));
  if (CountUpdate(update)) return;

  SqlText insert("INSERT INTO ", TableName, " (WARRANTY ");
  if (row.Has("hasDescription")) insert.Add(",WDESCRIPTION ");
  if (hasPeriods && row.Has("hasNumberOfPeriods")) {
    insert.Add(process_.ErpGeneration == kGeneration3 ? ",NUMBER_OF_PERIODS " : ", NUMBER_OF_PERIODS ");
  }
  if (hasPeriods && row.Has("hasPeriodUnit")) insert.Add(", PERIOD_UNIT ");
  if (hasPeriods && row.Has("hasWarrantyType")) insert.Add(", WARRANTY_TYPE ");
  insert.Add(",upd_flag )VALUES (", Encoded(row, "getWarranty"));
  if (row.Has("hasDescription")) insert.Add(",", Encoded(row, "getDescription"));
  if (hasPeriods && row.Has("hasNumberOfPeriods")) insert.Add(",", row.GetText("getNumberOfPeriods"));
  if (hasPeriods && row.Has("hasPeriodUnit")) insert.Add(",", row.GetText("getPeriodUnit"));
  if (hasPeriods && row.Has("hasWarrantyType")) insert.Add(",", row.GetText("getWarrantyType"));
  insert.Add(",0)");
  CountInsert(insert);
}

}  // namespace zenqay
