// The control channel: tells whoever started the job what becomes of it, in JSON lines. It exists only where it is
// asked for.
#pragma once

#include <chrono>
#include <nlohmann/json_fwd.hpp>
#include <span>

#include "contracts/job_listener.h"
#include "contracts/value.h"
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

  /// An event of the job, as HeardEvents tells it.
  void Event(std::string_view name, std::span<const Value> arguments);

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

}  // namespace zenqay
