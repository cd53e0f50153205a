// Frames over no interface, over the adapter, and over the parallel port.
// SPDX-License-Identifier: MIT
#include "transport/spi_link.h"

#include <array>

#include "app/program_state.h"
#include "numeric/number_format.h"

namespace kestrel {
namespace {

constexpr std::uint8_t kShortestSpiDelay = 1;

}  // namespace

Outcome NoLink::Ready() {
  return Error{"No interface is selected.", "", "Select one in the menu Interface."};
}

Outcome NoLink::Send(std::span<const std::int32_t> /*frames*/) {
  return Ready();
}

Outcome NoLink::Ask(std::int32_t /*readFrame*/, std::int32_t& answer) {
  answer = 0;
  return Ready();
}

Outcome NoLink::Exchange(std::span<const std::int32_t> /*frames*/,
                         std::span<std::int32_t> /*answers*/) {
  return Ready();
}

Outcome AdapterLink::Ready() {
  if (UsbPresent) return {};
  return UsbAdapter::Absent();
}

Outcome AdapterLink::Send(std::span<const std::int32_t> frames) {
  UsbAdapter::FillTx(frames);
  UsbAdapter::UseSpiDelay(kShortestSpiDelay);
  return usb_.UsbSpiTransfer(static_cast<int>(frames.size()));
}

Outcome AdapterLink::Ask(std::int32_t readFrame, std::int32_t& answer) {
  const Outcome outcome = Send(std::array{readFrame, readFrame});
  answer = SpiRx(2);
  return outcome;
}

Outcome AdapterLink::Exchange(std::span<const std::int32_t> frames,
                              std::span<std::int32_t> answers) {
  Outcome outcome = Send(frames);
  int number = 0;
  for (std::int32_t& answer : answers) {
    ++number;
    if (outcome) answer = SpiRx(number);
  }
  return outcome;
}

Outcome PortLink::Ready() {
  if (port_.IsHeld()) return {};
  return Error{"The parallel port is not held.", "parallel port " + Hex(PortAddress),
               "Select its address in the menu Interface."};
}

Outcome PortLink::Send(std::span<const std::int32_t> frames) {
  for (const std::int32_t frame : frames) port_.LptShiftOut(frame);
  return Ready();
}

Outcome PortLink::Ask(std::int32_t readFrame, std::int32_t& answer) {
  auto address = static_cast<std::int16_t>(readFrame / 256);
  answer = port_.LptReadWord(address);
  return Ready();
}

Outcome PortLink::Exchange(std::span<const std::int32_t> frames, std::span<std::int32_t> answers) {
  if (Outcome ready = Ready(); !ready) return ready;
  for (std::size_t i = 0; i < frames.size(); ++i) answers[i] = port_.LptExchange(frames[i]);
  return Ready();
}

}  // namespace kestrel
