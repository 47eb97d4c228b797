"""The peer of a job on a SQLite file: the same upserts of the table Site with bound parameters, as a script of an
afternoon would do them. Each statement commits by itself.

    sqlite_peer.py DATABASE EXPORT
"""

import csv
import sqlite3
import sys


def main():
    connection = sqlite3.connect(sys.argv[1], isolation_level=None)
    connection.execute("PRAGMA journal_mode = WAL")
    connection.execute("PRAGMA synchronous = NORMAL")
    connection.execute("UPDATE SITE SET upd_flag = 1")
    with open(sys.argv[2], newline="", encoding="utf-8") as export:
        rows = csv.reader(export)
        next(rows)
        for site, description, customer in rows:
            updated = connection.execute(
                "UPDATE SITE SET SITE = ?, DESCRIPTION = ?, CUSTOMER = ?, upd_flag = 0 WHERE SITE = ?",
                (site, description, customer, site))
            if updated.rowcount == 0:
                connection.execute(
                    "INSERT INTO SITE (SITE, DESCRIPTION, CUSTOMER, upd_flag) VALUES (?, ?, ?, 0)",
                    (site, description, customer))
    connection.execute("DELETE FROM SITE WHERE upd_flag = 1")
    connection.close()


main()
