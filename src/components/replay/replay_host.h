// The components of a recorded run, out of its trace.
#pragma once

#include "components/catalogue_element.h"

namespace zenqay {

/// Creates what the recorded run created, and answers each call as it was answered there, with the same failures. A
/// call is found by its object, operation and arguments. Objects in arguments compare by their numbers in the trace;
/// those of another host count as any. What holds the time of the run is not compared: the time of a status message,
/// and the fields of a date that is set before it is asked for anything.
class ReplayHost : public ComponentHost {
 public:
  explicit ReplayHost(const Text& path);

  /// For kind="replay". Several elements may name the same file; another one raises 5.
  static std::shared_ptr<ComponentHost> Make(const CatalogueElement& element,
                                             const std::shared_ptr<ComponentHost>& former);

  /// Raises what the creation failed with in the recorded run, and 429 where that did not create such an object.
  Object Create(const Text& classId) override;

 private:
  class Run;
  class ReplayedObject;

  std::shared_ptr<Run> run_;
};

}  // namespace zenqay
