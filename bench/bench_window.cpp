// Kestrel evaluation program
// SPDX-License-Identifier: MIT
// What the whole program costs: start-up beside an empty window of the toolkit, a read-out beside
// the waits it must make, processor time while a capture is waited for, and memory.
// Without arguments it runs itself once for each figure and prints them.

#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include <QApplication>
#include <QComboBox>
#include <QPushButton>
#include <QTimer>
#include <QWindow>
#include <algorithm>
#include <chrono>
#include <cstdio>
#include <cstring>
#include <fstream>
#include <string>
#include <vector>

#include "app/start.h"
#include "device/rec_ctrl.h"
#include "platform/linux/system_clock.h"
#include "platform/linux/system_files.h"
#include "platform/linux/system_locale.h"
#include "simulator/simulated_hardware.h"
#include "ui/qt_event_loop.h"
#include "ui/qt_seams.h"
#include "ui/start_windows.h"

namespace kestrel {
namespace {

using std::chrono::steady_clock;

double Seconds(steady_clock::duration time) {
  return std::chrono::duration<double>(time).count();
}

double Median(std::vector<double> values) {
  std::nth_element(values.begin(), values.begin() + static_cast<long>(values.size() / 2),
                   values.end());
  return values[values.size() / 2];
}

void Expose(QWidget& window) {
  while (window.windowHandle() == nullptr || !window.windowHandle()->isExposed()) {
    QApplication::processEvents(QEventLoop::AllEvents, 5);
  }
  QApplication::processEvents();
}

// The program over the simulated sensor, as its entry point builds it.
class Program {
 public:
  Program()
      : hardware_(clock_, RunningMachine()),
        core_({clock_, loop_, pointer_, messages_, files_, locale_, hardware_.Adapter(),
               hardware_.Port(), hardware_.Service()}),
        windows_(core_, [] {}) {
    Main(core_, windows_, {.quickStart = true, .interfaceWithoutConfig = kUsbAdapter});
  }

  frm1& Window() { return windows_.MainWindow(); }
  void Choose(const char* list, int index) {
    Window().findChild<QComboBox*>(list)->setCurrentIndex(index);
  }
  void Press(const char* button) { Window().findChild<QPushButton*>(button)->click(); }

 private:
  SystemClock clock_;
  QtEventLoop loop_;
  QtMousePointer pointer_;
  ConsoleMessages messages_;
  SystemFiles files_;
  SystemLocale locale_;
  SimulatedHardware hardware_;
  Core core_;
  QtStartWindows windows_;
};

int ShowEmptyWindow(int argc, char** argv) {
  const QApplication application(argc, argv);
  QWidget window;
  window.resize(1240, 690);
  window.show();
  Expose(window);
  return 0;
}

int ShowProgram(int argc, char** argv) {
  const QApplication application(argc, argv);
  Program program;
  Expose(program.Window());
  return 0;
}

int MeasureReadout(int argc, char** argv) {
  const QApplication application(argc, argv);
  Program program;
  Expose(program.Window());
  program.Choose("cbxRecMode", 2);
  program.Press("cmdStart");  // the first record, 3 x 512 points
  std::vector<double> times;
  for (int i = 0; i < 9; ++i) {
    const auto start = steady_clock::now();
    program.Press("cmdReadBuffer");
    times.push_back(Seconds(steady_clock::now() - start));
  }
  constexpr double kFloor = 3 * 512 * 2 * 100e-6;
  const double median = Median(times);
  std::printf(
      "read-out of 3 x 512, plot included   %7.1f ms  floor of waits %5.1f ms  ratio %.3f"
      "  (at most 1.15)\n",
      median * 1e3, kFloor * 1e3, median / kFloor);
  return 0;
}

double ProcessorSeconds() {
  rusage usage{};
  getrusage(RUSAGE_SELF, &usage);
  const auto seconds = [](const timeval& time) {
    return static_cast<double>(time.tv_sec) + static_cast<double>(time.tv_usec) * 1e-6;
  };
  return seconds(usage.ru_utime) + seconds(usage.ru_stime);
}

double ResidentMegabytes() {
  std::ifstream status("/proc/self/status");
  for (std::string line; std::getline(status, line);) {
    if (line.starts_with("VmRSS:")) return std::stod(line.substr(6)) / 1024;
  }
  return 0;
}

int MeasureWaiting(int argc, char** argv) {
  const QApplication application(argc, argv);
  Program program;
  Expose(program.Window());
  program.Choose("cbxFFTAvgs", 255);
  double processorAtStart = 0;
  steady_clock::time_point start;
  // Half a second in, the program waits in its first wait; after it, it polls.
  QTimer::singleShot(9000, [&] {
    processorAtStart = ProcessorSeconds();
    start = steady_clock::now();
  });
  QTimer::singleShot(14000, [&] {
    const double part =
        (ProcessorSeconds() - processorAtStart) / Seconds(steady_clock::now() - start);
    std::printf("processor while a capture is waited for %6.2f %% of a core  (less than 3 %%)\n",
                part * 100);
    program.Window().close();
  });
  // Option 1: 255 averages take about 20 s, of which 11.5 s are waited for before the first poll.
  program.Window().findChild<QCheckBox*>("ckBW0")->click();
  program.Press("cmdStart");
  return 0;
}

int MeasureMemory(int argc, char** argv) {
  const QApplication application(argc, argv);
  Program program;
  Expose(program.Window());
  for (int i = 0; i < 3; ++i) program.Press("cmdStart");
  std::printf("resident memory after three captures %7.1f MB  (below 100 MB)\n",
              ResidentMegabytes());
  return 0;
}

// Wall time of a whole child process doing one of the above.
double TimeChild(char* self, const char* what) {
  const auto start = steady_clock::now();
  const pid_t child = fork();
  if (child == 0) {
    execl(self, self, what, nullptr);
    _exit(127);
  }
  int status = 0;
  waitpid(child, &status, 0);
  if (status != 0) std::printf("%s failed\n", what);
  return Seconds(steady_clock::now() - start);
}

void CompareStartUp(char* self) {
  std::vector<double> empty;
  std::vector<double> program;
  for (int i = 0; i < 21; ++i) {
    empty.push_back(TimeChild(self, "empty"));
    program.push_back(TimeChild(self, "program"));
  }
  std::printf(
      "main window visible, quick start     %7.1f ms  empty window  %5.1f ms  ratio %.2f"
      "  (at most 2.5)\n",
      Median(program) * 1e3, Median(empty) * 1e3, Median(program) / Median(empty));
}

}  // namespace
}  // namespace kestrel

int main(int argc, char** argv) {
  using namespace kestrel;
  const std::string what = argc > 1 ? argv[1] : "";
  if (what == "empty") return ShowEmptyWindow(argc, argv);
  if (what == "program") return ShowProgram(argc, argv);
  if (what == "readout") return MeasureReadout(argc, argv);
  if (what == "waiting") return MeasureWaiting(argc, argv);
  if (what == "memory") return MeasureMemory(argc, argv);
  CompareStartUp(argv[0]);
  std::fflush(stdout);
  for (const char* figure : {"readout", "waiting", "memory"}) TimeChild(argv[0], figure);
  return 0;
}
