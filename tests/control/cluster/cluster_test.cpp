// The built zenqayctl on a cluster of three nodes. With ZENQAY_FAULTS=all in the environment, as scripts/faults sets
// it, on sixty tables of twenty-three databases.
#include <gtest/gtest.h>
#include <unistd.h>

#include <algorithm>
#include <sstream>

#include "cluster_site.h"
#include "doubles/file_content.h"

namespace zenqay {
namespace {

const Text kSites = "Kv50QTMtscfgConfigurations.csv";
const Text kAllEnds =
    "SELECT outcome, count(*) AS c FROM table_run WHERE run = (SELECT max(id) FROM run) GROUP BY outcome";

/// Holds the listing of an export, and gives what stood in it.
class Barrier {
 public:
  explicit Barrier(const Text& path) : path_(path), content_(ContentOf(path)) {
    std::filesystem::remove(path);
    held_.emplace(path);
  }

  template <typename Program>
  void WaitUntilReached(Program& program) {
    held_->WaitUntilOpened(program);
  }

  void Open() {
    held_->Write(content_);
    held_->Finish();
  }

  /// The reader is dead: the next one finds the file.
  void Abandon() {
    held_->Finish();
    std::filesystem::remove(path_);
    std::ofstream(path_, std::ios::binary) << content_;
  }

 private:
  Text path_;
  Text content_;
  std::optional<HeldExport> held_;
};

/// A program that does not end before what is waited for.
struct Endless {
  bool HasEnded() const { return false; }
};

class Cluster : public testing::Test {
 protected:
  /// Where the tasks run: "0_3" and the node.
  std::map<Text, Text> Nodes() const {
    std::map<Text, Text> nodes;
    std::istringstream lines(cluster.Say("squeue -h -r -t RUNNING -o '%k_%K %N'"));
    for (Text task, node; lines >> task >> node;) nodes[task] = node;
    return nodes;
  }

