// Kestrel evaluation program
// SPDX-License-Identifier: MIT
// How long the alarm editor takes to read and to write all bands beside the waits that the sensor
// needs, over the simulated adapter, whose bus takes no time.

#include <QLabel>
#include <chrono>
#include <cstdio>
#include <string>
#include <vector>

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

// Whether every press ended with this message, within its promise.
bool Measure(Program& program, const char* button, const std::string& message, double floor) {
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
  std::printf("%-36s %7.1f ms  floor of waits %5.1f ms  ratio %.3f  (at most %.2f)%s\n",
              message.c_str(), median * 1e3, floor * 1e3, median / floor, kMost,
              whole ? "" : "  NOT DONE");
  return whole && median / floor <= kMost;
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
  const bool read = Measure(program, "cmdReadAll", "24 bands read.", accesses + kBands * kRetrieve);
  const bool written = Measure(program, "cmdWriteAll", "24 bands written.",
                               accesses + kBands * kBeforeSave + kAccess + kClear);
  return read && written ? 0 : 1;
}
