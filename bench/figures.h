// What a benchmark prints: a table for people, then one line a figure for programs.
#pragma once

#include <functional>
#include <string>
#include <vector>

#include "child_process.h"

namespace zenqay::bench {

double Median(std::vector<double> values);

/// A program and its floor, run in turn: the ratios are taken pair by pair.
class Pairs {
 public:
  void Add(const Cost& program, const Cost& floor);
  bool empty() const { return programs_.empty(); }

  double WallRatio() const;
  double CpuRatio() const;
  Cost ProgramMedian() const;
  Cost FloorMedian() const;

  /// The highest of the program: Cost::peakMib or Cost::anonymousMib.
  double Peak(double Cost::*memory) const;

 private:
  std::vector<Cost> programs_;
  std::vector<Cost> floors_;
};

/// A job beside its floor and, where there is one, its peer.
struct Measured {
  Pairs floors;
  Pairs peers;
};

/// Runs the programs so many times: the job, its floor, and its peer if any. Each is first, second and last in turn.
Measured MeasureInTurn(const std::vector<std::vector<std::string>>& programs, int times,
                       const std::function<Cost(const std::vector<std::string>& program)>& run);

class Figures {
 public:
  /// A measured phase that worked on `rows` rows: a line of the table and its figures under `name`.
  void AddPhase(const std::string& name, long rows, const Measured& measured);

  /// One figure more, below the table.
  void Add(const std::string& name, double value);

  void Print() const;

 private:
  struct Figure {
    std::string name;
    double value;
  };

  std::string table_;
  std::vector<Figure> figures_;
};

}  // namespace zenqay::bench
