// How many system calls a frame over the parallel port costs.
// SPDX-License-Identifier: MIT
// How many system calls a frame over the parallel port costs, counted by a mock port, beside the
// accesses to the port's registers that make it up. Run it by umockdev-wrapper.

#include "app/delay.h"
#include "app/program_state.h"
#include "figure.h"
#include "hardware/mock_parallel_port.h"
#include "platform/linux/ppdev_port.h"
#include "simulator/sensor/simulated_sensor.h"
#include "support/fake_clock.h"
#include "support/given.h"
#include "support/parport_settings.h"
#include "support/recording_pointer.h"
#include "transport/parallel_port.h"

namespace kestrel {
namespace {

constexpr std::int16_t kFftAverages = 8;  // as the sensor starts with

// Counts the accesses that the transport asks for.
class CountedPort : public PortIo {
 public:
  explicit CountedPort(PortIo& port) : port_(port) {}

  void giveio() override { port_.giveio(); }
  void vbOut(std::int16_t port, std::int16_t value) override {
    ++accesses;
    port_.vbOut(port, value);
  }
  [[nodiscard]] std::int16_t vbInp(std::int16_t port) override {
    ++accesses;
    return port_.vbInp(port);
  }

  int accesses = 0;

 private:
  PortIo& port_;
};

struct Cost {
  int calls;
  int accesses;
};

void Report(const char* name, Cost cost) {
  const double ratio = static_cast<double>(cost.calls) / cost.accesses;
  Print({.name = name,
         .measured = Amount(cost.calls, 0, "system calls"),
         .peer = "port accesses: " + std::to_string(cost.accesses),
         .ratio = ratio,
         .promise = "at most 1 x",
         .kept = ratio <= 1});
}

int Measure() {
  FakeClock clock;
  SimulatedSensor sensor(clock, RunningMachine());
  MockTestbed testbed;
  MockParallelPort mock(testbed, 0, sensor);
  ParportSettings settings;
  settings.Add(0, 0x378);
  Given(InterfaceType) = kParallelPort;
  Given(PortAddress) = 0x378;
  PpdevPort ppdev([] { return PortAddress; },
                  {.folders = {.devices = "/dev", .settings = settings.Folder()}});
  CountedPort port(ppdev);
  RecordingPointer pointer;
  SoftwareDelay delay(clock, pointer);
  delay.SkipCalibration();
  ParallelPort spi(port, delay);
  port.giveio();
  spi.LptPortReset();

  const auto costOf = [&](const auto& work) {
    const Cost before{mock.requests, port.accesses};
    work();
    return Cost{mock.requests - before.calls, port.accesses - before.accesses};
  };
  Report("parallel-port frame written through ppdev", costOf([&] { spi.LptShiftOut(0x8F00); }));
  std::int32_t averages = 0;
  Report("register read through ppdev", costOf([&] {
           std::int16_t address = 0x0E;
           averages = spi.LptReadWord(address);
         }));
  return WasDone(averages == kFftAverages, "the register was read wrong");
}

}  // namespace
}  // namespace kestrel

int main() {
  return kestrel::Measure();
}
