// Priority: a numeric key, written bare and matched quoted.
#include "entities/passes.h"
#include "entities/row_literals.h"
#include "entities/sql_text.h"
#include "job/clsDataCopy.h"
#include "process/QTMDeclarations.h"

namespace zenqay {
namespace {

constexpr const char* kColumns[] = {"PRIORITY", "DESCRIPTION", "upd_flag"};

constexpr KeyField kKeys[] = {{"getPriority", "PRIORITY"}};

constexpr EntitySource kSources[] = {
    {kGeneration1, "Kv40QTMtssmaPriorities.PrioritiesManager", "tssma304", "STIT0088", kColumns, kKeys},
    {kGeneration3, "Kv50QTMtcmcsPriorities.PrioritiesManager", "tcmcs070", "STIT0095", kColumns, kKeys},
    {kGeneration8, "Kv61QTMtcmcsPriorities.PrioritiesManager", "tcmcs070", "STIT0097", kColumns, kKeys},
};

// The range of keys that is asked for; a priority above it is never copied.
constexpr std::int16_t kLowestPriority = 0;
constexpr std::int16_t kHighestPriority = 999;

}  // namespace

const Entity clsDataCopy::kPriority = {
    .name = "priority",
    .label = "STIT0039",
    .sources = kSources,
    .copy = &clsDataCopy::CopyPriority,
};

void clsDataCopy::CopyPriority(const Text& TableName, const Text& KXWBusComponent, std::int16_t SyncMethod) {
  if (SyncMethod == 1) CopyPriorityFull(TableName, KXWBusComponent);
  if (SyncMethod == 2) CopyPriorityChanged(TableName, KXWBusComponent);
}

void clsDataCopy::CopyPriorityFull(const Text& TableName, const Text& KXWBusComponent) {
  CopyFull(TableName, KXWBusComponent,
           {.entity = kPriority,
            .list = [](const Manager& priorities) { return priorities.List(kLowestPriority, kHighestPriority); },
            .apply = [&](const Row& row) { ApplyPriorityRow(row, TableName); }});
}

void clsDataCopy::CopyPriorityChanged(const Text& TableName, const Text& KXWBusComponent) {
  OnlyChangedPass priorities = {
      .entity = kPriority, .failureSource = "Priorities - Only Changed", .listing = "NetListPriorities"};
  if (process_.ErpGeneration == kGeneration1) {
    priorities.ranges = {{"prno", kLowestPriority, kHighestPriority}};
    priorities.fields = {"prno", "desc"};
  } else if (process_.ErpGeneration == kGeneration3 || process_.ErpGeneration == kGeneration8) {
    priorities.ranges = {{"prio", kLowestPriority, kHighestPriority}};
    priorities.fields = {"prio", "dsca"};
  }
  priorities.change = [&](const Row& row, const Text& action) {
    if (action != "D") return ApplyPriorityRow(row, TableName);
    CountDelete(SqlText("DELETE FROM ", TableName, " WHERE PRIORITY= ", Encoded(process_, row, "getPriority")));
  };
  CopyOnlyChanged(TableName, KXWBusComponent, priorities);
}

void clsDataCopy::ApplyPriorityRow(const Row& row, const Text& TableName) {
  const bool known = process_.ErpGeneration == kGeneration1 || process_.ErpGeneration == kGeneration3 ||
                     process_.ErpGeneration == kGeneration8;

  SqlText update;
  if (known) {
    update.Add("UPDATE ", TableName, " SET ");
    update.Add("PRIORITY = ", row.GetJoined("getPriority"));
    if (row.Has("hasDescription")) update.Add(", DESCRIPTION = ", Encoded(process_, row, "getDescription"));
    update.Add(", upd_flag = 0 WHERE ");
    update.Add("PRIORITY =", Encoded(process_, row, "getPriority"));
  }
  if (CountUpdate(update)) return;

  SqlText insert;
  if (known) {
    insert.Add("INSERT INTO ", TableName, " (PRIORITY ");
    if (row.Has("hasDescription")) insert.Add(",DESCRIPTION ");
    insert.Add(",upd_flag )VALUES (");
    insert.Add(row.GetJoined("getPriority"));
    if (row.Has("hasDescription")) insert.Add(",", Encoded(process_, row, "getDescription"));
    insert.Add(",0)");
  }
  CountInsert(insert);
}

}  // namespace zenqay
