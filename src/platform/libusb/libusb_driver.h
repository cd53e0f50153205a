// The adapter driver over libusb.
// SPDX-License-Identifier: MIT
#pragma once

#include <chrono>
#include <functional>
#include <map>
#include <memory>

#include "platform/libusb/usb_bus.h"
#include "platform/libusb/usb_watch.h"
#include "platform/wait_budget.h"
#include "seams/usb_driver.h"

struct libusb_device_handle;

namespace kestrel {

inline constexpr std::uint32_t kBulkRead = 0x22204E;  // refuses pipes that lead to the board

// The adapter driver's requests answered through libusb. "\\.\Ezusb-n" is the board with the
// adapter's vendor number that has number n on the bus, n from 0 to 3. A handle has its board to
// itself until it is closed.
//
// LastError(): 1 unknown request, 2 not attached, 5 no permission, 6 not an open handle, 31 the
// device failed, 32 in use by another program, 50 no driver for it, 87 no such pipe, 121 time-out,
// 122 buffer too small.
class LibusbDriver : public UsbDriver {
 public:
  // Of one request, and of all that follow each other while a board does not answer.
  static constexpr std::chrono::milliseconds kTimeLimit{2000};
  // A request that takes longer than this tells `waiting`.
  static constexpr std::chrono::milliseconds kNoticeable{150};

  // `waiting` is told true when a request begins to be noticed, and false at its end.
  // `refused` is the error of a board that the system does not let the program open.
  explicit LibusbDriver(std::chrono::milliseconds timeLimit = kTimeLimit,
                        std::function<void(bool)> waiting = {}, UsbBusRules rules = {},
                        std::int32_t refused = kUsbNoPermission);
  ~LibusbDriver() override;
  LibusbDriver(const LibusbDriver&) = delete;
  LibusbDriver& operator=(const LibusbDriver&) = delete;

  // The access, share and creation codes make no difference.
  [[nodiscard]] Handle CreateFile(const std::string& path, std::uint32_t access,
                                  std::uint32_t share, std::uint32_t creation) override;
  [[nodiscard]] bool DeviceIoControl(Handle device, std::uint32_t code,
                                     std::span<const std::uint8_t> input,
                                     std::span<std::uint8_t> output,
                                     std::uint32_t& returned) override;
  void CloseHandle(Handle device) override;
  [[nodiscard]] bool Attached(const std::string& name) override;
  // Where a board of this name that is to be opened is plugged in, the same for every program:
  // "usb-1-2.3". Empty where there is none.
  [[nodiscard]] std::string PlaceOf(const std::string& name);
  [[nodiscard]] bool Watch(std::function<void()> changed) override;
  [[nodiscard]] std::uint32_t Plugging(Handle device) override;
  [[nodiscard]] std::int32_t LastError() override { return lastError_; }

 private:
  class OpenBoard;

  bool ReadString(OpenBoard& board, std::uint8_t index, std::span<std::uint8_t> output,
                  std::uint32_t& returned);
  bool Bulk(OpenBoard& board, std::uint32_t code, std::span<const std::uint8_t> input,
            std::span<std::uint8_t> output, std::uint32_t& returned);
  bool Transfer(OpenBoard& board, const UsbPipe& pipe, std::span<std::uint8_t> buffer,
                std::uint32_t& moved);
  // The library's error code.
  int Move(libusb_device_handle* device, const UsbPipe& pipe, std::span<std::uint8_t> buffer,
           int& moved);
  bool Fail(std::int32_t error);  // always false
  bool FailOf(int libusbError);   // always false

  WaitBudget budget_;
  std::function<void(bool)> waiting_;
  std::int32_t refused_;
  UsbBus bus_;  // outlives the handles
  std::map<Handle, std::unique_ptr<OpenBoard>> open_;
  Handle lastHandle_ = 0;
  std::int32_t lastError_ = 0;
  std::unique_ptr<UsbWatch> watch_;
};

}  // namespace kestrel
