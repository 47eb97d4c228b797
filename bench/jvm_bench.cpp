// What a late-bound call of a Java component costs, and its share in a full copy.
//
//     jvm_bench DIRECTORY [ROWS]
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <exception>
#include <fstream>

#include "components/jvm/jvm_host.h"
#include "workplace.h"

namespace {

using namespace zenqay;
using namespace zenqay::bench;
namespace fs = std::filesystem;

constexpr int kContracts = 8;
constexpr const char* kGeneration = "3";

/// Calls of a contract's row in a first fill: hasMoreElements and nextElement, four of the update, four of the insert.
constexpr double kCallsOfARow = 10;

template <typename Deed>
double Nanoseconds(Deed deed) {
  constexpr int kCalls = 200'000;
  std::vector<double> rounds;
  for (int round = 0; round < 7; ++round) {  // the first ones warm the machine's compiler up
    const auto start = std::chrono::steady_clock::now();
    for (int i = 0; i < kCalls; ++i) deed();
    const std::chrono::duration<double, std::nano> took = std::chrono::steady_clock::now() - start;
    rounds.push_back(took.count() / kCalls);
  }
  return Median({rounds.begin() + 2, rounds.end()});
}

/// The costs by kind; gives that of a call that returns a short text.
double MeasureCalls(Figures& figures) {
  JvmHost host;
  host.Add("/", ZENQAY_TEST_ADAPTER, "");
  const Object sample = host.Create("sample.Everything");
  const Object rows = sample.Call("rows").AsObject();
  const Value number = 7;
  const Value shortText = "Location number 7";
  const double text = Nanoseconds([&] { sample.Call("getTitle"); });
  figures.Add("jvm.call.text_ns", text);
  figures.Add("jvm.call.boolean_ns", Nanoseconds([&] { sample.Call("aBoolean"); }));
  figures.Add("jvm.call.int_ns", Nanoseconds([&] { sample.Call("anInt"); }));
  figures.Add("jvm.call.boxed_int_ns", Nanoseconds([&] { sample.Call("boxedInt"); }));
  figures.Add("jvm.call.text_to_text_ns", Nanoseconds([&] { sample.Call("echo", shortText); }));
  figures.Add("jvm.call.int_argument_ns", Nanoseconds([&] { sample.Call("setTotal", number); }));
  figures.Add("jvm.call.overload_ns", Nanoseconds([&] { sample.Call("pick", number); }));
  figures.Add("jvm.call.object_ns", Nanoseconds([&] { rows.Call("nextElement"); }));
  figures.Add("jvm.call.null_ns", Nanoseconds([&] { sample.Call("nullText"); }));
  figures.Add("jvm.get_property_ns", Nanoseconds([&] { sample.Get("title"); }));
  figures.Add("jvm.get_field_ns", Nanoseconds([&] { sample.Get("name"); }));
  figures.Add("jvm.create_ns", Nanoseconds([&] { host.Create("sample.Everything"); }));
  return text;
}

void WriteExport(const Workplace& place, long rows) {
  std::ofstream all(place.Erp("Kv50QTMtsctmServiceContracts.csv"), std::ios::binary);
  all << "ServiceContract:text:csco:key,Description:text:desc,ContractStatus:int:scon\n";
  for (long row = 0; row < rows; ++row) {
    char line[80];
    std::snprintf(line, sizeof line, "C%08ld,Contract number %ld,10\n", row, row);
    all << line;
  }
}

void ServeByJava(const fs::path& directory) {
  std::ofstream(directory / "Components.xml")
      << "<COMPONENTS>\n<HOST prefix=\"\" kind=\"jvm\" classpath=\"" << ZENQAY_TEST_ADAPTER
      << "\" options=\"-Dadapter.exports=" << (directory / "erp").string() << "\"/>\n</COMPONENTS>\n";
}

/// The wall time of a first fill, the median of three.
double FillSeconds(const Workplace& place) {
  std::vector<double> seconds;
  for (int i = 0; i < 3; ++i) {
    const fs::path database = place.CreateDatabase("work.db");
    seconds.push_back(
        RunChild({ZENQAY_PROGRAM, place.CommandLine(database, kContracts, kFull, kGeneration)}).wallSeconds);
  }
  return Median(seconds);
}

void Run(const fs::path& directory, long rows) {
  const Workplace place(directory);
  Figures figures;
  WriteExport(place, rows);
  const double files = FillSeconds(place);
  ServeByJava(fs::absolute(directory));
  const double java = FillSeconds(place);
  const double text = MeasureCalls(figures);

  figures.Add("jvm.fill.rows", static_cast<double>(rows));
  figures.Add("jvm.fill.files_ms", files * 1000);
  figures.Add("jvm.fill.java_ms", java * 1000);
  figures.Add("jvm.fill.share_of_calls", kCallsOfARow * static_cast<double>(rows) * text / 1e9 / java);
  figures.Print();
}

}  // namespace

int main(int argc, char** argv) {
  if (argc < 2) return 2;
  try {
    Run(argv[1], argc > 2 ? std::atol(argv[2]) : 100'000);
  } catch (const std::exception& fault) {
    std::fprintf(stderr, "jvm_bench: %s\n", fault.what());
    return 1;
  }
  return 0;
}
