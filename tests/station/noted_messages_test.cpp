// What is kept of messages.
// SPDX-License-Identifier: MIT
#include "station/noted_messages.h"

#include <gmock/gmock.h>

namespace kestrel {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

TEST(NotedMessages, AreKeptInOrderWithoutTheLineEndsAroundThem) {
  NotedMessages messages;
  messages.Show("Error Writing SPI");
  messages.Show("\r\n\r\nREADING\r\nFile = x\n", "Error");
  EXPECT_EQ(messages.Count(), 2U);
  EXPECT_THAT(messages.Take(), ElementsAre("Error Writing SPI", "Error: \n\nREADING\nFile = x"));
}

TEST(NotedMessages, AreForgottenOnceTheyWereTaken) {
  NotedMessages messages;
  messages.Show("\n");
  EXPECT_THAT(messages.Take(), ElementsAre(""));
  EXPECT_THAT(messages.Take(), IsEmpty());
  EXPECT_EQ(messages.Count(), 0U);
}

}  // namespace
}  // namespace kestrel
