// The alarm editor opened while a capture is waited for.
// SPDX-License-Identifier: MIT
#include "alarms/alarm_file.h"
#include "ui/bands/alarm_editor_bench.h"

namespace kestrel {
namespace {

class DuringACapture : public FrmAlarmSpectrum {
 protected:
  // Opens the editor in the middle of a capture and does this before it is stopped.
  void Capture(const std::function<void()>& deed) {
    Start();
    PutIntoSensor(3, 2, kBand);
    bool opened = false;
    During(20, [&] {
      opened = true;
      OpenByMenu();
      EXPECT_EQ(AlarmBandTable, BandTable{});
      deed();
      Press("cmdStart");
    });
    Press("cmdStart");
    ASSERT_TRUE(opened);
    for (int i = 0; i < 5; ++i) QApplication::processEvents();
  }
};

TEST_F(DuringACapture, TheBandsAreReadWhenItEnds) {
  Capture([this] {
    EXPECT_EQ(Message(),
              "The sensor is in use, by a capture or another window. The bands are read as soon as "
              "it is free; nothing is written before that.");
    EXPECT_EQ(State(), "What the sensor holds is not known.");
  });
  EXPECT_EQ(Values(3, 2), kBand);
  EXPECT_EQ(Message(), "24 bands read.");
  EXPECT_EQ(State(), "The sensor holds these bands.");
  EXPECT_EQ(Files().currentText(), "values read from flash mem.");
  EXPECT_FALSE(Get<QPushButton>("cmdUndo").isEnabled()) << "there is nothing to go back to";
}

TEST_F(DuringACapture, WritingIsRefusedUntilTheBandsHaveBeenRead) {
  Capture([this] {
    Click("cmdWriteAll");
    EXPECT_EQ(Message(),
              "Not written: the sensor's own bands have not been read yet and would be lost. They "
              "are read as soon as the sensor is free.");
  });
  EXPECT_EQ(FromSensor(3, 2), kBand);
  Click("cmdWriteAll");
  EXPECT_EQ(Message(), "24 bands written.");
  EXPECT_EQ(FromSensor(3, 2), kBand) << "the sensor keeps what it had";
}

TEST_F(DuringACapture, WhatWasTypedMeanwhileStaysAmongTheBandsRead) {
  Capture([this] {
    Enter(1, kFLow, "5");
    Enter(1, kFHigh, "9");
  });
  EXPECT_EQ(Values(1, 0), (Row{5, 9}));
  EXPECT_EQ(Values(3, 2), kBand);
  EXPECT_EQ(Message(), "24 bands read. Values entered before that were kept: 2.");
  EXPECT_EQ(State(), "Not yet written to the sensor: 2 values.");
  Click("cmdUndo");
  EXPECT_EQ(Values(1, 0), Row{});
  EXPECT_EQ(Values(3, 2), kBand);
}

TEST_F(DuringACapture, AFileLoadedMeanwhileStaysWhole) {
  BandTable table;
  table(kFHighField, 1, 0) = 12;
  files_.contents[kProposedFile] = AlarmFileText(table);
  Capture([this] {
    ChooseFile(kProposed);
    Click("cmdReadFile");
  });
  EXPECT_EQ(AlarmBandTable, table);
  EXPECT_EQ(State(), "Not yet written to the sensor: 9 values, 8 at other sample-rate options.");
  Click("cmdWriteAll");
  EXPECT_EQ(FromSensor(3, 2), Row{});
}

TEST_F(DuringACapture, ClosedAgainBeforeItEndsNothingIsRead) {
  Capture([this] { editor_->close(); });
  EXPECT_EQ(AlarmBandTable, BandTable{});
  editor_->ShowInFront();
  for (int i = 0; i < 5; ++i) QApplication::processEvents();
  EXPECT_EQ(Values(3, 2), kBand);
}

TEST_F(FrmAlarmSpectrum, ATableThatDoesNotHoldTheSensorsBandsIsNotWrittenOverThem) {
  Start();
  PutIntoSensor(3, 2, kBand);
  Begin();
  editor_->ShowInFront();
  QTimer soon;
  QObject::connect(&soon, &QTimer::timeout, editor_, [this] { editor_->CancelTransfer(); });
  soon.start(0);
  for (int i = 0; i < 5; ++i) QApplication::processEvents();
  soon.stop();
  ASSERT_TRUE(Message().starts_with("Reading cancelled.")) << Message();
  Enter(1, kFLow, "5");
  Click("cmdWriteAll");
  EXPECT_EQ(Message(),
            "Not written: the sensor's own bands were not all read and would be lost. Press Read "
            "all or load a file first.");
  EXPECT_EQ(FromSensor(3, 2), kBand);
  Click("cmdReadAll");
  Click("cmdWriteAll");
  EXPECT_EQ(Message(), "24 bands written.");
  EXPECT_EQ(FromSensor(3, 2), kBand);
}

}  // namespace
}  // namespace kestrel
