// What a library throws in the middle of a job goes the way of every other failure.
#include <gtest/gtest.h>

#include <filesystem>
#include <new>

#include "doubles/outcome.h"
#include "startup/start_fixture.h"

namespace zenqay {
namespace {

struct ForeignFailure {
  std::exception_ptr thrown;
  RuntimeError met;  // what the failure paths make of it
};

std::vector<ForeignFailure> ForeignFailures() {
  return {
      {std::make_exception_ptr(std::bad_alloc()), RuntimeError(7, "ZenqayDBSync", "Out of memory")},
      {std::make_exception_ptr(std::runtime_error("iconv has no WINDOWS-1252")),
       RuntimeError(440, "ZenqayDBSync", "Automation error: iconv has no WINDOWS-1252")},
      {std::make_exception_ptr(
           std::filesystem::filesystem_error("cannot walk", "/erp", std::make_error_code(std::errc::io_error))),
       RuntimeError(440, "ZenqayDBSync", "Automation error: filesystem error: cannot walk: Input/output error [/erp]")},
  };
}

/// A whole process that copies the sites.
class SiteProcess : public StartFixture {
 public:
  explicit SiteProcess(const Text& SyncMethod) {
    items[2] = "2";
    items[3] = SyncMethod;
    toolkit->Answers("createUserSession", Object(Taking("session", {"addManager"})));
    const Object rows(
        components.MakeEnumeration("rows", {components.MakeRow({{"Location", "A1"}, {"ActionType", "U"}})}));
    Accept(*components.Register("Kv40QTMtssmaLocations.LocationsManager", "locations"), {"Initialize", "Close"})
        .Answers("List", rows)
        .Answers("NetListLocations", rows);
    const Text criteria = "NetListSelectionCriteria.NetList";
    Accept(*components.Register("NetListSelectionCriteria.NetListSelectionCriteria", "criteria"),
           {"setNetListPeriod", "setNetListIn", "setNetListOut"});
    Accept(*components.Register(criteria + "In", "input"), {"addNetListParameter"});
    Accept(*components.Register(criteria + "Out", "output"), {"addFieldNameWithoutOld", "addFieldNameWithOld"});
    Accept(*components.Register(criteria + "Period", "period"), {"setFrom", "setTo"});
    Accept(*components.Register(criteria + "Parameter", "parameter"), {"setFieldName", "setFrom", "setTo"});
  }

  /// Everything that the run leaves: what leaves it, the calls, the logs, what was named on standard error.
  Text Effect() {
    const Text raised = Raised([this] {
      try {
        Run();
      } catch (...) {
        throw ErrorInFlight();  // as the program's end has it
      }
    });
    const Text all =
        "raised " + raised + "\n" + journal.Take() + FileText("Site_20040131.log") + StartupLog() + Causes();
    return Replaced(all, directory.path().string(), "LOGS");
  }

 private:
  static ScriptedObject& Accept(ScriptedObject& object, const std::vector<Text>& operations) {
    for (const Text& operation : operations) object.Answers(operation, Value());
    return object;
  }

  std::shared_ptr<ScriptedObject> Taking(const Text& name, const std::vector<Text>& operations) {
    const std::shared_ptr<ScriptedObject> object = components.Make(name);
    Accept(*object, operations);
    return object;
  }
};

std::size_t StepsOf(const Text& SyncMethod) {
  SiteProcess process(SyncMethod);
  process.Run();
  const Text journal = process.journal.Take();
  return static_cast<std::size_t>(std::count(journal.begin(), journal.end(), '\n'));
}

class ForeignFailureTest : public testing::TestWithParam<Text> {};

TEST_P(ForeignFailureTest, GoesTheWayOfARuntimeErrorAtEachStepOfAProcess) {
  const std::size_t steps = StepsOf(GetParam());
  ASSERT_GT(steps, 40u);
  for (std::size_t step = 0; step < steps; ++step) {
    for (const ForeignFailure& failure : ForeignFailures()) {
      SiteProcess foreign(GetParam());
      foreign.journal.FailAtLine(step, failure.thrown);
      SiteProcess own(GetParam());
      own.journal.FailAtLine(step, failure.met);

      EXPECT_EQ(foreign.Effect(), own.Effect()) << "step " << step;
    }
  }
}

INSTANTIATE_TEST_SUITE_P(, ForeignFailureTest, testing::Values("1", "2"),
                         [](const auto& method) { return Text(method.param == "1" ? "FullCopy" : "OnlyChanged"); });

TEST(ForeignFailureInACopy, LeavesTheTableFreeItsRecordInTheRunLogAndTheEventsTold) {
  const std::pair<Text, Text> cases[] = {
      {"locations.List(\"\", high(10))", ": List"},    {"rows.nextElement()", ": nextElement"},
      {"row1.getLocation()", ": getLocation"},         {"sql UPDATE Site SET upd_flag = 1 ", ""},
      {"sql DELETE FROM Site WHERE upd_flag = 1", ""},
  };
  for (const auto& [failing, named] : cases) {
    SiteProcess undisturbed("1");
    undisturbed.Run();
    const Text journal = undisturbed.journal.Take();
    const std::size_t at = journal.find(failing);
    ASSERT_NE(at, Text::npos) << failing;
    const auto step = std::count(journal.begin(), journal.begin() + static_cast<std::ptrdiff_t>(at), '\n');

    SiteProcess process("1");
    process.journal.FailAtLine(static_cast<std::size_t>(step), std::make_exception_ptr(std::bad_alloc()));
    process.Run();

    const Text said = process.journal.Take();
    const Text logs = process.directory.path().string();
    EXPECT_EQ(said.substr(said.find("locations.Close()")),
              "locations.Close()\n"
              "sql UPDATE tstables SET in_use = 0WHERE tablename = N'Site' -> 1\n"
              "status.writeToMessageBox(&time(10:11:12 AM), &\"Copy of Sites (ERP table tssma120) failed.\")\n"
              "status.WriteToAlertBox(&time(10:11:12 AM), &\"Table Site could not be copied (-1). See the log file " +
                  logs +
                  "\\Site_20040131.log.\")\n"
                  "status.UpdateSyncStatus(&i16(2), i16(3))\n"
                  "status.UpdateStatusByTable(&i32(5), &i16(2), i32(16), &\"\")\n"
                  "close\n");
    EXPECT_EQ(process.FileText("Site_20040131.log"),
              "\"Date-Time :1/31/2004 : 10:11:12 AM\"\r\n"
              "\"ZenqayDBSync\",\"Out of memory" +
                  named +
                  "\"\r\n"
                  "\"Data copy: Sites\",\"Sites could not be copied from the ERP (generation 1).\"\r\n");
    EXPECT_EQ(process.StartupLog(), "no file");
  }
}

}  // namespace
}  // namespace zenqay
