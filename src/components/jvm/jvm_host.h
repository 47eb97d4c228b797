// Components that are classes of a Java class path.
#pragma once

#include <map>
#include <memory>
#include <optional>

#include "base/runtime_error.h"
#include "components/catalogue_element.h"
#include "components/jvm/jvm_settings.h"

namespace zenqay {

class JavaMachine;

/// Serves every entry kind="jvm" of a catalogue: a process can have only one Java machine. It is started by the first
/// creation, and what keeps it from starting is what every creation fails with.
///
/// A class id is the name of a class, with or without "java:" in front of it. Its objects answer every public method,
/// by name without regard to case, overloads chosen by the number and the types of the arguments; a property is read
/// by the method of its name, the field of its name, getX or isX, and written by the field or setX. Texts, numbers and
/// booleans become values, in their classes too (Integer, BigDecimal), everything else an object. A null is null where
/// a value was declared or might have been, an empty reference elsewhere. Arguments by reference are not assigned.
///
/// Raises 429 for a class that is not there, has no public constructor without arguments, or whose constructor throws.
/// Objects raise 438 (no such operation), 450 (wrong number of arguments), 13 (no overload understands them), 94 (null
/// for a primitive), 6 (no room for a number) and 440 (the operation threw), their source the class id.
class JvmHost : public ComponentHost {
 public:
  JvmHost();
  ~JvmHost() override;

  /// For kind="jvm": one host for all its elements.
  static std::shared_ptr<ComponentHost> Make(const CatalogueElement& element,
                                             const std::shared_ptr<ComponentHost>& former);

  /// Adds what one entry asks for; see JvmSettings for what it raises. Both may be empty.
  void Add(const std::filesystem::path& directory, const Text& classPath, const Text& options);

  Object Create(const Text& classId) override;

 private:
  struct Creatable;

  void RequireMachine(const Text& classId);
  const Creatable& Find(const Text& classId);

  JvmSettings settings_;
  std::shared_ptr<JavaMachine> machine_;
  std::optional<Text> failure_;  // why there is no machine
  std::map<Text, Creatable> creatables_;
};

}  // namespace zenqay
