// Contract: its row operation, the four rules of its change rows, and its two passes under the three generations.
#include "entities/entity_pass.h"

namespace zenqay {
namespace {

const TestedEntity kContracts = {.copy = &CopyFixture::CopyContract,
                                 .apply = CopyFixture::ApplyContractRow(),
                                 .TableName = "Contracts",
                                 .caption = "Contracts",
                                 .onlyChanged = "Contract - Only Changed"};

const ErpSide kContracts1 = {.generation = "1",
                             .managerClass = "Kv40QTMtssmaContracts.ContractsManager",
                             .name = "the ERP (generation 1)",
                             .keys = "Contract",
                             .list = "\"\", high(10)",
                             .listing = "NetListContracts",
                             .tableCode = "tssma220",
                             .ranges = {{"ccon", "\"\"", "high(10)"}},
                             .fields = "ccon old:desc old:ctst"};

const ErpSide kContracts3 = {.generation = "3",
                             .managerClass = "Kv50QTMtsctmServiceContracts.ServiceContractsManager",
                             .name = "the ERP (generation 3)",
                             .keys = "ServiceContract",
                             .list = "\"\", high(9)",
                             .listing = "NetListServiceContracts",
                             .tableCode = "tsctm300",
                             .ranges = {{"csco", "\"\"", "high(9)"}},
                             .fields = "csco old:desc old:scon"};

const ErpSide kContracts8 = {.generation = "8",
                             .managerClass = "Kv61QTMtsctmServiceContracts.ServiceContractsManager",
                             .name = "the ERP (generation 8)",
                             .keys = "ServiceContract",
                             .list = "\"\", high(9)",
                             .listing = "NetListServiceContracts",
                             .tableCode = "tsctm300",
                             .ranges = {{"csco", "\"\"", "high(9)"}},
                             .fields = "csco old:desc old:scon"};

const struct {
  Text generation;
  Text key;
} kKeys[] = {{"1", "Contract"}, {"3", "ServiceContract"}, {"8", "ServiceContract"}};

TEST(ApplyContractRow, AsksForEveryFieldAtEachUseUnderEveryGeneration) {
  for (const auto& [generation, key] : kKeys) {
    const Text getKey = "get" + key;
    ExpectRow(kContracts, generation,
              {{{key, "C1"}, {"Description", "Gold"}},
               {getKey, "hasDescription getDescription", getKey,
                "sql UPDATE Contracts SET CONTRACT = N'C1', CDESCRIPTION = N'Gold', upd_flag = 0 WHERE CONTRACT "
                "=N'C1' -> 0",
                "hasDescription", getKey, "hasDescription getDescription",
                "sql INSERT INTO Contracts (CONTRACT ,CDESCRIPTION ,upd_flag )VALUES (N'C1',N'Gold',0) -> 1"}});
    ExpectRow(kContracts, generation,
              {{{key, "C2"}},
               {getKey, "hasDescription", getKey,
                "sql UPDATE Contracts SET CONTRACT = N'C2', upd_flag = 0 WHERE CONTRACT =N'C2' -> 0", "hasDescription",
                getKey, "hasDescription", "sql INSERT INTO Contracts (CONTRACT ,upd_flag )VALUES (N'C2',0) -> 1"}});
  }
}

TEST(ApplyContractRow, CountsOneForEachRowThatItUpdatedOrInserted) {
  ExpectCounts(kContracts, "3", {{"ServiceContract", "C1"}});
  ExpectCounts(kContracts, "8", {{"ServiceContract", "C1"}});
}

TEST(ApplyContractRow, LetsNoNullIntoAStatement) {
  ExpectNullToFail(kContracts, "1", {{"Contract", "C1"}}, {"Contract", "Description"});
}

TEST(ApplyContractRow, EncodesEveryTextAndWritesEmptyOnesAsABlankOnOracle) {
  ExpectStatements(kContracts, "1",
                   {{{{"Contract", "C'1"}, {"Description", ""}},
                     "UPDATE Contracts SET CONTRACT = N'C''1', CDESCRIPTION = N' ', upd_flag = 0 WHERE CONTRACT "
                     "=N'C''1'",
                     "INSERT INTO Contracts (CONTRACT ,CDESCRIPTION ,upd_flag )VALUES (N'C''1',N' ',0)"}},
                   /*databasePlatform=*/2);
}

/// Applies one change and compares all that is said, and what it counts.
void ExpectChange(const Text& generation, const Text& action, const ListedRow& row, const Text& counters) {
  SCOPED_TRACE("generation " + generation + ", action " + action);
  CopyFixture copy(generation);
  const Object changed = Listed(copy, row);

  copy.ApplyContractChange(action, changed, "Contracts");

  EXPECT_EQ(copy.journal.Take(), TraceOf("row1", row.steps));
  EXPECT_EQ(copy.Counters(), counters);
}

const Text kStatus = "hasContractStatus getContractStatus";
const Text kOld1 = "hasContracts getContracts old.hasContractStatus getContracts old.getContractStatus";
const Text kOld3 =
    "hasServiceContracts getServiceContracts old.hasContractStatus getServiceContracts old.getContractStatus";

TEST(ApplyContractChange, DeletesAContractThatLeavesTheStatus) {
  ExpectChange("1", "U",
               {{{"Contract", "C1"}, {"ContractStatus", 3}},
                {kStatus, "getContract", "sql DELETE FROM Contracts WHERE CONTRACT=N'C1'", kOld1, kStatus,
                 "hasDescription", kStatus},
                "Contracts",
                {{"ContractStatus", 2}}},
               "ucount 0, icount 0, dcount 1");
}

TEST(ApplyContractChange, UpdatesBehindTheDeletionWhenAContractThatLeavesHasADescription) {
  for (const char* generation : {"3", "8"}) {
    ExpectChange(generation, "U",
                 {{{"ServiceContract", "C1"}, {"Cluster", "K5"}, {"ContractStatus", 2}, {"Description", "Gold"}},
                  {kStatus, "getServiceContract", "sql DELETE FROM Contracts WHERE CONTRACT=N'C1'",
                   "hasServiceContracts hasDescription getServiceContract hasDescription getDescription "
                   "getServiceContract",
                   "sql UPDATE Contracts SET CONTRACT = N'C1', CDESCRIPTION = N'Gold', upd_flag = 0 WHERE CONTRACT "
                   "=N'C1' -> 1",
                   kStatus}},
                 "ucount 1, icount 0, dcount 1");
  }
}

TEST(ApplyContractChange, InsertsAContractThatEntersTheStatusAndUpdatesItsDescription) {
  ExpectChange("1", "U",
               {{{"Contract", "C1"}, {"ContractStatus", 2}, {"Description", "Gold"}},
                {kStatus, kOld1, kStatus, "getContractStatus hasDescription getContract hasDescription getDescription",
                 "sql INSERT INTO Contracts (CONTRACT ,CDESCRIPTION ,upd_flag )VALUES (N'C1',N'Gold',0) -> 1",
                 "hasDescription getContract hasDescription getDescription getContract",
                 "sql UPDATE Contracts SET CONTRACT = N'C1', CDESCRIPTION = N'Gold', upd_flag = 0 WHERE CONTRACT "
                 "=N'C1' -> 1",
                 kStatus},
                "Contracts",
                {{"ContractStatus", 1}}},
               "ucount 1, icount 1, dcount 0");
}

TEST(ApplyContractChange, DoesNothingWithAContractThatStaysInTheStatusWithoutADescription) {
  ExpectChange("3", "U",
               {{{"ServiceContract", "C1"}, {"ContractStatus", 10}},
                {kStatus, kOld3, kStatus, "hasDescription", kStatus},
                "ServiceContracts",
                {{"ContractStatus", 10}}},
               "ucount 0, icount 0, dcount 0");
}

TEST(ApplyContractChange, CountsAnUpdateThatFoundNothingAndInsertsNothing) {
  CopyFixture copy("1");
  copy.database.AffectNext({0});
  const Object row = copy.RowWith({{"Contract", "C1"}, {"ContractStatus", 2}, {"Description", "Gold"}});

  copy.ApplyContractChange("U", row, "Contracts");

  EXPECT_EQ(copy.journal.Take(),
            TraceOf("row1", {kStatus,
                             "hasContracts hasDescription getContract hasDescription getDescription "
                             "getContract",
                             "sql UPDATE Contracts SET CONTRACT = N'C1', CDESCRIPTION = N'Gold', upd_flag = 0 WHERE "
                             "CONTRACT =N'C1' -> 0",
                             kStatus}));
  EXPECT_EQ(copy.Counters(), "ucount 1, icount 0, dcount 0");
}

TEST(ApplyContractChange, InsertsANewContractOfGeneration8ByItsClusterIntoItsOwnColumn) {
  ExpectChange("8", "I",
               {{{"ServiceContract", "C1"}, {"Cluster", "K5"}, {"ContractStatus", 10}, {"Description", "Gold"}},
                {"hasServiceContracts hasDescription", kStatus,
                 "getContractStatus hasDescription getCluster hasDescription getDescription",
                 "sql INSERT INTO Contracts (CONTRACTS ,CDESCRIPTION ,upd_flag )VALUES (N'K5',N'Gold',0) -> 1"}},
               "ucount 0, icount 1, dcount 0");
}

TEST(ApplyContractChange, DoesNotCopyANewContractInAnotherStatus) {
  for (const Value& status : {Value(3), Value(10), Value(0), Value("1"), Value(), Value(Null())}) {
    SCOPED_TRACE(Shown(status));
    ExpectChange("1", "I",
                 {{{"Contract", "C1"}, {"ContractStatus", status}, {"Description", "Gold"}},
                  {"hasContracts hasDescription", kStatus}},
                 "ucount 0, icount 0, dcount 0");
  }
}

TEST(ApplyContractChange, DropsAnyOtherActionBehindTheSameQuestions) {
  for (const char* action : {"", "X", "u", "i", "d", "UI"}) {
    ExpectChange("3", action,
                 {{{"ServiceContract", "C1"}, {"ContractStatus", 10}, {"Description", "Gold"}},
                  {kOld3, kStatus, "hasDescription", kStatus},
                  "ServiceContracts",
                  {{"ContractStatus", 2}}},
                 "ucount 0, icount 0, dcount 0");
  }
}

TEST(ApplyContractChange, CountsOneForAnInsertWhateverItReports) {
  for (const std::int64_t reported : {0, 1, 2}) {
    SCOPED_TRACE(reported);
    CopyFixture copy("3");
    copy.database.AffectNext({reported});

    copy.ApplyContractChange("I", copy.RowWith({{"ServiceContract", "C1"}, {"ContractStatus", 10}}), "Contracts");

    EXPECT_EQ(copy.JournalWithout({"row"}),
              "sql INSERT INTO Contracts (CONTRACT ,upd_flag )VALUES (N'C1',0) -> " + std::to_string(reported) + "\n");
    EXPECT_EQ(copy.Counters(), "ucount 0, icount 1, dcount 0");
  }
}

/// The insert asks for the status by itself, and takes the answer as it comes.
TEST(ApplyContractChange, InsertsNothingWhenTheStatusIsAnotherByThen) {
  const struct {
    Text generation;
    int copied;
  } cases[] = {{"1", 2}, {"3", 10}, {"8", 10}};
  for (const auto& [generation, copied] : cases) {
    for (const Value& byThen : {Value(copied + 1), Value(copied == 2 ? 10 : 2), Value(Null())}) {
      SCOPED_TRACE("generation " + generation + ", by then " + Shown(byThen));
      CopyFixture copy(generation);
      const auto row = copy.components.Make("row");
      row->Answers("hasContractStatus", true).AnswersInTurn("getContractStatus", {copied, byThen});
      row->Answers("hasContracts", false).Answers("hasServiceContracts", false).Answers("hasDescription", false);

      copy.ApplyContractChange("I", Object(row), "Contracts");

      EXPECT_EQ(copy.journal.Take(), TraceOf("row", {(generation == "1" ? "hasContracts" : "hasServiceContracts"),
                                                     "hasDescription", kStatus, "getContractStatus"}));
      EXPECT_EQ(copy.Counters(), "ucount 0, icount 0, dcount 0");
    }
  }
}

TEST(ApplyContractChange, FailsWithAStatusThatIsNoNumber) {
  CopyFixture copy("3");
  const Object row = copy.RowWith({{"ServiceContract", "C1"}, {"ContractStatus", "active"}});

  EXPECT_EQ(Raised([&] { copy.ApplyContractChange("U", row, "Contracts"); }),
            "13 ZenqayDBSync: Type mismatch: getContractStatus");

  EXPECT_EQ(copy.journal.Take(), TraceOf("row1", {kStatus}));
}

TEST(ApplyContractChange, FailsWithOldValuesThatAreNotThere) {
  for (const Value& old : {Value(), Value(Null()), Value(Object())}) {
    SCOPED_TRACE(Shown(old));
    CopyFixture copy("1");
    const Object row = copy.RowWith({{"Contract", "C1"}, {"Contracts", old}});

    EXPECT_EQ(Raised([&] { copy.ApplyContractChange("I", row, "Contracts"); }),
              "91 ZenqayDBSync: Object variable not set");

    EXPECT_EQ(copy.journal.Take(), TraceOf("row1", {"hasContracts getContracts"}));
  }
}

/// What a row can say of a status, and what that is to the rules. A null meets no comparison; the value is asked for
/// also where the row says that it has none.
struct Status {
  Value has;
  Value value;
  bool isPresent;
  enum Relation { Copied, Another, Unknown } relation;
};

std::vector<Status> EveryStatus(std::int16_t copied) {
  std::vector<Status> every;
  for (const auto& [has, isPresent] : {std::pair(Value(true), true), {Value(false), false}, {Value(Null()), false}}) {
    every.push_back({has, copied, isPresent, Status::Copied});
    every.push_back({has, std::to_string(copied), isPresent, Status::Copied});
    every.push_back({has, copied + 1, isPresent, Status::Another});
    every.push_back({has, Value(), isPresent, Status::Another});  // counts as 0
    every.push_back({has, Null(), isPresent, Status::Unknown});
  }
  return every;
}

/// One row and what becomes of it. The names are those of the generation.
struct ContractChange {
  Text generation;
  Text action;
  Status now;
  const Status* before;  // null without old values
  bool hasDescription;

