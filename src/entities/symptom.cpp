// Symptom: only generation 1 has the component. The passes ask for it under every generation; the row operation alone
// looks at the generation, and under another one its statements stay empty.
#include "job/clsDataCopy.h"
#include "localdb/sql_literals.h"
#include "process/QTMDeclarations.h"
#include "process/labels.h"

namespace zenqay {
namespace {

constexpr const char* kSymptomLabel = "STIT0092";
constexpr const char* kErpLabel = "STIT0088";

}  // namespace

void clsDataCopy::CopySymptom(const Text& TableName, const Text& KXWBusComponent, std::int16_t SyncMethod) {
  if (SyncMethod == 1) CopySymptomFull(TableName, KXWBusComponent);
  if (SyncMethod == 2) CopySymptomChanged(TableName, KXWBusComponent);
}

void clsDataCopy::CopySymptomFull(const Text& TableName, const Text& KXWBusComponent) {
  CopyFull(TableName, KXWBusComponent,
           {.entityLabel = kSymptomLabel,
            .open =
                [this](ErpSource& erp) {
                  erp.manager = Manager(process_.components.Create(kSymptomsManager1));
                  erp.erpLabel = GetLabel(process_, kErpLabel);
                },
            .list = [](const Manager& symptoms) { return symptoms.List("", HighValueString(10)); },
            .apply = [&](const Row& row) { ApplySymptomRow(row, TableName); }});
}

void clsDataCopy::CopySymptomChanged(const Text& TableName, const Text& KXWBusComponent) {
  CopyOnlyChanged(
      TableName, KXWBusComponent,
      {.entityLabel = kSymptomLabel,
       .failureSource = "Symptoms - Only Changed",
       .known = {.tableCode = "tsspf101", .erpLabel = GetLabel(process_, kErpLabel)},
       .open = [this](ErpSource& erp) { erp.manager = Manager(process_.components.Create(kSymptomsManager1)); },
       .ranges = {{"csym", "", HighValueString(10)}},
       .fields = {"csym", "desc"},
       .listing = "NetListSymptoms",
       .change =
           [&](const Row& row, const Text& action) {
             if (action != "D") return ApplySymptomRow(row, TableName);
             CountDelete(SqlText("DELETE FROM ", TableName, " WHERE SYMPTOM = ", Encoded(row, "getSymptom")));
           }});
}

void clsDataCopy::ApplySymptomRow(const Row& row, const Text& TableName) {
  SqlText update;
  if (process_.ErpGeneration == kGeneration1) {
    update.Add("UPDATE ", TableName, " SET ");
    update.Add("SYMPTOM = ", Encoded(row, "getSymptom"));
    if (row.Has("hasDescription")) update.Add(", DESCRIPTION = ", Encoded(row, "getDescription"));
    update.Add(", upd_flag = 0 WHERE ");
    update.Add("SYMPTOM =", Encoded(row, "getSymptom"));
  }
  if (CountUpdate(update)) return;

  SqlText insert;
  if (process_.ErpGeneration == kGeneration1) {
    insert.Add("INSERT INTO ", TableName, " (SYMPTOM ");
    if (row.Has("hasDescription")) insert.Add(",DESCRIPTION ");
    insert.Add(",upd_flag )VALUES (");
    insert.Add(Encoded(row, "getSymptom"));
    if (row.Has("hasDescription")) insert.Add(",", Encoded(row, "getDescription"));
    insert.Add(",0)");
  }
  CountInsert(insert);
}

}  // namespace zenqay
