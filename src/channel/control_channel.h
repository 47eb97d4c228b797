// The control channel: tells whoever started the job what becomes of it, in JSON lines. It exists only where it is
// asked for.
#pragma once

#include <chrono>
#include <nlohmann/json_fwd.hpp>

#include "contracts/data_copy_events.h"
#include "contracts/job_listener.h"
#include "system/channel_descriptor.h"

namespace zenqay {

/// A reader that stands still costs `rows` lines first. Any other line is waited with for a second; then the channel is
/// given up and the job goes on. Behind a reader that is gone the job is asked to stop.
class ControlChannel : public JobListener {
 public:
  /// `descriptor` must outlive the channel.
  explicit ControlChannel(ChannelDescriptor& descriptor) : descriptor_(descriptor) {}

  void Begin(const Text& programVersion);
  void End();

  /// An event of the job, by its kind, with the values that it has.
  void Event(const char* kind, const Value& tableId, nlohmann::ordered_json values);
  void Done();

  bool wantsSweptRows() const override { return true; }
  void TableBegins(std::int32_t tableId, const Text& name) override;
  void PhaseBegins(JobPhase phase) override { phase_ = phase; }
  void TakesOver() override;
  void RowDone(const RowCounts& counts) override;
  void PassDone(const RowCounts& counts, std::optional<std::int64_t> swept) override;
  void Recorded(const RuntimeError& error) override;

 private:
  using Clock = std::chrono::steady_clock;

  nlohmann::ordered_json LineAboutTable(const char* kind) const;
  void Rows(const RowCounts& counts, std::optional<std::int64_t> swept);
  void Write(const nlohmann::ordered_json& line);

  ChannelDescriptor& descriptor_;
  bool hasTable_ = false;
  std::int32_t tableId_ = 0;
  Text tableName_;
  JobPhase phase_ = JobPhase::Start;
  Clock::time_point nextRows_;
};

/// Tells each event before its sink is called.
class ToldEvents : public DataCopyEvents {
 public:
  ToldEvents(DataCopyEvents& inner, ControlChannel& channel) : inner_(inner), channel_(channel) {}

  void DataCopyJob_DataCopyAlreadyInProgress(Value iTime, Value iTableName) override;
  void DataCopyJob_DataCopyComplete(Value iTime, Value iTableName, Value icount, Value ucount, Value dcount) override;
  void DataCopyJob_DataCopydone() override;
  void DataCopyJob_DataCopyError(Value iTime, Value iTableName, Value ieNumber, Value ieMessage) override;
  void DataCopyJob_DataCopyStarted(Value iTime, Value iTableName) override;

 private:
  DataCopyEvents& inner_;
  ControlChannel& channel_;
};

}  // namespace zenqay
