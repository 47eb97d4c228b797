// Reading a database file without leaving a trace of it.
#pragma once

#include "base/text_functions.h"

namespace zenqay {

/// How a database file is opened so that no file beside it comes into being or changes.
///
/// A file in WAL mode has a log ("-wal") and an index of it ("-shm") beside it while it is in use, and a plain reader
/// would make both. What fits depends on which of them are there:
///
///     no log             the file holds everything and is read as one that does not change
///     both               another process works on the file, or died: its index is read and not written
///     a log, no index    nobody works on the file: the reader keeps an index of its own in memory, without locks
struct ReadOnlyFile {
  Text uri;
  bool isAlone = false;       // needs the exclusive locking mode, which keeps the index in memory
  bool isUnchanging = false;  // nobody works on it; who begins to is not noticed

  /// The way that fits the file at a path of the operating system as it now is.
  static ReadOnlyFile At(const Text& path);
};

}  // namespace zenqay
