// Writing the data-log file of a capture under the next number.
// SPDX-License-Identifier: MIT
#include "logging/data_log.h"

#include <limits>

#include "app/file_name.h"
#include "app/program_state.h"
#include "logging/data_log_settings.h"
#include "logging/data_log_text.h"
#include "logging/log_files.h"
#include "numeric/conversions.h"
#include "numeric/runtime_error.h"
#include "record/capture_data.h"

namespace kestrel {

namespace {

struct DataLogState {
  std::int16_t index = 1;
  bool lsb = false;
  std::string name;
};

DataLogState state;

}  // namespace

const std::int16_t& DataLogIndex = state.index;
const bool& DataFormatLSB = state.lsb;
const std::string& DataLogName = state.name;

namespace {

constexpr double kWhite = 0xFFFFFF;
constexpr std::int16_t kLastIndex = std::numeric_limits<std::int16_t>::max();

void RefuseBadName(const std::string& name) {
  const std::string problem = FileNameProblem(name);
  if (!problem.empty()) throw RuntimeError("File name " + name + ": " + problem);
}

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
  state = {};
}

void NumberDataLog(std::int16_t next) {
  state.index = next;
}

void ChooseDataFormat(bool lsb) {
  state.lsb = lsb;
}

void NameDataLog(const std::string& name) {
  state.name = name;
}

void DataLog::WriteDataFile() {
  const BusyMark busy(view_, loop_);
  const std::string name = IsBlank(DataLogName) ? kDefaultLogName : DataLogName;
  RefuseBadName(name);
  if (DataLogIndex == kLastIndex && lastIndexUsed_) throw RuntimeError(kOverflow);
  std::filesystem::path file = NextLogFile(files_, locale_);
  if (beforeReplacing_ && !written_.contains(file) && files_.Read(file, 0)) {
    beforeReplacing_();
    file = NextLogFile(files_, locale_);
  }
  files_.ReplaceWhole(file, Text(name));
  lastFile_ = file;
  written_.insert(file);
  view_.SetFileCount(std::to_string(DataLogIndex));
  lastIndexUsed_ = DataLogIndex == kLastIndex;
  state.index = ToInteger(DataLogIndex + 1.0);
}

std::string DataLog::Text(const std::string& name) {
  const DataLogHead head{.baseName = name,
                         .date = locale_.ShortDate(),
                         .time = locale_.Time(),
                         .averageExponent = AvgExponent};
  return DataLogText(record_.Get(), FormatFor(locale_.DecimalMark()), head,
                     DataFormatLSB ? DataLogValues::RawWords : DataLogValues::Scaled);
}

}  // namespace kestrel
