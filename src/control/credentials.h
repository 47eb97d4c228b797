// The password of a database, from where the job file says that it is.
#pragma once

#include "control/job_file.h"

namespace zenqay {

/// What the process's environment says; a test has one of its own.
struct Environment {
  std::map<Text, Text> variables;

  static Environment OfProcess();

  /// Empty when it is missing.
  Text Value(const Text& name) const;
};

/// Reads the password, without the line end that stands behind it. A credential is a file of its name in the directory
/// that CREDENTIALS_DIRECTORY names, else in credentials/ beside the job file. Raises WrongUsage, with the place in the
/// job file, for a password that is missing, empty, longer than a line, or in a file that others may read.
Text ReadPassword(const JobFile& file, const PasswordSource& source, const Environment& environment);

}  // namespace zenqay
