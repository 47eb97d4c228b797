#include "components/files/key_positions.h"

#include <gtest/gtest.h>

namespace zenqay {
namespace {

using Positions = std::vector<std::uint64_t>;

/// Hashes in the order 4, 1, 4, 2, 4, 1 with the positions 10, 20, 30 and so on, in memory for that many entries.
KeyPositions SixPositions(std::size_t entriesInMemory) {
  KeyPositions positions(entriesInMemory * 16);
  std::uint64_t position = 0;
  for (const std::uint64_t hash : {4, 1, 4, 2, 4, 1}) positions.Add(hash, position += 10);
  positions.Finish();
  return positions;
}

TEST(KeyPositions, GivesThePositionsOfAHashInTheOrderOfTheFile) {
  for (const std::size_t entriesInMemory : {100, 6, 5, 3, 2, 1}) {
    const KeyPositions positions = SixPositions(entriesInMemory);

    EXPECT_EQ(positions.Find(4), (Positions{10, 30, 50})) << entriesInMemory;
    EXPECT_EQ(positions.Find(1), (Positions{20, 60})) << entriesInMemory;
    EXPECT_EQ(positions.Find(2), (Positions{40})) << entriesInMemory;
    for (const std::uint64_t missing : {0, 3, 5}) EXPECT_EQ(positions.Find(missing), Positions{}) << entriesInMemory;
  }
}

TEST(KeyPositions, HasNoneWithoutAny) {
  KeyPositions positions;
  positions.Finish();

  EXPECT_EQ(positions.Find(0), Positions{});
}

TEST(KeyPositions, FindsEachOfManyInATemporaryFile) {
  KeyPositions positions(1000 * 16);
  for (std::uint64_t number = 0; number < 5'500; ++number) positions.Add(number * 7919 % 5'500, number);
  positions.Finish();

  for (std::uint64_t number = 0; number < 5'500; ++number) {
    EXPECT_EQ(positions.Find(number * 7919 % 5'500), Positions{number});
  }
}

}  // namespace
}  // namespace zenqay
