// Contract: its row operation, the four rules of its change rows, and its two passes under the three generations.
#include <gtest/gtest.h>

#include "doubles/copy_fixture.h"
#include "doubles/outcome.h"
#include "entities/entity_pass.h"

namespace zenqay {
namespace {

constexpr const char* kContracts1 = "Kv40QTMtssmaContracts.ContractsManager";
constexpr const char* kServiceContracts3 = "Kv50QTMtsctmServiceContracts.ServiceContractsManager";
constexpr const char* kServiceContracts8 = "Kv61QTMtsctmServiceContracts.ServiceContractsManager";

const RuntimeError kFailure(500, "adapter", "no connection");

/// The old values of a contract, a row named `old`.
Object OldStatus(CopyFixture& copy, Value status) {
  const auto old = copy.components.Make("old");
  old->Answers("hasContractStatus", true).Answers("getContractStatus", std::move(status));
  return Object(old);
}

TEST(ApplyContractRow, WritesTheDescriptionThatTheRowHasUnderEveryGeneration) {
  const struct {
    const char* generation;
    const char* key;
  } generations[] = {{"1", "Contract"}, {"3", "ServiceContract"}, {"8", "ServiceContract"}};
  for (const auto& [generation, key] : generations) {
    SCOPED_TRACE(generation);
    CopyFixture copy(generation);
    copy.database.AffectNext({0, 1, 0});

    copy.Apply(CopyFixture::ApplyContractRow(), {{key, "C1"}, {"Description", "Gold"}}, "CONTRACTS");
    copy.Apply(CopyFixture::ApplyContractRow(), {{key, "C2"}}, "CONTRACTS");

    EXPECT_EQ(copy.JournalWithout({"row"}),
              "sql UPDATE CONTRACTS SET CONTRACT = N'C1', CDESCRIPTION = N'Gold', upd_flag = 0 WHERE CONTRACT =N'C1' "
              "-> 0\n"
              "sql INSERT INTO CONTRACTS (CONTRACT ,CDESCRIPTION ,upd_flag )VALUES (N'C1',N'Gold',0) -> 1\n"
              "sql UPDATE CONTRACTS SET CONTRACT = N'C2', upd_flag = 0 WHERE CONTRACT =N'C2' -> 0\n"
              "sql INSERT INTO CONTRACTS (CONTRACT ,upd_flag )VALUES (N'C2',0) -> 1\n");
    EXPECT_EQ(copy.Counters(), "ucount 0, icount 2, dcount 0");
  }
}

TEST(ApplyContractRow, AsksForEveryFieldAtEachUse) {
  CopyFixture copy("1");
  copy.database.AffectNext({0});

  copy.Apply(CopyFixture::ApplyContractRow(), {{"Contract", "C1"}, {"Description", "Gold"}}, "CONTRACTS");

  EXPECT_EQ(copy.journal.Take(),
            "row1.getContract()\n"
            "row1.hasDescription()\n"
            "row1.getDescription()\n"
            "row1.getContract()\n"
            "sql UPDATE CONTRACTS SET CONTRACT = N'C1', CDESCRIPTION = N'Gold', upd_flag = 0 WHERE CONTRACT =N'C1' -> "
            "0\n"
            "row1.hasDescription()\n"
            "row1.getContract()\n"
            "row1.hasDescription()\n"
            "row1.getDescription()\n"
            "sql INSERT INTO CONTRACTS (CONTRACT ,CDESCRIPTION ,upd_flag )VALUES (N'C1',N'Gold',0) -> 1\n");
}

TEST(ApplyContractRow, AsksAServiceContractForEveryFieldAtEachUse) {
  for (const char* generation : {"3", "8"}) {
    SCOPED_TRACE(generation);
    CopyFixture copy(generation);
    copy.database.AffectNext({0});

    copy.Apply(CopyFixture::ApplyContractRow(), {{"ServiceContract", "C1"}, {"Description", "Gold"}}, "CONTRACTS");

    EXPECT_EQ(
        copy.journal.Take(),
        "row1.getServiceContract()\n"
        "row1.hasDescription()\n"
        "row1.getDescription()\n"
        "row1.getServiceContract()\n"
        "sql UPDATE CONTRACTS SET CONTRACT = N'C1', CDESCRIPTION = N'Gold', upd_flag = 0 WHERE CONTRACT =N'C1' -> 0\n"
        "row1.hasDescription()\n"
        "row1.getServiceContract()\n"
        "row1.hasDescription()\n"
        "row1.getDescription()\n"
        "sql INSERT INTO CONTRACTS (CONTRACT ,CDESCRIPTION ,upd_flag )VALUES (N'C1',N'Gold',0) -> 1\n");
  }
}

TEST(ApplyContractRow, InsertsNothingWhenTheUpdateFoundTheRow) {
  for (const std::int64_t touched : {1, 3}) {
    SCOPED_TRACE(touched);
    CopyFixture copy("3");
    copy.database.AffectNext({touched});

    copy.Apply(CopyFixture::ApplyContractRow(), {{"ServiceContract", "C1"}}, "CONTRACTS");

    EXPECT_EQ(copy.JournalWithout({"row"}),
              "sql UPDATE CONTRACTS SET CONTRACT = N'C1', upd_flag = 0 WHERE CONTRACT =N'C1' -> " +
                  std::to_string(touched) + "\n");
    EXPECT_EQ(copy.Counters(), "ucount 1, icount 0, dcount 0");
  }
}

TEST(ApplyContractRow, CountsAnInsertOnlyWhenItReportsExactlyOneRow) {
  const struct {
    std::int64_t reported;
    const char* counters;
  } cases[] = {
      {0, "ucount 0, icount 0, dcount 0"},
      {1, "ucount 0, icount 1, dcount 0"},
      {2, "ucount 0, icount 0, dcount 0"},
  };
  for (const auto& [reported, counters] : cases) {
    SCOPED_TRACE(reported);
    CopyFixture copy("8");
    copy.database.AffectNext({0, reported});

    copy.Apply(CopyFixture::ApplyContractRow(), {{"ServiceContract", "C1"}}, "CONTRACTS");

    EXPECT_EQ(copy.Counters(), counters);
  }
}

TEST(ApplyContractRow, LetsNoNullIntoAStatement) {
  for (const RowFields& fields : {RowFields{{"Contract", Null()}, {"Description", "Gold"}},
                                  RowFields{{"Contract", "C1"}, {"Description", Null()}}}) {
    CopyFixture copy("1");

    const Text raised = Raised([&] { copy.Apply(CopyFixture::ApplyContractRow(), fields, "CONTRACTS"); });

    EXPECT_EQ(raised, "94 ZenqayDBSync: Invalid use of Null");
    EXPECT_EQ(copy.JournalWithout({"row"}), "");
  }
}

TEST(ApplyContractChange, DeletesAContractThatLeavesTheStatus) {
  CopyFixture copy("1");
  const Object row = copy.RowWith({{"Contract", "C1"}, {"ContractStatus", 3}, {"Contracts", OldStatus(copy, 2)}});

  copy.ApplyContractChange("U", row, "CONTRACTS");

  EXPECT_EQ(copy.journal.Take(),
            "row1.hasContractStatus()\n"
            "row1.getContractStatus()\n"
            "row1.getContract()\n"
            "sql DELETE FROM CONTRACTS WHERE CONTRACT=N'C1'\n"
            "row1.hasContracts()\n"
            "row1.getContracts()\n"
            "old.hasContractStatus()\n"
            "row1.getContracts()\n"
            "old.getContractStatus()\n"
            "row1.hasContractStatus()\n"
            "row1.getContractStatus()\n"
            "row1.hasDescription()\n"
            "row1.hasContractStatus()\n"
            "row1.getContractStatus()\n");
  EXPECT_EQ(copy.Counters(), "ucount 0, icount 0, dcount 1");
}

TEST(ApplyContractChange, UpdatesBehindTheDeletionWhenAContractThatLeavesHasADescription) {
  CopyFixture copy("3");
  copy.database.AffectNext({0});
  const Object row = copy.RowWith({{"ServiceContract", "C1"}, {"ContractStatus", 2}, {"Description", "Gold"}});

  copy.ApplyContractChange("U", row, "CONTRACTS");

  EXPECT_EQ(copy.journal.Take(),
            "row1.hasContractStatus()\n"
            "row1.getContractStatus()\n"
            "row1.getServiceContract()\n"
            "sql DELETE FROM CONTRACTS WHERE CONTRACT=N'C1'\n"
            "row1.hasServiceContracts()\n"
            "row1.hasDescription()\n"
            "row1.getServiceContract()\n"
            "row1.hasDescription()\n"
            "row1.getDescription()\n"
            "row1.getServiceContract()\n"
            "sql UPDATE CONTRACTS SET CONTRACT = N'C1', CDESCRIPTION = N'Gold', upd_flag = 0 WHERE CONTRACT =N'C1' -> "
            "0\n"
            "row1.hasContractStatus()\n"
            "row1.getContractStatus()\n");
  EXPECT_EQ(copy.Counters(), "ucount 1, icount 0, dcount 1");
}

TEST(ApplyContractChange, InsertsAContractThatEntersTheStatusAndUpdatesItsDescription) {
  CopyFixture copy("1");
  const Object row = copy.RowWith(
      {{"Contract", "C1"}, {"ContractStatus", 2}, {"Description", "Gold"}, {"Contracts", OldStatus(copy, 1)}});

  copy.ApplyContractChange("U", row, "CONTRACTS");

  EXPECT_EQ(copy.journal.Take(),
            "row1.hasContractStatus()\n"
            "row1.getContractStatus()\n"
            "row1.hasContracts()\n"
            "row1.getContracts()\n"
            "old.hasContractStatus()\n"
            "row1.getContracts()\n"
            "old.getContractStatus()\n"
            "row1.hasContractStatus()\n"
            "row1.getContractStatus()\n"
            "row1.getContractStatus()\n"
            "row1.hasDescription()\n"
            "row1.getContract()\n"
            "row1.hasDescription()\n"
            "row1.getDescription()\n"
            "sql INSERT INTO CONTRACTS (CONTRACT ,CDESCRIPTION ,upd_flag )VALUES (N'C1',N'Gold',0) -> 1\n"
            "row1.hasDescription()\n"
            "row1.getContract()\n"
            "row1.hasDescription()\n"
            "row1.getDescription()\n"
            "row1.getContract()\n"
            "sql UPDATE CONTRACTS SET CONTRACT = N'C1', CDESCRIPTION = N'Gold', upd_flag = 0 WHERE CONTRACT =N'C1' -> "
            "1\n"
            "row1.hasContractStatus()\n"
            "row1.getContractStatus()\n");
  EXPECT_EQ(copy.Counters(), "ucount 1, icount 1, dcount 0");
}

TEST(ApplyContractChange, InsertsAServiceContractThatEntersTheStatus) {
  CopyFixture copy("3");
  const Object row =
      copy.RowWith({{"ServiceContract", "C1"}, {"ContractStatus", 10}, {"ServiceContracts", OldStatus(copy, 2)}});

  copy.ApplyContractChange("U", row, "CONTRACTS");

  EXPECT_EQ(copy.journal.Take(),
            "row1.hasContractStatus()\n"
            "row1.getContractStatus()\n"
            "row1.hasServiceContracts()\n"
            "row1.getServiceContracts()\n"
            "old.hasContractStatus()\n"
            "row1.getServiceContracts()\n"
            "old.getContractStatus()\n"
            "row1.hasContractStatus()\n"
            "row1.getContractStatus()\n"
            "row1.getContractStatus()\n"
            "row1.hasDescription()\n"
            "row1.getServiceContract()\n"
            "row1.hasDescription()\n"
            "sql INSERT INTO CONTRACTS (CONTRACT ,upd_flag )VALUES (N'C1',0) -> 1\n"
            "row1.hasDescription()\n"
            "row1.hasContractStatus()\n"
            "row1.getContractStatus()\n");
  EXPECT_EQ(copy.Counters(), "ucount 0, icount 1, dcount 0");
}

TEST(ApplyContractChange, DoesNothingWithAContractThatStaysInTheStatusWithoutADescription) {
  CopyFixture copy("3");
  const Object row =
      copy.RowWith({{"ServiceContract", "C1"}, {"ContractStatus", 10}, {"ServiceContracts", OldStatus(copy, 10)}});

  copy.ApplyContractChange("U", row, "CONTRACTS");

  EXPECT_EQ(copy.journal.Take(),
            "row1.hasContractStatus()\n"
            "row1.getContractStatus()\n"
            "row1.hasServiceContracts()\n"
            "row1.getServiceContracts()\n"
            "old.hasContractStatus()\n"
            "row1.getServiceContracts()\n"
            "old.getContractStatus()\n"
            "row1.hasContractStatus()\n"
            "row1.getContractStatus()\n"
            "row1.hasDescription()\n"
            "row1.hasContractStatus()\n"
            "row1.getContractStatus()\n");
  EXPECT_EQ(copy.Counters(), "ucount 0, icount 0, dcount 0");
}

TEST(ApplyContractChange, CountsAnUpdateThatFoundNothingAndInsertsNothing) {
  CopyFixture copy("1");
  copy.database.AffectNext({0});
  const Object row = copy.RowWith({{"Contract", "C1"}, {"ContractStatus", 2}, {"Description", "Gold"}});

  copy.ApplyContractChange("U", row, "CONTRACTS");

  EXPECT_EQ(copy.journal.Take(),
            "row1.hasContractStatus()\n"
            "row1.getContractStatus()\n"
            "row1.hasContracts()\n"
            "row1.hasDescription()\n"
            "row1.getContract()\n"
            "row1.hasDescription()\n"
            "row1.getDescription()\n"
            "row1.getContract()\n"
            "sql UPDATE CONTRACTS SET CONTRACT = N'C1', CDESCRIPTION = N'Gold', upd_flag = 0 WHERE CONTRACT =N'C1' -> "
            "0\n"
            "row1.hasContractStatus()\n"
            "row1.getContractStatus()\n");
  EXPECT_EQ(copy.Counters(), "ucount 1, icount 0, dcount 0");
}

TEST(ApplyContractChange, AsksForTheStatusAlsoOfARowThatSaysItHasNone) {
  CopyFixture copy("1");
  const auto old = copy.components.Make("old");
  old->Answers("hasContractStatus", false).Answers("getContractStatus", 1);
  const auto row = copy.components.Make("row");
  row->Answers("hasContractStatus", false).Answers("getContractStatus", 2).Answers("hasDescription", false);
  row->Answers("hasContracts", true).Answers("getContracts", Object(old));

  copy.ApplyContractChange("U", Object(row), "CONTRACTS");

  EXPECT_EQ(copy.journal.Take(),
            "row.hasContractStatus()\n"
            "row.getContractStatus()\n"
            "row.hasContracts()\n"
            "row.getContracts()\n"
            "old.hasContractStatus()\n"
            "row.getContracts()\n"
            "old.getContractStatus()\n"
            "row.hasContractStatus()\n"
            "row.getContractStatus()\n"
            "row.hasDescription()\n"
            "row.hasContractStatus()\n"
            "row.getContractStatus()\n");
  EXPECT_EQ(copy.Counters(), "ucount 0, icount 0, dcount 0");
}

TEST(ApplyContractChange, InsertsANewContractInTheStatus) {
  CopyFixture copy("1");
  const Object row = copy.RowWith({{"Contract", "C1"}, {"ContractStatus", 2}, {"Description", "Gold"}});

  copy.ApplyContractChange("I", row, "CONTRACTS");

  EXPECT_EQ(copy.journal.Take(),
            "row1.hasContracts()\n"
            "row1.hasDescription()\n"
            "row1.hasContractStatus()\n"
            "row1.getContractStatus()\n"
            "row1.getContractStatus()\n"
            "row1.hasDescription()\n"
            "row1.getContract()\n"
            "row1.hasDescription()\n"
            "row1.getDescription()\n"
            "sql INSERT INTO CONTRACTS (CONTRACT ,CDESCRIPTION ,upd_flag )VALUES (N'C1',N'Gold',0) -> 1\n");
  EXPECT_EQ(copy.Counters(), "ucount 0, icount 1, dcount 0");
}

TEST(ApplyContractChange, InsertsANewContractOfGeneration8ByItsClusterIntoItsOwnColumn) {
  CopyFixture copy("8");
  const Object row =
      copy.RowWith({{"ServiceContract", "C1"}, {"Cluster", "K5"}, {"ContractStatus", 10}, {"Description", "Gold"}});

  copy.ApplyContractChange("I", row, "CONTRACTS");

  EXPECT_EQ(copy.journal.Take(),
            "row1.hasServiceContracts()\n"
            "row1.hasDescription()\n"
            "row1.hasContractStatus()\n"
            "row1.getContractStatus()\n"
            "row1.getContractStatus()\n"
            "row1.hasDescription()\n"
            "row1.getCluster()\n"
            "row1.hasDescription()\n"
            "row1.getDescription()\n"
            "sql INSERT INTO CONTRACTS (CONTRACTS ,CDESCRIPTION ,upd_flag )VALUES (N'K5',N'Gold',0) -> 1\n");
  EXPECT_EQ(copy.Counters(), "ucount 0, icount 1, dcount 0");
}

TEST(ApplyContractChange, UpdatesAndDeletesAContractOfGeneration8ByItsContract) {
  CopyFixture copy("8");
  const Object row =
      copy.RowWith({{"ServiceContract", "C1"}, {"Cluster", "K5"}, {"ContractStatus", 2}, {"Description", "Gold"}});

  copy.ApplyContractChange("U", row, "CONTRACTS");

  EXPECT_EQ(copy.JournalWithout({"row"}),
            "sql DELETE FROM CONTRACTS WHERE CONTRACT=N'C1'\n"
            "sql UPDATE CONTRACTS SET CONTRACT = N'C1', CDESCRIPTION = N'Gold', upd_flag = 0 WHERE CONTRACT =N'C1' -> "
            "1\n");
  EXPECT_EQ(copy.Counters(), "ucount 1, icount 0, dcount 1");
}

TEST(ApplyContractChange, DoesNotCopyANewContractInAnotherStatus) {
  for (const Value& status : {Value(3), Value(10), Value(0), Value("1"), Value(), Value(Null())}) {
    SCOPED_TRACE(Shown(status));
    CopyFixture copy("1");
    const Object row = copy.RowWith({{"Contract", "C1"}, {"ContractStatus", status}, {"Description", "Gold"}});

    copy.ApplyContractChange("I", row, "CONTRACTS");

    EXPECT_EQ(copy.journal.Take(),
              "row1.hasContracts()\n"
              "row1.hasDescription()\n"
              "row1.hasContractStatus()\n"
              "row1.getContractStatus()\n");
    EXPECT_EQ(copy.Counters(), "ucount 0, icount 0, dcount 0");
  }
}

TEST(ApplyContractChange, DropsAnyOtherActionBehindTheSameQuestions) {
  for (const char* action : {"", "X", "u", "i", "d", "UI"}) {
    SCOPED_TRACE(action);
    CopyFixture copy("3");
    const Object row = copy.RowWith({{"ServiceContract", "C1"},
                                     {"ContractStatus", 10},
                                     {"Description", "Gold"},
                                     {"ServiceContracts", OldStatus(copy, 2)}});

    copy.ApplyContractChange(action, row, "CONTRACTS");

    EXPECT_EQ(copy.journal.Take(),
              "row1.hasServiceContracts()\n"
              "row1.getServiceContracts()\n"
              "old.hasContractStatus()\n"
              "row1.getServiceContracts()\n"
              "old.getContractStatus()\n"
              "row1.hasContractStatus()\n"
              "row1.getContractStatus()\n"
              "row1.hasDescription()\n"
              "row1.hasContractStatus()\n"
              "row1.getContractStatus()\n");
    EXPECT_EQ(copy.Counters(), "ucount 0, icount 0, dcount 0");
  }
}

TEST(ApplyContractChange, MeetsNoComparisonWithANullStatus) {
  CopyFixture copy("1");
  const Object nullNow = copy.RowWith({{"Contract", "C1"}, {"ContractStatus", Null()}});
  const Object nullBefore =
      copy.RowWith({{"Contract", "C2"}, {"ContractStatus", 2}, {"Contracts", OldStatus(copy, Null())}});

  copy.ApplyContractChange("U", nullNow, "CONTRACTS");     // not another status than 2: not deleted
  copy.ApplyContractChange("I", nullNow, "CONTRACTS");     // nor 2: not inserted
  copy.ApplyContractChange("U", nullBefore, "CONTRACTS");  // was not in another status: not inserted

  EXPECT_EQ(copy.JournalWithout({"row", "old"}), "");
  EXPECT_EQ(copy.Counters(), "ucount 0, icount 0, dcount 0");
}

TEST(ApplyContractChange, CountsOneForAnInsertWhateverItReports) {
  for (const std::int64_t reported : {0, 1, 2}) {
    SCOPED_TRACE(reported);
    CopyFixture copy("3");
    copy.database.AffectNext({reported});

    copy.ApplyContractChange("I", copy.RowWith({{"ServiceContract", "C1"}, {"ContractStatus", 10}}), "CONTRACTS");

    EXPECT_EQ(copy.JournalWithout({"row"}),
              "sql INSERT INTO CONTRACTS (CONTRACT ,upd_flag )VALUES (N'C1',0) -> " + std::to_string(reported) + "\n");
    EXPECT_EQ(copy.Counters(), "ucount 0, icount 1, dcount 0");
  }
}

TEST(ApplyContractChange, FailsWithAStatusThatIsNoNumber) {
  CopyFixture copy("3");
  const Object row = copy.RowWith({{"ServiceContract", "C1"}, {"ContractStatus", "active"}});

  const Text raised = Raised([&] { copy.ApplyContractChange("U", row, "CONTRACTS"); });

  EXPECT_EQ(raised, "13 ZenqayDBSync: Type mismatch");
  EXPECT_EQ(copy.journal.Take(),
            "row1.hasContractStatus()\n"
            "row1.getContractStatus()\n");
}

TEST(ApplyContractChange, FailsWithOldValuesThatAreNotThere) {
  for (const Value& old : {Value(), Value(Null()), Value(Object())}) {
    SCOPED_TRACE(Shown(old));
    CopyFixture copy("1");
    const Object row = copy.RowWith({{"Contract", "C1"}, {"Contracts", old}});

    const Text raised = Raised([&] { copy.ApplyContractChange("I", row, "CONTRACTS"); });

    EXPECT_EQ(raised, "91 ZenqayDBSync: Object variable not set");
    EXPECT_EQ(copy.journal.Take(),
              "row1.hasContracts()\n"
              "row1.getContracts()\n");
  }
}

/// What a row can say of a status, and what that is to the rules.
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

