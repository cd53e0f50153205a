// Words of the sensor through its registers, and bands through their window.
// SPDX-License-Identifier: MIT
#include "setup/sensor_words.h"

#include "regmap/command_words.h"
#include "regmap/register_table.h"

namespace kestrel::setup {
namespace {

// The sensor brings a band from its flash into the registers in this time.
constexpr float kRetrieveMs = 20;
// Between loading the pointer and saving, and after it.
constexpr float kSaveMs = 10;

// Put into ALM_F_LOW before a band is retrieved: where it stays, nothing was retrieved. No bin is
// as large.
constexpr std::uint16_t kMark = 0xA5C3;
constexpr std::uint16_t kOtherMark = 0x5A3C;

std::array<std::int16_t, kBandFields.size()> BandRows() {
  return {row::ALM_F_LOW,  row::ALM_F_HIGH, row::ALM_X_MAG1, row::ALM_Y_MAG1,
          row::ALM_Z_MAG1, row::ALM_X_MAG2, row::ALM_Y_MAG2, row::ALM_Z_MAG2};
}

std::uint16_t PointerTo(int option, int band) {
  return static_cast<std::uint16_t>(band + 256 * option);
}

std::uint16_t Word(CommandBit bit) {
  return static_cast<std::uint16_t>(CommandWord(bit));
}

}  // namespace

std::uint16_t SensorWords::Read(std::int16_t row) {
  const auto reading = sensor_.registers.Read(row);
  if (!reading) throw Stopped{Stopped::Why::Lost, "The sensor was lost."};
  return static_cast<std::uint16_t>(reading->raw);
}

void SensorWords::Write(std::int16_t row, std::uint16_t word) {
  if (!sensor_.registers.Write(row, word))
    throw Stopped{Stopped::Why::Lost, "The sensor was lost."};
}

std::array<std::uint16_t, kRegisters> SensorWords::Registers() {
  std::array<std::uint16_t, kRegisters> words{};
  for (std::size_t index = 0; index < kRegisters; ++index) {
    words.at(index) = static_cast<std::uint16_t>(Read(RowOf(index)) & LargestOf(index));
  }
  std::uint16_t& gpio = words.at(Index(Register::GpioCtrl));
  gpio = WithoutInputs(gpio, words.at(Index(Register::DioCtrl)));
  return words;
}

// A band may begin with the mark, so another one is tried before the sensor counts as busy.
BandWords SensorWords::Band(int option, int band) {
  BandWords words = Retrieved(option, band, kMark);
  if (words.front() != kMark) return words;
  words = Retrieved(option, band, kOtherMark);
  if (words.front() != kOtherMark) return words;
  throw Stopped{Stopped::Why::Busy,
                "The sensor carries out no commands: it is recording, perhaps by its own timer. "
                "Stop it first."};
}

BandWords SensorWords::Retrieved(int option, int band, std::uint16_t mark) {
  const auto rows = BandRows();
  Write(rows.front(), mark);
  Write(row::ALM_PNTR, PointerTo(option, band));
  Write(row::COMMAND, Word(CommandBit::RetrieveAlarmBand));
  Wait(float{kRetrieveMs});
  BandWords words{};
  for (std::size_t i = 0; i < rows.size(); ++i) words.at(i) = Read(rows.at(i));
  return words;
}

void SensorWords::SaveBand(int option, int band, const BandWords& words) {
  const auto rows = BandRows();
  for (std::size_t i = 0; i < rows.size(); ++i) Write(rows.at(i), words.at(i));
  Write(row::ALM_PNTR, PointerTo(option, band));
  Wait(float{kSaveMs});
  Write(row::COMMAND, Word(CommandBit::SaveAlarmBand));
  Wait(float{kSaveMs});
}

BandWindow::BandWindow(SensorWords& words) : words_(words) {
  const auto rows = BandRows();
  pointer_ = words_.Read(row::ALM_PNTR);
  for (std::size_t i = 0; i < rows.size(); ++i) earlier_.at(i) = words_.Read(rows.at(i));
}

BandWindow::~BandWindow() {
  try {
    const auto rows = BandRows();
    for (std::size_t i = 0; i < rows.size(); ++i) words_.Write(rows.at(i), earlier_.at(i));
    words_.Write(row::ALM_PNTR, pointer_);
  } catch (const Stopped&) {  // the loss is told by whoever used the window
  }
}

}  // namespace kestrel::setup
