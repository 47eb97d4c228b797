// The ERP as a directory of CSV exports.
#pragma once

#include <filesystem>

#include "components/catalogue_element.h"

namespace zenqay {

/// Serves the managers, the criteria objects of net-change listings, and the session, with the operations that the job
/// calls on them and no others. Operation names are matched without regard to case; an operation that an object lacks
/// raises 438, a wrong number of arguments 450. The source of every error is the class id.
class FileHost : public ComponentHost {
 public:
  /// A path of the operating system.
  explicit FileHost(std::filesystem::path directory) : directory_(std::move(directory)) {}

  /// For kind="files". Raises 76 when its directory is missing.
  static std::shared_ptr<ComponentHost> Make(const CatalogueElement& element,
                                             const std::shared_ptr<ComponentHost>& former);

  /// Raises 429 for a class id that stands for nothing here, and for a manager whose export is missing.
  Object Create(const Text& classId) override;

 private:
  std::filesystem::path directory_;
};

}  // namespace zenqay
