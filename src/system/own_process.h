// What this process is to the operating system, and what it leaves behind.
#pragma once

#include <cstdint>
#include <vector>

#include "base/text_functions.h"

namespace zenqay {

/// Keeps the memory of this process, which holds passwords, out of core files and from other processes of its user.
void KeepMemoryPrivate();

/// Makes writing to a closed pipe an error of the write, not the end of the process.
void OutliveClosedPipes();

bool IsSuperUser();

/// What the environment of this process holds, as NAME=value.
std::vector<Text> EnvironmentEntries();

/// The directory that the program stands in.
Text ProgramDirectory();

/// Makes the file when it is missing, closed to everybody else. One that is there is not opened: closing it again would
/// give up the locks that the process has on it, as a database of its own.
void MakePrivateFile(const Text& path);

/// Writes all of the text to a descriptor. False when that fails.
bool WriteWhole(int descriptor, std::string_view text);

/// How far the local clock stood ahead of UTC, in seconds, at a moment in seconds since 1970.
std::int64_t ClockOffsetAt(std::int64_t moment);

}  // namespace zenqay
