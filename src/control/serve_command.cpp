#include <charconv>

#include "control/commands.h"
#include "control/exit_status.h"
#include "control/page/page_server.h"
#include "control/run_json.h"
#include "system/service_manager.h"
#include "system/signal_watch.h"

namespace zenqay {
namespace {

constexpr std::size_t kShortestToken = 16;
constexpr int kTick = 100;

struct ListenAddress {
  Text host;  // without the brackets of an address of version 6
  int port = 0;
};

ListenAddress ReadAddress(const Text& text) {
  ListenAddress address;
  const std::size_t colon = text.rfind(':');
  if (colon != Text::npos) {
    const char* end = text.data() + text.size();
    const auto read = std::from_chars(text.data() + colon + 1, end, address.port);
    address.host = text.substr(0, colon);
    if (address.host.starts_with('[') && address.host.ends_with(']')) {
      address.host = address.host.substr(1, address.host.size() - 2);
    }
    const bool isPort = read.ptr == end && read.ec == std::errc() && address.port >= 0 && address.port <= 65535;
    if (isPort && !address.host.empty()) return address;
  }
  throw WrongUsage("--listen: \"" + text + "\" is not an address and a port, such as 127.0.0.1:8930 or [::1]:8930");
}

Text ReadToken(const JobFile& file, const Text& path, const Environment& environment) {
  const Text token =
      ReadPassword(file, {.kind = PasswordSource::Kind::File, .name = path, .place = "--token-file"}, environment);
  if (token.size() >= kShortestToken) return token;
  throw WrongUsage("--token-file: the token has less than " + std::to_string(kShortestToken) +
                   " characters; head -c 24 /dev/urandom | base64 makes one");
}

PageRules RulesOf(const JobFile& file, const ServeOptions& options, const ListenAddress& address,
                  const Surroundings& surroundings) {
  PageRules rules{
      .readNeedsToken = !IsLoopback(address.host), .allowActions = options.allowActions, .hosts = options.hosts};
  rules.hosts.push_back(address.host);
  if (!options.tokenFile.empty()) {
    rules.token = ReadToken(file, options.tokenFile, surroundings.environment);
  } else if (rules.readNeedsToken) {
    throw WrongUsage("--listen: others than this machine's users can reach " + address.host +
                     ", so the page needs a token there: --token-file FILE");
  } else if (rules.allowActions) {
    throw WrongUsage("--allow-actions needs a token: --token-file FILE");
  }
  return rules;
}

Text UrlOf(const ListenAddress& address, int port) {
  const bool isVersion6 = address.host.find(':') != Text::npos;
  return "http://" + (isVersion6 ? "[" + address.host + "]" : address.host) + ":" + std::to_string(port) + "/";
}

}  // namespace

int Serve(const JobFile& file, const ServeOptions& options, Surroundings& surroundings) {
  const ListenAddress address = ReadAddress(options.listen);
  const PageRules rules = RulesOf(file, options, address, surroundings);
  SignalWatch signals;  // before any thread
  TableWatch tables(file, surroundings.environment, surroundings.historyPath);
  ChangeFeed feed(surroundings.historyPath);
  StartedRuns runs(surroundings.ctlProgram, file.path, tables, surroundings);
  RefusalLog log(surroundings.err);
  const Page page(
      rules, surroundings.historyPath, [&] { return tables.Tables(); }, runs);
  PageServer server(page, feed, log);
  const Text url = UrlOf(address, server.Listen(address.host, address.port));
  server.Start();
  if (options.json) {
    surroundings.out << JsonText({{"url", url}}) << std::endl;
  } else {
    surroundings.out << "The page is at " << url << std::endl;
  }
  TellServiceManager("READY=1");
  bool isStopped = false;
  while (!isStopped && server.isRunning()) {
    WaitForInput({signals.descriptor()}, kTick);
    isStopped = signals.TakeStop().has_value();
    runs.Attend();
  }
  TellServiceManager("STOPPING=1");
  feed.End();
  runs.End();  // in front of the server, which waits for the answers to what it was asked
  server.Stop();
  if (isStopped) return kAllComplete;
  throw RuntimeError(PlatformFault::InvalidCall, "no further connection can be taken");
}

}  // namespace zenqay
