// Priority: a numeric key, written bare and matched quoted.
#include "job/clsDataCopy.h"
#include "localdb/sql_literals.h"
#include "process/QTMDeclarations.h"
#include "process/labels.h"

namespace zenqay {
namespace {

constexpr const char* kPriorityLabel = "STIT0039";

// The range of keys that is asked for; a priority above it is never copied.
constexpr std::int16_t kLowestPriority = 0;
constexpr std::int16_t kHighestPriority = 999;

}  // namespace

void clsDataCopy::CopyPriority(const Text& TableName, const Text& KXWBusComponent, std::int16_t SyncMethod) {
  if (SyncMethod == 1) CopyPriorityFull(TableName, KXWBusComponent);
  if (SyncMethod == 2) CopyPriorityChanged(TableName, KXWBusComponent);
}

void clsDataCopy::OpenPriorities(ErpSource& erp) {
  if (process_.ErpGeneration == kGeneration1) {
    erp.manager = Manager(process_.components.Create(kPrioritiesManager1));
    erp.tableCode = "tssma304";
    erp.erpLabel = GetLabel(process_, "STIT0088");
  } else if (process_.ErpGeneration == kGeneration3) {
    erp.manager = Manager(process_.components.Create(kPrioritiesManager3));
    erp.tableCode = "tcmcs070";
    erp.erpLabel = GetLabel(process_, "STIT0095");
  } else if (process_.ErpGeneration == kGeneration8) {
    erp.manager = Manager(process_.components.Create(kPrioritiesManager8));
    erp.tableCode = "tcmcs070";
    erp.erpLabel = GetLabel(process_, "STIT0097");
  }
}

void clsDataCopy::CopyPriorityFull(const Text& TableName, const Text& KXWBusComponent) {
  CopyFull(TableName, KXWBusComponent,
           {.entityLabel = kPriorityLabel,
            .open = [this](ErpSource& erp) { OpenPriorities(erp); },
            .list = [](const Manager& priorities) { return priorities.List(kLowestPriority, kHighestPriority); },
            .apply = [&](const Row& row) { ApplyPriorityRow(row, TableName); }});
}

void clsDataCopy::CopyPriorityChanged(const Text& TableName, const Text& KXWBusComponent) {
  OnlyChangedPass priorities = {.entityLabel = kPriorityLabel,
                                .failureSource = "Priorities - Only Changed",
                                .open = [this](ErpSource& erp) { OpenPriorities(erp); },
                                .listing = "NetListPriorities"};
  if (process_.ErpGeneration == kGeneration1) {
    priorities.ranges = {{"prno", kLowestPriority, kHighestPriority}};
    priorities.fields = {"prno", "desc"};
  } else if (process_.ErpGeneration == kGeneration3 || process_.ErpGeneration == kGeneration8) {
    priorities.ranges = {{"prio", kLowestPriority, kHighestPriority}};
    priorities.fields = {"prio", "dsca"};
  }
  priorities.change = [&](const Row& row, const Text& action) {
    if (action != "D") return ApplyPriorityRow(row, TableName);
    CountDelete(SqlText("DELETE FROM ", TableName, " WHERE PRIORITY= ", Encoded(row, "getPriority")));
  };
  CopyOnlyChanged(TableName, KXWBusComponent, priorities);
}

void clsDataCopy::ApplyPriorityRow(const Row& row, const Text& TableName) {
  const bool known = process_.ErpGeneration == kGeneration1 || process_.ErpGeneration == kGeneration3 ||
                     process_.ErpGeneration == kGeneration8;

  SqlText update;
  if (known) {
    update.Add("UPDATE ", TableName, " SET ");
    update.Add("PRIORITY = ", row.GetText("getPriority"));
    if (row.Has("hasDescription")) update.Add(", DESCRIPTION = ", Encoded(row, "getDescription"));
    update.Add(", upd_flag = 0 WHERE ");
    update.Add("PRIORITY =", Encoded(row, "getPriority"));
  }
  if (CountUpdate(update)) return;

  SqlText insert;
  if (known) {
    insert.Add("INSERT INTO ", TableName, " (PRIORITY ");
    if (row.Has("hasDescription")) insert.Add(",DESCRIPTION ");
    insert.Add(",upd_flag )VALUES (");
    insert.Add(row.GetText("getPriority"));
    if (row.Has("hasDescription")) insert.Add(",", Encoded(row, "getDescription"));
    insert.Add(",0)");
  }
  CountInsert(insert);
}

}  // namespace zenqay
