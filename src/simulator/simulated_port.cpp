// Pin values turned into frames, and answers into pin levels.
// SPDX-License-Identifier: MIT
#include "simulator/simulated_port.h"

namespace kestrel {
namespace {

constexpr unsigned kSelectBit = 0x01;
constexpr unsigned kClockBit = 0x02;
constexpr unsigned kDataBit = 0x04;
constexpr unsigned kAnswerBit = 0x40;
constexpr unsigned kOtherStatusBits = 0x18;  // selected, no error
constexpr std::int16_t kNothingThere = 0xFF;
constexpr unsigned kFrameClocks = 16;

}  // namespace

void SimulatedPort::vbOut(std::int16_t port, std::int16_t value) {
  if (port != base_) return;
  const unsigned before = data_;
  data_ = static_cast<unsigned>(value) & 0xFFU;
  const bool wasSelected = (before & kSelectBit) != 0;
  const bool isSelected = (data_ & kSelectBit) != 0;
  if (wasSelected != isSelected) return isSelected ? Select() : Release();
  const bool clockWas = (before & kClockBit) != 0;
  const bool clockIs = (data_ & kClockBit) != 0;
  if (!isSelected || clockWas == clockIs) return;
  if (clockIs) {
    ShiftOut();
  } else {
    SampleIn((data_ & kDataBit) == 0);
  }
}

std::int16_t SimulatedPort::vbInp(std::int16_t port) {
  if (port == base_) return static_cast<std::int16_t>(data_);
  if (port != base_ + 1) return kNothingThere;
  return static_cast<std::int16_t>(kOtherStatusBits | (line_ ? 0U : kAnswerBit));
}

void SimulatedPort::Select() {
  clocks_ = 0;
  received_ = 0;
  toSend_ = sensor_.PendingAnswer();
}

void SimulatedPort::Release() {
  line_ = false;
  if (clocks_ == kFrameClocks) {
    sensor_.Exchange(static_cast<std::uint16_t>(received_));
  } else if (clocks_ != 0) {
    sensor_.FrameError();
  }
}

void SimulatedPort::ShiftOut() {
  line_ = (toSend_ & 0x8000U) != 0;
  toSend_ = (toSend_ << 1U) & 0xFFFFU;
}

void SimulatedPort::SampleIn(bool bit) {
  received_ = ((received_ << 1U) | (bit ? 1U : 0U)) & 0xFFFFU;
  ++clocks_;
}

}  // namespace kestrel
