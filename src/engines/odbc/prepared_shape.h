// What a PostgreSQL server has prepared for a session.
#pragma once

#include <cstdint>
#include <memory>
#include <vector>

#include "engines/dialect/statement_shape.h"
#include "engines/odbc/prepared_statement.h"

namespace zenqay {

/// A shape that the session has met, and how far it can be trusted to do what the composed statement does.
///
/// A value that is too long for its column is an error of the composed UPDATE whether there is a row or not, since the
/// server looks at it beforehand; of a prepared one it is an error of the row. So an UPDATE is run as composed once for
/// each value that is longer, or a number that is greater, than any that the server has taken there.
class PreparedShape {
 public:
  /// The composed statement of this shape has run.
  void Learn(const StatementShape& shape);

  /// True when the statement may be run by its shape.
  bool Takes(const StatementShape& shape) const;

  /// True when it is to be prepared, or prepared anew: a plan that was made while a table was small is not the best one
  /// for good, so it is made again each time that the number of runs has doubled.
  bool isDue() const { return runs_ >= dueAt_; }

  void SetPrepared(std::unique_ptr<PreparedStatement> statement);
  void Forget() { statement_.reset(); }  // what is prepared
  void SetRefused() { isRefused_ = true; }
  void CountRun() { ++runs_; }

  PreparedStatement* statement() const { return statement_.get(); }  // null while nothing is prepared

 private:
  std::unique_ptr<PreparedStatement> statement_;
  bool isRefused_ = false;
  std::int64_t runs_ = 0;
  std::int64_t dueAt_ = 0;
  std::vector<std::int64_t> taken_;  // the greatest measure of each value
};

/// True when `types`, PostgreSQL's list of a prepared statement's parameters, has only those of which a text that is no
/// longer, or a number that is no greater, than one that was taken is taken as well.
bool AreMeasured(std::string_view types);

}  // namespace zenqay