  SlurmCluster cluster;
};

TEST_F(Cluster, CopiesTheTablesAsARunOnOneMachineDoes) {
  const ClusterSite site(cluster, TriesAll() ? 20 : 4, TriesAll() ? 3 : 1);
  const Text tables = TriesAll() ? "60" : "16";
  const Text expected = site.RowsWithoutSlurm();

  const CtlRun run = site.Run("submit --all --wait");

  EXPECT_EQ(run.status, 0) << run.said;
  EXPECT_NE(run.said.find("\n" + tables + " complete\n"), Text::npos) << run.said;
  EXPECT_EQ(site.Rows(), expected);
  EXPECT_EQ(site.History(kAllEnds), "complete|" + tables + "\n");
  EXPECT_EQ(site.Shared(), "");
}

/// Only a job of the cluster looks at the history.
TEST_F(Cluster, BringsWhatBecameOfTheTablesIntoTheHistoryByItself) {
  const ClusterSite site(cluster, 1, 1);
  const CtlRun run = site.Run("submit --all -- --mem=10M");
  ASSERT_EQ(run.status, 0) << run.said;
  EXPECT_NE(run.said.find("run 1: 11 tables in 10 tasks of 2 arrays are queued; "), Text::npos) << run.said;

  while (site.History("SELECT id FROM run WHERE ended IS NULL") != "") ::usleep(10000);

  EXPECT_EQ(site.History("SELECT outcome FROM run"), "0\n");
  EXPECT_EQ(site.History(kAllEnds), "complete|11\n");
  while (site.Shared() != "") ::usleep(10000);
}

/// Nothing of the cluster brings the outcomes in: who looks does.
TEST_F(Cluster, TakesTheTablesOfAServerFromAMachineThatIsNoNode) {
  const ClusterSite site(cluster, 1, 1);

  const CtlRun handedOver = site.RunOn("desk", "submit server0g1 server0g8");
  EXPECT_EQ(handedOver.status, 0) << handedOver.said;
  EXPECT_NE(
      handedOver.said.find("zenqayctl: this machine is no node of the batch system: what becomes of the tasks comes "
                           "into the history with the next zenqayctl status or history here\n"),
      Text::npos)
      << handedOver.said;
  while (cluster.Say("squeue -h") != "") ::usleep(10000);
  EXPECT_EQ(site.History("SELECT count(*) AS c FROM run WHERE ended IS NOT NULL"), "0\n");

  EXPECT_EQ(site.RunOn("desk", "history").status, 0);
  EXPECT_EQ(site.History(kAllEnds), "complete|3\n");
  EXPECT_EQ(site.Shared(), "");

  const CtlRun file = site.RunOn("desk", "submit file0g1");
  EXPECT_EQ(file.status, 2);
  EXPECT_NE(file.said.find("[database.file0] is a file of this machine, desk, which is no node of the batch system"),
            Text::npos)
      << file.said;
}

TEST_F(Cluster, GoesOnWhereANodeWasKilled) {
  const int servers = TriesAll() ? 3 : 1;
  const ClusterSite site(cluster, 0, servers);
  const Text expected = site.RowsWithoutSlurm();
  std::vector<std::unique_ptr<Barrier>> barriers;
  for (int server = 0; server < servers; ++server) {
    barriers.push_back(std::make_unique<Barrier>(site.Export(server, kSites)));
  }
  RunningCtl ctl = site.Start("submit --all --wait -- --exclude=n1");
  for (const auto& barrier : barriers) barrier->WaitUntilReached(ctl);
  const std::map<Text, Text> nodes = Nodes();
  const Text killed = nodes.at("0_2");  // behind PRODUCT and SYMPTOM
  EXPECT_NE(killed, "n1");

  cluster.KillNode(killed);
  int restarted = 0;
  for (int server = 0; server < servers; ++server) {
    if (nodes.at(std::to_string(server) + "_2") == killed) {
      ++restarted;
      barriers[server]->Abandon();
    } else {
      barriers[server]->Open();
    }
  }
  const CtlRun run = ctl.Wait();

  EXPECT_EQ(run.status, 0) << run.said;
  EXPECT_EQ(site.Rows(), expected);
  EXPECT_EQ(site.History(kAllEnds), "complete|" + std::to_string(10 * servers) + "\n");
  EXPECT_EQ(site.History("SELECT count(*) AS c FROM table_run WHERE run = (SELECT max(id) FROM run) AND name = 'SITE' "
                         "AND words = 'the task was begun anew once'"),
            std::to_string(restarted) + "\n");
}

TEST_F(Cluster, LosesNothingWithItsController) {
  const ClusterSite site(cluster, 1, 1);
  const Text expected = site.RowsWithoutSlurm();
  Barrier barrier(site.Export(0, kSites));
  const CtlRun submitted = site.Run("submit --all");
  ASSERT_EQ(submitted.status, 0) << submitted.said;
  Endless endless;
  barrier.WaitUntilReached(endless);

  cluster.KillController();
  barrier.Open();
  const CtlRun status = site.Run("status server0g3");
  cluster.StartController();
  while (site.History("SELECT id FROM run WHERE ended IS NULL") != "") ::usleep(10000);

  EXPECT_EQ(status.status, 0) << status.said;
  EXPECT_NE(status.said.find("zenqayctl: what submitted tasks are queued and run is not known: "), Text::npos)
      << status.said;
  EXPECT_EQ(site.Rows(), expected);
  EXPECT_EQ(site.History("SELECT outcome FROM run WHERE id = 2"), "0\n");
  EXPECT_EQ(site.History(kAllEnds), "complete|11\n");
}

TEST_F(Cluster, CopiesATableOnceThatIsSubmittedTwice) {
  const ClusterSite site(cluster, 0, 1);
  const Text expected = site.RowsWithoutSlurm();
  const Text command = "submit server0g3 --table SITE --table PROBLEM --table PRIORITY --wait";
  Barrier barriers[] = {Barrier(site.Export(0, kSites)), Barrier(site.Export(0, "Kv50QTMtsclmProblems.csv")),
                        Barrier(site.Export(0, "Kv50QTMtcmcsPriorities.csv"))};
  RunningCtl first = site.Start(command);
  for (Barrier& barrier : barriers) barrier.WaitUntilReached(first);

  const CtlRun second = site.Run(command);
  for (Barrier& barrier : barriers) barrier.Open();
  const CtlRun done = first.Wait();
  const CtlRun others = site.Run(
      "run server0g1 server0g8 server0g3 --table server0g1:PRODUCT --table server0g1:SYMPTOM --table "
      "server0g8:SERIALIZEDITEM --table server0g3:OBJECT --table server0g3:SITECONTRACT --table server0g3:CONTRACTS "
      "--table server0g3:WARRANTIES");

  EXPECT_EQ(second.status, 3) << second.said;
  EXPECT_EQ(site.History("SELECT outcome, count(*) AS c FROM table_run WHERE run = 3 GROUP BY outcome"), "in use|3\n");
  EXPECT_EQ(done.status, 0) << done.said;
  EXPECT_EQ(site.History("SELECT outcome, count(*) AS c FROM table_run WHERE run = 2 GROUP BY outcome"),
            "complete|3\n");
  EXPECT_EQ(others.status, 0) << others.said;
  EXPECT_EQ(site.Rows(), expected);
}

TEST_F(Cluster, TakesScancelForARequestToStop) {
  const ClusterSite site(cluster, 0, 1);
  Barrier barrier(site.Export(0, kSites));
  RunningCtl ctl = site.Start("submit server0g3 --table SITE --wait");
  barrier.WaitUntilReached(ctl);

  cluster.Say("scancel --me --state=RUNNING");
  const CtlRun run = ctl.Wait();

  EXPECT_EQ(run.status, 143) << run.said;
  EXPECT_EQ(site.History("SELECT outcome FROM table_run"), "stopped\n");
}

}  // namespace
}  // namespace zenqay
