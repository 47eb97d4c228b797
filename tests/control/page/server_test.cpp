// The built zenqayctl serve, and those who do not keep to the rules.
#include <arpa/inet.h>
#include <gtest/gtest.h>
#include <netinet/in.h>
#include <poll.h>
#include <signal.h>
#include <sys/socket.h>
#include <sys/un.h>
#include <unistd.h>

#include <thread>

#include "control/control_setup.h"
#include "control/history.h"
#include "doubles/file_content.h"
#include "system/child_process.h"

namespace zenqay {
namespace {

constexpr const char* kToken = "0123456789abcdef";

/// A connection to a port of this machine. What is read is waited for, up to a minute.
class Client {
 public:
  /// With room for so many bytes that are not read yet, as the system rounds it; 0: the system's own.
  explicit Client(int port, int room = 0) : socket_(::socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0)) {
    if (room > 0) ::setsockopt(socket_, SOL_SOCKET, SO_RCVBUF, &room, sizeof room);
    sockaddr_in address{};
    address.sin_family = AF_INET;
    address.sin_port = htons(static_cast<std::uint16_t>(port));
    address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    isConnected_ = ::connect(socket_, reinterpret_cast<sockaddr*>(&address), sizeof address) == 0;
  }
  Client(Client&& other) noexcept : socket_(std::exchange(other.socket_, -1)), isConnected_(other.isConnected_) {}
  Client(const Client&) = delete;
  Client& operator=(const Client&) = delete;
  ~Client() {
    if (socket_ >= 0) ::close(socket_);
  }

  bool isConnected() const { return isConnected_; }

  /// False once the other side takes no more.
  bool Send(std::string_view bytes) const {
    while (!bytes.empty()) {
      const ssize_t count = ::send(socket_, bytes.data(), bytes.size(), MSG_NOSIGNAL);
      if (count <= 0) return false;
      bytes.remove_prefix(static_cast<std::size_t>(count));
    }
    return true;
  }

  /// What arrives, up to the mark or the end.
  Text ReadTo(std::string_view mark) const {
    Text text;
    std::array<char, 4096> block{};
    while (text.find(mark) == Text::npos) {
      if (!Waits(POLLIN)) return text + "(nothing arrives)";
      const ssize_t count = ::recv(socket_, block.data(), block.size(), 0);
      if (count <= 0) break;
      text.append(block.data(), static_cast<std::size_t>(count));
    }
    return text;
  }
  Text ReadAll() const { return ReadTo("there is no such mark"); }

  /// Waits until something has arrived, and until the connection is broken off, without reading.
  bool HasArrived() const { return Waits(POLLIN); }
  bool IsBrokenOff() const { return Waits(0); }

 private:
  /// Errors and hangups are always waited for.
  bool Waits(short event) const {
    pollfd waited{.fd = socket_, .events = event, .revents = 0};
    return ::poll(&waited, 1, 60'000) > 0;
  }

  int socket_;
  bool isConnected_;
};

int FreePort() {
  const int socket = ::socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0);
  sockaddr_in address{};
  address.sin_family = AF_INET;
  address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
  socklen_t length = sizeof address;
  ::bind(socket, reinterpret_cast<sockaddr*>(&address), length);
  ::getsockname(socket, reinterpret_cast<sockaddr*>(&address), &length);
  ::close(socket);
  return ntohs(address.sin_port);
}

Text StatusOf(const Text& answer) {
  return answer.substr(0, answer.find("\r\n"));
}

/// The socket that a service manager listens on.
class NotifySocket {
 public:
  explicit NotifySocket(const Text& path) : socket_(::socket(AF_UNIX, SOCK_DGRAM | SOCK_CLOEXEC, 0)) {
    sockaddr_un address{};
    address.sun_family = AF_UNIX;
    path.copy(address.sun_path, sizeof address.sun_path - 1);
    ::bind(socket_, reinterpret_cast<sockaddr*>(&address), sizeof address);
  }
  ~NotifySocket() { ::close(socket_); }

  Text Next() const {
    std::array<char, 256> text{};
    const ssize_t count = ::recv(socket_, text.data(), text.size(), 0);
    return Text(text.data(), count > 0 ? static_cast<std::size_t>(count) : 0);
  }

 private:
  int socket_;
};

class PageServed : public testing::Test {
 protected:
  PageServed() : notified(setup.Path("notify")) {
    setup.directory.Write("token", kToken);
    std::filesystem::permissions(setup.directory.path() / "token", std::filesystem::perms::owner_read);
  }

