#include "control/run_views.h"

#include <gtest/gtest.h>

#include <sstream>

namespace zenqay {
namespace {

TableRun TableIn(const Text& table, TableState state, int attempts = 1) {
  TableRun run{.task = {.job = "nightly", .table = table}};
  run.state = state;
  run.attempts = attempts;
  return run;
}

TableRun::Moment At(int seconds) {
  return TableRun::Moment(Seconds(seconds));
}

TEST(LiveLine, ShowsStateRowsRateTimeAndWhatIsLeft) {
  TableRun run = TableIn("SITE", TableState::Copying);
  run.counts = {.met = 1200, .inserted = 5};
  run.task.expected = Seconds(90);

  EXPECT_EQ(LiveLine(run, "SITE", At(30)),
            "SITE                 copying               1200 rows      40/s     0:30  about 1:00 left");
  EXPECT_EQ(LiveLine(run, "SITE", At(100)),
            "SITE                 copying               1200 rows      12/s     1:40  last time 1:30");
}

TEST(LiveLine, StandsStillBehindTheEnd) {
  TableRun run = TableIn("SITE", TableState::Failed, 2);
  run.ended = At(10);
  run.words = "13: Type mismatch";

  EXPECT_EQ(LiveLine(run, "nightly SITE", At(30)),
            "nightly SITE         failed (attempt 2)         0 rows       0/s     0:10  13: Type mismatch");
  EXPECT_EQ(LiveLine(TableIn("SITE", TableState::Waiting, 0), "SITE", At(30)), "SITE                 waiting         ");
}

TEST(LiveView, RedrawsItsLinesAndCutsThemToTheTerminal) {
  std::ostringstream out;
  LiveView view(out, [] { return TerminalSize{30, 24}; });
  std::vector<TableRun> runs = {TableIn("SITE", TableState::Waiting, 0), TableIn("Köln", TableState::Waiting, 0)};

  view.Changed(runs, 0);
  view.Tick(runs);

  EXPECT_EQ(out.str(),
            "\rSITE                 waiting \x1b[K\n"
            "\rKöln                waiting  \x1b[K\n"
            "\x1b[J"
            "\x1b[2A"
            "\rSITE                 waiting \x1b[K\n"
            "\rKöln                waiting  \x1b[K\n"
            "\x1b[J");
}

TEST(LiveView, ShowsWhatRunsWhereThereIsNoRoomForAll) {
  std::ostringstream out;
  LiveView view(out, [] { return TerminalSize{12, 3}; });
  const std::vector<TableRun> runs = {TableIn("A", TableState::Waiting, 0), TableIn("B", TableState::Complete),
                                      TableIn("C", TableState::Copying), TableIn("D", TableState::Waiting, 0)};

  view.Tick(runs);

  EXPECT_EQ(out.str(), "\rB          \x1b[K\n\rC          \x1b[K\n\x1b[J");
}

TEST(PlainView, NamesTheJobWhereThereAreSeveral) {
  std::ostringstream out;
  PlainView view(out, [] { return Text("10:11:12"); });
  std::vector<TableRun> runs = {TableIn("SITE", TableState::Beginning, 2), TableIn("SITE", TableState::Copying)};
  runs[1].task.job = "hourly";
  runs[1].hasTakenOver = true;

  view.Changed(runs, 0);
  view.Changed(runs, 1);

  EXPECT_EQ(out.str(),
            "10:11:12 nightly SITE: beginning (attempt 2)\n"
            "10:11:12 hourly SITE: copying (it was left taken by a job that has died)\n");
}

}  // namespace
}  // namespace zenqay
