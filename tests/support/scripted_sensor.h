// A board with 128 bytes of registers behind it, every frame kept.
// SPDX-License-Identifier: MIT
#pragma once

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <chrono>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <limits>
#include <map>
#include <span>
#include <string>
#include <utility>
#include <vector>

#include "seams/usb_driver.h"
#include "support/fake_clock.h"
#include "support/sensor_frames.h"

namespace kestrel {

// A board under "Ezusb-0" with a sensor behind it, at the driver seam: 128 bytes of registers that
// are read and written by SPI frames, every frame kept. It acts on nothing by itself; what it
// answers and when it fails is told by the test.
class ScriptedSensor : public UsbDriver {
 public:
  using Time = std::chrono::nanoseconds;

  struct Transfer {
    Time at;
    Frames frames;
  };

  explicit ScriptedSensor(FakeClock& clock) : clock_(clock) {}

  // From now on the register holds this word, whatever was to come at later reads.
  void Set(int address, int word) {
    std::erase_if(atRead_, [&](const auto& entry) { return entry.first.first == address; });
    Store(address, word);
  }
  [[nodiscard]] int Word(int address) const {
    return image_.at(Place(address)) + 256 * image_.at(Place(address) + 1);
  }

  // From the n-th read of this register from now on it holds this word.
  void SetAtRead(int address, int n, int word) { atRead_[{address, reads_[address] + n}] = word; }

  // What a register holds is asked for at each read.
  void OnRead(int address, std::function<int()> word) { onRead_[address] = std::move(word); }

  // The k-th request to the driver from now on, the first being 1, and all later ones fail:
  // somebody pulled the plug.
  void UnplugAtRequest(int k) { failFrom_ = requests_ + k; }
  void PlugInAgain() { failFrom_ = kNever; }

  // The k-th answer of the board from now on comes one byte short.
  void AnswerShort(int k) { shortAnswer_ = answersGiven_ + k; }

  // What the board makes of the words that came in during a block's frames; none: it hands them on.
  void OnBlock(std::function<void(std::vector<int>& words)> spoil) { onBlock_ = std::move(spoil); }

  [[nodiscard]] int Requests() const { return requests_; }
  [[nodiscard]] int Opened() const { return opened_; }
  [[nodiscard]] const std::vector<Transfer>& Transfers() const { return transfers_; }

  // Every frame since the last ClearFrames, across transfers.
  [[nodiscard]] Frames AllFrames() const {
    Frames all;
    for (const Transfer& transfer : transfers_) all = std::move(all) + transfer.frames;
    return all;
  }
  [[nodiscard]] long Count(int frame) const {
    const Frames all = AllFrames();
    return std::count(all.begin(), all.end(), frame);
  }

  // When each transfer that begins with this frame took place.
  [[nodiscard]] std::vector<Time> Times(int frame) const {
    std::vector<Time> times;
    for (const Transfer& transfer : transfers_) {
      if (transfer.frames.front() == frame) times.push_back(transfer.at);
    }
    return times;
  }
  void ClearFrames() { transfers_.clear(); }

  [[nodiscard]] Handle CreateFile(const std::string& path, std::uint32_t access,
                                  std::uint32_t share, std::uint32_t creation) override {
    EXPECT_EQ(access, 0x40000000U);
    EXPECT_EQ(share, 2U);
    EXPECT_EQ(creation, 3U);
    if (Unplugged() || path != "\\\\.\\Ezusb-0") {
      lastError_ = kFileNotFound;
      return -1;
    }
    ++opened_;
    return kHandle;
  }

  [[nodiscard]] bool DeviceIoControl(Handle device, std::uint32_t code,
                                     std::span<const std::uint8_t> input,
                                     std::span<std::uint8_t> output,
                                     std::uint32_t& returned) override {
    EXPECT_EQ(device, kHandle);
    EXPECT_EQ(opened_, 1);
    returned = 0;
    if (Unplugged()) {
      lastError_ = kGeneralFailure;
      return false;
    }
    if (code != kBulkTransfer) return Describe(code, input, output, returned);
    return input[0] == 0 ? Take(output, returned) : Answer(output, returned);
  }

  void CloseHandle(Handle device) override {
    EXPECT_EQ(device, kHandle);
    --opened_;
  }

  [[nodiscard]] bool Attached(const std::string& name) override {
    return requests_ + 1 < failFrom_ && name == "Ezusb-0";
  }

  [[nodiscard]] std::int32_t LastError() override { return lastError_; }

 private:
  static constexpr Handle kHandle = 77;
  static constexpr int kNever = std::numeric_limits<int>::max();
  static constexpr std::int32_t kFileNotFound = 2;
  static constexpr std::int32_t kGeneralFailure = 31;
  static constexpr std::size_t kSpiHead = 3;
  static constexpr int kWriteBit = 0x8000;

