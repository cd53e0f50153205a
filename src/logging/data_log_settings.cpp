// What the data-log window's handlers do with name, number and format.
// SPDX-License-Identifier: MIT
#include "logging/data_log_settings.h"

#include "app/file_name.h"
#include "logging/data_log.h"

namespace kestrel {

DataLogSettings::DataLogSettings(Messages& messages)
    : messages_(messages), earlierName_(DataLogName), earlierLsb_(DataFormatLSB) {
  if (DataLogName.empty()) DataLogName = kProposedLogName;
  typedName_ = DataLogName;
}

void DataLogSettings::txtFileName_Change(const std::string& name) {
  typedName_ = name;
  DataLogName = name;
}

void DataLogSettings::cmdReSetFileIndex_Click() {
  DataLogIndex = 1;
}

void DataLogSettings::ChooseFormat(bool lsb) {
  DataFormatLSB = lsb;
}

bool DataLogSettings::cmdOK_Click() {
  std::string problem = "Please enter a file name or press CANCEL";
  if (!typedName_.empty()) {
    problem = FileNameProblem(typedName_);
    if (problem.empty()) return true;
    problem = "File name " + typedName_ + ": " + problem + ".";
  }
  DataLogName = earlierName_;
  messages_.Show(problem);
  return false;
}

void DataLogSettings::cmdCancel_Click() {
  DataLogName = earlierName_;
  DataFormatLSB = earlierLsb_;
}

}  // namespace kestrel
