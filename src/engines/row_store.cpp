#include "engines/row_store.h"

#include <cerrno>
#include <cstring>

#include "base/runtime_error.h"

namespace zenqay {
namespace {

/// A field is its type and its bytes; a text has its length between them.
enum class FieldType : char { Null, Integer, Double, Text, DateTime };

constexpr std::size_t kBlockSize = std::size_t{64} << 10;

template <typename T>
void Append(std::string& bytes, T value) {
  char raw[sizeof value];
  std::memcpy(raw, &value, sizeof value);
  bytes.append(raw, sizeof value);
}

template <typename T>
T ReadAt(const char* bytes) {
  T value;
  std::memcpy(&value, bytes, sizeof value);
  return value;
}

/// Seven bits a byte, the lowest first; the top bit says that more follow.
void AppendLength(std::string& bytes, std::size_t length) {
  for (; length >= 0x80; length >>= 7) bytes += static_cast<char>(length | 0x80);
  bytes += static_cast<char>(length);
}

std::size_t TakeLength(const char*& bytes) {
  std::size_t length = 0;
  for (int shift = 0;; shift += 7) {
    const auto byte = static_cast<unsigned char>(*bytes++);
    length |= std::size_t{byte & 0x7FU} << shift;
    if (byte < 0x80) return length;
  }
}

std::string_view TakeText(const char*& bytes) {
  const std::size_t length = TakeLength(bytes);
  const std::string_view text(bytes, length);
  bytes += length;
  return text;
}

const char* BehindField(const char* field) {
  const auto type = static_cast<FieldType>(*field++);
  switch (type) {
    case FieldType::Null:
      return field;
    case FieldType::Integer:
      return field + sizeof(std::int32_t);
    case FieldType::Double:
      return field + sizeof(double);
    case FieldType::Text:
      TakeText(field);
      return field;
    case FieldType::DateTime:
      return field + sizeof(std::int64_t);
  }
  return field;
}

[[noreturn]] void RaiseFileFailure() {
  const PlatformFault fault = errno == ENOSPC ? PlatformFault::DiskFull : PlatformFault::PathAccess;
  throw RuntimeError(fault, "temporary file of a recordset");
}

}  // namespace

void RowStore::PutColumns(std::vector<Text> names) {
  columns_ = std::move(names);
  fields_.resize(columns_.size());
}

void RowStore::AddNull() {
  Append(filling_, FieldType::Null);
}

void RowStore::AddInteger(std::int32_t value) {
  Append(filling_, FieldType::Integer);
  Append(filling_, value);
}

void RowStore::AddDouble(double value) {
  Append(filling_, FieldType::Double);
  Append(filling_, value);
}

void RowStore::AddText(std::string_view value) {
  Append(filling_, FieldType::Text);
  AppendLength(filling_, value.size());
  filling_.append(value);
}

void RowStore::AddDateTime(DateTime value) {
  Append(filling_, FieldType::DateTime);
  Append(filling_, value.seconds());
}

void RowStore::EndRow() {
  ++count_;
  if (filling_.size() >= kBlockSize) FinishBlock();
}

bool RowStore::Next() {
  if (!reading_) StartReading();
  atRow_ = unread_ < block_.size() || TakeBlock();
  if (!atRow_) return false;
  const char* next = block_.data() + unread_;
  for (const char*& field : fields_) {
    field = next;
    next = BehindField(next);
  }
  unread_ = static_cast<std::size_t>(next - block_.data());
  return true;
}

Value RowStore::Field(std::size_t column) const {
  const char* field = fields_[column];
  const auto type = static_cast<FieldType>(*field++);
  switch (type) {
    case FieldType::Null:
      return Null();
    case FieldType::Integer:
      return ReadAt<std::int32_t>(field);
    case FieldType::Double:
      return ReadAt<double>(field);
    case FieldType::Text:
      return TakeText(field);
    case FieldType::DateTime:
      return DateTime(ReadAt<std::int64_t>(field));
  }
  return Value();
}

void RowStore::FinishBlock() {
  if (spilled_ || bytesInBlocks_ + filling_.size() > memoryLimit_) {
    SpillBlock();
    return;
  }
  bytesInBlocks_ += filling_.size();
  blocks_.push_back(std::move(filling_));
  filling_ = std::string();
  filling_.reserve(kBlockSize + kBlockSize / 8);  // the last row goes beyond the size
}

void RowStore::SpillBlock() {
  if (!spilled_) spilled_.reset(std::tmpfile());
  if (!spilled_) RaiseFileFailure();
  const std::size_t size = filling_.size();
  const bool written = std::fwrite(&size, sizeof size, 1, spilled_.get()) == 1 &&
                       std::fwrite(filling_.data(), size, 1, spilled_.get()) == 1;
  if (!written) RaiseFileFailure();
  filling_.clear();
  ++blocksSpilled_;
}

void RowStore::StartReading() {
  if (!filling_.empty()) FinishBlock();
  filling_ = std::string();
  if (spilled_ && std::fseek(spilled_.get(), 0, SEEK_SET) != 0) RaiseFileFailure();
  reading_ = true;
}

bool RowStore::TakeBlock() {
  if (!blocks_.empty()) {
    block_ = std::move(blocks_.front());
    blocks_.pop_front();
  } else if (blocksSpilled_ > 0) {
    TakeSpilledBlock();
  } else {
    return false;
  }
  unread_ = 0;
  return true;
}

void RowStore::TakeSpilledBlock() {
  std::size_t size = 0;
  if (std::fread(&size, sizeof size, 1, spilled_.get()) != 1) RaiseFileFailure();
  block_.resize(size);
  if (std::fread(block_.data(), size, 1, spilled_.get()) != 1) RaiseFileFailure();
  --blocksSpilled_;
}

}  // namespace zenqay
