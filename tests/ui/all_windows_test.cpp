// The windows together: opened from the menus, over one sensor that may be pulled out.
// SPDX-License-Identifier: MIT

#include <QFrame>
#include <QMenu>
#include <QTableView>

#include "alarms/alarm_file.h"
#include "alarms/band_table.h"
#include "device/rec_ctrl.h"
#include "ui/all_windows_bench.h"
#include "ui/bands/frmAlarmSpectrum.h"

namespace kestrel {
namespace {

class AllWindows : public AllWindowsBench {};

TEST_F(AllWindows, EveryMenuItemOpensItsWindowOnceAndWritesNothingWhileItFills) {
  Start();
  Settle();
  for (const Item& item : kItems) {
    SCOPED_TRACE(item.window);
    frames.clear();
    QWidget& window = Open(item);
    EXPECT_TRUE(window.isVisible());
    EXPECT_EQ(Writes(), std::vector<int>{});
    if (std::string(item.window) == "frmFileDir") {
      window.close();  // modal
      continue;
    }
    Trigger(item.action);
    const auto tops = QApplication::topLevelWidgets();
    EXPECT_EQ(std::count_if(tops.begin(), tops.end(),
                            [&](QWidget* top) { return top->objectName() == item.window; }),
              1);
  }
  EXPECT_TRUE(messages_.Texts().empty()) << messages_.Texts().front();
}

// One rule, said in the window itself.
TEST_F(AllWindows, WhileACaptureIsAwaitedServiceWindowsChangeNothingAndSayWhy) {
  Start();
  ChooseShortCaptures();
  struct Deed {
    Item item;
    const char* control;
    const char* note;
  };
  const std::array deeds{Deed{{"mnuCommand", "frmCommand"}, "cmdWrite", "lblNote"},
                         Deed{{"mnuAlarmCtrl", "frmALM_CTRL"}, "ckXenable", "lblNote"},
                         Deed{{"mnuDIOGPIO", "frmDIOGPIO"}, "opFuncGPIO1", "lblNote"},
                         Deed{{"MnuCal", "frmCalibration"}, "cmdAutoNull", "lblNote"},
                         Deed{{"mnuRegisters", "frmManualReg"}, "cmdUpdateFlash", "lblNote"},
                         Deed{{"mnuParallel", "frmPort"}, "cmdOK", "lblHint"},
                         Deed{{"mnuUsb", "frmUSBselect"}, "cmdFindEzUsb", "lblFinding"}};
  for (const Deed& deed : deeds) Open(deed.item);
  Choose("cbxCommand", 3);
  DuringCapture([&] {
    frames.clear();
    for (const Deed& deed : deeds) {
      SCOPED_TRACE(deed.item.window);
      auto& window = Find<QDialog>(deed.item.window);
      window.findChild<QAbstractButton*>(deed.control)->click();
      EXPECT_EQ(window.findChild<QLabel*>(deed.note)->text(),
                "Not done: the sensor is busy with a capture. Try again when it is complete, or "
                "stop it.");
    }
    EXPECT_EQ(Writes(), std::vector<int>{});
  });
  Press("cmdStart");
  EXPECT_EQ(Text("lblRecCount"), "1");
  EXPECT_EQ(InterfaceType, kUsbAdapter);
}

// Offsets from the main window's corner, 15 twips to the pixel.
TEST_F(AllWindows, WindowsArePlacedAtTheirOffsetsFromTheMainWindow) {
  Start();
  // On a scaled screen the windows have no room there and are moved into it.
  if (Window().devicePixelRatio() != 1) GTEST_SKIP() << "at another scale";
  const QPoint corner(10, 20);
  Window().move(corner);
  Settle();
  struct Placed {
    Item item;
    QPoint offset;
  };
  for (const Placed& placed : {Placed{{"mnuAlarmCtrl", "frmALM_CTRL"}, {20, 220}},
                               Placed{{"mnuCommand", "frmCommand"}, {40, 220}},
                               Placed{{"mnuDIOGPIO", "frmDIOGPIO"}, {20, 167}},
                               Placed{{"MnuCal", "frmCalibration"}, {20, 200}},
                               Placed{{"mnuRecInfo", "frmRecInfo"}, {87, 447}}}) {
    SCOPED_TRACE(placed.item.window);
    const QWidget& window = Open(placed.item);
    const QRect room = window.screen()->availableGeometry();
    const QPoint wished = Window().pos() + placed.offset;
    const QPoint place(std::min(wished.x(), room.right() - window.width()),
                       std::min(wished.y(), room.bottom() - window.height()));
    EXPECT_EQ(window.pos(), place);
    EXPECT_EQ(window.pos().x(), wished.x()) << "the screen is wide enough for all of them";
  }
  Find<QDialog>("frmCommand").move(300, 30);
  Find<QDialog>("frmCommand").close();
  Trigger("mnuCommand");
  EXPECT_EQ(Find<QDialog>("frmCommand").pos(), QPoint(300, 30)) << "where the user moved it";
}

TEST_F(AllWindows, TheProgramClosesWithAllOfThemOpen) {
  Start();
  for (const Item& item : kItems) {
    if (std::string(item.window) != "frmFileDir") Open(item);
  }
  EXPECT_TRUE(Window().close());
  Settle();
  windows_.reset();
  EXPECT_TRUE(messages_.Texts().empty());
}

TEST_F(AllWindows, APulledAdapterShowsWithoutABoxAndIsSelectedAgainAfterReplugging) {
  Start();
  ChooseShortCaptures();
  Press("cmdStart");
  const double before = DataX(5);
  hardware_.Adapter().Unplug(0);
  ASSERT_TRUE(QTest::qWaitFor([this] { return Find<QFrame>("lostNotice").isVisible(); }));
  EXPECT_EQ(Text("lblInterface"), "USB adapter lost");
  EXPECT_EQ(DataX(5), before);
  Press("cmdLostSelect");
  EXPECT_TRUE(Find<QDialog>("frmUSBselect").isVisible());
  Press("cmdLostRetry");
  EXPECT_TRUE(Find<QFrame>("lostNotice").isVisible()) << "it is still out";
  hardware_.Adapter().Replug(0);
  Press("cmdFindEzUsb");
  Find<QRadioButton>("optUsbPort_0").click();
  EXPECT_FALSE(Find<QFrame>("lostNotice").isVisible());
  Press("cmdStart");
  EXPECT_EQ(Text("lblStatusFlag_7"), "SET");
  EXPECT_TRUE(messages_.Texts().empty()) << messages_.Texts().front();
}

TEST_F(AllWindows, TheDebugMenuIsThereWithTheSimulatedSensorAlone) {
  Start();
  const auto* menu = Find<QAction>("mnuUnplug").associatedObjects().constFirst();
  EXPECT_FALSE(qobject_cast<const QMenu*>(menu)->menuAction()->isVisible());
  Trigger("mnuSimulated");
  EXPECT_TRUE(qobject_cast<const QMenu*>(menu)->menuAction()->isVisible());
  Trigger("mnuUnplug");
  ASSERT_TRUE(QTest::qWaitFor([this] { return Find<QFrame>("lostNotice").isVisible(); }));
  Trigger("mnuUnplug");
  Press("cmdLostRetry");
  EXPECT_FALSE(Find<QFrame>("lostNotice").isVisible());
}

// The editor's bands over the main window's plot.
class BandsOnThePlot : public AllWindowsBench {
 protected:
  void SetUp() override {
    Start();
    Window().resize(1200, 700);
    ChooseShortCaptures();
    Press("cmdStart");
    Open({"mnuAlarmSpectrum", "frmAlarmSpectrum"});
    BandTable table;
    table(kFLowField, 2, 0) = 60;
    table(kFHighField, 2, 0) = 90;
    table(Alarm1Field(Axis::Y), 2, 0) = 400;
    table(Alarm2Field(Axis::Y), 2, 0) = 700;
    files_.contents["/program/AlarmSpectrum_test.csv"] = AlarmFileText(table);
    Find<QComboBox>("cbxAfiles").setEditText("AlarmSpectrum_test.csv");
    Press("cmdReadFile");
    Find<QRadioButton>("opY").click();
    Settle();
  }

