// Problem: carried by all three generations; only generation 3 has a call type.
#include "entities/passes.h"
#include "entities/row_literals.h"
#include "entities/sql_text.h"
#include "job/clsDataCopy.h"
#include "process/QTMDeclarations.h"

namespace zenqay {
namespace {

constexpr const char* kColumns[] = {"PROBLEM", "DESCRIPTION", "upd_flag"};
constexpr const char* kColumns3[] = {"PROBLEM", "DESCRIPTION", "CALLTYPE", "upd_flag"};

constexpr KeyField kKeys[] = {{"getProblem", "PROBLEM"}};

constexpr EntitySource kSources[] = {
    {kGeneration1, "Kv40QTMtsspfProblems.ProblemsManager", "tsspf102", "STIT0088", kColumns, kKeys},
    {kGeneration3, "Kv50QTMtsclmProblems.ProblemsManager", "tsclm330", "STIT0095", kColumns3, kKeys},
    {kGeneration8, "Kv61QTMtsclmProblems.ProblemsManager", "tsclm330", "STIT0097", kColumns, kKeys},
};

}  // namespace

const Entity clsDataCopy::kProblem = {
    .name = "problem",
    .label = "STIT0091",
    .sources = kSources,
    .copy = &clsDataCopy::CopyProblem,
};

void clsDataCopy::CopyProblem(const Text& TableName, const Text& KXWBusComponent, std::int16_t SyncMethod) {
  if (SyncMethod == 1) CopyProblemFull(TableName, KXWBusComponent);
  if (SyncMethod == 2) CopyProblemChanged(TableName, KXWBusComponent);
}

void clsDataCopy::CopyProblemFull(const Text& TableName, const Text& KXWBusComponent) {
  CopyFull(TableName, KXWBusComponent,
           {.entity = kProblem,
            .list = [](const Manager& problems) { return problems.List("", HighValueString(10)); },
            .apply = [&](const Row& row) { ApplyProblemRow(row, TableName); }});
}

void clsDataCopy::CopyProblemChanged(const Text& TableName, const Text& KXWBusComponent) {
  OnlyChangedPass problems = {.entity = kProblem,
                              .failureSource = "Problems - Only Changed",
                              .ranges = {{"cprl", "", HighValueString(10)}},
                              .fields = {"cprl", "desc"},
                              .listing = "NetListProblems"};
  if (process_.ErpGeneration == kGeneration3) problems.fields.emplace_back("cltp");
  problems.change = [&](const Row& row, const Text& action) {
    if (action != "D") return ApplyProblemRow(row, TableName);
    CountDelete(SqlText("DELETE FROM ", TableName, " WHERE PROBLEM= ", Encoded(process_, row, "getProblem")));
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
    update.Add("PROBLEM = ", Encoded(process_, row, "getProblem"));
    if (row.Has("hasDescription")) update.Add(", DESCRIPTION = ", Encoded(process_, row, "getDescription"));
    if (withCallType && row.Has("hasCallType")) update.Add(", CALLTYPE = ", Encoded(process_, row, "getCallType"));
    update.Add(", upd_flag = 0 WHERE ");
    update.Add("PROBLEM =", Encoded(process_, row, "getProblem"));
  }
  if (CountUpdate(update)) return;

  SqlText insert;
  if (withoutCallType || withCallType) {
    insert.Add("INSERT INTO ", TableName, " (PROBLEM ");
    if (row.Has("hasDescription")) insert.Add(",DESCRIPTION ");
    if (withCallType && row.Has("hasCallType")) insert.Add(",CALLTYPE ");
    insert.Add(",upd_flag )VALUES (");
    insert.Add(Encoded(process_, row, "getProblem"));
    if (row.Has("hasDescription")) insert.Add(",", Encoded(process_, row, "getDescription"));
    if (withCallType && row.Has("hasCallType")) insert.Add(",", Encoded(process_, row, "getCallType"));
    insert.Add(",0)");
  }
  CountInsert(insert);
}

}  // namespace zenqay
