#include "control/page/page_server.h"

#include <httplib.h>

#include <atomic>
#include <utility>

#include "system/client_connection.h"

namespace zenqay {
namespace {

using namespace std::chrono_literals;
using Head = ClientConnection::Head;

constexpr int kOtherThreads = 64;
constexpr int kPatientReads = kOtherThreads / 2;
constexpr int kBacklog = 256;
constexpr std::size_t kLongestHead = std::size_t{16} * 1024;
constexpr auto kHeadPatience = 5000ms;
constexpr auto kHeadPatienceInACrowd = 250ms;
constexpr auto kWritePatience = 5000ms;
constexpr int kSecondsBetweenSignsOfLife = 15;

/// Nothing is loaded from elsewhere, nothing stands inside another page, no script or style stands in a page.
const httplib::Headers kHeadersOfAll = {
    {"Content-Security-Policy",
     "default-src 'none'; script-src 'self'; style-src 'self'; img-src 'self'; connect-src 'self'; "
     "base-uri 'none'; form-action 'none'; frame-ancestors 'none'"},
    {"X-Content-Type-Options", "nosniff"},
    {"X-Frame-Options", "DENY"},
    {"Referrer-Policy", "no-referrer"},
    {"Cross-Origin-Opener-Policy", "same-origin"},
    {"Cross-Origin-Resource-Policy", "same-origin"},
    {"Cache-Control", "no-store"},
};

/// One more, as long as it lives.
class Counted {
 public:
  explicit Counted(std::atomic<int>& count) : count_(count), number_(++count) {}
  Counted(const Counted&) = delete;
  Counted& operator=(const Counted&) = delete;
  ~Counted() { --count_; }

  /// Which of them it was at its start, from 1.
  int number() const { return number_; }

 private:
  std::atomic<int>& count_;
  const int number_;
};

/// The library's view of a connection: it reads the head alone, which is here already.
class HeadStream : public httplib::Stream {
 public:
  HeadStream(const ClientConnection& connection, Text head, Text peer)
      : connection_(connection), head_(std::move(head)), peer_(std::move(peer)) {}

  bool is_readable() const override { return at_ < head_.size(); }
  bool is_writable() const override { return !connection_.IsGone(); }
  ssize_t read(char* to, std::size_t size) override {
    const std::size_t count = std::min(size, head_.size() - at_);
    head_.copy(to, count, at_);
    at_ += count;
    return static_cast<ssize_t>(count);
  }
  ssize_t write(const char* from, std::size_t size) override {
    return connection_.Write({from, size}, kWritePatience) ? static_cast<ssize_t>(size) : -1;
  }
  void get_remote_ip_and_port(std::string& ip, int& port) const override {
    ip = peer_;
    port = 0;
  }
  void get_local_ip_and_port(std::string&, int&) const override {}
  socket_t socket() const override { return connection_.socket(); }

 private:
  const ClientConnection& connection_;
  Text head_;
  Text peer_;
  std::size_t at_ = 0;
};

PageRequest RequestOf(const httplib::Request& from) {
  PageRequest request{.method = from.method, .path = from.path, .peer = from.remote_addr};
  for (const auto& [name, value] : from.params) request.query.emplace(name, value);
  for (const auto& [name, value] : from.headers) {
    const auto [at, isNew] = request.headers.emplace(LowerCased(name), value);
    if (!isNew) at->second += "," + value;
  }
  return request;
}

}  // namespace

class PageServer::Http : public httplib::Server {
 public:
  Http(const Page& page, ChangeFeed& feed, RefusalLog& log) : page_(page), feed_(feed), log_(log) {
    new_task_queue = [] { return new httplib::ThreadPool(kMostStreams + kOtherThreads); };
    set_default_headers(kHeadersOfAll);
    set_socket_options([](socket_t socket) { TakePortAlone(socket); });
    set_pre_routing_handler([this](const httplib::Request& request, httplib::Response& response) {
      Answer(request, response);
      return HandlerResponse::Handled;
    });
    set_logger([this](const httplib::Request& request, const httplib::Response& response) {
      const bool isOfLibrary = response.status >= 400 && response.body.empty();
      if (isOfLibrary) log_.Note(request.remote_addr, response.status, "this is no request");
    });
  }

  int Listen(const Text& host, int port) {
    const int bound = port == 0 ? bind_to_any_port(host) : (bind_to_port(host, port) ? port : -1);
    if (bound > 0) SetBacklog(svr_sock_, kBacklog);
    return bound;
  }

  std::thread thread;
  std::atomic<bool> isRunning = false;

