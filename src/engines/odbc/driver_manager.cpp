#include "engines/odbc/driver_manager.h"

#include <odbcinst.h>
#include <sql.h>
#include <sqlext.h>

#include <algorithm>

namespace zenqay {
namespace {

/// An entry of odbc.ini or odbcinst.ini; empty when it is missing.
Text Setting(const Text& section, const char* entry, const char* file) {
  if (section.empty()) return "";
  char value[1024] = "";
  SQLGetPrivateProfileString(section.c_str(), entry, "", value, sizeof value, file);
  return value;
}

Text FileName(const Text& path) {
  return path.substr(path.rfind('/') + 1);
}

}  // namespace

CharacterWidth OdbcDriver::width() const {
  for (const char* part : {"tdsodbc", "msodbcsql", "sqlncli", "sqora", "psqlodbcw"}) {
    if (file.find(part) != Text::npos) return CharacterWidth::Wide;
  }
  return CharacterWidth::Narrow;
}

OdbcDriver DriverOf(Text driver, const Text& dataSource) {
  if (driver.empty()) driver = Setting(dataSource, "Driver", "odbc.ini");
  if (driver.find('/') != Text::npos) return {FileName(driver), LowerCased(FileName(driver))};
  const Text file = Setting(driver, "Driver", "odbcinst.ini");
  return {driver, LowerCased(FileName(file.empty() ? driver : file))};
}

std::vector<Text> InstalledDrivers(void* environment) {
  std::vector<Text> names;
  char name[256];
  char attributes[4];  // not looked at
  SQLSMALLINT nameLength = 0;
  SQLSMALLINT attributesLength = 0;
  SQLUSMALLINT direction = SQL_FETCH_FIRST;
  while (SQL_SUCCEEDED(SQLDrivers(environment, direction, reinterpret_cast<SQLCHAR*>(name), sizeof name, &nameLength,
                                  reinterpret_cast<SQLCHAR*>(attributes), sizeof attributes, &attributesLength))) {
    names.emplace_back(name);
    direction = SQL_FETCH_NEXT;
  }
  return names;
}

}  // namespace zenqay
