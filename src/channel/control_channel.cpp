#include "channel/control_channel.h"

#include <nlohmann/json.hpp>

#include "base/secrets.h"
#include "contracts/control_channel.h"
#include "system/process_id.h"
#include "system/stop_request.h"

namespace zenqay {
namespace {

using nlohmann::ordered_json;
using std::chrono::milliseconds;

constexpr milliseconds kPatience{1'000};
constexpr milliseconds kBetweenRows{1'000};

/// "2026-01-31T10:11:12.345Z"
Text UtcNow() {
  const auto now = std::chrono::floor<milliseconds>(std::chrono::system_clock::now());
  const auto day = std::chrono::floor<std::chrono::days>(now);
  const std::chrono::year_month_day date(day);
  const std::chrono::hh_mm_ss time(now - day);
  char text[64];
  std::snprintf(text, sizeof text, "%04d-%02u-%02uT%02d:%02d:%02d.%03dZ", static_cast<int>(date.year()),
                static_cast<unsigned>(date.month()), static_cast<unsigned>(date.day()),
                static_cast<int>(time.hours().count()), static_cast<int>(time.minutes().count()),
                static_cast<int>(time.seconds().count()), static_cast<int>(time.subseconds().count()));
  return text;
}

ordered_json LineOf(const char* kind) {
  return {{channel::kKind, kind}, {channel::kTime, UtcNow()}};
}

const char* WordOf(JobPhase phase) {
  switch (phase) {
    case JobPhase::Start:
      return channel::kDuringStart;
    case JobPhase::Copy:
      return channel::kDuringCopy;
    case JobPhase::Release:
      return channel::kDuringRelease;
    case JobPhase::End:
      return channel::kDuringEnd;
  }
  return "";
}

void AddText(ordered_json& line, const char* key, const Text& text) {
  if (!text.empty()) line[key] = WithoutSecrets(text);
}

}  // namespace

void ControlChannel::Begin(const Text& programVersion) {
  ordered_json line = LineOf(channel::kBegin);
  line[channel::kChannelVersion] = channel::kVersion;
  line[channel::kPid] = ProcessId();
  line[channel::kProgramVersion] = programVersion;
  Write(line);
}

void ControlChannel::End() {
  Write(LineOf(channel::kEnd));
}

void ControlChannel::Event(const char* kind, const Value& tableId, ordered_json values) {
  ordered_json line = LineOf(kind);
  line[channel::kId] = tableId.AsInt32();
  line[channel::kTable] = tableName_;
  line.update(values);
  Write(line);
}

void ControlChannel::Done() {
  hasTable_ = false;
  Write(LineOf(channel::kDone));
}

void ControlChannel::TableBegins(std::int32_t tableId, const Text& name) {
  hasTable_ = true;
  tableId_ = tableId;
  tableName_ = name;
  phase_ = JobPhase::Start;
  nextRows_ = Clock::now() + kBetweenRows;
}

void ControlChannel::TakesOver() {
  Write(LineAboutTable(channel::kTakeover));
}

void ControlChannel::RowDone(const RowCounts& counts) {
  const Clock::time_point now = Clock::now();
  if (now < nextRows_) return;
  nextRows_ = now + kBetweenRows;
  Rows(counts, std::nullopt);
}

void ControlChannel::PassDone(const RowCounts& counts, std::optional<std::int64_t> swept) {
  Rows(counts, swept);
}

void ControlChannel::Recorded(const RuntimeError& error) {
  ordered_json line = hasTable_ ? LineAboutTable(channel::kFailure) : LineOf(channel::kFailure);
  line[channel::kNumber] = error.number();
  AddText(line, channel::kSource, error.source());
  AddText(line, channel::kDescription, error.description());
  AddText(line, channel::kSqlState, error.sqlState());
  if (error.nativeError() != 0) line[channel::kNative] = error.nativeError();
  AddText(line, channel::kStatement, error.statement());
  AddText(line, channel::kCall, error.call());
  AddText(line, channel::kRowKey, error.row());
  line[channel::kDuring] = WordOf(phase_);
  Write(line);
}

ordered_json ControlChannel::LineAboutTable(const char* kind) const {
  ordered_json line = LineOf(kind);
  line[channel::kId] = tableId_;
  line[channel::kTable] = tableName_;
  return line;
}

void ControlChannel::Rows(const RowCounts& counts, std::optional<std::int64_t> swept) {
  ordered_json line = LineAboutTable(channel::kRows);
  line[channel::kMet] = counts.met;
  line[channel::kInserted] = counts.inserted;
  line[channel::kUpdated] = counts.updated;
  line[channel::kDeleted] = counts.deleted;
  if (swept) line[channel::kSwept] = *swept;
  Write(line);
}

void ControlChannel::Write(const ordered_json& line) {
  if (!descriptor_.isOpen()) return;
  const bool mayBeLost = line[channel::kKind] == channel::kRows;
  const Text text = line.dump(-1, ' ', false, ordered_json::error_handler_t::replace) + "\n";
  const auto outcome = descriptor_.Write(text, mayBeLost ? milliseconds(0) : kPatience);
  if (outcome == ChannelDescriptor::Outcome::Written) return;
  if (outcome == ChannelDescriptor::Outcome::NotNow && mayBeLost) return;
  descriptor_.GiveUp();
  if (outcome == ChannelDescriptor::Outcome::ReaderGone) RequestStop();
}

void ToldEvents::DataCopyJob_DataCopyAlreadyInProgress(Value iTime, Value iTableName) {
  channel_.Event(channel::kInUse, iTableName, ordered_json::object());
  inner_.DataCopyJob_DataCopyAlreadyInProgress(iTime, iTableName);
}

void ToldEvents::DataCopyJob_DataCopyComplete(Value iTime, Value iTableName, Value icount, Value ucount, Value dcount) {
  channel_.Event(channel::kComplete, iTableName,
                 {{channel::kInserted, icount.AsInt32()},
                  {channel::kUpdated, ucount.AsInt32()},
                  {channel::kDeleted, dcount.AsInt32()}});
  inner_.DataCopyJob_DataCopyComplete(iTime, iTableName, icount, ucount, dcount);
}

void ToldEvents::DataCopyJob_DataCopydone() {
  channel_.Done();
  inner_.DataCopyJob_DataCopydone();
}

void ToldEvents::DataCopyJob_DataCopyError(Value iTime, Value iTableName, Value ieNumber, Value ieMessage) {
  channel_.Event(channel::kError, iTableName,
                 {{channel::kNumber, ieNumber.AsInt32()}, {channel::kDescription, ieMessage.AsText()}});
  inner_.DataCopyJob_DataCopyError(iTime, iTableName, ieNumber, ieMessage);
}

void ToldEvents::DataCopyJob_DataCopyStarted(Value iTime, Value iTableName) {
  channel_.Event(channel::kStarted, iTableName, ordered_json::object());
  inner_.DataCopyJob_DataCopyStarted(iTime, iTableName);
}

}  // namespace zenqay
