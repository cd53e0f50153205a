// Arbitrary SPI words to the simulated sensor, with arbitrary pauses.
// SPDX-License-Identifier: MIT
// Arbitrary SPI words to the simulated sensor, with arbitrary pauses between them.

#include <algorithm>
#include <array>
#include <bitset>

#include "counting_clock.h"
#include "input.h"
#include "regmap/register_table.h"
#include "require.h"
#include "simulator/sensor/simulated_sensor.h"

namespace kestrel {
namespace {

using namespace std::chrono_literals;

constexpr int kMostFrames = 256;
// Looks at the clock, two for a capture that is computed. A pause of 18 hours, a million of the
// shortest captures, needs less than ten times the 2048 that are computed one by one.
constexpr long kMostLooksAtOnce = 2 * 10 * 2048L;
constexpr long kMostLooks = 1000;  // of an input
constexpr std::uint16_t kWrite = 0x8000;
constexpr unsigned kCommand = 0x3E;
constexpr unsigned kStopRequest = 0x68;
constexpr std::uint8_t kFftAvg = 0x0E;
constexpr unsigned kWords = 64;

// One tone an axis, no noise and one average: captures are computed quickly. The bands of one
// scenario stay, and the growth that raises their alarms.
Scenario ScenarioOf(std::uint8_t choice) {
  Scenario scenario = choice % 2 == 0 ? BearingFault() : Overheating();
  for (AxisVibration& axis : scenario.axes) {
    axis.tones.erase(axis.tones.begin(), axis.tones.end() - 1);
    axis.noiseDensityG = 0;
  }
  scenario.preset.settings.push_back({.address = kFftAvg, .word = 1});
  return scenario;
}

// The bytes that belong to a register which can be written, and to none that cannot, as the program
// knows the registers.
std::bitset<128> WritableBytes() {
  BuildRegisterTable();
  std::bitset<128> writable;
  for (const bool can : {true, false}) {
    for (std::int16_t row = 0; row <= RegCount; ++row) {
      if (RegWritable[row] != can) continue;
      const auto address = static_cast<std::size_t>(RegAddr[row]);
      writable.set(address, can);
      if (RegBits[row] > 8) writable.set(address + 1, can);
    }
  }
  return writable;
}

// A sensor under test and another that is given the same stream.
class Bench {
 public:
  explicit Bench(Input& input) : input_(input) {}

  void Run() {
    for (int i = 0; i < kMostFrames && !input_.Empty() && clock_.Asked() < kMostLooks; ++i) {
      const long before = clock_.Asked();
      Operate();
      Require(clock_.Asked() - before < kMostLooksAtOnce, "a pause costs little, however long");
      Require(sensor_.PendingAnswer() == twin_.PendingAnswer(), "the same stream, the same state");
    }
    CheckPins();
    if (powered_) Require(Image() == Image(), "reading changes nothing");
  }

 private:
  using Words = std::array<std::uint16_t, kWords>;

  void Operate() {
    const std::uint8_t what = input_.Byte();
    switch (what % 16) {
      case 0:
        return Pause(std::chrono::microseconds{input_.Word()});
      case 1:
        return Pause(std::chrono::milliseconds{input_.Word() % 4096});
      case 2:
        return LongPause();
      case 3:
        return CheckedWrite(input_.Word());
      case 4:
        return ReadTwice(input_.Word());
      case 5:
        return Surroundings(input_.Byte());
      default:
        Exchange(input_.Word());
    }
  }

  void Pause(std::chrono::nanoseconds time) {
    clock_.Advance(time);
    twinClock_.Advance(time);
  }

  // Up to 18 hours, once in an input of the few that may; the others are seconds, as a series of
  // captures takes its time to be computed.
  void LongPause() {
    const std::chrono::seconds time{input_.Word()};
    Pause(mayPauseLong_ ? time : time % 4s);
    mayPauseLong_ = mayPauseLong_ && time < 4s;
  }

  std::uint16_t Exchange(std::uint16_t frame) {
    const unsigned address = frame >> 8U & 0x7FU;
    // More averages than these take time and do nothing else.
    if ((frame & kWrite) != 0 && address == kFftAvg) frame &= 0xFF03U;
    const std::uint16_t expected = sensor_.PendingAnswer();
    const std::uint16_t answer = sensor_.Exchange(frame);
    Require(answer == expected, "the answer is the one that was waiting");
    Require(answer == twin_.Exchange(frame), "the same stream has the same answers");
    Require((frame & kWrite) == 0 || sensor_.PendingAnswer() == 0, "a write is not answered");
    Require(powered_ || answer == 0, "without power nothing is answered");
    return answer;
  }

  // Every word but those of the buffers at the pointer; takes no time.
  Words Image() {
    Words words{};
    Exchange(0);
    for (unsigned i = 0; i < kWords; ++i) {
      words[i] = Exchange(static_cast<std::uint16_t>((i + 1) % kWords << 9U));
    }
    return words;
  }

  // A byte that no register lets be written changes no register.
  void CheckedWrite(std::uint16_t word) {
    static const std::bitset<128> kWritable = WritableBytes();
    const unsigned address = word >> 8U & 0x7FU;
    const bool acts = address / 2 == kCommand / 2 || address == kStopRequest;
    if (kWritable[address] || acts) {
      Exchange(word | kWrite);
      return;
    }
    const Words before = Image();
    Exchange(word | kWrite);
    Require(Image() == before, "what cannot be written stays");
  }

  void ReadTwice(std::uint16_t word) {
    const auto frame = static_cast<std::uint16_t>(word & ~kWrite);
    Exchange(frame);
    const std::uint16_t first = Exchange(frame);
    Require(Exchange(frame) == first, "a register reads the same at the same moment");
  }

  void Surroundings(std::uint8_t what) {
    const int line = 1 + (what >> 2U & 1);
    const bool high = (what & 8U) != 0;
    for (SimulatedSensor* sensor : {&sensor_, &twin_}) {
      switch (what % 4) {
        case 0:
          sensor->FrameError();
          break;
        case 1:
          sensor->DrivePin(line, high);
          break;
        case 2:
          sensor->CutPower();
          break;
        default:
          sensor->RestorePower();
          break;
      }
    }
    if (what % 4 >= 2) powered_ = what % 4 == 3;
  }

  void CheckPins() {
    for (const int line : {1, 2}) {
      Require(sensor_.PinLevel(line) == twin_.PinLevel(line),
              "the lines depend on the stream only");
    }
    Require(sensor_.IsCapturing() == twin_.IsCapturing(), "and so does what is done");
    Require(!sensor_.IsCapturing() || !sensor_.IsBusy(), "one thing at a time");
    Require(powered_ || (!sensor_.IsInSeries() && !sensor_.IsCapturing()), "nothing without power");
  }

  Input& input_;
  const std::uint8_t choice_ = input_.Byte();
  bool mayPauseLong_ = choice_ < 16;
  const Scenario scenario_ = ScenarioOf(choice_);
  CountingClock clock_;
  CountingClock twinClock_;
  SimulatedSensor sensor_{clock_, scenario_};
  SimulatedSensor twin_{twinClock_, scenario_};
  bool powered_ = true;
};

}  // namespace
}  // namespace kestrel

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  size = std::min<std::size_t>(size, 2048);
  kestrel::Input input(data, size);
  kestrel::Bench(input).Run();
  return 0;
}
