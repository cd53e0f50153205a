// What the user is asked and told about data-log files.
// SPDX-License-Identifier: MIT
#pragma once

#include <QStatusBar>
#include <cstdint>
#include <functional>
#include <optional>
#include <string>

#include "connection/core.h"
#include "logging/data_log.h"
#include "ui/panels/capture_panel.h"

namespace kestrel {

// Tells in the status bar where captures are written.
class LogNotice {
 public:
  LogNotice(Core& core, const DataLog& log, CapturePanel& capture, QStatusBar& bar)
      : core_(core), log_(log), capture_(capture), bar_(bar) {}

  // The log has been switched on: asks once for each name what is to become of files of earlier
  // days that would be replaced, and says where the next one goes. Returns whether the user wants
  // to choose another name.
  [[nodiscard]] bool SwitchedOn();
  // The next file would replace one of an earlier day, under a name or number that was chosen after
  // the log had been switched on: asks likewise, except while nobody may be there; the log then
  // goes on behind them, and says so. `otherName` is called where the user wants to choose one;
  // this file goes behind them first. Throws RuntimeError where there is no number left.
  void FileInTheWay(bool isUnattended, const std::function<void()>& otherName);
  // Where the last one went, once.
  void ShowLast();

 private:
  void ShowNext();
  [[nodiscard]] EarlierFiles Ask(const std::optional<std::int16_t>& free);

  Core& core_;
  const DataLog& log_;
  CapturePanel& capture_;
  QStatusBar& bar_;
  std::optional<std::string> replaced_;  // the name whose earlier files may be replaced
};

}  // namespace kestrel
