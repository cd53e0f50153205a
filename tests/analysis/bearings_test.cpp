// Behaviour of bearings.
// SPDX-License-Identifier: MIT
#include "analysis/bearings.h"

#include <gmock/gmock.h>

#include <limits>

namespace kestrel::analysis {
namespace {

TEST(Bearings, GeometryGivesTheDefectFrequencies) {
  // Nine elements of 7.94 mm on 39.04 mm, no contact angle: a widely published test-rig bearing.
  const Told<BearingFactors> factors = FactorsOf({9, 7.94, 39.04, 0});
  ASSERT_TRUE(factors);
  EXPECT_NEAR(factors->outer, 3.585, 0.001);
  EXPECT_NEAR(factors->inner, 5.415, 0.001);
  EXPECT_NEAR(factors->spin, 2.357, 0.001);
  EXPECT_NEAR(factors->cage, 0.398, 0.001);
}

TEST(Bearings, OuterAndInnerAddUpToTheElements) {
  for (const BearingGeometry& geometry :
       {BearingGeometry{9, 7.94, 39.04, 0}, BearingGeometry{14, 10, 60, 15},
        BearingGeometry{1, 1, 100, 89.9}}) {
    const Told<BearingFactors> factors = FactorsOf(geometry);
    EXPECT_NEAR(factors->outer + factors->inner, geometry.elements, 1e-12);
    EXPECT_EQ(ElementsOf(*factors), geometry.elements);
  }
}

TEST(Bearings, TheContactAngleWeakensTheDifferenceOfTheRaces) {
  const BearingFactors straight = *FactorsOf({12, 10, 60, 0});
  const BearingFactors oblique = *FactorsOf({12, 10, 60, 40});
  EXPECT_LT(oblique.inner, straight.inner);
  EXPECT_GT(oblique.outer, straight.outer);
  EXPECT_NEAR(oblique.outer, 6 * (1 - 0.7660444 / 6), 1e-6);
  EXPECT_NEAR(oblique.inner, 6 * (1 + 0.7660444 / 6), 1e-6);
}

TEST(Bearings, GeometriesThatAreNoneAreRefusedWithWhatIsWrong) {
  const double nan = std::numeric_limits<double>::quiet_NaN();
  const double infinity = std::numeric_limits<double>::infinity();
  for (const BearingGeometry& geometry :
       {BearingGeometry{0, 8, 40, 0}, BearingGeometry{-3, 8, 40, 0}, BearingGeometry{201, 8, 40, 0},
        BearingGeometry{9, 0, 40, 0}, BearingGeometry{9, 40, 40, 0}, BearingGeometry{9, nan, 40, 0},
        BearingGeometry{9, 8, infinity, 0}, BearingGeometry{9, 8, 40, 90},
        BearingGeometry{9, 8, 40, -1}, BearingGeometry{9, 8, 40, nan}}) {
    const Told<BearingFactors> factors = FactorsOf(geometry);
    ASSERT_FALSE(factors);
    EXPECT_FALSE(factors.Why().reason.empty());
    EXPECT_FALSE(factors.Why().cure.empty());
  }
}

TEST(Bearings, FactorsWhoseSumIsNoWholeNumberAreASlipOfThePen) {
  EXPECT_EQ(ElementsOf({3.585, 5.415, 2.357, 0.398}), 9);
  EXPECT_FALSE(ElementsOf({3.585, 5.815, 2.357, 0.398}));
  EXPECT_FALSE(ElementsOf({}));
  EXPECT_FALSE(ElementsOf({100.2, 100.8, 2.357, 0.398})) << "201 elements are too many";
  EXPECT_FALSE(ElementsOf({0.02, 0.02, 2.357, 0.398})) << "not one";
  EXPECT_FALSE(AreFactors({3.585, 5.415, 0, 0.398}));
  EXPECT_FALSE(AreFactors({3.585, 5.415, 2.357, 0}));
  EXPECT_FALSE(AreFactors({3.585, 5.415, 2.357, 1.2}));
  EXPECT_FALSE(AreFactors({3.585, std::numeric_limits<double>::quiet_NaN(), 2.357, 0.4}));
}

}  // namespace
}  // namespace kestrel::analysis
