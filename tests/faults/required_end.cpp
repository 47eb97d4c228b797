#include "faults/required_end.h"

#include <stdexcept>

#include "process/QTMDeclarations.h"

namespace zenqay {
namespace {

constexpr const char* kDateLine = "\"Date-Time :2/1/2026 : 12:00:00 PM\"\n";

Text TableId(const Text& table) {
  static const std::map<Text, Text> ids = {
      {"SITE", "1"},   {"PRODUCT", "2"},      {"PROBLEM", "3"},   {"PRIORITY", "4"},   {"SYMPTOM", "5"},
      {"OBJECT", "6"}, {"SITECONTRACT", "7"}, {"CONTRACTS", "8"}, {"WARRANTIES", "9"}, {"SERIALIZEDITEM", "10"}};
  return ids.at(table);
}

std::vector<Text> HeardOfStart(const Text& table) {
  return {"message", "sync " + TableId(table) + " 1", "table " + TableId(table) + " 2"};
}

std::vector<Text> HeardOfCompletion(const Text& table) {
  return {"message", "sync " + TableId(table) + " 2", "table " + TableId(table) + " 4"};
}

std::vector<Text> HeardOfFailure(const Text& table) {
  return {"message", "alert", "sync " + TableId(table) + " 3", "table " + TableId(table) + " 16"};
}

void Append(std::vector<Text>& all, std::vector<Text> more, std::size_t count = 100) {
  if (more.size() > count) more.resize(count);
  all.insert(all.end(), more.begin(), more.end());
}

Text ErrorLine(const RuntimeError& error) {
  return "\"" + error.source() + "\",\"" + error.description() + "\"\n";
}

/// The first record of an error in a process.
Text FirstRecord(const RuntimeError& error) {
  Text record = kDateLine;
  for (const ProviderError& item : error.items()) {
    record += "\"" + item.Source + "\"," + std::to_string(item.Number) + ",\"" + item.Description + "\"\n";
  }
  return record + ErrorLine(error);
}

Text StartupRecord(std::int32_t number, const Text& description) {
  return "Date: 2/1/2026 Time: 12:00:00 PM\nThe data copy failed.\nError is - " + std::to_string(number) + ": " +
         description + "\n";
}

Text Cause(const RuntimeError& error) {
  return "error " + std::to_string(error.number()) + " from \"" + error.source() + "\": " + error.description();
}

bool IsStatusCall(const Step& step) {
  return step.kind == Step::Kind::Call && step.text.starts_with(kStatusClass);
}

bool IsDateCall(const Step& step) {
  const Text calls = Text(kDateClass) + ".";
  return step.kind == Step::Kind::Call && (step.text == Text("create ") + kDateClass || step.text.starts_with(calls));
}

}  // namespace

RequiredEnd::RequiredEnd(const DemoDatabase& database, const DemoJob& job) : database_(database), job_(job) {
  before_ = database.Look();
  Disturbance look;
  Text table;
  look.observer = [&](std::size_t index) {
    const Step& step = look.steps()[index];
    const Text gate = "SELECT * FROM tstables WHERE tablename = N'";
    const bool isStatement = step.kind == Step::Kind::Statement;
    if (isStatement && step.text.starts_with(gate))
      table = step.text.substr(gate.size(), step.text.size() - gate.size() - 1);
    rowsBehind_.resize(index + 1, rowsBehind_.empty() ? Text() : rowsBehind_.back());
    if (isStatement && !table.empty()) rowsBehind_[index] = database.StateOf(table).rows;
  };
  undisturbed_ = database.Run(look);
  steps_ = look.steps();
  for (const Text& name : database.tables()) {
    distinctRows_[name] = database.DistinctRows(name, true);
    distinctRowsWithoutExpiry_[name] = database.DistinctRows(name, false);
  }
  FindPlaces();
}

std::vector<std::size_t> RequiredEnd::StepsOf(Step::Kind kind) const {
  std::vector<std::size_t> found;
  for (std::size_t i = 0; i < steps_.size(); ++i) {
    if (steps_[i].kind == kind) found.push_back(i);
  }
  return found;
}

void RequiredEnd::FindPlaces() {
  const std::pair<Phase, Text> starts[] = {{Phase::DateLimits, Text("create ") + kDateClass},
                                           {Phase::Session, Text("create ") + kAdapterInfoClass},
                                           {Phase::StatusComponent, Text("create ") + kStatusClass},
                                           {Phase::Opening, "open"}};
  Phase phase = Phase::Registry;
  std::size_t next = 0;
  std::size_t step = 0;
  const auto isGate = [&](std::size_t index, std::size_t table) {
    return steps_[index].text == "SELECT * FROM tstables WHERE tablename = N'" + database_.tables()[table] + "'";
  };
  for (; !isGate(step, 0); ++step) {
    // The very first step opens the connection of the registry.
    if (step > 0 && next < std::size(starts) && steps_[step].text == starts[next].second) phase = starts[next++].first;
    places_.push_back({phase, 0, "", false, false});
  }
  for (std::size_t table = 0; table < database_.tables().size(); ++table) {
    if (!isGate(step, table)) throw std::logic_error("a table has no gate: " + steps_[step].text);
    FindPlacesOfTable(step, table);
  }
  if (step + 1 != steps_.size() || steps_[step].text != "close") throw std::logic_error("the job has another end");
  places_.push_back({Phase::Closing, database_.tables().size() - 1, rowsBehind_[step], true, true});
}

void RequiredEnd::FindPlacesOfTable(std::size_t& step, std::size_t table) {
  const Text& name = database_.tables()[table];
  const Text release = "UPDATE tstables SET in_use = 0WHERE tablename = N'" + name + "'";
  const bool isFull = job_.syncMethod == "1";
  const std::size_t begin = step;
  Phase phase = Phase::Gate;
  bool isSummaryWritten = false;
  bool isUpdateTimeMoved = false;
  const auto add = [&] {
    places_.push_back({phase, table, step == begin ? before_.tables.at(name).rows : rowsBehind_[step], isSummaryWritten,
                       isUpdateTimeMoved});
    ++step;
  };
  add();
  phase = Phase::Taking;
  add();
  phase = Phase::TellingStart;
  while (IsStatusCall(steps_[step])) add();
  phase = isFull ? Phase::MissingManager : Phase::Copy;
  for (bool isCopied = false; !isCopied;) {
    const Step& now = steps_[step];
    const bool isClosing = now.text == "close" && now.kind == Step::Kind::Log;
    if (now.text.starts_with("UPDATE tstables SET lutm  = ")) {
      if (rowsBehind_[step] != undisturbed_.tables.at(name).rows) {
        throw std::logic_error("the update time of " + name + " moves before its rows are complete");
      }
      MarkUpdateTimeLiteral(begin, step);
      isUpdateTimeMoved = true;
    }
    if (isClosing) isSummaryWritten = true;
    isCopied = isFull ? now.kind == Step::Kind::Call && now.text.ends_with(".Close") : isClosing;
    const bool isManager = now.text.starts_with("create Kv");
    add();
    if (isManager) phase = Phase::Copy;
  }
  for (; steps_[step].text != release; add()) {
    phase = steps_[step].text.starts_with("UPDATE STATISTICS ") ? Phase::Statistics : Phase::Expiry;
  }
  phase = Phase::Release;
  add();
  phase = Phase::TellingEnd;
  while (IsStatusCall(steps_[step])) add();
}

/// The literal of the update time is made of date calls: in a full copy right before its rows are marked, in an
/// only-changed pass right before the update time is stored.
void RequiredEnd::MarkUpdateTimeLiteral(std::size_t begin, std::size_t statement) {
  std::size_t end = statement;
  if (job_.syncMethod == "1") {
    for (end = begin; !steps_[end].text.ends_with(" SET upd_flag = 1 ");) ++end;
  }
  for (std::size_t i = end; i-- > begin && IsDateCall(steps_[i]);) places_[i].phase = Phase::UpdateTimeLiteral;
}

const RequiredEnd::Place& RequiredEnd::PlaceBehind(std::size_t step, When when) const {
  const bool isFirst = step == 0 || places_[step].phase == Phase::Gate;  // what is in front of it is not its table's
  return when == When::Behind || isFirst ? places_[step] : places_[step - 1];
}

Text RequiredEnd::TableAt(std::size_t step) const {
  const Phase phase = places_[step].phase;
  return phase < Phase::Gate ? Text() : database_.tables()[places_[step].table];
}

JobEnd RequiredEnd::CompleteUpTo(std::size_t tables) const {
  JobEnd end;
  for (std::size_t i = 0; i < database_.tables().size(); ++i) {
    const Text& name = database_.tables()[i];
    end.tables[name] = i < tables ? undisturbed_.tables.at(name) : before_.tables.at(name);
    end.tables[name].updateTime = i < tables ? "new" : "old";
    end.tables[name].isTaken = false;
    if (i >= tables) continue;
    Append(end.heard, HeardOfStart(name));
    Append(end.heard, HeardOfCompletion(name));
  }
  return end;
}

JobEnd RequiredEnd::Undisturbed() const {
  return CompleteUpTo(database_.tables().size());
}

JobEnd RequiredEnd::StartFailure(const RuntimeError& error) const {
  JobEnd end = CompleteUpTo(0);
  end.startupLog = StartupRecord(error.number(), error.description());
  return end;
}

JobEnd RequiredEnd::OfFailure(std::size_t step, When when, const RuntimeError& error) const {
  const Place& place = places_[step];
  const Text name = database_.tables()[place.table];
  switch (place.phase) {
    case Phase::Registry: {
      JobEnd end = StartFailure(RuntimeError(PlatformFault::PathAccess));  // there is no run log yet
      end.causes = {Cause(error)};
      return end;
    }
    case Phase::Session: {
      // The record goes to a file in a directory that is named as the label reads.
      JobEnd end = StartFailure(RuntimeError(
          PlatformFault::PathNotFound, "The session with the ERP adapter could not be opened.\\ZenqayDBSync.log"));
      end.causes = {Cause(error)};
      return end;
    }
    case Phase::DateLimits:
    case Phase::StatusComponent:
    case Phase::Opening:
      return StartFailure(error);
    case Phase::TellingEnd: {
      JobEnd end = CompleteUpTo(place.table + 1);
      std::size_t first = step;
      while (places_[first - 1].phase == Phase::TellingEnd) --first;
      const std::size_t told = step - first + (when == When::Behind ? 1 : 0);
      end.heard.resize(end.heard.size() - HeardOfCompletion(name).size());
      Append(end.heard, HeardOfCompletion(name), told);
      end.startupLog = StartupRecord(error.number(), error.description());
      return end;
    }
    default:
      break;
  }

  JobEnd end = CompleteUpTo(place.table);
  const JobEnd all = Undisturbed();
  for (std::size_t i = place.table; i < database_.tables().size(); ++i) {
    end.tables[database_.tables()[i]] = all.tables.at(database_.tables()[i]);
  }
  TableState& table = end.tables[name];
  bool isTold = false;  // the start of the copy
  bool isFailed = true;
  std::size_t toldOfStart = 100;
  const Place& reached = PlaceBehind(step, when);
  switch (place.phase) {
    case Phase::Gate:
    case Phase::Taking:
      table = before_.tables.at(name);
      table.log = FirstRecord(error) + (place.phase == Phase::Gate ? "the gate failed\n" : "");
      break;
    case Phase::TellingStart: {
      std::size_t first = step;
      while (places_[first - 1].phase == Phase::TellingStart) --first;
      toldOfStart = step - first + (when == When::Behind ? 1 : 0);
      table = before_.tables.at(name);
      table.log = FirstRecord(error);
      isTold = true;
      break;
    }
    case Phase::MissingManager:
    case Phase::Copy:
      table.rows = reached.rows;
      table.updateTime = reached.isUpdateTimeMoved ? "new" : "old";
      table.log = (places_[step].isSummaryWritten ? table.log : "") + FirstRecord(error) +
                  (place.phase == Phase::MissingManager ? "\"ZenqayDBSync\",\"Object variable not set\"\n"
                                                        : "the copy failed\n");
      isTold = true;
      break;
    case Phase::UpdateTimeLiteral:
      table.updateTime = job_.syncMethod == "1" ? "NULL" : "old";
      end.causes = {Cause(error)};
      isTold = true;
      isFailed = false;
      break;
    case Phase::Statistics:
      table.log += FirstRecord(error);
      isTold = true;
      isFailed = false;
      break;
    case Phase::Expiry:
      table.log += FirstRecord(error);
      isTold = true;
      break;
    case Phase::Release:
      table.isTaken = when == When::Before;
      table.log += FirstRecord(error);
      end.causes = {"table \"" + name + "\" may still be marked as in use: " + error.description()};
      isTold = true;
      isFailed = false;
      break;
    case Phase::Closing:
      table.log += FirstRecord(error);
      isTold = true;
      isFailed = false;
      break;
    default:
      throw std::logic_error("no such phase");
  }
  if (isTold) Append(end.heard, HeardOfStart(name), toldOfStart);
  Append(end.heard, isFailed ? HeardOfFailure(name) : HeardOfCompletion(name));
  for (std::size_t i = place.table + 1; i < database_.tables().size(); ++i) {
    Append(end.heard, HeardOfStart(database_.tables()[i]));
    Append(end.heard, HeardOfCompletion(database_.tables()[i]));
  }
  return end;
}

JobEnd RequiredEnd::OfKill(std::size_t step, When when) const {
  const Place& place = places_[step];
  if (place.phase < Phase::Gate) return CompleteUpTo(0);
  if (place.phase == Phase::Closing) return CompleteUpTo(place.table + 1);
  JobEnd end = CompleteUpTo(place.table);
  TableState& table = end.tables[database_.tables()[place.table]];
  const Place& reached = PlaceBehind(step, when);
  table.rows = reached.rows;
  table.updateTime = reached.isUpdateTimeMoved ? "new" : "old";
  table.isTaken = place.phase == Phase::Taking    ? when == When::Behind
                  : place.phase == Phase::Release ? when == When::Before
                                                  : place.phase != Phase::Gate;
  if (place.isSummaryWritten) table.log = undisturbed_.tables.at(database_.tables()[place.table]).log;
  return end;
}

JobEnd RequiredEnd::OfFailedSummary(std::size_t step, const RuntimeError& error, const Text& path) const {
  const Place& place = places_[step];
  const Text& name = database_.tables()[place.table];
  const Text summary = undisturbed_.tables.at(name).log;
  const Text& text = steps_[step].text;
  JobEnd end;
  if (!text.starts_with("line ")) {
    // The handle is free: the copy has failed behind its update time, as anywhere else.
    end = OfFailure(step, When::Before, error);
    end.tables[name].updateTime = "new";
    end.tables[name].log = (text == "close" ? summary : "") + FirstRecord(error) + "the copy failed\n";
    return end;
  }
  // The handle stays open, so no record can be written any more: not that of the copy, nor of the table, nor of the
  // job.
  end = CompleteUpTo(place.table);
  end.status = 70;
  TableState& table = end.tables[name];
  table = undisturbed_.tables.at(name);
  table.isTaken = true;
  table.log.clear();
  std::size_t first = step;
  while (steps_[first - 1].text.starts_with("line ")) --first;
  for (std::size_t i = first; i < step; ++i) table.log += steps_[i].text.substr(5) + "\n";
  const RuntimeError open(PlatformFault::FileAlreadyOpen, path);
  end.causes = {Cause(error), Cause(open), Cause(open), Cause(open)};
  Append(end.heard, HeardOfStart(name));
  return end;
}

bool RequiredEnd::LeavesExpiryBehind(std::size_t step, When when) const {
  const Place& place = places_[step];
  const bool isBehindCopy =
      place.phase == Phase::Copy || place.phase == Phase::Statistics || place.phase == Phase::Expiry;
  return job_.syncMethod == "2" && isBehindCopy && PlaceBehind(step, when).isUpdateTimeMoved;
}

std::vector<Text> RequiredEnd::HeardOfTaken(const Text& table) {
  return {"message", "table " + TableId(table) + " 8"};
}

const Text& RequiredEnd::DistinctRows(const Text& table, bool withExpiry) const {
  return withExpiry ? distinctRows_.at(table) : distinctRowsWithoutExpiry_.at(table);
}

}  // namespace zenqay
