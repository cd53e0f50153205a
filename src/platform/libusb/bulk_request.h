// One bulk transfer through libusb that can be watched while it is under way.
// SPDX-License-Identifier: MIT
#pragma once

#include <chrono>
#include <cstdint>
#include <memory>
#include <span>

struct libusb_context;
struct libusb_device_handle;
struct libusb_transfer;

namespace kestrel {

// Moves all of a buffer within a time limit. Once submitted, keep it until it has ended.
class BulkRequest {
 public:
  BulkRequest(libusb_context* context, libusb_device_handle* device, std::uint8_t endpoint,
              std::span<std::uint8_t> buffer, std::chrono::milliseconds limit);

  // Returns the library's error code.
  [[nodiscard]] int Submit();

  // Returns when it has ended, or after `time`.
  void WaitFor(std::chrono::milliseconds time);

  [[nodiscard]] bool Ended() const { return ended_ != 0; }

  // Once it has ended: the library's error code, and the bytes that were moved all the same.
  [[nodiscard]] int Error() const;
  [[nodiscard]] int Moved() const;

 private:
  struct Free {
    void operator()(libusb_transfer* transfer) const;
  };

  libusb_context* context_;
  std::unique_ptr<libusb_transfer, Free> transfer_;
  int ended_ = 0;  // the library sets and polls it
};

}  // namespace kestrel
