// The adapter driver of Windows: device calls of the system.
// SPDX-License-Identifier: MIT
#pragma once

#include "seams/usb_driver.h"

namespace kestrel {

// The adapters' generic driver as the system has it. A request that has not ended after two
// seconds is cancelled and fails.
class EzusbDriver : public UsbDriver {
 public:
  [[nodiscard]] Handle CreateFile(const std::string& path, std::uint32_t access,
                                  std::uint32_t share, std::uint32_t creation) override;
  [[nodiscard]] bool DeviceIoControl(Handle device, std::uint32_t code,
                                     std::span<const std::uint8_t> input,
                                     std::span<std::uint8_t> output,
                                     std::uint32_t& returned) override;
  void CloseHandle(Handle device) override;
  [[nodiscard]] std::int32_t LastError() override { return lastError_; }

 private:
  std::int32_t lastError_ = 0;
};

}  // namespace kestrel
