// The operating system's driver of the adapter boards.
// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>
#include <functional>
#include <span>
#include <string>

namespace kestrel {

// Requests of the adapter's generic driver, as control codes of the operating system.
inline constexpr std::uint32_t kGetDeviceDescriptor = 0x222004;
inline constexpr std::uint32_t kGetStringDescriptor = 0x222044;
inline constexpr std::uint32_t kGetPipeInformation = 0x222000;
inline constexpr std::uint32_t kBulkTransfer = 0x222051;

// Error codes of an open that failed which tell the user what to do. Systems with other codes of
// their own hand out these.
inline constexpr std::int32_t kUsbNotAttached = 2;     // no device of this name
inline constexpr std::int32_t kUsbNoPermission = 5;    // attached, the user may not use it
inline constexpr std::int32_t kUsbBusyElsewhere = 32;  // attached, another program uses it

// The operating system's way to the adapter boards: one system call a function.
class UsbDriver {
 public:
  using Handle = std::intptr_t;  // 1 or more when valid

  virtual ~UsbDriver() = default;

  // Opens "\\.\Ezusb-n" with these access, share and creation codes. Returns a handle; below 1 when
  // the open failed, and then LastError() tells the system's error code.
  [[nodiscard]] virtual Handle CreateFile(const std::string& path, std::uint32_t access,
                                          std::uint32_t share, std::uint32_t creation) = 0;

  // Sends one request. `output` is the request's data buffer: filled by the descriptor requests,
  // sent or filled by a bulk transfer as the pipe directs. Returns whether it succeeded; `returned`
  // is the number of bytes moved in `output`. Returns within 2 s.
  [[nodiscard]] virtual bool DeviceIoControl(Handle device, std::uint32_t code,
                                             std::span<const std::uint8_t> input,
                                             std::span<std::uint8_t> output,
                                             std::uint32_t& returned) = 0;

  virtual void CloseHandle(Handle device) = 0;

  // Whether a device of this name ("Ezusb-n") is attached, whoever uses it at the moment. Asks the
  // system's list of devices: the device itself is not touched.
  [[nodiscard]] virtual bool Attached(const std::string& /*name*/) { return true; }

  // Calls `changed`, in a thread of its own, whenever a device may have come or gone; without one
  // it stops, and none is under way when this returns. False where the system does not tell:
  // whoever wants to know asks Attached now and then.
  // NOLINTNEXTLINE(performance-unnecessary-value-param): it is kept
  [[nodiscard]] virtual bool Watch(std::function<void()> /*changed*/) { return false; }

  // Which plugging-in of its device a handle belongs to: another number than before once the device
  // has lost its power and come back. 0 where the system does not tell.
  [[nodiscard]] virtual std::uint32_t Plugging(Handle /*device*/) { return 0; }

  // System error code of the last failed call; 0 when the system gave none.
  [[nodiscard]] virtual std::int32_t LastError() = 0;
};

}  // namespace kestrel
