#include "control/run_views.h"

#include <algorithm>
#include <array>
#include <ctime>
#include <nlohmann/json.hpp>

#include "control/run_json.h"

namespace zenqay {
namespace {

using Json = nlohmann::ordered_json;

Text Padded(Text text, std::size_t width) {
  if (text.size() < width) text.append(width - text.size(), ' ');
  return text;
}

Text PaddedLeft(const Text& text, std::size_t width) {
  return text.size() < width ? Text(width - text.size(), ' ') + text : text;
}

/// Whole characters of UTF-8, as many as fit.
Text Cut(const Text& text, int columns) {
  std::size_t end = 0;
  for (int column = 0; column < columns && end < text.size(); ++column) {
    ++end;
    while (end < text.size() && (text[end] & 0xC0) == 0x80) ++end;
  }
  return text.substr(0, end);
}

Seconds ElapsedOf(const TableRun& run, TableRun::Moment now) {
  if (run.attempts == 0) return Seconds(0);
  const TableRun::Moment until = run.state == TableState::Waiting || IsEnd(run.state) ? run.ended : now;
  return std::chrono::duration_cast<Seconds>(until - run.started);
}

/// The positions of the tables that are shown, in their order.
std::vector<std::size_t> Shown(const std::vector<TableRun>& runs, std::size_t lines) {
  std::vector<std::size_t> all(runs.size());
  for (std::size_t i = 0; i < all.size(); ++i) all[i] = i;
  if (all.size() <= lines) return all;
  const auto rank = [&](std::size_t i) {
    if (runs[i].state == TableState::Waiting) return 2;
    return IsEnd(runs[i].state) ? 1 : 0;
  };
  std::stable_sort(all.begin(), all.end(), [&](std::size_t a, std::size_t b) { return rank(a) < rank(b); });
  all.resize(lines);
  std::sort(all.begin(), all.end());
  return all;
}

Text LocalTimeOfDay() {
  const std::time_t now = std::time(nullptr);
  std::array<char, 16> text{};
  std::strftime(text.data(), text.size(), "%H:%M:%S", std::localtime(&now));
  return text.data();
}

Text AttemptText(const TableRun& run) {
  return run.attempts > 1 ? " (attempt " + std::to_string(run.attempts) + ")" : "";
}

}  // namespace

bool HaveSeveralJobs(const std::vector<TableRun>& runs) {
  return std::any_of(runs.begin(), runs.end(),
                     [&](const TableRun& run) { return run.task.job != runs.front().task.job; });
}

Text TitleOf(const TableRun& run, bool hasSeveralJobs) {
  return hasSeveralJobs ? run.task.job + " " + run.task.table : run.task.table;
}

std::int64_t RowsOf(const RowCounts& counts) {
  return std::max(counts.met, counts.inserted + counts.updated);
}

Text CountsText(const RowCounts& counts) {
  return std::to_string(RowsOf(counts)) + " rows met, " + std::to_string(counts.inserted) + " inserted, " +
         std::to_string(counts.updated) + " updated, " + std::to_string(counts.deleted) + " deleted";
}

void PlainView::Changed(const std::vector<TableRun>& runs, std::size_t which) {
  const TableRun& run = runs[which];
  Text line = timeOfDay_() + " " + TitleOf(run, HaveSeveralJobs(runs)) + ": " + StateWord(run.state);
  if (run.state == TableState::Beginning) line += AttemptText(run);
  if (run.state == TableState::Copying && run.hasTakenOver) line += " (it was left taken by a job that has died)";
  if (run.state == TableState::Complete) {
    line += ", " + CountsText(run.counts) + ", " + DurationText(ElapsedOf(run, run.ended));
  }
  if (!run.words.empty()) line += ": " + run.words;
  out_ << line << '\n' << std::flush;
}

Text LiveLine(const TableRun& run, const Text& title, TableRun::Moment now) {
  const Seconds elapsed = ElapsedOf(run, now);
  const std::int64_t rows = RowsOf(run.counts);
  Text line = Padded(title, 20) + " " + Padded(StateWord(run.state) + AttemptText(run), 16);
  if (run.attempts == 0) return line + (run.words.empty() ? "" : " " + run.words);
  const std::int64_t rate = elapsed.count() > 0 ? rows / elapsed.count() : 0;
  line += " " + PaddedLeft(std::to_string(rows), 9) + " rows " + PaddedLeft(std::to_string(rate), 7) + "/s " +
          PaddedLeft(DurationText(elapsed), 8);
  const bool runsStill = run.state == TableState::Beginning || run.state == TableState::Copying;
  if (runsStill && run.task.expected > Seconds(0)) {
    const Seconds left = run.task.expected - elapsed;
    line += left > Seconds(0) ? "  about " + DurationText(left) + " left"
                              : "  last time " + DurationText(run.task.expected);
  }
  return line + (run.words.empty() ? "" : "  " + run.words);
}

void LiveView::Draw(const std::vector<TableRun>& runs) {
  const TerminalSize size = size_();
  const bool hasSeveralJobs = HaveSeveralJobs(runs);
  const TableRun::Moment now = std::chrono::steady_clock::now();
  Text picture = drawn_ > 0 ? "\x1b[" + std::to_string(drawn_) + "A" : "";
  drawn_ = 0;
  for (const std::size_t which : Shown(runs, static_cast<std::size_t>(std::max(size.rows - 1, 1)))) {
    const Text line = LiveLine(runs[which], TitleOf(runs[which], hasSeveralJobs), now);
    picture += "\r" + Cut(line, size.columns - 1) + "\x1b[K\n";
    ++drawn_;
  }
  out_ << picture << "\x1b[J" << std::flush;
}

void JsonView::Changed(const std::vector<TableRun>& runs, std::size_t which) {
  Json line = {{"kind", "table"}, {"time", time_()}};
  line.update(TableJson(runs[which]));
  out_ << JsonText(line) << '\n' << std::flush;
}

void JsonView::End(int status) {
  out_ << JsonText({{"kind", "end"}, {"time", time_()}, {"status", status}}) << '\n' << std::flush;
}

RunView::RunView(std::ostream& out, std::function<TerminalSize()> terminal, bool asJson)
    : out_(out), json_(out, [] { return UtcText(UtcNow()); }), plain_(out, LocalTimeOfDay), live_(out, terminal) {
  RunListener* const people = terminal().columns > 0 ? static_cast<RunListener*>(&live_) : &plain_;
  view_ = asJson ? &json_ : people;
}

void RunView::Begin(const std::vector<TableRun>& runs) {
  for (std::size_t which = 0; which < runs.size(); ++which) {
    if (IsEnd(runs[which].state)) Changed(runs, which);
  }
}

void RunView::End(const std::vector<TableRun>& runs, int status) {
  if (view_ == &json_) {
    json_.End(status);
  } else {
    WriteEnd(out_, runs);
  }
}

void WriteEnd(std::ostream& out, const std::vector<TableRun>& runs) {
  constexpr std::array kEnds = {TableState::Complete,      TableState::Failed,  TableState::InUse,
                                TableState::CouldNotBegin, TableState::Stopped, TableState::TimedOut};
  const bool hasSeveralJobs = HaveSeveralJobs(runs);
  for (const TableRun& run : runs) {
    if (run.state == TableState::Complete) continue;
    out << '\n' << TitleOf(run, hasSeveralJobs) << ": " << StateWord(run.state);
    if (!run.words.empty()) out << ": " << run.words;
    out << '\n';
    for (const JobFailure& failure : run.failures) {
      out << "    " << FailureText(failure) << '\n';
      if (!failure.statement.empty()) out << "      statement: " << failure.statement << '\n';
      if (!failure.call.empty()) out << "      call: " << failure.call << '\n';
    }
    if (const Text advice = AdviceFor(run); !advice.empty()) out << "  " << advice << '\n';
  }
  Text summary;
  for (const TableState state : kEnds) {
    const auto count = std::count_if(runs.begin(), runs.end(), [&](const TableRun& run) { return run.state == state; });
    if (count > 0) summary += (summary.empty() ? "" : ", ") + std::to_string(count) + " " + StateWord(state);
  }
  out << '\n' << summary << '\n' << std::flush;
}

}  // namespace zenqay