  Text DescriptionAsked() const {
    return Text("row.hasDescription()\n") + (hasDescription ? "row.getDescription()\n" : "");
  }

  Text Deletion() const { return "row." + KeyGetter() + "()\nsql DELETE FROM CONTRACTS WHERE CONTRACT=N'C1'\n"; }

  Text Update() const {
    return "row." + KeyGetter() + "()\n" + DescriptionAsked() + "row." + KeyGetter() + "()\n" +
           "sql UPDATE CONTRACTS SET CONTRACT = N'C1'" + (hasDescription ? ", CDESCRIPTION = N'Gold'" : "") +
           ", upd_flag = 0 WHERE CONTRACT =N'C1' -> 1\n";
  }

  Text Insert() const {
    const bool byCluster = generation == "8";
    return "row.getContractStatus()\nrow.hasDescription()\nrow." + (byCluster ? "getCluster" : KeyGetter()) + "()\n" +
           DescriptionAsked() + "sql INSERT INTO CONTRACTS (" + (byCluster ? "CONTRACTS " : "CONTRACT ") +
           (hasDescription ? ",CDESCRIPTION " : "") + ",upd_flag )VALUES (" + (byCluster ? "N'K5'" : "N'C1'") +
           (hasDescription ? ",N'Gold'" : "") + ",0) -> 1\n";
  }

