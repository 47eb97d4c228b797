// Status components: who listens to a job's progress.
//
// The class that the job creates answers `getInstance(number)` with the status object and takes
// `CurrentInstanceNumber`. The status object answers `writeToMessageBox(time, text)`, `WriteToAlertBox(time, text)`,
// `UpdateSyncStatus(table, state)` and
// `UpdateStatusByTable(handle, table, state, detail)`; process/status_codes.h has the states.
#pragma once

#include "components/catalogue_element.h"

namespace zenqay {

/// A status component for a person: each message a line with its time on standard output, alerts on standard error, and
/// when it is released one table of what each table's state ended as. On a terminal with colour and an updating line
/// for the running table. A closed output holds nothing up.
class ConsoleStatusHost : public ComponentHost {
 public:
  /// For kind="console".
  static std::shared_ptr<ComponentHost> Make(const CatalogueElement& element,
                                             const std::shared_ptr<ComponentHost>& former);

  Object Create(const Text& classId) override;
};

/// A status component for a program: appends each call as one JSON line to a file, flushed at once. A file that cannot
/// be written fails the call: 61 on a full disk, 70 without the permission, 76 for a missing directory, 75 otherwise.
class FileStatusHost : public ComponentHost {
 public:
  explicit FileStatusHost(Text path) : path_(std::move(path)) {}

  /// For kind="file".
  static std::shared_ptr<ComponentHost> Make(const CatalogueElement& element,
                                             const std::shared_ptr<ComponentHost>& former);

  Object Create(const Text& classId) override;

 private:
  Text path_;
};

}  // namespace zenqay
