// How many words a second the simulated sensor answers, and what a spectrum costs it.
// SPDX-License-Identifier: MIT

// Prints how many SPI words a second the simulated sensor answers, alone and through the adapter,
// with no capture running; and how long it takes to compute a spectrum of one average of the
// running machine, compared with alarm bands and not.

#include <algorithm>
#include <array>
#include <chrono>
#include <cstdint>
#include <cstdio>
#include <thread>

#include "figure.h"
#include "seams/clock.h"
#include "simulator/simulated_hardware.h"

namespace {

using std::chrono::steady_clock;

constexpr double kRequiredPerSecond = 1'000'000;
constexpr unsigned kRounds = 1'000'000;

// Only the monotonic clock is wanted.
class SteadyClock : public kestrel::Clock {
 public:
  double SecondsSinceMidnight() override { return 0.0; }
  std::chrono::system_clock::time_point UtcNow() override { return {}; }
  std::chrono::nanoseconds Monotonic() override { return steady_clock::now().time_since_epoch(); }
  void WaitUntil(std::chrono::nanoseconds deadline) override {
    std::this_thread::sleep_for(deadline - Monotonic());
  }
  void RunEmptyLoop(std::int32_t /*passes*/, std::int32_t /*iterations*/) override {}
};

// Two reads of FFT_AVG and the two writes of BUF_PNTR: the mix of a read-out.
constexpr std::array<std::uint16_t, 4> kFrames = {0x0E00, 0x0E00, 0x9100, 0x9005};
constexpr std::uint16_t kFftAverages = 8;

double PerSecond(steady_clock::time_point start) {
  const std::chrono::duration<double> taken = steady_clock::now() - start;
  return kRounds * static_cast<double>(kFrames.size()) / taken.count();
}

double DirectWordsPerSecond(kestrel::SimulatedSensor& sensor, bool& correct) {
  const auto start = steady_clock::now();
  for (unsigned round = 0; round < kRounds; ++round) {
    sensor.Exchange(kFrames[0]);
    correct = sensor.Exchange(kFrames[1]) == kFftAverages && correct;
    sensor.Exchange(kFrames[2]);
    sensor.Exchange(kFrames[3]);
  }
  return PerSecond(start);
}

// As the program does it: open, send two frames, fetch two answers, close.
bool Transfer(kestrel::UsbDriver& driver, std::uint16_t first, std::uint16_t second,
              std::array<std::uint8_t, 4>& answers) {
  const auto high = [](std::uint16_t word) { return static_cast<std::uint8_t>(word >> 8U); };
  const auto low = [](std::uint16_t word) { return static_cast<std::uint8_t>(word & 0xFFU); };
  std::array<std::uint8_t, 7> block = {14,           1,          2, high(first), low(first),
                                       high(second), low(second)};
  constexpr std::array<std::uint8_t, 4> kPipe0 = {0, 0, 0, 0};
  constexpr std::array<std::uint8_t, 4> kPipe1 = {1, 0, 0, 0};
  std::uint32_t moved = 0;
  const auto device = driver.CreateFile("\\\\.\\Ezusb-0", 0x40000000, 2, 3);
  const bool done = driver.DeviceIoControl(device, kestrel::kBulkTransfer, kPipe0, block, moved) &&
                    driver.DeviceIoControl(device, kestrel::kBulkTransfer, kPipe1, answers, moved);
  driver.CloseHandle(device);
  return done;
}

double AdapterWordsPerSecond(kestrel::UsbDriver& driver, bool& correct) {
  std::array<std::uint8_t, 4> answers{};
  const auto start = steady_clock::now();
  for (unsigned round = 0; round < kRounds; ++round) {
    correct = Transfer(driver, kFrames[0], kFrames[1], answers) && answers[3] == kFftAverages &&
              Transfer(driver, kFrames[2], kFrames[3], answers) && correct;
  }
  return PerSecond(start);
}

// Moves when told.
class SteppedClock : public kestrel::Clock {
 public:
  double SecondsSinceMidnight() override { return 0.0; }
  std::chrono::system_clock::time_point UtcNow() override { return {}; }
  std::chrono::nanoseconds Monotonic() override { return now_; }
  void WaitUntil(std::chrono::nanoseconds deadline) override { now_ = deadline; }
  void RunEmptyLoop(std::int32_t /*passes*/, std::int32_t /*iterations*/) override {}

 private:
  std::chrono::nanoseconds now_{0};
};

constexpr unsigned kCaptures = 2000;
constexpr unsigned kTurns = 5;

double MicrosecondsPerSpectrum(std::uint8_t almCtrl) {
  SteppedClock clock;
  kestrel::SimulatedSensor sensor(clock, kestrel::BearingFault());
  sensor.Exchange(0x8E01);  // FFT_AVG: one block
  sensor.Exchange(static_cast<std::uint16_t>(0xB400U | almCtrl));
  const auto start = steady_clock::now();
  for (unsigned capture = 0; capture < kCaptures; ++capture) {
    sensor.Exchange(0xBF08);  // record start
    clock.WaitUntil(clock.Monotonic() + std::chrono::milliseconds{50});
    sensor.Exchange(0x3C00);
  }
  const std::chrono::duration<double, std::micro> taken = steady_clock::now() - start;
  return taken.count() / kCaptures;
}

// The least of several turns each, by turns, so that what else runs disturbs both alike.
void PrintSpectra() {
  double off = 1e9;
  double on = 1e9;
  for (unsigned turn = 0; turn < kTurns; ++turn) {
    off = std::min(off, MicrosecondsPerSpectrum(0x00));
    on = std::min(on, MicrosecondsPerSpectrum(0x07));
  }
  kestrel::PrintNote("The simulated sensor computes a spectrum in " +
                     kestrel::Amount(off, 1, "us, and compares it with bands in ") +
                     kestrel::Amount(on - off, 1, "us."));
}

void PrintWords(const char* name, double perSecond) {
  kestrel::Print({.name = name,
                  .measured = kestrel::Amount(perSecond / 1e6, 1, "M words/s"),
                  .promise = "at least 1 M words/s",
                  .kept = perSecond >= kRequiredPerSecond});
}

}  // namespace

int main() {
  SteadyClock clock;
  kestrel::SimulatedHardware bench(clock);
  bool correct = true;
  const double direct = DirectWordsPerSecond(bench.Sensor(), correct);
  const double adapter = AdapterWordsPerSecond(bench.Adapter(), correct);
  PrintWords("simulated sensor", direct);
  PrintWords("simulated sensor through its adapter", adapter);
  PrintSpectra();
  return kestrel::WasDone(correct, "the simulated sensor answered wrong");
}
