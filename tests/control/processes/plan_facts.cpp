#include "plan_facts.h"

#include <algorithm>
#include <span>
#include <sstream>

#include "base/text_functions.h"

namespace zenqay {
namespace {

using Json = nlohmann::json;

/// A moment without a time of day is written as a date or as midnight.
Json Plain(const Json& value) {
  constexpr std::string_view kMidnight = " 00:00:00";
  if (!value.is_string() || !value.get<Text>().ends_with(kMidnight)) return value;
  return value.get<Text>().substr(0, value.get<Text>().size() - kMidnight.size());
}

std::vector<Text> ColumnsOf(const TestedTable& table) {
  std::vector<Text> columns;
  std::istringstream names(Replaced(Text(table.key) + "," + table.others, " ", ""));
  for (Text name; std::getline(names, name, ',');) columns.push_back(name);
  return columns;
}

/// What a plan says of a row.
struct Example {
  Row before;
  Row after;
};

Example ExampleOf(const Json& json) {
  Example example;
  for (const auto& [column, value] : json["key"].items()) {
    example.before[UpperCased(column)] = example.after[UpperCased(column)] = Plain(value);
  }
  for (const Json& field : json["fields"]) {
    const Text column = UpperCased(field["column"].get<Text>());
    example.before[column] = Plain(field["before"]);
    example.after[column] = Plain(field["after"]);
  }
  return example;
}

std::vector<Example> ExamplesOf(const Json& table, const char* kind) {
  std::vector<Example> examples;
  for (const Json& json : table["examples"]) {
    if (json["kind"] == kind) examples.push_back(ExampleOf(json));
  }
  return examples;
}

bool Holds(const Row& row, const Row& facts) {
  return std::ranges::all_of(facts, [&](const auto& fact) { return row.at(fact.first) == fact.second; });
}

/// Takes the rows out that examples name whole, with what is not null. False when there is no such row.
bool TakeOut(const std::vector<Example>& examples, Row Example::*state, const TestedTable& table, Rows& rows) {
  return std::ranges::all_of(examples, [&](const Example& example) {
    Row row = example.*state;
    for (const Text& column : ColumnsOf(table)) row.try_emplace(column);
    const auto found = rows.find(row);
    if (found == rows.end()) return false;
    rows.erase(found);
    return true;
  });
}

/// Whether the changes, each of one of the rows, make `after` of `before`. Rows of one key may be meant in turn.
bool Make(const Rows& before, std::span<const Example> changes, const Rows& after) {
  if (changes.empty()) return before == after;
  for (const Row& row : before) {
    if (!Holds(row, changes.front().before)) continue;
    Row changed = row;
    for (const auto& [column, value] : changes.front().after) changed[column] = value;
    Rows without = before;
    without.erase(without.find(row));
    Rows others = after;
    const auto made = others.find(changed);
    if (made == others.end()) continue;
    others.erase(made);
    if (Make(without, changes.subspan(1), others)) return true;
  }
  return false;
}

/// A row that goes and one of its key that comes are one change.
bool NamesAKeyTwice(const Json& table) {
  std::set<Text> gone;
  for (const Json& example : table["examples"]) {
    if (example["kind"] == "delete") gone.insert(example["key"].dump());
  }
  return std::ranges::any_of(table["examples"], [&](const Json& example) {
    return example["kind"] == "insert" && gone.contains(example["key"].dump());
  });
}

}  // namespace

Rows RowsOf(const JobSite& site, Engine engine, const TestedTable& table) {
  const std::vector<Text> columns = ColumnsOf(table);
  Text values;
  for (const Text& column : columns) values += (values.empty() ? "CAST(" : ", CAST(") + column + " AS TEXT)";
  const Text array = engine == Engine::Sqlite ? "json_array" : "json_build_array";
  std::istringstream lines(site.Rows("SELECT CAST(" + array + "(" + values + ") AS TEXT) FROM " + table.name));
  Rows rows;
  for (Text line; std::getline(lines, line);) {
    const Json fields = Json::parse(line);
    Row row;
    for (std::size_t i = 0; i < columns.size(); ++i) row[columns[i]] = Plain(fields.at(i));
    rows.insert(row);
  }
  return rows;
}

Text FaultOf(const TestedTable& tested, const Json& table, Rows before, Rows after) {
  const std::vector<Example> inserts = ExamplesOf(table, "insert");
  const std::vector<Example> changes = ExamplesOf(table, "change");
  const std::vector<Example> deletes = ExamplesOf(table, "delete");
  const bool showsAll =
      inserts.size() == table["insert"] && changes.size() == table["change"] && deletes.size() == table["delete"];
  if (!showsAll) return "not as many examples as it counts";
  const auto changesNothing = [](const Example& example) { return example.before == example.after; };
  if (std::ranges::any_of(changes, changesNothing)) return "a change of nothing";
  if (NamesAKeyTwice(table)) return "a row to delete and one to insert that are one to change";
  if (!TakeOut(deletes, &Example::before, tested, before)) return "a row to delete that is not there";
  if (!TakeOut(inserts, &Example::after, tested, after)) return "a row to insert that does not come";
  return Make(before, changes, after) ? "" : "the changes do not make the rows that the run makes";
}

}  // namespace zenqay
