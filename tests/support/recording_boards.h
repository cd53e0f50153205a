// Adapter boards that answer from a script and keep what they are sent.
// SPDX-License-Identifier: MIT
#pragma once

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <cstdint>
#include <cstdio>
#include <deque>
#include <map>
#include <set>
#include <span>
#include <string>
#include <vector>

#include "seams/usb_driver.h"

namespace kestrel {

// What one adapter board says of itself.
struct ScriptedBoard {
  std::uint16_t vendor = 0x5A17;
  std::uint16_t product = 0xED03;
  std::vector<std::u16string> strings = {u"Maker", u"Adapter"};  // descriptors 1, 2, ...
  std::array<std::uint8_t, 2> version = {2, 7};
  std::vector<std::uint16_t> packetSizes = {64, 64, 64, 64};  // of pipes 0, 1, ...
  int pipesMissing = 0;  // so many of these are not counted: the rest of a larger buffer
};

// Up to four boards behind the driver seam. Every call is kept as one line of text, bytes in
// hexadecimal; requests fail or fall short when told to. It ends the test in failure when a handle
// is closed twice, used after that, or left open.
class RecordingBoards : public UsbDriver {
 public:
  ~RecordingBoards() override {
    EXPECT_TRUE(open_.empty()) << open_.size() << " handles left open";
  }

  std::map<int, ScriptedBoard> boards;            // by the number in "Ezusb-n"
  std::map<int, std::int32_t> openErrors;         // names that do not open, with the error code
  std::map<int, std::uint32_t> pluggings;         // which plugging-in it is, where that is told
  std::deque<std::vector<std::uint8_t>> answers;  // what pipe 1 gives, one entry a read

  bool answersZeros = false;  // where no answer is scripted

  // The k-th request (opening counts, closing does not) from now on fails, or moves one byte less
  // than asked for; 0 for none.
  void FailAt(int k) { failAt_ = k == 0 ? 0 : requests_ + k; }
  void ShortAt(int k) { shortAt_ = k == 0 ? 0 : requests_ + k; }
  // The k-th request from now on delivers so many bytes at most.
  void CutAt(int k, std::size_t bytes) { cutAt_[requests_ + k] = bytes; }
  // All opens fail, with this error code.
  void RefuseOpening(std::int32_t code) { openError_ = code; }

  [[nodiscard]] const std::vector<std::string>& Log() const { return log_; }
  // The blocks sent on pipe 0.
  [[nodiscard]] std::vector<std::string> Sent() const {
    std::vector<std::string> sent;
    for (const std::string& line : log_) {
      if (line.starts_with("send ")) sent.push_back(line.substr(5));
    }
    return sent;
  }
  [[nodiscard]] int Requests() const { return requests_; }
  [[nodiscard]] int Opened() const { return opened_; }
  [[nodiscard]] int Closed() const { return closed_; }
  void ClearLog() { log_.clear(); }

  [[nodiscard]] Handle CreateFile(const std::string& path, std::uint32_t access,
                                  std::uint32_t share, std::uint32_t creation) override {
    char line[100];
    std::snprintf(line, sizeof line, "open %s %X %X %X", path.c_str(), access, share, creation);
    log_.emplace_back(line);
    const bool failed = ++requests_ == failAt_;
    const std::string prefix = "\\\\.\\Ezusb-";
    const int number = path.starts_with(prefix) ? std::stoi(path.substr(prefix.size())) : -1;
    if (failed || openError_ != 0 || openErrors.contains(number) || !boards.contains(number)) {
      lastError_ = openErrors.contains(number) ? openErrors.at(number) : 2;
      if (openError_ != 0) lastError_ = openError_;
      return -1;
    }
    ++opened_;
    open_[++lastHandle_] = number;
    return lastHandle_;
  }

  [[nodiscard]] bool DeviceIoControl(Handle device, std::uint32_t code,
                                     std::span<const std::uint8_t> input,
                                     std::span<std::uint8_t> output,
                                     std::uint32_t& returned) override {
    const auto found = open_.find(device);
    if (found == open_.end()) {
      ADD_FAILURE() << "request on a handle that is not open";
      return false;
    }
    ++requests_;
    const bool sends = code == kBulkTransfer && input[0] == 0;
    log_.push_back(Describe(code, input, output));
    returned = 0;
    if (requests_ == failAt_) return false;
    const ScriptedBoard& board = boards.at(found->second);
    if (sends) {
      Take(board, output);
      returned = static_cast<std::uint32_t>(output.size());
    } else {
      std::vector<std::uint8_t> data;
      if (!Answer(board, code, input, output.size(), data)) return false;
      const auto cut = cutAt_.find(requests_);
      const std::size_t most = cut == cutAt_.end() ? output.size() : cut->second;
      data.resize(std::min({data.size(), output.size(), most}));
      std::copy(data.begin(), data.end(), output.begin());
      returned = static_cast<std::uint32_t>(data.size());
    }
    if (requests_ == shortAt_) --returned;
    return true;
  }

