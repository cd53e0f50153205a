// Connecting, registers, state and functions of a station.
// SPDX-License-Identifier: MIT
#include "station/station.h"

#include "alarms/alarm_file.h"
#include "app/program_state.h"
#include "device/rec_ctrl.h"
#include "record/capture_data.h"
#include "regmap/command_words.h"
#include "station_bench.h"
#include "support/absent_hardware.h"
#include "support/given.h"
#include "support/unused_hardware.h"

namespace kestrel {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

class StationTest : public StationBench {
 protected:
  StationSite Site(UsbDriver& driver) {
    return {.clock = clock,
            .files = files,
            .locale = locale,
            .hardware = {&driver, &noPort_, &noService_},
            .watch = {}};
  }

 private:
  UnusedPort noPort_;
  UnusedDriverService noService_;
};

TEST_F(StationTest, WithoutAnAdapterConnectingFailsWithTheReason) {
  AbsentUsbDriver none;
  Station station(Site(none));
  const Done connected = station.Connect();
  ASSERT_FALSE(connected);
  EXPECT_EQ(connected.Why().kind, FailureKind::NoSensor);
  EXPECT_THAT(connected.Why().text, HasSubstr("No USB Buffers Found"));
  EXPECT_THAT(station.TakeNotes(), IsEmpty());
  EXPECT_THAT(station.Adapters(), IsEmpty());
}

TEST_F(StationTest, ASimulatedSensorNeedsNoDevice) {
  AbsentUsbDriver none;
  Connection connection;
  connection.simulate = true;
  connection.scenario = "calibrator";
  Station station(Site(none), connection);
  ASSERT_TRUE(station.Connect());
  const auto captured = station.Records().Capture();
  ASSERT_TRUE(captured);
  EXPECT_TRUE(captured->record.sensor.simulated);
  EXPECT_EQ(station.Adapters().size(), 1U);
}

TEST_F(StationTest, AnAdapterThatIsNotThereIsNamed) {
  Connection connection;
  connection.adapter = 2;
  Station station(Site(usb), connection);
  const Done connected = station.Connect();
  ASSERT_FALSE(connected);
  EXPECT_EQ(connected.Why().text, "There is no adapter Ezusb-2.");
}

TEST_F(StationTest, AComplaintAboutTheConfigurationIsANoteAndNoFailure) {
  files.contents["/working/CommPort.cfg"] = "Interface = 2\nPort Address = x\n";
  Connected();
  const auto notes = TheStation().TakeNotes();
  ASSERT_EQ(notes.size(), 1U);
  EXPECT_THAT(notes[0], HasSubstr("CommPort.cfg"));
}

TEST_F(StationTest, RegistersGoByNameInAnyCase) {
  Station& station = Connected();
  const auto product = station.ReadRegister("prod_id");
  ASSERT_TRUE(product);
  EXPECT_EQ(product->name, "PROD_ID");
  EXPECT_EQ(product->value, 31407);
  EXPECT_EQ(product->address, 0x56);
  ASSERT_TRUE(station.WriteRegister("X_NULL", 0xFFFE));
  EXPECT_EQ(station.ReadRegister("x_null")->value, -2);
  EXPECT_EQ(station.ReadRegisters()->size(), 49U);
}

TEST_F(StationTest, WhatIsNoRegisterIsRefused) {
  Station& station = Connected();
  EXPECT_EQ(station.ReadRegister("NONE").Why().kind, FailureKind::Refused);
  EXPECT_EQ(station.ReadRegister("COMMAND").Why().kind, FailureKind::Refused);
  EXPECT_EQ(station.WriteRegister("PROD_ID", 1).Why().kind, FailureKind::Refused);
  EXPECT_TRUE(Station::CanWrite("command"));
}

TEST_F(StationTest, TheStateIsReadAsValues) {
  Station& station = Connected();
  ASSERT_TRUE(station.Records().Capture());
  const auto state = station.ReadState();
  ASSERT_TRUE(state);
  EXPECT_TRUE(state->status.IsSet(7));
  EXPECT_TRUE(state->alarms.peaksKnown && state->alarms.statusKnown);
  EXPECT_NEAR(state->conditions.temperatureC, 24.8, 0.5);
  const auto cleared = station.ClearState();
  ASSERT_TRUE(cleared);
  EXPECT_EQ(cleared->status.word, 0);
}

TEST_F(StationTest, AFunctionIsCarriedOutByTheSensor) {
  Station& station = Connected();
  ASSERT_TRUE(station.Records().Capture());
  ASSERT_TRUE(station.SendFunction(static_cast<int>(CommandBit::ClearStatus)));
  EXPECT_EQ(station.ReadState()->status.word, 0);
}

TEST_F(StationTest, ALostSensorFailsTheStepAndConnectingBringsItBack) {
  Station& station = Connected();
  hardware.Adapter().Unplug(0);
  const auto state = station.ReadState();
  ASSERT_FALSE(state);
  EXPECT_EQ(state.Why().kind, FailureKind::NoSensor);
  EXPECT_FALSE(station.SendFunction(4));
  EXPECT_FALSE(station.WriteRegisterList());
  EXPECT_THAT(files.contents, IsEmpty());
  hardware.Adapter().Replug(0);
  ASSERT_TRUE(station.Connect());
  EXPECT_TRUE(station.ReadState());
}

TEST_F(StationTest, TheRegisterListGoesIntoTheFolderThatIsUsed) {
  Station& station = Connected();
  files.readOnly.insert("/locked");
  EXPECT_FALSE(station.UseFolder("/locked"));
  ASSERT_TRUE(station.UseFolder("/data"));
  const auto file = station.WriteRegisterList();
  ASSERT_TRUE(file);
  EXPECT_EQ(*file, "/data/Registers_LOG.txt");
}

TEST_F(StationTest, AStationAfterAnotherBeginsAfresh) {
  RecordSetup change;
  change.mode = 2;
  ASSERT_TRUE(Connected().Records().Configure(change));
  ASSERT_TRUE(TheStation().Records().Capture());
  EXPECT_EQ(CaptureType, "TimeDomain");
  EndStation();
  EXPECT_EQ(CaptureType, "FFT");
  EXPECT_EQ(gRecCtrl, nullptr);
  EXPECT_EQ(InterfaceType, kNoInterface);
  ASSERT_TRUE(Connected().Records().Capture());
}

TEST_F(StationTest, BandsGoToTheSensorAndComeBack) {
  Station& station = Connected();
  BandTable table;
  table(kFLowField, 3, 2) = 40;
  table(kFHighField, 3, 2) = 52;
  table(Alarm1Field(Axis::Y), 3, 2) = 120;
  ASSERT_TRUE(station.Bands().Write(table));
  EXPECT_EQ(told.back().total, 24);
  Given(AlarmBandTable) = {};
  const auto read = station.Bands().Read();
  ASSERT_TRUE(read);
  EXPECT_EQ((*read)(Alarm1Field(Axis::Y), 3, 2), 120);
  const auto cleared = station.Bands().Clear();
  ASSERT_TRUE(cleared);
  EXPECT_EQ(*cleared, "All bands cleared, in the sensor too.");
}

TEST_F(StationTest, AThresholdThatFitsNoRegisterIsRefusedAndNamed) {
  BandTable table;
  table(Alarm1Field(Axis::Y), 3, 2) = 70000;
  const auto written = Connected().Bands().Write(table);
  ASSERT_FALSE(written);
  EXPECT_EQ(written.Why().kind, FailureKind::Refused);
  EXPECT_THAT(written.Why().text, HasSubstr("alarm 1 Y = 70000"));
}

TEST_F(StationTest, AnInterruptedTransferTellsHowFarItCameAndDisturbsNoLaterOne) {
  Station& station = Connected();
  InterruptAfter(std::chrono::milliseconds{20});
  const auto read = station.Bands().Read();
  ASSERT_FALSE(read);
  EXPECT_EQ(read.Why().kind, FailureKind::Interrupted);
  EXPECT_THAT(read.Why().text, HasSubstr("cancelled"));
  EXPECT_TRUE(station.Bands().Read());
}

TEST_F(StationTest, ABandFileThatIsNoneIsRefusedWithItsPath) {
  files.contents["/data/AlarmSpectrum_bad.csv"] = "no bands";
  EXPECT_THAT(ReadBandFile(files, "/data/AlarmSpectrum_bad.csv").Why().text,
              HasSubstr("/data/AlarmSpectrum_bad.csv, "));
  EXPECT_THAT(ReadBandFile(files, "/data/none.csv").Why().text,
              HasSubstr("/data/none.csv cannot be read"));
  files.contents["/data/endless.csv"] = std::string(kLargestAlarmFile + 1, '1');
  EXPECT_THAT(ReadBandFile(files, "/data/endless.csv").Why().text,
              HasSubstr("/data/endless.csv is too large to be an alarm file"));
}

}  // namespace
}  // namespace kestrel
