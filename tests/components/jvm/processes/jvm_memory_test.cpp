#include <gtest/gtest.h>

#include <fstream>

#include "components/jvm/jvm_fixture.h"
#include "doubles/child_process.h"

namespace zenqay {
namespace {

/// The resident memory of the process, in KiB.
long ResidentKib() {
  std::ifstream file("/proc/self/statm");
  long pages = 0;
  file >> pages >> pages;
  return pages * 4;
}

/// What a copy asks a row.
void ReadRows(const Object& rows, int count) {
  for (int row = 0; row < count; ++row) {
    rows.Call("hasMoreElements");
    const Object element = rows.Call("nextElement").AsObject();
    element.Call("echo", "text of a row");
  }
}

/// A reference that stayed behind in each row would keep the row: a million of them fill the heap. The machine compiles
/// nothing meanwhile, for which it would take memory whenever it finds the time.
TEST(JavaMemory, StaysFlatOverAMillionRows) {
  constexpr long kToleranceKib = 4 * 1024;

  const ChildRun run = RunInChild([] {
    const auto host = MakeJvmHost("-Xint -Xms16m -Xmx16m -XX:+AlwaysPreTouch -XX:+UseSerialGC");
    const Object rows = host->Create("sample.Everything").Call("rows").AsObject();
    ReadRows(rows, 10'000);
    const long before = ResidentKib();
    ReadRows(rows, 990'000);
    return std::to_string(ResidentKib() - before);
  });

  EXPECT_LT(std::stol(run.result), kToleranceKib) << run.result << " KiB\n" << run.err;
  RecordProperty("growth_kib", run.result);
}

}  // namespace
}  // namespace zenqay
