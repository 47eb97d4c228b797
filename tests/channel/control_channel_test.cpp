#include "channel/control_channel.h"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <unistd.h>

#include <csignal>
#include <nlohmann/json.hpp>
#include <regex>

#include "contracts/heard_events.h"
#include "doubles/child_process.h"
#include "process/logs.h"
#include "system/stop_request.h"

namespace zenqay {
namespace {

/// A pipe with a channel at its one end.
class ChannelFixture {
 public:
  ChannelFixture() {
    if (::pipe2(ends_, O_CLOEXEC) != 0) throw std::runtime_error("no pipe");
    ::fcntl(ends_[0], F_SETFL, O_NONBLOCK);
    descriptor_ = std::make_unique<ChannelDescriptor>(ends_[1]);
    channel = std::make_unique<ControlChannel>(*descriptor_);
  }
  ChannelFixture(const ChannelFixture&) = delete;
  ChannelFixture& operator=(const ChannelFixture&) = delete;
  ~ChannelFixture() { CloseReader(); }

  std::unique_ptr<ControlChannel> channel;

  /// What has arrived, times and the process id masked.
  Text Lines() const {
    Text text;
    char piece[4096];
    for (ssize_t count = ::read(ends_[0], piece, sizeof piece); count > 0;
         count = ::read(ends_[0], piece, sizeof piece)) {
      text.append(piece, static_cast<std::size_t>(count));
    }
    text = std::regex_replace(text, std::regex("[0-9-]{10}T[0-9:]{8}\\.[0-9]{3}Z"), "<moment>");
    return std::regex_replace(text, std::regex("\"pid\":[0-9]+"), "\"pid\":<pid>");
  }

  void CloseReader() {
    if (ends_[0] >= 0) ::close(ends_[0]);
    ends_[0] = -1;
  }

  bool isOpen() const { return descriptor_->isOpen(); }

