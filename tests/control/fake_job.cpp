// A job that does as it is told by a script, for the tests of what starts jobs. It takes its line from standard input
// and finds the script of its table in its log directory: TABLEID.script, or TABLEID.script.2 for a second attempt.
// Each line of a script is a deed:
//
//     {…}            says that line on the control channel
//     say TEXT       says something on standard error
//     wait FILE      waits for a file of the log directory
//     hold           waits for being asked to stop
//     ignore         does not stop when it is asked to
//     exit STATUS    ends
//     signal NUMBER  ends by a signal
//     asked:         where it goes on when it is asked to stop while it waits or holds; it ends there without this line
//
// It notes in the file journal of its log directory when it begins, is asked, and ends.
#include <fcntl.h>
#include <signal.h>
#include <unistd.h>

#include <cerrno>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iostream>
#include <iterator>
#include <string>
#include <vector>

namespace {

namespace fs = std::filesystem;

volatile sig_atomic_t asked = 0;

void Ask(int) {
  asked = 1;
}

std::vector<std::string> Split(const std::string& line) {
  std::vector<std::string> items;
  std::size_t from = 0;
  for (std::size_t end = line.find("{}"); end != std::string::npos; end = line.find("{}", from)) {
    items.push_back(line.substr(from, end - from));
    from = end + 2;
  }
  items.push_back(line.substr(from));
  return items;
}

class FakeJob {
 public:
  explicit FakeJob(const std::string& line) : items_(Split(line)), logs_(items_.at(4)), table_(items_.at(2)) {
    const fs::path second = logs_ / (table_ + ".script.2");
    const bool isSecond = fs::exists(logs_ / (table_ + ".line")) && fs::exists(second);
    std::ofstream(logs_ / (table_ + ".line")) << line;
    std::ifstream script(isSecond ? second : logs_ / (table_ + ".script"));
    for (std::string deed; std::getline(script, deed);) deeds_.push_back(deed);
  }

  int Run() {
    const char* limit = std::getenv("ZENQAY_SWEEP_LIMIT");
    Note("begin " + table_ + (limit == nullptr ? "" : std::string(" with sweep limit ") + limit));
    int status = 0;
    for (at_ = 0; at_ < deeds_.size() && status == 0 && !ends_; ++at_) status = Do(deeds_[at_]);
    Note("end " + table_);
    return status;
  }

 private:
  int Do(const std::string& deed) {
    const std::string rest = deed.substr(std::min(deed.find(' '), deed.size() - 1) + 1);
    if (deed.starts_with("{")) {
      Say(deed + "\n");
    } else if (deed.starts_with("say ")) {
      std::cerr << rest << std::endl;
    } else if (deed.starts_with("wait ")) {
      while (!fs::exists(logs_ / rest) && !Stops()) ::usleep(2000);
    } else if (deed == "hold") {
      while (!Stops()) ::usleep(2000);
    } else if (deed == "ignore") {
      ::signal(SIGTERM, SIG_IGN);
    } else if (deed.starts_with("exit ")) {
      ends_ = true;
      return std::atoi(rest.c_str());
    } else if (deed.starts_with("signal ")) {
      ::raise(std::atoi(rest.c_str()));
    } else if (deed == "asked:") {
      ends_ = true;
    }
    return 0;
  }

  bool Stops() {
    if (asked == 0) return false;
    asked = 0;
    Note("asked " + table_);
    while (at_ < deeds_.size() && deeds_[at_] != "asked:") ++at_;
    return true;
  }

  /// A reader that is gone has asked to stop by other means as well.
  void Say(const std::string& text) {
    const char* channel = std::getenv("ZENQAY_CONTROL_FD");
    const bool isSaid = channel != nullptr && ::write(std::atoi(channel), text.data(), text.size()) > 0;
    if (!isSaid && errno != EPIPE) ends_ = true;
  }

  void Note(const std::string& what) {
    const std::string line = what + "\n";
    const int file = ::open((logs_ / "journal").c_str(), O_WRONLY | O_APPEND | O_CREAT, 0600);
    if (::write(file, line.data(), line.size()) < 0) ends_ = true;
    ::close(file);
  }

  std::vector<std::string> items_;
  fs::path logs_;
  std::string table_;
  std::vector<std::string> deeds_;
  std::size_t at_ = 0;
  bool ends_ = false;
};

}  // namespace

int main(int argc, char** argv) {
  if (argc != 2 || std::string(argv[1]) != "-") return 64;
  ::signal(SIGTERM, Ask);
  ::signal(SIGPIPE, SIG_IGN);
  std::string line{std::istreambuf_iterator<char>(std::cin), {}};
  if (line.ends_with('\n')) line.pop_back();
  return FakeJob(line).Run();
}
