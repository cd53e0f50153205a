// The boards of two drivers of the system under one set of names.
// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>
#include <functional>
#include <map>
#include <string>

#include "seams/usb_driver.h"

namespace kestrel {

// A name belongs to the first driver while a board stands behind it there, else to the second.
class EitherUsbDriver : public UsbDriver {
 public:
  EitherUsbDriver(UsbDriver& first, UsbDriver& second) : first_(first), second_(second) {}

  [[nodiscard]] Handle CreateFile(const std::string& path, std::uint32_t access,
                                  std::uint32_t share, std::uint32_t creation) override;
  [[nodiscard]] bool DeviceIoControl(Handle device, std::uint32_t code,
                                     std::span<const std::uint8_t> input,
                                     std::span<std::uint8_t> output,
                                     std::uint32_t& returned) override;
  void CloseHandle(Handle device) override;
  [[nodiscard]] bool Attached(const std::string& name) override;
  // True where both drivers tell.
  [[nodiscard]] bool Watch(std::function<void()> changed) override;
  // Another number, too, once a board has changed from one driver to the other.
  [[nodiscard]] std::uint32_t Plugging(Handle device) override;
  [[nodiscard]] std::int32_t LastError() override { return lastError_; }

 private:
  struct Open {
    UsbDriver& driver;
    Handle handle;
  };

  UsbDriver& first_;
  UsbDriver& second_;
  std::map<Handle, Open> open_;
  Handle lastHandle_ = 0;
  std::int32_t lastError_ = 0;
};

}  // namespace kestrel
