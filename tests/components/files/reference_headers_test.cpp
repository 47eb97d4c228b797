#include "components/files/reference_headers.h"

#include <gtest/gtest.h>

#include <map>

#include "components/files/erp_files.h"

namespace zenqay {
namespace {

constexpr const char* kInstallations = "Kv40QTMtssmaInstallations";
constexpr const char* kObjects = "Kv50QTMtscfgObjects";
constexpr const char* kPriorities = "Kv40QTMtssmaPriorities";

using Headers = std::map<Text, Text>;

Headers KnownHeaders() {
  Headers headers;
  for (const auto& [fileStem, header] : ReferenceHeaders()) headers.emplace(fileStem, header);
  return headers;
}

/// The first lines of the exports in one of the demo's directories, by what their files are named before `ending`.
Headers DemoHeaders(const Text& directory, const Text& ending) {
  Headers headers;
  for (const auto& entry : std::filesystem::directory_iterator(ZENQAY_SHARE "/demo/" + directory)) {
    const Text name = entry.path().filename().string();
    std::ifstream file(entry.path());
    std::getline(file, headers[name.substr(0, name.size() - ending.size())]);
  }
  return headers;
}

TEST(ReferenceHeaders, AreThoseOfTheDemosExports) {
  EXPECT_EQ(KnownHeaders(), DemoHeaders("erp", ".csv"));
  EXPECT_EQ(KnownHeaders(), DemoHeaders("end", ".csv"));
}

TEST(ReferenceHeaders, StandBehindTwoColumnsInTheDemosChanges) {
  Headers expected = KnownHeaders();
  for (auto& [fileStem, header] : expected) header.insert(0, "ChangedAt,ActionType,");

  Headers changes = DemoHeaders("changes", ".changes.csv");
  for (auto& [fileStem, header] : changes) header.erase(std::min(header.find(",Old."), header.size()));

  EXPECT_EQ(changes, expected);
}

/// What a listing of the manager raises on an export that begins with `header`.
Text ListErrorOf(const Text& fileStem, std::string_view header, std::size_t keys) {
  ErpFiles erp;
  erp.directory.Write(fileStem + ".csv", header);
  const Object manager = erp.host.Create(fileStem + ".RowsManager");
  return ErrorOf([&] { CallWith(manager, "List", std::vector<Value>(keys * 2, "0")); });
}

TEST(List, RaisesAHeaderThatLacksAColumnOfItsClass) {
  const struct {
    const char* header;
    const char* missing;
  } cases[] = {
      {"Priority:int:prno:key,Descr", "Description"},
      {"Priority:int:prno:key", "Description"},
      {"Priority:int:prno:key,Description2:text:desc\n1,North\n", "Description"},
      {"Description:text:desc,Priorit", "Priority"},
  };

  for (const auto& [header, missing] : cases) {
    EXPECT_EQ(ListErrorOf(kPriorities, header, 1),
              "438 Object doesn't support this property or method: List (Kv40QTMtssmaPriorities.csv has no column " +
                  Text(missing) + ") (Kv40QTMtssmaPriorities.RowsManager)");
  }
}

TEST(List, RaisesACutOffHeaderWhereverItIsCut) {
  const Text header = KnownHeaders().at(kObjects);
  for (auto comma = header.find(','); comma != Text::npos; comma = header.find(',', comma + 1)) {
    const Text cut = header.substr(0, comma);
    EXPECT_TRUE(ListErrorOf(kObjects, cut, 3).starts_with("438 ")) << cut;
  }
  EXPECT_EQ(ListErrorOf(kObjects, header, 3), "no error");
}

TEST(List, RaisesANumberOrADateThatIsDeclaredAsSomethingElse) {
  const struct {
    const char* fileStem;
    std::size_t keys;
    const char* from;
    const char* to;
    const char* error;
  } cases[] = {
      {kPriorities, 1, ":int", ":", "column 1: \"Priority::prno:key\" is not declared as int"},
      {kPriorities, 1, ":int", ":text", "column 1: \"Priority:text:prno:key\" is not declared as int"},
      {kPriorities, 1, ":int", ":date", "column 1: \"Priority:date:prno:key\" is not declared as int"},
      {kInstallations, 1, ":date:gdat", "", "column 6: \"WarrantyExpiryDate\" is not declared as date"},
      {kInstallations, 1, ":date:edat", ":datetime",
       "column 8: \"MaintenanceEndDate:datetime\" is not declared as date"},
      {kObjects, 3, ":int:oseq", "::oseq", "column 3: \"ObjectNumber::oseq:key\" is not declared as int"},
      {"Kv61QTMtscfgSerializedItems", 2, "DeliveryTime:datetime", "deliverytime",
       "column 9: \"deliverytime\" is not declared as datetime"},
  };

  for (const auto& [fileStem, keys, from, to, error] : cases) {
    const Text header = Replaced(KnownHeaders().at(fileStem), from, to) + "\n";
    EXPECT_EQ(ListErrorOf(fileStem, header, keys),
              "13 Type mismatch: " + Text(fileStem) + ".csv, line 1, " + error + " (" + fileStem + ".RowsManager)");
  }
}

TEST(List, TakesTheColumnsOfItsClassInAnyOrderAndCaseWithOthersBetween) {
  EXPECT_EQ(ListErrorOf(kPriorities, "Note,DESCRIPTION,Floor:int,priority:int:prno:key\n", 1), "no error");
}

TEST(NetList, RaisesAHeaderThatLacksOrRedeclaresAColumnOfItsClass) {
  const struct {
    const char* header;
    const char* error;
  } cases[] = {
      {"ChangedAt,ActionType,Priority:int:prno:key",
       "438 Object doesn't support this property or method: NetListRows (Kv40QTMtssmaPriorities.changes.csv has no "
       "column Description) (Kv40QTMtssmaPriorities.RowsManager)"},
      {"ChangedAt,ActionType,Description,Priority::prno:key,Old.Priority",
       "13 Type mismatch: Kv40QTMtssmaPriorities.changes.csv, line 1, column 4: \"Priority::prno:key\" is not declared "
       "as int (Kv40QTMtssmaPriorities.RowsManager)"},
      {"ChangedAt,ActionType,Description,Priority:int:prno:key,Old.Priority", "no error"},
  };

  for (const auto& [header, error] : cases) {
    ErpFiles erp;
    erp.directory.Write("Kv40QTMtssmaPriorities.csv", "");
    erp.directory.Write("Kv40QTMtssmaPriorities.changes.csv", header);
    const Object manager = erp.host.Create("Kv40QTMtssmaPriorities.RowsManager");
    const Object criteria = CriteriaOf(erp.host, DateAt(1970, 1, 1), DateAt(2038, 1, 19));

    EXPECT_EQ(ErrorOf([&] { manager.Call("NetListRows", "tssma110", criteria); }), error);
  }
}

}  // namespace
}  // namespace zenqay
