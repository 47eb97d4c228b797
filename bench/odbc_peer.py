"""The peer of a job on an ODBC database: the same upserts of the table Site by pyodbc, as a program of its own would
do them.

    odbc_peer.py CONNECTIONSTRING EXPORT
"""

import csv
import sys

import pyodbc


def main():
    connection = pyodbc.connect(sys.argv[1], autocommit=True)
    cursor = connection.cursor()
    cursor.execute("UPDATE SITE SET upd_flag = 1")
    with open(sys.argv[2], newline="", encoding="utf-8") as export:
        rows = csv.reader(export)
        next(rows)
        for site, description, customer in rows:
            cursor.execute(
                "UPDATE SITE SET SITE = ?, DESCRIPTION = ?, CUSTOMER = ?, upd_flag = 0 WHERE SITE = ?",
                site, description, customer, site)
            if cursor.rowcount == 0:
                cursor.execute(
                    "INSERT INTO SITE (SITE, DESCRIPTION, CUSTOMER, upd_flag) VALUES (?, ?, ?, 0)",
                    site, description, customer)
    cursor.execute("DELETE FROM SITE WHERE upd_flag = 1")
    connection.close()


main()
