// What a connection string becomes for SQLDriverConnect.
#pragma once

#include <vector>

#include "base/text_functions.h"

namespace zenqay {

/// What goes to SQLDriverConnect, and what in it leads to the driver; one of the two is empty.
struct DriverString {
  Text text;
  Text driver;
  Text dataSource;
};

/// `installedDrivers` are the names that the driver manager knows.
///
/// A text without Provider is the driver's own and goes as it is; so does the rest behind Provider=MSDASQL. The
/// providers of SQL Server (SQLOLEDB, MSOLEDBSQL, SQLNCLI) and Oracle (OraOLEDB.Oracle, MSDAORA), with or without a
/// version behind the name, get the installed driver and its words for Data Source, Initial Catalog, User ID, Password
/// and Integrated Security; any other key goes as it is. FreeTDS also gets what the vendor's driver knows by itself:
/// host and port of their own (1433 for a server without a name of an instance), the version of the protocol, and its
/// word for Encrypt.
///
/// Raises -2147467259 for a malformed text, an unknown provider, a provider without an installed driver, and a value
/// that FreeTDS cannot be given; none repeats the text.
DriverString DriverConnectString(const Text& connectionString, const std::vector<Text>& installedDrivers);

/// The text with psqlodbc's reading through a server-side cursor switched off, whatever it or its data source says: the
/// cursor lives in a transaction that would keep the statements from being committed one by one.
Text WithoutDeclareFetch(const Text& driverString);

/// A value in braces where it holds a ";", a brace, or a blank at an end; its closing braces are doubled.
Text QuotedDriverValue(const Text& value);

/// The same for FreeTDS, which reads a value in braces up to "};" and a bare one up to ";", each as it stands; a ";"
/// has to follow. Raises -2147467259 for a value that neither form holds.
Text QuotedFreeTdsValue(const Text& value);

/// The passwords that the text holds, with and without their quotes.
std::vector<Text> PasswordsOf(const Text& connectionString);

}  // namespace zenqay
