// What a job says on the control channel, as the one reads it who started the job.
#pragma once

#include <cstdint>
#include <optional>
#include <vector>

#include "base/text_functions.h"
#include "contracts/job_listener.h"

namespace zenqay {

/// One failure record of a job. Texts that it does not have are empty.
struct JobFailure {
  Text time;
  std::int64_t number = 0;
  Text source;
  Text description;
  Text sqlState;
  Text native;
  Text statement;
  Text call;
  Text rowKey;
  Text during;

  bool operator==(const JobFailure&) const = default;
};

struct ChannelLine {
  Text kind;
  std::int64_t channelVersion = 0;  // of `begin`
  Text programVersion;
  Text table;
  RowCounts counts;    // of `rows` and `complete`
  JobFailure failure;  // of `failure`; number and description of `error` too
};

/// Nothing for a line that is none of the channel's, such as one that was broken off.
std::optional<ChannelLine> ReadChannelLine(std::string_view text);

/// A stream as lines.
class LineBuffer {
 public:
  /// What arrives is added here.
  Text& rest() { return rest_; }

  /// The lines that are complete; with `atEnd` what stands behind the last of them too.
  std::vector<Text> TakeLines(bool atEnd = false);

 private:
  Text rest_;
};

}  // namespace zenqay
