// What the data-log window's handlers do with name, number and format.
// SPDX-License-Identifier: MIT
#include "logging/data_log_settings.h"

#include <algorithm>

#include "app/file_name.h"
#include "logging/data_log.h"

namespace kestrel {

bool IsBlank(const std::string& name) {
  return name.find_first_not_of(" \t") == std::string::npos;
}

DataLogSettings::DataLogSettings(Messages& messages)
    : messages_(messages), earlierName_(DataLogName), earlierLsb_(DataFormatLSB) {
  if (DataLogName.empty()) NameDataLog(kProposedLogName);
  typedName_ = DataLogName;
}

void DataLogSettings::txtFileName_Change(const std::string& name) {
  typedName_ = name;
  NameDataLog(name);
}

void DataLogSettings::cmdReSetFileIndex_Click() {
  if (!numberBeforeReset_) numberBeforeReset_ = DataLogIndex;
  NumberDataLog(1);
}

void DataLogSettings::ChooseFormat(bool lsb) {
  ChooseDataFormat(lsb);
}

bool DataLogSettings::cmdOK_Click() {
  std::string problem = "Please enter a file name or press CANCEL";
  if (!IsBlank(typedName_)) {
    problem = FileNameProblem(typedName_);
    if (problem.empty()) return true;
    problem = "File name " + typedName_ + ": " + problem + ".";
  }
  NameDataLog(earlierName_);
  messages_.Show(problem);
  return false;
}

void DataLogSettings::cmdCancel_Click() {
  NameDataLog(earlierName_);
  ChooseDataFormat(earlierLsb_);
  if (numberBeforeReset_) NumberDataLog(std::max(DataLogIndex, *numberBeforeReset_));
}

}  // namespace kestrel
