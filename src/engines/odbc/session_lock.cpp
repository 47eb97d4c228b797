#include "engines/odbc/session_lock.h"

namespace zenqay {
namespace {

Text Quoted(const Text& text) {
  return "'" + Replaced(text, "'", "''") + "'";
}

Text AmongPostgreSqlLocks(const Text& whose, const Text& key) {
  return "SELECT CASE WHEN EXISTS (SELECT 1 FROM pg_locks WHERE locktype = 'advisory' AND granted AND " + whose +
         " AND objsubid = 1 AND (classid::bigint << 32) | objid::bigint = " + key + ") THEN 1 ELSE 0 END AS answer";
}

/// A lock belongs to the database that the session is on; the key is made of the schema and the name.
SessionLock OfPostgreSql(const Text& name) {
  const Text key = "hashtextextended('zenqay.' || coalesce(current_schema(), '') || '.' || " + Quoted(name) + ", 0)";
  return {
      .before = {"SET tcp_keepalives_idle = 60", "SET tcp_keepalives_interval = 15", "SET tcp_keepalives_count = 4"},
      .take = "SELECT CASE WHEN pg_try_advisory_lock(" + key + ") THEN 1 ELSE 0 END AS answer",
      .held = AmongPostgreSqlLocks("pid = pg_backend_pid()", key),
      .heldByAny =
          AmongPostgreSqlLocks("database = (SELECT oid FROM pg_database WHERE datname = current_database())", key),
      .giveBack = "SELECT pg_advisory_unlock(" + key + ")"};
}

/// A lock belongs to the database that the session is on.
SessionLock OfSqlServer(const Text& name) {
  const Text resource = "N" + Quoted("zenqay." + name);
  return {.before = {},
          .take = "DECLARE @answer INT; EXEC @answer = sp_getapplock @Resource = " + resource +
                  ", @LockMode = 'Exclusive', @LockOwner = 'Session', @LockTimeout = 0; SELECT @answer AS answer",
          .held = "SELECT CASE APPLOCK_MODE('public', " + resource +
                  ", 'Session') WHEN 'Exclusive' THEN 1 ELSE 0 END AS answer",
          .heldByAny = "SELECT CASE APPLOCK_TEST('public', " + resource +
                       ", 'Exclusive', 'Session') WHEN 0 THEN 1 ELSE 0 END AS answer",
          .giveBack = "EXEC sp_releaseapplock @Resource = " + resource + ", @LockOwner = 'Session'",
          .got = 0,
          .notGot = -1};
}

/// A lock is a number below 2^30 and belongs to the whole server. 6 is the exclusive mode; who asks for a lock that his
/// session holds is answered 4.
SessionLock OfOracle(const Text& name) {
  const Text id = "DBMS_UTILITY.GET_HASH_VALUE('zenqay.' || SYS_CONTEXT('USERENV', 'CURRENT_SCHEMA') || '.' || " +
                  Quoted(name) + ", 0, 1073741824)";
  const Text request = "SELECT DBMS_LOCK.REQUEST(" + id + ", 6, 0) AS answer FROM DUAL";
  return {.before = {},
          .take = request,
          .held = request,
          .heldByAny = "",
          .giveBack = "SELECT DBMS_LOCK.RELEASE(" + id + ") FROM DUAL",
          .got = 0,
          .notGot = 1,
          .holds = 4};
}

}  // namespace

std::optional<SessionLock> SessionLockOf(const Text& dbms, const Text& name) {
  const Text key = LowerCased(name);
  if (StartsWithIgnoringCase(dbms, "PostgreSQL")) return OfPostgreSql(key);
  if (StartsWithIgnoringCase(dbms, "Microsoft SQL Server")) return OfSqlServer(key);
  if (StartsWithIgnoringCase(dbms, "Oracle")) return OfOracle(key);
  return std::nullopt;
}

}  // namespace zenqay
