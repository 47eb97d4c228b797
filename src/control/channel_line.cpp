#include "control/channel_line.h"

#include <nlohmann/json.hpp>

#include "base/secrets.h"
#include "contracts/control_channel.h"

namespace zenqay {
namespace {

using Json = nlohmann::json;

/// A text, or the text of a number; empty for anything else.
Text TextAt(const Json& line, const char* key) {
  const auto found = line.find(key);
  if (found == line.end()) return "";
  if (found->is_string()) return WithoutSecrets(found->get<Text>());
  return found->is_number_integer() ? std::to_string(found->get<std::int64_t>()) : Text();
}

std::int64_t NumberAt(const Json& line, const char* key) {
  const auto found = line.find(key);
  return found != line.end() && found->is_number_integer() ? found->get<std::int64_t>() : 0;
}

}  // namespace

std::optional<ChannelLine> ReadChannelLine(std::string_view text) {
  const Json line = Json::parse(text, nullptr, false);
  if (!line.is_object()) return std::nullopt;
  ChannelLine read;
  read.kind = TextAt(line, channel::kKind);
  if (read.kind.empty()) return std::nullopt;
  read.channelVersion = NumberAt(line, channel::kChannelVersion);
  read.programVersion = TextAt(line, channel::kProgramVersion);
  read.table = TextAt(line, channel::kTable);
  read.counts = {.met = NumberAt(line, channel::kMet),
                 .inserted = NumberAt(line, channel::kInserted),
                 .updated = NumberAt(line, channel::kUpdated),
                 .deleted = NumberAt(line, channel::kDeleted)};
  read.failure = {.time = TextAt(line, channel::kTime),
                  .number = NumberAt(line, channel::kNumber),
                  .source = TextAt(line, channel::kSource),
                  .description = TextAt(line, channel::kDescription),
                  .sqlState = TextAt(line, channel::kSqlState),
                  .native = TextAt(line, channel::kNative),
                  .statement = TextAt(line, channel::kStatement),
                  .call = TextAt(line, channel::kCall),
                  .rowKey = TextAt(line, channel::kRowKey),
                  .during = TextAt(line, channel::kDuring)};
  return read;
}

std::vector<Text> LineBuffer::TakeLines(bool atEnd) {
  std::vector<Text> lines;
  std::size_t from = 0;
  for (std::size_t end = rest_.find('\n'); end != Text::npos; end = rest_.find('\n', from)) {
    lines.push_back(rest_.substr(from, end - from));
    from = end + 1;
  }
  rest_.erase(0, from);
  if (atEnd && !rest_.empty()) lines.push_back(std::exchange(rest_, Text()));
  return lines;
}

}  // namespace zenqay
