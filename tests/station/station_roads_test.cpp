// The roads of a station to its sensor, and what is told where one cannot be taken.
// SPDX-License-Identifier: MIT
#include "app/program_state.h"
#include "station_bench.h"
#include "support/absent_hardware.h"
#include "support/map_driver_service.h"

namespace kestrel {
namespace {

using testing::HasSubstr;
using testing::IsEmpty;

class StationRoads : public StationBench {
 protected:
  StationSite Site() {
    return {.clock = clock,
            .files = files,
            .locale = locale,
            .hardware = {&usb, &hardware.Port(), &service},
            .usePortDevice = [this](const std::string& device) { devices.push_back(device); },
            .watch = {}};
  }

  MapDriverService service;
  std::vector<std::string> devices;
};

TEST_F(StationRoads, AnAdapterIsChosenByItsNumber) {
  Connection connection;
  connection.adapter = 0;
  Station station(Site(), connection);
  ASSERT_TRUE(station.Connect());
  EXPECT_EQ(station.ReadRegister("PROD_ID")->value, 31407);
  const auto captured = station.Records().Capture();
  ASSERT_TRUE(captured);
  EXPECT_EQ(captured->record.sensor.interface, "Ezusb-0");
  EXPECT_THAT(devices, IsEmpty());
}

TEST_F(StationRoads, TheParallelPortIsChosenByItsAddressOrItsDevice) {
  Connection connection;
  connection.parallelAddress = 0x278;
  {
    Station station(Site(), connection);
    static_cast<void>(station.Connect());
    EXPECT_EQ(InterfaceType, kParallelPort);
    EXPECT_EQ(PortAddress, 0x278);
  }
  EXPECT_THAT(devices, IsEmpty());
  connection.parallelAddress.reset();
  connection.portDevice = "/dev/parport3";
  Station station(Site(), connection);
  static_cast<void>(station.Connect());
  EXPECT_EQ(InterfaceType, kParallelPort);
  EXPECT_THAT(devices, testing::ElementsAre("/dev/parport3"));
}

TEST_F(StationRoads, APortThatTheSystemDoesNotGiveFailsWithItsReason) {
  service.explanation = "no right to the port";
  Connection connection;
  connection.parallelAddress = 0x378;
  Station station(Site(), connection);
  const Done connected = station.Connect();
  ASSERT_FALSE(connected);
  EXPECT_EQ(connected.Why().kind, FailureKind::NoSensor);
  EXPECT_THAT(connected.Why().text, testing::Not(IsEmpty()));
}

TEST_F(StationRoads, AScenarioThatNobodyKnowsIsTheRunningMachine) {
  AbsentUsbDriver none;
  Connection connection;
  connection.simulate = true;
  connection.scenario = "no such machine";
  StationSite site = Site();
  site.hardware.usb = &none;
  Station station(site, connection);
  ASSERT_TRUE(station.Connect());
  const auto captured = station.Records().Capture();
  ASSERT_TRUE(captured);
  EXPECT_NEAR(std::ranges::max(captured->record.Values(Axis::X).subspan(1)), 0.6, 0.1);
}

TEST_F(StationRoads, ARegisterListThatCannotBeWrittenIsRefusedWithTheReason) {
  Station& station = Connected();
  files.failure = "no space left";
  const auto written = station.WriteRegisterList();
  ASSERT_FALSE(written);
  EXPECT_EQ(written.Why().kind, FailureKind::Refused);
  EXPECT_THAT(written.Why().text, HasSubstr("Registers_LOG.txt: no space left"));
}

TEST_F(StationRoads, RegistersThatCannotBeReadFailTheStep) {
  Station& station = Connected();
  hardware.Adapter().Unplug(0);
  EXPECT_EQ(station.ReadRegister("PROD_ID").Why().kind, FailureKind::NoSensor);
  EXPECT_EQ(station.ReadRegisters().Why().kind, FailureKind::NoSensor);
  EXPECT_EQ(station.WriteRegister("X_NULL", 1).Why().kind, FailureKind::NoSensor);
  EXPECT_EQ(station.ClearState().Why().kind, FailureKind::NoSensor);
}

TEST_F(StationRoads, ProgressIsToldWhereItIsWanted) {
  Station& station = Connected();
  int elsewhere = 0;
  const auto before = station.TellProgressTo([&](const Progress&) { ++elsewhere; });
  ASSERT_TRUE(station.Bands().Read());
  EXPECT_GT(elsewhere, 0);
  EXPECT_THAT(told, IsEmpty());
  static_cast<void>(station.TellProgressTo(before));
  ASSERT_TRUE(station.Bands().Read());
  EXPECT_FALSE(told.empty());
  static_cast<void>(station.TellProgressTo({}));
  EXPECT_TRUE(station.Bands().Read()) << "nobody need look";
}

TEST(StepEnds, SayWhatIsKnownAndElseWhatTheKindSays) {
  NotedMessages messages;
  StepEnd end(messages);
  EXPECT_EQ(end.Failed(FailureKind::NoSensor).text, "The sensor cannot be reached.");
  EXPECT_EQ(end.Failed(FailureKind::Interrupted).text, "Interrupted.");
  EXPECT_EQ(end.Failed(FailureKind::Refused).text, "Refused.");
  messages.Show("first", "");
  messages.Show("second", "Title");
  EXPECT_EQ(end.Lost("third").text, "first\nTitle: second\nthird");
  EXPECT_EQ(end.Lost("alone").text, "alone") << "messages are told once";
  messages.Show("only a message", "");
  EXPECT_EQ(end.Lost().text, "only a message");
}

// Files whose reads the system refuses, or that are larger than any band file.
class RefusingFiles : public MemoryFiles {
 public:
  [[nodiscard]] std::optional<std::string> Read(const std::filesystem::path& file,
                                                std::size_t limit) override {
    if (file == "/broken") throw std::runtime_error("/broken: input/output error");
    if (file == "/huge") return std::string(limit, 'x');
    return MemoryFiles::Read(file, limit);
  }
};

TEST(BandFiles, ThatCannotBeReadAreRefusedWithThePathAndTheReason) {
  RefusingFiles files;
  const auto broken = ReadBandFile(files, "/broken");
  ASSERT_FALSE(broken);
  EXPECT_EQ(broken.Why().kind, FailureKind::Refused);
  EXPECT_EQ(broken.Why().text, "/broken: input/output error");
  EXPECT_EQ(ReadBandFile(files, "/huge").Why().text,
            "The file /huge is too large to be an alarm file.");
  EXPECT_EQ(ReadBandFile(files, "/none").Why().text, "The file /none cannot be read.");
}

TEST_F(StationRoads, ASensorLostDuringABandTransferIsToldAsLost) {
  Station& station = Connected();
  usb.FailFrom(30);
  const auto read = station.Bands().Read();
  ASSERT_FALSE(read);
  EXPECT_EQ(read.Why().kind, FailureKind::NoSensor);
  usb.Mend();
  ASSERT_TRUE(station.Connect());
  usb.FailFrom(1);
  EXPECT_EQ(station.Bands().Clear().Why().kind, FailureKind::NoSensor);
}

TEST_F(StationRoads, AnInterruptedWritingOfBandsTellsHowFarItCame) {
  Station& station = Connected();
  InterruptAfter(std::chrono::milliseconds{20});
  const auto written = station.Bands().Write({});
  ASSERT_FALSE(written);
  EXPECT_EQ(written.Why().kind, FailureKind::Interrupted);
}

TEST_F(StationRoads, TheRecordInTheBuffersIsReadAsItIs) {
  Station& station = Connected();
  const auto captured = station.Records().Capture();
  ASSERT_TRUE(captured);
  const auto present = station.Records().ReadPresent(RecordKind::Spectrum);
  ASSERT_TRUE(present);
  EXPECT_EQ(present->axes, captured->record.axes);
  EXPECT_FALSE(present->origin.stopped);
  hardware.Adapter().Unplug(0);
  EXPECT_EQ(station.Records().ReadPresent(RecordKind::Spectrum).Why().kind, FailureKind::NoSensor);
}

TEST_F(StationRoads, ACodeIsWorthMoreInAWiderRange) {
  Recorder& records = Connected().Records();
  std::vector<double> worth;
  for (std::int16_t range = 0; range < 4; ++range) {
    RecordSetup change;
    change.range = range;
    ASSERT_TRUE(records.Configure(change));
    worth.push_back(records.GPerCode());
  }
  EXPECT_GT(worth[0], 0);
  EXPECT_NEAR(worth[1] / worth[0], 5, 0.1);
  EXPECT_NEAR(worth[2] / worth[1], 4, 0.1);
  EXPECT_GT(worth[3] / worth[2], 3);
}

TEST_F(StationRoads, ARoadSimulatesOneSensorWhoseCableComesAndGoes) {
  Station& station = Connected();
  SensorRoad road({clock,
                   station.Road().seams.loop,
                   station.Road().seams.pointer,
                   station.Road().seams.messages,
                   files,
                   locale,
                   {&usb, &hardware.Port(), &hardware.Service()}});
  const SimulatorControl control = ControlOf(road);
  EXPECT_FALSE(control.isConnected());
  control.connect();
  EXPECT_TRUE(control.isConnected());
  const auto isPlugged = [&] { return road.core.seams.usb.Attached("Ezusb-0"); };
  EXPECT_TRUE(isPlugged());
  control.plug(false);
  EXPECT_FALSE(isPlugged());
  control.plug(true);
  EXPECT_TRUE(isPlugged());
  control.plug(false);
  control.connect();
  EXPECT_TRUE(isPlugged()) << "it is the same one, plugged in again";
}

}  // namespace
}  // namespace kestrel
