// Kestrel evaluation program
// SPDX-License-Identifier: MIT
#include "device/calibration.h"

#include <array>

#include "numeric/conversions.h"
#include "numeric/number_format.h"
#include "numeric/number_parse.h"
#include "numeric/runtime_error.h"
#include "regmap/register_table.h"

namespace kestrel {
namespace {

constexpr std::int32_t kAutonull = 0x0001;
constexpr std::int32_t kFlashUpdate = 0x1000;
constexpr std::int32_t kRetrieve = 0x2000;

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

class Hourglass {
 public:
  explicit Hourglass(MousePointer& pointer) : pointer_(pointer) { pointer_.ShowHourglass(); }
  ~Hourglass() { pointer_.ShowDefault(); }
  Hourglass(const Hourglass&) = delete;
  Hourglass& operator=(const Hourglass&) = delete;

 private:
  MousePointer& pointer_;
};

}  // namespace

void Calibration::ReadCalRegisters() {
  for (const Axis axis : kAxes) {
    registers_.ReadReg(NullRow(axis));
    if (!RegisterAccess::Usable()) return;
    view_.ShowNull(axis, Hex(NarrowToInteger(RegValue)),
                   FixedNumber(static_cast<double>(RegScaled), 4));
  }
}

void Calibration::WriteNull(Axis axis) {
  const std::string text = view_.ValueText(axis);
  std::int16_t word = 0;
  try {
    word = ToInteger(LeadingNumber(text) / static_cast<double>(ScaleOf(axis)));
  } catch (const RuntimeError& error) {
    throw RuntimeError("Writing " + RegName[NullRow(axis)] + ": " + error.what() + ", \"" + text +
                       "\" g does not fit the register.");
  }
  registers_.WriteReg(NullRow(axis), word & kWordMask);
  delay_.Delay(float{kAfterWriteMs});
  ReadCalRegisters();
}

void Calibration::cmdAutoNull_Click() {
  registers_.WriteReg(row::COMMAND, kAutonull);
  delay_.Delay(float{kAutonullMs});
  ReadCalRegisters();
}

void Calibration::cmdFlashUpdate_Click() {
  const Hourglass hourglass(pointer_);
  registers_.WriteReg(row::COMMAND, kFlashUpdate);
  delay_.Delay(float{kFlashUpdateMs});
}

void Calibration::RetrieveAndRead() {
  registers_.WriteReg(row::COMMAND, kRetrieve);
  delay_.Delay(float{kRetrieveMs});
  ReadCalRegisters();
}

}  // namespace kestrel
