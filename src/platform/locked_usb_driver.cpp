// Boards locked before they are opened.
// SPDX-License-Identifier: MIT
#include "platform/locked_usb_driver.h"

#include <algorithm>

namespace kestrel {
namespace {

constexpr std::string_view kPrefix = "\\\\.\\";

}  // namespace

UsbDriver::Handle LockedUsbDriver::CreateFile(const std::string& path, std::uint32_t access,
                                              std::uint32_t share, std::uint32_t creation) {
  const std::string name = path.starts_with(kPrefix) ? path.substr(kPrefix.size()) : path;
  const std::string place = place_(name);
  isRefused_ = !place.empty() && !locks_.Take(place);
  if (isRefused_) {
    const std::string line = name + " is in use by " + locks_.Holder(place) + ".";
    if (told_.insert(line).second && inUse_) inUse_(line);
    return -1;
  }
  const Handle handle = under_.CreateFile(path, access, share, creation);
  if (handle >= 1) {
    open_[handle] = place;
  } else if (place != used_) {
    locks_.Release(place);
  }
  return handle;
}

bool LockedUsbDriver::DeviceIoControl(Handle device, std::uint32_t code,
                                      std::span<const std::uint8_t> input,
                                      std::span<std::uint8_t> output, std::uint32_t& returned) {
  isRefused_ = false;
  const auto found = open_.find(device);
  if (code == kBulkTransfer && found != open_.end() && found->second != used_) {
    const std::string before = std::exchange(used_, found->second);
    const bool isOpen =
        std::ranges::any_of(open_, [&](const auto& each) { return each.second == before; });
    if (!isOpen) locks_.Release(before);
  }
  return under_.DeviceIoControl(device, code, input, output, returned);
}

void LockedUsbDriver::LetGo() {
  const std::string before = std::exchange(used_, {});
  const bool isOpen =
      std::ranges::any_of(open_, [&](const auto& each) { return each.second == before; });
  if (!isOpen) locks_.Release(before);
}

void LockedUsbDriver::CloseHandle(Handle device) {
  isRefused_ = false;
  under_.CloseHandle(device);
  const auto found = open_.find(device);
  if (found == open_.end()) return;
  const std::string place = found->second;
  open_.erase(found);
  const bool isOpen =
      std::ranges::any_of(open_, [&](const auto& each) { return each.second == place; });
  if (!isOpen && place != used_) locks_.Release(place);
}

}  // namespace kestrel
