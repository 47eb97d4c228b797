"""The peer of a job on an ODBC database: the same upserts of the table Site by pyodbc, as a script of an afternoon would
do them. Each statement has a cursor of its own, which keeps it prepared, and commits by itself.

    odbc_peer.py CONNECTIONSTRING EXPORT
"""

import csv
import sys

import pyodbc


def main():
    connection = pyodbc.connect(sys.argv[1] + ";UseServerSidePrepare=1", autocommit=True)
    update = connection.cursor()
    insert = connection.cursor()
    connection.execute("UPDATE SITE SET upd_flag = 1")
    with open(sys.argv[2], newline="", encoding="utf-8") as export:
        rows = csv.reader(export)
        next(rows)
        for site, description, customer in rows:
            update.execute(
                "UPDATE SITE SET SITE = ?, DESCRIPTION = ?, CUSTOMER = ?, upd_flag = 0 WHERE SITE = ?",
                site, description, customer, site)
            if update.rowcount == 0:
                insert.execute(
                    "INSERT INTO SITE (SITE, DESCRIPTION, CUSTOMER, upd_flag) VALUES (?, ?, ?, 0)",
                    site, description, customer)
    connection.execute("DELETE FROM SITE WHERE upd_flag = 1")
    connection.close()


main()
