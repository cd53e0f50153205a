// What the whole program costs: start-up, read-out, waiting, memory.
// SPDX-License-Identifier: MIT
// What the whole program costs: start-up beside an empty window of the toolkit, a read-out beside
// the waits it must make, processor time while a capture is waited for, and memory.
// Without arguments it runs itself once for each figure and prints them.

#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include <QApplication>
#include <QCheckBox>
#include <QEventLoop>
#include <QTimer>
#include <QWidget>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <string>
#include <vector>

#include "device/rec_ctrl.h"
#include "figure.h"
#include "program.h"
#include "start/fonts_ahead.h"

namespace kestrel {
namespace {

using std::chrono::steady_clock;

double Seconds(steady_clock::duration time) {
  return std::chrono::duration<double>(time).count();
}

int ShowEmptyWindow(int argc, char** argv) {
  const QApplication application(argc, argv);
  QWidget window;
  window.resize(1240, 690);
  window.show();
  Expose(window);
  return 0;
}

// As the entry point does it.
int ShowProgram(int argc, char** argv) {
  FontsAhead fonts;
  const QApplication application(argc, argv);
  fonts.Wait();
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
  Print({.name = "read-out of 3 x 512 points, with its plot",
         .measured = Amount(median * 1e3, 1, "ms"),
         .peer = "its waits: " + Amount(kFloor * 1e3, 1, "ms"),
         .ratio = median / kFloor,
         .promise = "at most 1.15 x",
         .kept = median / kFloor <= 1.15});
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
    Print({.name = "processor while a capture is waited for",
           .measured = Amount(part * 100, 2, "% of a core"),
           .promise = "at most 3 %",
           .kept = part <= 0.03});
    program.Window().close();
  });
  // Option 1: 255 averages take about 20 s, of which 11.5 s are waited for before the first poll.
  program.Window().findChild<QCheckBox*>("ckBW0")->click();
  program.Press("cmdStart");
  return 0;
}

// Wakes of all threads so far.
long Wakes() {
  long wakes = 0;
  for (const auto& thread : std::filesystem::directory_iterator("/proc/self/task")) {
    std::ifstream status(thread.path() / "status");
    for (std::string line; std::getline(status, line);) {
      if (line.starts_with("voluntary_ctxt_switches:")) wakes += std::stol(line.substr(24));
    }
  }
  return wakes;
}

int MeasureIdle(int argc, char** argv) {
  constexpr int kSettledMs = 2000;
  constexpr int kWatchedMs = 10000;
  const QApplication application(argc, argv);
  Program program;
  Expose(program.Window());
  program.Press("cmdStart");
  const auto rest = [](int ms) {
    QEventLoop loop;
    QTimer::singleShot(ms, &loop, &QEventLoop::quit);
    loop.exec();
  };
  rest(kSettledMs);
  const long wakes = Wakes();
  const double processor = ProcessorSeconds();
  rest(kWatchedMs);
  const double part = (ProcessorSeconds() - processor) / (kWatchedMs / 1e3);
  const double perSecond = static_cast<double>(Wakes() - wakes) / (kWatchedMs / 1e3);
  Print({.name = "nothing to do: wakes a second",
         .measured = Amount(perSecond, 2, "wakes"),
         .promise = "at most 0.5",
         .kept = perSecond <= 0.5});
  Print({.name = "nothing to do: processor",
         .measured = Amount(part * 100, 3, "% of a core"),
         .promise = "at most 0.05 %",
         .kept = part <= 0.0005});
  return 0;
}

int MeasureMemory(int argc, char** argv) {
  const QApplication application(argc, argv);
  Program program;
  Expose(program.Window());
  for (int i = 0; i < 3; ++i) program.Press("cmdStart");
  const double resident = ResidentMegabytes();
  Print({.name = "resident memory after three captures",
         .measured = Amount(resident, 1, "MB"),
         .promise = "at most 100 MB",
         .kept = resident <= 100});
  return 0;
}

// Wall time of a whole child process doing one of the above. Ends this one where that failed.
double TimeChild(char* self, const char* what) {
  const auto start = steady_clock::now();
  const pid_t child = fork();
  if (child == 0) {
    execl(self, self, what, nullptr);
    _exit(127);
  }
  int status = 0;
  waitpid(child, &status, 0);
  if (status != 0) std::exit(WasDone(false, what));
  return Seconds(steady_clock::now() - start);
}

void CompareStartUp(char* self) {
  std::vector<double> empty;
  std::vector<double> program;
  for (int i = 0; i < 21; ++i) {
    empty.push_back(TimeChild(self, "empty"));
    program.push_back(TimeChild(self, "program"));
  }
  const double ratio = Median(program) / Median(empty);
  const char* platform = std::getenv("QT_QPA_PLATFORM");
  Print({.name = std::string("main window on the screen, --quick-start, ") +
                 (platform == nullptr ? "usual platform" : platform),
         .measured = Amount(Median(program) * 1e3, 0, "ms"),
         .peer = "empty window: " + Amount(Median(empty) * 1e3, 0, "ms"),
         .ratio = ratio,
         .promise = "at most 1.5 x",
         .kept = ratio <= 1.5});
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
  if (what == "idle") return MeasureIdle(argc, argv);
  if (what == "memory") return MeasureMemory(argc, argv);
  CompareStartUp(argv[0]);
  for (const char* figure : {"readout", "waiting", "idle", "memory"}) TimeChild(argv[0], figure);
  return 0;
}
