// Command blocks taken and answered by the adapter's microcontroller.
// SPDX-License-Identifier: MIT
#include "simulator/adapter_firmware.h"

#include <algorithm>
#include <cstddef>

namespace kestrel {
namespace {

enum Command : std::uint8_t {
  kVersion = 0,
  kSpiValues = 1,
  kSpiSetup = 11,
  kSpiBits = 12,
  kTransferSelectPerWord = 13,
  kTransfer = 14,
};

constexpr std::size_t kTransferHeader = 3;  // command, delay, number of frames
constexpr unsigned kMostFrames = 16;
constexpr unsigned kLongestDelay = 5;

}  // namespace

bool AdapterFirmware::Accept(std::span<const std::uint8_t> block) {
  if (block.empty()) return false;
  switch (block[0]) {
    case kVersion:
      if (block.size() != 1) return false;
      answer_ = {major_, minor_};
      return true;
    case kSpiValues:
      if (block.size() != 1) return false;
      answer_ = {spiBits_, spiSetup_};
      return true;
    case kSpiSetup:
      if (block.size() != 2 || block[1] == 0) return false;
      answer_.clear();
      spiSetup_ = block[1];
      return true;
    case kSpiBits:
      if (block.size() != 2) return false;
      answer_.clear();
      spiBits_ = block[1];
      return true;
    case kTransferSelectPerWord:
    case kTransfer:
      return Transfer(block);
    default:
      return false;
  }
}

// Without its settings the SPI engine is not running.
bool AdapterFirmware::Transfer(std::span<const std::uint8_t> block) {
  if (spiBits_ == 0 || spiSetup_ == 0) return false;
  if (block.size() < kTransferHeader) return false;
  const unsigned delay = block[1];
  const std::size_t frames = block[2];
  if (delay < 1 || delay > kLongestDelay || frames < 1 || frames > kMostFrames) return false;
  if (block.size() != kTransferHeader + 2 * frames) return false;

  answer_.clear();
  for (std::size_t at = kTransferHeader; at < block.size(); at += 2) {
    const unsigned frame = block[at] * 256U + block[at + 1];
    const std::uint16_t word = sensor_->Exchange(static_cast<std::uint16_t>(frame));
    answer_.push_back(static_cast<std::uint8_t>(word >> 8U));
    answer_.push_back(static_cast<std::uint8_t>(word & 0xFFU));
  }
  return true;
}

std::size_t AdapterFirmware::Fetch(std::span<std::uint8_t> out) {
  const std::size_t moved = std::min(out.size(), answer_.size());
  const auto end = answer_.begin() + static_cast<std::ptrdiff_t>(moved);
  std::copy(answer_.begin(), end, out.begin());
  answer_.erase(answer_.begin(), end);
  return moved;
}

}  // namespace kestrel
