// How much less a record costs in blocks: transfers and time over USB, frames over the port.
// SPDX-License-Identifier: MIT

// Prints what the fast read-out takes beside the ordinary one, over a mock board and a mock port.
// Run it by umockdev-wrapper.

#include <algorithm>
#include <chrono>
#include <optional>

#include "acquisition/readings.h"
#include "app/program_state.h"
#include "connection/init_interface.h"
#include "device/register_models.h"
#include "figure.h"
#include "hardware/mock_parallel_port.h"
#include "hardware/mock_usb_bus.h"
#include "platform/libusb/libusb_driver.h"
#include "platform/linux/ppdev_port.h"
#include "platform/linux/ppdev_service.h"
#include "platform/linux/system_clock.h"
#include "regmap/register_table.h"
#include "simulator/simulated_driver_service.h"
#include "simulator/simulated_port.h"
#include "station/unattended_loop.h"
#include "support/absent_hardware.h"
#include "support/fixed_locale.h"
#include "support/given.h"
#include "support/memory_files.h"
#include "support/parport_settings.h"
#include "support/recording_messages.h"
#include "support/recording_pointer.h"
#include "support/reset_program.h"

namespace kestrel {
namespace {

constexpr double kFewerTransfers = 16;
constexpr double kLessTime = 6;
constexpr double kFewerFrames = 2.4;
constexpr int kRounds = 7;
// Of the sensor's SPI port: 16 bits a frame at the adapter's clock of 1 MHz.
constexpr double kFrameMs = 16e-3;
constexpr double kTransferMs = 0.125;  // one micro-frame of a high-speed bus

double Median(std::vector<double> values) {
  std::ranges::sort(values);
  return values[values.size() / 2];
}

// The road to a sensor, without a window.
class Bench {
 public:
  Bench(UsbDriver& usb, PortIo& port, DriverService& service, std::int16_t interface)
      : core({clock_, loop_, pointer_, messages_, files_, locale_, usb, port, service}) {
    ResetProgram();
    core.delay.SkipCalibration();
    Given(PortAddress) = 0x378;
    core.registers.Use(interface);
    InitInterface(core);
    InitRegisterTable(core.registers);
  }
  ~Bench() { ResetProgram(); }
  Bench(const Bench&) = delete;
  Bench& operator=(const Bench&) = delete;

  // A record of this kind lies in the sensor's buffers.
  void Take(RecordKind kind) {
    core.registers.Write(row::REC_CTRL, kind == RecordKind::Time ? 0x1036 : 0x1030);
    core.registers.Write(row::COMMAND, 0x0800);
    core.delay.Delay(500);
    ReadBuffersAs(kind);
  }
  // Milliseconds of a read-out.
  double Read(RecordKind kind, bool fast) {
    fast_.Choose(fast);
    const auto start = core.seams.clock.Monotonic();
    record = ReadRecordBuffers(core.registers, fast_, kind,
                               {.scale = [](Record& read) { read.lsbWeight = 1; },
                                .counted = {},
                                .supply = {},
                                .temperature = {},
                                .points = {}});
    correct = correct && record && fast_.InUse() == fast;
    return std::chrono::duration<double, std::milli>(core.seams.clock.Monotonic() - start).count();
  }

 private:
  SystemClock clock_;
  UnattendedLoop loop_{clock_, [] { return false; }};
  RecordingPointer pointer_;
  RecordingMessages messages_;
  MemoryFiles files_;
  FixedLocale locale_;

 public:
  Core core;
  std::optional<Record> record;
  bool correct = true;

