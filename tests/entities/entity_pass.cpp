#include "entities/entity_pass.h"

namespace zenqay {
namespace {

constexpr const char* kLogHead = "\"Date-Time :1/31/2004 : 10:11:12 AM\"\r\n";  // of the records of a failure

const RuntimeError kNotSet(91, "ZenqayDBSync", "Object variable not set");

std::vector<Text> Split(const Text& text, char separator) {
  std::vector<Text> parts;
  for (std::size_t from = 0; from < text.size();) {
    const std::size_t to = std::min(text.find(separator, from), text.size());
    parts.push_back(text.substr(from, to - from));
    from = to + 1;
  }
  return parts;
}

/// The manager is called `manager` in every trace, its parameters parameter1, parameter2, …
Text Parameter(std::size_t index) {
  return "parameter" + std::to_string(index + 1);
}

std::size_t ParameterCount(const ErpSide& erp) {
  return erp.ranges.size() + erp.unusedParameters;
}

Text RowsText(const Pass& pass) {
  Text trace;
  for (std::size_t i = 0; i < pass.rows.size(); ++i) {
    const Text row = "row" + std::to_string(i + 1);
    trace += "rows.hasMoreElements()\nrows.nextElement()\n";
    if (pass.SyncMethod == 2) trace += row + ".getActionType()\n";
    trace += TraceOf(row, pass.rows[i].steps);
  }
  return trace + "rows.hasMoreElements()\n";
}

Text StateQuery(const Pass& pass) {
  return "query SELECT * FROM tstables WHERE tablename = N'" + pass.entity.TableName + "'\nclose recordset\n";
}

Text UpdateTimeStored(const Pass& pass) {
  const Text now = pass.databasePlatform == 1 ? "CONVERT(DATETIME,'2004-01-31 10:11:12',120)"
                                              : "TO_DATE( '2004-01-31 10:11:12','yyyy-mm-dd HH24:MI:SS')";
  return "sql UPDATE tstables SET lutm  = " + now + " WHERE tablename = N'" + pass.entity.TableName + "' -> 1\n";
}

Text ManagerRegistered(const ErpSide& erp) {
  if (erp.managerClass.empty()) return "session.addManager(&nothing)\n";
  return "create " + erp.managerClass + "\nsession.addManager(&<manager>)\n";
}

Text CriteriaCreated(const ErpSide& erp) {
  Text trace =
      "create NetListSelectionCriteria.NetListSelectionCriteria\n"
      "create NetListSelectionCriteria.NetListIn\n"
      "create NetListSelectionCriteria.NetListOut\n"
      "create NetListSelectionCriteria.NetListPeriod\n";
  for (std::size_t i = 0; i < ParameterCount(erp); ++i) trace += "create NetListSelectionCriteria.NetListParameter\n";
  return trace;
}

Text CriteriaFilled(const ErpSide& erp) {
  Text trace =
      "period.setFrom(<object>)\n"
      "period.setTo(<object>)\n"
      "criteria.setNetListPeriod(&<period>)\n";
  for (std::size_t i = 0; i < erp.ranges.size(); ++i) {
    trace += Parameter(i) + ".setFieldName(\"" + erp.ranges[i].field + "\")\n";
    trace += Parameter(i) + ".setFrom(" + erp.ranges[i].from + ")\n";
    trace += Parameter(i) + ".setTo(" + erp.ranges[i].to + ")\n";
  }
  for (std::size_t i = 0; i < erp.ranges.size(); ++i) trace += "input.addNetListParameter(&<" + Parameter(i) + ">)\n";
  trace += "criteria.setNetListIn(&<input>)\n";
  for (const Text& field : Split(erp.fields, ' ')) {
    trace += field.starts_with("old:") ? "output.addFieldNameWithOld(\"" + field.substr(4) + "\")\n"
                                       : "output.addFieldNameWithoutOld(\"" + field + "\")\n";
  }
  return trace + "criteria.setNetListOut(&<output>)\n";
}

/// What the copy of the table says before the pass and behind it.
Text TakenText(const Pass& pass) {
  return StateQuery(pass) + "sql UPDATE tstables SET in_use = 1WHERE tablename = N'" + pass.entity.TableName +
         "' -> 1\nevent DataCopyStarted(time(10:11:12 AM), i16(1))\n";
}

Text ReleasedText(const Pass& pass) {
  return "sql UPDATE tstables SET in_use = 0WHERE tablename = N'" + pass.entity.TableName + "' -> 1\n";
}

Text PostCopyText(const Pass& pass) {
  const bool changed = pass.counts.ucount > 0 || pass.counts.icount > 0 || pass.counts.dcount > 0;
  if (pass.databasePlatform != 1 || !changed) return "";
  return "sql UPDATE STATISTICS " + pass.entity.TableName + "\n" + pass.erp.behind;
}

Text CountersText(const Counts& counts) {
  return "ucount " + std::to_string(counts.ucount) + ", icount " + std::to_string(counts.icount) + ", dcount " +
         std::to_string(counts.dcount);
}

Text SummaryText(const Pass& pass) {
  const Text& TableName = pass.entity.TableName;
  Text log = "Date: 1/31/2004 Time: 10:11:12 AM\r\n\"Rows copied: " + TableName + " -  " +
             std::to_string(pass.counts.icount) + "\"\r\n";
  if (pass.counts.ucount > 0) {
    log += "\"Rows updated: " + TableName + " -  " + std::to_string(pass.counts.ucount) + "\"\r\n";
  }
  if (pass.counts.dcount > 0) {
    log += "\"Rows deleted: " + TableName + " -  " + std::to_string(pass.counts.dcount) + "\"\r\n";
  }
  return log;
}

Text RecordText(const RuntimeError& error) {
  return "\"" + error.source() + "\",\"" + error.description() + "\"\r\n";
}

Text ErrorText(const RuntimeError& error) {
  return std::to_string(error.number()) + " " + error.source() + ": " + error.description();
}

/// What the rows of a pass have said of their keys, as the lines of its trace go by.
class SaidKey {
 public:
  explicit SaidKey(const Pass& pass) : keys_(Split(pass.erp.keys, ' ')), rows_(pass.rows) {}

