// A PostgreSQL server of a test's own.
//
//     PostgresServer server;
//     connection->PutConnectionString(server.ConnectionString("postgres"));
#pragma once

#include <sys/types.h>

#include <string>
#include <vector>

namespace zenqay {

/// A port of the loopback address that nobody listens on.
int FreePort();

/// Runs on the loopback address, at a free port, in a directory of its own, as long as the object does; under another
/// user when the super-user starts it, as it refuses to run under him. Its user is "zenqay", with kPassword. Nothing is
/// forced to disk, unless {"fsync=on"} asks for it. Throws std::runtime_error when it does not come up.
class PostgresServer {
 public:
  static constexpr const char* kPassword = "pa;ss}w'örd";

  /// `settings` are added to its command line: {"synchronous_commit=off"}.
  explicit PostgresServer(const std::vector<std::string>& settings = {});
  PostgresServer(const PostgresServer&) = delete;
  PostgresServer& operator=(const PostgresServer&) = delete;
  ~PostgresServer();

  /// For the Unicode driver.
  std::string ConnectionString(const std::string& database) const { return ConnectionString(database, kPassword); }
  std::string ConnectionString(const std::string& database, const std::string& password) const;

  /// Runs a script by psql, and gives what it prints: the fields of a row separated by "|", a row a line.
  std::string Psql(const std::string& database, const std::string& script) const;

  /// Runs the files, in order.
  void PsqlFiles(const std::string& database, const std::vector<std::string>& paths) const;

  /// Ends every session at once, as a crash would, and the server with them.
  void Kill();

  /// Ends all its processes before they can do anything about it. Restart recovers what they have left on the disk; the
  /// port is another one then.
  void Crash();
  void Restart();

  int port() const { return port_; }

  /// The file of what the server has said since its first start: its statements too, with {"log_statement=all"}.
  std::string ServerLog() const;

 private:
  void CreateCluster() const;
  void Start();
  bool ComesUp();

  std::vector<std::string> settings_;
  std::string directory_;
  int port_ = 0;
  pid_t process_ = -1;
};

}  // namespace zenqay
