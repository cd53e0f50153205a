// The files of alarm bands: where they are, saving and loading.
// SPDX-License-Identifier: MIT
#pragma once

#include <array>
#include <filesystem>
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

// Saves the alarm bands to files and loads them. They are kept beside the program and, where its
// folder cannot be written, with the user's documents; both places are listed and loaded from.
// Nothing is sent to the sensor.
class AlarmFiles {
 public:
  AlarmFiles(Files& files, EventLoop& loop, Messages& messages, AlarmFilesView& view)
      : files_(files), loop_(loop), messages_(messages), view_(view) {}

  // Saves the table under this name, whole or not at all. Throws RuntimeError when it cannot.
  void cmdWriteFile_Click(const std::string& name);

  // Loads the file into the table. Throws RuntimeError that names the file, line and value at
  // fault. Returns the number of bands that it held.
  int ReadFile(const std::string& name);

  // Whether the file that was last saved or loaded holds the table as it is now.
  [[nodiscard]] bool HoldTable() const { return inFile_ == AlarmBandTable; }

  // The wished name where it is one of an alarm file, or else one that no file has yet.
  [[nodiscard]] std::string NameToSaveUnder(const std::string& wished);

  // At most 100 names of files "AlarmSpectrum*.csv", in the order the system lists them, those of
  // the folder that is saved to first. A name that is in both folders means the file of the first.
  [[nodiscard]] std::vector<std::string> ListAlarmFiles();

  // "/program", or "/documents, nor beside the program in /program" where that one is read-only.
  [[nodiscard]] std::string PlacesText();

 private:
  // That which is saved to, then the other one.
  [[nodiscard]] std::array<std::filesystem::path, 2> Folders();
  // The file of this name that is loaded.
  [[nodiscard]] std::filesystem::path Find(const std::string& name);
  // A sentence on a file of the same name in the other folder; "" where there is none.
  [[nodiscard]] std::string Shadowed(const std::filesystem::path& taken);
  int Load(const std::filesystem::path& file);

  Files& files_;
  EventLoop& loop_;
  Messages& messages_;
  AlarmFilesView& view_;
  std::optional<BandTable> inFile_;  // what a file is known to hold
};

}  // namespace kestrel
