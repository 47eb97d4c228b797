#include "channel/control_channel.h"

#include <nlohmann/json.hpp>

#include "base/json_text.h"
#include "base/secrets.h"
#include "contracts/control_channel.h"
#include "system/process_id.h"
#include "system/stop_request.h"
#include "system/utc_stamp.h"

namespace zenqay {
namespace {

using nlohmann::ordered_json;
using std::chrono::milliseconds;

constexpr milliseconds kPatience{1'000};
constexpr milliseconds kBetweenRows{1'000};

ordered_json LineOf(const char* kind) {
  return {{channel::kKind, kind}, {channel::kTime, UtcStamp()}};
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

/// How an event is told: its kind, and the keys of what stands behind its time and its table.
struct EventForm {
  std::string_view name;
  const char* kind;
  std::array<const char*, 3> keys;
};

constexpr EventForm kEvents[] = {
    {"DataCopyAlreadyInProgress", channel::kInUse, {}},
    {"DataCopyComplete", channel::kComplete, {channel::kInserted, channel::kUpdated, channel::kDeleted}},
    {"DataCopydone", channel::kDone, {}},
    {"DataCopyError", channel::kError, {channel::kNumber, channel::kDescription}},
    {"DataCopyStarted", channel::kStarted, {}},
};

ordered_json JsonOf(const Value& value) {
  if (const Text* text = value.If<Text>()) return *text;
  return value.AsInt32();
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

void ControlChannel::Event(std::string_view name, std::span<const Value> arguments) {
  const auto* form = std::ranges::find(kEvents, name, &EventForm::name);
  ordered_json line = LineOf(form->kind);
  if (arguments.empty()) {
    hasTable_ = false;
  } else {
    line[channel::kId] = arguments[1].AsInt32();
    line[channel::kTable] = tableName_;
    for (std::size_t i = 2; i < arguments.size(); ++i) line[form->keys[i - 2]] = JsonOf(arguments[i]);
  }
  Write(line);
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
  const Text text = JsonText(line) + "\n";
  const auto outcome = descriptor_.Write(text, mayBeLost ? milliseconds(0) : kPatience);
  if (outcome == ChannelDescriptor::Outcome::Written) return;
  if (outcome == ChannelDescriptor::Outcome::NotNow && mayBeLost) return;
  descriptor_.GiveUp();
  if (outcome == ChannelDescriptor::Outcome::ReaderGone) RequestStop();
}

}  // namespace zenqay
