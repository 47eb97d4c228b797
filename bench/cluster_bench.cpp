// zenqayctl submit of 200 tables in twenty databases on a PostgreSQL server that answers after two milliseconds, on a
// Slurm cluster of one, two and three nodes of this machine, ten places each: how long the submission takes, and how
// long everything, to the moment at which the collector has brought the last outcome into the history. All rows are
// there already, so each is an update. And what a submission leaves and takes: logs, history, files and bytes of the
// shared directory, and sessions at the server at once.
//
//     cluster_bench DIRECTORY ROWS [ROUNDS]
#include <sys/stat.h>
#include <unistd.h>

#include <chrono>
#include <cstdlib>
#include <fstream>
#include <stdexcept>

#include "delay_proxy.h"
#include "doubles/postgres_server.h"
#include "site_exports.h"

namespace {

using namespace zenqay::bench;
namespace fs = std::filesystem;
using Clock = std::chrono::steady_clock;

constexpr int kDatabases = 20;
constexpr int kTables = 200;
constexpr int kPlaces = 10;
constexpr double kLongest = 7200;
constexpr int kEndLooks = 50;  // looks for the end, a fiftieth of a second each, to one at what it takes
constexpr const char* kGenerations[] = {"3", "1", "8"};

class Cluster {
 public:
  Cluster(const fs::path& directory, int nodes) : directory_(directory.string()) {
    Manage("start", std::to_string(kPlaces) + " " + std::to_string(nodes));
    ::setenv("SLURM_CONF", (directory_ + "/slurm.conf").c_str(), 1);
  }
  Cluster(const Cluster&) = delete;
  Cluster& operator=(const Cluster&) = delete;
  ~Cluster() {
    try {
      Manage("stop", "");
      fs::remove_all(directory_);
    } catch (const std::exception& fault) {
      std::fprintf(stderr, "%s\n", fault.what());
    }
  }

 private:
  void Manage(const std::string& deed, const std::string& more) const {
    const std::string line = ZENQAY_LOCAL_CLUSTER " " + deed + " " + directory_ + " " + more + " >&2 </dev/null";
    if (std::system(line.c_str()) != 0) throw std::runtime_error("no cluster: " + deed);
  }

  std::string directory_;
};

class Bench {
 public:
  Bench(const fs::path& directory, long rows, int rounds) : place_(directory), rounds_(rounds) {
    WriteExportsOfTenTables(place_, rows);
    server_.Psql("postgres", "CREATE ROLE bench LOGIN SUPERUSER PASSWORD 'bench'");
    const std::string schema = ZENQAY_SHARE "/schema/";
    for (int database = 0; database < kDatabases; ++database) {
      const std::string name = Name(database);
      server_.Psql("postgres", "CREATE DATABASE " + name);
      server_.PsqlFiles(name, {schema + "postgresql.sql", schema + "control-rows.sql"});
      server_.Psql(name,
                   "DELETE FROM tstreenodes WHERE groupid = '1' AND tableid NOT IN (2, 5);"
                   "DELETE FROM tstreenodes WHERE groupid = '8' AND tableid <> 10;");
    }
    Write("password", "bench");
    ::chmod((place_.path() / "password").c_str(), 0600);
    ::setenv("XDG_STATE_HOME", place_.path().c_str(), 1);
    fs::create_directory(place_.path() / "shared");
  }

  void Run() {
    WriteJobFile(server_.port());
    {
      const Cluster cluster(place_.path() / "cluster", 1);
      Submit();  // the first fill
    }
    const DelayProxy network(server_.port(), std::chrono::milliseconds(1));
    WriteJobFile(network.port());
    for (const int nodes : {1, 2, 3}) {
      const Cluster cluster(place_.path() / "cluster", nodes);
      std::vector<double> submitting;
      std::vector<double> all;
      const std::uintmax_t logs = Size("log");
      const std::uintmax_t history = Size("zenqay");
      peak_ = {};
      for (int round = 0; round < rounds_; ++round) {
        const Times times = Submit();
        submitting.push_back(times.submitting);
        all.push_back(times.all);
      }
      const std::string name = "cluster." + std::to_string(nodes);
      figures_.Add(name + ".submit_seconds", Median(submitting));
      figures_.Add(name + ".all_seconds", Median(all));
      figures_.Add(name + ".tables_per_second", kTables / Median(all));
      const double tables = kTables * rounds_;
      figures_.Add(name + ".log_bytes_per_table", static_cast<double>(Size("log") - logs) / tables);
      figures_.Add(name + ".history_bytes_per_table", static_cast<double>(Size("zenqay") - history) / tables);
      figures_.Add(name + ".shared_files", static_cast<double>(peak_.files));
      figures_.Add(name + ".shared_bytes", static_cast<double>(peak_.bytes));
      figures_.Add(name + ".sessions", static_cast<double>(peak_.sessions));
    }
    figures_.Print();
  }

