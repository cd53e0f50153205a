// Kestrel evaluation program
// SPDX-License-Identifier: MIT
#pragma once

#include "transport/driver_service.h"
#include "transport/port_io.h"
#include "transport/usb_driver.h"

namespace kestrel {

// What a computer offers that has no adapter driver, no access to its ports and no driver service.

// No board answers.
class AbsentUsbDriver : public UsbDriver {
 public:
  [[nodiscard]] Handle CreateFile(const std::string& path, std::uint32_t access,
                                  std::uint32_t share, std::uint32_t creation) override;
  [[nodiscard]] bool DeviceIoControl(Handle device, std::uint32_t code,
                                     std::span<const std::uint8_t> input,
                                     std::span<std::uint8_t> output,
                                     std::uint32_t& returned) override;
  void CloseHandle(Handle device) override;
  [[nodiscard]] std::int32_t LastError() override;
};

// Every port reads as if nothing were connected.
class AbsentPortIo : public PortIo {
 public:
  void giveio() override;
  void vbOut(std::int16_t port, std::int16_t value) override;
  [[nodiscard]] std::int16_t vbInp(std::int16_t port) override;
};

// The registry is empty, nothing can be installed.
class AbsentDriverService : public DriverService {
 public:
  [[nodiscard]] std::string ReadRegistryValue(const std::string& key,
                                              const std::string& name) override;
  void WriteRegistryValue(const std::string& key, const std::string& name, std::int32_t type,
                          const std::string& value) override;
  [[nodiscard]] std::string ProgramFolder() override;
  void WriteBatchFile(const std::string& path, const std::string& content) override;
  std::int32_t RunAndWait(const std::string& commandLine) override;
};

}  // namespace kestrel
