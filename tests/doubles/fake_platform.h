// A platform that stands still: a fixed clock, a directory of the test's, and everything shown kept. The journal shows
// `box <text>`, `title <text>` and `logging <target>`.
#pragma once

#include <vector>

#include "contracts/platform.h"
#include "doubles/journal.h"
#include "system/append_file.h"

namespace zenqay {

class FakePlatform : public Platform {
 public:
  FakePlatform(Journal& journal, Text programDirectory)
      : journal_(journal), programDirectory_(std::move(programDirectory)) {}

  /// The clock: 31 January 2004, 10:11:12, unless the test sets it. With `nextTimes`, each look takes the next one.
  DateTime now = DateTime::FromParts({2004, 1, 31, 10, 11, 12});
  std::vector<DateTime> nextTimes;

  /// The journal shows `now` for each look at the clock, which every log record takes.
  bool showClock = false;

  Text title;
  Text logTarget;
  std::vector<Text> causes;  // what standard error would show

  AppendFile logFile;
  LogFile* log = &logFile;  // a test may put another one in its place

  DateTime Now() override {
    if (showClock) journal_.Note("now");
    if (!nextTimes.empty()) {
      now = nextTimes.front();
      nextTimes.erase(nextTimes.begin());
    }
    return now;
  }
  Text ProgramDirectory() override { return programDirectory_; }
  void SetTitle(const Text& text) override {
    title = text;
    journal_.Line("title " + text);
  }
  void ShowMessageBox(const Text& text) override { journal_.Line("box " + text); }
  LogFile& Log() override { return *log; }
  void StartLogging(const Text& target) override {
    logTarget = target;
    journal_.Line("logging " + target);
  }
  using Platform::NameCause;
  void NameCause(const Text& cause) override { causes.push_back(cause); }

 private:
  Journal& journal_;
  Text programDirectory_;
};

}  // namespace zenqay
