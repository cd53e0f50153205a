// Ten thousand logged captures on end: memory must not grow, and every file must be whole.
// SPDX-License-Identifier: MIT
// Spectra and time records by turns, through the logic without windows, in simulated time.

#include <chrono>
#include <cmath>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <stdexcept>
#include <string>

#include "numeric/number_format.h"
#include "platform/system_files.h"
#include "record/capture_data.h"
#include "simulator/simulated_hardware.h"
#include "station/station.h"
#include "support/fixed_locale.h"
#include "support/temporary_folder.h"

namespace kestrel {
namespace {

namespace fs = std::filesystem;

constexpr int kCaptures = 10000;
constexpr int kWarmUp = 1000;
constexpr double kMostGrowthMegabytes = 1;
constexpr std::int16_t kFftMode = 0;
constexpr std::int16_t kTimeMode = 2;
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

class FilesIn : public SystemFiles {
 public:
  explicit FilesIn(fs::path folder) : folder_(std::move(folder)) {}
  fs::path ProgramFolder() override { return folder_; }

 private:
  fs::path folder_;
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
    const Done connected = station_.Connect();
    if (!connected) throw std::runtime_error(connected.Why().text);
  }

  // A capture whose file is looked at and removed. Returns whether all was well.
  bool Capture(int number) {
    RecordSetup setup;
    setup.mode = number % 2 == 0 ? kFftMode : kTimeMode;
    const bool captured = station_.Records().Configure(setup) && station_.Records().Capture();
    const auto file = station_.Records().WriteDataFile();
    const std::string name = "Datalog_" + std::to_string(number) + ".csv";
    const bool written = captured && file && file->filename() == name && IsWhole(*file);
    const bool alone = folder_.Names().size() == 1;
    if (file) fs::remove(*file);
    const auto notes = station_.TakeNotes();
    if (written && alone && notes.empty()) return true;
    std::printf("capture %d: %s%s%s\n", number, written ? "" : "the file is not whole; ",
                alone ? "" : "there are other files; ", notes.empty() ? "" : notes.back().c_str());
    return false;
  }

  [[nodiscard]] double SimulatedHours() {
    return std::chrono::duration<double>(clock_.Monotonic()).count() / 3600;
  }

 private:
  JumpingClock clock_;
  SimulatedHardware hardware_{clock_};
  TemporaryFolder folder_;
  FilesIn files_{folder_.path()};
  FixedLocale locale_;
  Station station_{{.clock = clock_,
                    .files = files_,
                    .locale = locale_,
                    .hardware = {&hardware_.Adapter(), &hardware_.Port(), &hardware_.Service()},
                    .watch = {}}};
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
