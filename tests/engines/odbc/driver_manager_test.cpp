#include "engines/odbc/driver_manager.h"

#include <gtest/gtest.h>

namespace zenqay {
namespace {

TEST(DriverOf, FindsTheDriverAndTheWidthOfItsCharacters) {
  struct Case {
    const char* driver;
    const char* dataSource;
    const char* name;
    CharacterWidth width;
    bool isPsqlodbc;
  };
  const Case cases[] = {
      {"FreeTDS", "", "FreeTDS", CharacterWidth::Wide, false},
      {"PostgreSQL Unicode", "", "PostgreSQL Unicode", CharacterWidth::Wide, true},
      {"PostgreSQL ANSI", "", "PostgreSQL ANSI", CharacterWidth::Narrow, true},
      {"/opt/microsoft/lib64/libmsodbcsql-18.3.so.2.1", "", "libmsodbcsql-18.3.so.2.1", CharacterWidth::Wide, false},
      {"/opt/oracle/libsqora.so.21.1", "", "libsqora.so.21.1", CharacterWidth::Wide, false},
      {"/usr/lib/odbc/libmaodbc.so", "", "libmaodbc.so", CharacterWidth::Narrow, false},
      {"no such driver", "", "no such driver", CharacterWidth::Narrow, false},
      {"", "no such source", "", CharacterWidth::Narrow, false},
  };
  for (const Case& test : cases) {
    const OdbcDriver driver = DriverOf(test.driver, test.dataSource);

    EXPECT_EQ(driver.name, test.name) << test.driver;
    EXPECT_EQ(driver.width(), test.width) << test.driver;
    EXPECT_EQ(driver.isPsqlodbc(), test.isPsqlodbc) << test.driver;
  }
}

}  // namespace
}  // namespace zenqay
