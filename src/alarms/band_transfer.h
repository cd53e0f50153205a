// The way of the alarm bands to and from the sensor's flash.
// SPDX-License-Identifier: MIT
#pragma once

#include <array>
#include <cstdint>
#include <optional>
#include <string>

#include "alarms/band_table.h"
#include "app/delay.h"
#include "seams/event_loop.h"
#include "seams/messages.h"
#include "transport/register_access.h"

namespace kestrel {

// Where a transfer shows how far it is.
class BandTransferView {
 public:
  virtual ~BandTransferView() = default;
  // Shows the bands of one option (0..3) as the table has them.
  virtual void DisplaySpectrum(std::int16_t option) = 0;
  // `done` of `total` bands; between two bands the event loop runs, so that Cancel is seen.
  virtual void ShowTransfer(const std::string& activity, int done, int total) = 0;
  virtual void HideTransfer() = 0;
  // One line on how it ended.
  virtual void SetMessage(const std::string& text) = 0;
};

// Moves the alarm bands between the table and the sensor's flash, one band at a time through the
// window of registers that ALM_PNTR selects. Nothing is stored from a sensor that is lost.
class BandTransfer {
 public:
  BandTransfer(RegisterAccess& registers, SoftwareDelay& delay, EventLoop& loop, Messages& messages,
               BandTransferView& view)
      : registers_(registers), delay_(delay), loop_(loop), messages_(messages), view_(view) {}

  // Copies the six bands of one option into the table and shows them.
  void ReadFlash(std::int16_t option);
  // All options, then shows option 0.
  void ReadAllFlash();
  // Copies the six bands of one option from the table into the sensor's flash. Of a value that does
  // not fit its register the low bits are written, and the closing line counts such values.
  void Write6BandsToFlash(std::int16_t option);
  // Clears the sensor's bands, then writes all options.
  void cmdWriteAll_Click();
  // Zeroes the table and clears the sensor's bands.
  void cmdClearAll_Click();

  // Ends a running transfer before its next band.
  void Cancel() { cancelled_ = true; }
  [[nodiscard]] bool Running() const { return running_; }

  // What the sensor's flash is known to hold; nothing for a band that has not been transferred yet,
  // or whose writing was broken off, and for bands and options that are not used.
  [[nodiscard]] std::optional<std::int32_t> InSensor(int field, int band, int option) const;
  // Another sensor may be connected now.
  void ForgetSensor() { known_ = {}; }

 private:
  class Run;
  using Known = std::array<std::array<bool, kAlarmBands + 1>, kSampleRateOptions>;

  // These tell whether the sensor was there to the end.
  bool ReadOption(Run& run, std::int16_t option);
  bool WriteOption(Run& run, std::int16_t option);
  bool ReadBand(int band, int option);
  bool WriteBand(int band, int option);
  bool ClearSensor();
  bool Send(std::int16_t row, std::int32_t value);
  [[nodiscard]] std::string Misfits(int firstOption, int lastOption) const;
  [[nodiscard]] bool SensorThere();
  void RefuseOption(const char* routine, const char* name, const char* valid, std::int16_t option);

  RegisterAccess& registers_;
  SoftwareDelay& delay_;
  EventLoop& loop_;
  Messages& messages_;
  BandTransferView& view_;
  bool running_ = false;
  bool cancelled_ = false;
  BandTable sensor_;  // where known_
  Known known_{};
  BandTable read_;   // values as they were last read,
  BandTable words_;  // and the registers' words that they were decoded from
};

}  // namespace kestrel
