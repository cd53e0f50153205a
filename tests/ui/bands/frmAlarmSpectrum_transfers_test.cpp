// The alarm editor's transfers to and from the sensor.
// SPDX-License-Identifier: MIT

#include "ui/bands/alarm_editor_bench.h"

namespace kestrel {
namespace {

TEST_F(FrmAlarmSpectrum, ATransferShowsItsProgressAndLocksTheRest) {
  Open();
  bool seen = false;
  During(0, [&] {
    seen = true;
    EXPECT_TRUE(Get<QProgressBar>("barTransfer").isVisible());
    EXPECT_EQ(Get<QProgressBar>("barTransfer").maximum(), 24);
    EXPECT_FALSE(Grid().isEnabled());
    EXPECT_FALSE(Get<QPushButton>("cmdWriteAll").isEnabled());
    EXPECT_FALSE(Get<QPushButton>("cmdUndo").isEnabled());
    EXPECT_TRUE(Get<QPushButton>("cmdCancel").isEnabled());
    EXPECT_EQ(editor_->focusWidget(), &Get<QPushButton>("cmdCancel"));
    editor_->TakeDraggedEdges(1, 2, 3);
    EXPECT_EQ(Values(1, 0), Row{});
  });
  Get<QPushButton>("cmdReadAll").setFocus();
  Click("cmdReadAll");
  EXPECT_TRUE(seen);
  EXPECT_FALSE(Get<QProgressBar>("barTransfer").isVisible());
  EXPECT_TRUE(Grid().isEnabled());
  EXPECT_EQ(editor_->focusWidget()->objectName(), "cmdReadAll");
}

TEST_F(FrmAlarmSpectrum, OtherWindowsHandlersWaitForTheTransfer) {
  Open();
  bool ran = false;
  During(0, [&] { Window().Edge().Run("other", [&] { ran = true; }); });
  Click("cmdReadAll");
  EXPECT_FALSE(ran);
  Window().Edge().Run("other", [&] { ran = true; });
  EXPECT_TRUE(ran);
}

TEST_F(FrmAlarmSpectrum, CancelAndEscapeEndATransfer) {
  OpenWithBand();
  const std::function<void()> ways[] = {[this] { Click("cmdCancel"); },
                                        [this] { Key(Qt::Key_Escape); },
                                        [this] { editor_->CancelTransfer(); }};
  for (const auto& way : ways) {
    During(0, way);
    Click("cmdReadAll");
    EXPECT_TRUE(Message().starts_with("Reading cancelled.")) << Message();
    EXPECT_TRUE(editor_->isVisible());
    EXPECT_TRUE(Grid().isEnabled());
  }
}

TEST_F(FrmAlarmSpectrum, ClosingDuringATransferEndsItAndThenCloses) {
  Open();
  Get<QRadioButton>("opX").click();
  overlay_.Take();
  During(0, [this] {
    editor_->close();
    EXPECT_TRUE(editor_->isVisible()) << "not before the transfer has unwound";
    EXPECT_TRUE(overlay_.Take().empty());
  });
  Click("cmdReadAll");
  EXPECT_FALSE(editor_->isVisible());
  const Words asked = overlay_.Take();
  EXPECT_EQ(Words(asked.end() - 2, asked.end()), (Words{"ClearABLabels", "ClearLines"}));
  EXPECT_TRUE(Message().starts_with("Reading cancelled.")) << Message();
}

TEST_F(FrmAlarmSpectrum, ACancelledFirstReadingDoesNotClaimToBeFromTheSensor) {
  Start();
  PutIntoSensor(1, 0, kBand);
  Begin();
  editor_->ShowInFront();
  QTimer soon;
  QObject::connect(&soon, &QTimer::timeout, editor_, [this] { editor_->CancelTransfer(); });
  soon.start(0);
  for (int i = 0; i < 5; ++i) QApplication::processEvents();
  ASSERT_TRUE(Message().starts_with("Reading cancelled.")) << Message();
  EXPECT_EQ(Files().currentText(), "");
  EXPECT_NE(State().find("not known"), std::string::npos) << State();
}

TEST_F(FrmAlarmSpectrum, ALostSensorLeavesTheTableAndGivesOneMessage) {
  OpenWithBand();
  Enter(1, kFLow, "5");
  const BandTable before = AlarmBandTable;
  usb_.FailFrom(1);
  Click("cmdReadAll");
  EXPECT_EQ(messages_.Texts().size(), 1U);
  EXPECT_EQ(AlarmBandTable, before);
  Click("cmdReadAll");
  EXPECT_EQ(Message(), "No sensor can be reached.");
  EXPECT_EQ(messages_.Texts().size(), 1U);
  Enter(1, kFHigh, "9");
  EXPECT_EQ(Values(1, 0)[1], 9) << "the table can be edited without a sensor";
}

TEST_F(FrmAlarmSpectrum, WhatAnotherSensorHoldsIsNotKnown) {
  OpenWithBand();
  editor_->ForgetSensor();
  EXPECT_EQ(State(), "What the sensor holds is not known.");
  EXPECT_EQ(Values(3, 2), kBand) << "the table stays";
}

TEST_F(FrmAlarmSpectrum, WhatWasReadGoesBackAsItCame) {
  constexpr Row kUnused{0xFFFF, 0xFFFF, 0xFFFF, 0xFFFF, 0xFFFF, 0xFFFF, 0xFFFF, 0xFFFF};
  constexpr Row kWide{256, 300, 1, 2, 3, 4, 0xC000, 6};
  Start();
  PutIntoSensor(6, 0, kUnused);
  PutIntoSensor(1, 1, kWide);
  const auto read = [this](int band, int option) {
    Row words = FromSensor(band, option);
    core_.registers.ReadReg(row::ALM_Y_MAG2);  // decoded with 15 bits
    words[6] = RegHighByte * 256 + RegLowByte;
    return words;
  };
  ASSERT_EQ(read(6, 0), kUnused);
  Open();
  Click("cmdWriteAll");
  EXPECT_EQ(messages_.Texts(), Words());
  EXPECT_EQ(Message(), "24 bands written.");
  EXPECT_EQ(read(6, 0), kUnused);
  EXPECT_EQ(read(1, 1), kWide);
  EXPECT_EQ(State().substr(0, 29), "The sensor holds these bands.");
}

TEST_F(FrmAlarmSpectrum, WhileACaptureIsWaitedForNothingIsTransferred) {
  Open();
  usb_.FailFrom(0);
  During(20, [this] {
    const int before = usb_.Requests();
    Click("cmdWriteAll");
    EXPECT_EQ(usb_.Requests(), before);
    EXPECT_EQ(Message(), "The sensor is busy with something else. Nothing was transferred.");
    Enter(1, kFLow, "5");
    EXPECT_EQ(Values(1, 0)[0], 5) << "editing goes on";
    Press("cmdStart");
  });
  Press("cmdStart");
  EXPECT_EQ(Message(), "");
}

}  // namespace
}  // namespace kestrel
