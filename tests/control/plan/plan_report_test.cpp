#include "control/plan/plan_report.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <sstream>

#include "control/exit_status.h"
#include "doubles/file_content.h"

namespace zenqay {
namespace {

using Json = nlohmann::ordered_json;

/// What of JSON Schema the schema of the plan uses.
class Schema {
 public:
  explicit Schema(Json root) : root_(std::move(root)) {}

  /// Where and why the value is none that the schema describes; empty when it is one.
  Text FaultIn(const Json& value) const { return FaultIn(value, root_, "plan"); }

 private:
  Text FaultIn(const Json& value, const Json& schema, const Text& at) const {
    if (schema.contains("$ref")) return FaultIn(value, root_.at(Json::json_pointer(Pointer(schema))), at);
    if (schema.contains("const") && value != schema["const"]) return at + ": another value";
    if (schema.contains("enum") && !Contains(schema["enum"], value)) return at + ": none of the values";
    if (schema.contains("type") && !HasType(value, schema["type"])) return at + ": another type";
    if (schema.contains("minimum") && value < schema["minimum"]) return at + ": too small";
    if (value.is_object()) return FaultInObject(value, schema, at);
    if (!value.is_array() || !schema.contains("items")) return "";
    for (const Json& item : value) {
      if (const Text fault = FaultIn(item, schema["items"], at + "[]"); !fault.empty()) return fault;
    }
    return "";
  }

  Text FaultInObject(const Json& value, const Json& schema, const Text& at) const {
    for (const Json& key : schema.value("required", Json::array())) {
      if (!value.contains(key.get<Text>())) return at + ": without " + key.get<Text>();
    }
    for (const auto& [key, item] : value.items()) {
      const Json properties = schema.value("properties", Json::object());
      const Json further = schema.value("additionalProperties", Json(true));
      if (!properties.contains(key) && further == Json(false)) return at + ": " + key + " is not described";
      const Json of = properties.contains(key) ? properties[key] : further;
      if (!of.is_object()) continue;
      if (const Text fault = FaultIn(item, of, at + "." + key); !fault.empty()) return fault;
    }
    return "";
  }

  static Text Pointer(const Json& schema) { return schema["$ref"].get<Text>().substr(1); }

  static bool Contains(const Json& list, const Json& value) {
    return std::find(list.begin(), list.end(), value) != list.end();
  }

  static bool HasType(const Json& value, const Json& type) {
    if (type.is_array()) {
      return std::any_of(type.begin(), type.end(), [&](const Json& one) { return HasType(value, one); });
    }
    if (type == "integer") return value.is_number_integer();
    return value.type_name() == type.get<Text>();
  }

  Json root_;
};

/// Two tables with everything that a plan can have.
Plan WholePlan() {
  TableRun complete;
  complete.task = {.job = "nightly", .database = "service", .table = "SITE", .method = Method::Full};
  complete.state = TableState::Complete;
  TableRun run = complete;
  run.task.job = "weekly";
  run.state = TableState::Failed;
  run.words = "13: Type mismatch";
  run.failures = {{.number = 13, .source = "X", .description = "Type mismatch", .rowKey = "Location=A1"}};
  TablePlan site = {.database = "service", .table = "SITE", .runs = {complete, run}};
  site.differences = {.rows = 300, .inserted = 4, .changed = 1, .changedByCopy = 1, .deleted = 150};
  site.differences.examples = {
      {RowDeed::Insert, {{"SITE", {}, "D1"}}, {{"DESCRIPTION", {}, "it's\nnew"}}},
      {RowDeed::Change, {{"SITE", "B1", "B1"}}, {{"CUSTOMER", {}, "C8"}, {"DESCRIPTION", "old", {}}}},
      {RowDeed::Delete, {{"SITE", {}, {}}}, {{"CUSTOMER", "C9", {}}}},
  };
  site.sweep = PlannedSweep{.rows = 150, .of = 300, .limit = "10%", .isRefused = true};
  TablePlan object = {.database = "other", .table = "OBJECT", .rewritten = 0};
  object.differences = {.rows = 2, .changed = 1};
  return {.tables = {site, object}, .warnings = {{"SITE", "see to it"}}};
}

TEST(PlanReport, TellsPeopleOfEachTable) {
  std::ostringstream out;

  WritePlan(out, WholePlan());

  EXPECT_EQ(
      out.str(),
      "TABLE         METHOD  ROWS  INSERT  CHANGE  DELETE  REWRITE  SWEEP                    OUTCOME\n"
      "service SITE  full    300   4       1       150              50%, limit 10%: refused  complete, failed\n"
      "other OBJECT          2     0       1       0       0                                 by the warranty expiry\n"
      "\n"
      "SITE\n"
      "  + SITE='D1': DESCRIPTION='it''s new'\n"
      "  … and 3 more to insert\n"
      "  ~ SITE='B1': CUSTOMER NULL -> 'C8', DESCRIPTION 'old' -> NULL\n"
      "  - SITE=NULL: CUSTOMER='C9'\n"
      "  … and 149 more to delete\n"
      "\n"
      "SITE: the job would not complete: failed: 13: Type mismatch\n"
      "    13: Type mismatch (row Location=A1)\n"
      "\n"
      "SITE: the sweep limit of 10% would refuse the deletion of 150 of 300 rows: the job would fail and delete "
      "none; --allow-sweep lifts the limit\n"
      "\n"
      "warning   SITE: see to it\n"
      "\n"
      "156 rows would change in 2 tables. Nothing was written.\n");
}

TEST(PlanReport, TellsProgramsWhatItsSchemaDescribes) {
  const Schema schema(Json::parse(ContentOf(ZENQAY_SHARE "/../docs/plan.schema.json")));

  EXPECT_EQ(schema.FaultIn(PlanJson(WholePlan())), "");
  EXPECT_EQ(schema.FaultIn(PlanJson({})), "");

  Json other = PlanJson(WholePlan());
  other["tables"][0]["examples"][1]["fields"][0]["more"] = 1;
  EXPECT_EQ(schema.FaultIn(other), "plan.tables[].examples[].fields[]: more is not described");
}

TEST(PlanStatus, IsThatOfARunAndSaysWhetherSomethingWouldChange) {
  EXPECT_EQ(ExitStatusOf(Plan{}), 0);
  Plan plan = WholePlan();
  EXPECT_EQ(ExitStatusOf(plan), kTableFailed);
  plan.tables[0].runs[1].state = TableState::Complete;
  EXPECT_EQ(ExitStatusOf(plan), kTableFailed);  // the sweep is refused
  plan.tables[0].sweep->isRefused = false;
  EXPECT_EQ(ExitStatusOf(plan), kWouldChange);
  plan.signal = 15;
  EXPECT_EQ(ExitStatusOf(plan), 143);
}

}  // namespace
}  // namespace zenqay
