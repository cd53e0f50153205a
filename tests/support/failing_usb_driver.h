// Kestrel evaluation program
// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>
#include <functional>
#include <span>

#include "transport/usb_driver.h"

namespace kestrel {

// Hands requests on to another driver and makes them fail from the n-th on, as if the board had
// been unplugged, until told otherwise.
class FailingUsbDriver : public UsbDriver {
 public:
  explicit FailingUsbDriver(UsbDriver& inner) : inner_(inner) {}

  // The next request is number 1.
  void FailFrom(int number) {
    failFrom_ = number;
    requests_ = 0;
  }
  void Mend() { failFrom_ = 0; }

  // Sees every command block that goes out.
  void OnBlock(std::function<void(std::span<const std::uint8_t>)> watch) {
    onBlock_ = std::move(watch);
  }
  [[nodiscard]] int Requests() const { return requests_; }

  [[nodiscard]] Handle CreateFile(const std::string& path, std::uint32_t access,
                                  std::uint32_t share, std::uint32_t creation) override {
    if (Fails()) return -1;
    return inner_.CreateFile(path, access, share, creation);
  }
  [[nodiscard]] bool DeviceIoControl(Handle device, std::uint32_t code,
                                     std::span<const std::uint8_t> input,
                                     std::span<std::uint8_t> output,
                                     std::uint32_t& returned) override {
    if (Fails()) return false;
    if (onBlock_ && code == kBulkTransfer && !input.empty() && input[0] == 0) onBlock_(output);
    return inner_.DeviceIoControl(device, code, input, output, returned);
  }
  void CloseHandle(Handle device) override { inner_.CloseHandle(device); }
  [[nodiscard]] std::int32_t LastError() override { return 2; }

 private:
  bool Fails() { return ++requests_ >= failFrom_ && failFrom_ > 0; }

  UsbDriver& inner_;
  std::function<void(std::span<const std::uint8_t>)> onBlock_;
  int failFrom_ = 0;
  int requests_ = 0;
};

}  // namespace kestrel
