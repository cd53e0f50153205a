// What a refusal says in one line, and which option it names as the cure.
// SPDX-License-Identifier: MIT
#include "analysis/refusal.h"

#include <gmock/gmock.h>

namespace kestrel::analysis {
namespace {

TEST(Refusals, AsALineAreTitleReasonAndCureAsFarAsThereAre) {
  EXPECT_EQ(AsLine({.title = "No level", .reason = "It is a hold.", .cure = "Take an average"}),
            "No level: It is a hold. Take an average.");
  EXPECT_EQ(AsLine({.title = "No level", .reason = "It is a hold."}), "No level: It is a hold.");
  EXPECT_EQ(AsLine({.title = "No level"}), "No level");
}

TEST(Refusals, TheFastestOptionThatHoldsTheBandIsTheCure) {
  Refusal refusal{.options = {{.option = 0, .fromHz = 400, .toHz = 50000},
                              {.option = 1, .fromHz = 50, .toHz = 6000},
                              {.option = 2, .fromHz = 6, .toHz = 800}}};
  MarkWhatWouldDo(refusal, 50, 800);
  EXPECT_EQ(refusal.cureOption, 1);
  EXPECT_EQ(refusal.cure, "Capture at option 1");
  EXPECT_FALSE(refusal.options[0].wouldDo);
  EXPECT_TRUE(refusal.options[1].wouldDo);
  EXPECT_TRUE(refusal.options[2].wouldDo) << "it ends with the band";
}

TEST(Refusals, WithoutSuchAnOptionTheCureIsLeftToWhoRefuses) {
  Refusal refusal{.cure = "Wait", .options = {{.option = 0, .fromHz = 400, .toHz = 50000}}};
  MarkWhatWouldDo(refusal, 50, 800);
  EXPECT_FALSE(refusal.cureOption);
  EXPECT_EQ(refusal.cure, "Wait");
}

}  // namespace
}  // namespace kestrel::analysis
