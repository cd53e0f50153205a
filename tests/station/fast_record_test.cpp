// Records in blocks of frames over the simulated sensor: the same words, whatever goes wrong.
// SPDX-License-Identifier: MIT
#include <utility>

#include "acquisition/readings.h"
#include "regmap/register_table.h"
#include "station_bench.h"
#include "support/seeds.h"

namespace kestrel {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

// What a board does that turns blocks of more than two frames around.
void TurnLongAnswers(std::span<std::uint8_t> answer) {
  if (answer.size() > 4) std::ranges::reverse(answer);
}

// Counts the frames on a port's pins: how often the sensor is selected.
class CountingPort : public PortIo {
 public:
  explicit CountingPort(PortIo& port) : port_(port) {}
  void giveio() override { port_.giveio(); }
  [[nodiscard]] bool IsHeld(std::int16_t base) override { return held && port_.IsHeld(base); }
  void vbOut(std::int16_t port, std::int16_t value) override {
    const bool selects = (value & 1) != 0;
    if (selects && !selected_ && ++frames == loseAt) held = false;
    selected_ = selects;
    if (held) port_.vbOut(port, value);
  }
  [[nodiscard]] std::int16_t vbInp(std::int16_t port) override {
    return held ? port_.vbInp(port) : std::int16_t{0xFF};
  }

  int frames = 0;
  int loseAt = 0;  // the frame during which the port is lost; 0 for none
  bool held = true;

 private:
  PortIo& port_;
  bool selected_ = false;
};

class FastRecord : public StationBench {
 protected:
  std::unique_ptr<Station> StationOver(const Connection& connection) {
    auto station =
        std::make_unique<Station>(StationSite{.clock = clock,
                                              .files = files,
                                              .locale = locale,
                                              .hardware = {&usb, &port, &hardware.Service()},
                                              .watch = {}},
                                  connection);
    EXPECT_TRUE(station->Connect());
    return station;
  }

  CountingPort port{hardware.Port()};

  static void Configure(Station& station, RecordKind kind) {
    RecordSetup change;
    change.mode = static_cast<std::int16_t>(kind == RecordKind::Time ? 2 : 0);
    change.averages = 1;
    ASSERT_TRUE(station.Records().Configure(change));
  }

  // Other words than a measurement has, in the sensor's buffers.
  static void HoldRandomWords(RegisterAccess& registers, RecordKind kind, Random& random) {
    for (const Axis axis : kAxes) {
      for (int point = 0; point < (kind == RecordKind::Time ? 512 : 256); ++point) {
        ASSERT_TRUE(registers.Write(row::BUF_PNTR, point));
        ASSERT_TRUE(registers.Write(BufferRow(axis), random.Word()));
      }
    }
  }

  static std::optional<Record> Read(Station& station, RecordKind kind, bool fast) {
    ReadBuffersAs(kind);
    FastReadout readout(station.Road());
    readout.Choose(fast);
    auto record = ReadRecordBuffers(
        station.Road().registers, readout, kind,
        {.scale = [](Record& read) { read.lsbWeight = LsbWeightOf(3, read.kind); },
         .counted = {},
         .supply = {},
         .temperature = {},
         .points = {}});
    EXPECT_EQ(readout.InUse(), fast) << "nothing was found wrong";
    return record;
  }

