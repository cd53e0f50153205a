// A state's chip is small while all is well and as wide as its place where it is not.
// SPDX-License-Identifier: MIT
#include "ui/panels/state_chip.h"

#include <gtest/gtest.h>

#include "ui/rendering.h"

namespace kestrel {
namespace {

constexpr QColor kGreen(0, 210, 0);
constexpr QColor kRed(230, 0, 0);

class StateChipTest : public ::testing::Test {
 protected:
  StateChipTest() {
    chip_.setParent(&window_);
    chip_.resize(60, chip_.sizeHint().height());
    window_.resize(chip_.size());
    chip_.show();
  }

  int PixelsOf(const QColor& colour) {
    const QImage picture = RenderOf(window_, 1);
    int pixels = 0;
    for (int y = 0; y < picture.height(); ++y) {
      for (int x = 0; x < picture.width(); ++x) pixels += picture.pixelColor(x, y) == colour;
    }
    return pixels;
  }

  QWidget window_;
  StateChip chip_{"lblState", "OK"};
};

TEST_F(StateChipTest, AQuietStateIsASmallPatchOfItsColour) {
  chip_.ShowState(kGreen, false);
  EXPECT_LT(chip_.Ground().width(), chip_.width() * 2 / 3);
  EXPECT_TRUE(chip_.rect().contains(chip_.Ground()));
  EXPECT_GT(PixelsOf(kGreen), 50);
  EXPECT_EQ(chip_.palette().color(QPalette::Window), kGreen);
}

TEST_F(StateChipTest, AnExceptionFillsItsPlace) {
  chip_.ShowState(kRed, false);
  const int quiet = PixelsOf(kRed);
  chip_.ShowState(kRed, true);
  EXPECT_EQ(chip_.Ground(), chip_.rect());
  EXPECT_GT(PixelsOf(kRed), 2 * quiet);
}

TEST_F(StateChipTest, ThePlaceStaysAsLargeWhateverTheState) {
  chip_.ShowState(kGreen, false);
  const QSize quiet = chip_.sizeHint();
  chip_.ShowState(kRed, true);
  EXPECT_EQ(chip_.sizeHint(), quiet);
  EXPECT_EQ(quiet.height(), chip_.fontMetrics().height());
}

TEST_F(StateChipTest, AStateThatWasNeverShownHasNoGround) {
  chip_.Grey();
  EXPECT_FALSE(chip_.StandsOut());
  EXPECT_EQ(chip_.palette().color(QPalette::Window),
            QApplication::palette().color(QPalette::Window));
}

TEST_F(StateChipTest, AStateThatIsNotKnownNowIsSmallAndGrey) {
  chip_.ShowState(kRed, true);
  chip_.Grey();
  EXPECT_FALSE(chip_.StandsOut());
  EXPECT_EQ(PixelsOf(kRed), 0);
}

}  // namespace
}  // namespace kestrel
