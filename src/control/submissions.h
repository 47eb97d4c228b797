// Submissions: runs that the batch system has, and what has become of their tasks.
//
// A submission has a directory of its own in the shared one. The jobs of the batch system bear the directory's name, so
// that no number of theirs needs to be known; an array's comment is its number in the submission. Task 3 of array 0
// leaves 0_3.json there, and its output in 0_3.log.
#pragma once

#include "control/batch_system.h"
#include "control/history.h"

namespace zenqay {

/// What the batch system says of the tasks that have not ended, by the table of the history.
using OpenTasks = std::map<std::int64_t, BatchTask>;

/// Brings what tasks have left into the history, again and again until all have ended: then the run ends with the
/// status of its tables, and the directory goes. A task that ended without saying so is settled by the word of the
/// batch system; its directory stays, since its output may say more. What of that cannot be had is said on `err`, and
/// left to the next time. Does nothing, and asks nobody, when no submission is open.
OpenTasks CollectOutcomes(History& history, const BatchSystem& batch, std::ostream& err);

/// Ends a submission of which the batch system has nothing.
void EndUnsubmitted(History& history, std::int64_t run, const Text& directory, int status);

}  // namespace zenqay
