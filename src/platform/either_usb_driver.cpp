// Which of two drivers a name leads to, decided at each opening.
// SPDX-License-Identifier: MIT
#include "platform/either_usb_driver.h"

namespace kestrel {
namespace {

constexpr std::string_view kPrefix = "\\\\.\\";
constexpr std::int32_t kInvalidHandle = 6;

}  // namespace

UsbDriver::Handle EitherUsbDriver::CreateFile(const std::string& path, std::uint32_t access,
                                              std::uint32_t share, std::uint32_t creation) {
  const std::string name = path.starts_with(kPrefix) ? path.substr(kPrefix.size()) : path;
  UsbDriver& driver = first_.Attached(name) ? first_ : second_;
  const Handle handle = driver.CreateFile(path, access, share, creation);
  lastError_ = driver.LastError();
  if (handle < 1) return handle;
  open_.emplace(++lastHandle_, Open{driver, handle});
  return lastHandle_;
}

bool EitherUsbDriver::DeviceIoControl(Handle device, std::uint32_t code,
                                      std::span<const std::uint8_t> input,
                                      std::span<std::uint8_t> output, std::uint32_t& returned) {
  const auto found = open_.find(device);
  if (found == open_.end()) {
    returned = 0;
    lastError_ = kInvalidHandle;
    return false;
  }
  const auto& [driver, handle] = found->second;
  const bool good = driver.DeviceIoControl(handle, code, input, output, returned);
  lastError_ = driver.LastError();
  return good;
}

void EitherUsbDriver::CloseHandle(Handle device) {
  const auto found = open_.find(device);
  if (found == open_.end()) {
    lastError_ = kInvalidHandle;
    return;
  }
  found->second.driver.CloseHandle(found->second.handle);
  open_.erase(found);
}

bool EitherUsbDriver::Attached(const std::string& name) {
  return first_.Attached(name) || second_.Attached(name);
}

bool EitherUsbDriver::Watch(std::function<void()> changed) {
  const bool firstTells = first_.Watch(changed);
  const bool secondTells = second_.Watch(std::move(changed));
  return firstTells && secondTells;
}

std::uint32_t EitherUsbDriver::Plugging(Handle device) {
  const auto found = open_.find(device);
  if (found == open_.end()) return 0;
  const auto& [driver, handle] = found->second;
  const std::uint32_t plugging = driver.Plugging(handle);
  return plugging == 0 ? 0 : 2 * plugging + (&driver == &second_ ? 1 : 0);
}

}  // namespace kestrel
