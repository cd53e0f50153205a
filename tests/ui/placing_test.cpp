// Where secondary windows stand, and that the main window may cover them.
// SPDX-License-Identifier: MIT

#include <QScreen>
#include <QWindow>

#include "ui/all_windows_bench.h"

namespace kestrel {
namespace {

class Placing : public AllWindowsBench {
 protected:
  // The main window with so much of the screen free on its left.
  void PlaceMain(int left) {
    Start();
    Window().resize(1240, 690);
    Window().move(left, 40);
    Settle();
  }
  QRect Plot() {
    auto& plot = Find<PictureBox>("pic1");
    return {plot.mapToGlobal(QPoint()), plot.size()};
  }
  static bool IsLarge() { return QApplication::primaryScreen()->size().width() >= 1900; }
};

TEST_F(Placing, EverySecondaryWindowMayGoBehindTheMainWindow) {
  Start();
  for (const Item& item : kItems) {
    if (std::string(item.window) == "frmFileDir") continue;  // ends with OK or Cancel
    SCOPED_TRACE(item.window);
    const QWidget& window = Open(item);
    EXPECT_EQ(window.windowHandle()->transientParent(), nullptr);
    EXPECT_EQ(window.windowType(), Qt::Window);
    EXPECT_FALSE(window.testAttribute(Qt::WA_QuitOnClose)) << "the main window ends the program";
  }
}

TEST_F(Placing, BesideTheMainWindowWhereTheScreenHasRoom) {
  if (!IsLarge()) GTEST_SKIP() << "a smaller screen";
  PlaceMain(10);
  for (const char* action : {"mnuCommand", "MnuCal", "mnuRecInfo"}) Trigger(action);
  Settle();
  for (const char* name : {"frmCommand", "frmCalibration", "frmRecInfo"}) {
    SCOPED_TRACE(name);
    const QRect place = Find<QDialog>(name).geometry();
    EXPECT_GT(place.left(), Window().geometry().right());
    EXPECT_LE(place.right(), Window().screen()->availableGeometry().right());
  }
}

TEST_F(Placing, OverTheColumnsRatherThanThePlotWhereThatLeavesItFree) {
  if (!IsLarge()) GTEST_SKIP() << "a smaller screen";
  PlaceMain(340);
  Trigger("mnuAlarmCtrl");
  Settle();
  const QRect place = Find<QDialog>("frmALM_CTRL").geometry();
  EXPECT_FALSE(place.intersects(Plot()));
  EXPECT_TRUE(Window().screen()->availableGeometry().contains(place));
}

TEST_F(Placing, OnTheLeftWhereTheRoomIsThere) {
  if (!IsLarge()) GTEST_SKIP() << "a smaller screen";
  PlaceMain(670);
  Trigger("mnuCommand");
  Settle();
  EXPECT_LT(Find<QDialog>("frmCommand").geometry().right(), Window().geometry().left());
}

}  // namespace
}  // namespace kestrel
