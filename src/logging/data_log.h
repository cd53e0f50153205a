// Data-log files: whether, where and under which name captures are written.
// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>
#include <filesystem>
#include <functional>
#include <set>
#include <string>
#include <utility>

#include "record/current_record.h"
#include "seams/event_loop.h"
#include "seams/files.h"
#include "seams/locale.h"

namespace kestrel {

// How data-log files are written, for reading; no units, start values in brackets.
extern const std::int16_t& DataLogIndex;  // number of the next file (1); WriteDataFile counts on
extern const bool& DataFormatLSB;         // raw words instead of scaled values (false)
extern const std::string& DataLogName;    // base file name chosen by the user ("")

// The user's choices.
void NumberDataLog(std::int16_t next);
void ChooseDataFormat(bool lsb);
void NameDataLog(const std::string& name);

// Back to the start values in brackets.
void ResetDataLogState();

// The text box that shows the logging at work.
class DataLogView {
 public:
  virtual ~DataLogView() = default;
  virtual void SetFileCountColour(double colour) = 0;
  virtual void SetFileCount(const std::string& text) = 0;
};

// Writes one text file for each capture.
class DataLog {
 public:
  DataLog(const CurrentRecord& record, Files& files, Locale& locale, EventLoop& loop,
          DataLogView& view)
      : record_(record), files_(files), locale_(locale), loop_(loop), view_(view) {}

  // Writes the record at hand to the next numbered file, whole or not at all. Throws RuntimeError
  // with path and reason when it cannot; the index is then not used up. After number 32767 every
  // file throws "Overflow" until the index is reset.
  void WriteDataFile();

  // Asked before a file that this run has not written would be replaced: may choose another number,
  // or throw RuntimeError to leave the file alone.
  void BeforeReplacing(std::function<void()> asked) { beforeReplacing_ = std::move(asked); }

  // Path of the last file written (empty).
  [[nodiscard]] const std::filesystem::path& LastFile() const { return lastFile_; }

 private:
  [[nodiscard]] std::string Text(const std::string& name);

  const CurrentRecord& record_;
  Files& files_;
  Locale& locale_;
  EventLoop& loop_;
  DataLogView& view_;
  std::filesystem::path lastFile_;
  std::set<std::filesystem::path> written_;
  std::function<void()> beforeReplacing_;
  bool lastIndexUsed_ = false;  // number 32767 has been written
};

}  // namespace kestrel
