// The switch between the system's devices and simulated ones.
// SPDX-License-Identifier: MIT
#pragma once

#include <functional>
#include <utility>

#include "seams/driver_service.h"
#include "seams/port_io.h"
#include "seams/usb_driver.h"

namespace kestrel {

// One way to reach a sensor: the system's devices, or simulated ones.
struct Hardware {
  UsbDriver* usb;
  PortIo* port;
  DriverService* driverService;
};

// The seams to the hardware, handed on to whichever hardware is connected at the time.
class HardwareSwitch : public UsbDriver, public PortIo, public DriverService {
 public:
  explicit HardwareSwitch(const Hardware& first) : current_(first) {}

  // Who watches the boards is told of those of the new hardware from now on, and that they changed.
  void Connect(const Hardware& hardware) {
    if (changed_) static_cast<void>(current_.usb->Watch({}));
    current_ = hardware;
    if (changed_) static_cast<void>(current_.usb->Watch(changed_));
    if (changed_) changed_();
  }

  [[nodiscard]] Handle CreateFile(const std::string& path, std::uint32_t access,
                                  std::uint32_t share, std::uint32_t creation) override {
    return current_.usb->CreateFile(path, access, share, creation);
  }
  [[nodiscard]] bool DeviceIoControl(Handle device, std::uint32_t code,
                                     std::span<const std::uint8_t> input,
                                     std::span<std::uint8_t> output,
                                     std::uint32_t& returned) override {
    return current_.usb->DeviceIoControl(device, code, input, output, returned);
  }
  void CloseHandle(Handle device) override { current_.usb->CloseHandle(device); }
  [[nodiscard]] std::int32_t LastError() override { return current_.usb->LastError(); }

  [[nodiscard]] bool Attached(const std::string& name) override {
    return current_.usb->Attached(name);
  }
  [[nodiscard]] std::uint32_t Plugging(Handle device) override {
    return current_.usb->Plugging(device);
  }
  [[nodiscard]] bool Watch(std::function<void()> changed) override {
    changed_ = changed;
    return current_.usb->Watch(std::move(changed));
  }

  void giveio() override { current_.port->giveio(); }
  [[nodiscard]] bool IsHeld(std::int16_t base) override { return current_.port->IsHeld(base); }
  void vbOut(std::int16_t port, std::int16_t value) override { current_.port->vbOut(port, value); }
  [[nodiscard]] std::int16_t vbInp(std::int16_t port) override {
    return current_.port->vbInp(port);
  }

  [[nodiscard]] std::string ReadRegistryValue(const std::string& key,
                                              const std::string& name) override {
    return current_.driverService->ReadRegistryValue(key, name);
  }
  void WriteRegistryValue(const std::string& key, const std::string& name, std::int32_t type,
                          const std::string& value) override {
    current_.driverService->WriteRegistryValue(key, name, type, value);
  }
  [[nodiscard]] std::string ProgramFolder() override {
    return current_.driverService->ProgramFolder();
  }
  void WriteBatchFile(const std::string& path, const std::string& content) override {
    current_.driverService->WriteBatchFile(path, content);
  }
  std::int32_t RunAndWait(const std::string& commandLine) override {
    return current_.driverService->RunAndWait(commandLine);
  }
  [[nodiscard]] std::string Explanation() override { return current_.driverService->Explanation(); }

 private:
  Hardware current_;
  std::function<void()> changed_;
};

}  // namespace kestrel