  void ExpectTheSameRecords(Station& station) {
    for (const RecordKind kind : {RecordKind::Spectrum, RecordKind::Time}) {
      Configure(station, kind);
      ASSERT_TRUE(station.Records().Capture());
      WithSeeds(3, [&](Random& random) {
        HoldRandomWords(station.Road().registers, kind, random);
        const auto singly = Read(station, kind, false);
        ASSERT_TRUE(singly);
        EXPECT_EQ(Read(station, kind, true), singly);
      });
    }
  }
};

TEST_F(FastRecord, RandomWordsComeOverTheAdapterAsTheyDoSingly) {
  ExpectTheSameRecords(*StationOver({}));
}

TEST_F(FastRecord, RandomWordsComeOverTheParallelPortAsTheyDoSingly) {
  Connection connection;
  connection.parallelAddress = SimulatedPort::kFirstPort;
  ExpectTheSameRecords(*StationOver(connection));
}

TEST_F(FastRecord, OverTheParallelPortARecordTakesFewerFrames) {
  constexpr double kFewer = 2.4;
  Connection connection;
  connection.parallelAddress = SimulatedPort::kFirstPort;
  const auto station = StationOver(connection);
  for (const RecordKind kind : {RecordKind::Spectrum, RecordKind::Time}) {
    Configure(*station, kind);
    ASSERT_TRUE(station->Records().Capture());
    const auto framesOf = [&] {
      const int before = port.frames;
      EXPECT_TRUE(station->Records().Capture());
      return port.frames - before;
    };
    station->Records().Fast().Choose(false);
    const int singly = framesOf();
    station->Records().Fast().Choose(true);
    framesOf();
    const int inBlocks = framesOf();
    EXPECT_GE(singly, kFewer * inBlocks) << singly << " and " << inBlocks;
    EXPECT_TRUE(station->Records().Fast().InUse());
  }
}

TEST_F(FastRecord, APortLostAtAnyFrameLeavesTheEarlierRecord) {
  Connection connection;
  connection.parallelAddress = SimulatedPort::kFirstPort;
  const auto station = StationOver(connection);
  Configure(*station, RecordKind::Spectrum);
  station->Records().Fast().Choose(true);
  ASSERT_TRUE(station->Records().Capture());
  const Record earlier = station->Road().record.Get();
  bool through = false;
  for (int frame = 1; !through; frame += 7) {
    SCOPED_TRACE(frame);
    port.loseAt = port.frames + frame;
    const auto captured = station->Records().Capture();
    through = static_cast<bool>(captured);
    if (through) break;
    ASSERT_EQ(captured.Why().kind, FailureKind::NoSensor);
    ASSERT_EQ(station->Road().record.Get(), earlier);
    port.held = true;
    port.loseAt = 0;
    ASSERT_TRUE(station->Connect());
    ASSERT_LT(frame, 5000);
  }
  EXPECT_THAT(station->Records().Fast().Refused(), IsEmpty());
}

TEST_F(FastRecord, ACaptureTakesAFewRequestsWhereItIsChosen) {
  const auto station = StationOver({});
  EXPECT_FALSE(station->Records().Fast().InUse());
  station->Records().Fast().Choose(true);
  ASSERT_TRUE(station->Records().Capture());
  usb.FailFrom(1 << 30);
  ASSERT_TRUE(station->Records().Capture());
  EXPECT_LT(usb.Requests(), 300);
  EXPECT_THAT(station->TakeNotes(), IsEmpty());
}

TEST_F(FastRecord, ABoardThatTurnsBlocksAroundIsNotedAndItsRecordsAreRight) {
  usb.OnAnswer(TurnLongAnswers);
  const auto station = StationOver({});
  station->Records().Fast().Choose(true);
  const auto captured = station->Records().Capture();
  ASSERT_TRUE(captured);
  EXPECT_THAT(station->TakeNotes(),
              ElementsAre(HasSubstr("The fast read-out is switched off for Ezusb-0, simulated USB "
                                    "to SPI adapter: point ")));
  const auto singly = Read(*station, RecordKind::Spectrum, false);
  ASSERT_TRUE(singly);
  for (const Axis axis : kAxes) {
    for (int i = 0; i < 256; ++i) {
      ASSERT_EQ(captured->record.Of(axis).raw(i), singly->Of(axis).raw(i));
    }
  }
  ASSERT_TRUE(station->Records().Capture());
  EXPECT_THAT(station->TakeNotes(), IsEmpty()) << "said once";
}

// One fault at each request of a capture, until the capture is over before it.
class FastRecordWith : public FastRecord, public testing::WithParamInterface<UsbFault> {};

TEST_P(FastRecordWith, AFaultAtAnyRequestTheRecordIsTheEarlierOneOrWhole) {
  Station& station = Connected();
  Configure(station, RecordKind::Spectrum);
  station.Records().Fast().Choose(true);
  ASSERT_TRUE(station.Records().Capture());
  ASSERT_TRUE(station.Records().Capture());
  for (int request = 1;; ++request) {
    SCOPED_TRACE(request);
    const Record earlier = station.Road().record.Get();
    usb.FaultAt(request, GetParam(), [this] {
      if (GetParam() == UsbFault::Unplugged) hardware.Adapter().Unplug(0);
    });
    const auto captured = station.Records().Capture();
    const bool met = usb.Met() != UsbRequest::None;
    usb.Mend();
    if (!captured) {
      ASSERT_EQ(captured.Why().kind, FailureKind::NoSensor);
      ASSERT_THAT(captured.Why().text, Not(IsEmpty()));
      ASSERT_EQ(station.Road().record.Get(), earlier);
    }
    if (!met) break;
    ASSERT_LT(request, 3000);
    hardware.Adapter().Replug(0);
    ASSERT_TRUE(station.Connect());
    Configure(station, RecordKind::Spectrum);
    ASSERT_TRUE(station.Records().Fast().Refused().empty() || GetParam() == UsbFault::Garbage);
    station.Records().Fast().Refuse({});
  }
}

INSTANTIATE_TEST_SUITE_P(Kinds, FastRecordWith,
                         testing::Values(UsbFault::Absent, UsbFault::Short, UsbFault::Late,
                                         UsbFault::Garbage, UsbFault::Unplugged));

}  // namespace
}  // namespace kestrel
