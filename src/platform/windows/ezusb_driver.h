// The adapter driver of Windows: device calls of the system.
// SPDX-License-Identifier: MIT
#pragma once

#include <chrono>
#include <functional>
#include <utility>

#include "platform/wait_budget.h"
#include "seams/usb_driver.h"

namespace kestrel {

// The adapters' generic driver as the system has it. A request that has not ended after two
// seconds, shared by all that follow each other while a board does not answer, is cancelled and
// fails.
class EzusbDriver : public UsbDriver {
 public:
  // `waiting` is told true when a request begins to be noticed, and false at its end.
  explicit EzusbDriver(std::function<void(bool)> waiting = {}) : waiting_(std::move(waiting)) {}

  [[nodiscard]] Handle CreateFile(const std::string& path, std::uint32_t access,
                                  std::uint32_t share, std::uint32_t creation) override;
  [[nodiscard]] bool DeviceIoControl(Handle device, std::uint32_t code,
                                     std::span<const std::uint8_t> input,
                                     std::span<std::uint8_t> output,
                                     std::uint32_t& returned) override;
  void CloseHandle(Handle device) override;
  [[nodiscard]] bool Attached(const std::string& name) override;

  // The system does not tell of pluggings; a pause in which a cable could have been pulled and put
  // back counts as one.
  [[nodiscard]] std::uint32_t Plugging(Handle /*device*/) override { return plugging_; }
  [[nodiscard]] std::int32_t LastError() override { return lastError_; }

 private:
  // Returns whether the request ended in time.
  bool Wait(void* ended);

  std::function<void(bool)> waiting_;
  WaitBudget budget_{std::chrono::milliseconds{2000}};
  std::uint32_t plugging_ = 1;
  std::uint64_t lastUseMs_ = 0;  // since the system's start
  std::int32_t lastError_ = 0;
};

}  // namespace kestrel
