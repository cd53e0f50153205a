// Boards that answer every request with what the input says.
// SPDX-License-Identifier: MIT
#pragma once

#include <algorithm>
#include <cstdint>
#include <string>
#include <vector>

#include "input.h"
#include "require.h"
#include "seams/usb_driver.h"

namespace kestrel {

// Boards that answer every request with what the input says: any bytes, fewer than asked for, or a
// failure. It watches that its caller keeps to the driver's rules.
class AnsweringDriver : public UsbDriver {
 public:
  struct Answer {
    std::string path;  // of the board
    std::uint32_t code = 0;
    std::uint8_t argument = 0;  // first byte of the request: string index or pipe
    std::vector<std::uint8_t> bytes;
    bool whole = false;  // it succeeded and filled the buffer
  };

  explicit AnsweringDriver(Input& input) : input_(input) {}

  [[nodiscard]] Handle CreateFile(const std::string& path, std::uint32_t /*access*/,
                                  std::uint32_t /*share*/, std::uint32_t /*creation*/) override {
    ++requests_;
    Require(path.starts_with("\\\\.\\Ezusb-") && path.size() == 11, "a name of ours is opened");
    Require(!IsOpen(), "one handle at a time");
    const std::uint8_t how = input_.Byte();
    lastError_ = how;
    if (how >= kFails) return how % 2 - 1;  // 0 or -1
    path_ = path;
    open_ = ++lastHandle_;
    return open_;
  }

  [[nodiscard]] bool DeviceIoControl(Handle device, std::uint32_t code,
                                     std::span<const std::uint8_t> input,
                                     std::span<std::uint8_t> output,
                                     std::uint32_t& returned) override {
    ++requests_;
    Require(IsOpen() && device == open_, "requests go to the open board");
    const std::uint8_t how = input_.Byte();
    std::size_t moved = output.size();
    if (how >= kIsShort) moved = std::min<std::size_t>(moved, input_.Byte());
    if (code == kBulkTransfer && input[0] == 0) {
      sent_.assign(output.begin(), output.end());
    } else {
      const std::string_view bytes = input_.Bytes(moved);
      moved = bytes.size();
      std::copy(bytes.begin(), bytes.end(), output.begin());
      answers_.push_back({path_, code, input[0], {bytes.begin(), bytes.end()}, false});
      answers_.back().whole = how < kFails && moved == output.size();
    }
    returned = static_cast<std::uint32_t>(moved);
    return how < kFails;
  }

  void CloseHandle(Handle device) override {
    Require(IsOpen() && device == open_, "what is open is closed");
    open_ = 0;
  }
  [[nodiscard]] bool Attached(const std::string& name) override {
    Require(name.starts_with("Ezusb-") && name.size() == 7, "a name of ours is looked for");
    return input_.Byte() < kFails;
  }
  // The cable may have been pulled and put back at any time.
  [[nodiscard]] std::uint32_t Plugging(Handle device) override {
    Require(IsOpen() && device == open_, "the open board is asked about");
    if (input_.Byte() >= kIsShort) ++plugging_;
    return plugging_;
  }
  [[nodiscard]] std::int32_t LastError() override { return lastError_; }

  [[nodiscard]] bool IsOpen() const { return open_ != 0; }
  [[nodiscard]] long Requests() const { return requests_; }
  [[nodiscard]] const std::vector<std::uint8_t>& Sent() const { return sent_; }

  // Since the last Forget.
  [[nodiscard]] const std::vector<Answer>& Answers() const { return answers_; }
  void Forget() { answers_.clear(); }

 private:
  static constexpr std::uint8_t kIsShort = 0xC0;
  static constexpr std::uint8_t kFails = 0xF0;

  Input& input_;
  std::string path_;
  Handle open_ = 0;
  Handle lastHandle_ = 0;
  std::uint32_t plugging_ = 1;
  std::int32_t lastError_ = 0;
  long requests_ = 0;
  std::vector<std::uint8_t> sent_;
  std::vector<Answer> answers_;
};

}  // namespace kestrel
