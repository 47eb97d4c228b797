// A database whose answers a test writes down beforehand.
#pragma once

#include <deque>
#include <map>
#include <optional>
#include <vector>

#include "base/runtime_error.h"
#include "contracts/connection.h"
#include "doubles/journal.h"

namespace zenqay {

using TableRow = std::map<Text, Value>;  // by field name in lower case

/// What the database is asked, in the journal: `timeouts 0 0` … `open`, `sql <statement>`, behind it ` -> <rows>` where
/// the caller asked for the count, `query <statement>`, `put DefaultDatabase <name>`, `get DefaultDatabase`, `close`.
/// Unless told otherwise a statement touches one row and a query gives none.
class ScriptedDatabase : public Database {
 public:
  explicit ScriptedDatabase(Journal& journal) : journal_(journal) {}

  /// The counts of the next statements whose count is asked for, in turn; then 1 again.
  void AffectNext(std::vector<std::int64_t> counts) { counts_.insert(counts_.end(), counts.begin(), counts.end()); }

  /// The rows of every query whose text is `query`, or of every query when it is empty.
  void Answer(const Text& query, std::vector<TableRow> rows) { answers_[query] = std::move(rows); }

  /// Makes every statement or query that contains `part` fail; the items go to the error collection. `times` failures,
  /// behind which it succeeds.
  void FailOn(const Text& part, RuntimeError error, std::vector<ProviderError> items = {}, int times = 1'000'000);

  /// Whether a table's lock is got when it is asked for. The journal shows `lock SITE`, `unlock SITE`.
  bool lockIsFree = true;

  /// Refuses a statement without a text, as the real layer does.
  bool refusesEmptyStatements = false;

  /// Makes every call of `open`, `close`, `put DefaultDatabase`, `get DefaultDatabase`, `create recordset` (which the
  /// journal does not show), `close recordset`, `lock` or `unlock` fail.
  void FailCall(const Text& call, RuntimeError error) { callFailures_.insert_or_assign(call, error); }

  /// The journal shows the options of each query behind it: ` [keyset optimistic text]`.
  bool showQueryOptions = false;

  /// The journal shows timeouts, connection strings, and by its number the connection that a recordset is put on;
  /// one that is wrapped has none.
  bool showSettings = false;

  /// The journal shows `release connection` and `release recordset` when the last reference to one goes.
  bool showReleases = false;

  std::shared_ptr<Connection> CreateConnection() override;
  std::shared_ptr<Recordset> CreateRecordset() override;

 private:
  friend class ScriptedConnection;
  friend class ScriptedRecordset;

  struct Failure {
    Text part;
    RuntimeError error;
    std::vector<ProviderError> items;
    int times;
  };

  void Check(const Text& statement, Errors& errors);
  void CheckCall(const Text& call);
  void NoteRelease(const Text& what);
  std::int64_t NextCount();
  std::vector<TableRow> RowsOf(const Text& query) const;

  Journal& journal_;
  int connections_ = 0;
  std::deque<std::int64_t> counts_;
  std::map<Text, std::vector<TableRow>> answers_;
  std::vector<Failure> failures_;
  std::map<Text, RuntimeError> callFailures_;
};

}  // namespace zenqay
