#include <gtest/gtest.h>

#include "components/files/erp_files.h"

namespace zenqay {
namespace {

constexpr const char* kLocations =
    "Location:text:cloc:key,Description:text:desc,Customer:text:cuno\n"
    "A1,North,C7\n"
    "B2,\"South, \"\"old\"\"\",\n"
    "C3,,\"\"\n";

TEST(List, GivesTheRowsInTheOrderOfTheFile) {
  ErpFiles erp;
  const Object manager = erp.Lines(kLocations);

  const Value rows = manager.Call("List", "", Highest(10));

  EXPECT_EQ(RowsOf(rows, {"Location", "Description", "Customer"}),
            "'A1', 'North', 'C7'\n"
            "'B2', 'South, \"old\"', absent\n"
            "'C3', absent, ''\n");
}

TEST(List, TellsAbsentEmptyAndNullApartUnderEveryType) {
  ErpFiles erp;
  const Object manager = erp.Lines(
      "Text,Int:int,Date:date,DateTime:datetime\n"
      "A,-7,2004-01-31,2004-01-31T10:11:12\n"
      ",,,\n"
      "\"\",\"\",\"\",\"\"\n"
      "\\N,\\N,\\N,\\N\n"
      "\"\\N\",\"\\N\",\"\\N\",\"\\N\"\n"
      "\"A\",\"+7\",\"2004-01-31\",\"2004-01-31T10:11:12\"\n");

  const Value rows = manager.Call("List");

  EXPECT_EQ(RowsOf(rows, {"Text", "Int", "Date", "DateTime"}),
            "'A', -7, '2004-01-31', date 2004-1-31 10:11:12\n"
            "absent, absent, absent, absent\n"
            "'', '', '', ''\n"
            "null, null, null, null\n"
            "null, null, null, null\n"
            "'A', 7, '2004-01-31', date 2004-1-31 10:11:12\n");
}

TEST(List, KeepsBlanksAndOtherLettersAsTheyStand) {
  ErpFiles erp;
  const Object manager = erp.Lines("\xEF\xBB\xBFText\r\n A \r\n\" \"\r\nÄ€😀\r\n\\n\r\n");

  const Value rows = manager.Call("List");

  EXPECT_EQ(RowsOf(rows, {"Text"}), "' A '\n' '\n'Ä€😀'\n'\\n'\n");
}

TEST(List, HandsAnIntOnAsA32BitInteger) {
  ErpFiles erp;
  const Object manager = erp.Lines("Priority:int:prno:key\n5\n");
  const Object rows = manager.Call("List", std::int16_t{0}, std::int16_t{999}).AsObject();
  const Object row = rows.Call("nextElement").AsObject();

  EXPECT_TRUE(row.Call("getPriority").Is<std::int32_t>());
}

TEST(List, AdmitsBothEndsOfTheRangesOfTextsByCodePoint) {
  ErpFiles erp;
  const Object manager = erp.Lines("Key:text:k:key\nA\nB\nBa\nC\na\nÄ\n😀\n");
  const auto keysIn = [&](const Text& low, const Text& high) {
    return RowsOf(manager.Call("List", low, high), {"Key"});
  };

  EXPECT_EQ(keysIn("B", "C"), "'B'\n'Ba'\n'C'\n");
  EXPECT_EQ(keysIn("B", "B"), "'B'\n");
  EXPECT_EQ(keysIn("D", "z"), "'a'\n");
  EXPECT_EQ(keysIn("b", "Ö"), "'Ä'\n");
  EXPECT_EQ(keysIn("Ö", "\U0010FFFF"), "'😀'\n");
  EXPECT_EQ(keysIn("C", "B"), "");
  EXPECT_EQ(keysIn("", ""), "");
}

TEST(List, AdmitsEveryTextBelowABoundOfTheHighestCharactersOnly) {
  ErpFiles erp;
  const Object manager = erp.Lines("Key:text:k:key\nA\n\x7F\x7F\x7F\nÄ\n😀\n");
  const auto keysIn = [&](const Text& low, const Text& high) {
    return RowsOf(manager.Call("List", low, high), {"Key"});
  };

  EXPECT_EQ(keysIn("", Highest(2)), "'A'\n'\x7F\x7F\x7F'\n'Ä'\n'😀'\n");
  EXPECT_EQ(keysIn("", Highest(1)), "'A'\n'\x7F\x7F\x7F'\n'Ä'\n'😀'\n");
  EXPECT_EQ(keysIn("B", Highest(1)), "'\x7F\x7F\x7F'\n'Ä'\n'😀'\n");
  EXPECT_EQ(keysIn("", "\x7F z"), "'A'\n");
  EXPECT_EQ(keysIn("\x7F", "\x7F\x7F\x7F\x7F"), "'\x7F\x7F\x7F'\n'Ä'\n'😀'\n");
}

TEST(List, ComparesIntKeysAsNumbersAlsoWithBoundsGivenAsTexts) {
  ErpFiles erp;
  const Object manager = erp.Lines("Key:int:k:key\n9\n10\n-3\n+0100\n1000\n");
  const auto keysIn = [&](const Value& low, const Value& high) {
    return RowsOf(manager.Call("List", low, high), {"Key"});
  };

  EXPECT_EQ(keysIn(std::int16_t{9}, std::int16_t{100}), "9\n10\n100\n");
  EXPECT_EQ(keysIn("9", "100"), "9\n10\n100\n");
  EXPECT_EQ(keysIn(std::int16_t{0}, "9999"), "9\n10\n100\n1000\n");
  EXPECT_EQ(keysIn("-3", " 9 "), "9\n-3\n");
  EXPECT_EQ(keysIn(9.5, 1e3), "10\n100\n1000\n");
  EXPECT_EQ(keysIn(std::int32_t{100000}, std::int32_t{100000}), "");
}

TEST(List, CountsAKeyThatIsAbsentNullOrEmptyAsTheLowestTextOrAs0) {
  ErpFiles erp;
  const Object manager =
      erp.Lines("Text:text:t:key,Int:int:i:key,Row\n,1,a\n\\N,1,b\n\"\",1,c\nA,,d\nA,\\N,e\nA,\"\",f\n");
  const auto rowsIn = [&](const char* lowText, const char* highText, std::int32_t low, std::int32_t high) {
    return RowsOf(manager.Call("List", lowText, highText, low, high), {"Row"});
  };

  EXPECT_EQ(rowsIn("", "", 0, 9), "'a'\n'b'\n'c'\n");
  EXPECT_EQ(rowsIn("A", "A", 0, 0), "'d'\n'e'\n'f'\n");
  EXPECT_EQ(rowsIn("A", "A", 1, 9), "");
  EXPECT_EQ(rowsIn("0", "Z", 1, 9), "");
}

TEST(List, RangesTheKeysInTheOrderOfTheHeader) {
  ErpFiles erp;
  const Object manager = erp.Lines("Note,Line:int:seqn:key,Contract:text:csco:key\nx,1,A\ny,2,A\nz,1,B\n");

  const Value rows = manager.Call("List", 1, 1, "A", "A");

  EXPECT_EQ(RowsOf(rows, {"Note"}), "'x'\n");
}

TEST(List, RaisesANumberOfBoundsThatIsNotTwiceTheKeyColumns) {
  ErpFiles erp;
  const Object manager = erp.Lines("Contract:text:csco:key,Line:int:seqn:key\n");
  const Text error =
      "5 Invalid procedure call or argument: List takes 4 arguments, a lowest and a highest value for each key column "
      "of Lines.csv (Lines.LinesManager)";

  EXPECT_EQ(ErrorOf([&] { manager.Call("List"); }), error);
  EXPECT_EQ(ErrorOf([&] { manager.Call("List", ""); }), error);
  EXPECT_EQ(ErrorOf([&] { manager.Call("List", "", "Z"); }), error);
  EXPECT_EQ(ErrorOf([&] { manager.Call("List", "", "Z", 0); }), error);
  EXPECT_EQ(ErrorOf([&] { manager.Call("List", "", "Z", 0, 9, 0, 9); }), error);
  EXPECT_EQ(ErrorOf([&] { manager.Call("List", "", "Z", 0, 9); }), "no error");
}

TEST(List, RaisesABoundThatIsNoTextAndNoNumber) {
  ErpFiles erp;
  const Object manager = erp.Lines("Line:int:seqn:key\n");

  EXPECT_EQ(ErrorOf([&] { manager.Call("List", "abc", 9); }),
            "13 Type mismatch: a bound of Line is no number (Lines.LinesManager)");
  EXPECT_EQ(ErrorOf([&] { manager.Call("List", 0, Highest(3)); }),
            "13 Type mismatch: a bound of Line is no number (Lines.LinesManager)");
  EXPECT_EQ(ErrorOf([&] { manager.Call("List", 0, manager); }),
            "13 Type mismatch: a bound of Line is neither a text nor a number (Lines.LinesManager)");
  EXPECT_EQ(ErrorOf([&] { manager.Call("List", Null(), 9); }),
            "94 Invalid use of Null: a bound of Line (Lines.LinesManager)");
}

TEST(List, TakesWhatARowGivesForItsKeysAsBounds) {
  ErpFiles erp;
  const Object manager = erp.Lines("Contract:text:csco:key,Line:int:seqn:key,Term:int\nA,,1\nA,7,2\n");
  const Value all = manager.Call("List", "", Highest(9), 0, 999);
  const Object absent = all.AsObject().Call("nextElement").AsObject();
  const Value contract = absent.Call("getContract");
  const Value line = absent.Call("getLine");

  const Value again = manager.Call("List", contract, contract, line, line);

  EXPECT_EQ(RowsOf(again, {"Term"}), "1\n");
}

TEST(List, GivesAnEnumerationWithoutRowsForAHeaderAlone) {
  ErpFiles erp;
  const Object manager = erp.Lines("Key:text:k:key\n");

  EXPECT_EQ(RowsOf(manager.Call("List", "", "Z"), {"Key"}), "");
}

TEST(List, RaisesAnotherNumberOfRecordsThanTheFileBesideSays) {
  const struct {
    const char* count;
    const char* rows;
  } cases[] = {
      {"2", "'A'\n'B'\n"},
      {"2\r\n", "'A'\n'B'\n"},
      {"3\n", "'A'\n'B'\n13 Type mismatch: Lines.csv ends after 2 records in place of 3 (Lines.LinesManager)\n"},
      {"0", "'A'\n'B'\n13 Type mismatch: Lines.csv ends after 2 records in place of 0 (Lines.LinesManager)\n"},
  };

  for (const auto& [count, rows] : cases) {
    ErpFiles erp;
    const Object manager = erp.Lines("Key:text:k:key\nA\n\nB\n");
    erp.directory.Write("Lines.rows", count);

    EXPECT_EQ(RowsOf(manager.Call("List", "", Highest(1)), {"Key"}), rows);
  }
}

TEST(List, CountsTheRecordsThatTheRangesLeaveOut) {
  ErpFiles erp;
  const Object manager = erp.Lines("Key:text:k:key\nA\nB\nC\n");
  erp.directory.Write("Lines.rows", "4\n");

  EXPECT_EQ(RowsOf(manager.Call("List", "B", "B"), {"Key"}),
            "'B'\n13 Type mismatch: Lines.csv ends after 3 records in place of 4 (Lines.LinesManager)\n");
}

TEST(List, RaisesANumberOfRecordsThatIsNone) {
  const struct {
    const char* content;
    const char* shown;
  } cases[] = {{"", "\"\""}, {"\n", "\"\""}, {"ten", "\"ten\""}, {" 1", "\" 1\""}, {"-1", "\"-1\""}, {"1,2", "\"12\""}};

  for (const auto& [content, shown] : cases) {
    ErpFiles erp;
    const Object manager = erp.Lines("A\n1\n");
    erp.directory.Write("Lines.rows", content);

    EXPECT_EQ(ErrorOf([&] { manager.Call("List"); }), "13 Type mismatch: Lines.rows, line 1, column 1: " + Text(shown) +
                                                          " is no number of records (Lines.LinesManager)");
  }
}

TEST(List, GivesNothingForAFileThatSaysSo) {
  for (const char* content :
       {"\\NOTHING", "\\NOTHING\n", "\xEF\xBB\xBF\\NOTHING\r\n", "\\NOTHING\nKey:text:k:key\nA\n"}) {
    ErpFiles erp;
    const Object manager = erp.Lines(content);

    EXPECT_EQ(Shown(manager.Call("List", "", "Z")), "nothing");
  }
}

TEST(List, RaisesAFileWithoutAHeader) {
  for (const char* content : {"", "\xEF\xBB\xBF", "\n\r\n"}) {
    ErpFiles erp;
    const Object manager = erp.Lines(content);

    EXPECT_EQ(ErrorOf([&] { manager.Call("List"); }),
              "13 Type mismatch: Lines.csv, line 1, column 1: the file has no header (Lines.LinesManager)");
  }
}

TEST(List, RaisesABrokenHeaderWhenItIsAskedFor) {
  const struct {
    const char* content;
    const char* error;
  } cases[] = {
      {"A,B:float\n1,2\n", "line 1, column 2: \"B:float\" has an unknown type"},
      {"A,,C\n", "line 1, column 2: \"\" has no name"},
      {"A,a\n", "line 1, column 2: \"a\" has the name of another column"},
      {"A,B\"\n", "line 1, column 2: broken quote"},
      {"A,\xFF\n", "line 1, column 2: is no UTF-8 text"},
      {"\xFF\xFE"
       "A\n",
       "line 1, column 1: is no UTF-8 text"},
  };

  for (const auto& [content, error] : cases) {
    ErpFiles erp;
    const Object manager = erp.Lines(content);
    EXPECT_EQ(ErrorOf([&] { manager.Call("List"); }),
              "13 Type mismatch: Lines.csv, " + Text(error) + " (Lines.LinesManager)");
  }
}

TEST(List, RaisesWhatIsNoFileAnyMoreOrNoneAtAll) {
  ErpFiles erp;
  const Object manager = erp.Lines("A\n");
  std::filesystem::remove(erp.directory.path() / "Lines.csv");
  std::filesystem::create_directory(erp.directory.path() / "Folder.csv");
  const Object folder = erp.host.Create("Folder.FoldersManager");

  EXPECT_EQ(ErrorOf([&] { manager.Call("List"); }), "53 File not found: Lines.csv (Lines.LinesManager)");
  EXPECT_EQ(ErrorOf([&] { folder.Call("List"); }),
            "75 Path/File access error: Folder.csv (Is a directory) (Folder.FoldersManager)");
}

TEST(List, RaisesABrokenRowWhenItIsReached) {
  const struct {
    const char* row;
    const char* error;
  } cases[] = {
      {"x,abc,", "column Line: \"abc\" is no int"},
      {"x, 1,", "column Line: \" 1\" is no int"},
      {"x,2147483648,", "column Line: \"2147483648\" is no int"},
      {"x,1,2004-02-30", "column Since: \"2004-02-30\" is no date"},
      {"x,1", "column Since: the record ends before this column"},
      {"x", "column Line: the record ends before this column"},
      {"x,1,,", "column 4: the header has no such column"},
      {"x,1,,more,and more", "column 4: the header has no such column"},
      {"\xC3(,1,", "column Contract: is no UTF-8 text"},
      {"x,\xFF,", "column Line: is no UTF-8 text"},
      {"\"x\"y,1,", "column 1: broken quote"},
      {"x,1\",", "column 2: broken quote"},
      {"x,1,\"2004", "column 3: broken quote, nothing closes it"},
  };

  for (const auto& [row, error] : cases) {
    ErpFiles erp;
    const Object manager = erp.Lines("Contract:text:c:key,Line:int,Since:date\nA,1,\n" + Text(row) + "\nB,2,\n");
    EXPECT_EQ(RowsOf(manager.Call("List", "", Highest(1)), {"Contract", "Line"}),
              "'A', 1\n13 Type mismatch: Lines.csv, line 3, " + Text(error) + " (Lines.LinesManager)\n");
  }
}

TEST(List, RaisesANulByteInARow) {
  ErpFiles erp;
  using namespace std::string_view_literals;
  const Object manager = erp.Lines("A,B\n1,2\nx,y\0z\n"sv);

  EXPECT_EQ(RowsOf(manager.Call("List"), {"A"}),
            "'1'\n13 Type mismatch: Lines.csv, line 3, column B: holds a NUL byte (Lines.LinesManager)\n");
}

TEST(List, NamesTheLengthOfALongCellInPlaceOfTheCell) {
  ErpFiles erp;
  const Object manager = erp.Lines("A:int\n" + Text(61, '1') + "\n");

  EXPECT_EQ(RowsOf(manager.Call("List"), {"A"}),
            "13 Type mismatch: Lines.csv, line 2, column A: a cell of 61 bytes is no int (Lines.LinesManager)\n");
}

TEST(List, NamesTheLineOfTheFileWhateverItsLineEndsAreAndCellsHold) {
  ErpFiles erp;
  const Object manager = erp.Lines("A,B:int\r\n\r\n\"a\r\nb\nc\",1\r\n\n\"d\ne\",x\r\n");

  EXPECT_EQ(RowsOf(manager.Call("List"), {"B"}),
            "1\n13 Type mismatch: Lines.csv, line 7, column B: \"x\" is no int (Lines.LinesManager)\n");
}

/// A header and 100,000 rows, "row" in the place of row 70,000, which stands in line 70,001.
Text LongFile(const Text& row) {
  Text content = "Location:text:cloc:key,Priority:int:prio\n";
  for (int number = 1; number <= 100'000; ++number) {
    content += number == 70'000 ? row : "L" + std::to_string(number) + ",5";
    content += '\n';
  }
  return content;
}

/// "69999 rows, then the error".
Text CountOf(const Object& rows) {
  std::int64_t count = 0;
  const Text error = ErrorOf([&] {
    while (rows.Call("hasMoreElements").IsTrue()) {
      const Object row = rows.Call("nextElement").AsObject();
      row.Call("getLocation");
      ++count;
    }
  });
  return std::to_string(count) + " rows, then " + error;
}

TEST(List, HandsOnTheRowsInFrontOfABrokenOneInALongFile) {
  const struct {
    const char* row;
    const char* error;
  } cases[] = {
      {"L70000,abc", "column Priority: \"abc\" is no int"},
      {"L70000,\"5", "column 2: broken quote"},
      {"L70000", "column Priority: the record ends before this column"},
      {"L70000,5,6", "column 3: the header has no such column"},
      {"L7\xFF,5", "column Location: is no UTF-8 text"},
  };

  for (const auto& [row, error] : cases) {
    ErpFiles erp;
    const Text quoteBelow = Text(row).ends_with("\"5") ? "\"x\"\n" : "";  // what an open quote runs into
    const Object manager = erp.Lines(LongFile(row) + quoteBelow);
    const Text expected = "13 Type mismatch: Lines.csv, line 70001, " + Text(error) + " (Lines.LinesManager)";

    EXPECT_EQ(CountOf(manager.Call("List", "", Highest(9)).AsObject()), "69999 rows, then " + expected);
    EXPECT_EQ(CountOf(manager.Call("List", "L1", "L1").AsObject()), "1 rows, then " + expected);
  }
}

constexpr const char* kTermHeader = "Contract:text:csco:key,Term:int:term:key,Line:int:seqn:key,Note\n";

/// The terms of one contract line, as they are looked up for each change.
Text TermsOf(const Object& manager, const Value& contract, const Value& line) {
  return RowsOf(manager.Call("List", contract, contract, 0, 9999, line, line), {"Term", "Note"});
}

TEST(List, FindsTheRowsOfOneKeyInTheOrderOfTheFileAgainAndAgain) {
  ErpFiles erp;
  const Object manager =
      erp.Lines(Text("\xEF\xBB\xBF") + kTermHeader +
                "A,2,10,\"first\r\nof two\"\r\nB,1,10,b\r\n\r\nA,1,+010,second\nA,1,20,other\n,3,,\"\"\n"
                "\\N,4,\\N,null\nA,10000,10,beyond");

  for (int time = 0; time < 2; ++time) {
    EXPECT_EQ(TermsOf(manager, "A", 10), "2, 'first\r\nof two'\n1, 'second'\n");
    EXPECT_EQ(TermsOf(manager, "A", "20"), "1, 'other'\n");
    EXPECT_EQ(TermsOf(manager, "B", 10.0), "1, 'b'\n");
    EXPECT_EQ(TermsOf(manager, "B", 20), "");
    EXPECT_EQ(TermsOf(manager, "B", 10.5), "");
    EXPECT_EQ(TermsOf(manager, Value(), Value()), "3, ''\n4, 'null'\n");
    EXPECT_EQ(RowsOf(manager.Call("List", "B", Highest(1), 0, 9, 0, 99), {"Note"}), "'b'\n");
    EXPECT_EQ(RowsOf(manager.Call("List", "A", "A", 1, 1, 20, 20), {"Note"}), "'other'\n");
  }
}

TEST(List, FindsTheRowsOfOneKeyAsTheFileStandsWhenItIsAsked) {
  ErpFiles erp;
  const Object manager = erp.Lines(Text(kTermHeader) + "A,1,10,old\n");
  const Value before = manager.Call("List", "A", "A", 0, 9999, 10, 10);
  std::filesystem::rename(erp.directory.path() / "Lines.csv", erp.directory.path() / "before.csv");
  erp.directory.Write("Lines.csv", Text(kTermHeader) + "B,1,10,b\nA,5,10,new\n");

  EXPECT_EQ(TermsOf(manager, "A", 10), "5, 'new'\n");
  EXPECT_EQ(RowsOf(before, {"Note"}), "'old'\n");

  erp.directory.Write("Lines.csv", "\\NOTHING\n");
  EXPECT_EQ(Shown(manager.Call("List", "A", "A", 0, 9999, 10, 10)), "nothing");
}

TEST(List, EndsWithTheFailureOfTheFileWhateverKeyIsAskedFor) {
  const struct {
    const char* row;
    const char* error;
  } cases[] = {
      {"B,x,10,b", "column Term: \"x\" is no int"},
      {"B,1", "column Line: the record ends before this column"},
      {"B,1,10,b\"", "column 4: broken quote"},
      {"B,1,10,\"b", "column 4: broken quote, nothing closes it"},
  };

  for (const auto& [row, error] : cases) {
    ErpFiles erp;
    const Text end = "13 Type mismatch: Lines.csv, line 3, " + Text(error) + " (Lines.LinesManager)\n";
    const Text behind = Text(row).ends_with("\"b") ? "" : "\nA,2,10,behind\n";
    const Object manager = erp.Lines(Text(kTermHeader) + "A,1,10,front\n" + row + behind);

    for (int time = 0; time < 2; ++time) {
      EXPECT_EQ(TermsOf(manager, "A", 10), "1, 'front'\n" + end);
      EXPECT_EQ(TermsOf(manager, "C", 10), end);
    }
  }
}

TEST(List, FindsEachOfManyKeys) {
  ErpFiles erp;
  Text content = kTermHeader;
  for (int number = 0; number < 4'000; ++number) {
    const Text contract = "C" + std::to_string(number * 7919 % 4'000);
    content += contract + "," + std::to_string(number) + ",1,of " + contract + "\n";
  }
  const Object manager = erp.Lines(content);

  for (int number = 0; number < 4'000; ++number) {
    const Text contract = "C" + std::to_string(number * 7919 % 4'000);
    const Object rows = manager.Call("List", contract, contract, 0, 4'000, 1, 1).AsObject();
    const Object row = rows.Call("nextElement").AsObject();
    ASSERT_EQ(FieldsOf(row, {"Term", "Note"}), std::to_string(number) + ", 'of " + contract + "'");
    ASSERT_EQ(Shown(rows.Call("hasMoreElements")), "false");
  }
}

TEST(List, LeavesAnOpenEnumerationAndItsRowsUsable) {
  ErpFiles erp;
  const Object manager = erp.Lines(kLocations);
  const Object outer = manager.Call("List", "", Highest(10)).AsObject();
  const Object first = outer.Call("nextElement").AsObject();

  const Value inner = manager.Call("List", "B2", "B2");

  EXPECT_EQ(RowsOf(inner, {"Location"}), "'B2'\n");
  EXPECT_EQ(FieldsOf(first, {"Location", "Description"}), "'A1', 'North'");
  EXPECT_EQ(RowsOf(outer, {"Location"}), "'B2'\n'C3'\n");
}

TEST(List, TakesOperationNamesInAnyCase) {
  ErpFiles erp;
  const Object manager = erp.Lines(kLocations);

  manager.Call("INITIALIZE", "bus");
  const Object rows = manager.Call("list", "", Highest(10)).AsObject();
  const Value more = rows.Call("HASMOREELEMENTS");
  const Object row = rows.Call("NextElement").AsObject();
  const Value location = row.Call("GetLocation");
  const Value has = row.Call("HASDESCRIPTION");
  manager.Call("close");

  EXPECT_EQ(Shown(more), "true");
  EXPECT_EQ(Shown(location), "'A1'");
  EXPECT_EQ(Shown(has), "true");
}

TEST(FileManager, RaisesWhatItDoesNotHaveAndWrongNumbersOfArguments) {
  ErpFiles erp;
  const Object manager = erp.Lines(kLocations);
  const Text source = " (Lines.LinesManager)";

  EXPECT_EQ(ErrorOf([&] { manager.Call("Open"); }),
            "438 Object doesn't support this property or method: Open" + source);
  EXPECT_EQ(ErrorOf([&] { manager.Get("List"); }), "438 Object doesn't support this property or method: List" + source);
  EXPECT_EQ(ErrorOf([&] { manager.Call("NetListObjects", "tscfg200", Object()); }),
            "438 Object doesn't support this property or method: NetListObjects" + source);
  EXPECT_EQ(ErrorOf([&] { manager.Call("Initialize"); }), "450 Wrong number of arguments: Initialize" + source);
  EXPECT_EQ(ErrorOf([&] { manager.Call("Initialize", "a", "b"); }),
            "450 Wrong number of arguments: Initialize" + source);
  EXPECT_EQ(ErrorOf([&] { manager.Call("Close", 1); }), "450 Wrong number of arguments: Close" + source);
  EXPECT_EQ(ErrorOf([&] { manager.Call("NetListLines", "tssma110"); }),
            "450 Wrong number of arguments: NetListLines" + source);
}

TEST(ExportEnumeration, AnswersAsOftenAsItIsAsked) {
  ErpFiles erp;
  const Object manager = erp.Lines("A\n1\n2\n");
  const Object rows = manager.Call("List").AsObject();

  for (const char* value : {"'1'", "'2'"}) {
    EXPECT_EQ(Shown(rows.Call("hasMoreElements")), "true");
    EXPECT_EQ(Shown(rows.Call("hasMoreElements")), "true");
    const Object row = rows.Call("nextElement").AsObject();
    EXPECT_EQ(FieldOf(row, "A"), value);
  }
  EXPECT_EQ(Shown(rows.Call("hasMoreElements")), "false");
  EXPECT_EQ(Shown(rows.Call("hasMoreElements")), "false");
}

TEST(ExportEnumeration, RaisesANextElementThatIsNotThere) {
  ErpFiles erp;
  const Object manager = erp.Lines("A\n");
  const Object rows = manager.Call("List").AsObject();

  EXPECT_EQ(ErrorOf([&] { rows.Call("nextElement"); }),
            "5 Invalid procedure call or argument: nextElement behind the last row (Lines.LinesManager)");
}

TEST(ExportEnumeration, RaisesTheErrorOfABrokenRowAgainAtEveryFurtherCall) {
  ErpFiles erp;
  const Object manager = erp.Lines("A:int\n1\nx\n2\n");
  const Object rows = manager.Call("List").AsObject();
  const Object first = rows.Call("nextElement").AsObject();
  const Text error = "13 Type mismatch: Lines.csv, line 3, column A: \"x\" is no int (Lines.LinesManager)";

  EXPECT_EQ(ErrorOf([&] { rows.Call("nextElement"); }), error);
  EXPECT_EQ(ErrorOf([&] { rows.Call("hasMoreElements"); }), error);
  EXPECT_EQ(FieldOf(first, "A"), "1");
}

TEST(ExportEnumeration, RaisesWhatItDoesNotHaveAndWrongNumbersOfArguments) {
  ErpFiles erp;
  const Object manager = erp.Lines("A\n1\n");
  const Object rows = manager.Call("List").AsObject();

  EXPECT_EQ(ErrorOf([&] { rows.Call("reset"); }),
            "438 Object doesn't support this property or method: reset (Lines.LinesManager)");
  EXPECT_EQ(ErrorOf([&] { rows.Call("nextElement", 1); }),
            "450 Wrong number of arguments: nextElement (Lines.LinesManager)");
  EXPECT_EQ(ErrorOf([&] { rows.Call("hasMoreElements", 1); }),
            "450 Wrong number of arguments: hasMoreElements (Lines.LinesManager)");
}

Object FirstRow(const Object& manager) {
  const Object rows = manager.Call("List").AsObject();
  return rows.Call("nextElement").AsObject();
}

TEST(ExportRow, StaysValidWhenManagerAndEnumerationAreGone) {
  ErpFiles erp;
  Object manager = erp.Lines("A,At:datetime\nx,2004-01-31T10:11:12\n");
  const Object row = FirstRow(manager);

  manager.Call("Close");
  manager.Release();

  EXPECT_EQ(FieldsOf(row, {"A", "At"}), "'x', date 2004-1-31 10:11:12");
}

TEST(ExportRow, IsAnObjectOfItsOwn) {
  ErpFiles erp;
  const Object manager = erp.Lines("A\n1\n2\n");
  const Object rows = manager.Call("List").AsObject();
  const Object first = rows.Call("nextElement").AsObject();
  const Object second = rows.Call("nextElement").AsObject();

  EXPECT_NE(first, second);
  EXPECT_EQ(FieldOf(first, "A"), "'1'");
  EXPECT_EQ(FieldOf(second, "A"), "'2'");
}

TEST(ExportRow, GivesTheSameDateObjectEachTime) {
  ErpFiles erp;
  const Object row = FirstRow(erp.Lines("At:datetime\n2004-01-31T10:11:12\n"));

  const Value first = row.Call("getAt");
  const Value second = row.Call("getAt");

  EXPECT_EQ(Shown(first), "date 2004-1-31 10:11:12");
  EXPECT_EQ(first, second);
}

TEST(ExportRow, HasAFieldPresentWithTheValueThatWasSet) {
  ErpFiles erp;
  const Object manager = erp.Lines("ContractTerms:int:term,Line:int\n,1\n4,2\n");
  const Object rows = manager.Call("List").AsObject();
  const Object first = rows.Call("nextElement").AsObject();
  const Object second = rows.Call("nextElement").AsObject();

  EXPECT_EQ(FieldOf(first, "ContractTerms"), "absent");
  EXPECT_TRUE(first.Call("setContractTerms", 7).Is<Empty>());
  EXPECT_EQ(FieldOf(first, "ContractTerms"), "7");
  first.Call("SETCONTRACTTERMS", "nine");
  EXPECT_EQ(FieldOf(first, "ContractTerms"), "'nine'");
  first.Call("setContractTerms", Null());
  EXPECT_EQ(FieldOf(first, "ContractTerms"), "null");
  EXPECT_EQ(FieldsOf(first, {"Line"}), "1");
  EXPECT_EQ(FieldsOf(second, {"ContractTerms", "Line"}), "4, 2");
}

TEST(ExportRow, AnswersAColumnThatBearsTheNameOfAnotherOperation) {
  ErpFiles erp;
  const Object row = FirstRow(erp.Lines("Object,MoreElements\nO1,x\n"));

  EXPECT_EQ(Shown(row.Call("GetObject")), "'O1'");
  EXPECT_EQ(FieldsOf(row, {"Object", "MoreElements"}), "'O1', 'x'");
}

TEST(ExportRow, RaisesAnAccessorWithoutAColumnNamingFileAndColumn) {
  ErpFiles erp;
  const Object row = FirstRow(erp.Lines("A\n1\n"));
  const Text lacks = "438 Object doesn't support this property or method: ";

  EXPECT_EQ(ErrorOf([&] { row.Call("hasCustomer"); }),
            lacks + "hasCustomer (Lines.csv has no column Customer) (Lines.LinesManager)");
  EXPECT_EQ(ErrorOf([&] { row.Call("GetObject"); }),
            lacks + "GetObject (Lines.csv has no column Object) (Lines.LinesManager)");
  EXPECT_EQ(ErrorOf([&] { row.Call("setTerms", 1); }),
            lacks + "setTerms (Lines.csv has no column Terms) (Lines.LinesManager)");
  EXPECT_EQ(ErrorOf([&] { row.Call("getActionType"); }),
            lacks + "getActionType (Lines.csv has no column ActionType) (Lines.LinesManager)");
  EXPECT_EQ(ErrorOf([&] { row.Call("delete"); }), lacks + "delete (Lines.LinesManager)");
  EXPECT_EQ(ErrorOf([&] { row.Get("getA"); }), lacks + "getA (Lines.LinesManager)");
  EXPECT_EQ(ErrorOf([&] { row.Put("A", 1); }), lacks + "A (Lines.LinesManager)");
}

TEST(ExportRow, RaisesWrongNumbersOfArguments) {
  ErpFiles erp;
  const Object row = FirstRow(erp.Lines("A\n1\n"));

  EXPECT_EQ(ErrorOf([&] { row.Call("hasA", 1); }), "450 Wrong number of arguments: hasA (Lines.LinesManager)");
  EXPECT_EQ(ErrorOf([&] { row.Call("getA", 1); }), "450 Wrong number of arguments: getA (Lines.LinesManager)");
  EXPECT_EQ(ErrorOf([&] { row.Call("setA"); }), "450 Wrong number of arguments: setA (Lines.LinesManager)");
  EXPECT_EQ(ErrorOf([&] { row.Call("setA", 1, 2); }), "450 Wrong number of arguments: setA (Lines.LinesManager)");
  EXPECT_EQ(ErrorOf([&] { row.Call("hasLines", 1); }), "450 Wrong number of arguments: hasLines (Lines.LinesManager)");
}

TEST(ExportRow, HasNoOldValuesInAFullListing) {
  ErpFiles erp;
  const Object row = FirstRow(erp.Lines("Lines,A\nx,1\n"));

  EXPECT_EQ(Shown(row.Call("hasLines")), "false");
  EXPECT_EQ(Shown(row.Call("getLines")), "nothing");
}

}  // namespace
}  // namespace zenqay
