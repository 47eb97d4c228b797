// A replay takes no more memory for a long trace than for a short one.
//
// With ZENQAY_FAULTS=all in the environment, as scripts/faults sets it, the long one has a gigabyte.
#include <gtest/gtest.h>
#include <malloc.h>

#include <fstream>

#include "components/replay/replay_host.h"
#include "doubles/temp_directory.h"
#include "doubles/tries_all.h"

namespace zenqay {
namespace {

constexpr std::int64_t kMegabyte = 1'000'000;

/// The trace of a listing whose rows are asked for a key and a name, of at least this length. Gives the number of rows.
int WriteTrace(const std::filesystem::path& path, std::int64_t bytes) {
  std::ofstream file(path, std::ios::binary);
  file << R"({"kind":"trace","version":2,"program":"1.1.0","pid":1,"started":"2026-11-21T22:00:00.000Z"})"
       << "\n"
       << R"({"n":1,"kind":"create","class":"A.Rows","id":1,"ms":1})"
       << "\n";
  int rows = 0;
  const auto call = [&](int object, const char* operation, const std::string& returned) {
    file << R"({"n":2,"kind":"call","id":)" << object << R"(,"op":")" << operation << R"(","args":[],"returns":)"
         << returned << R"(,"ms":1})"
         << "\n";
  };
  for (; file.tellp() < bytes; ++rows) {
    call(1, "hasMoreElements", "true");
    call(1, "nextElement", R"({"object":)" + std::to_string(rows + 2) + "}");
    call(rows + 2, "getKey", "\"K" + std::to_string(rows) + "\"");
    call(rows + 2, "hasName", "true");
    call(rows + 2, "getName", "\"the name of a row that is somewhat longer than its key\"");
  }
  return rows;
}

/// What is in use of the heap, in bytes; 0 where the sanitizers keep it.
std::int64_t InUse() {
  return static_cast<std::int64_t>(::mallinfo2().uordblks);
}

/// The most that the replay of such a trace has in use at the end of a row. A third of the rows is not asked for its
/// name, so that calls are passed over.
std::int64_t MostInUse(std::int64_t bytes) {
  const TempDirectory directory;
  const int rows = WriteTrace(directory.path() / "trace.jsonl", bytes);
  const std::int64_t before = InUse();
  ReplayHost host((directory.path() / "trace.jsonl").string());
  const Object listing = host.Create("A.Rows");
  std::int64_t most = 0;
  for (int i = 0; i < rows; ++i) {
    listing.Call("hasMoreElements");
    const Object row = listing.Call("nextElement").AsObject();
    EXPECT_EQ(row.Call("getKey"), Value("K" + std::to_string(i)));
    if (i % 3 != 0 && row.Call("hasName").IsTrue()) row.Call("getName");
    most = std::max(most, InUse() - before);
  }
  return most;
}

TEST(ReplayMemory, DoesNotGrowWithTheTrace) {
  const std::int64_t ofShortOne = MostInUse(5 * kMegabyte);
  const std::int64_t ofLongOne = MostInUse(TriesAll() ? 1'000 * kMegabyte : 8 * kMegabyte);

  std::printf("in use of a short trace: %lld KB, of a long one: %lld KB\n", static_cast<long long>(ofShortOne / 1000),
              static_cast<long long>(ofLongOne / 1000));
  EXPECT_LT(ofLongOne, ofShortOne + kMegabyte);
}

}  // namespace
}  // namespace zenqay
