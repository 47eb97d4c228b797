#include "engines/odbc/driver_manager.h"

#include <gtest/gtest.h>

namespace zenqay {
namespace {

TEST(DriverOf, FindsTheDriverAndTheWidthOfItsCharacters) {
  struct Case {
    const char* text;
    const char* name;
    CharacterWidth width;
    bool isPsqlodbc;
  };
  const Case cases[] = {
      {"Driver=FreeTDS;Server=db", "FreeTDS", CharacterWidth::Wide, false},
      {"driver={PostgreSQL Unicode}", "PostgreSQL Unicode", CharacterWidth::Wide, true},
      {"Driver=PostgreSQL ANSI", "PostgreSQL ANSI", CharacterWidth::Narrow, true},
      {"Driver=/opt/microsoft/lib64/libmsodbcsql-18.3.so.2.1", "libmsodbcsql-18.3.so.2.1", CharacterWidth::Wide, false},
      {"Driver=/opt/oracle/libsqora.so.21.1", "libsqora.so.21.1", CharacterWidth::Wide, false},
      {"Driver=/usr/lib/odbc/libmaodbc.so", "libmaodbc.so", CharacterWidth::Narrow, false},
      {"Driver=no such driver", "no such driver", CharacterWidth::Narrow, false},
      {"DSN=no such source", "", CharacterWidth::Narrow, false},
  };
  for (const Case& test : cases) {
    const OdbcDriver driver = DriverOf(test.text);

    EXPECT_EQ(driver.name, test.name) << test.text;
    EXPECT_EQ(driver.width(), test.width) << test.text;
    EXPECT_EQ(driver.isPsqlodbc(), test.isPsqlodbc) << test.text;
  }
}

}  // namespace
}  // namespace zenqay
