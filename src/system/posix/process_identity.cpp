#include "system/process_identity.h"

#include <unistd.h>

#include <array>
#include <fstream>
#include <sstream>

namespace zenqay {
namespace {

Text HostName() {
  std::array<char, 256> name{};
  return ::gethostname(name.data(), name.size() - 1) == 0 ? Text(name.data()) : Text("localhost");
}

Text BootId() {
  std::ifstream file("/proc/sys/kernel/random/boot_id");
  Text id;
  std::getline(file, id);
  return id;
}

/// The 22nd field of /proc/PID/stat; nothing for a process that has ended, although nobody has asked for its end yet.
/// The second field, the program's name, may hold blanks and parentheses, the third says whether it has ended.
Text StartOf(int pid) {
  std::ifstream file("/proc/" + std::to_string(pid) + "/stat");
  Text line;
  std::getline(file, line);
  const std::size_t nameEnd = line.rfind(')');
  if (nameEnd == Text::npos) return "";
  std::istringstream fields(line.substr(nameEnd + 1));
  Text field;
  fields >> field;
  if (field == "Z" || field == "X") return "";
  constexpr int kFieldsBehindStateToStart = 19;
  for (int position = 0; position < kFieldsBehindStateToStart; ++position) fields >> field;
  return field;
}

}  // namespace

ProcessIdentity IdentityOf(int pid) {
  return {.host = HostName(), .boot = BootId(), .pid = pid, .start = StartOf(pid)};
}

ProcessIdentity OwnIdentity() {
  return IdentityOf(::getpid());
}

Life LifeOf(const ProcessIdentity& identity) {
  const ProcessIdentity now = IdentityOf(identity.pid);
  if (now.host != identity.host) return Life::OnAnotherMachine;
  return !now.start.empty() && now == identity ? Life::Alive : Life::Gone;
}

}  // namespace zenqay
