// Hashes are those of the published method, so that names made from them last.
// SPDX-License-Identifier: MIT
#include "numeric/hash.h"

#include <gtest/gtest.h>

namespace kestrel {
namespace {

// Vectors that the method's authors publish.
TEST(HashOf, IsWhatThePublishedMethodHas) {
  EXPECT_EQ(HashOf(""), 0xcbf29ce484222325u);
  EXPECT_EQ(HashOf("a"), 0xaf63dc4c8601ec8cu);
  EXPECT_EQ(HashOf("foobar"), 0x85944171f73967e8u);
}

TEST(HashOf, GoesOnFromAnEarlierText) {
  EXPECT_EQ(HashOf("bar", HashOf("foo")), HashOf("foobar"));
}

}  // namespace
}  // namespace kestrel
