// Where in a file the records of a key stand.
#pragma once

#include <cstdint>
#include <cstdio>
#include <memory>
#include <vector>

namespace zenqay {

/// Positions by the hash of a key, added in the order of the file and then asked for. 16 bytes each; what goes beyond
/// the memory limit goes to a temporary file without a name. Raises 61 when the disk of that file is full, 75 for any
/// other failure of it.
class KeyPositions {
 public:
  static constexpr std::size_t kMemoryLimit = std::size_t{64} << 20;

  /// `memoryLimit` is in bytes.
  explicit KeyPositions(std::size_t memoryLimit = kMemoryLimit) : entriesInMemory_(memoryLimit / sizeof(Entry)) {}

  void Add(std::uint64_t hash, std::uint64_t position);

  /// To be called once, behind the last Add.
  void Finish();

  /// The positions of a hash, in the order of the file.
  std::vector<std::uint64_t> Find(std::uint64_t hash) const;

 private:
  struct Entry {
    std::uint64_t hash;
    std::uint64_t position;

    auto operator<=>(const Entry&) const = default;
  };
  struct CloseFile {
    void operator()(std::FILE* file) const { std::fclose(file); }
  };

  void SpillRun();
  Entry SpilledEntry(std::size_t number) const;
  void FindInRun(std::size_t run, std::uint64_t hash, std::vector<std::uint64_t>& positions) const;

  std::size_t entriesInMemory_;
  std::vector<Entry> entries_;                     // sorted once finished
  std::unique_ptr<std::FILE, CloseFile> spilled_;  // runs of entriesInMemory_ entries, each sorted
  std::size_t runsSpilled_ = 0;
};

}  // namespace zenqay
