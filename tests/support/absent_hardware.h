// A computer without a board.
// SPDX-License-Identifier: MIT
#pragma once

#include "seams/driver_service.h"
#include "seams/port_io.h"
#include "seams/usb_driver.h"

namespace kestrel {

// A computer where no board is attached.
class AbsentUsbDriver : public UsbDriver {
 public:
  [[nodiscard]] Handle CreateFile(const std::string& /*path*/, std::uint32_t /*access*/,
                                  std::uint32_t /*share*/, std::uint32_t /*creation*/) override {
    return -1;
  }
  [[nodiscard]] bool DeviceIoControl(Handle /*device*/, std::uint32_t /*code*/,
                                     std::span<const std::uint8_t> /*input*/,
                                     std::span<std::uint8_t> /*output*/,
                                     std::uint32_t& returned) override {
    returned = 0;
    return false;
  }
  void CloseHandle(Handle /*device*/) override {}
  [[nodiscard]] bool Attached(const std::string& /*name*/) override { return false; }
  [[nodiscard]] std::int32_t LastError() override { return kUsbNotAttached; }
};

}  // namespace kestrel
