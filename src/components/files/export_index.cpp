#include "components/files/export_index.h"

#include <algorithm>
#include <functional>
#include <iterator>

namespace zenqay {
namespace {

std::uint64_t Joined(std::uint64_t hash, std::string_view key) {
  return hash * 31 + std::hash<std::string_view>()(key);
}

}  // namespace

class ExportIndex::FoundRecords : public RecordSource {
 public:
  FoundRecords(std::shared_ptr<ExportIndex> index, std::vector<std::uint64_t> positions)
      : index_(std::move(index)), positions_(std::move(positions)) {}

  bool Read(CsvRecord& record) override {
    if (next_ < positions_.size()) {
      index_->records_.ReadAt(positions_[next_++], record);
      return true;
    }
    if (index_->failure_) throw *index_->failure_;
    return false;
  }

 private:
  std::shared_ptr<ExportIndex> index_;
  std::vector<std::uint64_t> positions_;
  std::size_t next_ = 0;
};

std::vector<KeyRange> SingleKeysOf(const std::vector<KeyRange>& ranges) {
  std::vector<KeyRange> keys;
  std::ranges::copy_if(ranges, std::back_inserter(keys), [](const KeyRange& range) { return !!range.OnlyKey(); });
  return keys;
}

ExportIndex::ExportIndex(ExportRecords records, std::vector<KeyRange> keys)
    : records_(std::move(records)), keys_(std::move(keys)) {
  try {
    for (CsvRecord record; records_.Read(record);) {
      std::uint64_t hash = 0;
      for (const KeyRange& key : keys_) hash = Joined(hash, key.KeyOf(record));
      positions_.Add(hash, records_.position());
    }
  } catch (const RuntimeError& error) {
    failure_ = error;
  }
  positions_.Finish();
}

bool ExportIndex::Serves(const std::vector<KeyRange>& ranges) const {
  return std::ranges::equal(SingleKeysOf(ranges), keys_, {}, &KeyRange::column, &KeyRange::column);
}

std::unique_ptr<RecordSource> ExportIndex::Find(std::shared_ptr<ExportIndex> index,
                                                const std::vector<KeyRange>& ranges) {
  std::uint64_t hash = 0;
  for (const KeyRange& range : ranges) {
    if (const auto key = range.OnlyKey()) hash = Joined(hash, *key);
  }
  std::vector<std::uint64_t> positions = index->positions_.Find(hash);
  return std::make_unique<FoundRecords>(std::move(index), std::move(positions));
}

}  // namespace zenqay
