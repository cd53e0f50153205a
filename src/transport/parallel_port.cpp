// The bits of a frame, one after the other on the port's pins.
// SPDX-License-Identifier: MIT
#include "transport/parallel_port.h"

#include "app/program_state.h"

namespace kestrel {

namespace {

std::int32_t answered = 0;

// Data register: bit 0 chip select, bit 1 clock, bit 2 data towards the sensor. The data line is
// inverted both ways: a data bit 1 goes out as 0, and a status bit 6 of 0 comes in as 1.
constexpr std::int16_t kReleased = 0;
constexpr std::int16_t kDataHigh = 4;
constexpr std::int16_t kSelect = 1;
constexpr std::int16_t kSelectAndClock = 3;
constexpr std::int16_t kSelected = kDataHigh + kSelect;
constexpr std::int16_t kClocked = kDataHigh + kSelectAndClock;
constexpr std::int16_t kAnswerBit = 0x40;
constexpr std::int16_t kAddressMask = 127;
// A fresh value for each wait, since Delay may change its argument.
float FrameGapMs() {
  return 0.1F;
}

std::int16_t StatusAddress() {
  return static_cast<std::int16_t>(PortAddress + 1);
}

}  // namespace

const std::int32_t& LptWord = answered;

void KeepLptWord(std::int32_t word) {
  answered = word;
}

void ParallelPort::Out(std::int16_t value) {
  port_.vbOut(PortAddress, value);
}

void ParallelPort::LptShiftOut(std::int32_t frame) {
  if (InterfaceType != kParallelPort) return;
  Out(kDataHigh);
  Out(kSelected);
  answered = 0;
  for (int bit = 15; bit >= 0; --bit) {
    const bool one = (frame >> bit & 1) != 0;
    const std::int16_t data = one ? 0 : kDataHigh;
    Out(kClocked);
    Out(static_cast<std::int16_t>(data + kSelectAndClock));
    Out(static_cast<std::int16_t>(data + kSelect));
    Out(kSelected);
  }
  Out(kReleased);
  delay_.Delay(FrameGapMs());
}

// While the answer comes in, the data line rests at port value 1, which the sensor takes for a read
// of address 0: reading never changes a register.
std::int32_t ParallelPort::LptReadWord(std::int16_t& address) {
  if (InterfaceType != kParallelPort) return 0;
  answered = 0;
  address = static_cast<std::int16_t>(address & kAddressMask);
  LptShiftOut(address * 256);
  Out(kDataHigh);
  Out(kSelected);
  for (int bit = 15; bit >= 0; --bit) {
    Out(kClocked);
    if ((port_.vbInp(StatusAddress()) & kAnswerBit) == 0) answered += 1 << bit;
    Out(kSelected);
  }
  Out(kReleased);
  delay_.Delay(FrameGapMs());
  return LptWord;
}

// Each bit goes out as in LptShiftOut, but for the writes that change nothing, and comes in as in
// LptReadWord.
std::int32_t ParallelPort::LptExchange(std::int32_t frame) {
  if (InterfaceType != kParallelPort) return 0;
  Out(kDataHigh);
  Out(kSelected);
  answered = 0;
  for (int bit = 15; bit >= 0; --bit) {
    Out(kClocked);
    if ((port_.vbInp(StatusAddress()) & kAnswerBit) == 0) answered += 1 << bit;
    if ((frame >> bit & 1) != 0) {
      Out(kSelectAndClock);
      Out(kSelect);
    }
    Out(kSelected);
  }
  Out(kReleased);
  delay_.Delay(FrameGapMs());
  return LptWord;
}

void ParallelPort::LptPortReset() {
  if (InterfaceType != kParallelPort) return;
  port_.vbOut(StatusAddress(), kAnswerBit);
  delay_.Delay(FrameGapMs());
  Out(kReleased);
}

bool ParallelPort::IsHeld() {
  return port_.IsHeld(PortAddress);
}

}  // namespace kestrel
