// A study over records: what is shown, frozen, taken as reference and refused.
// SPDX-License-Identifier: MIT
#include "study/study.h"

#include <gtest/gtest.h>

namespace kestrel::study {
namespace {

TEST(Study, ShowsNothingBeforeTheFirstRecord) {
  const Study study([](auto) { return std::string(); });
  EXPECT_EQ(study.Shown(), nullptr);
}

}  // namespace
}  // namespace kestrel::study