  void Take(const Text& line) {
    if (line == "rows.nextElement()") {
      said_.clear();
      fields_ = rows_[rowsTaken_++].fields;
    }
    if (line == "rows.hasMoreElements()") said_.clear();
    const Text row = "row" + std::to_string(rowsTaken_) + ".";
    if (!line.starts_with(row)) return;
    const Text operation = line.substr(row.size(), line.find('(') - row.size());
    const Text field = operation.substr(3);
    if (operation.starts_with("set")) Set(field, line);
    if (StartsWithIgnoringCase(operation, "get")) Say(field);
  }

  Text text() const {
    Text text;
    for (const Text& key : keys_) {
      if (said_.contains(key)) text += (text.empty() ? "" : ", ") + key + "=" + said_.at(key);
    }
    return text;
  }

 private:
  /// `row1.setX(i32(3))`
  void Set(const Text& field, const Text& line) {
    const std::size_t from = line.rfind('(') + 1;
    fields_.emplace_back(field, line.substr(from, line.find(')', from) - from));
  }

  void Say(const Text& field) {
    for (const auto& [name, value] : fields_) {
      if (name == field && !value.Is<Empty>() && !value.IsNull()) said_[field] = value.AsText();
    }
  }

  std::vector<Text> keys_;
  std::vector<ListedRow> rows_;
  std::size_t rowsTaken_ = 0;
  RowFields fields_;
  std::map<Text, Text> said_;
};

/// The operation of a line that is a call; empty for every other line.
Text OperationIn(const Text& line) {
  const std::size_t bracket = line.find('(');
  if (line.starts_with("sql ") || line.starts_with("query ") || line.starts_with("create ") || bracket == Text::npos) {
    return {};
  }
  return line.substr(line.find('.') + 1, bracket - line.find('.') - 1);
}

/// The failure as a record tells it when it was met at the last of these lines. A date object of a row is asked for the
/// field's sake.
RuntimeError Told(const RuntimeError& failure, const std::vector<Text>& lines, const Text& key) {
  const bool isDate = lines.back().ends_with(".toLocaleString()");
  const Text operation = OperationIn(isDate ? lines[lines.size() - 2] : lines.back());
  Text description = failure.description();
  if (!operation.empty()) description += ": " + operation + (key.empty() ? "" : " of " + key);
  return {failure.number(), failure.source(), description};
}

/// What the failure path of the pass raises.
RuntimeError FailureOf(const Pass& pass, std::int32_t number, const Text& erpName) {
  const Text& named = pass.SyncMethod == 1 ? pass.entity.caption : pass.entity.onlyChanged;
  return {number + 100, "Data copy: " + named, pass.entity.caption + " could not be copied from " + erpName + "."};
}

/// The counts of the statements among these steps, as they stand behind them.
std::vector<std::int64_t> CountsOf(const Steps& steps) {
  std::vector<std::int64_t> counts;
  for (const Text& step : steps) {
    const std::size_t at = step.rfind(" -> ");
    if (step.starts_with("sql ") && at != Text::npos) counts.push_back(std::stoll(step.substr(at + 4)));
  }
  return counts;
}

/// What a row had before.
Object OldValues(CopyFixture& copy, const RowFields& fields) {
  const auto old = copy.components.Make("old");
  for (const auto& [field, value] : fields) {
    old->Answers("has" + field, !value.Is<Empty>()).Answers("get" + field, value);
  }
  return Object(old);
}

/// Gives each creation of a parameter object one of its own.
void NameParameters(CopyFixture& copy, std::size_t count) {
  std::vector<std::shared_ptr<ScriptedObject>> parameters;
  for (std::size_t i = 0; i < count; ++i) {
    parameters.push_back(copy.components.Make(Parameter(i)));
    for (const char* operation : {"setFieldName", "setFrom", "setTo"}) parameters[i]->Answers(operation, Value());
  }
  copy.components.RegisterInTurn("NetListSelectionCriteria.NetListParameter", parameters);
}

std::shared_ptr<ScriptedObject> ArrangeErp(CopyFixture& copy, const Pass& pass) {
  std::vector<Object> rows;
  for (const ListedRow& row : pass.rows) rows.push_back(Listed(copy, row));
  const auto manager = copy.AddManager(pass.erp.managerClass, "manager", rows);
  NameParameters(copy, ParameterCount(pass.erp));
  if (pass.arrange) pass.arrange(copy, *manager);
  return manager;
}

CopyResult CopyTable(CopyFixture& copy, const Pass& pass) {
  return copy.CopyTable(1, pass.entity.TableName, pass.SyncMethod);
}

/// How a pass comes to fail, when its trace begins behind this many lines of the table's copy.
using Failing = std::function<void(CopyFixture& copy, std::size_t linesBefore)>;

/// A pass that says `trace`, logs `first` and raises `raised`, by itself and within the copy of its table, which logs
/// what was raised. `summary` is what it logs before it fails.
void ExpectFailure(const Pass& pass, const Failing& arrange, const Text& trace, const RuntimeError& first,
                   const RuntimeError& raised, const Text& summary = "") {
  CopyFixture alone(pass.erp.generation, pass.databasePlatform);
  arrange(alone, 0);
  EXPECT_EQ(Raised([&] { (alone.*pass.entity.copy)(pass.entity.TableName, pass.SyncMethod); }), ErrorText(raised));
  EXPECT_EQ(alone.journal.Take(), trace);
  EXPECT_EQ(alone.RunLog(), summary + kLogHead + RecordText(first));

  CopyFixture table(pass.erp.generation, pass.databasePlatform);
  table.database.AffectNext({1});  // the table is taken
  arrange(table, Split(TakenText(pass), '\n').size());
  EXPECT_EQ(CopyTable(table, pass), CopyResult::Failed);
  EXPECT_EQ(table.journal.Take(), TakenText(pass) + trace + ReleasedText(pass));
  EXPECT_EQ(table.RunLog(), summary + kLogHead + RecordText(first) + RecordText(raised));
}

}  // namespace

ErpSide WithoutManager(const Text& generation, ErpSide erp) {
  erp.generation = generation;
  erp.managerClass.clear();
  return erp;
}

Pass FullPass(const TestedEntity& entity, const ErpSide& erp, const std::vector<ListedRow>& rows,
              const Counts& counts) {
  return {.entity = entity, .erp = erp, .SyncMethod = 1, .rows = rows, .counts = counts};
}

Pass ChangedPass(const TestedEntity& entity, const ErpSide& erp, const std::vector<ListedRow>& rows,
                 const Counts& counts) {
  return {.entity = entity, .erp = erp, .SyncMethod = 2, .rows = rows, .counts = counts};
}

Pass Under(const Text& generation, Pass pass) {
  pass.erp.generation = generation;
  pass.erp.behind.clear();
  return pass;
}

std::vector<Pass> BothPasses(const TestedEntity& entity, const ErpSide& erp) {
  return {FullPass(entity, erp), ChangedPass(entity, erp)};
}

Text TraceOf(const Text& row, const Steps& steps) {
  Text trace;
  for (const Text& step : steps) {
    if (step.starts_with("sql ") || step.find('(') != Text::npos) {
      trace += step + "\n";
      continue;
    }
    for (const Text& asked : Split(step, ' ')) {
      const bool ofAnother = asked.find('.') != Text::npos;
      trace += (ofAnother ? "" : row + ".") + asked + "()\n";
    }
  }
  return trace;
}

Text TraceOf(const Pass& pass) {
  const Text& TableName = pass.entity.TableName;
  if (pass.SyncMethod == 1) {
    return ManagerRegistered(pass.erp) + "manager.Initialize(&\"100\")\n" + "manager.List(" + pass.erp.list + ")\n" +
           "sql UPDATE " + TableName + " SET upd_flag = 1 \n" + RowsText(pass) + "sql DELETE FROM " + TableName +
           " WHERE upd_flag = 1\n" + UpdateTimeStored(pass) + "manager.Close()\n";
  }
  return ManagerRegistered(pass.erp) + CriteriaCreated(pass.erp) + "manager.Initialize(&\"100\")\n" + StateQuery(pass) +
         CriteriaFilled(pass.erp) + "manager." + pass.erp.listing + "(&\"" + pass.erp.tableCode + "\", &<criteria>)\n" +
         RowsText(pass) + UpdateTimeStored(pass);
}

Text UpTo(const Text& beginning, const Text& trace) {
  const std::size_t line = trace.starts_with(beginning) ? 0 : trace.find("\n" + beginning) + 1;
  return trace.substr(0, trace.find('\n', line) + 1);
}

std::shared_ptr<ScriptedObject> Arrange(CopyFixture& copy, const Pass& pass) {
  copy.database.AffectNext(CountsOf(Split(RowsText(pass), '\n')));
  return ArrangeErp(copy, pass);
}

Object Listed(CopyFixture& copy, const ListedRow& row) {
  RowFields fields = row.fields;
  if (!row.oldValues.empty()) fields.emplace_back(row.oldValues, OldValues(copy, row.oldFields));
  return copy.RowWith(fields);
}

void ExpectPass(const Pass& pass) {
  SCOPED_TRACE("generation " + pass.erp.generation);

  CopyFixture alone(pass.erp.generation, pass.databasePlatform);
  Arrange(alone, pass);
  if (pass.SyncMethod == 1) alone.SetCounters(/*icount=*/7, /*ucount=*/0, /*dcount=*/0);
  if (pass.SyncMethod == 2) alone.SetCounters(/*icount=*/7, /*ucount=*/8, /*dcount=*/9);
  (alone.*pass.entity.copy)(pass.entity.TableName, pass.SyncMethod);
  EXPECT_EQ(alone.journal.Take(), TraceOf(pass));
  EXPECT_EQ(alone.Counters(), CountersText(pass.counts));
  EXPECT_EQ(alone.RunLog(), SummaryText(pass));

  CopyFixture table(pass.erp.generation, pass.databasePlatform);
  table.database.AffectNext({1});  // the table is taken
  Arrange(table, pass);
  EXPECT_EQ(CopyTable(table, pass), CopyResult::Done);
  EXPECT_EQ(table.journal.Take(), TakenText(pass) + TraceOf(pass) + PostCopyText(pass) + ReleasedText(pass));
  EXPECT_EQ(table.Counters(), CountersText(pass.counts));
  EXPECT_EQ(table.RunLog(), SummaryText(pass));
}

void ExpectFailureAtEachStep(const Pass& pass) {
  const RuntimeError failure(5000, "the other side", "it broke");
  const std::vector<Text> steps = Split(TraceOf(pass), '\n');
  Text trace = steps.front() + "\n";
  SaidKey said(pass);
  for (std::size_t step = 1; step < steps.size(); ++step) {
    SCOPED_TRACE("generation " + pass.erp.generation + ", failing at " + steps[step]);
    const auto failAtStep = [&](CopyFixture& copy, std::size_t linesBefore) {
      copy.database.AffectNext(CountsOf(Split(trace, '\n')));
      ArrangeErp(copy, pass);
      copy.journal.FailAtLine(linesBefore + step, failure);
    };
    trace += steps[step] + "\n";
    said.Take(steps[step - 1]);
    const bool entersRow = steps[step] == "rows.hasMoreElements()" || steps[step] == "rows.nextElement()";
    const RuntimeError told = Told(failure, {steps.begin(), steps.begin() + static_cast<std::ptrdiff_t>(step) + 1},
                                   entersRow ? "" : said.text());
    const bool summarized = steps[step] == "manager.Close()";  // the table's summary precedes the manager's closing

    ExpectFailure(pass, failAtStep, trace + (pass.SyncMethod == 1 ? "manager.Close()\n" : ""), told,
                  FailureOf(pass, failure.number(), pass.erp.name), summarized ? SummaryText(pass) : "");
  }
}

void ExpectMissingComponent(const Pass& pass) {
  SCOPED_TRACE("generation " + pass.erp.generation);
  const RuntimeError missing(429, pass.erp.managerClass, "Component can't create object: " + pass.erp.managerClass);
  const Text erpName = pass.erp.isNamedFirst ? pass.erp.name : "";

  ExpectFailure(
      pass, [](CopyFixture& copy, std::size_t) { copy.RegisterCriteria(); }, "create " + pass.erp.managerClass + "\n",
      missing, pass.SyncMethod == 1 ? kNotSet : FailureOf(pass, missing.number(), erpName));
}

void ExpectNoManager(const Pass& pass) {
  SCOPED_TRACE("generation " + pass.erp.generation);
  const Text criteria = pass.SyncMethod == 1 ? "" : CriteriaCreated(pass.erp);
  const RuntimeError raised = pass.SyncMethod == 1 ? kNotSet : FailureOf(pass, kNotSet.number(), "");

  ExpectFailure(
      pass, [](CopyFixture& copy, std::size_t) { copy.RegisterCriteria(); }, ManagerRegistered(pass.erp) + criteria,
      kNotSet, raised);

  CopyFixture withoutSession(pass.erp.generation);
  withoutSession.RegisterCriteria();
  withoutSession.process.ErpSession.Release();
  EXPECT_EQ(Raised([&] { (withoutSession.*pass.entity.copy)(pass.entity.TableName, pass.SyncMethod); }),
            ErrorText(raised));
  EXPECT_EQ(withoutSession.journal.Take(), criteria);
}

void ExpectNothingUnderOtherSyncMethods(const TestedEntity& entity, const ErpSide& erp) {
  for (const int SyncMethod : {0, 3, -1, 7}) {
    SCOPED_TRACE(SyncMethod);
    CopyFixture copy(erp.generation);
    Arrange(copy, FullPass(entity, erp, {{}}, {}));
    copy.SetCounters(7, 8, 9);

    (copy.*entity.copy)(entity.TableName, static_cast<std::int16_t>(SyncMethod));

    EXPECT_EQ(copy.journal.Take(), "");
    EXPECT_EQ(copy.Counters(), "ucount 8, icount 7, dcount 9");
    EXPECT_EQ(copy.RunLog(), "");
  }
}

void ExpectRow(const TestedEntity& entity, const Text& generation, const ListedRow& row,
               std::int16_t databasePlatform) {
  SCOPED_TRACE("generation " + generation);
  CopyFixture copy(generation, databasePlatform);
  copy.database.AffectNext(CountsOf(row.steps));
  const Object listed = Listed(copy, row);

  copy.ApplyTo(entity.apply, listed, entity.TableName);

  EXPECT_EQ(copy.journal.Take(), TraceOf("row1", row.steps));
}

void ExpectStatements(const TestedEntity& entity, const Text& generation, const std::vector<RowCase>& cases,
                      std::int16_t databasePlatform) {
  for (const RowCase& row : cases) {
    SCOPED_TRACE("generation " + generation + ", " + row.update);
    CopyFixture copy(generation, databasePlatform);
    copy.database.AffectNext({0});

    copy.Apply(entity.apply, row.fields, entity.TableName);

    EXPECT_EQ(copy.JournalWithout({"row"}), "sql " + row.update + " -> 0\nsql " + row.insert + " -> 1\n");
    EXPECT_EQ(copy.Counters(), "ucount 0, icount 1, dcount 0");
  }
}

void ExpectCounts(const TestedEntity& entity, const Text& generation, const RowFields& fields) {
  const struct {
    std::vector<std::int64_t> touched;
    const char* counters;
  } cases[] = {
      {{1}, "ucount 1, icount 0, dcount 0"},    {{2}, "ucount 1, icount 0, dcount 0"},
      {{-1}, "ucount 1, icount 0, dcount 0"},   {{0, 1}, "ucount 0, icount 1, dcount 0"},
      {{0, 0}, "ucount 0, icount 0, dcount 0"}, {{0, 2}, "ucount 0, icount 0, dcount 0"},
  };
  for (const auto& [touched, counters] : cases) {
    SCOPED_TRACE("update of " + std::to_string(touched.front()) + ", insert of " + std::to_string(touched.back()));
    CopyFixture copy(generation);
    copy.database.AffectNext(touched);

    copy.Apply(entity.apply, fields, entity.TableName);

    EXPECT_EQ(copy.Counters(), counters);
  }
}

void ExpectNullToFail(const TestedEntity& entity, const Text& generation, const RowFields& fields,
                      const std::vector<Text>& names) {
  for (const Text& name : names) {
    SCOPED_TRACE(name);
    const Text getter = (name.starts_with("Object") ? "Get" : "get") + name;
    CopyFixture copy(generation);
    RowFields withNull = fields;
    withNull.emplace_back(name, Null());

    EXPECT_EQ(Raised([&] { copy.Apply(entity.apply, withNull, entity.TableName); }),
              "94 ZenqayDBSync: Invalid use of Null: " + getter);

    EXPECT_EQ(copy.JournalWithout({"row"}), "");
  }
}

void ExpectEmptyStatements(const TestedEntity& entity, const Text& generation, const RowFields& fields) {
  SCOPED_TRACE("generation " + generation);
  ExpectRow(entity, generation, {fields, {"sql  -> 0", "sql  -> 1"}});
}

}  // namespace zenqay
