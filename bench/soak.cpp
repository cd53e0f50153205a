// Ten thousand logged captures on end, watched for memory and lost records.
// SPDX-License-Identifier: MIT
// Ten thousand logged captures on end, spectra and time records by turns, through the logic without
// windows, in simulated time. Memory must not grow, and every file must be whole.

#include <chrono>
#include <cmath>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <functional>
#include <iterator>
#include <string>

#include "acquisition/capture_cycle.h"
#include "acquisition/quiet_views.h"
#include "connection/start.h"
#include "device/rec_ctrl.h"
#include "numeric/number_format.h"
#include "platform/linux/system_files.h"
#include "record/capture_data.h"
#include "simulator/simulated_hardware.h"
#include "support/fixed_locale.h"
#include "support/recording_messages.h"
#include "support/temporary_folder.h"

namespace kestrel {
namespace {

namespace fs = std::filesystem;

constexpr int kCaptures = 10000;
constexpr int kWarmUp = 1000;
constexpr double kMostGrowthMegabytes = 1;
constexpr int kTimeMode = 2;
constexpr int kHeaderLines = 12;

// Whatever is waited for has passed at once.
class JumpingClock : public Clock {
 public:
  [[nodiscard]] double SecondsSinceMidnight() override {
    return std::fmod(std::chrono::duration<double>(now_).count(), 86400.0);
  }
  [[nodiscard]] std::chrono::system_clock::time_point UtcNow() override {
    using std::chrono::system_clock;
    return system_clock::time_point{std::chrono::duration_cast<system_clock::duration>(now_)};
  }
  [[nodiscard]] std::chrono::nanoseconds Monotonic() override { return now_; }
  void WaitUntil(std::chrono::nanoseconds deadline) override { now_ = std::max(now_, deadline); }
  void RunEmptyLoop(std::int32_t /*passes*/, std::int32_t /*iterations*/) override {}

 private:
  std::chrono::nanoseconds now_{0};
};

// The window timer ticks as soon as it is waited for; the user does nothing.
class JumpingLoop : public EventLoop {
 public:
  explicit JumpingLoop(Clock& clock) : clock_(clock) {}

  void Yield() override {}
  void YieldUntilEvent() override {
    clock_.WaitUntil(clock_.Monotonic() + interval_);
    tick_();
  }
  void YieldToPaint() override {}
  void StartTimer(std::chrono::milliseconds interval, std::function<void()> tick) override {
    interval_ = interval;
    tick_ = std::move(tick);
  }
  void StopTimer() override {}

 private:
  Clock& clock_;
  std::chrono::milliseconds interval_{0};
  std::function<void()> tick_;
};

class NoPointer : public MousePointer {
 public:
  void ShowHourglass() override {}
  void ShowDefault() override {}
};

class FilesIn : public SystemFiles {
 public:
  explicit FilesIn(fs::path folder) : folder_(std::move(folder)) {}
  fs::path ProgramFolder() override { return folder_; }

 private:
  fs::path folder_;
};

// A main window with auto-plot and data log on that shows nothing.
class SoakViews : public QuietViews, public CaptureView, public StatusView {
 public:
  [[nodiscard]] std::string StartCaption() override { return caption_; }
  void SetStartCaption(const std::string& caption) override { caption_ = caption; }
  void ShowCapturingData(bool /*shown*/) override {}
  void ShowElapsed(double /*seconds*/) override {}
  void SetKeyPreview(bool /*on*/) override {}
  [[nodiscard]] std::string FftAvgsText() override { return "8"; }
  [[nodiscard]] int RecModeIndex() override { return recMode; }
  [[nodiscard]] bool AutoPlotTicked() override { return true; }
  [[nodiscard]] bool DataLogTicked() override { return true; }
  void SetStatusName(int /*bit*/, const std::string& /*text*/) override {}
  void SetStatusFlag(int /*bit*/, const std::string& /*text*/, double /*colour*/) override {}

  int recMode = 0;

