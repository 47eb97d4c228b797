#include "system/stop_request.h"

#include <gtest/gtest.h>

#include <csignal>
#include <thread>

#include "doubles/child_process.h"

namespace zenqay {
namespace {

TEST(StopRequest, IsThereAfterEachOfTheThreeSignals) {
  for (const int signal : {SIGTERM, SIGINT, SIGHUP}) {
    const ChildRun child = RunInChild([&] {
      const StopRequest request;
      ListenForStopRequests();
      const Text before = request.isRequested() ? "asked" : "not asked";
      std::raise(signal);
      std::raise(signal);  // the same request
      return before + ", " + (request.isRequested() ? "asked" : "not asked");
    });

    EXPECT_EQ(child.result, "not asked, asked");
  }
}

TEST(StopRequest, ThatComesMoreThanFiveSecondsLaterEndsTheProcess) {
  const ChildRun child = RunInChild([]() -> Text {
    ListenForStopRequests();
    std::raise(SIGTERM);
    std::this_thread::sleep_for(std::chrono::milliseconds(5'100));
    std::raise(SIGTERM);
    return "goes on";
  });

  EXPECT_EQ(child.result, "");
}

TEST(StopRequest, IsNotMadeByASignalThatTheProcessIgnores) {
  const ChildRun child = RunInChild([]() -> Text {
    std::signal(SIGHUP, SIG_IGN);
    ListenForStopRequests();
    std::raise(SIGHUP);
    return IsStopRequested() ? "asked" : "not asked";
  });

  EXPECT_EQ(child.result, "not asked");
}

TEST(Interruption, BreaksOffOnlyWhereItMay) {
  const ChildRun child = RunInChild([]() -> Text {
    StopRequest request;
    RequestStop();
    request.Check();
    request.Allow();
    try {
      request.Check();
    } catch (const RuntimeError& error) {
      request.Forbid();
      request.Check();
      return std::to_string(error.number()) + ": " + error.description() + (request.EndsWait() ? ", ends waits" : "");
    }
    return "goes on";
  });

  EXPECT_EQ(child.result, "18: User interrupt occurred");
}

}  // namespace
}  // namespace zenqay
