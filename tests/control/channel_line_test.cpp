#include "control/channel_line.h"

#include <gtest/gtest.h>

namespace zenqay {
namespace {

TEST(ReadChannelLine, ReadsWhatALineHas) {
  const auto begin =
      ReadChannelLine(R"({"kind":"begin","time":"2026-01-31T10:11:12.000Z","channel":1,"pid":7,"version":"0.1.0"})");
  EXPECT_EQ(begin->kind, "begin");
  EXPECT_EQ(begin->channelVersion, 1);
  EXPECT_EQ(begin->programVersion, "0.1.0");

  const auto rows =
      ReadChannelLine(R"({"kind":"rows","id":1,"table":"SITE","met":9,"inserted":2,"updated":7,"deleted":1})");
  EXPECT_EQ(rows->table, "SITE");
  EXPECT_EQ(rows->counts, (RowCounts{9, 2, 7, 1}));

  const auto failure = ReadChannelLine(
      R"({"kind":"failure","time":"T","number":-2147217900,"source":"SQLite","description":"no such column","sqlstate":)"
      R"("42000","native":1,"statement":"UPDATE SITE","call":"","key":"SITE='A1'","during":"copy"})");
  EXPECT_EQ(failure->failure, (JobFailure{"T", -2147217900, "SQLite", "no such column", "42000", "1", "UPDATE SITE", "",
                                          "SITE='A1'", "copy"}));
}

TEST(ReadChannelLine, PassesOverWhatItDoesNotKnow) {
  EXPECT_EQ(ReadChannelLine(R"({"kind":"new","table":7,"met":"many"})")->counts, RowCounts{});
  for (const char* line : {"", "{}", "[1]", "{\"kind\":7.5}", "{\"kind\":\"rows\"", "rows"}) {
    EXPECT_FALSE(ReadChannelLine(line)) << line;
  }
}

TEST(ReadChannelLine, MasksPasswordsThatAJobWouldLetThrough) {
  EXPECT_EQ(ReadChannelLine(R"({"kind":"failure","description":"PWD=geheim;x=1"})")->failure.description,
            "PWD=***;x=1");
}

TEST(LineBuffer, GivesWholeLinesAndTheRestAtTheEnd) {
  LineBuffer buffer;
  buffer.rest() += "a\nb";
  EXPECT_EQ(buffer.TakeLines(), std::vector<Text>{"a"});
  buffer.rest() += "c\n\nd";
  EXPECT_EQ(buffer.TakeLines(), (std::vector<Text>{"bc", ""}));
  EXPECT_EQ(buffer.TakeLines(true), std::vector<Text>{"d"});
  EXPECT_EQ(buffer.TakeLines(true), std::vector<Text>{});
}

}  // namespace
}  // namespace zenqay
