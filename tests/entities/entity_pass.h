// One pass of an entity's copy, written down as it must go, and what the tests of every entity hold it against.
#pragma once

#include <gtest/gtest.h>

#include "doubles/copy_fixture.h"
#include "doubles/outcome.h"

namespace zenqay {

/// A pass in which nothing fails: what the ERP lists and the database answers, and what comes of it.
struct EntityPass {
  Text generation;
  Text managerClass;
  Text managerName;                  // as the trace calls it
  std::vector<Text> parameterNames;  // where a pass has more than one parameter object
  std::vector<RowFields> rows;
  std::vector<std::int64_t> counts;  // what the statements touch whose count is asked for; then 1 each
  Text trace;                        // from the creation of the manager on
  Text counters;
  Text runLog;
};

/// The entity operation that a test calls, with the table's name and the sync method.
struct EntityCall {
  void (CopyFixture::*copy)(const Text& TableName, std::int16_t SyncMethod);
  Text TableName;
  std::int16_t SyncMethod;

  void On(CopyFixture& job) const { (job.*copy)(TableName, SyncMethod); }
};

/// Gives each creation of a parameter object one of its own.
inline void NameParameters(CopyFixture& copy, const std::vector<Text>& names) {
  std::vector<std::shared_ptr<ScriptedObject>> parameters;
  for (const Text& name : names) {
    parameters.push_back(copy.components.Make(name));
    for (const char* operation : {"setFieldName", "setFrom", "setTo"}) parameters.back()->Answers(operation, Value());
  }
  copy.components.RegisterInTurn("NetListSelectionCriteria.NetListParameter", parameters);
}

inline void Arrange(CopyFixture& copy, const EntityPass& pass) {
  std::vector<Object> rows;
  for (const RowFields& fields : pass.rows) rows.push_back(copy.RowWith(fields));
  copy.AddManager(pass.managerClass, pass.managerName, rows);
  if (!pass.parameterNames.empty()) NameParameters(copy, pass.parameterNames);
  copy.database.AffectNext(pass.counts);
}

inline void ExpectPass(const EntityPass& pass, const EntityCall& call) {
  SCOPED_TRACE("generation " + pass.generation);
  CopyFixture copy(pass.generation);
  Arrange(copy, pass);

  call.On(copy);

  EXPECT_EQ(copy.journal.Take(), pass.trace);
  EXPECT_EQ(copy.Counters(), pass.counters);
  EXPECT_EQ(copy.RunLog(), pass.runLog);
}

/// The lines of a text, each with its end.
inline std::vector<Text> LinesOf(const Text& text) {
  std::vector<Text> lines;
  for (std::size_t from = 0; from < text.size(); from += lines.back().size()) {
    lines.push_back(text.substr(from, text.find('\n', from) + 1 - from));
  }
  return lines;
}

/// Lets the pass fail at each of its steps behind the creation of the manager, one at a time. What it says is then the
/// beginning of its trace up to that step; a full copy still closes its manager. `raised` is what it raises every time,
/// the number 5000 of the failing step included.
inline void ExpectFailureAtEachStep(const EntityPass& pass, const EntityCall& call, const Text& raised) {
  const std::vector<Text> steps = LinesOf(pass.trace);
  const Text closing = call.SyncMethod == 1 ? pass.managerName + ".Close()\n" : "";
  Text trace = steps.front();
  for (std::size_t step = 1; step < steps.size(); ++step) {
    SCOPED_TRACE("generation " + pass.generation + ", failing at " + steps[step]);
    CopyFixture copy(pass.generation);
    Arrange(copy, pass);
    copy.journal.FailAtLine(step, RuntimeError(5000, "the other side", "it broke"));
    trace += steps[step];

    EXPECT_EQ(Raised([&] { call.On(copy); }), raised);

    EXPECT_EQ(copy.journal.Take(), trace + closing);
    const bool summarized = steps[step] == closing;  // the table's summary precedes the closing of the manager
    EXPECT_EQ(copy.RunLog(), (summarized ? pass.runLog : "") +
                                 "\"Date-Time :1/31/2004 : 10:11:12 AM\"\r\n"
                                 "\"the other side\",\"it broke\"\r\n");
  }
}

/// The statements of one row that the table does not have yet.
struct RowCase {
  RowFields fields;
  Text update;
  Text insert;
};

/// Applies each row, to a table in which no update finds it, and compares the two statements.
inline void ExpectStatements(CopyFixture::RowOperation apply, const Text& generation, std::int16_t databasePlatform,
                             const Text& TableName, const std::vector<RowCase>& cases) {
  for (const RowCase& row : cases) {
    SCOPED_TRACE("generation " + generation + ", " + row.update);
    CopyFixture copy(generation, databasePlatform);
    copy.database.AffectNext({0});

    copy.Apply(apply, row.fields, TableName);

    EXPECT_EQ(copy.JournalWithout({"row"}), "sql " + row.update + " -> 0\nsql " + row.insert + " -> 1\n");
  }
}

/// One applied row counts one, however many rows the update touched, and an insert counts only when it reports one.
inline void ExpectCounts(CopyFixture::RowOperation apply, const Text& generation, const RowFields& fields) {
  struct Case {
    std::vector<std::int64_t> counts;
    Text counters;
  };
  const std::vector<Case> cases = {
      {{1}, "ucount 1, icount 0, dcount 0"},    {{2}, "ucount 1, icount 0, dcount 0"},
      {{-1}, "ucount 1, icount 0, dcount 0"},   {{0, 1}, "ucount 0, icount 1, dcount 0"},
      {{0, 0}, "ucount 0, icount 0, dcount 0"}, {{0, 2}, "ucount 0, icount 0, dcount 0"},
  };
  for (const Case& is : cases) {
    SCOPED_TRACE("update of " + std::to_string(is.counts.front()) + ", insert of " + std::to_string(is.counts.back()));
    CopyFixture copy(generation);
    copy.database.AffectNext(is.counts);

    copy.Apply(apply, fields, "TABLE");

    EXPECT_EQ(copy.Counters(), is.counters);
  }
}

/// Applies the row with a null in each of the named fields, one at a time: no null ever reaches a statement.
inline void ExpectNullToFail(CopyFixture::RowOperation apply, const Text& generation, const RowFields& fields,
                             const std::vector<Text>& names) {
  for (const Text& name : names) {
    SCOPED_TRACE(name);
    CopyFixture copy(generation);
    RowFields withNull = fields;
    withNull.emplace_back(name, Null());

    EXPECT_EQ(Raised([&] { copy.Apply(apply, withNull, "TABLE"); }), "94 ZenqayDBSync: Invalid use of Null");

    EXPECT_EQ(copy.JournalWithout({"row"}), "");
  }
}

/// What the job of one table says from the opening of the connection to its closing; its log directory stands as LOGS.
inline Text RunJob(CopyFixture& copy, const Text& TableName, std::int16_t SyncMethod) {
  const Text logs = copy.directory.path().string();
  copy.process.TableRegistry[5].TableName = TableName;
  copy.job.StartDataCopy("", "", /*TableID=*/5, SyncMethod, logs, "100", copy.process.DatabasePlatform);
  return Replaced(copy.journal.Take(), logs, "LOGS");
}

}  // namespace zenqay