 private:
  bool process_and_close_socket(socket_t socket) override {
    const ClientConnection connection(socket);
    const Text peer = connection.Peer();
    Head head = ReadHead(connection);
    if (head.outcome == Head::Outcome::Gone) return false;
    if (head.outcome != Head::Outcome::Whole) return RefuseHead(connection, peer, head.outcome);
    HeadStream stream(connection, std::move(head.text), peer);
    bool isClosed = false;
    return process_request(stream, true, isClosed, Simplify);
  }

  /// A page is never asked for in pieces; each of many would be a copy of it. Of the ways to make it smaller the quick
  /// one serves.
  static void Simplify(httplib::Request& request) {
    const bool takesGzip = request.get_header_value("Accept-Encoding").find("gzip") != Text::npos;
    request.ranges.clear();
    request.headers.erase("Accept-Encoding");
    if (takesGzip) request.set_header("Accept-Encoding", "gzip");
  }

  /// When many are silent at once, they are not waited for long, so that threads are left.
  Head ReadHead(const ClientConnection& connection) {
    const Counted reading(reading_);
    return connection.ReadHead(kLongestHead, reading.number() > kPatientReads ? kHeadPatienceInACrowd : kHeadPatience);
  }

  bool RefuseHead(const ClientConnection& connection, const Text& peer, Head::Outcome outcome) {
    const bool isTooLong = outcome == Head::Outcome::TooLong;
    const int status = isTooLong ? 431 : 408;
    log_.Note(peer, status, isTooLong ? "the head of the request is too long" : "the request does not come to its end");
    connection.Write(isTooLong ? "HTTP/1.1 431 Request Header Fields Too Large\r\nContent-Length: 0\r\n\r\n"
                               : "HTTP/1.1 408 Request Timeout\r\nContent-Length: 0\r\n\r\n",
                     kHeadPatienceInACrowd);
    return false;
  }

  void Answer(const httplib::Request& from, httplib::Response& to) {
    const PageRequest request = RequestOf(from);
    PageAnswer answer = page_.Answer(request);
    if (answer.isEventStream && request.method == "GET") {
      const auto stream = std::make_shared<Counted>(streams_);
      if (stream->number() <= kMostStreams) return SendEvents(to, stream);
      answer = Refuse(503, "there are as many readers of events as can be");
      answer.headers["Retry-After"] = "10";
    }
    if (!answer.refusal.empty()) log_.Note(request.peer, answer.status, answer.refusal);
    to.status = answer.status;
    for (const auto& [name, value] : answer.headers) to.set_header(name, value);
    to.set_content(answer.body, answer.type);
  }

  /// An event for each change, beginning with one, and from time to time a sign of life.
  void SendEvents(httplib::Response& to, const std::shared_ptr<Counted>& stream) {
    to.status = 200;
    to.set_chunked_content_provider("text/event-stream", [this, stream, known = std::uint64_t{0}, waited = 0](
                                                             std::size_t, httplib::DataSink& sink) mutable {
      const std::uint64_t changes = feed_.WaitForChange(known, 1s);
      if (feed_.isOver() || !sink.is_writable()) return false;
      const bool hasChanged = std::exchange(known, changes) != changes;
      if (!hasChanged && ++waited < kSecondsBetweenSignsOfLife) return true;
      waited = 0;
      const Text event = hasChanged ? "event: changed\ndata: " + std::to_string(changes) + "\n\n" : ": nothing new\n\n";
      return sink.write(event.data(), event.size());
    });
  }

  const Page& page_;
  ChangeFeed& feed_;
  RefusalLog& log_;
  std::atomic<int> reading_ = 0;
  std::atomic<int> streams_ = 0;
};

PageServer::PageServer(const Page& page, ChangeFeed& feed, RefusalLog& log)
    : http_(std::make_unique<Http>(page, feed, log)) {}

PageServer::~PageServer() {
  Stop();
}

int PageServer::Listen(const Text& host, int port) {
  const int bound = http_->Listen(host, port);
  if (bound > 0) return bound;
  throw RuntimeError(PlatformFault::PermissionDenied,
                     host + ":" + std::to_string(port) + " cannot be listened on, or another program does");
}

void PageServer::Start() {
  http_->isRunning = true;
  http_->thread = std::thread([http = http_.get()] {
    http->listen_after_bind();
    http->isRunning = false;
  });
}

void PageServer::Stop() {
  if (!http_->thread.joinable()) return;
  // It may not have come to listening yet, where stopping it does nothing.
  while (http_->isRunning && !http_->is_running()) std::this_thread::yield();
  http_->stop();
  http_->thread.join();
}

bool PageServer::isRunning() const {
  return http_->isRunning;
}

}  // namespace zenqay
