// Symptom: only generation 1 has the component. The passes ask for it under every generation; the row operation alone
// looks at the generation, and under another one its statements stay empty.
#include "entities/passes.h"
#include "entities/row_literals.h"
#include "entities/sql_text.h"
#include "job/clsDataCopy.h"
#include "process/QTMDeclarations.h"
#include "process/labels.h"

namespace zenqay {
namespace {

constexpr const char* kColumns[] = {"SYMPTOM", "DESCRIPTION", "upd_flag"};

constexpr KeyField kKeys[] = {{"getSymptom", "SYMPTOM"}};

constexpr EntitySource kSources[] = {
    {kGeneration1, "Kv40QTMtsspfSymptoms.SymptomsManager", "tsspf101", "STIT0088", kColumns, kKeys},
};
constexpr const EntitySource& kSymptoms = kSources[0];

}  // namespace

const Entity clsDataCopy::kSymptom = {
    .name = "symptom",
    .label = "STIT0092",
    .sources = kSources,
    .copy = &clsDataCopy::CopySymptom,
};

void clsDataCopy::CopySymptom(const Text& TableName, const Text& KXWBusComponent, std::int16_t SyncMethod) {
  if (SyncMethod == 1) CopySymptomFull(TableName, KXWBusComponent);
  if (SyncMethod == 2) CopySymptomChanged(TableName, KXWBusComponent);
}

void clsDataCopy::CopySymptomFull(const Text& TableName, const Text& KXWBusComponent) {
  CopyFull(TableName, KXWBusComponent,
           {.entity = kSymptom,
            .open =
                [this](ErpSource& erp) {
                  erp.manager = Manager(process_.components.Create(kSymptoms.managerClass));
                  erp.erpLabel = GetLabel(process_, kSymptoms.erpLabel);
                },
            .list = [](const Manager& symptoms) { return symptoms.List("", HighValueString(10)); },
            .apply = [&](const Row& row) { ApplySymptomRow(row, TableName); }});
}

void clsDataCopy::CopySymptomChanged(const Text& TableName, const Text& KXWBusComponent) {
  OnlyChangedPass symptoms = {
      .entity = kSymptom,
      .failureSource = "Symptoms - Only Changed",
      .open = [this](ErpSource& erp) { erp.manager = Manager(process_.components.Create(kSymptoms.managerClass)); },
      .ranges = {{"csym", "", HighValueString(10)}},
      .fields = {"csym", "desc"},
      .listing = "NetListSymptoms"};
  // Not among the members above: where memory runs out there, gcc 12 lets go of a member's members twice.
  symptoms.erp.tableCode = kSymptoms.tableCode;
  symptoms.erp.erpLabel = GetLabel(process_, kSymptoms.erpLabel);
  symptoms.change = [&](const Row& row, const Text& action) {
    if (action != "D") return ApplySymptomRow(row, TableName);
    CountDelete(SqlText("DELETE FROM ", TableName, " WHERE SYMPTOM = ", Encoded(process_, row, "getSymptom")));
  };
  CopyOnlyChanged(TableName, KXWBusComponent, symptoms);
}

void clsDataCopy::ApplySymptomRow(const Row& row, const Text& TableName) {
  SqlText update;
  if (process_.ErpGeneration == kGeneration1) {
    update.Add("UPDATE ", TableName, " SET ");
    update.Add("SYMPTOM = ", Encoded(process_, row, "getSymptom"));
    if (row.Has("hasDescription")) update.Add(", DESCRIPTION = ", Encoded(process_, row, "getDescription"));
    update.Add(", upd_flag = 0 WHERE ");
    update.Add("SYMPTOM =", Encoded(process_, row, "getSymptom"));
  }
  if (CountUpdate(update)) return;

  SqlText insert;
  if (process_.ErpGeneration == kGeneration1) {
    insert.Add("INSERT INTO ", TableName, " (SYMPTOM ");
    if (row.Has("hasDescription")) insert.Add(",DESCRIPTION ");
    insert.Add(",upd_flag )VALUES (");
    insert.Add(Encoded(process_, row, "getSymptom"));
    if (row.Has("hasDescription")) insert.Add(",", Encoded(process_, row, "getDescription"));
    insert.Add(",0)");
  }
  CountInsert(insert);
}

}  // namespace zenqay
