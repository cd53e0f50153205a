// Kestrel evaluation program
// SPDX-License-Identifier: MIT
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "alarms/band_table.h"
#include "seams/event_loop.h"
#include "seams/files.h"
#include "seams/messages.h"

namespace kestrel {

// Where the reading of an alarm file shows.
class AlarmFilesView {
 public:
  virtual ~AlarmFilesView() = default;
  virtual void ShowReading(const std::string& text) = 0;  // the message window of the start-up
  virtual void HideReading() = 0;
  // Shows the bands of the option that is selected.
  virtual void DisplaySelected() = 0;
  // One line on how it ended.
  virtual void SetMessage(const std::string& text) = 0;
};

// Saves the alarm bands to files beside the program and loads them from there. Nothing is sent to
// the sensor.
class AlarmFiles {
 public:
  AlarmFiles(Files& files, EventLoop& loop, Messages& messages, AlarmFilesView& view)
      : files_(files), loop_(loop), messages_(messages), view_(view) {}

  // Saves the table under this name, whole or not at all. Throws RuntimeError when it cannot.
  void cmdWriteFile_Click(const std::string& name);

  // Loads the file into the table. Throws RuntimeError that names the file, line and value at
  // fault.
  void ReadFile(const std::string& name);

  // Whether the file that was last saved or loaded holds the table as it is now.
  [[nodiscard]] bool HoldTable() const { return inFile_ == AlarmBandTable; }

  // The wished name where it is one of an alarm file, or else one that no file has yet.
  [[nodiscard]] std::string NameToSaveUnder(const std::string& wished);

  // At most 100 names of files "AlarmSpectrum*.csv", in the order the system lists them.
  [[nodiscard]] std::vector<std::string> ListAlarmFiles();

 private:
  Files& files_;
  EventLoop& loop_;
  Messages& messages_;
  AlarmFilesView& view_;
  std::optional<BandTable> inFile_;  // what a file is known to hold
};

}  // namespace kestrel
