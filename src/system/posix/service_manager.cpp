#include "system/service_manager.h"

#include <sys/socket.h>
#include <sys/un.h>
#include <unistd.h>

#include <algorithm>
#include <cstddef>
#include <cstdlib>

namespace zenqay {

void TellServiceManager(const Text& words) {
  const char* named = std::getenv("NOTIFY_SOCKET");
  if (named == nullptr) return;
  const Text path = named;
  sockaddr_un address{};
  address.sun_family = AF_UNIX;
  if (path.empty() || path.size() >= sizeof address.sun_path) return;
  std::copy(path.begin(), path.end(), address.sun_path);
  if (path.front() == '@') address.sun_path[0] = '\0';  // a name outside the file system
  const int socket = ::socket(AF_UNIX, SOCK_DGRAM | SOCK_CLOEXEC, 0);
  if (socket < 0) return;
  const auto length = static_cast<socklen_t>(offsetof(sockaddr_un, sun_path) + path.size());
  ::sendto(socket, words.data(), words.size(), MSG_NOSIGNAL, reinterpret_cast<const sockaddr*>(&address), length);
  ::close(socket);
}

}  // namespace zenqay
