// What unixODBC knows of the installed drivers.
#pragma once

#include <vector>

#include "base/text_functions.h"

namespace zenqay {

/// The width of the characters that a driver's calls take.
enum class CharacterWidth {
  Narrow,  // UTF-8
  Wide,    // UTF-16
};

struct OdbcDriver {
  Text name;  // as the driver manager lists it; the file's name for one that is given by its path
  Text file;  // in lower case, without its directory

  bool isPsqlodbc() const { return file.starts_with("psqlodbc"); }

  /// Wide for the drivers that export the wide calls and are at their best with them: FreeTDS, Microsoft's, Oracle's
  /// and PostgreSQL's Unicode driver; their files' names tell them. The driver manager would convert for any other, but
  /// not beyond the basic plane, so the others get the narrow calls. It is one width for all calls of a session,
  /// because a driver may tell from the first one which the program speaks.
  CharacterWidth width() const;
};

/// The driver of this name or at this path, without one that of the data source; empty names when they lead to none.
OdbcDriver DriverOf(Text driver, const Text& dataSource);

/// The names of the installed drivers. `environment` is an ODBC environment.
std::vector<Text> InstalledDrivers(void* environment);

}  // namespace zenqay