  [[nodiscard]] const OverlayLine& Line(int group, int band) {
    return Window().Overlay().Lines()(group, band);
  }
  // A place on the plot in bins and g.
  QPoint At(double bin, double g) { return Find<PictureBox>("pic1").ToPixels({bin, g}).toPoint(); }
  void Drag(QPoint from, QPoint to) {
    auto* plot = &Find<PictureBox>("pic1");
    QTest::mouseMove(plot, from);
    QTest::mousePress(plot, Qt::LeftButton, {}, from);
    QTest::mouseMove(plot, (from + to) / 2);
    QTest::mouseMove(plot, to);
    QTest::mouseRelease(plot, Qt::LeftButton, {}, to);
    Settle();
  }
};

TEST_F(BandsOnThePlot, TheChosenAxisShowsItsThresholdsInG) {
  EXPECT_TRUE(Line(3, 2).visible);
  EXPECT_DOUBLE_EQ(Line(1, 2).x1, 60);
  EXPECT_DOUBLE_EQ(Line(2, 2).x1, 90);
  EXPECT_NEAR(Line(3, 2).y1, 400 * 1.1921e-3, 1e-12);
  EXPECT_NEAR(Line(4, 2).y1, 700 * 1.1921e-3, 1e-12);
}

TEST_F(BandsOnThePlot, ADraggedBandGoesIntoTheTableAndUndoBringsItBack) {
  Drag(At(60, 0.2), At(80, 0.2));
  EXPECT_EQ(AlarmBandTable(kFLowField, 2, 0), 80);
  EXPECT_EQ(AlarmBandTable(kFHighField, 2, 0), 110);
  EXPECT_DOUBLE_EQ(Line(2, 2).x1, 110);
  Press("cmdUndo");
  Settle();
  EXPECT_EQ(AlarmBandTable(kFLowField, 2, 0), 60);
  EXPECT_DOUBLE_EQ(Line(1, 2).x1, 60);
}

TEST_F(BandsOnThePlot, ADraggedLevelSetsTheThreshold) {
  Drag(At(75, 400 * 1.1921e-3), At(75, 0.6));
  EXPECT_NEAR(AlarmBandTable(Alarm1Field(Axis::Y), 2, 0) * 1.1921e-3, 0.6, 0.01);
  EXPECT_EQ(AlarmBandTable(Alarm2Field(Axis::Y), 2, 0), 700);
}

TEST_F(BandsOnThePlot, TheyGoWithTheEditor) {
  Find<QDialog>("frmAlarmSpectrum").close();
  Settle();
  for (int group = 0; group < 5; ++group) EXPECT_FALSE(Line(group, 2).visible);
  EXPECT_TRUE(Find<QLabel>("lblABLow_2").isHidden());
  Press("cmdPlotScale");
  EXPECT_FALSE(Line(1, 2).visible);
}

TEST_F(BandsOnThePlot, TheyStayOverTheNextRecordAndAnotherScale) {
  Press("cmdStart");
  EXPECT_TRUE(Line(1, 2).visible);
  EXPECT_FALSE(Find<QLabel>("lblABLow_2").isHidden());
  Press("cmdPlotScale");
  EXPECT_TRUE(Line(1, 2).visible);
  EXPECT_FALSE(Find<QLabel>("lblABLow_2").isHidden());
}

}  // namespace
}  // namespace kestrel
