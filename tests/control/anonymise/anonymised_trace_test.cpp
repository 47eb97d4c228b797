// A trace, line by line.
#include "control/anonymise/anonymised_trace.h"

#include <gtest/gtest.h>

#include <filesystem>

#include "doubles/outcome.h"
#include "doubles/temp_directory.h"
#include "marked_texts.h"

namespace zenqay {
namespace {

constexpr const char* kHead =
    R"({"kind":"trace","version":2,"program":"1.1.0","pid":4711,"started":"2026-11-21T22:00:00.000Z"})"
    "\n";

struct Traces {
  TempDirectory directory;
  const Anonymiser anonymiser{kTestKey};

  Text Path(const char* name) const { return (directory.path() / name).string(); }

  AnonymisedTrace Change(const Text& content) const {
    directory.Write("trace", content);
    return AnonymiseTrace(Path("trace"), Path("changed"), anonymiser);
  }

  Text Refusal(const Text& content) const {
    return Replaced(Raised([&] { Change(content); }), directory.path().string(), "HOME");
  }
};

TEST(AnonymisedTrace, HasOtherValuesInTheSameLines) {
  const Traces traces;
  const Text marked = kHead + Replaced(R"~({"n":1,"kind":"open","connection":1,"ms":0}
{"n":2,"kind":"database","connection":1,"put":"‹SERVICE›","ms":0}
{"n":3,"kind":"database","connection":1,"get":"‹SERVICE›","ms":0}
{"n":4,"kind":"lock","connection":1,"take":"SITE","got":true,"ms":0}
{"n":5,"kind":"query","connection":1,"text":"SELECT * FROM tstables WHERE tablename = N'SITE'","rows":1,"ms":0}
{"n":6,"kind":"event","name":"DataCopyStarted","args":["10:11:12 AM",1],"ms":0}
{"n":7,"kind":"create","class":"Kv40QTMtssmaLocations.LocationsManager","id":1,"ms":1}
{"n":8,"kind":"call","id":1,"op":"List","args":["","\u007f\u007f"],"returns":{"object":2},"ms":1}
{"n":9,"kind":"call","id":2,"op":"hasMoreElements","args":[],"returns":true,"ms":1}
{"n":10,"kind":"call","id":3,"op":"getLocation","args":[],"returns":"‹DUB01›","ms":1}
{"n":11,"kind":"call","id":3,"op":"getDescription","args":[],"returns":null,"ms":1}
{"n":12,"kind":"call","id":3,"op":"getWarranty","args":[],"returns":{"empty":true},"ms":1}
{"n":13,"kind":"call","id":3,"op":"getLine","args":[],"returns":4711,"ms":1}
{"n":14,"kind":"call","id":3,"op":"getNumber","args":[{"field":"TableID","value":5},2.5],"returns":12,"ms":1}
{"n":15,"kind":"call","id":3,"op":"getCustomer","args":[],"error":{"number":440,"source":"Kv40QTMtssmaLocations","description":"Automation error: no customer \"‹Acme›\": getCustomer of Location=‹DUB01›"},"ms":1}
{"n":16,"kind":"sql","connection":1,"text":"UPDATE SITE SET SITE = N'‹DUB01›', upd_flag = 0 WHERE SITE =N'‹DUB01›'","affected":1,"ms":1}
{"n":17,"kind":"sql","connection":1,"text":"DELETE FROM SITE WHERE upd_flag = 1","error":{"number":-2147217900,"source":"SQLite","description":"no such column: ‹zzz›"},"ms":1}
{"n":18,"kind":"log","file":"/‹acme›/log\\SITE_20261122.log","lines":["Date: 1/1/2026 Time: 1:02:03 AM","\"ZenqayDBSync\",\"Invalid use of Null: getCustomer of Location=‹DUB01›\""],"ms":1}
{"n":19,"kind":"box","text":"tstables or tstreenodes table is empty .. Cannot Proceed","ms":1}
{"n":20,"kind":"call","id":4,"op":"UpdateStatusByTable","args":[7,1,3,""],"returns":{"empty":true},"argsAfter":[8,1,3,"‹Acme›"],"ms":1}
{"n":21,"kind":"later","note":"‹Acme›","number":3,"ms":1}
)~",
                                       "\\u007f", "\x7f");

