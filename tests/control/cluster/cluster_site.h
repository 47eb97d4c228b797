// Databases of both kinds and jobs of all generations, between the built zenqayctl and a cluster.
#pragma once

#include "../processes/job_site.h"
#include "slurm_cluster.h"

namespace zenqay {

class ClusterSite {
 public:
  /// So many databases in files, with one table or two, and so many on a server, each with all ten tables and an ERP of
  /// its own.
  ClusterSite(const SlurmCluster& cluster, int files, int servers);

  RunningCtl Start(const Text& command) const { return site_.Start(command, variables_); }
  CtlRun Run(const Text& command) const { return site_.Run(command, variables_); }

  /// The same on a machine of that name. What it writes is only what `said` holds.
  CtlRun RunOn(const Text& machine, const Text& command) const;

  /// The names of all jobs, as a command line has them.
  const Text& jobs() const { return jobs_; }

  Text Path(const Text& name) const { return site_.Path(name); }

  /// An export of the ERP of a database on the server.
  Text Export(int database, const Text& name) const { return Path("home" + std::to_string(database) + "/erp/" + name); }

  /// The rows of all tables that are copied, in order, doubled ones too, and whether a table is taken.
  Text Rows() const;

  /// The same of a run of all jobs on this machine alone, which is taken back.
  Text RowsWithoutSlurm() const;

  /// The rows of a query on the history, without looking at it by zenqayctl.
  Text History(const Text& query) const;

  /// What is left in the shared directory.
  Text Shared() const;

 private:
  struct Copied {
    Text connection;
    Text table;
  };

  void AddJob(const Text& database, const Text& erp, const Text& generation, const std::vector<Text>& tables,
              const Text& connection);
  void Empty() const;

  JobSite site_{Engine::Sqlite};
  Variables variables_;
  Text file_;
  Text jobs_;
  std::vector<Copied> copied_;
};

}  // namespace zenqay
