// Reading, writing and measuring the null registers, with notes on what was typed.
// SPDX-License-Identifier: MIT
#include "device/calibration.h"

#include "numeric/conversions.h"
#include "numeric/number_format.h"
#include "numeric/number_parse.h"
#include "numeric/runtime_error.h"
#include "regmap/command_words.h"
#include "regmap/register_table.h"

namespace kestrel {
namespace {

// The last two are what this window has always sent, whatever its captions say.
constexpr std::int32_t kAutonull = CommandWord(CommandBit::Autonull);
constexpr std::int32_t kFlashUpdate = CommandWord(CommandBit::SaveAlarmBand);
constexpr std::int32_t kRetrieve = CommandWord(CommandBit::RetrieveRecord);

constexpr float kAfterWriteMs = 100;
constexpr float kAutonullMs = 175;
constexpr float kFlashUpdateMs = 600;
constexpr float kRetrieveMs = 250;

constexpr std::int32_t kWordMask = 0xFFFF;

std::int16_t NullRow(Axis axis) {
  return std::array{row::X_NULL, row::Y_NULL, row::Z_NULL}[Index(axis)];
}

// Z is scaled by Y's factor.
float ScaleOf(Axis axis) {
  return RegScale[axis == Axis::X ? row::X_NULL : row::Y_NULL];
}

// The register's two's complement, or what is wrong with the value.
std::int16_t ToNullWord(Axis axis, double value, const std::string& text) {
  const double counts = value / static_cast<double>(ScaleOf(axis));
  try {
    return ToInteger(counts);
  } catch (const RuntimeError&) {
    throw RuntimeError(std::string(kOverflow) + ": \"" + text + "\" is " + GeneralNumber(counts) +
                       " steps of " + RegName[NullRow(axis)] +
                       ", which holds -32768 to 32767. Nothing was written.");
  }
}

std::string NoteOnText(Axis axis, const std::string& text, double taken) {
  if (WholeTextNumber(text)) return "";
  std::string note =
      RegName[NullRow(axis)] + ": \"" + text + "\" was taken as " + GeneralNumber(taken) + ".";
  if (text.find(',') != std::string::npos) note += " The decimal mark is a point.";
  return note;
}

}  // namespace

class Calibration::BusySign {
 public:
  BusySign(CalibrationView& view, MousePointer& pointer, const char* text)
      : view_(view), hourglass_(pointer) {
    view_.ShowBusy(text);
  }
  ~BusySign() { view_.ShowBusy(""); }
  BusySign(const BusySign&) = delete;
  BusySign& operator=(const BusySign&) = delete;

 private:
  CalibrationView& view_;
  Hourglass hourglass_;
};

void Calibration::ReadCalRegisters() {
  std::array<NullTexts, 3> texts;
  for (const Axis axis : kAxes) {
    const auto reading = registers_.Read(NullRow(axis));
    if (!reading) return;
    texts[Index(axis)] = {Hex(NarrowToInteger(reading->value)),
                          FixedNumber(static_cast<double>(reading->scaled), 4)};
  }
  read_ = texts;
  ShowLastRead();
}

void Calibration::WriteNull(Axis axis) {
  const std::string text = view_.ValueText(axis);
  const double value = LeadingNumber(text);
  const std::int16_t word = ToNullWord(axis, value, text);
  const bool written = registers_.Write(NullRow(axis), word & kWordMask);
  delay_.Delay(float{kAfterWriteMs});
  if (written) view_.ShowNote(NoteOnText(axis, text, value));
  ReadCalRegisters();
}

void Calibration::Command(std::int32_t word, float waitMs, const char* busy) {
  const BusySign sign(view_, pointer_, busy);
  registers_.WriteReg(row::COMMAND, word);
  delay_.Delay(waitMs);
}

void Calibration::cmdAutoNull_Click() {
  Command(kAutonull, kAutonullMs, "The sensor measures its offsets...");
  ReadCalRegisters();
}

void Calibration::cmdFlashUpdate_Click() {
  Command(kFlashUpdate, kFlashUpdateMs, "The sensor writes its flash memory...");
}

void Calibration::RetrieveAndRead() {
  Command(kRetrieve, kRetrieveMs, "The sensor retrieves from its flash memory...");
  ReadCalRegisters();
}

void Calibration::ShowLastRead() {
  for (const Axis axis : kAxes) {
    view_.ShowNull(axis, read_[Index(axis)].word, read_[Index(axis)].value);
  }
}

}  // namespace kestrel
