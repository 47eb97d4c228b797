#include <gtest/gtest.h>

#include "components/files/erp_files.h"

namespace zenqay {
namespace {

struct Range {
  const char* field;
  Value low;
  Value high;
};

/// What a net-change listing is asked with. By default the period holds every time.
struct Question {
  Object from = DateAt(1970, 1, 1);
  Object to = DateAt(2038, 1, 19);
  std::vector<Range> ranges;
  std::vector<const char*> fields;
  std::vector<const char*> fieldsWithOld;
};

struct ChangedErpFiles : ErpFiles {
  Object manager = Lines("Contract:text:csco:key\n");

  void Changes(std::string_view content) { directory.Write("Lines.changes.csv", content); }

  Object Part(const char* name) { return host.Create("NetListSelectionCriteria." + Text(name)); }

  Object CriteriaFor(const Question& question) {
    const Object criteria = Part("NetListSelectionCriteria");
    const Object input = Part("NetListIn");
    const Object output = Part("NetListOut");
    const Object period = Part("NetListPeriod");
    period.Call("setFrom", question.from);
    period.Call("setTo", question.to);
    criteria.Call("setNetListPeriod", period);
    for (const Range& range : question.ranges) {
      Value parameter = Part("NetListParameter");
      parameter.AsObject().Call("setFieldName", range.field);
      parameter.AsObject().Call("setFrom", range.low);
      parameter.AsObject().Call("setTo", range.high);
      input.Call("addNetListParameter", Argument::ByReference(parameter));
    }
    criteria.Call("setNetListIn", input);
    for (const char* field : question.fields) output.Call("addFieldNameWithoutOld", field);
    for (const char* field : question.fieldsWithOld) output.Call("addFieldNameWithOld", field);
    criteria.Call("setNetListOut", output);
    return criteria;
  }

  Value NetList(const Question& question) {
    Value code = "tsctm310";
    Value criteria = CriteriaFor(question);
    return manager.Call("NetListLines", Argument::ByReference(code), Argument::ByReference(criteria));
  }

