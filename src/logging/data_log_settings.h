// The logic of the data-log settings window.
// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>
#include <optional>
#include <string>

#include "seams/messages.h"

namespace kestrel {

// The base name until the user chooses one, and what the settings window proposes then.
inline constexpr const char* kDefaultLogName = "Datalog";
inline constexpr const char* kProposedLogName = "DATALOG";

// A name that nobody would see: none, or nothing but blanks.
[[nodiscard]] bool IsBlank(const std::string& name);

// An edit of the data-log settings. Changes hold at once; Cancel takes back name, format and a
// reset of the number, which then goes on behind the files written meanwhile.
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
  std::optional<std::int16_t> numberBeforeReset_;
};

}  // namespace kestrel