 private:
  FastReadout fast_{core};
};

// What a read-out costs in transfers, or in frames.
struct Cost {
  int count = 0;
  double ms = 0;  // median
};

template <typename Counter>
Cost CostOf(Bench& bench, RecordKind kind, bool fast, int rounds, const Counter& counter) {
  if (fast) bench.Read(kind, fast);  // it has proved right before it is measured
  const int before = counter();
  std::vector<double> times(static_cast<std::size_t>(rounds));
  for (double& ms : times) ms = bench.Read(kind, fast);
  return {(counter() - before) / rounds, Median(times)};
}

const char* NameOf(RecordKind kind) {
  return kind == RecordKind::Time ? "3 x 512" : "3 x 256";
}

void PrintFewer(const std::string& what, const char* unit, int fast, int single, double promised) {
  const double fewer = static_cast<double>(single) / fast;
  Print({.name = what,
         .measured = Amount(fast, 0, unit),
         .peer = "ordinary: " + Amount(single, 0, unit),
         .ratio = 1 / fewer,
         .promise = "at least " + Amount(promised, 1, "x fewer"),
         .kept = fewer >= promised});
}

void PrintOnPaper(RecordKind kind, const Cost& single, const Cost& fast) {
  const int points = kind == RecordKind::Time ? 512 : 256;
  PrintNote(std::string(NameOf(kind)) + " on a high-speed bus, 125 us a transfer: " +
            Amount(fast.count * kTransferMs, 0, "ms in blocks, ") +
            Amount(single.count * kTransferMs, 0, "ms singly; the SPI bits of ") +
            std::to_string(4 * points) +
            " frames alone, at 1 MHz: " + Amount(4 * points * kFrameMs, 0, "ms."));
}

bool MeasureUsb(RecordKind kind) {
  SystemClock clock;
  SimulatedSensor sensor(clock, RunningMachine());
  MockUsbBus bus(sensor);
  MockBoard& board = bus.Plug({});
  LibusbDriver driver;
  SimulatedPort port(sensor);
  SimulatedDriverService service;
  Bench bench(driver, port, service, kUsbAdapter);
  bench.Take(kind);
  const auto transfers = [&] { return board.bulkTransfers; };
  const Cost single = CostOf(bench, kind, false, kRounds, transfers);
  const auto singly = bench.record;
  const double first = bench.Read(kind, true);
  const int claims = board.claims;
  const Cost fast = CostOf(bench, kind, true, kRounds, transfers);
  const int opened = (board.claims - claims) / (kRounds + 1);
  const std::string name = NameOf(kind) + std::string(" over USB, ");
  PrintFewer(name + "transfers", "", fast.count, single.count, kFewerTransfers);
  const double lessTime = single.ms / fast.ms;
  Print({.name = name + "time",
         .measured = Amount(fast.ms, 1, "ms"),
         .peer = "ordinary: " + Amount(single.ms, 0, "ms"),
         .ratio = 1 / lessTime,
         .promise = "at least 6 x less",
         .kept = lessTime >= kLessTime});
  Print({.name = name + "openings of the board",
         .measured = std::to_string(opened),
         .promise = "1",
         .kept = opened == 1});
  PrintNote(name + "the first record after connecting, 96 words of it read singly as well: " +
            Amount(first, 1, "ms."));
  PrintOnPaper(kind, single, fast);
  return bench.correct && bench.record == singly;
}

bool MeasurePort(RecordKind kind) {
  SystemClock clock;
  SimulatedSensor sensor(clock, RunningMachine());
  MockTestbed testbed;
  MockParallelPort mock(testbed, 0, sensor);
  ParportSettings settings;
  settings.Add(0, 0x378);
  PpdevPort port([] { return PortAddress; },
                 {.folders = {.devices = "/dev", .settings = settings.Folder()}});
  PpdevService service(port);
  AbsentUsbDriver usb;
  Bench bench(usb, port, service, kParallelPort);
  bench.Take(kind);
  const auto frames = [&] {
    unsigned before = 0;
    return static_cast<int>(std::ranges::count_if(mock.trace, [&](const auto& pins) {
      return (std::exchange(before, pins.data) & 1U) == 0 && (pins.data & 1U) != 0;
    }));
  };
  const Cost single = CostOf(bench, kind, false, 1, frames);
  const auto singly = bench.record;
  const Cost fast = CostOf(bench, kind, true, 1, frames);
  const std::string name = NameOf(kind) + std::string(" over the parallel port, ");
  PrintFewer(name + "frames", "", fast.count, single.count, kFewerFrames);
  PrintNote(name + "time: " + Amount(fast.ms, 0, "ms in blocks, ") +
            Amount(single.ms, 0, "ms singly."));
  return bench.correct && bench.record == singly;
}

}  // namespace
}  // namespace kestrel

int main() {
  using kestrel::RecordKind;
  bool correct = true;
  for (const RecordKind kind : {RecordKind::Spectrum, RecordKind::Time}) {
    correct = kestrel::MeasureUsb(kind) && correct;
    correct = kestrel::MeasurePort(kind) && correct;
  }
  return kestrel::WasDone(correct, "a record was read wrong");
}
