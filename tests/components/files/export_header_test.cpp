#include "components/files/export_header.h"

#include <gtest/gtest.h>

#include "components/files/erp_files.h"

namespace zenqay {
namespace {

CsvRecord HeaderRecord(std::string_view line) {
  TempDirectory directory;
  directory.Write("A.csv", line);
  CsvReader reader(directory.path() / "A.csv", "A.AsManager");
  CsvRecord record;
  EXPECT_TRUE(reader.Read(record));
  return record;
}

const CsvSource kSource{.file = "A.csv", .classId = "A.AsManager"};

Text ShownColumns(const ExportColumns& columns) {
  Text shown;
  for (const ExportColumn& column : columns) {
    shown += column.Title() + " " + Text(NameOf(column.type)) + " <" + column.code + ">";
    shown += column.isKey ? " key\n" : "\n";
  }
  return shown;
}

Text ListHeaderOf(std::string_view line) {
  Text shown;
  const Text error = ErrorOf([&] { shown = ShownColumns(ReadListHeader(HeaderRecord(line), kSource)); });
  return error == "no error" ? shown : error;
}

Text ChangesHeaderOf(std::string_view line) {
  Text shown;
  const Text error = ErrorOf([&] {
    const ChangesHeader header = ReadChangesHeader(HeaderRecord(line), kSource);
    shown = ShownColumns(header.columns) + "changed at column " + std::to_string(header.changedAt) + "\n";
  });
  return error == "no error" ? shown : error;
}

TEST(ReadListHeader, ReadsNameTypeCodeAndKeyOfEachColumn) {
  EXPECT_EQ(
      ListHeaderOf("Line:int:seqn:key,Term:int,Description,Note::note,Since:date,At:datetime::key,\" B :text\"\n"),
      "Line int <seqn> key\n"
      "Term int <>\n"
      "Description text <>\n"
      "Note text <note>\n"
      "Since date <>\n"
      "At datetime <> key\n"
      " B  text <>\n");
}

TEST(ReadListHeader, RaisesWhatIsNoHeaderCell) {
  const struct {
    const char* header;
    const char* error;
  } cases[] = {
      {"A,B:float", "column 2: \"B:float\" has an unknown type"},
      {"A,B:Int", "column 2: \"B:Int\" has an unknown type"},
      {"A,,C", "column 2: \"\" has no name"},
      {"\"\"", "column 1: \"\" has no name"},
      {"A,:int:x", "column 2: \":int:x\" has no name"},
      {"Abc,B,aBC:int", "column 3: \"aBC:int\" has the name of another column"},
      {"A:text:a:Key", "column 1: \"A:text:a:Key\" has no \"key\" in its fourth place"},
      {"A:text:a:", "column 1: \"A:text:a:\" has no \"key\" in its fourth place"},
      {"A:text:a:key:", "column 1: \"A:text:a:key:\" has more than name, type, code and key"},
      {"A,\xC3(", "column 2: is no UTF-8 text"},
  };

  for (const auto& [header, error] : cases) {
    EXPECT_EQ(ListHeaderOf(header), "13 Type mismatch: A.csv, line 1, " + Text(error) + " (A.AsManager)") << header;
  }
}

TEST(ReadChangesHeader, FindsItsOwnColumnsWhereverTheyStand) {
  EXPECT_EQ(ChangesHeaderOf("Line:int:seqn:key,actiontype,Old.Site,CHANGEDAT,Site:text:ccfg\n"),
            "Line int <seqn> key\n"
            "actiontype text <>\n"
            "Old.Site text <ccfg>\n"
            "CHANGEDAT text <>\n"
            "Site text <ccfg>\n"
            "changed at column 3\n");
}

TEST(ReadChangesHeader, GivesAnOldColumnTheTypeAndCodeOfItsOwnColumn) {
  EXPECT_EQ(ChangesHeaderOf("ChangedAt,ActionType,Line:int:seqn:key,Old.Line,Since:date:efdt,old.SINCE:date:efdt\n"),
            "ChangedAt text <>\n"
            "ActionType text <>\n"
            "Line int <seqn> key\n"
            "Old.Line int <seqn>\n"
            "Since date <efdt>\n"
            "Old.SINCE date <efdt>\n"
            "changed at column 0\n");
}

TEST(ReadChangesHeader, RaisesWhatIsMissingOrContradictsItself) {
  const struct {
    const char* header;
    const char* error;
  } cases[] = {
      {"ActionType,A", "column ChangedAt: missing in the header"},
      {"ChangedAt,A", "column ActionType: missing in the header"},
      {"ChangedAt:datetime,ActionType", "column 1: \"ChangedAt:datetime\" is not a text without code and key"},
      {"ChangedAt,ActionType:text:acty", "column 2: \"ActionType:text:acty\" is not a text without code and key"},
      {"ChangedAt:text,ActionType:text,Old.A", "column 3: \"Old.A\" has no column A beside it"},
      {"ChangedAt,ActionType,A:int:a,Old.A:text",
       "column 4: \"Old.A:text\" has another type or code than the column A"},
      {"ChangedAt,ActionType,A:int:a,Old.A:int:b",
       "column 4: \"Old.A:int:b\" has another type or code than the column A"},
      {"ChangedAt,ActionType,A,Old.A,OLD.a", "column 5: \"OLD.a\" has the name of another column"},
      {"ChangedAt,ActionType,A:float", "column 3: \"A:float\" has an unknown type"},
  };

  for (const auto& [header, error] : cases) {
    EXPECT_EQ(ChangesHeaderOf(header), "13 Type mismatch: A.csv, line 1, " + Text(error) + " (A.AsManager)") << header;
  }
}

TEST(SaysNothing, HoldsForTheOneCellAlone) {
  EXPECT_TRUE(SaysNothing(HeaderRecord("\\NOTHING\n")));
  EXPECT_FALSE(SaysNothing(HeaderRecord("\\NOTHING,A\n")));
  EXPECT_FALSE(SaysNothing(HeaderRecord("\\nothing\n")));
  EXPECT_FALSE(SaysNothing(HeaderRecord(" \\NOTHING\n")));
}

TEST(ReadHeader, TakesThousandsOfLongColumns) {
  Text list;
  Text old;
  for (int number = 0; number < 20'000; ++number) {
    const Text name = Text(100, 'x') + std::to_string(number);
    list += name + ",";
    if (number < 10'000) old += "Old." + name + ",";
  }

  EXPECT_EQ(ReadListHeader(HeaderRecord(list + "last\n"), kSource).size(), 20'001u);
  EXPECT_EQ(ReadChangesHeader(HeaderRecord(list + old + "ChangedAt,ActionType\n"), kSource).columns.size(), 30'002u);
}

TEST(ReadHeader, RefusesAnOldColumnOfAnOldColumn) {
  const CsvRecord record = HeaderRecord("ChangedAt,ActionType,A,Old.A,Old.Old.A\n");

  EXPECT_EQ(ErrorOf([&] { ReadChangesHeader(record, kSource); }),
            "13 Type mismatch: A.csv, line 1, column 5: \"Old.Old.A\" has no column Old.A beside it (A.AsManager)");
}

}  // namespace
}  // namespace zenqay
