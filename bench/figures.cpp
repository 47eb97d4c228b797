#include "figures.h"

#include <algorithm>
#include <cstdio>

namespace zenqay::bench {
namespace {

template <typename Member>
double MedianOf(const std::vector<Cost>& costs, Member member) {
  std::vector<double> values;
  for (const Cost& cost : costs) values.push_back(cost.*member);
  return Median(values);
}

template <typename Member>
double MedianRatio(const std::vector<Cost>& programs, const std::vector<Cost>& floors, Member member) {
  std::vector<double> ratios;
  for (std::size_t i = 0; i < programs.size(); ++i) ratios.push_back(programs[i].*member / (floors[i].*member));
  return Median(ratios);
}

Cost MedianCost(const std::vector<Cost>& costs) {
  return {MedianOf(costs, &Cost::wallSeconds), MedianOf(costs, &Cost::cpuSeconds), MedianOf(costs, &Cost::peakMib),
          MedianOf(costs, &Cost::anonymousMib)};
}

}  // namespace

double Median(std::vector<double> values) {
  std::sort(values.begin(), values.end());
  const std::size_t middle = values.size() / 2;
  return values.size() % 2 == 1 ? values[middle] : (values[middle - 1] + values[middle]) / 2;
}

void Pairs::Add(const Cost& program, const Cost& floor) {
  programs_.push_back(program);
  floors_.push_back(floor);
}

double Pairs::WallRatio() const {
  return MedianRatio(programs_, floors_, &Cost::wallSeconds);
}

double Pairs::CpuRatio() const {
  return MedianRatio(programs_, floors_, &Cost::cpuSeconds);
}

Cost Pairs::ProgramMedian() const {
  return MedianCost(programs_);
}

Cost Pairs::FloorMedian() const {
  return MedianCost(floors_);
}

double Pairs::Peak(double Cost::*memory) const {
  double peak = 0;
  for (const Cost& program : programs_) peak = std::max(peak, program.*memory);
  return peak;
}

Measured MeasureInTurn(const std::vector<std::vector<std::string>>& programs, int times,
                       const std::function<Cost(const std::vector<std::string>& program)>& run) {
  Measured measured;
  for (std::size_t i = 0; i < static_cast<std::size_t>(times); ++i) {
    std::vector<Cost> costs(programs.size());
    for (std::size_t place = 0; place < programs.size(); ++place) {
      const std::size_t program = (i + place) % programs.size();
      costs[program] = run(programs[program]);
    }
    measured.floors.Add(costs[0], costs[1]);
    if (programs.size() > 2) measured.peers.Add(costs[0], costs[2]);
  }
  return measured;
}

void Figures::AddPhase(const std::string& name, long rows, const Measured& measured) {
  const Pairs& pairs = measured.floors;
  const Cost program = pairs.ProgramMedian();
  const Cost floor = pairs.FloorMedian();
  const double rowsPerSecond = static_cast<double>(rows) / program.wallSeconds;
  const Pairs& peers = measured.peers;
  char line[200];
  std::snprintf(line, sizeof line, "%-24s %9ld %9.3f %9.3f %9.3f %9.3f %10.0f %7.3f %7.3f %7.1f", name.c_str(), rows,
                program.wallSeconds, floor.wallSeconds, program.cpuSeconds, floor.cpuSeconds, rowsPerSecond,
                pairs.WallRatio(), pairs.CpuRatio(), pairs.Peak(&Cost::peakMib));
  table_ += line;
  if (!peers.empty()) {
    std::snprintf(line, sizeof line, " %9.3f %7.3f", peers.FloorMedian().wallSeconds, peers.WallRatio());
    table_ += line;
  }
  table_ += '\n';
  Add(name + ".wall_seconds", program.wallSeconds);
  Add(name + ".cpu_seconds", program.cpuSeconds);
  Add(name + ".rows_per_second", rowsPerSecond);
  Add(name + ".wall_ratio", pairs.WallRatio());
  Add(name + ".cpu_ratio", pairs.CpuRatio());
  Add(name + ".peak_mib", pairs.Peak(&Cost::peakMib));
  Add(name + ".anonymous_mib", pairs.Peak(&Cost::anonymousMib));
  if (peers.empty()) return;
  Add(name + ".peer_wall_seconds", peers.FloorMedian().wallSeconds);
  Add(name + ".peer_wall_ratio", peers.WallRatio());
  Add(name + ".peer_cpu_ratio", peers.CpuRatio());
}

void Figures::Add(const std::string& name, double value) {
  figures_.push_back({name, value});
}

void Figures::Print() const {
  if (!table_.empty()) {
    std::printf("%-24s %9s %9s %9s %9s %9s %10s %7s %7s %7s %9s %7s\n", "phase", "rows", "wall s", "floor s", "cpu s",
                "floor s", "rows/s", "wall", "cpu", "MiB", "peer s", "peer");
    std::printf("%s\n", table_.c_str());
  }
  for (const Figure& figure : figures_) std::printf("%s %.4g\n", figure.name.c_str(), figure.value);
  std::fflush(stdout);
}

}  // namespace zenqay::bench
