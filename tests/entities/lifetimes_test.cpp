// How long a pass keeps what it has of the ERP: to its end, and behind the record of a failure.
#include <gtest/gtest.h>

#include <utility>

#include "doubles/copy_fixture.h"
#include "doubles/outcome.h"

namespace zenqay {
namespace {

constexpr const char* kLocations = "Kv40QTMtssmaLocations.LocationsManager";
constexpr const char* kLines = "Kv50QTMtsctmContractConfigurationLines.ContractConfigurationLinesManager";

/// What a listing gives to the pass alone; the journal shows when it lets go of it.
ScriptedObject::Answer HandedOver(CopyFixture& copy, const Text& name, std::vector<Object> rows) {
  for (Object& row : rows) row = copy.components.Handed(row);
  const Object listing(copy.components.MakeEnumeration(name, std::move(rows)));
  return [listing = copy.components.Handed(listing)](Arguments) mutable { return std::exchange(listing, Object()); };
}

/// A job whose journal shows releases and looks at the clock.
struct Lifetimes : CopyFixture {
  explicit Lifetimes(const Text& generation) : CopyFixture(generation) {
    components.showReleases = true;
    platform.showClock = true;
  }

  /// The journal without the questions to rows, statements and what fills the criteria.
  Text Steps() {
    return JournalWithout({"row1.", "row2.", "term", "sql ", "query ", "close recordset", "session.", "criteria.",
                           "input.", "output.", "period.", "parameter."});
  }
};

struct LocationsOfTwoRows : Lifetimes {
  /// `listing` is the manager's operation that gives them.
  explicit LocationsOfTwoRows(const Text& listing) : Lifetimes("1") {
    AddManager(kLocations, "locations")
        ->Does(listing, HandedOver(*this, "rows",
                                   {RowWith({{"ActionType", "U"}, {"Location", "A1"}}),
                                    RowWith({{"ActionType", "U"}, {"Location", "A2"}})}));
  }
};

TEST(FullCopy, LetsGoOfItsListingAndTheLastRowBehindTheClosingOfTheManager) {
  LocationsOfTwoRows copy("List");

  copy.CopySite("SITES", 1);

  EXPECT_EQ(copy.Steps(),
            "create Kv40QTMtssmaLocations.LocationsManager\n"
            "locations.Initialize(&\"100\")\n"
            "locations.List(\"\", high(10))\n"
            "rows.hasMoreElements()\n"
            "rows.nextElement()\n"
            "rows.hasMoreElements()\n"
            "rows.nextElement()\n"
            "release row1\n"
            "rows.hasMoreElements()\n"
            "now\n"  // of the summary
            "locations.Close()\n"
            "release rows\n"
            "release row2\n"
            "release locations\n");
}

TEST(FullCopy, LetsGoOfItsListingAndTheLastRowBehindTheClosingOfTheManagerWhenARowFails) {
  LocationsOfTwoRows copy("List");
  copy.database.FailOn("A2", RuntimeError(5000, "driver", "it broke"));

  EXPECT_EQ(Raised([&] { copy.CopySite("SITES", 1); }),
            "5100 Data copy: Sites: Sites could not be copied from the ERP (generation 1).");

  EXPECT_EQ(copy.Steps(),
            "create Kv40QTMtssmaLocations.LocationsManager\n"
            "locations.Initialize(&\"100\")\n"
            "locations.List(\"\", high(10))\n"
            "rows.hasMoreElements()\n"
            "rows.nextElement()\n"
            "rows.hasMoreElements()\n"
            "rows.nextElement()\n"
            "release row1\n"
            "now\n"  // of the failure's record
            "locations.Close()\n"
            "release rows\n"
            "release row2\n"
            "release locations\n");
}

constexpr const char* kChangesAskedFor =
    "create Kv40QTMtssmaLocations.LocationsManager\n"
    "create NetListSelectionCriteria.NetListSelectionCriteria\n"
    "create NetListSelectionCriteria.NetListIn\n"
    "create NetListSelectionCriteria.NetListOut\n"
    "create NetListSelectionCriteria.NetListPeriod\n"
    "create NetListSelectionCriteria.NetListParameter\n"
    "locations.Initialize(&\"100\")\n"
    "now\n"  // of the period's end, and its hour, minute and second
    "now\n"
    "now\n"
    "now\n"
    "locations.NetListLocations(&\"tssma110\", &<criteria>)\n"
    "rows.hasMoreElements()\n"
    "rows.nextElement()\n"
    "rows.hasMoreElements()\n"
    "rows.nextElement()\n"
    "release row1\n";
constexpr const char* kEverythingLetGo =
    "release row2\n"
    "release rows\n"
    "release parameter\n"
    "release period\n"
    "release output\n"
    "release input\n"
    "release criteria\n"
    "release locations\n";

TEST(OnlyChangedPass, KeepsItsCriteriaItsListingAndTheLastRowToItsEnd) {
  LocationsOfTwoRows copy("NetListLocations");

  copy.CopySite("SITES", 2);

  EXPECT_EQ(copy.Steps(), Text(kChangesAskedFor) +
                              "rows.hasMoreElements()\n"
                              "now\n" +  // of the summary
                              kEverythingLetGo);
}

TEST(OnlyChangedPass, KeepsItsCriteriaItsListingAndTheLastRowUntilItsFailureIsRecorded) {
  LocationsOfTwoRows copy("NetListLocations");
  copy.database.FailOn("A2", RuntimeError(5000, "driver", "it broke"));

  EXPECT_EQ(Raised([&] { copy.CopySite("SITES", 2); }),
            "5100 Data copy: Site - Only Changed: Sites could not be copied from the ERP (generation 1).");

  EXPECT_EQ(copy.Steps(), Text(kChangesAskedFor) + "now\n" + kEverythingLetGo);
}

TEST(CopySiteContractChanged, KeepsTheLastLookUpOfTermsUntilItsFailureIsRecorded) {
  Lifetimes copy("3");
  const auto lines = copy.AddManager(kLines, "lines");
  lines->Does("NetListContractConfigurationLines",
              HandedOver(copy, "rows",
                         {copy.RowWith({{"ActionType", "U"}, {"Configuration", "S1"}}),
                          copy.RowWith({{"ActionType", "U"}, {"Configuration", "S2"}})}));
  std::vector<ScriptedObject::Answer> terms;
  for (const char* name : {"term1", "term2"}) {
    const auto term = copy.components.Make(name);
    term->Answers("getContractTerms", std::int16_t{3});
    terms.push_back(HandedOver(copy, Text("list of ") + name, {Object(term)}));
  }
  lines->Does("List", [terms, next = std::size_t{0}](Arguments arguments) mutable { return terms[next++](arguments); });
  terms.clear();
  copy.database.FailOn("S2", RuntimeError(5000, "driver", "it broke"));

  EXPECT_EQ(Raised([&] { copy.CopySiteContract("LINES", 2); }),
            "5100 Data copy: SiteContracts - Only Changed: Site contracts could not be copied from the ERP (generation "
            "3).");

  const Text steps =
      copy.JournalWithout({"create ", "lines.", "row", "term", "list", "sql ", "query ", "close recordset", "session.",
                           "criteria.", "input.", "output.", "period.", "parameter."});
  EXPECT_EQ(steps,
            "now\n"  // of the period's end, and its hour, minute and second
            "now\n"
            "now\n"
            "now\n"
            "release row1\n"
            "release list of term1\n"
            "release term1\n"
            "now\n"  // of the failure's record
            "release row2\n"
            "release rows\n"
            "release parameter\n"
            "release parameter\n"
            "release period\n"
            "release output\n"
            "release input\n"
            "release criteria\n"
            "release term2\n"
            "release list of term2\n"
            "release lines\n");
}

/// Puts `second` in the place of every manager that is registered.
void ReplaceManagers(CopyFixture& copy, const std::shared_ptr<ScriptedObject>& second) {
  const auto session = copy.components.Make("session");
  session->Does("addManager", [second](Arguments arguments) {
    arguments[0].Assign(Object(second));
    return Value();
  });
  copy.process.ErpSession = Object(session);
}

TEST(FullCopy, GoesOnWithTheManagerThatTheSessionPutInThePlaceOfItsOwn) {
  CopyFixture copy("1");
  const auto second = copy.AddManager("another class", "second", {copy.RowWith({{"Location", "A1"}})});
  copy.AddManager(kLocations, "first");
  ReplaceManagers(copy, second);

  copy.CopySite("SITES", 1);

  EXPECT_EQ(copy.JournalWithout({"row", "sql "}),
            "create Kv40QTMtssmaLocations.LocationsManager\n"
            "session.addManager(&<first>)\n"
            "second.Initialize(&\"100\")\n"
            "second.List(\"\", high(10))\n"
            "second.Close()\n");
}

TEST(OnlyChangedPass, GoesOnWithTheManagerThatTheSessionPutInThePlaceOfItsOwn) {
  CopyFixture copy("3");
  const auto second =
      copy.AddManager("another class", "second", {copy.RowWith({{"ActionType", "U"}, {"Configuration", "S1"}})});
  second->Answers("List", Object(copy.components.MakeEnumeration("terms", {})));
  copy.AddManager(kLines, "first");
  ReplaceManagers(copy, second);

  copy.CopySiteContract("LINES", 2);

  EXPECT_EQ(copy.JournalWithout({"row", "sql ", "query ", "close recordset", "create ", "criteria.", "input.",
                                 "output.", "period.", "parameter.", "terms."}),
            "session.addManager(&<first>)\n"
            "second.Initialize(&\"100\")\n"
            "second.NetListContractConfigurationLines(&\"tsctm310\", &<criteria>)\n"
            "second.List(empty, empty, i16(0), i16(9999), empty, empty)\n");
}

}  // namespace
}  // namespace zenqay
