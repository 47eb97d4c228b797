#include "components/files/key_positions.h"

#include <algorithm>
#include <cerrno>

#include "base/runtime_error.h"

namespace zenqay {
namespace {

[[noreturn]] void RaiseFileFailure() {
  const PlatformFault fault = errno == ENOSPC ? PlatformFault::DiskFull : PlatformFault::PathAccess;
  throw RuntimeError(fault, "temporary file of an index");
}

}  // namespace

void KeyPositions::Add(std::uint64_t hash, std::uint64_t position) {
  if (entries_.size() == entriesInMemory_) SpillRun();
  entries_.push_back({hash, position});
}

void KeyPositions::Finish() {
  std::ranges::sort(entries_);
  if (spilled_ && std::fflush(spilled_.get()) != 0) RaiseFileFailure();
}

std::vector<std::uint64_t> KeyPositions::Find(std::uint64_t hash) const {
  std::vector<std::uint64_t> positions;
  for (std::size_t run = 0; run < runsSpilled_; ++run) FindInRun(run, hash, positions);
  for (auto entry = std::ranges::lower_bound(entries_, hash, {}, &Entry::hash);
       entry != entries_.end() && entry->hash == hash; ++entry) {
    positions.push_back(entry->position);
  }
  return positions;
}

void KeyPositions::SpillRun() {
  std::ranges::sort(entries_);
  if (!spilled_) spilled_.reset(std::tmpfile());
  if (!spilled_) RaiseFileFailure();
  const std::size_t written = std::fwrite(entries_.data(), sizeof(Entry), entries_.size(), spilled_.get());
  if (written != entries_.size()) RaiseFileFailure();
  entries_.clear();
  ++runsSpilled_;
}

KeyPositions::Entry KeyPositions::SpilledEntry(std::size_t number) const {
  Entry entry{};
  const bool isRead = std::fseek(spilled_.get(), static_cast<long>(number * sizeof entry), SEEK_SET) == 0 &&
                      std::fread(&entry, sizeof entry, 1, spilled_.get()) == 1;
  if (!isRead) RaiseFileFailure();
  return entry;
}

void KeyPositions::FindInRun(std::size_t run, std::uint64_t hash, std::vector<std::uint64_t>& positions) const {
  const std::size_t end = (run + 1) * entriesInMemory_;
  std::size_t from = run * entriesInMemory_;
  for (std::size_t count = entriesInMemory_; count > 0;) {  // to the first entry that is not below the hash
    const std::size_t half = count / 2;
    const bool isBelow = SpilledEntry(from + half).hash < hash;
    if (isBelow) from += half + 1;
    count = isBelow ? count - half - 1 : half;
  }
  for (; from < end; ++from) {
    const Entry entry = SpilledEntry(from);
    if (entry.hash != hash) return;
    positions.push_back(entry.position);
  }
}

}  // namespace zenqay
