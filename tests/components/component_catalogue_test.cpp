// Components.xml: who serves which class id.
#include "components/component_catalogue.h"

#include <gtest/gtest.h>
#include <unistd.h>

#include "doubles/outcome.h"
#include "doubles/temp_directory.h"
#include "process/QTMDeclarations.h"

namespace zenqay {
namespace {

constexpr const char* kLocations = "Kv40QTMtssmaLocations.LocationsManager";
constexpr const char* kInvalid = "5 ZenqayDBSync: Invalid procedure call or argument: ";

/// A program's directory with an export in `erp` and one in `other`.
struct Home {
  TempDirectory directory;

  Home() {
    for (const char* name : {"erp", "other"}) std::filesystem::create_directory(directory.path() / name);
    directory.Write("erp/Kv40QTMtssmaLocations.csv", "Location:text:cloc:key\nA1\n");
  }

  Text Path(const Text& name = "Components.xml") const { return (directory.path() / name).string(); }
  void Write(std::string_view content) const { directory.Write("Components.xml", content); }
  ComponentCatalogue Catalogue() const { return ComponentCatalogue(directory.path().string()); }

  /// What a catalogue of this content says of itself.
  Text Usable(std::string_view content) const {
    Write(content);
    ComponentCatalogue catalogue = Catalogue();
    return Raised([&] { catalogue.RequireUsable(); });
  }
};

/// "nothing", or that the class id is served by no one.
Text Created(ComponentHost& host, const Text& classId) {
  return Raised([&] { host.Create(classId); });
}

Text CannotCreate(const Text& classId) {
  return "429 " + classId + ": Component can't create object: " + classId;
}

TEST(ComponentCatalogue, HasOnlyTheBuiltinDatesWithoutAFile) {
  const Home home;
  ComponentCatalogue catalogue = home.Catalogue();

  EXPECT_EQ(Raised([&] { catalogue.RequireUsable(); }), "nothing");
  EXPECT_EQ(catalogue.remark(), home.Path() + ": the file is missing, so nothing but dates is served");
  EXPECT_EQ(catalogue.traceFile(), "");
  EXPECT_EQ(Created(catalogue, kDateClass), "nothing");
  EXPECT_EQ(Created(catalogue, kCalendarClass), "nothing");
  EXPECT_EQ(Created(catalogue, "java:java.util.HashMap"), CannotCreate("java:java.util.HashMap"));
  for (const char* classId : {kLocations, kStatusClass, kAdapterInfoClass, kCriteriaClass}) {
    EXPECT_EQ(Created(catalogue, classId), CannotCreate(classId));
  }
  EXPECT_EQ(Created(catalogue, ""), "429 : Component can't create object");
}

TEST(ComponentCatalogue, ServesEachKindByThePrefixOfTheClassId) {
  const Home home;
  home.Write(
      "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n"
      "<!-- who serves which class id -->\n"
      "<COMPONENTS>\n"
      "  <HOST prefix=\"java:com.korvel.\" kind=\"files\" directory=\"erp\"/>\n"
      "  <HOST prefix=\"java:java.util.\" kind=\"builtin\"/>\n"
      "  <HOST prefix=\"Kv\" kind=\"files\" directory=\"erp\"/>\n"
      "  <!-- the status component -->\n"
      "  <HOST prefix=\"ZenqayInstHandler.\" kind=\"file\" file=\"status.jsonl\"/>\n"
      "</COMPONENTS>\n");
  ComponentCatalogue catalogue = home.Catalogue();

  EXPECT_EQ(Raised([&] { catalogue.RequireUsable(); }), "nothing");
  EXPECT_EQ(catalogue.remark(), "");
  for (const char* classId : {kLocations, kAdapterInfoClass, kAdapterAccessClass, kDateClass, kStatusClass}) {
    EXPECT_EQ(Created(catalogue, classId), "nothing");
  }
  for (const char* classId : {kCriteriaClass, "kv40QTMtssmaLocations.LocationsManager"}) {
    EXPECT_EQ(Created(catalogue, classId), CannotCreate(classId));
  }
}

TEST(ComponentCatalogue, LetsTheFirstMatchWinAlsoWhereItCannotCreateTheObject) {
  const Home home;
  home.Write(
      "<COMPONENTS>\n"
      "  <HOST prefix='Kv40QTMtssma' kind='files' directory='other'/>\n"
      "  <HOST prefix='Kv' kind='files' directory='erp'/>\n"
      "  <HOST prefix='' kind='builtin'/>\n"
      "  <HOST prefix='ZenqayInstHandler.' kind='console'/>\n"
      "</COMPONENTS>\n");
  ComponentCatalogue catalogue = home.Catalogue();

  EXPECT_EQ(Created(catalogue, kLocations),
            CannotCreate(kLocations) + " (no file " + home.Path("other/Kv40QTMtssmaLocations.csv") + ")");
  EXPECT_EQ(Created(catalogue, kDateClass), "nothing");
  EXPECT_EQ(Created(catalogue, kStatusClass), CannotCreate(kStatusClass));
}

TEST(ComponentCatalogue, ServesNothingWithoutAnEntry) {
  const Home home;
  home.Write("<COMPONENTS/>");
  ComponentCatalogue catalogue = home.Catalogue();

  EXPECT_EQ(Raised([&] { catalogue.RequireUsable(); }), "nothing");
  EXPECT_EQ(Created(catalogue, kDateClass), CannotCreate(kDateClass));
}

TEST(ComponentCatalogue, TakesPathsRelativeToItsOwnDirectory) {
  const Home home;
  home.Write(
      "<COMPONENTS>\n"
      "  <HOST prefix='Kv' kind='files' directory='other/../erp'/>\n"
      "  <HOST prefix='ZenqayInstHandler.' kind='file' file='other/status.jsonl'/>\n"
      "  <TRACE file='other/trace.jsonl'/>\n"
      "</COMPONENTS>\n");
  ComponentCatalogue catalogue = home.Catalogue();

  EXPECT_EQ(Created(catalogue, kLocations), "nothing");
  const Object status = catalogue.Create(kStatusClass).Call("getInstance", 7).AsObject();
  status.Call("UpdateSyncStatus", 1, 2);

  EXPECT_EQ(home.directory.Read("other/status.jsonl"),
            "{\"op\":\"UpdateSyncStatus\",\"instance\":7,\"table\":1,\"status\":2}\n");
  EXPECT_EQ(catalogue.traceFile(), home.Path("other/trace.jsonl"));
  EXPECT_FALSE(std::filesystem::exists(home.Path("other/trace.jsonl")));
}

TEST(ComponentCatalogue, TakesAnAbsolutePathAsItIs) {
  const Home home;
  const Home elsewhere;
  home.Write("<COMPONENTS><HOST prefix='Kv' kind='files' directory='" + elsewhere.Path("erp") + "'/><TRACE file='" +
             elsewhere.Path("trace.jsonl") + "'/></COMPONENTS>");
  ComponentCatalogue catalogue = home.Catalogue();

  EXPECT_EQ(Created(catalogue, kLocations), "nothing");
  EXPECT_EQ(catalogue.traceFile(), elsewhere.Path("trace.jsonl"));
}

TEST(ComponentCatalogue, RefusesAnUnknownKindNamingFileAndLine) {
  const Home home;

  EXPECT_EQ(home.Usable("<COMPONENTS>\n  <HOST prefix='Kv' kind='files' directory='erp'/>\n"
                        "  <HOST prefix='Z'\n        kind='printer'/>\n</COMPONENTS>"),
            kInvalid + home.Path() + ", line 3: unknown kind \"printer\"");
  EXPECT_EQ(home.Usable("<COMPONENTS><HOST prefix='Kv' kind='Files' directory='erp'/></COMPONENTS>"),
            kInvalid + home.Path() + ", line 1: unknown kind \"Files\"");
  EXPECT_EQ(home.Usable("<COMPONENTS><HOST prefix='Kv' kind=''/></COMPONENTS>"),
            kInvalid + home.Path() + ", line 1: unknown kind \"\"");
}

TEST(ComponentCatalogue, RefusesAnEntryWithoutAnAttributeThatItNeeds) {
  const Home home;
  const struct {
    const char* entry;
    const char* fault;
  } cases[] = {
      {"<HOST kind='builtin'/>", "HOST has no attribute \"prefix\""},
      {"<HOST prefix='Kv'/>", "HOST has no attribute \"kind\""},
      {"<HOST prefix='Kv' kind='files'/>", "HOST has no attribute \"directory\""},
      {"<HOST prefix='Z' kind='file'/>", "HOST has no attribute \"file\""},
      {"<HOST kind='replay'/>", "HOST has no attribute \"file\""},
      {"<HOST PREFIX='Kv' kind='builtin'/>", "HOST has no attribute \"prefix\""},
      {"<TRACE/>", "TRACE has no attribute \"file\""},
  };
  for (const auto& [entry, fault] : cases) {
    EXPECT_EQ(home.Usable(Text("<COMPONENTS>\n") + entry + "\n</COMPONENTS>"),
              kInvalid + home.Path() + ", line 2: " + fault);
  }
}

TEST(ComponentCatalogue, RefusesADirectoryThatIsMissing) {
  const Home home;
  home.directory.Write("file", "");
  const Text notFound = "76 ZenqayDBSync: Path not found: " + home.Path() + ", line 2: there is no directory ";

  EXPECT_EQ(home.Usable("<COMPONENTS>\n<HOST prefix='Kv' kind='files' directory='none'/></COMPONENTS>"),
            notFound + home.Path("none"));
  EXPECT_EQ(home.Usable("<COMPONENTS>\n<HOST prefix='Kv' kind='files' directory='file'/></COMPONENTS>"),
            notFound + home.Path("file"));
}

TEST(ComponentCatalogue, ServesByAReplayWhateverNoElementInFrontOfItServes) {
  const Home home;
  home.directory.Write("trace.jsonl", R"({"n":1,"kind":"create","class":"Any.Class","id":1})");
  home.Write(
      "<COMPONENTS><HOST prefix='Kv' kind='files' directory='erp'/><HOST kind='replay' file='trace.jsonl'/>"
      "<HOST prefix='java:' kind='builtin'/></COMPONENTS>");
  ComponentCatalogue catalogue = home.Catalogue();

  EXPECT_EQ(Created(catalogue, kLocations), "nothing");
  EXPECT_EQ(Created(catalogue, kDateClass),
            "429 ZenqayDBSync: Component can't create object: " + home.Path("trace.jsonl") +
                ", line 1: the recorded run went on with the creation of Any.Class, not with the creation of "
                "java:java.util.Date");
  EXPECT_EQ(Created(catalogue, "Any.Class"), "nothing");
}

TEST(ComponentCatalogue, ReplaysOneTraceByAllElements) {
  const Home home;
  home.directory.Write("trace.jsonl", R"({"n":1,"kind":"create","class":"Any.Class","id":1})");
  home.directory.Write("other.jsonl", "");
  const Text first = "<COMPONENTS>\n<HOST prefix='Z' kind='replay' file='trace.jsonl'/>\n";

  home.Write(first + "<HOST prefix='Any' kind='replay' file='trace.jsonl'/></COMPONENTS>");
  ComponentCatalogue catalogue = home.Catalogue();

  EXPECT_EQ(Created(catalogue, "Any.Class"), "nothing");
  EXPECT_EQ(Created(catalogue, "Zenqay"),
            "429 ZenqayDBSync: Component can't create object: " + home.Path("trace.jsonl") +
                ": the trace ends at line 1, in front of the creation of Zenqay");
  EXPECT_EQ(home.Usable(first + "<HOST prefix='Any' kind='replay' file='other.jsonl'/></COMPONENTS>"),
            kInvalid + home.Path() + ", line 3: another trace is replayed already, " + home.Path("trace.jsonl"));
}

TEST(ComponentCatalogue, RefusesATraceThatWouldWriteOverTheReplayedOne) {
  const Home home;
  home.directory.Write("trace.jsonl", R"({"n":1,"kind":"create","class":"Any.Class","id":1})");
  home.Write("<COMPONENTS>\n<TRACE file='erp/../trace.jsonl'/>\n<HOST kind='replay' file='trace.jsonl'/></COMPONENTS>");
  ComponentCatalogue catalogue = home.Catalogue();

  EXPECT_EQ(Raised([&] { catalogue.RequireUsable(); }),
            kInvalid + home.Path() + ", line 3: TRACE would write over the trace that is replayed");
  EXPECT_EQ(catalogue.traceFile(), "");
}

TEST(ComponentCatalogue, RefusesToReplayWhatIsNoTrace) {
  const Home home;
  const Text path = home.Path("trace.jsonl");
  const auto usable = [&](std::string_view content) {
    home.directory.Write("trace.jsonl", content);
    return home.Usable("<COMPONENTS><HOST kind='replay' file='trace.jsonl'/></COMPONENTS>");
  };

  EXPECT_EQ(home.Usable("<COMPONENTS><HOST kind='replay' file='none'/></COMPONENTS>"),
            "53 ZenqayDBSync: File not found: " + home.Path("none"));
  EXPECT_EQ(home.Usable("<COMPONENTS><HOST kind='replay' file='erp'/></COMPONENTS>"),
            kInvalid + home.Path("erp") + ", line 1: this is no trace");
  EXPECT_EQ(usable("Location:text:cloc:key\nA1\n"), kInvalid + path + ", line 1: this is no trace");
  EXPECT_EQ(usable("{\"op\":\"UpdateSyncStatus\"}\n"), kInvalid + path + ", line 1: this is no trace");
  EXPECT_EQ(usable("{\"kind\":\"trace\",\"version\":3}\n"),
            kInvalid + path + ", line 1: a trace of a form that this program does not know");
  EXPECT_EQ(usable("{\"kind\":\"trace\",\"version\":2}\n"), "nothing");
  EXPECT_EQ(usable(""), "nothing");
  EXPECT_EQ(home.Usable("<COMPONENTS>\n<HOST kind='replay' file='trace.jsonl' PREFIX='Kv'/></COMPONENTS>"),
            kInvalid + home.Path() + ", line 2: HOST knows no attribute \"PREFIX\"");
}

TEST(ComponentCatalogue, RefusesMalformedTextNamingFileAndLine) {
  const Home home;

  EXPECT_EQ(home.Usable("<COMPONENTS>\n<HOST prefix='Kv' kind='builtin'>\n</COMPONENTS>"),
            kInvalid + home.Path() + ", line 3: Start-end tags mismatch");
  EXPECT_EQ(home.Usable("<COMPONENTS>\n<HOST prefix=Kv kind='builtin'/>\n</COMPONENTS>"),
            kInvalid + home.Path() + ", line 2: Error parsing element attribute");
  EXPECT_EQ(home.Usable(""), kInvalid + home.Path() + ", line 1: No document element found");
  EXPECT_EQ(home.Usable("<COMPONENTS/>\n<COMPONENTS/>"),
            kInvalid + home.Path() + ": there must be exactly one top-level element");
}

TEST(ComponentCatalogue, RefusesElementsThatItDoesNotKnow) {
  const Home home;

  EXPECT_EQ(home.Usable("<!-- who -->\n<HOSTS/>"),
            kInvalid + home.Path() + ", line 2: the top-level element is not COMPONENTS");
  EXPECT_EQ(home.Usable("<COMPONENTS>\n\n<host prefix='Kv' kind='builtin'/></COMPONENTS>"),
            kInvalid + home.Path() + ", line 3: unknown element \"host\"");
}

TEST(ComponentCatalogue, RefusesAFileThatIsADirectory) {
  const Home home;
  std::filesystem::create_directory(home.directory.path() / "Components.xml");
  ComponentCatalogue catalogue = home.Catalogue();

  EXPECT_EQ(Raised([&] { catalogue.RequireUsable(); }),
            kInvalid + home.Path() + ": the file is missing or cannot be read");
}

TEST(ComponentCatalogue, KeepsItsFaultForTheQuestionWhetherItIsUsable) {
  const Home home;
  home.Write("<COMPONENTS>\n<TRACE file='trace.jsonl'/>\n<HOST prefix='Kv' kind='x'/>\n</COMPONENTS>");

  ComponentCatalogue catalogue = home.Catalogue();  // says nothing yet, so that the command line is checked first

  const Text fault = kInvalid + home.Path() + ", line 3: unknown kind \"x\"";
  EXPECT_EQ(catalogue.traceFile(), home.Path("trace.jsonl"));
  EXPECT_EQ(Raised([&] { catalogue.RequireUsable(); }), fault);
  EXPECT_EQ(Raised([&] { catalogue.RequireUsable(); }), fault);
  EXPECT_EQ(Created(catalogue, kLocations), CannotCreate(kLocations));
}

TEST(ShippedCatalogue, NamesAHostForEveryClassThatIsOnce) {
  TempDirectory home;
  std::filesystem::copy_file(ZENQAY_SHARE "/Components.xml", home.path() / "Components.xml");
  std::filesystem::create_directory(home.path() / "erp");
  home.Write("erp/Kv40QTMtssmaLocations.csv", "Location:text:cloc:key\nA1\n");
  ComponentCatalogue catalogue(home.path().string());

  EXPECT_EQ(Raised([&] { catalogue.RequireUsable(); }), "nothing");
  for (const char* classId :
       {kLocations, kAdapterInfoClass, kAdapterAccessClass, kDateClass, kCalendarClass, kCriteriaClass,
        kCriteriaInputClass, kCriteriaOutputClass, kCriteriaPeriodClass, kCriteriaParameterClass, kStatusClass}) {
    EXPECT_EQ(Created(catalogue, classId), "nothing") << classId;
  }
}

TEST(ComponentCatalogue, ReadsTheSafeguards) {
  const Home home;
  home.Write(
      "<COMPONENTS><SWEEP limit=\"10%\" from=\"100\"><TABLE name=\"SITE\" limit=\"50\"/></SWEEP>"
      "<LOCK takeover=\"yes\"/></COMPONENTS>");
  ComponentCatalogue catalogue = home.Catalogue();

  EXPECT_EQ(Raised([&] { catalogue.RequireUsable(); }), "nothing");
  EXPECT_EQ(catalogue.safeguards().sweep.For("site")->text(), "50");
  EXPECT_EQ(catalogue.safeguards().sweep.For("OBJECT")->text(), "10%");
  EXPECT_EQ(catalogue.safeguards().sweep.from, 100);
  EXPECT_EQ(catalogue.safeguards().lock, TableLock::TakesOver);
}

TEST(ComponentCatalogue, HasTheLanguageThatIsAskedFor) {
  const Home home;
  home.Write("<COMPONENTS/>");
  EXPECT_EQ(home.Catalogue().language(), "");

  home.Write("<COMPONENTS><TEXTS language=\"de\"/></COMPONENTS>");
  ComponentCatalogue german = home.Catalogue();

  EXPECT_EQ(Raised([&] { german.RequireUsable(); }), "nothing");
  EXPECT_EQ(german.language(), "de");
}

TEST(ComponentCatalogue, HasNoSafeguardsUnlessTheyAreAskedFor) {
  const Home home;
  home.Write("<COMPONENTS/>");
  ComponentCatalogue catalogue = home.Catalogue();

  EXPECT_EQ(catalogue.safeguards().sweep.For("SITE"), nullptr);
  EXPECT_EQ(catalogue.safeguards().lock, TableLock::NotUsed);
}

TEST(ComponentCatalogue, TakesTheSweepLimitOfTheEnvironmentForAll) {
  const Home home;
  home.Write("<COMPONENTS><SWEEP limit=\"10%\"><TABLE name=\"SITE\" limit=\"50\"/></SWEEP><LOCK/></COMPONENTS>");
  ::setenv("ZENQAY_SWEEP_LIMIT", "100%", 1);
  ComponentCatalogue catalogue = home.Catalogue();
  ::setenv("ZENQAY_SWEEP_LIMIT", "much", 1);
  const Text unusable = home.Usable("<COMPONENTS/>");
  ::unsetenv("ZENQAY_SWEEP_LIMIT");

  EXPECT_EQ(catalogue.safeguards().sweep.For("SITE")->text(), "100%");
  EXPECT_EQ(catalogue.safeguards().lock, TableLock::Used);
  EXPECT_EQ(unusable, Text(kInvalid) +
                          "ZENQAY_SWEEP_LIMIT: \"much\" is no limit, which is a number of rows or a share such as "
                          "\"10%\"");
}

TEST(ComponentCatalogue, NamesThePlaceOfWhatCannotBeAskedFor) {
  const Home home;
  const std::pair<const char*, const char*> cases[] = {
      {"<SWEEP limit=\"ten\"/>", "\"ten\" is no limit, which is a number of rows or a share such as \"10%\""},
      {"<SWEEP limit=\"10%\" from=\"x\"/>", "\"x\" is no number of rows"},
      {"<SWEEP limits=\"10%\"/>", "SWEEP knows no attribute \"limits\""},
      {"<SWEEP><TABLE limit=\"1\"/></SWEEP>", "TABLE has no attribute \"name\""},
      {"<SWEEP><TABLE name=\"SITE\"/></SWEEP>", "TABLE has no attribute \"limit\""},
      {"<SWEEP><ROW/></SWEEP>", "unknown element \"ROW\""},
      {"<LOCK takeover=\"maybe\"/>", "takeover is \"yes\" or \"no\", not \"maybe\""},
      {"<TEXTS/>", "TEXTS has no attribute \"language\""},
      {"<TEXTS language=\"\"/>", "\"\" is no language, which is a word such as \"de\""},
      {"<TEXTS language=\"../de\"/>", "\"../de\" is no language, which is a word such as \"de\""},
      {"<TEXTS language=\"de\" file=\"x\"/>", "TEXTS knows no attribute \"file\""},
      {"<LOCK table=\"SITE\"/>", "LOCK knows no attribute \"table\""},
  };
  for (const auto& [element, fault] : cases) {
    EXPECT_EQ(home.Usable(Text("<COMPONENTS>\n") + element + "</COMPONENTS>"),
              kInvalid + home.Path() + ", line 2: " + fault);
  }
}

}  // namespace
}  // namespace zenqay
