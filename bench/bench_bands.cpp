// What reading and writing all alarm bands costs beside the sensor's own waits.
// SPDX-License-Identifier: MIT
// How long the alarm editor takes to read and to write all bands beside the waits that the sensor
// needs, over the simulated adapter, whose bus takes no time.

#include <QLabel>
#include <chrono>
#include <cstdio>
#include <string>
#include <vector>

#include "figure.h"
#include "program.h"

namespace kestrel {
namespace {

using std::chrono::steady_clock;

constexpr int kBands = 4 * 6;
constexpr double kAccess = 100e-6;  // after each register access
constexpr double kRetrieve = 20e-3;
constexpr double kBeforeSave = 10e-3;
constexpr double kClear = 30e-3;
constexpr double kMost = 1.15;

QPushButton* OpenEditor(Program& program, const char* button) {
  program.Window().findChild<QAction*>("mnuAlarmSpectrum")->trigger();
  auto* label = program.Window().findChild<QLabel*>("lblmsg");
  // Opening it reads all bands once the window is on the screen.
  while (label->text().isEmpty()) QApplication::processEvents(QEventLoop::AllEvents, 5);
  return program.Window().findChild<QPushButton*>(button);
}

// Whether every press ended with this message.
bool Measure(Program& program, const char* name, const char* button, const std::string& message,
             double floor) {
  QPushButton* press = OpenEditor(program, button);
  const auto* label = program.Window().findChild<QLabel*>("lblmsg");
  std::vector<double> times;
  bool whole = true;
  for (int i = 0; i < 9; ++i) {
    const auto start = steady_clock::now();
    press->click();
    times.push_back(std::chrono::duration<double>(steady_clock::now() - start).count());
    whole = whole && label->text().toStdString() == message;
  }
  const double median = Median(times);
  Print({.name = name,
         .measured = Amount(median * 1e3, 1, "ms"),
         .peer = "its waits: " + Amount(floor * 1e3, 1, "ms"),
         .ratio = median / floor,
         .promise = "at most 1.15 x",
         .kept = median / floor <= kMost});
  return whole;
}

}  // namespace
}  // namespace kestrel

int main(int argc, char** argv) {
  using namespace kestrel;
  const QApplication application(argc, argv);
  Program program;
  Expose(program.Window());
  // A band read: pointer, command, eight registers. A band written: these too, in another order.
  const double accesses = kBands * 10 * kAccess;
  const bool read = Measure(program, "reading all alarm bands", "cmdReadAll", "24 bands read.",
                            accesses + kBands * kRetrieve);
  const bool written =
      Measure(program, "writing all alarm bands", "cmdWriteAll", "24 bands written.",
              accesses + kBands * kBeforeSave + kAccess + kClear);
  return WasDone(read && written, "the bands were not transferred");
}
