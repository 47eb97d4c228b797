// The ERP's business components, in the words of the entity copies: thin words over Object.
//
// Every call is synchronous and reaches the component by operation name; each may fail, and the failure goes to the
// failure path of the pass. An empty reference raises 91 at its first use.
#pragma once

#include "contracts/value.h"

namespace zenqay {

/// One record of a listing. A field is asked for anew at each use; nothing is kept between two answers.
class Row {
 public:
  Row() = default;
  explicit Row(Object object) : object_(std::move(object)) {}

  /// The answer of a `hasX`; a null counts as false.
  bool Has(std::string_view hasX) const { return object_.Call(hasX).IsTrue(); }

  /// The answer of a `getX`: as it comes; as text, which a null fails with 94; or joined to a text, where a null adds
  /// nothing.
  Value Get(std::string_view getX) const { return object_.Call(getX); }
  Text GetText(std::string_view getX) const { return object_.Call(getX).AsText(); }
  Text GetJoined(std::string_view getX) const { return object_.Call(getX).Joined(); }

  /// The row as an object, for what is more than reading a field.
  const Object& object() const { return object_; }
  void Release() { object_.Release(); }

 private:
  Object object_;
};

/// What a listing gives: its rows, one after the other.
class Enumeration {
 public:
  Enumeration() = default;
  explicit Enumeration(Object object) : object_(std::move(object)) {}

  bool IsNothing() const { return object_.IsNothing(); }
  void Release() { object_.Release(); }

  bool HasMoreElements() const { return object_.Call("hasMoreElements").IsTrue(); }
  Row NextElement() const { return Row(object_.Call("nextElement").AsObject()); }

 private:
  Object object_;
};

/// The way into one ERP entity.
class Manager {
 public:
  Manager() = default;
  explicit Manager(Object object) : object_(std::move(object)) {}

  void Initialize(const Text& BusComponent) const {
    Value name = BusComponent;
    object_.Call("Initialize", Argument::ByReference(name));
  }

  /// All rows whose keys lie in the ranges, given as pairs of a lowest and a highest value; or nothing.
  template <typename... Bounds>
  Enumeration List(Bounds&&... bounds) const {
    return Enumeration(object_.Call("List", std::forward<Bounds>(bounds)...).AsObject());
  }

  /// The rows that changed in the criteria's period. `operation` is the manager's own name for it.
  Enumeration NetList(std::string_view operation, const Text& tableCode, const Object& criteria) const {
    Value code = tableCode;
    Value selection = criteria;
    return Enumeration(
        object_.Call(operation, Argument::ByReference(code), Argument::ByReference(selection)).AsObject());
  }

  void Close() const { object_.Call("Close"); }

  const Object& object() const { return object_; }

 private:
  Object object_;
};

}  // namespace zenqay
