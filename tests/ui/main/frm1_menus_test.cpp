// What opens the secondary windows, and the handlers around them.
// SPDX-License-Identifier: MIT
// What opens the secondary windows, and the handlers around them.

#include <QGroupBox>
#include <QStatusBar>

#include "record/capture_data.h"
#include "regmap/register_table.h"
#include "ui/main/frm1.h"
#include "ui/window_bench.h"
#include "ui/windows/frmFileDir.h"

namespace kestrel {
namespace {

using Words = std::vector<std::string>;

class Frm1Menus : public WindowBench {
 protected:
  // Names of the secondary windows on the screen.
  Words Shown() {
    Words names;
    for (const QDialog* window : Window().findChildren<QDialog*>()) {
      if (window->isVisible()) names.push_back(window->objectName().toStdString());
    }
    return names;
  }
};

TEST_F(Frm1Menus, ItemsOpenTheirWindows) {
  Start();
  for (const auto& [item, window] : {std::pair{"mnuCommand", "frmCommand"},
                                     {"mnuRecInfo", "frmRecInfo"},
                                     {"mnuDatalog", "frmFileDir"}}) {
    EXPECT_EQ(Shown(), Words{});
    Trigger(item);
    EXPECT_EQ(Shown(), Words{window});
    Find<QDialog>(window).close();
  }
}

TEST_F(Frm1Menus, ButtonsOpenTheirWindows) {
  Start();
  for (const auto& [button, window] :
       {std::pair{"cmdRecInfo", "frmRecInfo"}, {"cmdConfigDataLog", "frmFileDir"}}) {
    EXPECT_EQ(Shown(), Words{});
    Press(button);
    EXPECT_EQ(Shown(), Words{window});
    Find<QDialog>(window).close();
  }
}

TEST_F(Frm1Menus, WindowsThatStayOpenLeaveTheMainWindowUsable) {
  Start();
  Trigger("mnuCommand");
  Trigger("mnuRecInfo");
  EXPECT_EQ(Shown().size(), 2U);
  for (const Words::value_type& name : Shown()) {
    EXPECT_FALSE(Find<QDialog>(name.c_str()).isModal()) << name;
  }
  ChooseShortCaptures();
  Press("cmdStart");
  EXPECT_EQ(Text("lblRecCount"), "1");
}

TEST_F(Frm1Menus, ClosingTheMainWindowTakesTheOthersAlong) {
  Start();
  Trigger("mnuCommand");
  Trigger("mnuRecInfo");
  windows_.reset();
  for (const QWidget* window : QApplication::topLevelWidgets()) {
    EXPECT_NE(window->objectName(), "frmCommand");
    EXPECT_NE(window->objectName(), "frmRecInfo");
  }
}

// A progress step of the read-out is the only moment in which a handler could come in between.
TEST_F(Frm1Menus, WhileARecordIsReadOtherHandlersAreRefusedPolitely) {
  Start();
  ChooseShortCaptures();
  Trigger("mnuRecInfo");
  Trigger("mnuCommand");
  Choose("cbxCommand", 10);
  int asked = 0;
  QString notice;
  const auto press = [&] {
    if (asked++ > 0) return;
    usb_.FailFrom(0);
    Press("cmdWrite");
    Press("cmdRead");
    Press("cmdReadBuffer");
    Trigger("mnuDatalog");
    EXPECT_EQ(usb_.Requests(), 0);
    notice = Window().statusBar()->currentMessage();
  };
  QObject::connect(&Find<QProgressBar>("prgReadout"), &QProgressBar::valueChanged, press);
  Press("cmdStart");
  EXPECT_GT(asked, 0);
  EXPECT_EQ(notice, "The sensor is being read or written. Please try again in a moment.");
  EXPECT_EQ(Window().findChild<frmFileDir*>("frmFileDir"), nullptr);
  EXPECT_TRUE(messages_.Texts().empty());
  EXPECT_GT(RawX(1), 0);
}

TEST_F(Frm1Menus, AStoredRecordIsReadOutOfTheFlashMemory) {
  Start();
  ChooseShortCaptures();
  Choose("cbxStorage", 2);
  Press("cmdStart");
  const RecordArray first = RawX;
  Press("cmdStart");
  ASSERT_FALSE(RawX == first) << "noise differs from record to record";
  Choose("cbxRecPntr", 0);
  Press("cmdGetRecord");
  EXPECT_EQ(RawX, first);
  EXPECT_TRUE(messages_.Texts().empty());
}

TEST_F(Frm1Menus, TheFrameShowsThatSettingsAreExchanged) {
  Start();
  auto& frame = Find<QGroupBox>("FraCap");
  const QString before = frame.title();
  QString during;
  During(50, [&] { during = frame.title(); });
  Choose("cbxWindow", 2);
  EXPECT_EQ(during, "WRITE/READ CAPT_CTRL");
  EXPECT_EQ(frame.title(), before);
}

// The sign's wait would end the capture's.
TEST_F(Frm1Menus, ASettingChangedDuringACaptureDoesNotDisturbIt) {
  Start();
  Choose("cbxFFTAvgs", 10);
  const QString before = Find<QGroupBox>("FraCap").title();
  QString during;
  During(60, [&] {
    During(50, [&] { during = Find<QGroupBox>("FraCap").title(); });
    Choose("cbxRecPntr", 3);
  });
  Press("cmdStart");
  EXPECT_EQ(during, before);
  EXPECT_EQ(Text("lblRecCount"), "1");
  core_.registers.ReadReg(row::REC_PNTR);
  EXPECT_EQ(RegValue, 3);
}

TEST_F(Frm1Menus, WhileACaptureIsWaitedForNoOtherRecordIsRead) {
  Start();
  Choose("cbxFFTAvgs", 10);
  for (const char* button : {"cmdGetRecord", "cmdReadBuffer"}) {
    QString notice;
    During(60, [&] {
      Press(button);
      notice = Window().statusBar()->currentMessage();
    });
    Press("cmdStart");
    EXPECT_EQ(notice, "Please wait for the capture or stop it first.") << button;
  }
  EXPECT_EQ(Text("lblRecCount"), "2");
}

TEST_F(Frm1Menus, ACaptureStartedDuringTheSignEndsIt) {
  Start();
  QString during;
  During(40, [&] {
    During(60, [&] { during = Find<QGroupBox>("FraCap").title(); });
    Press("cmdStart");
  });
  Choose("cbxFFTAvgs", 10);
  EXPECT_EQ(during, "Record settings");
  EXPECT_EQ(Find<QGroupBox>("FraCap").title(), "Record settings");
}

TEST_F(Frm1Menus, TheOpenSettingsShowTheNextFileNumberAfterACapture) {
  Start();
  ChooseShortCaptures();
  Find<QCheckBox>("ckDataLog").click();
  Press("cmdConfigDataLog");
  EXPECT_EQ(Text("lblFileNumber"), "1");
  Press("cmdStart");
  EXPECT_EQ(Text("lblFileNumber"), "2");
}

}  // namespace
}  // namespace kestrel
