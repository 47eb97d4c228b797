// What only a process of its own can show: its standard streams, its signals, its rights.
#pragma once

#include <functional>

#include "base/text_functions.h"

namespace zenqay {

/// What a deed came to in a process of its own.
struct ChildRun {
  Text result;  // what the deed gave, or the error that it raised
  Text out;     // its standard output
  Text err;     // its standard error
};

/// Standard output and standard error as two pipes, or both as one terminal, which `out` then shows byte for byte.
enum class ChildStreams { Pipes, Terminal };

/// Runs the deed in a child of this process and waits for its end. Up to 4 KiB of each stream. A deed that ends the
/// process gives no result.
ChildRun RunInChild(const std::function<Text()>& deed, ChildStreams streams = ChildStreams::Pipes);

/// Gives up what the super-user may do, for the rest of the process. Only in a child.
void DropPrivileges();

}  // namespace zenqay
