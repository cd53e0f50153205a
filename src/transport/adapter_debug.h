// What the adapter debug window does: settings, raw frames, and their log.
// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "seams/clock.h"
#include "seams/files.h"
#include "seams/locale.h"
#include "seams/messages.h"
#include "transport/spi_frames.h"
#include "transport/usb_adapter.h"
#include "transport/wire_log.h"

namespace kestrel {

// The boxes of the adapter debug window.
class AdapterDebugView {
 public:
  virtual ~AdapterDebugView() = default;
  [[nodiscard]] virtual FrameTexts Frames() = 0;
  virtual void PointAtFrame(int number) = 0;  // 1..16, the one to be corrected
  // Answers from frame 1 on; the boxes after them are emptied.
  virtual void ShowAnswers(const std::vector<std::string>& answers) = 0;
  virtual void ShowBits(const std::string& text) = 0;
  virtual void ShowDelay(const std::string& text) = 0;
  virtual void ShowSetup(const std::string& text) = 0;
  virtual void ShowCounts(std::int64_t transfers, std::int64_t errors) = 0;
};

inline constexpr const char* kPositive = "Pos";
inline constexpr const char* kNegative = "Neg";

// Exercises the selected adapter directly: settings, raw frames, and a log of both. Without a
// selected adapter every action says "Please Select a Buffer first" and does nothing.
class AdapterDebug {
 public:
  AdapterDebug(UsbAdapter& usb, Clock& clock, Messages& messages, AdapterDebugView& view)
      : usb_(usb), clock_(clock), messages_(messages), view_(view) {}

  // Whether an adapter is selected and answers; says so where there is none.
  [[nodiscard]] bool AdapterSelected();

  void cmdReadBits_Click();
  void cmdReadDelay_Click();

  // Sends a new SPI set-up value, 0..255 in decimal.
  void txtLoopDelay_KeyDown(const std::string& text);

  // 0: chip select falls with each frame; 1: once for all.
  static void optSpiChan_Click(int index) { UseChipSelectPerWord(index == 0); }

  // The other of the two captions.
  [[nodiscard]] static std::string OtherPolarity(const std::string& caption);

  // Sends the frames that the user typed; returns whether all were answered.
  bool cmdWriteSpi_Click();

  // Sends the frames of the last write once more.
  bool Repeat();

  // Puts the log into a file of its own; returns its path, nothing when there is no entry. Throws
  // RuntimeError with path and reason when the file cannot be written.
  std::filesystem::path cmdSave_Click(Files& files, Locale& locale, const std::string& polarity);

  // Empties the log, the counts and the answers.
  void cmdClear_Click();

  [[nodiscard]] const WireLog& Log() const { return log_; }
  [[nodiscard]] std::int64_t Transfers() const { return transfers_; }
  [[nodiscard]] std::int64_t Errors() const { return errors_; }

 private:
  static void UseChipSelectPerWord(bool perWord);
  [[nodiscard]] std::string ReadSettings();
  [[nodiscard]] std::string Report(Locale& locale, const std::string& polarity) const;
  bool Transfer();
  void Note(int command, std::vector<std::uint16_t> sent, std::vector<std::uint16_t> received,
            bool good);

  UsbAdapter& usb_;
  Clock& clock_;
  Messages& messages_;
  AdapterDebugView& view_;
  std::vector<std::uint16_t> frames_;  // of the last write
  WireLog log_;
  std::int64_t transfers_ = 0;  // tried, failed ones included
  std::int64_t errors_ = 0;
};

}  // namespace kestrel
