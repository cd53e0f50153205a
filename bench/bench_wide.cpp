// A wide spectrum in one go beside the sum of its four captures' own times and read-outs.
// SPDX-License-Identifier: MIT
#include <chrono>

#include "figure.h"
#include "platform/linux/system_clock.h"
#include "simulator/simulated_hardware.h"
#include "station/wide_capture.h"
#include "support/fixed_locale.h"
#include "support/memory_files.h"

namespace kestrel {
namespace {

using Seconds = std::chrono::duration<double>;

constexpr std::int16_t kAverages = 1;

template <typename Work>
double Took(const Work& work) {
  const auto start = std::chrono::steady_clock::now();
  work();
  return Seconds(std::chrono::steady_clock::now() - start).count();
}

// Settings are made before the clock runs: a capture's own time and its read-out are left.
double CaptureAt(Station& station, int option, bool& good) {
  RecordSetup setup;
  setup.mode = 0;
  setup.averages = kAverages;
  setup.option = static_cast<std::int16_t>(option);
  good = station.Records().Configure(setup) && good;
  return Took([&] { good = station.Records().Capture() && good; });
}

int Measure() {
  SystemClock clock;
  SimulatedHardware hardware(clock);
  MemoryFiles files;
  FixedLocale locale;
  Station station({.clock = clock,
                   .files = files,
                   .locale = locale,
                   .hardware = {&hardware.Adapter(), &hardware.Port(), &hardware.Service()},
                   .watch = {.progress = {}, .interrupted = {}}});
  bool good = static_cast<bool>(station.Connect());
  double sum = 0;
  for (int option = 0; option < 4; ++option) sum += CaptureAt(station, option, good);
  WideCapture capture(station, {.setup = {.averages = kAverages}});
  const double wide = Took([&] { good = capture.Run().records.size() == 4 && good; });
  Print({.name = "a wide spectrum in one go, beside its four captures and read-outs alone",
         .measured = Amount(wide, 2, "s"),
         .peer = Amount(sum, 2, "s"),
         .ratio = wide / sum,
         .promise = "<= 1.1 x",
         .kept = wide <= 1.1 * sum});
  return WasDone(good, "a capture failed");
}

}  // namespace
}  // namespace kestrel

int main() {
  return kestrel::Measure();
}
