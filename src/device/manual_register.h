// The logic of the register window.
// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>
#include <string>

#include "app/delay.h"
#include "device/register_list.h"
#include "seams/files.h"
#include "seams/locale.h"
#include "seams/messages.h"
#include "transport/register_access.h"

namespace kestrel {

inline constexpr std::int16_t kNoRegister = -1;

// Where one register and the list of all are shown.
class ManualRegisterView {
 public:
  virtual ~ManualRegisterView() = default;
  // What the table says of a register (kNoRegister: of none); no value yet, nothing to write.
  virtual void ShowRegister(std::int16_t row) = 0;
  // What ReadReg has just left in RegValue and RegScaled for this register.
  virtual void ShowValue(std::int16_t row) = 0;
  virtual void ShowList(const RegisterListing& listing) = 0;
  virtual void SetListNote(const std::string& text) = 0;
  // What became of the last action.
  virtual void SetNote(const std::string& text) = 0;
};

// Reads and writes any register by hand. A lost sensor leaves what is shown as it is.
class ManualRegister {
 public:
  ManualRegister(RegisterAccess& registers, SoftwareDelay& delay, Files& files, Locale& locale,
                 Messages& messages, ManualRegisterView& view)
      : registers_(registers),
        delay_(delay),
        files_(files),
        locale_(locale),
        messages_(messages),
        view_(view) {}

  // `row` is the list index of the chosen register, kNoRegister when there is none.
  void cmboRegister_Click(int row);
  void cmdRead_Click(int row);
  // Writes the word that `text` is converted to; the note tells where that is not what it says.
  void cmdWrite_Click(int row, const std::string& text);
  void cmdReadAllReg_Click();
  void cmdUpdateFlash_Click();
  void cmdWriteFile_Click();

  // The list on show; empty until the registers have been read.
  [[nodiscard]] const RegisterListing& Listing() const { return listing_; }

 private:
  bool ReadAndShow(std::int16_t row);
  void Write(std::int16_t row, std::uint16_t word, const std::string& conversion);
  // Whether there is a sensor; says so in the note where there is none.
  bool Connected();

  RegisterAccess& registers_;
  SoftwareDelay& delay_;
  Files& files_;
  Locale& locale_;
  Messages& messages_;
  ManualRegisterView& view_;
  RegisterListing listing_;
  std::string listedAt_;  // time of day
};

}  // namespace kestrel