  static std::size_t Place(int address) { return static_cast<std::size_t>(address); }
  static int AddressOf(int frame) { return frame >> 8 & 127; }

  void Store(int address, int word) {
    image_.at(Place(address)) = static_cast<std::uint8_t>(word & 0xFF);
    image_.at(Place(address) + 1) = static_cast<std::uint8_t>(word >> 8 & 0xFF);
  }

  bool Unplugged() { return ++requests_ >= failFrom_; }

  // Vendor 0x5A17, product 0xED03, two names, four pipes with packets of 64 bytes.
  static bool Describe(std::uint32_t code, std::span<const std::uint8_t> input,
                       std::span<std::uint8_t> output, std::uint32_t& returned) {
    std::vector<std::uint8_t> data;
    if (code == kGetDeviceDescriptor) {
      data = {18, 1, 0, 1, 0, 0, 0, 64, 0x17, 0x5A, 0x03, 0xED, 1, 0, 1, 2, 0, 1};
    } else if (code == kGetStringDescriptor) {
      data = {6, 3, static_cast<std::uint8_t>('A' + input[0]), 0, 'x', 0};
    } else if (code == kGetPipeInformation) {
      data.assign(96, 0);
      data[12] = 4;
      for (const std::size_t pipe : {16U, 36U, 56U, 76U}) data[pipe] = 64;
    } else {
      ADD_FAILURE() << "request " << code;
      return false;
    }
    data.resize(std::min(data.size(), output.size()));
    std::copy(data.begin(), data.end(), output.begin());
    returned = static_cast<std::uint32_t>(data.size());
    return true;
  }

  // A command block: 0 version, 11 and 12 settings, 13 a transfer of frames.
  bool Take(std::span<const std::uint8_t> block, std::uint32_t& returned) {
    returned = static_cast<std::uint32_t>(block.size());
    answer_.clear();
    if (block[0] == 0) {
      answer_ = {2, 7};
    } else if (block[0] == 13) {
      TakeFrames(block);
    } else if (block[0] != 11 && block[0] != 12) {
      ADD_FAILURE() << "command " << int{block[0]};
    }
    return true;
  }

  void TakeFrames(std::span<const std::uint8_t> block) {
    EXPECT_EQ(block[1], 1) << "delay code";
    ASSERT_EQ(block.size(), kSpiHead + 2U * block[2]);
    Transfer transfer{clock_.Monotonic(), {}};
    std::vector<int> words;
    for (std::size_t at = kSpiHead; at < block.size(); at += 2) {
      words.push_back(ClockIn(!transfer.frames.empty()));
      lastFrame_ = block[at] * 256 + block[at + 1];
      transfer.frames.push_back(lastFrame_);
      if ((lastFrame_ & kWriteBit) != 0) {
        image_.at(Place(AddressOf(lastFrame_))) = static_cast<std::uint8_t>(lastFrame_ & 0xFF);
      }
    }
    transfers_.push_back(transfer);
    if (onBlock_) onBlock_(words);
    for (const int word : words) {
      answer_.push_back(static_cast<std::uint8_t>(word >> 8));
      answer_.push_back(static_cast<std::uint8_t>(word & 0xFF));
    }
  }

  // The answer to the frame before this one. Within one transfer it counts as a read.
  int ClockIn(bool counts) {
    if ((lastFrame_ & kWriteBit) != 0) return 0;
    const int address = AddressOf(lastFrame_);
    if (counts) {
      ++reads_[address];
      const auto scripted = atRead_.find({address, reads_[address]});
      if (scripted != atRead_.end()) Store(address, scripted->second);
    }
    const auto asked = onRead_.find(address);
    return asked == onRead_.end() ? Word(address) : asked->second() & 0xFFFF;
  }

  bool Answer(std::span<std::uint8_t> output, std::uint32_t& returned) {
    EXPECT_EQ(output.size(), answer_.size());
    const std::size_t size = std::min(output.size(), answer_.size());
    std::copy_n(answer_.begin(), size, output.begin());
    returned = static_cast<std::uint32_t>(++answersGiven_ == shortAnswer_ ? size - 1 : size);
    return true;
  }

  FakeClock& clock_;
  std::array<std::uint8_t, 128> image_{};
  std::map<int, int> reads_;
  std::map<std::pair<int, int>, int> atRead_;
  std::map<int, std::function<int()>> onRead_;
  std::function<void(std::vector<int>&)> onBlock_;
  std::vector<Transfer> transfers_;
  std::vector<std::uint8_t> answer_;
  int lastFrame_ = kWriteBit;
  int requests_ = 0;
  int failFrom_ = kNever;
  int answersGiven_ = 0;
  int shortAnswer_ = 0;
  int opened_ = 0;
  std::int32_t lastError_ = 0;
};

}  // namespace kestrel
