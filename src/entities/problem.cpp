// Problem: carried by all three generations; only generation 3 has a call type.
#include "job/clsDataCopy.h"
#include "localdb/sql_literals.h"
#include "process/QTMDeclarations.h"
#include "process/labels.h"

namespace zenqay {
namespace {

constexpr const char* kProblemLabel = "STIT0091";

}  // namespace

void clsDataCopy::CopyProblem(const Text& TableName, const Text& KXWBusComponent, std::int16_t SyncMethod) {
  if (SyncMethod == 1) CopyProblemFull(TableName, KXWBusComponent);
  if (SyncMethod == 2) CopyProblemChanged(TableName, KXWBusComponent);
}

void clsDataCopy::OpenProblems(ErpSource& erp) {
  if (process_.ErpGeneration == kGeneration1) {
    erp.manager = Manager(process_.components.Create(kProblemsManager1));
    erp.tableCode = "tsspf102";
    erp.erpLabel = GetLabel(process_, "STIT0088");
  } else if (process_.ErpGeneration == kGeneration3) {
    erp.manager = Manager(process_.components.Create(kProblemsManager3));
    erp.tableCode = "tsclm330";
    erp.erpLabel = GetLabel(process_, "STIT0095");
  } else if (process_.ErpGeneration == kGeneration8) {
    erp.manager = Manager(process_.components.Create(kProblemsManager8));
    erp.tableCode = "tsclm330";
    erp.erpLabel = GetLabel(process_, "STIT0097");
  }
}

void clsDataCopy::CopyProblemFull(const Text& TableName, const Text& KXWBusComponent) {
  CopyFull(TableName, KXWBusComponent,
           {.entityLabel = kProblemLabel,
            .open = [this](ErpSource& erp) { OpenProblems(erp); },
            .list = [](const Manager& problems) { return problems.List("", HighValueString(10)); },
            .apply = [&](const Row& row) { ApplyProblemRow(row, TableName); }});
}

void clsDataCopy::CopyProblemChanged(const Text& TableName, const Text& KXWBusComponent) {
  OnlyChangedPass problems = {.entityLabel = kProblemLabel,
                              .failureSource = "Problems - Only Changed",
                              .open = [this](ErpSource& erp) { OpenProblems(erp); },
                              .ranges = {{"cprl", "", HighValueString(10)}},
                              .fields = {"cprl", "desc"},
                              .listing = "NetListProblems"};
  if (process_.ErpGeneration == kGeneration3) problems.fields.push_back("cltp");
  problems.change = [&](const Row& row, const Text& action) {
    if (action != "D") return ApplyProblemRow(row, TableName);
    CountDelete(SqlText("DELETE FROM ", TableName, " WHERE PROBLEM= ", Encoded(row, "getProblem")));
  };
  CopyOnlyChanged(TableName, KXWBusComponent, problems);
}

void clsDataCopy::ApplyProblemRow(const Row& row, const Text& TableName) {
  // Generation 8 shares the ERP table of generation 3 and still has the shape of generation 1: no call type.
  const bool withoutCallType = process_.ErpGeneration == kGeneration1 || process_.ErpGeneration == kGeneration8;
  const bool withCallType = process_.ErpGeneration == kGeneration3;

  SqlText update;
  if (withoutCallType || withCallType) {
    update.Add("UPDATE ", TableName, " SET ");
    update.Add("PROBLEM = ", Encoded(row, "getProblem"));
    if (row.Has("hasDescription")) update.Add(", DESCRIPTION = ", Encoded(row, "getDescription"));
    if (withCallType && row.Has("hasCallType")) update.Add(", CALLTYPE = ", Encoded(row, "getCallType"));
    update.Add(", upd_flag = 0 WHERE ");
    update.Add("PROBLEM =", Encoded(row, "getProblem"));
  }
  if (CountUpdate(update)) return;

  SqlText insert;
  if (withoutCallType || withCallType) {
    insert.Add("INSERT INTO ", TableName, " (PROBLEM ");
    if (row.Has("hasDescription")) insert.Add(",DESCRIPTION ");
    if (withCallType && row.Has("hasCallType")) insert.Add(",CALLTYPE ");
    insert.Add(",upd_flag )VALUES (");
    insert.Add(Encoded(row, "getProblem"));
    if (row.Has("hasDescription")) insert.Add(",", Encoded(row, "getDescription"));
    if (withCallType && row.Has("hasCallType")) insert.Add(",", Encoded(row, "getCallType"));
    insert.Add(",0)");
  }
  CountInsert(insert);
}

}  // namespace zenqay
