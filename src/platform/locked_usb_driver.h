// An adapter driver, with boards that other programs use left alone.
// SPDX-License-Identifier: MIT
#pragma once

#include <functional>
#include <map>
#include <set>
#include <string>
#include <utility>

#include "platform/device_locks.h"
#include "seams/usb_driver.h"

namespace kestrel {

// A board is this program's from its first transfer on, until it uses another one or ends; one that
// is only looked at is let go at once. A board of another program is not even opened: the error is
// that of a board in use, and `inUse` is told by whom.
class LockedUsbDriver : public UsbDriver {
 public:
  // `place` names where a board of a name ("Ezusb-0") is plugged in, the same in all programs; ""
  // where there is none.
  using Place = std::function<std::string(const std::string& name)>;
  // A line for people, once for each board and holder.
  using InUse = std::function<void(const std::string& line)>;
  LockedUsbDriver(UsbDriver& under, DeviceLocks& locks, Place place, InUse inUse)
      : under_(under), locks_(locks), place_(std::move(place)), inUse_(std::move(inUse)) {}

  [[nodiscard]] Handle CreateFile(const std::string& path, std::uint32_t access,
                                  std::uint32_t share, std::uint32_t creation) override;
  [[nodiscard]] bool DeviceIoControl(Handle device, std::uint32_t code,
                                     std::span<const std::uint8_t> input,
                                     std::span<std::uint8_t> output,
                                     std::uint32_t& returned) override;
  void CloseHandle(Handle device) override;
  // Another program may have the board that is this program's; one that is open stays so.
  void LetGo();
  [[nodiscard]] bool Attached(const std::string& name) override { return under_.Attached(name); }
  [[nodiscard]] bool Watch(std::function<void()> changed) override {
    return under_.Watch(std::move(changed));
  }
  [[nodiscard]] std::uint32_t Plugging(Handle device) override { return under_.Plugging(device); }
  [[nodiscard]] std::int32_t LastError() override {
    return isRefused_ ? kUsbBusyElsewhere : under_.LastError();
  }

 private:
  UsbDriver& under_;
  DeviceLocks& locks_;
  Place place_;
  InUse inUse_;
  std::set<std::string> told_;
  std::map<Handle, std::string> open_;  // places of open boards
  std::string used_;                    // place of the board that is this program's
  bool isRefused_ = false;
};

}  // namespace kestrel