  void CloseHandle(Handle device) override {
    log_.emplace_back("close");
    ++closed_;
    EXPECT_EQ(open_.erase(device), 1U) << "closed a handle that is not open";
  }

  [[nodiscard]] bool Attached(const std::string& name) override {
    return std::any_of(boards.begin(), boards.end(), [&](const auto& board) {
      return name == "Ezusb-" + std::to_string(board.first);
    });
  }
  [[nodiscard]] std::uint32_t Plugging(Handle device) override {
    const auto known = pluggings.find(open_.at(device));
    return known == pluggings.end() ? 0 : known->second;
  }

  [[nodiscard]] std::int32_t LastError() override { return lastError_; }

 private:
  static std::string Bytes(std::span<const std::uint8_t> bytes) {
    std::string text;
    for (const std::uint8_t byte : bytes) {
      char digits[4];
      std::snprintf(digits, sizeof digits, "%02X", unsigned{byte});
      text += (text.empty() ? "" : " ") + std::string(digits);
    }
    return text;
  }

  static std::string Describe(std::uint32_t code, std::span<const std::uint8_t> input,
                              std::span<const std::uint8_t> output) {
    const std::string size = std::to_string(output.size());
    const std::string sizes = std::to_string(input.size()) + " -> " + size;
    if (code == 0x222004) return "device descriptor " + sizes;
    if (code == 0x222044) return "string " + Bytes(input) + " -> " + size;
    if (code == 0x222000) return "pipes " + sizes;
    EXPECT_EQ(code, 0x222051U);
    const std::string pipe = Bytes(input);
    if (pipe == "00 00 00 00") return "send " + Bytes(output);
    EXPECT_EQ(pipe, "01 00 00 00");
    return "receive " + size;
  }

  void Take(const ScriptedBoard& board, std::span<const std::uint8_t> block) {
    if (block.size() != 1 || block[0] != 0) return;
    answers.push_front({board.version[0], board.version[1]});
  }

  bool Answer(const ScriptedBoard& board, std::uint32_t code, std::span<const std::uint8_t> input,
              std::size_t size, std::vector<std::uint8_t>& data) {
    if (code == 0x222004) {
      data = {18,
              1,
              0,
              2,
              0,
              0,
              0,
              64,
              Low(board.vendor),
              High(board.vendor),
              Low(board.product),
              High(board.product),
              0,
              1,
              1,
              2,
              0,
              1};
    } else if (code == 0x222044) {
      return StringDescriptor(board, input[0], data);
    } else if (code == 0x222000) {
      data.assign(16 + 20 * board.packetSizes.size(), 0);
      data[12] = static_cast<std::uint8_t>(static_cast<int>(board.packetSizes.size()) -
                                           board.pipesMissing);
      for (std::size_t i = 0; i < board.packetSizes.size(); ++i) {
        data[16 + 20 * i] = Low(board.packetSizes[i]);
        data[17 + 20 * i] = High(board.packetSizes[i]);
      }
    } else if (answers.empty() && answersZeros) {
      data.assign(size, 0);
    } else if (answers.empty()) {
      ADD_FAILURE() << "no answer is scripted";
      return false;
    } else {
      data = answers.front();
      answers.pop_front();
    }
    return true;
  }

  static bool StringDescriptor(const ScriptedBoard& board, std::size_t index,
                               std::vector<std::uint8_t>& data) {
    if (index < 1 || index > board.strings.size()) return false;
    const std::u16string& text = board.strings[index - 1];
    data = {static_cast<std::uint8_t>(2 + 2 * text.size()), 3};
    for (const char16_t unit : text) {
      data.push_back(Low(unit));
      data.push_back(High(unit));
    }
    return true;
  }

  static std::uint8_t Low(unsigned value) { return static_cast<std::uint8_t>(value & 0xFFU); }
  static std::uint8_t High(unsigned value) { return static_cast<std::uint8_t>(value >> 8U); }

  std::vector<std::string> log_;
  std::map<Handle, int> open_;
  Handle lastHandle_ = 0;
  int requests_ = 0;
  int opened_ = 0;
  int closed_ = 0;
  int failAt_ = 0;
  int shortAt_ = 0;
  std::map<int, std::size_t> cutAt_;
  std::int32_t openError_ = 0;
  std::int32_t lastError_ = 0;
};

}  // namespace kestrel