 private:
  int ends_[2] = {-1, -1};
  std::unique_ptr<ChannelDescriptor> descriptor_;
};

/// Sinks that do nothing.
class NoSinks : public DataCopyEvents {
 public:
  void DataCopyJob_DataCopyAlreadyInProgress(Value, Value) override {}
  void DataCopyJob_DataCopyComplete(Value, Value, Value, Value, Value) override {}
  void DataCopyJob_DataCopydone() override {}
  void DataCopyJob_DataCopyError(Value, Value, Value, Value) override {}
  void DataCopyJob_DataCopyStarted(Value, Value) override {}
};

const std::int16_t kSite = 1;

TEST(ControlChannel, TellsEachEventWithItsTableAndValues) {
  ChannelFixture fixture;
  NoSinks sinks;
  HeardEvents events(
      sinks, [&](std::string_view name, std::span<const Value> arguments) { fixture.channel->Event(name, arguments); });

  fixture.channel->Begin("1.2.3");
  fixture.channel->TableBegins(1, "SITE");
  fixture.channel->TakesOver();
  events.DataCopyJob_DataCopyStarted(DateTime(), kSite);
  fixture.channel->PassDone({.met = 4, .inserted = 1, .updated = 3, .deleted = 2}, 2);
  events.DataCopyJob_DataCopyComplete(DateTime(), kSite, 4, 0, 0);
  events.DataCopyJob_DataCopyAlreadyInProgress(DateTime(), kSite);
  events.DataCopyJob_DataCopyError(DateTime(), kSite, std::int16_t{-1}, "See the log file.");
  events.DataCopyJob_DataCopydone();
  fixture.channel->End();

  EXPECT_EQ(
      fixture.Lines(),
      "{\"kind\":\"begin\",\"time\":\"<moment>\",\"channel\":1,\"pid\":<pid>,\"version\":\"1.2.3\"}\n"
      "{\"kind\":\"takeover\",\"time\":\"<moment>\",\"id\":1,\"table\":\"SITE\"}\n"
      "{\"kind\":\"started\",\"time\":\"<moment>\",\"id\":1,\"table\":\"SITE\"}\n"
      "{\"kind\":\"rows\",\"time\":\"<moment>\",\"id\":1,\"table\":\"SITE\",\"met\":4,\"inserted\":1,\"updated\":3,"
      "\"deleted\":2,\"swept\":2}\n"
      "{\"kind\":\"complete\",\"time\":\"<moment>\",\"id\":1,\"table\":\"SITE\",\"inserted\":4,\"updated\":0,"
      "\"deleted\":0}\n"
      "{\"kind\":\"in_use\",\"time\":\"<moment>\",\"id\":1,\"table\":\"SITE\"}\n"
      "{\"kind\":\"error\",\"time\":\"<moment>\",\"id\":1,\"table\":\"SITE\",\"number\":-1,\"description\":\"See the "
      "log file.\"}\n"
      "{\"kind\":\"done\",\"time\":\"<moment>\"}\n"
      "{\"kind\":\"end\",\"time\":\"<moment>\"}\n");
}

TEST(ControlChannel, TellsOfAFailureWhatItKnowsWithoutPasswords) {
  ChannelFixture fixture;
  const RuntimeError reported(std::vector<ProviderError>{{-2147217873, "driver", "no; PWD=secret", "23505", 7}});

  fixture.channel->Recorded(RuntimeError(5, "me", "no line").OfCall("getSite"));
  fixture.channel->TableBegins(1, "SITE");
  fixture.channel->PhaseBegins(JobPhase::Copy);
  fixture.channel->Recorded(reported.With("UPDATE Site").OfRow("SITE=A1"));
  fixture.channel->PhaseBegins(JobPhase::Release);
  fixture.channel->Recorded(RuntimeError(6, "", "x"));
  fixture.channel->PhaseBegins(JobPhase::End);
  fixture.channel->Recorded(RuntimeError(6, "", "x"));

  EXPECT_EQ(
      fixture.Lines(),
      "{\"kind\":\"failure\",\"time\":\"<moment>\",\"number\":5,\"source\":\"me\",\"description\":\"no line: "
      "getSite\",\"call\":\"getSite\",\"during\":\"start\"}\n"
      "{\"kind\":\"failure\",\"time\":\"<moment>\",\"id\":1,\"table\":\"SITE\",\"number\":-2147217873,\"source\":"
      "\"driver\",\"description\":\"no; PWD=***\",\"sqlstate\":\"23505\",\"native\":7,\"statement\":\"UPDATE "
      "Site\",\"key\":\"SITE=A1\",\"during\":\"copy\"}\n"
      "{\"kind\":\"failure\",\"time\":\"<moment>\",\"id\":1,\"table\":\"SITE\",\"number\":6,\"description\":\"x\","
      "\"during\":\"release\"}\n"
      "{\"kind\":\"failure\",\"time\":\"<moment>\",\"id\":1,\"table\":\"SITE\",\"number\":6,\"description\":\"x\","
      "\"during\":\"end\"}\n");
}

TEST(ControlChannel, LosesRowsOfAReaderThatStandsStillAndIsGivenUpAtTheNextEvent) {
  ChannelFixture fixture;
  fixture.channel->TableBegins(1, "SITE");
  for (int i = 0; i < 2'000; ++i) fixture.channel->PassDone({}, std::nullopt);  // more than a pipe holds
  EXPECT_TRUE(fixture.isOpen());

  fixture.channel->End();

  EXPECT_FALSE(fixture.isOpen());
  EXPECT_EQ(fixture.Lines().find("\"end\""), Text::npos);
}

TEST(ControlChannel, AsksTheJobToStopWhenItsReaderIsGone) {
  const ChildRun child = RunInChild([]() -> Text {
    std::signal(SIGPIPE, SIG_IGN);
    ChannelFixture fixture;
    fixture.CloseReader();
    const bool before = IsStopRequested();
    fixture.channel->End();
    return Text(before ? "asked" : "not asked") + ", " + (IsStopRequested() ? "asked" : "not asked");
  });

  EXPECT_EQ(child.result, "not asked, asked");
}

TEST(StopRequest, OfOneWhoWaitsIsAReaderThatIsGoneToo) {
  const ChildRun child = RunInChild([]() -> Text {
    int ends[2];
    if (::pipe(ends) != 0) return "no pipe";
    const ChannelDescriptor descriptor(ends[1]);
    StopRequest request;
    request.Watch(descriptor);
    request.Allow();
    const bool before = request.EndsWait();
    ::close(ends[0]);
    return Text(before ? "ends" : "waits") + ", " + (request.EndsWait() ? "ends" : "waits");
  });

  EXPECT_EQ(child.result, "waits, ends");
}

TEST(ChannelDescriptor, IsNotOpenForANumberThatIsNone) {
  EXPECT_FALSE(ChannelDescriptor(-1).isOpen());
  EXPECT_FALSE(ChannelDescriptor(987'654).isOpen());
}

}  // namespace
}  // namespace zenqay
