// The window of the parallel port's address.
// SPDX-License-Identifier: MIT
#include "ui/windows/frmPort.h"
#include "support/given.h"

#include <QSignalSpy>

#include "ui/window_bench.h"

namespace kestrel {
namespace {

using Words = std::vector<std::string>;

class FrmPort : public WindowBench {
 protected:
  FrmPort() {
    Start();
    window_ = new frmPort(core_, Window().Edge(), &Window());
    window_->ShowInFront();
  }

  void PressOk(const char* text) {
    Box().clear();
    QTest::keyClicks(&Box(), text);
    Press("cmdOK");
  }
  QLineEdit& Box() { return Find<QLineEdit>("txtUser"); }
  std::string Config() { return files_.contents[files_.WorkingFolder() / "CommPort.cfg"]; }

  frmPort* window_;
};

TEST_F(FrmPort, ShowsTheAddressInHexadecimalWheneverItIsActivated) {
  EXPECT_EQ(BoxText("txtUser"), "378");
  window_->close();
  Given(PortAddress) = -8;
  window_->ShowInFront();
  EXPECT_EQ(BoxText("txtUser"), "FFF8");
}

TEST_F(FrmPort, OkMakesThePortTheInterfaceAndRemembersIt) {
  const QSignalSpy chosen(window_, &frmPort::InterfaceChosen);
  PressOk("278");
  EXPECT_EQ(InterfaceType, kParallelPort);
  EXPECT_EQ(PortAddress, 0x278);
  EXPECT_TRUE(PortReady);
  EXPECT_EQ(Config(), "Interface = 1\nPort Address = 632\nProductNumber = 31407\n");
  EXPECT_EQ(Text("lblInterface"), "Parallel port 0x278");
  EXPECT_EQ(chosen.count(), 1);
  EXPECT_FALSE(window_->isVisible());
  EXPECT_TRUE(messages_.Texts().empty());
}

TEST_F(FrmPort, TheSensorAnswersOverThePort) {
  PressOk("378");
  Find<QComboBox>("cbxFFTAvgs").setCurrentIndex(1);
  Press("cmdStart");
  EXPECT_EQ(Text("lblRecCount"), "1");
  EXPECT_TRUE(messages_.Texts().empty());
}

TEST_F(FrmPort, AWrongTextIsNamedAndStaysToBeCorrected) {
  const QSignalSpy chosen(window_, &frmPort::InterfaceChosen);
  PressOk("12345");
  EXPECT_EQ(messages_.Texts().size(), 1U);
  EXPECT_NE(messages_.Texts()[0].find("\"12345\""), std::string::npos);
  EXPECT_EQ(BoxText("txtUser"), "12345");
  EXPECT_EQ(Box().selectedText(), "12345");
  EXPECT_TRUE(window_->isVisible());
  EXPECT_EQ(InterfaceType, kUsbAdapter);
  EXPECT_EQ(PortAddress, 888);
  EXPECT_EQ(chosen.count(), 0);
}

TEST_F(FrmPort, AnEmptyTextIsExplainedAndNothingHappens) {
  PressOk("");
  EXPECT_EQ(messages_.Texts().size(), 1U);
  EXPECT_EQ(InterfaceType, kUsbAdapter);
  EXPECT_TRUE(window_->isVisible());
}

TEST_F(FrmPort, ATextThatIsBeingTypedSurvivesALookAtAnotherWindow) {
  Box().clear();
  QTest::keyClicks(&Box(), "2");
  QEvent activated(QEvent::WindowActivate);
  QApplication::sendEvent(window_, &activated);
  EXPECT_EQ(BoxText("txtUser"), "2");
}

TEST_F(FrmPort, CancelAndEscapeLeaveAllAsItIs) {
  for (const bool byKey : {false, true}) {
    window_->ShowInFront();
    Box().clear();
    QTest::keyClicks(&Box(), "27");
    if (byKey) {
      QTest::keyClick(&Box(), Qt::Key_Escape);
    } else {
      Press("cmdCancel");
    }
    EXPECT_FALSE(window_->isVisible());
    EXPECT_EQ(PortAddress, 888);
    EXPECT_EQ(InterfaceType, kUsbAdapter);
    window_->ShowInFront();
    EXPECT_EQ(BoxText("txtUser"), "378");
  }
}

TEST_F(FrmPort, EnterPressesOk) {
  Box().clear();
  QTest::keyClicks(&Box(), "3bc");
  QTest::keyClick(&Box(), Qt::Key_Return);
  EXPECT_EQ(PortAddress, 0x3BC);
}

TEST_F(FrmPort, TheInterfaceDoesNotChangeWhileACaptureIsWaitedFor) {
  Choose("cbxFFTAvgs", 10);
  During(60, [this] { PressOk("278"); });
  Press("cmdStart");
  EXPECT_EQ(InterfaceType, kUsbAdapter);
  EXPECT_EQ(Text("lblRecCount"), "1");
}

}  // namespace
}  // namespace kestrel
