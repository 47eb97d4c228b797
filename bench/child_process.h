// Running a program and what the operating system says it cost.
#pragma once

#include <string>
#include <vector>

namespace zenqay::bench {

/// Seconds of wall and processor time, and the peak of resident memory in MiB: all of it, and what is not mapped from a
/// file, as far as it was seen every 20 ms. The peak is the child's own as long as the caller stays small, for the
/// system counts in what the caller held when it started the child.
struct Cost {
  double wallSeconds = 0;
  double cpuSeconds = 0;
  double peakMib = 0;
  double anonymousMib = 0;
};

/// Runs the program to its end with standard output and standard error thrown away. Throws std::runtime_error when it
/// cannot be started or ends with another status than 0.
Cost RunChild(const std::vector<std::string>& arguments);

}  // namespace zenqay::bench