 private:
  std::string caption_ = kStartCaption;
};

double ResidentMegabytes() {
  std::ifstream status("/proc/self/status");
  for (std::string line; std::getline(status, line);) {
    if (line.starts_with("VmRSS:")) return std::stod(line.substr(6)) / 1024;
  }
  return 0;
}

// Whether the file holds the record at hand to its last point.
bool IsWhole(const fs::path& file) {
  std::ifstream stream(file, std::ios::binary);
  const std::string content{std::istreambuf_iterator<char>(stream), {}};
  int lines = 0;
  for (std::size_t end = content.find("\r\n"); end != std::string::npos;
       end = content.find("\r\n", end + 2)) {
    ++lines;
  }
  const int last = Buff.width;
  const std::string lastLine = "\r\n" + std::to_string(last) + "," + GeneralNumber(DataX(last)) +
                               "," + GeneralNumber(DataY(last)) + "," + GeneralNumber(DataZ(last)) +
                               "\r\n";
  return lines == kHeaderLines + last + 1 && content.starts_with("File Name,") &&
         content.ends_with(lastLine);
}

class Soak {
 public:
  Soak() {
    core_.delay.SkipCalibration();
    InterfaceType = kUsbAdapter;
    InitInterface(core_);
    InitRegisterTable(core_.registers);
    gRecCtrl->ReadRecCtrl();
  }

  // A capture whose file is looked at and removed. Returns whether all was well.
  bool Capture(int number) {
    views_.recMode = number % 2 == 0 ? 0 : kTimeMode;
    gRecCtrl->RecModeCode(static_cast<std::int16_t>(views_.recMode));
    gRecCtrl->WriteRecCtrl();
    cycle_.cmdStart_Click();
    const std::string name = "Datalog_" + std::to_string(number) + ".csv";
    const bool written = log_.LastFile().filename() == name && IsWhole(log_.LastFile());
    const bool alone = folder_.Names().size() == 1;
    fs::remove(log_.LastFile());
    if (written && alone && messages_.Texts().empty()) return true;
    std::printf("capture %d: %s%s%s\n", number, written ? "" : "the file is not whole; ",
                alone ? "" : "there are other files; ",
                messages_.Texts().empty() ? "" : messages_.Texts().back().c_str());
    return false;
  }

  [[nodiscard]] double SimulatedHours() {
    return std::chrono::duration<double>(clock_.Monotonic()).count() / 3600;
  }

 private:
  JumpingClock clock_;
  SimulatedHardware hardware_{clock_};
  JumpingLoop loop_{clock_};
  NoPointer pointer_;
  RecordingMessages messages_;
  TemporaryFolder folder_;
  FilesIn files_{folder_.path()};
  FixedLocale locale_;
  Core core_{Seams{.clock = clock_,
                   .loop = loop_,
                   .pointer = pointer_,
                   .messages = messages_,
                   .files = files_,
                   .locale = locale_,
                   .usb = hardware_.Adapter(),
                   .port = hardware_.Port(),
                   .driverService = hardware_.Service()}};
  SoakViews views_;
  AlarmStatus alarms_{core_.registers, views_};
  SpectrumPlot plot_{core_.record, views_, alarms_, loop_, messages_};
  DataLog log_{core_.record, files_, locale_, loop_, views_};
  StatusDisplay status_{core_.registers, alarms_, loop_, views_};
  CaptureReadout readout_{core_, status_, alarms_, plot_, views_, log_, views_};
  WindowDelay delay_{loop_};
  BandOverlay overlay_{plot_, views_};
  CaptureCycle cycle_{core_, delay_, status_, alarms_, readout_, plot_, overlay_, views_};
};

int Run() {
  const auto start = std::chrono::steady_clock::now();
  Soak soak;
  double warm = 0;
  for (int number = 1; number <= kCaptures; ++number) {
    if (!soak.Capture(number)) return 1;
    if (number == kWarmUp) warm = ResidentMegabytes();
  }
  const double end = ResidentMegabytes();
  const std::chrono::duration<double> taken = std::chrono::steady_clock::now() - start;
  const bool kept = end - warm <= kMostGrowthMegabytes;
  std::printf(
      "%d logged captures, %.1f h of simulated time in %.0f s; every file whole; resident memory "
      "%.2f MB after %d, %.2f MB at the end; promised: at most %.0f MB more: %s\n",
      kCaptures, soak.SimulatedHours(), taken.count(), warm, kWarmUp, end, kMostGrowthMegabytes,
      kept ? "kept" : "BROKEN");
  return kept ? 0 : 1;
}

}  // namespace
}  // namespace kestrel

int main() {
  return kestrel::Run();
}