  Text ChangedRows(std::string_view content, const Question& question, Names names) {
    Changes(content);
    return RowsOf(NetList(question), names);
  }
};

constexpr const char* kDay = "2004-01-31T10:11:12Z";

TEST(NetList, GivesTheChangedRowsInTheOrderOfTheFile) {
  ChangedErpFiles erp;

  EXPECT_EQ(erp.ChangedRows("ChangedAt,ActionType,Contract:text:csco:key,Description:text:desc\n"
                            "2004-02-01T00:00:00Z,I,B,North\n"
                            "2004-01-01T00:00:00Z,D,A,\n",
                            {.fields = {"csco", "desc"}}, {"ActionType", "Contract", "Description"}),
            "'I', 'B', 'North'\n"
            "'D', 'A', absent\n");
}

TEST(NetList, FindsChangedAtAndActionTypeByNameWhereverTheyStand) {
  ChangedErpFiles erp;

  EXPECT_EQ(erp.ChangedRows("Contract:text:csco:key,ACTIONTYPE,changedat\nA,U,2004-01-31T10:11:12Z\n", {},
                            {"Contract", "ActionType", "ChangedAt"}),
            "'A', 'U', '2004-01-31T10:11:12Z'\n");
}

TEST(NetList, HandsTheActionTypeOnUntrimmed) {
  ChangedErpFiles erp;
  erp.Changes(
      "ChangedAt,ActionType\n2004-01-31T10:11:12Z, D \n2004-01-31T10:11:12Z,d\n2004-01-31T10:11:12Z,\"\"\n"
      "2004-01-31T10:11:12Z,\n2004-01-31T10:11:12Z,\\N\n");
  const Object rows = erp.NetList({}).AsObject();

  for (const char* type : {"' D '", "'d'", "''", "empty", "null"}) {
    const Object row = rows.Call("nextElement").AsObject();
    const Value given = row.Call("getActionType");
    EXPECT_EQ(Shown(given), type);
  }
}

TEST(NetList, GivesNoRowsWithoutAChangesFile) {
  ChangedErpFiles erp;

  EXPECT_EQ(RowsOf(erp.NetList({}), {}), "");
}

TEST(NetList, GivesNothingForAChangesFileThatSaysSo) {
  ChangedErpFiles erp;
  erp.Changes("\\NOTHING\n");

  EXPECT_EQ(Shown(erp.NetList({})), "nothing");
}

TEST(NetList, RaisesAnotherNumberOfRecordsThanTheFileBesideTheChangesSays) {
  ChangedErpFiles erp;
  erp.directory.Write("Lines.rows", "7\n");
  erp.directory.Write("Lines.changes.rows", "3\n");

  EXPECT_EQ(erp.ChangedRows("ChangedAt,ActionType\n2004-01-31T10:11:12Z,U\n1999-01-31T10:11:12Z,D\n",
                            {.from = DateAt(2004, 1, 1)}, {"ActionType"}),
            "'U'\n13 Type mismatch: Lines.changes.csv ends after 2 records in place of 3 (Lines.LinesManager)\n");
}

TEST(NetList, TakesBothEndsOfThePeriodInWholeSeconds) {
  ChangedErpFiles erp;

  EXPECT_EQ(erp.ChangedRows("ChangedAt,ActionType,Contract:text:csco:key\n"
                            "2004-01-31T10:11:11Z,U,a second early\n"
                            "2004-01-31T10:11:12Z,U,the start\n"
                            "2004-02-29T23:59:59Z,U,between\n"
                            "2004-03-01T00:00:00Z,U,the end\n"
                            "2004-03-01T00:00:01Z,U,a second late\n",
                            {.from = DateAt(2004, 1, 31, 10, 11, 12), .to = DateAt(2004, 3, 1)}, {"Contract"}),
            "'the start'\n'between'\n'the end'\n");
}

TEST(NetList, TakesAPeriodOfOneSecondAndNoneThatEndsBeforeItsStart) {
  ChangedErpFiles erp;
  const Text content = "ChangedAt,ActionType\n" + Text(kDay) + ",U\n";
  const Object before = DateAt(2004, 1, 31, 10, 11, 11);
  const Object same = DateAt(2004, 1, 31, 10, 11, 12);
  const Object behind = DateAt(2004, 1, 31, 10, 11, 13);

  EXPECT_EQ(erp.ChangedRows(content, {.from = same, .to = same}, {"ActionType"}), "'U'\n");
  EXPECT_EQ(erp.ChangedRows(content, {.from = behind, .to = before}, {"ActionType"}), "");
}

TEST(NetList, ComparesInUtcWhateverTheZoneOfTheDatesIs) {
  ChangedErpFiles erp;
  const Text content =
      "ChangedAt,ActionType\n2003-12-31T22:59:59Z,a\n2003-12-31T23:00:00Z,b\n2004-01-01T05:30:00Z,c\n"
      "2004-01-01T05:30:01Z,d\n";

  // Midnight one hour east of Greenwich, and half past midnight five hours west of it.
  EXPECT_EQ(
      erp.ChangedRows(content, {.from = DateAt(2004, 1, 1, 0, 0, 0, -60), .to = DateAt(2004, 1, 1, 0, 30, 0, 300)},
                      {"ActionType"}),
      "'b'\n'c'\n");
}

TEST(NetList, ReadsThePeriodWhenItIsCalled) {
  ChangedErpFiles erp;
  erp.Changes("ChangedAt,ActionType\n2004-01-31T10:11:12Z,U\n");
  const auto end = std::make_shared<LocalDate>(DateTimeParts{2004, 1, 1}, 0);
  const Object criteria = erp.CriteriaFor({.to = Object(end)});

  const Value early = erp.manager.Call("NetListLines", "tsctm310", criteria);
  end->MoveTo({2004, 2, 1});
  const Value late = erp.manager.Call("NetListLines", "tsctm310", criteria);

  EXPECT_EQ(RowsOf(early, {"ActionType"}), "");
  EXPECT_EQ(RowsOf(late, {"ActionType"}), "'U'\n");
}

constexpr const char* kLines =
    "ChangedAt,ActionType,Contract:text:csco:key,Term:int:term:key,Line:int:seqn:key\n"
    "2004-01-31T10:11:12Z,U,A,,1\n"
    "2004-01-31T10:11:12Z,U,A,5,99\n"
    "2004-01-31T10:11:12Z,U,B,0,100\n"
    "2004-01-31T10:11:12Z,U,,,\n";

TEST(NetList, AdmitsTheRangesOfTheCodedKeyColumns) {
  ChangedErpFiles erp;
  const auto rowsIn = [&](std::vector<Range> ranges) {
    return erp.ChangedRows(kLines, {.ranges = std::move(ranges)}, {"Contract", "Line"});
  };

  EXPECT_EQ(rowsIn({}), "'A', 1\n'A', 99\n'B', 100\nabsent, absent\n");
  EXPECT_EQ(rowsIn({{"csco", "", Highest(9)}, {"seqn", std::int16_t{0}, std::int16_t{99}}}),
            "'A', 1\n'A', 99\nabsent, absent\n");
  EXPECT_EQ(rowsIn({{"csco", "B", Highest(9)}}), "'B', 100\n");
  EXPECT_EQ(rowsIn({{"seqn", "1", "99"}}), "'A', 1\n'A', 99\n");
  EXPECT_EQ(rowsIn({{"term", std::int16_t{0}, "0"}}), "'A', 1\n'B', 100\nabsent, absent\n");
  EXPECT_EQ(rowsIn({{"csco", "A", "A"}, {"seqn", 2, 999}}), "'A', 99\n");
}

TEST(NetList, LeavesAKeyColumnWithoutACodeUnlimited) {
  ChangedErpFiles erp;

  EXPECT_EQ(erp.ChangedRows("ChangedAt,ActionType,Contract:text::key,Line:int:seqn:key\n"
                            "2004-01-31T10:11:12Z,U,A,1\n2004-01-31T10:11:12Z,U,B,2\n",
                            {.ranges = {{"csco", "X", "Z"}, {"seqn", 2, 9}}}, {"Contract"}),
            "'B'\n");
}

TEST(NetList, LimitsNothingByARangeOfAnotherField) {
  ChangedErpFiles erp;

  EXPECT_EQ(erp.ChangedRows("ChangedAt,ActionType,Contract:text::key,Customer:text:cuno\n2004-01-31T10:11:12Z,U,A,C7\n",
                            {.ranges = {{"csco", "X", "Z"}, {"cuno", "X", "Z"}}, .fields = {"cuno"}},
                            {"Contract", "Customer"}),
            "'A', 'C7'\n");
}

TEST(NetList, AnswersKeyColumnsAndColumnsWithoutACodeAndWhatWasAskedFor) {
  ChangedErpFiles erp;
  const char* content =
      "ChangedAt,ActionType,Contract:text:csco:key,Note,Description:text:desc,Status:int:ctst,Since:date:efdt\n"
      "2004-01-31T10:11:12Z,U,A,free,North,2,2004-01-31\n";

  EXPECT_EQ(erp.ChangedRows(content, {}, {"Contract", "Note", "Description", "Status", "Since"}),
            "'A', 'free', absent, absent, absent\n");
  EXPECT_EQ(erp.ChangedRows(content, {.fields = {"desc"}, .fieldsWithOld = {"ctst"}},
                            {"Contract", "Note", "Description", "Status", "Since"}),
            "'A', 'free', 'North', 2, absent\n");
}

TEST(NetList, RangesAKeyThatWasNotAskedFor) {
  ChangedErpFiles erp;

  EXPECT_EQ(erp.ChangedRows(kLines, {.ranges = {{"csco", "B", "B"}}, .fields = {"seqn"}}, {"Contract", "Line"}),
            "'B', 100\n");
}

TEST(NetList, KeepsAValueThatWasSetInAColumnThatWasNotAskedFor) {
  ChangedErpFiles erp;
  erp.Changes("ChangedAt,ActionType,Term:int:term\n2004-01-31T10:11:12Z,U,5\n");
  const Object rows = erp.NetList({}).AsObject();
  const Object row = rows.Call("nextElement").AsObject();

  EXPECT_EQ(FieldOf(row, "Term"), "absent");
  row.Call("setTerm", 7);
  EXPECT_EQ(FieldOf(row, "Term"), "7");
}

/// What a row answers of the old values, then the object's own fields.
Text OldValuesOf(const Object& row, Names names) {
  const Value has = row.Call("hasLines");
  const Value old = row.Call("getLines");
  if (Shown(old) == "nothing") return Shown(has) + " nothing";
  return Shown(has) + " " + FieldsOf(old.AsObject(), names);
}

Text OldValueRows(const Value& enumeration, Names names) {
  Text rows;
  const Object elements = enumeration.AsObject();
  while (elements.Call("hasMoreElements").IsTrue()) {
    const Object row = elements.Call("nextElement").AsObject();
    rows += OldValuesOf(row, names) + "\n";
  }
  return rows;
}

constexpr const char* kOldValues =
    "ChangedAt,ActionType,Contract:text:csco:key,Site:text:ccfg,Status:int:scon,Old.Site,Old.Status\n"
    "2004-01-31T10:11:12Z,U,A,S2,10,S1,2\n"
    "2004-01-31T10:11:12Z,U,B,S2,10,,\n"
    "2004-01-31T10:11:12Z,U,C,S2,10,\"\",\n"
    "2004-01-31T10:11:12Z,U,D,S2,10,,\\N\n";

TEST(NetList, GivesTheOldValuesThatWereAskedFor) {
  ChangedErpFiles erp;
  erp.Changes(kOldValues);

  EXPECT_EQ(OldValueRows(erp.NetList({.fieldsWithOld = {"ccfg", "scon"}}), {"Site", "Status"}),
            "true 'S1', 2\n"
            "false nothing\n"
            "true '', absent\n"
            "true absent, null\n");
  EXPECT_EQ(OldValueRows(erp.NetList({.fields = {"ccfg"}, .fieldsWithOld = {"scon"}}), {"Site", "Status"}),
            "true absent, 2\n"
            "false nothing\n"
            "false nothing\n"
            "true absent, null\n");
  EXPECT_EQ(OldValueRows(erp.NetList({.fields = {"ccfg", "scon"}}), {"Site", "Status"}),
            "false nothing\nfalse nothing\nfalse nothing\nfalse nothing\n");
}

TEST(NetList, AsksForTheNewValueWithTheOldOne) {
  ChangedErpFiles erp;

  EXPECT_EQ(erp.ChangedRows(kOldValues, {.fieldsWithOld = {"ccfg"}}, {"Contract", "Site", "Status"}),
            "'A', 'S2', absent\n'B', 'S2', absent\n'C', 'S2', absent\n'D', 'S2', absent\n");
}

TEST(NetList, GivesOldValuesOfAColumnWithoutACodeBesideOthersOnly) {
  ChangedErpFiles erp;
  erp.Changes(
      "ChangedAt,ActionType,Note,Site:text:ccfg,Old.Note,Old.Site\n"
      "2004-01-31T10:11:12Z,U,new,S2,old,S1\n"
      "2004-01-31T10:11:12Z,U,new,S2,old,\n");

  EXPECT_EQ(OldValueRows(erp.NetList({.fieldsWithOld = {"ccfg"}}), {"Note", "Site"}),
            "true 'old', 'S1'\nfalse nothing\n");
}

TEST(NetList, GivesOneObjectWithTheOldValuesThatStaysUsable) {
  ChangedErpFiles erp;
  erp.Changes(kOldValues);
  Object rows = erp.NetList({.fieldsWithOld = {"ccfg", "scon"}}).AsObject();
  Object row = rows.Call("nextElement").AsObject();
  const Value first = row.Call("GETLINES");
  const Value second = row.Call("getLines");
  rows.Release();
  row.Release();

  EXPECT_EQ(first, second);
  const Object old = first.AsObject();
  EXPECT_EQ(FieldsOf(old, {"site", "STATUS"}), "'S1', 2");
}

TEST(NetList, RaisesAnOldValueWithoutAColumn) {
  ChangedErpFiles erp;
  erp.Changes(kOldValues);
  const Object rows = erp.NetList({.fieldsWithOld = {"ccfg"}}).AsObject();
  const Object row = rows.Call("nextElement").AsObject();
  const Object old = row.Call("getLines").AsObject();

  EXPECT_EQ(ErrorOf([&] { old.Call("hasContract"); }),
            "438 Object doesn't support this property or method: hasContract (Lines.changes.csv has no column "
            "Old.Contract) (Lines.LinesManager)");
  EXPECT_EQ(ErrorOf([&] { old.Call("hasSite", 1); }), "450 Wrong number of arguments: hasSite (Lines.LinesManager)");
  EXPECT_EQ(ErrorOf([&] { row.Call("hasCustomer"); }),
            "438 Object doesn't support this property or method: hasCustomer (Lines.changes.csv has no column "
            "Customer) (Lines.LinesManager)");
}

TEST(NetList, RaisesABrokenRowAlsoOneThatIsLeftOut) {
  const struct {
    const char* row;
    const char* error;
  } cases[] = {
      {"2004-01-31,U,B,,", "column ChangedAt: \"2004-01-31\" is no time YYYY-MM-DDThh:mm:ssZ"},
      {"2004-02-30T00:00:00Z,U,B,,", "column ChangedAt: \"2004-02-30T00:00:00Z\" is no time YYYY-MM-DDThh:mm:ssZ"},
      {"2004-01-31T10:11:12,U,B,,", "column ChangedAt: \"2004-01-31T10:11:12\" is no time YYYY-MM-DDThh:mm:ssZ"},
      {",U,B,,", "column ChangedAt: \"\" is no time YYYY-MM-DDThh:mm:ssZ"},
      {"\\N,U,B,,", "column ChangedAt: \"\\N\" is no time YYYY-MM-DDThh:mm:ssZ"},
      {"1999-01-01T00:00:00Z,U,B,x,", "column Line: \"x\" is no int"},
      {"2004-01-31T10:11:12Z,U,OUTSIDE,x,", "column Line: \"x\" is no int"},
      {"1999-01-01T00:00:00Z,U,B,,x", "column Old.Line: \"x\" is no int"},
      {"1999-01-01T00:00:00Z,U,B,", "column Old.Line: the record ends before this column"},
      {"1999-01-01T00:00:00Z,\xC3(,B,,", "column ActionType: is no UTF-8 text"},
      {"1999-01-01T00:00:00Z,U,B,,\"1", "column 5: broken quote, nothing closes it"},
  };

  for (const auto& [row, error] : cases) {
    ChangedErpFiles erp;
    EXPECT_EQ(erp.ChangedRows("ChangedAt,ActionType,Contract:text:csco:key,Line:int:seqn,Old.Line\n"
                              "2004-01-31T10:11:12Z,U,A,1,\n" +
                                  Text(row) + "\n",
                              {.from = DateAt(2004, 1, 1), .ranges = {{"csco", "A", "C"}}}, {"Contract"}),
              "'A'\n13 Type mismatch: Lines.changes.csv, line 3, " + Text(error) + " (Lines.LinesManager)\n");
  }
}

TEST(NetList, RaisesABrokenRowFarDownWhateverThePeriodLeavesOut) {
  ChangedErpFiles erp;
  Text content = "ChangedAt,ActionType,Contract:text:csco:key,Line:int:seqn\n";
  for (int number = 1; number <= 70'000; ++number) {
    const char* day = number <= 3 ? "2004-01-31" : "1999-01-31";
    content += day + Text("T00:00:00Z,U,A,") + (number == 70'000 ? "abc" : "1") + "\n";
  }

  EXPECT_EQ(erp.ChangedRows(content, {.from = DateAt(2004, 1, 1)}, {"Contract"}),
            "'A'\n'A'\n'A'\n13 Type mismatch: Lines.changes.csv, line 70001, column Line: \"abc\" is no int "
            "(Lines.LinesManager)\n");
}

TEST(NetList, RaisesABrokenHeaderWhenItIsAskedFor) {
  const struct {
    const char* header;
    const char* error;
  } cases[] = {
      {"ActionType,A\n", "column ChangedAt: missing in the header"},
      {"ChangedAt,A\n", "column ActionType: missing in the header"},
      {"ChangedAt,ActionType,A,Old.B\n", "column 4: \"Old.B\" has no column B beside it"},
      {"", "column 1: the file has no header"},
  };

  for (const auto& [header, error] : cases) {
    ChangedErpFiles erp;
    erp.Changes(header);
    EXPECT_EQ(ErrorOf([&] { erp.NetList({}); }),
              "13 Type mismatch: Lines.changes.csv, line 1, " + Text(error) + " (Lines.LinesManager)");
  }
}

TEST(NetList, RaisesAChangesFileThatIsNoFile) {
  ChangedErpFiles erp;
  std::filesystem::create_directory(erp.directory.path() / "Lines.changes.csv");

  EXPECT_EQ(ErrorOf([&] { erp.NetList({}); }),
            "75 Path/File access error: Lines.changes.csv (Is a directory) (Lines.LinesManager)");
}

TEST(NetList, StaysOpenBesideASecondListingThatSetsAFieldOfItsRow) {
  ChangedErpFiles erp;
  erp.manager = erp.Lines("Contract:text:csco:key,ContractTerms:int:term:key,Line:int:seqn:key\nA,3,1\nA,4,1\nB,5,1\n");
  erp.Changes(
      "ChangedAt,ActionType,Contract:text:csco:key,ContractTerms:int:term:key,Line:int:seqn:key\n"
      "2004-01-31T10:11:12Z,U,A,,1\n2004-01-31T10:11:12Z,U,C,,1\n2004-01-31T10:11:12Z,U,B,,1\n");
  const Object changes = erp.NetList({.fields = {"csco", "seqn"}}).AsObject();

  Text rows;
  while (changes.Call("hasMoreElements").IsTrue()) {
    const Object row = changes.Call("nextElement").AsObject();
    const Value contract = row.Call("getContract");
    const Value line = row.Call("getLine");
    const Object terms =
        erp.manager.Call("List", contract, contract, std::int16_t{0}, std::int16_t{9999}, line, line).AsObject();
    while (terms.Call("hasMoreElements").IsTrue()) {
      const Object element = terms.Call("nextElement").AsObject();
      const Value term = element.Call("getContractTerms");
      row.Call("setContractTerms", term);
    }
    rows += FieldsOf(row, {"Contract", "ContractTerms"}) + "\n";
  }

  EXPECT_EQ(rows, "'A', 4\n'C', absent\n'B', 5\n");
}

TEST(NetList, TakesNamesInAnyCaseAndAnyTableCodeThatIsAText) {
  ChangedErpFiles erp;
  const Object criteria = erp.CriteriaFor({});
  const Text error = "13 Type mismatch: the ERP table code is no text (Lines.LinesManager)";

  EXPECT_EQ(ErrorOf([&] { erp.manager.Call("netlistLINES", "", criteria); }), "no error");
  EXPECT_EQ(ErrorOf([&] { erp.manager.Call("NetListLines", 310, criteria); }), error);
  EXPECT_EQ(ErrorOf([&] { erp.manager.Call("NetListLines", Null(), criteria); }), error);
  EXPECT_EQ(ErrorOf([&] { erp.manager.Call("NetListLines", criteria, criteria); }), error);
}

TEST(NetList, RaisesWhatAreNoCriteria) {
  ChangedErpFiles erp;
  const Text error =
      "13 Type mismatch: the criteria are no NetListSelectionCriteria.NetListSelectionCriteria (Lines.LinesManager)";

  EXPECT_EQ(ErrorOf([&] { erp.manager.Call("NetListLines", "t", Object()); }), error);
  EXPECT_EQ(ErrorOf([&] { erp.manager.Call("NetListLines", "t", "criteria"); }), error);
  EXPECT_EQ(ErrorOf([&] { erp.manager.Call("NetListLines", "t", erp.manager); }), error);
  EXPECT_EQ(ErrorOf([&] { erp.manager.Call("NetListLines", "t", erp.Part("NetListIn")); }), error);
}

TEST(NetList, RaisesCriteriaThatAreNotCompleteNamingWhatTheyLack) {
  ChangedErpFiles erp;
  const Object criteria = erp.Part("NetListSelectionCriteria");
  const Object input = erp.Part("NetListIn");
  const Object parameter = erp.Part("NetListParameter");
  const Object period = erp.Part("NetListPeriod");
  const auto lack = [&] { return ErrorOf([&] { erp.manager.Call("NetListLines", "t", criteria); }); };
  const auto lackOf = [](const Text& missing) {
    return "5 Invalid procedure call or argument: the criteria lack " + missing + " (Lines.LinesManager)";
  };

  EXPECT_EQ(lack(), lackOf("a period"));
  criteria.Call("setNetListPeriod", period);
  EXPECT_EQ(lack(), lackOf("the start of the period"));
  period.Call("setFrom", DateAt(2004, 1, 1));
  EXPECT_EQ(lack(), lackOf("the end of the period"));
  period.Call("setTo", Object());
  EXPECT_EQ(lack(), lackOf("the end of the period"));
  period.Call("setTo", DateAt(2004, 1, 2));
  EXPECT_EQ(lack(), lackOf("an input"));
  criteria.Call("setNetListIn", input);
  EXPECT_EQ(lack(), lackOf("an output"));
  criteria.Call("setNetListOut", erp.Part("NetListOut"));
  EXPECT_EQ(lack(), "no error");
  input.Call("addNetListParameter", parameter);
  EXPECT_EQ(lack(), lackOf("the field name of a parameter"));
  parameter.Call("setFieldName", "csco");
  EXPECT_EQ(lack(), lackOf("the lowest value of csco"));
  parameter.Call("setFrom", "");
  EXPECT_EQ(lack(), lackOf("the highest value of csco"));
  parameter.Call("setTo", "Z");
  EXPECT_EQ(lack(), "no error");
}

TEST(NetList, RaisesABoundThatDoesNotFitItsColumn) {
  ChangedErpFiles erp;
  erp.Changes("ChangedAt,ActionType,Line:int:seqn:key\n");

  EXPECT_EQ(ErrorOf([&] {
              erp.NetList({.ranges = {{"seqn", "", "99"}}});
            }),
            "13 Type mismatch: a bound of Line is no number (Lines.LinesManager)");
}

TEST(NetList, LetsTheErrorOfADateThrough) {
  ChangedErpFiles erp;

  EXPECT_EQ(ErrorOf([&] { erp.NetList({.from = erp.Part("NetListIn")}); }),
            "438 Object doesn't support this property or method: getYear (NetListSelectionCriteria.NetListIn)");
}

TEST(Criteria, RaiseWhatTheyDoNotHaveAndWhatTheyDoNotTake) {
  ChangedErpFiles erp;
  const auto errorOf = [&](const char* part, const char* operation, const Value& value) {
    return ErrorOf([&] { erp.Part(part).Call(operation, value); });
  };
  const Text mismatch = "13 Type mismatch: ";
  const Text prefix = "NetListSelectionCriteria.";

  EXPECT_EQ(errorOf("NetListPeriod", "setFrom", "2004-01-31"),
            mismatch + "setFrom takes a date object (NetListSelectionCriteria.NetListPeriod)");
  EXPECT_EQ(errorOf("NetListParameter", "SETFIELDNAME", 1),
            mismatch + "setFieldName takes a text (NetListSelectionCriteria.NetListParameter)");
  EXPECT_EQ(errorOf("NetListOut", "addFieldNameWithOld", Null()),
            mismatch + "addFieldNameWithOld takes a text (NetListSelectionCriteria.NetListOut)");
  EXPECT_EQ(errorOf("NetListIn", "addNetListParameter", erp.Part("NetListPeriod")),
            mismatch + "addNetListParameter takes " + prefix + "NetListParameter (" + prefix + "NetListIn)");
  EXPECT_EQ(errorOf("NetListSelectionCriteria", "setNetListPeriod", Object()),
            mismatch + "setNetListPeriod takes " + prefix + "NetListPeriod (" + prefix + "NetListSelectionCriteria)");
  EXPECT_EQ(errorOf("NetListSelectionCriteria", "setNetListIn", erp.Part("NetListOut")),
            mismatch + "setNetListIn takes " + prefix + "NetListIn (" + prefix + "NetListSelectionCriteria)");
  EXPECT_EQ(errorOf("NetListSelectionCriteria", "setNetListOut", "out"),
            mismatch + "setNetListOut takes " + prefix + "NetListOut (" + prefix + "NetListSelectionCriteria)");
  EXPECT_EQ(
      errorOf("NetListPeriod", "setFieldName", "ccfg"),
      "438 Object doesn't support this property or method: setFieldName (NetListSelectionCriteria.NetListPeriod)");
  EXPECT_EQ(ErrorOf([&] { erp.Part("NetListPeriod").Call("setFrom"); }),
            "450 Wrong number of arguments: setFrom (NetListSelectionCriteria.NetListPeriod)");
  EXPECT_EQ(ErrorOf([&] { erp.Part("NetListOut").Get("fields"); }),
            "438 Object doesn't support this property or method: fields (NetListSelectionCriteria.NetListOut)");
}

}  // namespace
}  // namespace zenqay