  /// Starts the page and waits until it is there.
  void Serve(std::vector<Text> more = {}) {
    std::vector<Text> arguments = {"--file", setup.Path("zenqay.toml"), "serve", "--listen",
                                   "127.0.0.1:" + std::to_string(port)};
    arguments.insert(arguments.end(), more.begin(), more.end());
    program.emplace(
        ChildStart{.program = ZENQAYCTL,
                   .arguments = arguments,
                   .environment = {{"ZENQAY_DBSYNC", ZENQAY_FAKE_JOB},
                                   {"XDG_STATE_HOME", setup.home()},
                                   {"NOTIFY_SOCKET", setup.Path("notify")},
                                   {"ASAN_OPTIONS", "quarantine_size_mb=0:thread_local_quarantine_size_kb=0"}}});
    ASSERT_EQ(notified.Next(), "READY=1");
  }

  ProcessEnd Stop() {
    program->Ask();
    EXPECT_EQ(notified.Next(), "STOPPING=1");
    while (!program->Ended()) {
      WaitForInput({program->errors()}, 100);
      program->ReadErrors(errors);
    }
    program->ReadErrors(errors);
    return *program->Ended();
  }

  Text Get(const Text& path, const Text& headers = "") const {
    const Client client(port);
    client.Send("GET " + path + " HTTP/1.1\r\nHost: localhost\r\n" + headers + "\r\n");
    return client.ReadAll();
  }

  /// A reader of events whose first one has arrived.
  Client Reader() const {
    Client reader(port);
    reader.Send("GET /events HTTP/1.1\r\nHost: localhost\r\n\r\n");
    EXPECT_NE(reader.ReadTo("event: changed").find("event: changed"), Text::npos);
    return reader;
  }

  /// In KiB.
  long Memory() const {
    const Text status = ContentOf("/proc/" + std::to_string(program->pid()) + "/status");
    const std::size_t at = status.find("VmRSS:");
    return at == Text::npos ? 0 : std::stol(status.substr(at + 6));
  }

