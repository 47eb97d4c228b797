// The members of one Java class, found by name without regard to case.
#pragma once

#include <jni.h>

#include <memory>
#include <set>
#include <unordered_map>
#include <vector>

#include "components/jvm/java_types.h"

namespace zenqay {

struct JavaMethod {
  Text name;
  Text signature;  // for messages: setFrom(java.util.Date)
  jmethodID id = nullptr;
  bool isStatic = false;
  bool isBridge = false;  // made by the compiler for another method's sake
  JavaType result;
  std::vector<JavaType> parameters;
};

struct JavaField {
  Text name;
  jfieldID id = nullptr;
  bool isStatic = false;
  bool isFinal = false;
  JavaType type;
};

/// The public methods and fields of a class, inherited ones included. They are read when the first name is asked for;
/// what a name comes to is worked out once. Raises 440 when the class cannot be read.
class JavaClass {
 public:
  using Overloads = std::vector<const JavaMethod*>;

  struct Property {
    const JavaField* field = nullptr;
    Overloads methods;  // without a field
  };

  JavaClass(JNIEnv& env, const JavaTypes& types, jclass type);
  JavaClass(const JavaClass&) = delete;
  JavaClass& operator=(const JavaClass&) = delete;

  jclass type() const { return type_; }

  /// Set when the instances are plain values.
  std::optional<JavaKind> valueKind() const { return valueKind_; }

  const Text& name() const { return name_; }

  /// A class id that the class is created by, as it is kept with the class.
  const Text& KeepClassId(const Text& classId) { return *classIds_.insert(classId).first; }

  /// All methods of the name; none when there is no such method. Of two that differ in nothing but the case of their
  /// names, the one that is spelled as asked for. An iterator's methods answer under an enumeration's names too.
  const Overloads& MethodsNamed(std::string_view name);

  /// What a property is read by: the method of that very name, else the field, else getX, else isX.
  const Property& ReaderOf(std::string_view property);

  /// What a property is written by: the field that is not final, else setX.
  const Property& WriterOf(std::string_view property);

 private:
  struct NameHash {
    using is_transparent = void;
    std::size_t operator()(std::string_view name) const { return std::hash<std::string_view>()(name); }
  };
  template <typename Found>
  using ByName = std::unordered_map<Text, Found, NameHash, std::equal_to<>>;

  void Read();
  void ReadMethods();
  void ReadFields();
  Overloads CollectMethods(std::string_view name) const;
  const JavaField* FindField(std::string_view name) const;
  Property MakeReader(std::string_view property);
  Property MakeWriter(std::string_view property);

  JNIEnv& env_;
  const JavaTypes& types_;
  jclass type_;
  Text name_;
  std::set<Text> classIds_;
  std::optional<JavaKind> valueKind_;
  bool isIterator_;
  bool isRead_ = false;
  std::vector<JavaMethod> methods_;
  std::vector<JavaField> fields_;
  ByName<Overloads> overloads_;
  ByName<Property> readers_;
  ByName<Property> writers_;
};

}  // namespace zenqay
