// Boards that are plugged in or out, told by the system.
// SPDX-License-Identifier: MIT
#pragma once

#include <atomic>
#include <functional>
#include <memory>
#include <thread>

struct libusb_context;

namespace kestrel {

// Sleeps in a thread of its own until the system tells that a board of the adapter's vendor was
// plugged in or out. Opens no board. It has a context of the library to itself: waiting in the one
// that transfers go through would keep those from being told of their own ends.
class UsbWatch {
 public:
  // `changed` is called in that thread. The list of devices may follow a moment later.
  explicit UsbWatch(std::function<void()> changed);
  ~UsbWatch();
  UsbWatch(const UsbWatch&) = delete;
  UsbWatch& operator=(const UsbWatch&) = delete;

  // False where the system does not tell.
  [[nodiscard]] bool Runs() const { return thread_.joinable(); }

 private:
  struct Exit {
    void operator()(libusb_context* context) const;
  };
  [[nodiscard]] bool Register();
  void Wait();

  std::function<void()> changed_;
  std::unique_ptr<libusb_context, Exit> context_;
  std::atomic<bool> isEnding_ = false;
  std::thread thread_;
};

}  // namespace kestrel