  Text Journal() const {
    const Text status = "row.hasContractStatus()\nrow.getContractStatus()\n";
    Text journal;
    if (action == "U") journal += status + (Leaves() ? Deletion() : "");
    journal += "row.has" + OldValues() + "()\n";
    if (before != nullptr) {
      journal += "row.get" + OldValues() + "()\nold.hasContractStatus()\n";
      journal += "row.get" + OldValues() + "()\nold.getContractStatus()\n";
      journal += status + (Enters() ? Insert() : "");
    }
    journal += "row.hasDescription()\n" + (ChangesItsText() ? Update() : "");
    return journal + status + (IsNew() ? Insert() : "");
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

  copy.ApplyContractChange(is.action, Object(row), "CONTRACTS");

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

const Text kTaken =
    "query SELECT * FROM tstables WHERE tablename = N'Contracts'\n"
    "close recordset\n"
    "sql UPDATE tstables SET in_use = 1WHERE tablename = N'Contracts' -> 1\n"
    "event DataCopyStarted(time(10:11:12 AM), i16(9))\n";
const Text kReleased = "sql UPDATE tstables SET in_use = 0WHERE tablename = N'Contracts' -> 1\n";
const Text kCriteriaCreated =
    "create NetListSelectionCriteria.NetListSelectionCriteria\n"
    "create NetListSelectionCriteria.NetListIn\n"
    "create NetListSelectionCriteria.NetListOut\n"
    "create NetListSelectionCriteria.NetListPeriod\n"
    "create NetListSelectionCriteria.NetListParameter\n";

const EntityPass kFullPass1 = {
    .generation = "1",
    .managerClass = kContracts1,
    .managerName = "contracts",
    .rows = {{{"Contract", "C1"}, {"Description", "Gold"}, {"ContractStatus", 2}},
             {{"Contract", "C2"}, {"ContractStatus", 3}}},
    .counts = {1, 0},
    .trace =
        "create Kv40QTMtssmaContracts.ContractsManager\n"
        "session.addManager(&<contracts>)\n"
        "contracts.Initialize(&\"100\")\n"
        "contracts.List(\"\", high(10))\n"
        "sql UPDATE Contracts SET upd_flag = 1 \n"
        "rows.hasMoreElements()\n"
        "rows.nextElement()\n"
        "row1.getContract()\n"
        "row1.hasDescription()\n"
        "row1.getDescription()\n"
        "row1.getContract()\n"
        "sql UPDATE Contracts SET CONTRACT = N'C1', CDESCRIPTION = N'Gold', upd_flag = 0 WHERE CONTRACT "
        "=N'C1' -> 1\n"
        "rows.hasMoreElements()\n"
        "rows.nextElement()\n"
        "row2.getContract()\n"
        "row2.hasDescription()\n"
        "row2.getContract()\n"
        "sql UPDATE Contracts SET CONTRACT = N'C2', upd_flag = 0 WHERE CONTRACT =N'C2' -> 0\n"
        "row2.hasDescription()\n"
        "row2.getContract()\n"
        "row2.hasDescription()\n"
        "sql INSERT INTO Contracts (CONTRACT ,upd_flag )VALUES (N'C2',0) -> 1\n"
        "rows.hasMoreElements()\n"
        "sql DELETE FROM Contracts WHERE upd_flag = 1\n"
        "sql UPDATE tstables SET lutm  = CONVERT(DATETIME,'2004-01-31 10:11:12',120) WHERE tablename = "
        "N'Contracts' -> 1\n"
        "contracts.Close()\n",
    .counters = "ucount 0, icount 2, dcount 0",
    .runLog =
        "Date: 1/31/2004 Time: 10:11:12 AM\r\n"
        "\"Rows copied: Contracts -  2\"\r\n"};

TEST(CopyContract, CopiesEveryContractOfGeneration1InFullWhateverItsStatus) {
  CopyFixture copy("1");
  copy.database.AffectNext({1});
  Arrange(copy, kFullPass1);

  const CopyResult result = copy.CopyTable(9, "Contracts", 1);

  EXPECT_EQ(result, CopyResult::Done);
  EXPECT_EQ(copy.journal.Take(), kTaken + kFullPass1.trace + "sql UPDATE STATISTICS Contracts\n" + kReleased);
  EXPECT_EQ(copy.Counters(), kFullPass1.counters);
  EXPECT_EQ(copy.RunLog(), kFullPass1.runLog);
}

TEST(CopyContract, CopiesTheServiceContractsOfGenerations3And8InFull) {
  const struct {
    const char* generation;
    const char* manager;
  } generations[] = {{"3", kServiceContracts3}, {"8", kServiceContracts8}};
  for (const auto& [generation, managerClass] : generations) {
    SCOPED_TRACE(generation);
    CopyFixture copy(generation);
    copy.AddManager(managerClass, "contracts",
                    {copy.RowWith({{"ServiceContract", "C1"}, {"Cluster", "K5"}, {"ContractStatus", 3}})});
    copy.database.AffectNext({1, 0});

    const CopyResult result = copy.CopyTable(9, "Contracts", 1);

    EXPECT_EQ(result, CopyResult::Done);
    EXPECT_EQ(copy.journal.Take(),
              kTaken + "create " + managerClass +
                  "\n"
                  "session.addManager(&<contracts>)\n"
                  "contracts.Initialize(&\"100\")\n"
                  "contracts.List(\"\", high(9))\n"
                  "sql UPDATE Contracts SET upd_flag = 1 \n"
                  "rows.hasMoreElements()\n"
                  "rows.nextElement()\n"
                  "row1.getServiceContract()\n"
                  "row1.hasDescription()\n"
                  "row1.getServiceContract()\n"
                  "sql UPDATE Contracts SET CONTRACT = N'C1', upd_flag = 0 WHERE CONTRACT =N'C1' -> 0\n"
                  "row1.hasDescription()\n"
                  "row1.getServiceContract()\n"
                  "row1.hasDescription()\n"
                  "sql INSERT INTO Contracts (CONTRACT ,upd_flag )VALUES (N'C1',0) -> 1\n"
                  "rows.hasMoreElements()\n"
                  "sql DELETE FROM Contracts WHERE upd_flag = 1\n"
                  "sql UPDATE tstables SET lutm  = CONVERT(DATETIME,'2004-01-31 10:11:12',120) WHERE tablename = "
                  "N'Contracts' -> 1\n"
                  "contracts.Close()\n"
                  "sql UPDATE STATISTICS Contracts\n" +
                  kReleased);
    EXPECT_EQ(copy.Counters(), "ucount 0, icount 1, dcount 0");
  }
}

const EntityPass kChangedPass1 = {
    .generation = "1",
    .managerClass = kContracts1,
    .managerName = "contracts",
    .rows = {{{"ActionType", " D "}, {"Contract", "C1"}, {"ContractStatus", 2}},
             {{"ActionType", " U "}, {"Contract", "C2"}, {"ContractStatus", 3}, {"Description", "Gold"}},
             {{"ActionType", "I"}, {"Contract", "C3"}, {"ContractStatus", 2}}},
    .counts = {0},
    .trace =
        "create Kv40QTMtssmaContracts.ContractsManager\n"
        "session.addManager(&<contracts>)\n" +
        kCriteriaCreated +
        "contracts.Initialize(&\"100\")\n"
        "query SELECT * FROM tstables WHERE tablename = N'Contracts'\n"
        "close recordset\n"
        "period.setFrom(<object>)\n"
        "period.setTo(<object>)\n"
        "criteria.setNetListPeriod(&<period>)\n"
        "parameter.setFieldName(\"ccon\")\n"
        "parameter.setFrom(\"\")\n"
        "parameter.setTo(high(10))\n"
        "input.addNetListParameter(&<parameter>)\n"
        "criteria.setNetListIn(&<input>)\n"
        "output.addFieldNameWithoutOld(\"ccon\")\n"
        "output.addFieldNameWithOld(\"desc\")\n"
        "output.addFieldNameWithOld(\"ctst\")\n"
        "criteria.setNetListOut(&<output>)\n"
        "contracts.NetListContracts(&\"tssma220\", &<criteria>)\n"
        "rows.hasMoreElements()\n"
        "rows.nextElement()\n"
        "row1.getActionType()\n"
        "row1.getContract()\n"
        "sql DELETE FROM Contracts WHERE CONTRACT=N'C1'\n"
        "rows.hasMoreElements()\n"
        "rows.nextElement()\n"
        "row2.getActionType()\n"
        "row2.hasContractStatus()\n"
        "row2.getContractStatus()\n"
        "row2.getContract()\n"
        "sql DELETE FROM Contracts WHERE CONTRACT=N'C2'\n"
        "row2.hasContracts()\n"
        "row2.hasDescription()\n"
        "row2.getContract()\n"
        "row2.hasDescription()\n"
        "row2.getDescription()\n"
        "row2.getContract()\n"
        "sql UPDATE Contracts SET CONTRACT = N'C2', CDESCRIPTION = N'Gold', upd_flag = 0 WHERE CONTRACT "
        "=N'C2' -> 0\n"
        "row2.hasContractStatus()\n"
        "row2.getContractStatus()\n"
        "rows.hasMoreElements()\n"
        "rows.nextElement()\n"
        "row3.getActionType()\n"
        "row3.hasContracts()\n"
        "row3.hasDescription()\n"
        "row3.hasContractStatus()\n"
        "row3.getContractStatus()\n"
        "row3.getContractStatus()\n"
        "row3.hasDescription()\n"
        "row3.getContract()\n"
        "row3.hasDescription()\n"
        "sql INSERT INTO Contracts (CONTRACT ,upd_flag )VALUES (N'C3',0) -> 1\n"
        "rows.hasMoreElements()\n"
        "sql UPDATE tstables SET lutm  = CONVERT(DATETIME,'2004-01-31 10:11:12',120) WHERE tablename = "
        "N'Contracts' -> 1\n",
    .counters = "ucount 1, icount 1, dcount 2",
    .runLog =
        "Date: 1/31/2004 Time: 10:11:12 AM\r\n"
        "\"Rows copied: Contracts -  1\"\r\n"
        "\"Rows updated: Contracts -  1\"\r\n"
        "\"Rows deleted: Contracts -  2\"\r\n"};

TEST(CopyContract, FollowsTheChangesOfGeneration1) {
  CopyFixture copy("1");
  copy.database.AffectNext({1});
  Arrange(copy, kChangedPass1);

  const CopyResult result = copy.CopyTable(9, "Contracts", 2);

  EXPECT_EQ(result, CopyResult::Done);
  EXPECT_EQ(copy.journal.Take(), kTaken + kChangedPass1.trace + "sql UPDATE STATISTICS Contracts\n" + kReleased);
  EXPECT_EQ(copy.Counters(), kChangedPass1.counters);
  EXPECT_EQ(copy.RunLog(), kChangedPass1.runLog);
}

TEST(CopyContract, FollowsTheChangesOfGeneration3) {
  CopyFixture copy("3");
  copy.AddManager(kServiceContracts3, "contracts",
                  {copy.RowWith({{"ActionType", "D"}, {"ServiceContract", "C1"}}),
                   copy.RowWith({{"ActionType", "U"},
                                 {"ServiceContract", "C2"},
                                 {"ContractStatus", 10},
                                 {"Description", "Gold"},
                                 {"ServiceContracts", OldStatus(copy, 2)}})});

  const CopyResult result = copy.CopyTable(9, "Contracts", 2);

  EXPECT_EQ(result, CopyResult::Done);
  EXPECT_EQ(copy.journal.Take(),
            kTaken + "create Kv50QTMtsctmServiceContracts.ServiceContractsManager\n" +
                "session.addManager(&<contracts>)\n" + kCriteriaCreated +
                "contracts.Initialize(&\"100\")\n"
                "query SELECT * FROM tstables WHERE tablename = N'Contracts'\n"
                "close recordset\n"
                "period.setFrom(<object>)\n"
                "period.setTo(<object>)\n"
                "criteria.setNetListPeriod(&<period>)\n"
                "parameter.setFieldName(\"csco\")\n"
                "parameter.setFrom(\"\")\n"
                "parameter.setTo(high(9))\n"
                "input.addNetListParameter(&<parameter>)\n"
                "criteria.setNetListIn(&<input>)\n"
                "output.addFieldNameWithoutOld(\"csco\")\n"
                "output.addFieldNameWithOld(\"desc\")\n"
                "output.addFieldNameWithOld(\"scon\")\n"
                "criteria.setNetListOut(&<output>)\n"
                "contracts.NetListServiceContracts(&\"tsctm300\", &<criteria>)\n"
                "rows.hasMoreElements()\n"
                "rows.nextElement()\n"
                "row1.getActionType()\n"
                "row1.getServiceContract()\n"
                "sql DELETE FROM Contracts WHERE CONTRACT=N'C1'\n"
                "rows.hasMoreElements()\n"
                "rows.nextElement()\n"
                "row2.getActionType()\n"
                "row2.hasContractStatus()\n"
                "row2.getContractStatus()\n"
                "row2.hasServiceContracts()\n"
                "row2.getServiceContracts()\n"
                "old.hasContractStatus()\n"
                "row2.getServiceContracts()\n"
                "old.getContractStatus()\n"
                "row2.hasContractStatus()\n"
                "row2.getContractStatus()\n"
                "row2.getContractStatus()\n"
                "row2.hasDescription()\n"
                "row2.getServiceContract()\n"
                "row2.hasDescription()\n"
                "row2.getDescription()\n"
                "sql INSERT INTO Contracts (CONTRACT ,CDESCRIPTION ,upd_flag )VALUES (N'C2',N'Gold',0) -> 1\n"
                "row2.hasDescription()\n"
                "row2.getServiceContract()\n"
                "row2.hasDescription()\n"
                "row2.getDescription()\n"
                "row2.getServiceContract()\n"
                "sql UPDATE Contracts SET CONTRACT = N'C2', CDESCRIPTION = N'Gold', upd_flag = 0 WHERE CONTRACT "
                "=N'C2' -> 1\n"
                "row2.hasContractStatus()\n"
                "row2.getContractStatus()\n"
                "rows.hasMoreElements()\n"
                "sql UPDATE tstables SET lutm  = CONVERT(DATETIME,'2004-01-31 10:11:12',120) WHERE tablename = "
                "N'Contracts' -> 1\n"
                "sql UPDATE STATISTICS Contracts\n" +
                kReleased);
  EXPECT_EQ(copy.Counters(), "ucount 1, icount 1, dcount 1");
}

TEST(CopyContract, FollowsTheChangesOfGeneration8OnOracle) {
  CopyFixture copy("8", /*databasePlatform=*/2);
  copy.AddManager(kServiceContracts8, "contracts",
                  {copy.RowWith({{"ActionType", "D"}, {"ServiceContract", "C1"}, {"Cluster", "K4"}}),
                   copy.RowWith({{"ActionType", "I"},
                                 {"ServiceContract", "C2"},
                                 {"Cluster", "K5"},
                                 {"ContractStatus", 10},
                                 {"Description", ""}})});

  const CopyResult result = copy.CopyTable(9, "Contracts", 2);

  EXPECT_EQ(result, CopyResult::Done);
  EXPECT_EQ(copy.journal.Take(),
            kTaken + "create Kv61QTMtsctmServiceContracts.ServiceContractsManager\n" +
                "session.addManager(&<contracts>)\n" + kCriteriaCreated +
                "contracts.Initialize(&\"100\")\n"
                "query SELECT * FROM tstables WHERE tablename = N'Contracts'\n"
                "close recordset\n"
                "period.setFrom(<object>)\n"
                "period.setTo(<object>)\n"
                "criteria.setNetListPeriod(&<period>)\n"
                "parameter.setFieldName(\"csco\")\n"
                "parameter.setFrom(\"\")\n"
                "parameter.setTo(high(9))\n"
                "input.addNetListParameter(&<parameter>)\n"
                "criteria.setNetListIn(&<input>)\n"
                "output.addFieldNameWithoutOld(\"csco\")\n"
                "output.addFieldNameWithOld(\"desc\")\n"
                "output.addFieldNameWithOld(\"scon\")\n"
                "criteria.setNetListOut(&<output>)\n"
                "contracts.NetListServiceContracts(&\"tsctm300\", &<criteria>)\n"
                "rows.hasMoreElements()\n"
                "rows.nextElement()\n"
                "row1.getActionType()\n"
                "row1.getServiceContract()\n"
                "sql DELETE FROM Contracts WHERE CONTRACT=N'C1'\n"
                "rows.hasMoreElements()\n"
                "rows.nextElement()\n"
                "row2.getActionType()\n"
                "row2.hasServiceContracts()\n"
                "row2.hasDescription()\n"
                "row2.hasContractStatus()\n"
                "row2.getContractStatus()\n"
                "row2.getContractStatus()\n"
                "row2.hasDescription()\n"
                "row2.getCluster()\n"
                "row2.hasDescription()\n"
                "row2.getDescription()\n"
                "sql INSERT INTO Contracts (CONTRACTS ,CDESCRIPTION ,upd_flag )VALUES (N'K5',N' ',0) -> 1\n"
                "rows.hasMoreElements()\n"
                "sql UPDATE tstables SET lutm  = TO_DATE( '2004-01-31 10:11:12','yyyy-mm-dd HH24:MI:SS') WHERE "
                "tablename = N'Contracts' -> 1\n" +
                kReleased);
  EXPECT_EQ(copy.Counters(), "ucount 0, icount 1, dcount 1");
  EXPECT_EQ(copy.RunLog(),
            "Date: 1/31/2004 Time: 10:11:12 AM\r\n"
            "\"Rows copied: Contracts -  1\"\r\n"
            "\"Rows deleted: Contracts -  1\"\r\n");
}

TEST(CopyContract, FailsWhereTheTableDoesNotHaveTheColumnOfGeneration8) {
  CopyFixture copy("8");
  copy.AddManager(kServiceContracts8, "contracts",
                  {copy.RowWith({{"ActionType", "I"}, {"Cluster", "K5"}, {"ContractStatus", 10}})});
  copy.database.FailOn("(CONTRACTS ", RuntimeError(-2147217900, "SQL Server", "Invalid column name 'CONTRACTS'."),
                       {{207, "SQL Server", "Invalid column name 'CONTRACTS'."}});

  const CopyResult result = copy.CopyTable(9, "Contracts", 2);

  EXPECT_EQ(result, CopyResult::Failed);
  EXPECT_EQ(copy.JournalWithout({"row", "query", "close", "event", "create", "session", "contracts", "period",
                                 "parameter", "input", "output", "criteria"}),
            "sql UPDATE tstables SET in_use = 1WHERE tablename = N'Contracts' -> 1\n"
            "sql INSERT INTO Contracts (CONTRACTS ,upd_flag )VALUES (N'K5',0) -> 1\n"
            "sql UPDATE tstables SET in_use = 0WHERE tablename = N'Contracts' -> 1\n");
  EXPECT_EQ(copy.Counters(), "ucount 0, icount 0, dcount 0");
  EXPECT_EQ(
      copy.RunLog(),
      "\"Date-Time :1/31/2004 : 10:11:12 AM\"\r\n"
      "\"SQL Server\",207,\"Invalid column name 'CONTRACTS'.\"\r\n"
      "\"SQL Server\",\"Invalid column name 'CONTRACTS'.\"\r\n"
      "\"Data copy: Contract - Only Changed\",\"Contracts could not be copied from the ERP (generation 8).\"\r\n");
}

TEST(CopyContract, ClosesTheManagerAndNamesTheTableAtWhicheverStepAFullCopyFails) {
  ExpectFailureAtEachStep(kFullPass1, {&CopyFixture::CopyContract, "Contracts", 1},
                          "5100 Data copy: Contracts: Contracts could not be copied from the ERP (generation 1).");
}

TEST(CopyContract, NamesThePassAtWhicheverStepAnOnlyChangedPassFails) {
  ExpectFailureAtEachStep(
      kChangedPass1, {&CopyFixture::CopyContract, "Contracts", 2},
      "5100 Data copy: Contract - Only Changed: Contracts could not be copied from the ERP (generation 1).");
}

TEST(CopyContract, FailsWhereTheComponentIsMissing) {
  const struct {
    std::int16_t SyncMethod;
    const char* raised;
  } cases[] = {
      {1, "91 ZenqayDBSync: Object variable not set"},  // Close, in the failure path, has no manager
      {2, "529 Data copy: Contract - Only Changed: Contracts could not be copied from ."},
  };
  for (const auto& [SyncMethod, expected] : cases) {
    CopyFixture copy("1");

    const Text raised = Raised([&, method = SyncMethod] { copy.CopyContract("Contracts", method); });

    EXPECT_EQ(raised, expected);
    EXPECT_EQ(copy.journal.Take(), "create Kv40QTMtssmaContracts.ContractsManager\n");
  }
}

TEST(CopyContract, LogsAFailureOfEachPassWithTheErpOfItsGeneration) {
  const struct {
    const char* generation;
    const char* manager;
    std::int16_t SyncMethod;
    const char* lastLine;
  } cases[] = {
      {"1", kContracts1, 1, "\"Data copy: Contracts\",\"Contracts could not be copied from the ERP (generation 1).\""},
      {"3", kServiceContracts3, 1,
       "\"Data copy: Contracts\",\"Contracts could not be copied from the ERP (generation 3).\""},
      {"8", kServiceContracts8, 1,
       "\"Data copy: Contracts\",\"Contracts could not be copied from the ERP (generation 8).\""},
      {"1", kContracts1, 2,
       "\"Data copy: Contract - Only Changed\",\"Contracts could not be copied from the ERP (generation 1).\""},
      {"3", kServiceContracts3, 2,
       "\"Data copy: Contract - Only Changed\",\"Contracts could not be copied from the ERP (generation 3).\""},
      {"8", kServiceContracts8, 2,
       "\"Data copy: Contract - Only Changed\",\"Contracts could not be copied from the ERP (generation 8).\""},
  };
  for (const auto& [generation, managerClass, SyncMethod, lastLine] : cases) {
    SCOPED_TRACE(lastLine);
    CopyFixture copy(generation);
    copy.AddManager(managerClass, "contracts")->Fails("Initialize", kFailure);

    const CopyResult result = copy.CopyTable(9, "Contracts", SyncMethod);

    EXPECT_EQ(result, CopyResult::Failed);
    EXPECT_EQ(copy.RunLog(), Text("\"Date-Time :1/31/2004 : 10:11:12 AM\"\r\n"
                                  "\"adapter\",\"no connection\"\r\n") +
                                 lastLine + "\r\n");
  }
}

TEST(CopyContract, FailsUnderAGenerationThatHasNoContracts) {
  const struct {
    std::int16_t SyncMethod;
    Text journal;
    const char* raised;
  } cases[] = {
      {1, "session.addManager(&nothing)\n", "91 ZenqayDBSync: Object variable not set"},
      {2, "session.addManager(&nothing)\n" + kCriteriaCreated,
       "191 Data copy: Contract - Only Changed: Contracts could not be copied from ."},
  };
  for (const auto& [SyncMethod, journal, expected] : cases) {
    CopyFixture copy("2");
    copy.AddManager(kContracts1, "contracts");

    const Text raised = Raised([&, method = SyncMethod] { copy.CopyContract("Contracts", method); });

    EXPECT_EQ(raised, expected);
    EXPECT_EQ(copy.journal.Take(), journal);
  }
}

TEST(CopyContract, DoesNothingUnderAnotherSyncMethod) {
  for (const std::int16_t SyncMethod : std::initializer_list<std::int16_t>{0, 3, -1}) {
    CopyFixture copy("1");
    copy.AddManager(kContracts1, "contracts", {copy.RowWith({{"Contract", "C1"}})});

    copy.CopyContract("Contracts", SyncMethod);

    EXPECT_EQ(copy.journal.Take(), "");
  }
}

}  // namespace
}  // namespace zenqay
