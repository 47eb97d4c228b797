// The words of the control channel, on which a job tells whoever started it what becomes of it: JSON objects, one a
// line. Both sides take them from here; docs/control.md says what each line holds.
#pragma once

namespace zenqay::channel {

/// Grows when a line changes its meaning. New kinds and new keys leave it as it is: a reader passes over what it does
/// not know.
inline constexpr int kVersion = 1;

// The environment of a job.
inline constexpr const char* kDescriptorVariable = "ZENQAY_CONTROL_FD";
inline constexpr const char* kSweepLimitVariable = "ZENQAY_SWEEP_LIMIT";

// The kinds of lines, the values of kKind.
inline constexpr const char* kBegin = "begin";
inline constexpr const char* kStarted = "started";
inline constexpr const char* kInUse = "in_use";
inline constexpr const char* kTakeover = "takeover";
inline constexpr const char* kRows = "rows";
inline constexpr const char* kFailure = "failure";
inline constexpr const char* kError = "error";
inline constexpr const char* kComplete = "complete";
inline constexpr const char* kDone = "done";
inline constexpr const char* kEnd = "end";

// Keys of every line.
inline constexpr const char* kKind = "kind";
inline constexpr const char* kTime = "time";  // ISO 8601 in UTC with milliseconds

// Keys of `begin`.
inline constexpr const char* kChannelVersion = "channel";
inline constexpr const char* kPid = "pid";
inline constexpr const char* kProgramVersion = "version";

// Keys of every line about a table.
inline constexpr const char* kId = "id";
inline constexpr const char* kTable = "table";

// Counts of rows: of `rows` and `complete`.
inline constexpr const char* kMet = "met";
inline constexpr const char* kInserted = "inserted";
inline constexpr const char* kUpdated = "updated";
inline constexpr const char* kDeleted = "deleted";
inline constexpr const char* kSwept = "swept";  // of the last `rows` of a full copy alone

// Keys of `failure`; `error` has the first and the third. What there is nothing to say of is left out.
inline constexpr const char* kNumber = "number";
inline constexpr const char* kSource = "source";
inline constexpr const char* kDescription = "description";
inline constexpr const char* kSqlState = "sqlstate";
inline constexpr const char* kNative = "native";
inline constexpr const char* kStatement = "statement";
inline constexpr const char* kCall = "call";
inline constexpr const char* kRowKey = "key";
inline constexpr const char* kDuring = "during";

// The values of kDuring.
inline constexpr const char* kDuringStart = "start";
inline constexpr const char* kDuringCopy = "copy";
inline constexpr const char* kDuringRelease = "release";
inline constexpr const char* kDuringEnd = "end";

}  // namespace zenqay::channel