  Text KeyGetter() const { return generation == "1" ? "getContract" : "getServiceContract"; }
  Text OldValues() const { return generation == "1" ? "Contracts" : "ServiceContracts"; }

  bool Leaves() const { return action == "U" && now.isPresent && now.relation == Status::Another; }
  bool Enters() const {
    return action == "U" && before != nullptr && before->isPresent && before->relation == Status::Another &&
           now.isPresent && now.relation == Status::Copied;
  }
  bool ChangesItsText() const { return action == "U" && hasDescription; }
  bool IsNew() const { return action == "I" && now.isPresent && now.relation == Status::Copied; }

  Text DescriptionAsked() const { return hasDescription ? " hasDescription getDescription" : " hasDescription"; }

  Steps Update() const {
    return {KeyGetter() + DescriptionAsked() + " " + KeyGetter(),
            "sql UPDATE Contracts SET CONTRACT = N'C1', CDESCRIPTION = N'Gold', upd_flag = 0 WHERE CONTRACT =N'C1' -> "
            "1"};
  }

  Steps Insert() const {
    const bool byCluster = generation == "8";
    return {"getContractStatus hasDescription " + (byCluster ? "getCluster" : KeyGetter()) + DescriptionAsked(),
            Text("sql INSERT INTO Contracts (") + (byCluster ? "CONTRACTS " : "CONTRACT ") +
                (hasDescription ? ",CDESCRIPTION " : "") + ",upd_flag )VALUES (" + (byCluster ? "N'K5'" : "N'C1'") +
                (hasDescription ? ",N'Gold'" : "") + ",0) -> 1"};
  }

