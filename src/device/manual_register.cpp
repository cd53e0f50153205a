// Reading, writing and listing registers by hand.
// SPDX-License-Identifier: MIT
#include "device/manual_register.h"

#include <optional>

#include "device/register_log.h"
#include "numeric/number_format.h"
#include "numeric/number_parse.h"
#include "regmap/command_words.h"
#include "regmap/register_table.h"

namespace kestrel {
namespace {

constexpr float kFlashUpdateMs = 250;
constexpr float kWriteMs = 100;  // until the sensor has acted on a written register

constexpr const char* kNoSensor = "The sensor cannot be reached.";

std::int16_t ToRow(int index) {
  return index >= 0 && index <= RegCount ? static_cast<std::int16_t>(index) : kNoRegister;
}

std::string WriteProblem(std::int16_t row) {
  if (row == kNoRegister) return "no register is chosen.";
  if (!RegWritable[row]) return RegisterEntry(row) + " cannot be written.";
  return "";
}

std::string Written(std::int16_t row, std::uint16_t word) {
  std::string note = Hex(std::int32_t{word}) + " written to " + RegisterEntry(row);
  if (RegReadable[row]) note += ", which now holds " + Hex(RegValue & 0xFFFF);
  return note + ".";
}

// Empty where a text is the number of a word.
std::string ConversionNote(const std::string& text) {
  if (HexadecimalWord(text)) return "";
  if (text.empty()) return "The box was empty. ";
  return "\"" + text + "\" is not a word of 1 to 4 hexadecimal digits. ";
}

}  // namespace

bool ManualRegister::Connected() {
  if (registers_.Reachable()) return true;
  view_.SetNote(kNoSensor);
  return false;
}

bool ManualRegister::ReadAndShow(std::int16_t row) {
  registers_.ReadReg(row);
  if (!Connected()) return false;
  view_.ShowValue(row);
  return true;
}

void ManualRegister::cmboRegister_Click(int index) {
  const std::int16_t row = ToRow(index);
  view_.ShowRegister(row);
  view_.SetNote("");
  if (row != kNoRegister) ReadAndShow(row);
}

void ManualRegister::cmdRead_Click(int index) {
  const std::int16_t row = ToRow(index);
  if (row == kNoRegister) {
    view_.SetNote("Choose a register first.");
  } else if (!RegReadable[row]) {
    view_.SetNote(RegisterEntry(row) + " cannot be read.");
  } else if (RegReserved[row]) {
    view_.SetNote("A reserved register is read only when it is chosen.");
  } else if (ReadAndShow(row)) {
    view_.SetNote(RegisterEntry(row) + " read.");
  }
}

void ManualRegister::cmdWrite_Click(int index, const std::string& text) {
  const std::int16_t row = ToRow(index);
  const std::string problem = WriteProblem(row);
  if (!problem.empty()) {
    messages_.Show("Writing a register: " + problem);
    return;
  }
  if (Connected()) Write(row, LeadingHexadecimalWord(text), ConversionNote(text));
}

void ManualRegister::Write(std::int16_t row, std::uint16_t word, const std::string& conversion) {
  registers_.WriteReg(row, word);
  if (!Connected()) return;
  delay_.Delay(float{kWriteMs});
  cmdReadAllReg_Click();
  if (Connected() && ReadAndShow(row)) view_.SetNote(conversion + Written(row, word));
}

void ManualRegister::cmdReadAllReg_Click() {
  std::optional<RegisterListing> listing = ReadAllRegisters(registers_, listing_);
  if (!listing) {
    view_.SetListNote(std::string(kNoSensor) +
                      (listedAt_.empty() ? "" : " This is the list read at " + listedAt_ + "."));
    return;
  }
  listing_ = std::move(*listing);
  listedAt_ = locale_.Time();
  view_.ShowList(listing_);
  view_.SetListNote(registers_.Reachable()
                        ? ListingNote(listing_, listedAt_)
                        : "No interface is selected: nothing was read, every value stands as 0.");
}

void ManualRegister::cmdUpdateFlash_Click() {
  registers_.WriteReg(row::COMMAND, CommandWord(CommandBit::FlashUpdate));
  delay_.Delay(float{kFlashUpdateMs});
  if (!Connected()) return;
  view_.SetNote("The sensor was told to store its settings in its flash memory.");
}

void ManualRegister::cmdWriteFile_Click() {
  if (listing_.lines.empty()) {
    messages_.Show("Writing " + std::string(kRegisterLogName) +
                   ": there is no register list yet. Nothing was written.");
    return;
  }
  const auto file = WriteRegisterLog(files_, locale_, listing_.text);
  view_.SetNote("The list was written to " + file.string() + ".");
}

}  // namespace kestrel