 private:
  struct Times {
    double submitting = 0;
    double all = 0;
  };

  /// The most that was seen at one look.
  struct Peak {
    std::uintmax_t files = 0;
    std::uintmax_t bytes = 0;
    long sessions = 0;
  };

  /// Of all files of a directory, in bytes. What goes meanwhile does not count.
  std::uintmax_t Size(const std::string& name, std::uintmax_t* files = nullptr) const {
    std::uintmax_t bytes = 0;
    std::error_code ignored;
    for (fs::recursive_directory_iterator at(place_.path() / name, ignored), end; at != end; at.increment(ignored)) {
      const std::uintmax_t size = at->is_regular_file(ignored) ? at->file_size(ignored) : 0;
      if (ignored) continue;
      bytes += size;
      if (files != nullptr) ++*files;
    }
    return bytes;
  }

  void Look() {
    std::uintmax_t files = 0;
    peak_.bytes = std::max(peak_.bytes, Size("shared", &files));
    peak_.files = std::max(peak_.files, files);
    const std::string sessions =
        server_.Psql("postgres", "SELECT count(*) FROM pg_stat_activity WHERE datname LIKE 'service%'");
    peak_.sessions = std::max(peak_.sessions, std::strtol(sessions.c_str(), nullptr, 10));
  }

  static std::string Name(int database) { return "service" + std::to_string(database); }

  void Write(const std::string& name, const std::string& content) const {
    std::ofstream(place_.path() / name, std::ios::binary) << content;
  }

  void WriteJobFile(int port) const {
    std::string file = "[batch]\nshared = \"shared\"\n";
    for (const std::string generation : kGenerations) {
      file += "[erp.g" + generation + "]\nhome = \".\"\ngeneration = " + generation + "\nbus-component = \"MAIN\"\n";
    }
    for (int database = 0; database < kDatabases; ++database) {
      const std::string name = Name(database);
      file += "[database." + name +
              "]\nconnection = \"Driver=PostgreSQL Unicode;Server=127.0.0.1;Port=" + std::to_string(port) +
              ";Database=" + name + ";Uid=bench\"\npassword = { file = \"password\" }\nparallel = 10\n";
      for (const std::string generation : kGenerations) {
        file += "[job." + name + "g" + generation + "]\ndatabase = \"" + name + "\"\nerp = \"g" + generation +
                "\"\nmethod = \"full\"\nlogs = \"log\"\n";
      }
    }
    Write("zenqay.toml", file);
  }

  Times Submit() {
    const auto start = Clock::now();
    const auto seconds = [&] { return std::chrono::duration<double>(Clock::now() - start).count(); };
    Times times;
    RunChild({ZENQAY_CTL, "--file", (place_.path() / "zenqay.toml").string(), "submit", "--all"});
    times.submitting = seconds();
    for (int look = 0; !fs::is_empty(place_.path() / "shared"); ++look) {  // until the last outcome is taken over
      if (seconds() > kLongest) throw std::runtime_error("a task was lost: zenqayctl history says which");
      if (look % kEndLooks == 0) Look();
      ::usleep(20000);
    }
    times.all = seconds();
    return times;
  }

  Workplace place_;
  int rounds_;
  zenqay::PostgresServer server_{{"synchronous_commit=off", "max_connections=200"}};
  Peak peak_;
  Figures figures_;
};

}  // namespace

int main(int argc, char** argv) {
  return RunBench("cluster_bench", argc, argv,
                  [](const fs::path& directory, long rows, int rounds) { Bench(directory, rows, rounds).Run(); });
}
