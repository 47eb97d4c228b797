#include "doubles/postgres_server.h"

#include <arpa/inet.h>
#include <fcntl.h>
#include <grp.h>
#include <signal.h>
#include <sys/prctl.h>
#include <sys/socket.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <chrono>
#include <filesystem>
#include <fstream>
#include <functional>
#include <stdexcept>
#include <thread>

#include "doubles/file_content.h"

namespace zenqay {
namespace {

namespace fs = std::filesystem;

constexpr const char* kUser = "zenqay";
constexpr uid_t kNobody = 65534;
constexpr int kStarts = 3;
constexpr std::chrono::minutes kLongestStart{5};

/// Debian keeps each version's programs in a directory of its own; the newest one serves.
std::string ProgramPath(const std::string& name) {
  std::vector<std::string> found;
  if (fs::exists("/usr/lib/postgresql")) {
    for (const fs::directory_entry& version : fs::directory_iterator("/usr/lib/postgresql")) {
      const fs::path program = version.path() / "bin" / name;
      if (fs::exists(program)) found.push_back(program.string());
    }
  }
  if (found.empty()) throw std::runtime_error("PostgreSQL's " + name + " is not installed");
  return *std::max_element(found.begin(), found.end());
}

/// Replaces this process by the program, without the rights of the super-user. It ends when its parent does.
[[noreturn]] void Become(const std::vector<std::string>& arguments, const std::string& log, pid_t parent) {
  const bool isDropped =
      ::geteuid() != 0 || (::setgroups(0, nullptr) == 0 && ::setgid(kNobody) == 0 && ::setuid(kNobody) == 0);
  const int out = ::open(log.c_str(), O_WRONLY | O_CREAT | O_APPEND, 0644);
  ::prctl(PR_SET_PDEATHSIG, SIGQUIT);
  if (!isDropped || out < 0 || ::getppid() != parent) ::_exit(126);
  ::dup2(out, STDOUT_FILENO);
  ::dup2(out, STDERR_FILENO);
  ::setenv("LC_ALL", "C", 1);
  std::vector<char*> argv;
  for (const std::string& argument : arguments) argv.push_back(const_cast<char*>(argument.c_str()));
  argv.push_back(nullptr);
  ::execv(argv[0], argv.data());
  ::_exit(127);
}

pid_t Spawn(const std::vector<std::string>& arguments, const std::string& log) {
  const pid_t parent = ::getpid();
  const pid_t child = ::fork();
  if (child < 0) throw std::runtime_error("no process");
  if (child == 0) Become(arguments, log, parent);
  return child;
}

void RunToItsEnd(const std::vector<std::string>& arguments, const std::string& log) {
  int status = 0;
  ::waitpid(Spawn(arguments, log), &status, 0);
  if (status != 0) throw std::runtime_error(arguments.front() + " failed:\n" + ContentOf(log));
}

std::string TemporaryDirectory() {
  std::string name = (fs::temp_directory_path() / "zenqay-postgres-XXXXXX").string();
  if (::mkdtemp(name.data()) == nullptr) throw std::runtime_error("no temporary directory " + name);
  if (::geteuid() == 0 && ::chown(name.c_str(), kNobody, kNobody) != 0) throw std::runtime_error("cannot give " + name);
  return name;
}

/// The state letter of a process and its parent, "" for one that is gone: "S 17".
std::string StateAndParent(const std::string& process) {
  const std::string stat = ContentOf("/proc/" + process + "/stat");
  const auto name = stat.rfind(") ");  // a name may hold anything
  if (name == std::string::npos) return "";
  const auto end = stat.find(' ', name + 4);
  return stat.substr(name + 2, end - name - 2);
}

std::vector<pid_t> ChildrenOf(pid_t parent) {
  std::vector<pid_t> children;
  for (const fs::directory_entry& entry : fs::directory_iterator("/proc")) {
    const std::string name = entry.path().filename().string();
    const bool isProcess = name.find_first_not_of("0123456789") == std::string::npos;
    const std::string state = isProcess ? StateAndParent(name) : "";
    if (!state.empty() && state.substr(2) == std::to_string(parent)) children.push_back(std::stoi(name));
  }
  return children;
}

bool IsRunning(pid_t process) {
  const std::string state = StateAndParent(std::to_string(process));
  return !state.empty() && state.front() != 'Z';
}

std::string BracedValue(const std::string& value) {
  std::string braced = "{";
  for (const char c : value) braced += c == '}' ? "}}" : std::string(1, c);
  return braced + "}";
}

}  // namespace

int FreePort() {
  const int listener = ::socket(AF_INET, SOCK_STREAM, 0);
  sockaddr_in address{};
  address.sin_family = AF_INET;
  address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
  socklen_t length = sizeof address;
  auto* const name = reinterpret_cast<sockaddr*>(&address);
  const bool isBound = ::bind(listener, name, length) == 0 && ::getsockname(listener, name, &length) == 0;
  ::close(listener);
  if (!isBound) throw std::runtime_error("no free port");
  return ntohs(address.sin_port);
}

PostgresServer::PostgresServer(const std::vector<std::string>& settings)
    : settings_(settings), directory_(TemporaryDirectory()) {
  CreateCluster();
  Start();
}

PostgresServer::~PostgresServer() {
  Kill();
  std::error_code ignored;
  fs::remove_all(directory_, ignored);
}

std::string PostgresServer::ConnectionString(const std::string& database, const std::string& password) const {
  return "Driver=PostgreSQL Unicode;Server=127.0.0.1;Port=" + std::to_string(port_) + ";Database=" + database +
         ";Uid=" + kUser + ";Pwd=" + BracedValue(password);
}

std::string PostgresServer::Psql(const std::string& database, const std::string& script) const {
  std::ofstream(directory_ + "/script.sql", std::ios::binary) << script;
  const std::string out = directory_ + "/psql.out";
  std::ofstream(out).close();
  PsqlFiles(database, {directory_ + "/script.sql"});
  return ContentOf(out);
}

void PostgresServer::PsqlFiles(const std::string& database, const std::vector<std::string>& paths) const {
  std::vector<std::string> arguments = {ProgramPath("psql"),
                                        "-X",
                                        "-q",
                                        "-A",
                                        "-t",
                                        "-w",
                                        "-v",
                                        "ON_ERROR_STOP=1",
                                        "-h",
                                        directory_,
                                        "-p",
                                        std::to_string(port_),
                                        "-U",
                                        kUser,
                                        "-d",
                                        database,
                                        "-o",
                                        directory_ + "/psql.out"};
  for (const std::string& path : paths) arguments.insert(arguments.end(), {"-f", path});
  if (::geteuid() == 0) fs::permissions(directory_, fs::perms(0755));
  const std::string out = directory_ + "/psql.out";
  std::ofstream(out, std::ios::app).close();
  fs::permissions(out, fs::perms(0666));
  RunToItsEnd(arguments, directory_ + "/psql.log");
}

void PostgresServer::Kill() {
  if (process_ < 0) return;
  ::kill(process_, SIGQUIT);
  ::waitpid(process_, nullptr, 0);
  process_ = -1;
}

void PostgresServer::Crash() {
  ::kill(process_, SIGSTOP);  // it would start new ones in the place of those that end
  const std::vector<pid_t> sessions = ChildrenOf(process_);
  ::kill(process_, SIGKILL);
  for (const pid_t session : sessions) ::kill(session, SIGKILL);
  ::waitpid(process_, nullptr, 0);
  for (const pid_t session : sessions) {
    while (IsRunning(session)) std::this_thread::sleep_for(std::chrono::milliseconds(1));
  }
  process_ = -1;
}

void PostgresServer::Restart() {
  Start();
}

void PostgresServer::Start() {
  for (int attempt = 1; !ComesUp(); ++attempt) {
    if (attempt == kStarts) throw std::runtime_error("PostgreSQL does not come up:\n" + ContentOf(ServerLog()));
  }
}

/// Passwords on the network, none on the socket, where psql comes in.
void PostgresServer::CreateCluster() const {
  const std::string passwordFile = directory_ + "/password";
  std::ofstream(passwordFile) << kPassword << "\n";
  RunToItsEnd({ProgramPath("initdb"), "-D", directory_ + "/data", "-U", kUser, "-E", "UTF8", "--locale=C", "--no-sync",
               "--pwfile=" + passwordFile, "--auth-local=trust", "--auth-host=scram-sha-256"},
              directory_ + "/initdb.log");
}

/// Between the look for a free port and the server's own, another process may take it: the server then ends.
bool PostgresServer::ComesUp() {
  port_ = FreePort();
  std::vector<std::string> arguments = {
      ProgramPath("postgres"), "-D", directory_ + "/data", "-k", directory_, "-h", "127.0.0.1", "-p",
      std::to_string(port_),   "-c", "fsync=off"};
  for (const std::string& setting : settings_) arguments.insert(arguments.end(), {"-c", setting});
  process_ = Spawn(arguments, ServerLog());
  // On the socket, where no other server answers.
  const std::vector<std::string> ask = {ProgramPath("pg_isready"), "-q", "-h", directory_, "-p", std::to_string(port_)};
  const auto end = std::chrono::steady_clock::now() + kLongestStart;
  while (std::chrono::steady_clock::now() < end) {
    int status = 0;
    ::waitpid(Spawn(ask, directory_ + "/ready.log"), &status, 0);
    if (status == 0) return true;
    if (::waitpid(process_, nullptr, WNOHANG) == process_) {
      process_ = -1;
      return false;
    }
    std::this_thread::sleep_for(std::chrono::milliseconds(50));
  }
  Kill();
  return false;
}

std::string PostgresServer::ServerLog() const {
  return directory_ + "/server.log";
}

}  // namespace zenqay