  ControlSetup setup;
  NotifySocket notified;
  int port = FreePort();
  std::optional<ChildProcess> program;
  Text errors;
};

TEST_F(PageServed, TellsItsServiceManagerAndEndsInOrderWhenItIsAskedTo) {
  Serve();
  const Client reader = Reader();

  EXPECT_EQ(Stop(), ProcessEnd{});
  reader.ReadAll();
  EXPECT_FALSE(Client(port).isConnected());
  EXPECT_EQ(errors, "");
}

TEST_F(PageServed, EveryAnswerSaysWhatABrowserMayDoWithIt) {
  Serve();
  const Text rules =
      "Cache-Control: no-store\r\n"
      "Connection: close\r\n"
      "Content-Length: 3\r\n"
      "Content-Security-Policy: default-src 'none'; script-src 'self'; style-src 'self'; img-src 'self'; connect-src "
      "'self'; base-uri 'none'; form-action 'none'; frame-ancestors 'none'\r\n"
      "Content-Type: text/plain; charset=utf-8\r\n"
      "Cross-Origin-Opener-Policy: same-origin\r\n"
      "Cross-Origin-Resource-Policy: same-origin\r\n"
      "Referrer-Policy: no-referrer\r\n"
      "X-Content-Type-Options: nosniff\r\n"
      "X-Frame-Options: DENY\r\n"
      "\r\n";
  EXPECT_EQ(Get("/healthz"), "HTTP/1.1 200 OK\r\n" + rules + "ok\n");
  EXPECT_EQ(Get("/healthz", "Range: bytes=0-0,1-1,0-0\r\n"), "HTTP/1.1 200 OK\r\n" + rules + "ok\n");
  const Client head(port);
  head.Send("HEAD /healthz HTTP/1.1\r\nHost: localhost\r\n\r\n");
  EXPECT_EQ(head.ReadAll(), "HTTP/1.1 200 OK\r\nAccept-Ranges: bytes\r\n" + rules);
}

TEST_F(PageServed, TheJobFileIsReadAnew) {
  Serve();
  setup.Edit("[job.demo]", "[job.other]");

  const Text page = Get("/");

  EXPECT_NE(page.find("<h2>other</h2>"), Text::npos) << page;
  EXPECT_EQ(page.find("<h2>demo</h2>"), Text::npos) << page;
}

TEST_F(PageServed, AJobFileThatCannotBeReadAnyMoreIsSaidAndTheFormerOneStays) {
  Serve();
  setup.Edit("[job.demo]", "[jobs.demo]");

  const Text page = Get("/");

  EXPECT_NE(page.find("<p class=\"fault\">The job file cannot be read; this is what it said before. "), Text::npos)
      << page;
  EXPECT_NE(page.find("<h2>demo</h2>"), Text::npos) << page;
}

TEST_F(PageServed, ADatabaseThatIsNotReachedIsSaid) {
  setup.Edit("service.db", "none.db");
  Serve();

  EXPECT_NE(Get("/").find("<p class=\"fault\">Its tables cannot be looked at: "), Text::npos);
  EXPECT_NE(Get("/metrics").find("zenqay_job_database_up{job=\"demo\",database=\"service\"} 0\n"), Text::npos);
}

TEST_F(PageServed, AnAnswerIsMadeSmallerForThoseWhoTakeIt) {
  Serve();
  for (const char* taken : {"gzip, deflate, br", "gzip"}) {
    const Text answer = Get("/runs", Text("Accept-Encoding: ") + taken + "\r\n");
    EXPECT_NE(answer.find("Content-Encoding: gzip\r\n"), Text::npos) << taken;
  }
  EXPECT_EQ(Get("/runs", "Accept-Encoding: br\r\n").find("Content-Encoding"), Text::npos);
}

TEST_F(PageServed, RunsThatOpenAndCloseTheHistoryAreHeardOf) {
  setup.Script(1, kBegin + kStarted + kComplete);
  Serve();
  const Client reader = Reader();
  for (int run = 1; run <= 8; ++run) {
    Get("/runs");
    ChildProcess other({.program = ZENQAYCTL,
                        .arguments = {"--file", setup.Path("zenqay.toml"), "run", "demo", "--table", "SITE"},
                        .environment = {{"ZENQAY_DBSYNC", ZENQAY_FAKE_JOB}, {"XDG_STATE_HOME", setup.home()}}});
    while (!other.Ended()) ::usleep(2000);

    ASSERT_NE(reader.ReadTo("event: changed").find("event: changed"), Text::npos) << run;
    EXPECT_NE(Get("/runs/" + std::to_string(run)).find("<h1>Run " + std::to_string(run)), Text::npos);
  }
}

TEST_F(PageServed, AnotherNameAnotherSiteAndAWrongTokenAreRefusedAndLogged) {
  Serve({"--allow-actions", "--token-file", setup.Path("token")});
  const Client rebound(port);
  rebound.Send("GET / HTTP/1.1\r\nHost: evil.example\r\n\r\n");
  EXPECT_EQ(StatusOf(rebound.ReadAll()), "HTTP/1.1 403 Forbidden");
  const Client twice(port);
  twice.Send("GET / HTTP/1.1\r\nHost: localhost\r\nHost: evil.example\r\n\r\n");
  EXPECT_EQ(StatusOf(twice.ReadAll()), "HTTP/1.1 403 Forbidden");
  const Client forged(port);
  forged.Send(Text("POST /api/jobs/demo/run HTTP/1.1\r\nHost: localhost\r\nOrigin: http://evil.example\r\n") +
              "X-Zenqay-Token: " + kToken + "\r\nContent-Length: 0\r\n\r\n");
  EXPECT_EQ(StatusOf(forged.ReadAll()), "HTTP/1.1 403 Forbidden");
  const Client guessed(port);
  guessed.Send("POST /api/jobs/demo/run HTTP/1.1\r\nHost: localhost\r\nX-Zenqay-Token: 0\r\nContent-Length: 0\r\n\r\n");
  EXPECT_EQ(StatusOf(guessed.ReadAll()), "HTTP/1.1 401 Unauthorized");

  EXPECT_EQ(Stop(), ProcessEnd{});
  EXPECT_EQ(
      errors,
      "zenqayctl: refused 127.0.0.1 (403): the page is not asked by the name evil.example; --host lets it be\n"
      "zenqayctl: refused 127.0.0.1 (403): the page is not asked by the name localhost,evil.example; --host lets it "
      "be\n"
      "zenqayctl: refused 127.0.0.1 (403): another site's page asks\n"
      "zenqayctl: refused 127.0.0.1 (401): this is not the page's token\n");
}

TEST_F(PageServed, ItsRunsEndWithIt) {
  setup.Edit("tables = \"all\"", "tables = [\"SITE\"]");
  setup.Script(1, kBegin + kStarted + "hold\nasked:\n");
  Serve({"--allow-actions", "--token-file", setup.Path("token")});
  const auto start = [&] {
    const Client client(port);
    client.Send(Text("POST /api/jobs/demo/run HTTP/1.1\r\nHost: localhost\r\nX-Zenqay-Token: ") + kToken +
                "\r\nContent-Length: 0\r\n\r\n");
    const Text answer = client.ReadAll();
    return answer.substr(answer.find("\r\n\r\n") + 4);
  };

  EXPECT_EQ(start(), "{\"done\":true,\"words\":\"a run of demo is started\"}\n");
  EXPECT_EQ(start(), "{\"done\":false,\"words\":\"this page's run of demo has not ended\"}\n");
  while (!std::filesystem::exists(setup.Path("log/journal"))) ::usleep(2000);
  EXPECT_EQ(Stop(), ProcessEnd{});

  EXPECT_EQ(setup.directory.Read("log/journal"), "begin 1\nasked 1\nend 1\n");
  EXPECT_EQ(errors, "zenqayctl: the run of demo ended with 143\n");
}

TEST_F(PageServed, HeadsThatDoNotEndAreRefusedAndDisturbNobody) {
  Serve();
  std::vector<Client> halfOpen;
  for (int i = 0; i < 100; ++i) {
    halfOpen.emplace_back(port);
    halfOpen.back().Send("GET / HTTP/1.1\r\nHost: local");
  }

  EXPECT_EQ(StatusOf(Get("/healthz")), "HTTP/1.1 200 OK");
  EXPECT_EQ(StatusOf(halfOpen.back().ReadAll()), "HTTP/1.1 408 Request Timeout");
  EXPECT_EQ(StatusOf(halfOpen.front().ReadAll()), "HTTP/1.1 408 Request Timeout");
  EXPECT_EQ(Stop(), ProcessEnd{});
}

TEST_F(PageServed, AReaderWhoTakesNoAnswerIsLeftAndDisturbsNobody) {
  constexpr std::size_t kLong = 4 * 1024 * 1024;  // more than the system holds for a reader
  History history(setup.Path("zenqay/history.db"));
  history.EndRun(history.BeginRun("run " + Text(kLong, 'x'), OwnIdentity()), 0);
  Serve();
  EXPECT_GT(Get("/runs/1").size(), kLong);

  const Client slow(port, 4096);
  slow.Send("GET /runs/1 HTTP/1.1\r\nHost: localhost\r\n\r\n");
  ASSERT_TRUE(slow.HasArrived());
  slow.Send("x");  // is never read, so that the system tells of the end at once
  EXPECT_EQ(StatusOf(Get("/healthz")), "HTTP/1.1 200 OK");
  EXPECT_TRUE(slow.IsBrokenOff());

  EXPECT_LT(slow.ReadAll().size(), kLong);
  EXPECT_EQ(StatusOf(Get("/healthz")), "HTTP/1.1 200 OK");
  EXPECT_EQ(Stop(), ProcessEnd{});
}

TEST_F(PageServed, TenMegabytesOfHeadAreNotTakenIn) {
  Serve();
  const Text block(10 * 1024 * 1024, 'x');
  Get("/");
  const long before = Memory();
  for (const Text& start : {Text("GET / HTTP/1.1\r\nHost: localhost\r\nX: "), Text("GET /"), Text()}) {
    const Client client(port);
    const bool isTaken = client.Send(start + block);
    const Text answer = StatusOf(client.ReadAll());
    // A reset may take the answer away with it.
    EXPECT_TRUE(answer == "HTTP/1.1 431 Request Header Fields Too Large" || answer.empty()) << answer;
    EXPECT_FALSE(isTaken);
  }

  EXPECT_LT(Memory() - before, 4096);
  EXPECT_EQ(StatusOf(Get("/healthz")), "HTTP/1.1 200 OK");
  EXPECT_EQ(Stop(), ProcessEnd{});
}

TEST_F(PageServed, WhatIsNoRequestIsRefused) {
  Serve();
  Text headers;
  for (int i = 0; i < 1000; ++i) headers += "a:b\r\n";
  const struct {
    const char* what;
    Text sent;
    Text status;
  } cases[] = {
      {"nothing", "\r\n\r\n", "HTTP/1.1 400 Bad Request"},
      {"bytes", Text("\x16\x03\x01\0\xA5\0\n\n", 8), "HTTP/1.1 400 Bad Request"},
      {"another version", "PRI * HTTP/2.0\r\n\r\n", "HTTP/1.1 400 Bad Request"},
      {"no method", "DANCE / HTTP/1.1\r\nHost: localhost\r\n\r\n", "HTTP/1.1 400 Bad Request"},
      {"no host", "GET / HTTP/1.1\r\n\r\n", "HTTP/1.1 400 Bad Request"},
      {"a body", "POST / HTTP/1.1\r\nHost: localhost\r\nContent-Length: 99999999999\r\n\r\n", "HTTP/1.1 403 Forbidden"},
      {"codes", "GET /runs/%00%ff%2e%2e%2f HTTP/1.1\r\nHost: localhost\r\n\r\n", "HTTP/1.1 404 Not Found"},
      {"a way out", "GET /../../../../etc/passwd HTTP/1.1\r\nHost: localhost\r\n\r\n", "HTTP/1.1 404 Not Found"},
      {"many headers", "GET /healthz HTTP/1.1\r\nHost: localhost\r\n" + headers + "\r\n", "HTTP/1.1 200 OK"},
      {"ranges", "GET /healthz HTTP/1.1\r\nHost: localhost\r\nRange: bytes=" + Text(8000, '1') + "-\r\n\r\n",
       "HTTP/1.1 416 Range Not Satisfiable"},
  };
  for (const auto& [what, sent, status] : cases) {
    const Client client(port);
    client.Send(sent);
    EXPECT_EQ(StatusOf(client.ReadAll()), status) << what;
  }
  EXPECT_EQ(StatusOf(Get("/healthz")), "HTTP/1.1 200 OK");
  EXPECT_EQ(Stop(), ProcessEnd{});
}

/// For three seconds, or as many as ZENQAY_PAGE_SECONDS says.
TEST_F(PageServed, TwoHundredReadersHearOfEveryChangeAndMemoryStaysFlat) {
  Serve();
  const char* asked = std::getenv("ZENQAY_PAGE_SECONDS");
  const int seconds = asked == nullptr ? 3 : std::atoi(asked);
  History history(setup.Path("zenqay/history.db"));
  const std::int64_t run = history.BeginRun("run", OwnIdentity());
  std::vector<Client> readers;
  for (int i = 0; i < 200; ++i) readers.push_back(Reader());
  const long before = Memory();

  EXPECT_EQ(StatusOf(Get("/events")), "HTTP/1.1 503 Service Unavailable");
  EXPECT_EQ(StatusOf(Get("/")), "HTTP/1.1 200 OK");
  for (int second = 0; second < seconds; ++second) {
    std::this_thread::sleep_for(std::chrono::seconds(1));
    history.EndRun(run, second);
    for (const Client& reader : readers) {
      ASSERT_NE(reader.ReadTo("event: changed").find("event: changed"), Text::npos);
    }
  }

  EXPECT_LT(Memory() - before, 8192);
  readers.clear();
  const auto isRefused = [&] {
    const Client reader(port);
    reader.Send("GET /events HTTP/1.1\r\nHost: localhost\r\n\r\n");
    return StatusOf(reader.ReadTo("\r\n")) == "HTTP/1.1 503 Service Unavailable";
  };
  while (isRefused()) ::usleep(20'000);  // until it is seen that the others are gone
  EXPECT_EQ(Stop(), ProcessEnd{});
}

TEST_F(PageServed, WhatCannotBeServedIsSaidBeforehand) {
  EXPECT_EQ(
      setup.Ctl({"serve", "--listen", "0.0.0.0:8930"}),
      "! zenqayctl: --listen: others than this machine's users can reach 0.0.0.0, so the page needs a token there: "
      "--token-file FILE\n= 2\n");
  EXPECT_EQ(setup.Ctl({"serve", "--allow-actions"}),
            "! zenqayctl: --allow-actions needs a token: --token-file FILE\n= 2\n");
  for (const char* address : {"8930", "127.0.0.1", "127.0.0.1:", "127.0.0.1:x", "127.0.0.1:65536", ":8930"}) {
    EXPECT_EQ(setup.Ctl({"serve", "--listen", address}),
              Text("! zenqayctl: --listen: \"") + address +
                  "\" is not an address and a port, such as 127.0.0.1:8930 or [::1]:8930\n= 2\n");
  }
  setup.directory.Write("short", "tooshort\n");
  std::filesystem::permissions(setup.directory.path() / "short", std::filesystem::perms::owner_read);
  EXPECT_EQ(setup.Ctl({"serve", "--token-file", setup.Path("short")}),
            "! zenqayctl: --token-file: the token has less than 16 characters; head -c 24 /dev/urandom | base64 makes "
            "one\n= 2\n");
  Serve();
  EXPECT_EQ(setup.Ctl({"serve", "--listen", "127.0.0.1:" + std::to_string(port)}),
            "! zenqayctl: Permission denied: 127.0.0.1:" + std::to_string(port) +
                " cannot be listened on, or another program does\n= 4\n");
  EXPECT_EQ(Stop(), ProcessEnd{});
}

}  // namespace
}  // namespace zenqay
