// Where the rows of a query go.
#pragma once

#include <vector>

#include "base/date_time.h"

namespace zenqay {

/// Takes rows field after field, in the order of the columns, which are named first.
class RowSink {
 public:
  virtual ~RowSink() = default;

  virtual void PutColumns(std::vector<Text> names) = 0;
  virtual void AddNull() = 0;
  virtual void AddInteger(std::int32_t value) = 0;
  virtual void AddDouble(double value) = 0;
  virtual void AddText(std::string_view value) = 0;
  virtual void AddDateTime(DateTime value) = 0;
  virtual void EndRow() = 0;
};

}  // namespace zenqay
