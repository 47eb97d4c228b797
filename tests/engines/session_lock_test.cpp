// The locks of tables as the servers get them.
#include "engines/odbc/session_lock.h"

#include <gtest/gtest.h>

namespace zenqay {
namespace {

TEST(SessionLockOf, SqlServerIsAnApplicationLockOfTheSession) {
  const SessionLock lock = *SessionLockOf("Microsoft SQL Server", "O'SITE");

  EXPECT_EQ(lock.take,
            "DECLARE @answer INT; EXEC @answer = sp_getapplock @Resource = N'zenqay.o''site', @LockMode = "
            "'Exclusive', @LockOwner = 'Session', @LockTimeout = 0; SELECT @answer AS answer");
  EXPECT_EQ(lock.held,
            "SELECT CASE APPLOCK_MODE('public', N'zenqay.o''site', 'Session') WHEN 'Exclusive' THEN 1 ELSE 0 END AS "
            "answer");
  EXPECT_EQ(lock.heldByAny,
            "SELECT CASE APPLOCK_TEST('public', N'zenqay.o''site', 'Exclusive', 'Session') WHEN 0 THEN 1 ELSE 0 END AS "
            "answer");
  EXPECT_EQ(lock.giveBack, "EXEC sp_releaseapplock @Resource = N'zenqay.o''site', @LockOwner = 'Session'");
  EXPECT_EQ(lock.got, 0);
  EXPECT_EQ(lock.notGot, -1);
  EXPECT_EQ(lock.holds, 1);
}

TEST(SessionLockOf, OracleIsALockOfThePackageForLocks) {
  const SessionLock lock = *SessionLockOf("Oracle", "SITE");
  const Text id =
      "DBMS_UTILITY.GET_HASH_VALUE('zenqay.' || SYS_CONTEXT('USERENV', 'CURRENT_SCHEMA') || '.' || 'site', 0, "
      "1073741824)";

  EXPECT_EQ(lock.take, "SELECT DBMS_LOCK.REQUEST(" + id + ", 6, 0) AS answer FROM DUAL");
  EXPECT_EQ(lock.held, lock.take);
  EXPECT_EQ(lock.heldByAny, "");
  EXPECT_EQ(lock.giveBack, "SELECT DBMS_LOCK.RELEASE(" + id + ") FROM DUAL");
  EXPECT_EQ(lock.got, 0);
  EXPECT_EQ(lock.notGot, 1);
  EXPECT_EQ(lock.holds, 4);
}

TEST(SessionLockOf, PostgreSqlIsAnAdvisoryLockOfASessionWhoseMachineIsMissedSoon) {
  const SessionLock lock = *SessionLockOf("PostgreSQL", "SITE");
  const Text key = "hashtextextended('zenqay.' || coalesce(current_schema(), '') || '.' || 'site', 0)";

  EXPECT_EQ(lock.before, (std::vector<Text>{"SET tcp_keepalives_idle = 60", "SET tcp_keepalives_interval = 15",
                                            "SET tcp_keepalives_count = 4"}));
  EXPECT_EQ(lock.take, "SELECT CASE WHEN pg_try_advisory_lock(" + key + ") THEN 1 ELSE 0 END AS answer");
  EXPECT_EQ(lock.held,
            "SELECT CASE WHEN EXISTS (SELECT 1 FROM pg_locks WHERE locktype = 'advisory' AND granted AND pid = "
            "pg_backend_pid() AND objsubid = 1 AND (classid::bigint << 32) | objid::bigint = " +
                key + ") THEN 1 ELSE 0 END AS answer");
  EXPECT_EQ(lock.heldByAny,
            "SELECT CASE WHEN EXISTS (SELECT 1 FROM pg_locks WHERE locktype = 'advisory' AND granted AND database = "
            "(SELECT oid FROM pg_database WHERE datname = current_database()) AND objsubid = 1 AND (classid::bigint << "
            "32) | objid::bigint = " +
                key + ") THEN 1 ELSE 0 END AS answer");
  EXPECT_EQ(lock.giveBack, "SELECT pg_advisory_unlock(" + key + ")");
  EXPECT_EQ(lock.got, 1);
  EXPECT_EQ(lock.notGot, 0);
}

TEST(SessionLockOf, AnotherServerIsUnknown) {
  EXPECT_FALSE(SessionLockOf("MySQL", "SITE"));
}

}  // namespace
}  // namespace zenqay
