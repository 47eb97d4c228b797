// The home that a job is started in: the ERP's own, with what only this run asks for.
#pragma once

#include "control/job_file.h"
#include "system/private_directory.h"
#include "system/xml_file.h"

namespace zenqay {

/// A directory that lives as long as the object: Components.xml of the ERP's home with `<LOCK takeover="yes"/>`, the
/// job's sweep limit and absolute paths, and its texts.
class DerivedHome {
 public:
  /// Raises WrongUsage, with the place in the job file, when the ERP's home has no Components.xml that can be read.
  DerivedHome(const ErpSettings& erp, const Text& sweepLimit);

  /// The same for a job on a copy of its database, which harms nobody: without lock, sweep limit and trace.
  explicit DerivedHome(const ErpSettings& erp);

  const Text& path() const { return directory_.path(); }

 private:
  void Write(const ErpSettings& erp, const pugi::xml_document& components) const;

  PrivateDirectory directory_;
};

}  // namespace zenqay
