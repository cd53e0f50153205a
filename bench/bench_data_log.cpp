// What a data-log file costs, beside one plain write of the same bytes.
// SPDX-License-Identifier: MIT
// What a data-log file of a time record costs, against one plain write of the same bytes that is
// brought to the same disk: that of the temporary folder, which TMPDIR names.

#include <fcntl.h>
#include <unistd.h>

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <functional>
#include <iterator>
#include <random>
#include <stdexcept>
#include <string>
#include <vector>

#include "figure.h"
#include "logging/data_log.h"
#include "platform/linux/system_locale.h"
#include "platform/system_files.h"
#include "record/current_record.h"
#include "support/temporary_folder.h"

namespace kestrel {
namespace {

namespace fs = std::filesystem;

constexpr int kRounds = 101;
constexpr double kPromisedRatio = 3;

class FilesIn : public SystemFiles {
 public:
  explicit FilesIn(fs::path folder) : folder_(std::move(folder)) {}
  fs::path ProgramFolder() override { return folder_; }

 private:
  fs::path folder_;
};

// Nothing is shown, so nothing has to be painted.
class NoLoop : public EventLoop {
 public:
  void Yield() override {}
  void YieldUntilEvent() override {}
  void YieldToPaint() override {}
  void StartTimer(std::chrono::milliseconds /*interval*/, std::function<void()> /*tick*/) override {
  }
  void StopTimer() override {}
};

class NoCount : public DataLogView {
 public:
  void SetFileCountColour(double /*colour*/) override {}
  void SetFileCount(const std::string& /*text*/) override {}
};

Record MakeRecord() {
  Record record;
  std::mt19937 random(1);
  std::uniform_int_distribution<int> word(-32768, 32767);
  record.kind = RecordKind::Time;
  for (int i = 0; i <= kTimeWidth; ++i) {
    for (AxisRecord& axis : record.axes) {
      axis.raw(i) = word(random);
      axis.data(i) = axis.raw(i) * 0.0023842;
    }
  }
  record.conditions = {.supplyV = 3.2996F, .temperatureC = 24.34F, .recordCount = 1};
  record.status.known = true;
  return record;
}

std::string Content(const fs::path& file) {
  std::ifstream stream(file, std::ios::binary);
  return {std::istreambuf_iterator<char>(stream), {}};
}

void WritePlainly(const fs::path& file, const std::string& content) {
  const int number = open(file.c_str(), O_WRONLY | O_CREAT | O_TRUNC | O_CLOEXEC, 0666);
  const bool done =
      number >= 0 &&
      write(number, content.data(), content.size()) == static_cast<ssize_t>(content.size()) &&
      fsync(number) == 0 && close(number) == 0;
  if (!done) throw std::runtime_error("the plain file could not be written");
}

double Ms(const std::function<void()>& work) {
  using Clock = std::chrono::steady_clock;
  const auto start = Clock::now();
  work();
  return std::chrono::duration<double, std::milli>(Clock::now() - start).count();
}

double Median(std::vector<double> values) {
  std::nth_element(values.begin(), values.begin() + kRounds / 2, values.end());
  return values[kRounds / 2];
}

int Measure() {
  const TemporaryFolder folder;
  FilesIn files(folder.path());
  SystemLocale locale;
  NoLoop loop;
  NoCount view;
  CurrentRecord current;
  current.HandOver(MakeRecord());
  DataLog log(current, files, locale, loop, view);
  log.WriteDataFile();
  const std::string content = Content(log.LastFile());

  std::vector<double> ours;
  std::vector<double> plain;
  std::vector<double> ratios;  // of neighbours: the disk may have others to serve meanwhile
  for (int round = 0; round < kRounds; ++round) {
    const fs::path file = folder.path() / ("plain_" + std::to_string(round) + ".csv");
    plain.push_back(Ms([&] { WritePlainly(file, content); }));
    ours.push_back(Ms([&] { log.WriteDataFile(); }));
    ratios.push_back(ours.back() / plain.back());
  }
  const bool whole = Content(log.LastFile()).size() == content.size();
  const double ratio = Median(ratios);
  Print({.name = "data-log file of a time record",
         .measured = Amount(Median(ours), 2, "ms"),
         .peer = "write and fsync: " + Amount(Median(plain), 2, "ms"),
         .ratio = ratio,
         .promise = "at most 3 x",
         .kept = ratio <= kPromisedRatio});
  return WasDone(whole, "the data-log file is not whole");
}

}  // namespace
}  // namespace kestrel

int main() {
  return kestrel::Measure();
}
