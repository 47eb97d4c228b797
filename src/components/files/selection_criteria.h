// The criteria objects that a net-change listing of the ERP files is asked with.
#pragma once

#include <vector>

#include "contracts/value.h"

namespace zenqay {

/// True for the class ids of the criteria and their parts: input, output, period and parameter.
bool IsCriteriaClass(const Text& classId);

/// Creates one of them. A part that is given to another one stays itself: what is set on it later counts too.
Object CreateCriteriaObject(const Text& classId);

/// A range of a field, by the ERP's code of it.
struct FieldRange {
  Text field;
  Value low;
  Value high;
};

/// What the criteria say at the moment of a listing.
struct NetChangeCriteria {
  DateTime from;  // UTC
  DateTime to;    // UTC
  std::vector<FieldRange> ranges;
  std::vector<Text> fields;         // asked for, by code; those with their old values are among them
  std::vector<Text> fieldsWithOld;  // asked for with their old values

  bool AsksFor(const Text& field) const;
  bool AsksForOld(const Text& field) const;
};

/// Reads the criteria for a listing of `classId`, and the dates of its period, which are asked by operation name.
/// Raises 13 when `criteria` is no criteria object of this host, 5 naming what has not been set.
NetChangeCriteria ReadCriteria(const Value& criteria, const Text& classId);

}  // namespace zenqay
