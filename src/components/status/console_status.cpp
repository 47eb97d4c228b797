#include <algorithm>
#include <chrono>
#include <cstdio>
#include <optional>
#include <vector>

#include "components/status/status_components.h"
#include "components/status/status_object.h"
#include "process/status_codes.h"
#include "system/standard_streams.h"

namespace zenqay {
namespace {

using Clock = std::chrono::steady_clock;

enum class TableState { Started, Complete, InUse, Failed };

const char* StateName(TableState state) {
  switch (state) {
    case TableState::Started:
      return "started";
    case TableState::Complete:
      return "complete";
    case TableState::InUse:
      return "in use";
    case TableState::Failed:
      return "failed";
  }
  return "";
}

const char* StateColour(TableState state) {
  switch (state) {
    case TableState::Started:
      return "\033[33m";
    case TableState::Complete:
      return "\033[32m";
    case TableState::InUse:
      return "\033[36m";
    case TableState::Failed:
      return "\033[31m";
  }
  return "";
}

std::optional<TableState> StateOfSync(std::int32_t status) {
  switch (status) {
    case kSyncStarted:
      return TableState::Started;
    case kSyncComplete:
      return TableState::Complete;
    case kSyncFailed:
      return TableState::Failed;
    default:
      return std::nullopt;
  }
}

std::optional<TableState> StateOfTable(std::int32_t status) {
  switch (status) {
    case kTableStarted:
      return TableState::Started;
    case kTableComplete:
      return TableState::Complete;
    case kTableInUse:
      return TableState::InUse;
    case kTableFailed:
      return TableState::Failed;
    default:
      return std::nullopt;
  }
}

Text ElapsedText(Clock::duration elapsed) {
  const long long seconds = std::chrono::duration_cast<std::chrono::seconds>(elapsed).count();
  char text[48];
  std::snprintf(text, sizeof text, "%lld:%02lld:%02lld", seconds / 3600, seconds / 60 % 60, seconds % 60);
  return text;
}

/// A message comes before the state that it is about. One that no state follows told of a table in use, for which no
/// state of the synchronisation is sent.
class ConsoleStatus : public StatusObject {
 public:
  ConsoleStatus() : onTerminal_(IsTerminal(StandardStream::Output)) {}

  ~ConsoleStatus() override {
    SettleMessage();
    if (onTerminal_ && lineIsOpen_) WriteTo(StandardStream::Output, "\n");
    WriteTo(StandardStream::Output, Summary());
  }

 private:
  struct TableRow {
    std::optional<std::int32_t> id;
    TableState state;
    Text lastMessage;
    Clock::time_point start;
    Clock::duration elapsed{};
  };

  void Message(const Text& time, const Text& text) override {
    SettleMessage();
    message_ = text;
    line_ = time + "  " + text;
    if (onTerminal_) {
      ShowLine("");
    } else {
      WriteTo(StandardStream::Output, line_ + "\n");
    }
  }

  void Alert(const Text& time, const Text& text) override {
    if (onTerminal_) WriteTo(StandardStream::Output, "\r\033[K");
    WriteTo(StandardStream::Error, time + "  " + text + "\n");
  }

  void SyncStatus(std::int32_t tableId, std::int32_t status) override { Settle(tableId, StateOfSync(status)); }

  void TableStatus(std::int32_t, std::int32_t tableId, std::int32_t status, const Text&) override {
    Settle(tableId, StateOfTable(status));
  }

  void Settle(std::optional<std::int32_t> tableId, std::optional<TableState> state) {
    if (!state) return;
    TableRow& row = RowFor(tableId, *state);
    row.state = *state;
    row.elapsed = Clock::now() - row.start;
    if (!message_) return;
    row.lastMessage = *message_;
    message_.reset();
    if (!onTerminal_) return;
    ShowLine(StateColour(*state));
    if (*state != TableState::Started) EndLine();
  }

  void SettleMessage() {
    if (message_) Settle(std::nullopt, TableState::InUse);
  }

  /// The row of a table's copy: the one that is running, or a new one.
  TableRow& RowFor(std::optional<std::int32_t> tableId, TableState state) {
    for (auto row = rows_.rbegin(); row != rows_.rend(); ++row) {
      if (row->id != tableId || !tableId) continue;
      if (row->state == TableState::Started || row->state == state) return *row;
      break;
    }
    rows_.push_back({.id = tableId, .state = state, .lastMessage = {}, .start = Clock::now()});
    return rows_.back();
  }

  void ShowLine(const char* colour) {
    const bool coloured = *colour != '\0';
    WriteTo(StandardStream::Output, "\r\033[K" + Text(colour) + line_ + (coloured ? "\033[0m" : ""));
    lineIsOpen_ = true;
  }

  void EndLine() {
    WriteTo(StandardStream::Output, "\n");
    lineIsOpen_ = false;
  }

  Text Summary() const {
    if (rows_.empty()) return {};
    Text summary = "\nTable  State     Elapsed  Last message\n";
    for (const TableRow& row : rows_) {
      const Text id = row.id ? std::to_string(*row.id) : "-";
      char columns[64];
      std::snprintf(columns, sizeof columns, "%5s  %-8s  %7s  ", id.c_str(), StateName(row.state),
                    ElapsedText(row.elapsed).c_str());
      summary += columns + row.lastMessage + "\n";
    }
    return summary;
  }

  bool onTerminal_;
  bool lineIsOpen_ = false;  // on a terminal: the running table's line waits to be replaced
  Text line_;
  std::optional<Text> message_;  // not yet followed by a state
  std::vector<TableRow> rows_;
};

}  // namespace

std::shared_ptr<ComponentHost> ConsoleStatusHost::Make(const CatalogueElement&, const std::shared_ptr<ComponentHost>&) {
  return std::make_shared<ConsoleStatusHost>();
}

Object ConsoleStatusHost::Create(const Text& classId) {
  return CreateStatusHandle(classId, [](std::int16_t) { return Object(std::make_shared<ConsoleStatus>()); });
}

}  // namespace zenqay
