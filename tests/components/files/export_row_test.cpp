#include "components/files/export_row.h"

#include <gtest/gtest.h>

#include <type_traits>

namespace zenqay {
namespace {

/// Its part with the old values points to it.
TEST(ExportRow, CannotBeCopied) {
  EXPECT_FALSE(std::is_copy_constructible_v<ExportRow>);
  EXPECT_FALSE(std::is_copy_assignable_v<ExportRow>);
}

}  // namespace
}  // namespace zenqay