  Text Journal() const {
    Text journal;
    const auto said = [&journal](const Steps& steps) { journal += TraceOf("row", steps); };
    if (action == "U") said({kStatus});
    if (Leaves()) said({KeyGetter(), "sql DELETE FROM Contracts WHERE CONTRACT=N'C1'"});
    said({"has" + OldValues()});
    if (before != nullptr) {
      said({"get" + OldValues() + " old.hasContractStatus get" + OldValues() + " old.getContractStatus", kStatus});
      if (Enters()) said(Insert());
    }
    said({"hasDescription"});
    if (ChangesItsText()) said(Update());
    said({kStatus});
    if (IsNew()) said(Insert());
    return journal;
  }

  Text Counters() const {
    return "ucount " + std::to_string(ChangesItsText()) + ", icount " + std::to_string(Enters() + IsNew()) +
           ", dcount " + std::to_string(Leaves());
  }

  Text Told() const {
    Text told = "generation " + generation + ", action '" + action + "', status " + Shown(now.has) + " " +
                Shown(now.value) + (hasDescription ? ", described" : "");
    if (before != nullptr) told += ", before " + Shown(before->has) + " " + Shown(before->value);
    return told;
  }
};

void ExpectChange(CopyFixture& copy, const ContractChange& is) {
  copy.SetCounters(0, 0, 0);
  const auto row = copy.components.Make("row");
  row->Answers(is.KeyGetter(), "C1").Answers("getCluster", "K5");
  row->Answers("hasContractStatus", is.now.has).Answers("getContractStatus", is.now.value);
  row->Answers("hasDescription", is.hasDescription).Answers("getDescription", "Gold");
  row->Answers("has" + is.OldValues(), is.before != nullptr);
  if (is.before != nullptr) {
    const auto old = copy.components.Make("old");
    old->Answers("hasContractStatus", is.before->has).Answers("getContractStatus", is.before->value);
    row->Answers("get" + is.OldValues(), Object(old));
  }

  copy.ApplyContractChange(is.action, Object(row), "Contracts");

  EXPECT_EQ(copy.journal.Take(), is.Journal()) << is.Told();
  EXPECT_EQ(copy.Counters(), is.Counters()) << is.Told();
}

TEST(ApplyContractChange, FollowsItsRulesInEveryCombination) {
  for (const char* generation : {"1", "3", "8"}) {
    CopyFixture copy(generation);
    const std::vector<Status> statuses = EveryStatus(Text(generation) == "1" ? 2 : 10);
    for (const char* action : {"I", "U", "", "X"}) {
      for (const Status& now : statuses) {
        for (const bool hasDescription : {true, false}) {
          ExpectChange(copy, {generation, action, now, nullptr, hasDescription});
          for (const Status& before : statuses) ExpectChange(copy, {generation, action, now, &before, hasDescription});
        }
      }
    }
  }
}

/// A contract that is in the status, one that is not, and one of which nothing is known: no one asks.
Pass FullCopyOf(const ErpSide& erp) {
  const Text key = erp.generation == "1" ? "Contract" : "ServiceContract";
  const Text getKey = "get" + key;
  return FullPass(
      kContracts, erp,
      {{{{key, "C1"}, {"Cluster", "K5"}, {"Description", "Gold"}, {"ContractStatus", 2}},
        {getKey, "hasDescription getDescription", getKey,
         "sql UPDATE Contracts SET CONTRACT = N'C1', CDESCRIPTION = N'Gold', upd_flag = 0 WHERE CONTRACT =N'C1' -> 1"}},
       {{{key, "C2"}, {"Cluster", "K5"}, {"ContractStatus", 3}},
        {getKey, "hasDescription", getKey,
         "sql UPDATE Contracts SET CONTRACT = N'C2', upd_flag = 0 WHERE CONTRACT =N'C2' -> 0", "hasDescription", getKey,
         "hasDescription", "sql INSERT INTO Contracts (CONTRACT ,upd_flag )VALUES (N'C2',0) -> 1"}},
       {{{key, "C3"}},
        {getKey, "hasDescription", getKey,
         "sql UPDATE Contracts SET CONTRACT = N'C3', upd_flag = 0 WHERE CONTRACT =N'C3' -> 1"}}},
      {.icount = 3});
}

const Pass kOnlyChanged1 = ChangedPass(
    kContracts, kContracts1,
    {{{{"ActionType", " D "}, {"Contract", "C'1"}, {"ContractStatus", 2}},
      {"getContract", "sql DELETE FROM Contracts WHERE CONTRACT=N'C''1'"}},
     {{{"ActionType", " U "}, {"Contract", "C2"}, {"ContractStatus", 3}, {"Description", "Gold"}},
      {kStatus, "getContract", "sql DELETE FROM Contracts WHERE CONTRACT=N'C2'",
       "hasContracts hasDescription getContract hasDescription getDescription getContract",
       "sql UPDATE Contracts SET CONTRACT = N'C2', CDESCRIPTION = N'Gold', upd_flag = 0 WHERE CONTRACT =N'C2' -> 0",
       kStatus}},
     {{{"ActionType", "I"}, {"Contract", "C3"}, {"ContractStatus", 2}},
      {"hasContracts hasDescription", kStatus, "getContractStatus hasDescription getContract hasDescription",
       "sql INSERT INTO Contracts (CONTRACT ,upd_flag )VALUES (N'C3',0) -> 1"}}},
    {.ucount = 1, .icount = 1, .dcount = 2});

const Pass kOnlyChanged3 =
    ChangedPass(kContracts, kContracts3,
                {{{{"ActionType", "D"}, {"ServiceContract", "C1"}},
                  {"getServiceContract", "sql DELETE FROM Contracts WHERE CONTRACT=N'C1'"}},
                 {{{"ActionType", "U"}, {"ServiceContract", "C2"}, {"ContractStatus", 10}},
                  {kStatus, kOld3, kStatus, "getContractStatus hasDescription getServiceContract hasDescription",
                   "sql INSERT INTO Contracts (CONTRACT ,upd_flag )VALUES (N'C2',0) -> 1", "hasDescription", kStatus},
                  "ServiceContracts",
                  {{"ContractStatus", 2}}}},
                {.icount = 1, .dcount = 1});

const Pass kOnlyChanged8 = ChangedPass(
    kContracts, kContracts8,
    {{{{"ActionType", "D"}, {"ServiceContract", "C1"}, {"Cluster", "K4"}},
      {"getServiceContract", "sql DELETE FROM Contracts WHERE CONTRACT=N'C1'"}},
     {{{"ActionType", "I"}, {"ServiceContract", "C2"}, {"Cluster", "K5"}, {"ContractStatus", 10}},
      {"hasServiceContracts hasDescription", kStatus, "getContractStatus hasDescription getCluster hasDescription",
       "sql INSERT INTO Contracts (CONTRACTS ,upd_flag )VALUES (N'K5',0) -> 1"}}},
    {.icount = 1, .dcount = 1});

TEST(CopyContract, CopiesEveryContractInFullWhateverItsStatus) {
  for (const ErpSide& erp : {kContracts1, kContracts3, kContracts8}) ExpectPass(FullCopyOf(erp));
}

TEST(CopyContract, FollowsTheChangesUnderEachGeneration) {
  for (const Pass& pass : {kOnlyChanged1, kOnlyChanged3, kOnlyChanged8}) ExpectPass(pass);
}

TEST(CopyContract, WritesTheLiteralsOfOracle) {
  Pass pass =
      ChangedPass(kContracts, kContracts8,
                  {{{{"ActionType", "D"}, {"ServiceContract", ""}},
                    {"getServiceContract", "sql DELETE FROM Contracts WHERE CONTRACT=N' '"}},
                   {{{"ActionType", "I"}, {"Cluster", ""}, {"ContractStatus", 10}, {"Description", ""}},
                    {"hasServiceContracts hasDescription", kStatus,
                     "getContractStatus hasDescription getCluster hasDescription getDescription",
                     "sql INSERT INTO Contracts (CONTRACTS ,CDESCRIPTION ,upd_flag )VALUES (N' ',N' ',0) -> 1"}}},
                  {.icount = 1, .dcount = 1});
  pass.databasePlatform = 2;
  ExpectPass(pass);
}

TEST(CopyContract, FailsWhereTheTableDoesNotHaveTheColumnOfGeneration8) {
  CopyFixture copy("8");
  Arrange(copy, kOnlyChanged8);
  copy.database.FailOn("(CONTRACTS ", RuntimeError(-2147217900, "SQL Server", "Invalid column name 'CONTRACTS'."),
                       {{207, "SQL Server", "Invalid column name 'CONTRACTS'."}});

  const Text raised = Raised([&] { copy.CopyContract("Contracts", 2); });

  EXPECT_EQ(raised,
            "-2147217800 Data copy: Contract - Only Changed: Contracts could not be copied from the ERP (generation "
            "8).");
  EXPECT_EQ(copy.journal.Take(), UpTo("sql INSERT INTO Contracts", TraceOf(kOnlyChanged8)));
  EXPECT_EQ(copy.Counters(), "ucount 0, icount 0, dcount 1");
  EXPECT_EQ(copy.RunLog(),
            "\"Date-Time :1/31/2004 : 10:11:12 AM\"\r\n"
            "\"SQL Server\",207,\"Invalid column name 'CONTRACTS'.\"\r\n"
            "\"SQL Server\",\"Invalid column name 'CONTRACTS'.\"\r\n");
}

TEST(CopyContract, ClosesTheManagerAndNamesTheTableAtWhicheverStepAFullCopyFails) {
  for (const ErpSide& erp : {kContracts1, kContracts3, kContracts8}) ExpectFailureAtEachStep(FullCopyOf(erp));
}

TEST(CopyContract, NamesThePassAtWhicheverStepAnOnlyChangedPassFails) {
  for (const Pass& pass : {kOnlyChanged1, kOnlyChanged3, kOnlyChanged8}) ExpectFailureAtEachStep(pass);
}

// The ERP's label is taken behind the creation of the manager.
TEST(CopyContract, NamesNoErpWhereTheComponentIsMissing) {
  for (const ErpSide& erp : {kContracts1, kContracts3, kContracts8}) {
    for (const Pass& pass : BothPasses(kContracts, erp)) ExpectMissingComponent(pass);
  }
}

TEST(CopyContract, CreatesNoManagerUnderAnUnknownGeneration) {
  for (const Pass& pass : BothPasses(kContracts, WithoutManager("2", kContracts1))) ExpectNoManager(pass);
}

TEST(CopyContract, DoesNothingUnderAnotherSyncMethod) {
  ExpectNothingUnderOtherSyncMethods(kContracts, kContracts1);
}

}  // namespace
}  // namespace zenqay
