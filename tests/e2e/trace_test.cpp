// The trace of one small job, line by line.
#include <gtest/gtest.h>

#include <filesystem>
#include <nlohmann/json.hpp>
#include <sstream>

#include "doubles/trace_text.h"
#include "e2e/program_fixture.h"

namespace zenqay {
namespace {

using nlohmann::ordered_json;

/// What a run says from its start to its end: two sites, one that the table has and one that is new. Numbers that the
/// clock gives stand as "<clock>", the texts that it gives as <time>, <date>, <moment> and <day>.
constexpr const char* kFullCopyOfTwoSites = R"~(
{"n":1,"kind":"open","connection":1}
{"n":2,"kind":"sql","connection":1,"text":"SET DATEFORMAT YMD"}
{"n":3,"kind":"database","connection":1,"put":"SERVICE"}
{"n":4,"kind":"query","connection":1,"text":"SELECT a.ERPTableID,a.tableid, a.tablename, c.text from tstables a, tstreenodes b, tsi18ntext c where a.productid = N'4010' AND b.groupid = N'1' AND a.tableid = b.tableid AND b.label = c.label","rows":7}
{"n":5,"kind":"close","connection":1}
{"n":6,"kind":"create","class":"java:java.util.Date","id":1}
{"n":7,"kind":"create","class":"java:java.util.Date","id":2}
{"n":8,"kind":"create","class":"java:java.util.GregorianCalendar","id":3}
{"n":9,"kind":"call","id":3,"op":"get ZONE_OFFSET","args":[],"returns":15}
{"n":10,"kind":"call","id":3,"op":"get","args":[15],"returns":0}
{"n":11,"kind":"call","id":1,"op":"setTime","args":[0],"returns":{"empty":true}}
{"n":12,"kind":"call","id":1,"op":"setDate","args":[1],"returns":{"empty":true}}
{"n":13,"kind":"call","id":1,"op":"setmonth","args":[0],"returns":{"empty":true}}
{"n":14,"kind":"call","id":1,"op":"SetYear","args":[70],"returns":{"empty":true}}
{"n":15,"kind":"call","id":1,"op":"setMinutes","args":[0],"returns":{"empty":true}}
{"n":16,"kind":"call","id":2,"op":"setDate","args":[19],"returns":{"empty":true}}
{"n":17,"kind":"call","id":2,"op":"setmonth","args":[0],"returns":{"empty":true}}
{"n":18,"kind":"call","id":2,"op":"SetYear","args":[138],"returns":{"empty":true}}
{"n":19,"kind":"call","id":2,"op":"setHours","args":[3],"returns":{"empty":true}}
{"n":20,"kind":"call","id":2,"op":"setMinutes","args":[14],"returns":{"empty":true}}
{"n":21,"kind":"call","id":2,"op":"setSeconds","args":[7],"returns":{"empty":true}}
{"n":22,"kind":"create","class":"java:com.korvel.k3impl.about.AdapterComponentInfo","id":4}
{"n":23,"kind":"call","id":4,"op":"get getVersion","args":[],"returns":"2.4"}
{"n":24,"kind":"create","class":"java:com.korvel.k3.kxi1.AccessForCom","id":5}
{"n":25,"kind":"call","id":5,"op":"get kxiToolKit_getDefaultToolkit","args":[],"returns":{"object":6}}
{"n":26,"kind":"call","id":6,"op":"get createUserSession","args":[],"returns":{"object":7}}
{"n":27,"kind":"create","class":"ZenqayInstHandler.InstanceHandle","id":8}
{"n":28,"kind":"call","id":8,"op":"getInstance","args":[3],"returns":{"object":9}}
{"n":29,"kind":"call","id":8,"op":"put CurrentInstanceNumber","args":[3],"returns":{"empty":true}}
{"n":30,"kind":"open","connection":2}
{"n":31,"kind":"sql","connection":2,"text":"SET DATEFORMAT YMD"}
{"n":32,"kind":"database","connection":2,"put":"SERVICE"}
{"n":33,"kind":"database","connection":2,"get":"SERVICE"}
{"n":34,"kind":"query","connection":2,"text":"SELECT * FROM tstables WHERE tablename = N'SITE'","rows":1}
{"n":35,"kind":"sql","connection":2,"text":"UPDATE tstables SET in_use = 1WHERE tablename = N'SITE'","affected":1}
{"n":36,"kind":"event","name":"DataCopyStarted","args":["<time>",1]}
{"n":37,"kind":"call","id":9,"op":"writeToMessageBox","args":["<time>","Copy of Sites (ERP table 110) started."],"returns":{"empty":true}}
{"n":38,"kind":"call","id":9,"op":"UpdateSyncStatus","args":[1,1],"returns":{"empty":true}}
{"n":39,"kind":"call","id":9,"op":"UpdateStatusByTable","args":[42,1,2,""],"returns":{"empty":true}}
{"n":40,"kind":"create","class":"Kv40QTMtssmaLocations.LocationsManager","id":10}
{"n":41,"kind":"call","id":7,"op":"addManager","args":[{"object":10}],"returns":{"empty":true}}
{"n":42,"kind":"call","id":10,"op":"Initialize","args":["100"],"returns":{"empty":true}}
{"n":43,"kind":"call","id":10,"op":"List","args":["","\u007f\u007f\u007f\u007f\u007f\u007f\u007f\u007f\u007f\u007f"],"returns":{"object":11}}
{"n":44,"kind":"create","class":"java:java.util.Date","id":12}
{"n":45,"kind":"call","id":12,"op":"getMinutes","args":[],"returns":"<clock>"}
{"n":46,"kind":"call","id":12,"op":"getTimeZoneOffset","args":[],"returns":0}
{"n":47,"kind":"call","id":12,"op":"setMinutes","args":["<clock>"],"returns":{"empty":true}}
{"n":48,"kind":"call","id":12,"op":"getYear","args":[],"returns":"<clock>"}
{"n":49,"kind":"call","id":12,"op":"getMonth","args":[],"returns":"<clock>"}
{"n":50,"kind":"call","id":12,"op":"getDate","args":[],"returns":"<clock>"}
{"n":51,"kind":"call","id":12,"op":"getHours","args":[],"returns":"<clock>"}
{"n":52,"kind":"call","id":12,"op":"getMinutes","args":[],"returns":"<clock>"}
{"n":53,"kind":"call","id":12,"op":"getSeconds","args":[],"returns":"<clock>"}
{"n":54,"kind":"sql","connection":2,"text":"UPDATE SITE SET upd_flag = 1 "}
{"n":55,"kind":"call","id":11,"op":"hasMoreElements","args":[],"returns":true}
{"n":56,"kind":"call","id":11,"op":"nextElement","args":[],"returns":{"object":13}}
{"n":57,"kind":"call","id":13,"op":"getLocation","args":[],"returns":"DUB01"}
{"n":58,"kind":"call","id":13,"op":"hasDescription","args":[],"returns":true}
{"n":59,"kind":"call","id":13,"op":"getDescription","args":[],"returns":"St. Stephen's Green"}
{"n":60,"kind":"call","id":13,"op":"hasCustomer","args":[],"returns":false}
{"n":61,"kind":"call","id":13,"op":"getLocation","args":[],"returns":"DUB01"}
{"n":62,"kind":"sql","connection":2,"text":"UPDATE SITE SET SITE = N'DUB01', DESCRIPTION = N'St. Stephen''s Green', upd_flag = 0 WHERE SITE =N'DUB01'","affected":1}
{"n":63,"kind":"call","id":11,"op":"hasMoreElements","args":[],"returns":true}
{"n":64,"kind":"call","id":11,"op":"nextElement","args":[],"returns":{"object":14}}
{"n":65,"kind":"call","id":14,"op":"getLocation","args":[],"returns":"TYO01"}
{"n":66,"kind":"call","id":14,"op":"hasDescription","args":[],"returns":true}
{"n":67,"kind":"call","id":14,"op":"getDescription","args":[],"returns":"東京"}
{"n":68,"kind":"call","id":14,"op":"hasCustomer","args":[],"returns":true}
{"n":69,"kind":"call","id":14,"op":"getCustomer","args":[],"returns":""}
{"n":70,"kind":"call","id":14,"op":"getLocation","args":[],"returns":"TYO01"}
{"n":71,"kind":"sql","connection":2,"text":"UPDATE SITE SET SITE = N'TYO01', DESCRIPTION = N'東京', CUSTOMER = N'', upd_flag = 0 WHERE SITE =N'TYO01'","affected":0}
{"n":72,"kind":"call","id":14,"op":"hasDescription","args":[],"returns":true}
{"n":73,"kind":"call","id":14,"op":"hasCustomer","args":[],"returns":true}
{"n":74,"kind":"call","id":14,"op":"getLocation","args":[],"returns":"TYO01"}
{"n":75,"kind":"call","id":14,"op":"hasDescription","args":[],"returns":true}
{"n":76,"kind":"call","id":14,"op":"getDescription","args":[],"returns":"東京"}
{"n":77,"kind":"call","id":14,"op":"hasCustomer","args":[],"returns":true}
{"n":78,"kind":"call","id":14,"op":"getCustomer","args":[],"returns":""}
{"n":79,"kind":"sql","connection":2,"text":"INSERT INTO SITE (SITE ,DESCRIPTION ,CUSTOMER,upd_flag )VALUES (N'TYO01',N'東京',N'',0)","affected":1}
{"n":80,"kind":"call","id":11,"op":"hasMoreElements","args":[],"returns":false}
{"n":81,"kind":"sql","connection":2,"text":"DELETE FROM SITE WHERE upd_flag = 1"}
{"n":82,"kind":"sql","connection":2,"text":"UPDATE tstables SET lutm  = CONVERT(DATETIME,'<moment>',120) WHERE tablename = N'SITE'","affected":1}
{"n":83,"kind":"log","file":"<home>/logs\\SITE_<day>.log","lines":["Date: <date> Time: <time>","\"Rows copied: SITE -  2\""]}
{"n":84,"kind":"call","id":10,"op":"Close","args":[],"returns":{"empty":true}}
{"n":85,"kind":"sql","connection":2,"text":"UPDATE STATISTICS SITE"}
{"n":86,"kind":"sql","connection":2,"text":"UPDATE tstables SET in_use = 0WHERE tablename = N'SITE'","affected":1}
{"n":87,"kind":"event","name":"DataCopyComplete","args":["<time>",1,2,0,0]}
{"n":88,"kind":"call","id":9,"op":"writeToMessageBox","args":["<time>","Copy of Sites (ERP table 110) complete: 2 copied, 0 updated, 0 deleted."],"returns":{"empty":true}}
{"n":89,"kind":"call","id":9,"op":"UpdateSyncStatus","args":[1,2],"returns":{"empty":true}}
{"n":90,"kind":"call","id":9,"op":"UpdateStatusByTable","args":[42,1,4,""],"returns":{"empty":true}}
{"n":91,"kind":"event","name":"DataCopydone","args":[]}
{"n":92,"kind":"close","connection":2}
)~";

std::vector<ordered_json> ParsedLines(const std::string& text) {
  std::vector<ordered_json> lines;
  std::istringstream stream(text);
  for (std::string line; std::getline(stream, line);) {
    if (!line.empty()) lines.push_back(ordered_json::parse(line));
  }
  return lines;
}

/// `actual` with "<clock>" for each number that stands where `expected` says so.
ordered_json WithClockMasked(ordered_json actual, const ordered_json& expected) {
  if (expected == "<clock>" && actual.is_number()) return expected;
  if (!actual.is_structured() || actual.size() != expected.size()) return actual;
  for (auto member = expected.items().begin(); member != expected.items().end(); ++member) {
    if (actual.is_object() && !actual.contains(member.key())) continue;
    ordered_json& own = actual.is_object() ? actual[member.key()] : actual[std::stoul(member.key())];
    own = WithClockMasked(own, member.value());
  }
  return actual;
}

TEST(Trace, SaysEverythingThatASmallFullCopySaidToTheOutside) {
  ProgramHome home;
  home.RequestTrace();
  home.Execute("INSERT INTO SITE VALUES ('DUB01', NULL, 'C1', 0)");
  home.WriteExport("Kv40QTMtssmaLocations.csv",
                   "Location:text:cloc:key,Description:text:desc,Customer:text:cuno\n"
                   "DUB01,St. Stephen's Green,\n"
                   "TYO01,東京,\"\"\n");
  CommandLine line = home.Line();
  line.statusHandle = "42";
  line.instance = "3";

  const ProgramRun run = home.Run(line);

  EXPECT_EQ(run.status, 0);
  const std::vector<ordered_json> expected = ParsedLines(kFullCopyOfTwoSites);
  const std::vector<ordered_json> actual = ParsedLines(home.Masked(WithoutTimes(home.directory().Read("trace.jsonl"))));
  for (std::size_t at = 0; at < std::min(expected.size(), actual.size()); ++at) {
    EXPECT_EQ(WithClockMasked(actual[at], expected[at]).dump(), expected[at].dump());
  }
  EXPECT_EQ(actual.size(), expected.size());
}

TEST(Trace, IsReplacedByTheNextRun) {
  ProgramHome home;
  home.RequestTrace();
  home.directory().Write("trace.jsonl", "what was there before\n");

  home.RunText("one{}two{}three{}four{}" + home.path() + "/logs{}six");

  const std::vector<ordered_json> lines = ParsedLines(home.Masked(WithoutTimes(home.directory().Read("trace.jsonl"))));
  ASSERT_EQ(lines.size(), 1U);
  EXPECT_EQ(lines[0].dump(),
            ordered_json::parse(R"~({"n":1,"kind":"log","file":"<home>/logs\\ZenqayDBSync.log","lines":[
                                    "Date: <date> Time: <time>",
                                    "The data copy failed.",
                                    "Error is - 9999: The command line has too few items.\r\nThe data copy cannot start. Please inform your system administrator."]})~")
                .dump());
}

TEST(Trace, OnAFullDiskEndsWithOneLineOnStandardErrorWhileTheJobGoesOn) {
  ProgramHome home;
  home.RequestTrace();
  std::filesystem::create_symlink("/dev/full", home.directory().path() / "trace.jsonl");
  home.WriteExport("Kv40QTMtssmaLocations.csv",
                   "Location:text:cloc:key,Description:text:desc,Customer:text:cuno\nA1,N,C\n");

  const ProgramRun run = home.Run(home.Line());

  EXPECT_EQ(run.status, 0);
  EXPECT_EQ(home.Masked(run.err), "zenqay-dbsync: the trace ends here: Disk full: <home>/trace.jsonl\n");
  EXPECT_EQ(home.Sites(), "A1|N|C|0\n");
}

}  // namespace
}  // namespace zenqay
