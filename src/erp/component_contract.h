// The ERP's business components, in the words of the entity copies: thin words over Object.
//
// Every call is synchronous and reaches the component by operation name; each may fail, and the failure, which then
// names the operation, goes to the failure path of the pass. An empty reference raises 91 at its first use.
#pragma once

#include "contracts/named_calls.h"
#include "erp/row_key.h"

namespace zenqay {

/// One record of a listing. A field is asked for anew at each use; what the row has said of its key is kept for
/// failures alone.
class Row {
 public:
  Row() = default;
  explicit Row(Object object, RowKey* key = nullptr) : object_(std::move(object)), key_(key) {}

  /// The answer of a `hasX`; a null counts as false.
  bool Has(std::string_view hasX) const {
    return Naming(object_, hasX, [&] { return object_.Call(hasX).IsTrue(); });
  }

  /// The answer of a `getX`: as it comes; as text, which a null fails with 94; or joined to a text, where a null adds
  /// nothing.
  Value Get(std::string_view getX) const {
    return Naming(object_, getX, [&] { return Answer(getX); });
  }
  Text GetText(std::string_view getX) const {
    return Naming(object_, getX, [&] { return Answer(getX).AsText(); });
  }
  Text GetJoined(std::string_view getX) const {
    return Naming(object_, getX, [&] { return Answer(getX).Joined(); });
  }

  /// The answer of a `getX` that gives another row, such as the values from before a change.
  Row GetRow(std::string_view getX) const {
    return Naming(object_, getX, [&] { return Row(Answer(getX).AsObject()); });
  }

  void Set(std::string_view setX, const Value& value) const { CallNamed(object_, setX, value); }

  void Release() { object_.Release(); }

 private:
  Value Answer(std::string_view getX) const {
    Value answer = object_.Call(getX);
    if (key_ != nullptr) key_->Remember(getX, answer);
    return answer;
  }

  Object object_;
  RowKey* key_ = nullptr;  // of a row that a pass is at; old values and looked-up rows have none
};

/// Does what is to be done for the row at hand; what it fails with names the row.
template <typename Deed>
void NamingRow(const RowKey& key, Deed deed) {
  try {
    deed();
  } catch (...) {
    throw ErrorInFlight().OfRow(key.Told());
  }
}

/// What a listing gives: its rows, one after the other.
class Enumeration {
 public:
  Enumeration() = default;
  explicit Enumeration(Object object) : object_(std::move(object)) {}

  bool IsNothing() const { return object_.IsNothing(); }
  void Release() { object_.Release(); }

  bool HasMoreElements() const {
    return Naming(object_, "hasMoreElements", [&] { return object_.Call("hasMoreElements").IsTrue(); });
  }

  /// The next row; `key` is then that row's, and lives as long.
  Row NextElement(RowKey* key = nullptr) const {
    if (key != nullptr) key->Forget();
    return Naming(object_, "nextElement", [&] { return Row(object_.Call("nextElement").AsObject(), key); });
  }

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
    CallNamed(object_, "Initialize", Argument::ByReference(name));
  }

  /// All rows whose keys lie in the ranges, given as pairs of a lowest and a highest value; or nothing.
  template <typename... Bounds>
  Enumeration List(Bounds&&... bounds) const {
    return Naming(object_, "List",
                  [&] { return Enumeration(object_.Call("List", std::forward<Bounds>(bounds)...).AsObject()); });
  }

  /// The rows that changed in the criteria's period. `operation` is the manager's own name for it.
  Enumeration NetList(std::string_view operation, const Text& tableCode, const Object& criteria) const {
    Value code = tableCode;
    Value selection = criteria;
    return Naming(object_, operation, [&] {
      return Enumeration(
          object_.Call(operation, Argument::ByReference(code), Argument::ByReference(selection)).AsObject());
    });
  }

  void Close() const { CallNamed(object_, "Close"); }

  const Object& object() const { return object_; }

 private:
  Object object_;
};

}  // namespace zenqay