  const AnonymisedTrace done = traces.Change(Original(marked));

  EXPECT_EQ(traces.directory.Read("changed"), Expected(marked));
  EXPECT_EQ(done.lines, 22);
  EXPECT_EQ(done.changed, 10);
  EXPECT_FALSE(done.endIsCut);
  const auto rights = std::filesystem::status(traces.Path("changed")).permissions();
  EXPECT_EQ(rights, std::filesystem::perms::owner_read | std::filesystem::perms::owner_write);
}

TEST(AnonymisedTrace, ChangesAKeyThatIsANumberAsItsText) {
  const Traces traces;
  const Text customer = std::to_string(traces.anonymiser.Number(100234));

  traces.Change(kHead + Text(R"({"n":1,"kind":"call","id":3,"op":"getCustomer","args":[100234],"returns":100234})") +
                "\n" + R"({"n":2,"kind":"sql","connection":1,"text":"UPDATE SITE SET CUSTOMER = N'100234'"})" + "\n");

  EXPECT_EQ(traces.directory.Read("changed"),
            kHead + Text(R"({"n":1,"kind":"call","id":3,"op":"getCustomer","args":[100234],"returns":)") + customer +
                "}\n" + R"({"n":2,"kind":"sql","connection":1,"text":"UPDATE SITE SET CUSTOMER = N')" + customer +
                "'\"}\n");
}

/// As a whole number that a component gives beyond 32 bits stands in a trace.
TEST(AnonymisedTrace, ShowsANumberThatLeavesThe32BitsAsADouble) {
  const Traces traces;
  std::int64_t number = 2'000'000'000;
  while (traces.anonymiser.Number(number) < 4'000'000'000) ++number;
  const auto line = [](const Text& returned) {
    return R"({"n":1,"kind":"call","id":3,"op":"getCustomer","args":[],"returns":)" + returned + "}\n";
  };

  traces.Change(kHead + line(std::to_string(number)));

  EXPECT_EQ(traces.directory.Read("changed"), kHead + line(std::to_string(traces.anonymiser.Number(number)) + ".0"));
}

TEST(AnonymisedTrace, LeavesOutALineThatWasCutOff) {
  const Traces traces;

  const AnonymisedTrace done = traces.Change(Text(kHead) + R"({"n":1,"kind":"open","connection":1})" + "\n{\"n\":2,");

  EXPECT_EQ(traces.directory.Read("changed"), Text(kHead) + R"({"n":1,"kind":"open","connection":1})" + "\n");
  EXPECT_TRUE(done.endIsCut);
}

TEST(AnonymisedTrace, IsMadeOfTracesAlone) {
  const Traces traces;

  EXPECT_EQ(traces.Refusal(""), "2 zenqayctl: HOME/trace:1: that is no trace's head");
  EXPECT_EQ(traces.Refusal("SITE;A1\n"), "2 zenqayctl: HOME/trace:1: that is no line of a trace");
  EXPECT_EQ(traces.Refusal("{\"n\":1,\"kind\":\"open\"}\n"), "2 zenqayctl: HOME/trace:1: that is no trace's head");
  EXPECT_EQ(traces.Refusal("{\"kind\":\"trace\",\"version\":3}\n"),
            "2 zenqayctl: HOME/trace:1: the trace has another version than 2");
  EXPECT_EQ(traces.Refusal(Text(kHead) + "[]\n{}\n"), "2 zenqayctl: HOME/trace:2: that is no line of a trace");
  for (const char* line : {R"({"kind":7})", R"({"kind":"call","op":7})", R"({"kind":null})"}) {
    EXPECT_EQ(traces.Refusal(Text(kHead) + "{}\n" + line + "\n"),
              "2 zenqayctl: HOME/trace:3: that is no line of a trace")
        << line;
  }
  EXPECT_EQ(traces.Refusal("{\"kind\":7}\n"), "2 zenqayctl: HOME/trace:1: that is no trace's head");
  for (const char* name : {"none", "."}) {
    EXPECT_EQ(Replaced(Raised([&] { AnonymiseTrace(traces.Path(name), traces.Path("changed"), traces.anonymiser); }),
                       traces.directory.path().string(), "HOME"),
              Text("2 zenqayctl: HOME/") + name + " cannot be read");
  }
}

}  // namespace
}  // namespace zenqay
