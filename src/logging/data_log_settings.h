// The logic of the data-log settings window.
// SPDX-License-Identifier: MIT
#pragma once

#include <string>

#include "seams/messages.h"

namespace kestrel {

// The base name until the user chooses one, and what the settings window proposes then.
inline constexpr const char* kDefaultLogName = "Datalog";
inline constexpr const char* kProposedLogName = "DATALOG";

// An edit of the data-log settings. Changes hold at once; Cancel takes back name and format.
class DataLogSettings {
 public:
  explicit DataLogSettings(Messages& messages);

  void txtFileName_Change(const std::string& name);
  void cmdReSetFileIndex_Click();
  void ChooseFormat(bool lsb);

  // Returns whether the settings can stay; otherwise says why not and takes the name back.
  bool cmdOK_Click();
  void cmdCancel_Click();

 private:
  Messages& messages_;
  std::string earlierName_;
  bool earlierLsb_;
  std::string typedName_;
};

}  // namespace kestrel
