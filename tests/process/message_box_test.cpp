#include "process/message_box.h"

#include <gtest/gtest.h>

#include "doubles/process_fixture.h"

namespace zenqay {
namespace {

TEST(ShowMessageBox, ShowsItsTextAndReturns) {
  ProcessFixture fixture;

  ShowMessageBox(fixture.process, "tstables or tstreenodes table is empty .. Cannot Proceed");

  EXPECT_EQ(fixture.journal.Take(), "box tstables or tstreenodes table is empty .. Cannot Proceed\n");
}

TEST(ShowMessageBox, StandsInTheTrace) {
  ProcessFixture fixture;
  Trace trace((fixture.directory.path() / "trace.jsonl").string());
  fixture.process.trace = &trace;

  ShowMessageBox(fixture.process, "say \"no\"");

  EXPECT_EQ(fixture.journal.Take(), "box say \"no\"\n");
  EXPECT_EQ(fixture.directory.Read("trace.jsonl"), "{\"n\":1,\"kind\":\"box\",\"text\":\"say \\\"no\\\"\"}\n");
}

}  // namespace
}  // namespace zenqay
