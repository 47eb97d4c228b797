// The frame of the entities' tests: what the two passes say whatever the entity is, written down once. A test gives
// what is particular to its entity; the whole trace that comes of both is compared with what the job says.
//
//     const TestedEntity kSites = {.copy = &CopyFixture::CopySite, …};
//     const ErpSide kLocations = {.generation = "1", .managerClass = "Kv40QTMtssmaLocations.LocationsManager", …};
//
//     ExpectPass(FullPass(kSites, kLocations,
//                         {{{{"Location", "A1"}},
//                           {"getLocation hasDescription hasCustomer getLocation",
//                            "sql UPDATE Site SET SITE = N'A1', upd_flag = 0 WHERE SITE =N'A1' -> 1"}}},
//                         {.icount = 1}));
#pragma once

#include <gtest/gtest.h>

#include <functional>

#include "doubles/copy_fixture.h"
#include "doubles/outcome.h"

namespace zenqay {

/// What the job calls an entity, under every generation.
struct TestedEntity {
  void (CopyFixture::*copy)(const Text& TableName, std::int16_t SyncMethod);
  CopyFixture::RowOperation apply;
  Text TableName;
  Text caption;      // names the table in a failure
  Text onlyChanged;  // names the only-changed pass in a failure
};

/// A range of a net-change listing, its values as the trace shows them.
struct Range {
  Text field;
  Text from;
  Text to;
};

/// Where an entity comes from under one generation.
struct ErpSide {
  Text generation;
  Text managerClass;  // empty where the generation has none
  Text name;          // names the ERP in a failure
  Text keys;          // the fields that name a row in a failure, in order, a blank between them
  Text list;          // the arguments of the full listing, as the trace shows them
  Text listing;       // the net-change listing
  Text tableCode;
  std::vector<Range> ranges;
  Text fields;                     // of the net-change listing, in order, a blank between them; "old:" before a field
                                   // whose old value is asked for as well
  std::size_t unusedParameters{};  // parameter objects behind those of the ranges
  bool isNamedFirst = false;       // the only-changed pass knows the ERP's name before it creates the manager
  Text behind;                     // what follows a copy that changed something
};

/// The same under a generation for which no manager is created.
ErpSide WithoutManager(const Text& generation, ErpSide erp);

/// What is said over a row, in its order: each element is a line of the trace when it is a statement or a call with
/// arguments, and else the accessors that the row is asked for, a blank between them; `old.getX` is asked of its old
/// values. The counts behind the statements are what the database gives.
using Steps = std::vector<Text>;

struct ListedRow {
  RowFields fields;
  Steps steps;
  Text oldValues{};  // the field that holds the old values
  RowFields oldFields{};
};

struct Counts {
  int ucount = 0;
  int icount = 0;
  int dcount = 0;
};

/// A pass in which nothing fails.
struct Pass {
  TestedEntity entity;
  ErpSide erp;
  std::int16_t SyncMethod = 1;
  std::vector<ListedRow> rows;
  Counts counts;  // what the pass leaves
  std::int16_t databasePlatform = 1;
  std::function<void(CopyFixture&, ScriptedObject& manager)> arrange{};  // what else the ERP answers
};

Pass FullPass(const TestedEntity& entity, const ErpSide& erp, const std::vector<ListedRow>& rows = {},
              const Counts& counts = {});
Pass ChangedPass(const TestedEntity& entity, const ErpSide& erp, const std::vector<ListedRow>& rows = {},
                 const Counts& counts = {});

/// The same pass, met by another generation.
Pass Under(const Text& generation, Pass pass);

/// A full copy and an only-changed pass without rows.
std::vector<Pass> BothPasses(const TestedEntity& entity, const ErpSide& erp);

/// What the pass says, from the creation of the manager on. The manager is named `manager`, its parameters parameter1,
/// parameter2 and so on, its rows row1, row2 and so on.
Text TraceOf(const Pass& pass);
Text TraceOf(const Text& row, const Steps& steps);

/// The trace up to the first line that begins like this, that line included.
Text UpTo(const Text& beginning, const Text& trace);

/// Gives the fixture's components what the pass meets. Returns the manager.
std::shared_ptr<ScriptedObject> Arrange(CopyFixture& copy, const Pass& pass);

/// The row, with what it had before as an object named `old`: a field of that is empty when it is not known.
Object Listed(CopyFixture& copy, const ListedRow& row);

/// The pass as it must go: by itself, whatever an earlier copy left in the counters that it sets to 0, and within the
/// copy of its table.
void ExpectPass(const Pass& pass);

/// Lets the pass fail at each of its steps behind the creation of the manager, one at a time. What it says is then the
/// beginning of its trace up to that step; a full copy still closes its manager. Its record names the call that failed
/// and, while a row is at hand, what the row has said of its key. It raises the number of the failing
/// step plus 100 and names the table, the pass and the ERP.
void ExpectFailureAtEachStep(const Pass& pass);

/// The pass does not get beyond the creation of a manager that is not there. A full copy leaves its failure path at the
/// manager's closing, unchanged; an only-changed pass raises the creation's number plus 100.
void ExpectMissingComponent(const Pass& pass);

/// The pass fails at the first call on the manager where none is created: a full copy with 91, an only-changed pass
/// with 191, behind the creation of its criteria.
void ExpectNoManager(const Pass& pass);

/// No sync method but 1 and 2 does anything.
void ExpectNothingUnderOtherSyncMethods(const TestedEntity& entity, const ErpSide& erp);

/// Applies a row by itself and compares all that is said.
void ExpectRow(const TestedEntity& entity, const Text& generation, const ListedRow& row,
               std::int16_t databasePlatform = 1);

/// The statements of one row that the table does not have yet.
struct RowCase {
  RowFields fields;
  Text update;
  Text insert;
};

/// Applies each row, to a table in which no update finds it, and compares the two statements.
void ExpectStatements(const TestedEntity& entity, const Text& generation, const std::vector<RowCase>& cases,
                      std::int16_t databasePlatform = 1);

/// One applied row counts one, however many rows the update touched, and an insert counts only when it reports one.
void ExpectCounts(const TestedEntity& entity, const Text& generation, const RowFields& fields);

/// Applies the row with a null in each of the named fields, one at a time: no null reaches a quoted literal.
void ExpectNullToFail(const TestedEntity& entity, const Text& generation, const RowFields& fields,
                      const std::vector<Text>& names);

/// The row operation runs a statement without a text, twice, and asks the row nothing.
void ExpectEmptyStatements(const TestedEntity& entity, const Text& generation, const RowFields& fields);

}  // namespace zenqay
