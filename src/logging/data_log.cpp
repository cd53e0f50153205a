// Kestrel evaluation program
// SPDX-License-Identifier: MIT
#include "logging/data_log.h"

#include "app/program_state.h"
#include "logging/data_log_text.h"
#include "numeric/conversions.h"

namespace kestrel {

std::int16_t DataLogIndex = 1;
bool DataFormatLSB = false;
std::string DataLogName;

namespace {

constexpr const char* kDefaultName = "Datalog";
constexpr double kWhite = 0xFFFFFF;

// Marks the text box as busy for as long as a file is being written.
class BusyMark {
 public:
  BusyMark(DataLogView& view, EventLoop& loop) : view_(view), loop_(loop) {
    view_.SetFileCountColour(Rgb(4080, 255, 0));
    loop_.YieldToPaint();
  }
  ~BusyMark() {
    view_.SetFileCountColour(kWhite);
    loop_.YieldToPaint();
  }
  BusyMark(const BusyMark&) = delete;
  BusyMark& operator=(const BusyMark&) = delete;

 private:
  DataLogView& view_;
  EventLoop& loop_;
};

}  // namespace

void ResetDataLogState() {
  DataLogIndex = 1;
  DataFormatLSB = false;
  DataLogName.clear();
}

void DataLog::WriteDataFile() {
  const BusyMark busy(view_, loop_);
  const DataLogFormat format = FormatFor(locale_.DecimalMark());
  const std::string name = DataLogName.empty() ? kDefaultName : DataLogName;
  const std::int16_t next = ToInteger(DataLogIndex + 1.0);
  const std::filesystem::path file =
      files_.ProgramFolder() / (name + "_" + std::to_string(DataLogIndex) + format.extension);
  files_.ReplaceWhole(file, DataLogText(format, name, locale_.ShortDate(), locale_.Time()));
  lastFile_ = file;
  view_.SetFileCount(std::to_string(DataLogIndex));
  DataLogIndex = next;
}

}  // namespace kestrel
