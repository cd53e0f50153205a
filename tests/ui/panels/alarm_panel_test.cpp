// Alarms stand out among the read-outs of the axes.
// SPDX-License-Identifier: MIT
#include "ui/panels/alarm_panel.h"

#include <gtest/gtest.h>

#include "app/program_state.h"
#include "support/fixed_locale.h"
#include "ui/parts/widgets.h"

namespace kestrel {
namespace {

class AlarmPanelTest : public ::testing::Test {
 protected:
  AlarmPanelTest() { SetColours(); }

  QLineEdit& Box(const char* name) { return *panel_.findChild<QLineEdit*>(name); }
  StateChip& Light(const char* name) { return *panel_.findChild<StateChip*>(name); }
  QColor GroundOfAlarm() { return Box("txtAlarm_1").palette().color(QPalette::Base); }

  FixedLocale locale_;
  AlarmPanel panel_{locale_};
};

TEST_F(AlarmPanelTest, AFaultAndAWarningStandOutAndNoAlarmDoesNot) {
  panel_.SetAlarm(Axis::X, " Fault");
  EXPECT_EQ(GroundOfAlarm(), ToColour(clrRed));
  EXPECT_TRUE(Box("txtAlarm_1").font().bold());
  panel_.SetAlarm(Axis::X, " Warning");
  EXPECT_EQ(GroundOfAlarm(), ToColour(clrYellow));
  panel_.SetAlarm(Axis::X, " None");
  EXPECT_EQ(GroundOfAlarm().alpha(), 0);
  EXPECT_FALSE(Box("txtAlarm_1").font().bold());
}

TEST_F(AlarmPanelTest, LightsOfBandsInAlarmStandOut) {
  for (int band = 1; band <= kAlarmBands; ++band) panel_.SetIndicator(Axis::Y, band, clrGreen);
  panel_.SetIndicator(Axis::Y, 2, clrYellow);
  panel_.SetIndicator(Axis::Y, 5, clrRed);
  EXPECT_FALSE(Light("lblBA_21").StandsOut());
  EXPECT_TRUE(Light("lblBA_22").StandsOut());
  EXPECT_TRUE(Light("lblBA_25").StandsOut());
  EXPECT_EQ(Light("lblBA_21").palette().color(QPalette::Window), ToColour(clrGreen));
  EXPECT_EQ(Light("lblBA_25").palette().color(QPalette::Window), ToColour(clrRed));
}

TEST_F(AlarmPanelTest, OnceItIsNotKnownAnAlarmKeepsItsTextWithoutItsColour) {
  panel_.SetAlarm(Axis::X, " Fault");
  panel_.SetIndicator(Axis::X, 1, clrRed);
  panel_.ShowAsOf();
  EXPECT_EQ(Box("txtAlarm_1").text(), " Fault");
  EXPECT_NE(GroundOfAlarm(), ToColour(clrRed));
  EXPECT_FALSE(Light("lblBA_11").StandsOut());
}

TEST_F(AlarmPanelTest, ReadOutsAreFlatAndTellTheirName) {
  const auto boxes = panel_.findChildren<QLineEdit*>();
  EXPECT_EQ(boxes.size(), 3 * 4);
  for (const QLineEdit* box : boxes) {
    EXPECT_FALSE(box->hasFrame());
    EXPECT_TRUE(box->isReadOnly());
    EXPECT_EQ(box->focusPolicy(), Qt::NoFocus);
    EXPECT_EQ(box->palette().color(QPalette::Base).alpha(), 0);
    EXPECT_FALSE(box->accessibleName().isEmpty());
  }
}

}  // namespace
}  // namespace kestrel
