// The embedded database.
#pragma once

#include <memory>
#include <optional>
#include <span>

#include "contracts/interruption.h"
#include "engines/dialect/statement_shape.h"
#include "engines/engine.h"
#include "engines/sqlite/repeated_keys.h"
#include "engines/statement_cache.h"
#include "system/file_lock.h"

struct sqlite3;
struct sqlite3_stmt;

namespace zenqay {

struct ReadOnlyFile;

/// A SQLite file in WAL mode; one that is only read stays in the mode that it has. Statements that differ in their
/// values alone are prepared once; what they do, count and raise is what the composed statement does.
class SqliteSession final : public EngineSession {
 public:
  /// Opens the file that `dataSource` names, as composed, with "\". Raises -2147467259, naming the
  /// file, when it is missing, is no database or may not be read and written. With ReadOnly it need not be writable,
  /// and neither it nor its directory is changed. A statement that waits for another process does so until the
  /// interruption ends it, and raises 18 then.
  explicit SqliteSession(const Text& dataSource, Access access = Access::ReadWrite,
                         std::shared_ptr<Interruption> interruption = std::make_shared<Interruption>());

  ~SqliteSession() override;

  std::int64_t Run(const Text& statement, bool countRows) override;
  void Query(const Text& statement, RowSink& rows) override;
  void BeginReading() override;
  bool EndReading() override;
  void Read(const Text& query, RowSink& rows) override { Query(query, rows); }

  /// As the file itself has it, without triggers.
  TableSchema SchemaOf(const Text& table) override;
  Text DatabaseKind() override { return "SQLite"; }

  /// A file has no catalogs: the name is kept and has no effect.
  void PutDefaultDatabase(const Text& name) override { defaultDatabase_ = name; }
  Text DefaultDatabase() override { return defaultDatabase_; }

  /// A lock on a file beside the database, "-lock" behind its name, which the operating system gives up with the
  /// process. Raises 5 on a disk of the network, whose locks are not to be relied on.
  bool TakeLock(const Text& name) override;
  void GiveLockBack(const Text& name) override;
  bool IsLockHeld(const Text& name) override;

 private:
  struct CloseDatabase {
    void operator()(sqlite3* database) const;
  };
  struct Finalize {
    void operator()(sqlite3_stmt* statement) const;
  };
  struct Reset {
    void operator()(sqlite3_stmt* statement) const;
  };
  using Statement = std::unique_ptr<sqlite3_stmt, Finalize>;

  struct Prepared {
    Statement whole;
    Statement withoutKeys;  // null where the keys have to be set
    std::vector<RepeatedKeys::Key> keys;
  };

  Text LockPath() const;
  static int OnCommit(void* session, sqlite3* database, const char* name, int logPages);
  void OpenFile(const Text& dataSource, const char* name, int flags);
  void PrepareFile();
  void PrepareReading(const ReadOnlyFile& file);
  template <typename Attempt>
  int Untiring(Attempt attempt);
  std::int64_t RunComposed(const Text& statement, bool countRows);
  std::optional<std::int64_t> RunShaped(bool countRows);
  const Prepared* PreparedShape();
  void PrepareWithoutKeys(Prepared& prepared);
  bool MayKeepKeys(const RepeatedKeys& repeated);
  bool RepeatsKeys(const Prepared& prepared) const;
  bool BindValues(sqlite3_stmt* prepared, std::span<const RepeatedKeys::Key> leftOut);
  std::int64_t ChangesSince(std::int64_t before) const;
  Statement Prepare(const char*& rest);
  bool Step(sqlite3_stmt* prepared);
  void ReadRows(const Statement& prepared, RowSink& rows);
  void AddField(const Statement& prepared, int column, bool isDate, RowSink& rows);

  std::shared_ptr<Interruption> interruption_;
  Text path_;
  std::optional<FileLock> locks_;
  std::unique_ptr<sqlite3, CloseDatabase> database_;
  StatementCache<Prepared> prepared_;
  Text translated_;               // this and what follows is kept for its memory
  StatementShape shape_;          // of the statement at hand
  std::vector<Text> boundTexts_;  // those of its values that are not in the statement as they are bound
  int logPages_ = 0;              // behind the latest commit
  Text defaultDatabase_;
  bool isReadAsUnchanging_ = false;
  Text readFrom_;  // the file's state when reading began
};

}  // namespace zenqay
