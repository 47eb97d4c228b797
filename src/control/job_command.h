// The line that a job is started with, made of the job file and the password.
#pragma once

#include "control/job_file.h"

namespace zenqay {

/// The connection string with the password where it has {password}, else behind it, by the word and in the quotes of
/// whoever reads it: the provider, or the driver where there is no provider. Raises WrongUsage, with the place in the
/// job file and without the password, when it would be read back as something else.
Text ConnectionWithPassword(const DatabaseSettings& database, const Text& password);

/// The items of one table's job, joined with "{}". Raises WrongUsage when an item holds "{}", which would split it.
Text JobLineOf(const JobFile& file, const JobSettings& job, const Text& connection, std::int32_t tableId,
               Method method);

}  // namespace zenqay
