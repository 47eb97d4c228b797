// The built program on the trace of an earlier run, by another clock and without its ERP.
#include <gtest/gtest.h>

#include <filesystem>
#include <regex>

#include "doubles/trace_text.h"
#include "e2e/program_fixture.h"

namespace zenqay {
namespace {

/// What a trace says apart from when: the times of texts, and the fields of the date of now that are put into a date.
std::string Said(const ProgramHome& home, const std::string& trace) {
  static const std::regex field(R"~("op":"set(Date|month|Year|Hours|Minutes|Seconds)","args":\[-?\d+\])~",
                                std::regex::icase);
  return std::regex_replace(home.Masked(WithoutTimes(home.directory().Read(trace))), field, "\"op\":\"set$1\"");
}

TEST(Replay, SaysWhatTheRecordedPassOfChangesSaidInAnotherTimeZoneAndWithoutExports) {
  ProgramHome home;
  home.RequestTrace();
  home.Execute("INSERT INTO SITE VALUES ('DUB01', NULL, 'C1', 0)");
  home.Execute("UPDATE tstables SET lutm = '2026-01-01 00:00:00' WHERE tablename = 'SITE'");
  home.WriteExport("Kv40QTMtssmaLocations.csv",
                   "Location:text:cloc:key,Description:text:desc,Customer:text:cuno\n"
                   "DUB01,Green,C2\nTYO01,,C3\n");
  home.WriteExport("Kv40QTMtssmaLocations.changes.csv",
                   "ChangedAt,ActionType,Location:text:cloc:key,Description:text:desc,Customer:text:cuno\n" +
                       UtcMoment(-60, 'T') + "Z,U,DUB01,Green,C2\n" + UtcMoment(-60, 'T') + "Z,I,TYO01,,C3\n");
  CommandLine line = home.Line();
  line.syncMethod = "2";
  std::filesystem::copy_file(home.path() + "/service.db", home.path() + "/before.db");
  home.Run(line);
  const std::string sites = home.Sites();

  std::filesystem::remove_all(home.path() + "/erp");
  std::filesystem::rename(home.path() + "/before.db", home.path() + "/service.db");
  std::filesystem::rename(home.path() + "/trace.jsonl", home.path() + "/recorded.jsonl");
  home.directory().Write("Components.xml",
                         "<COMPONENTS><HOST kind=\"replay\" file=\"recorded.jsonl\"/>"
                         "<TRACE file=\"trace.jsonl\"/></COMPONENTS>");
  const ProgramRun run = home.Run(line, {.timeZone = "Asia/Tokyo"});

  EXPECT_EQ(run.status, 0);
  EXPECT_EQ(run.err, "");
  EXPECT_EQ(sites, "DUB01|Green|C2|0\nTYO01|NULL|C3|0\n");
  EXPECT_EQ(home.Sites(), sites);
  EXPECT_EQ(Said(home, "trace.jsonl"), Said(home, "recorded.jsonl"));
}

}  // namespace
}  // namespace zenqay
