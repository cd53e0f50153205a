// An adapter driver that hands on to another and fails where it is told to.
// SPDX-License-Identifier: MIT
#pragma once

#include <algorithm>
#include <cstdint>
#include <functional>
#include <random>
#include <span>
#include <utility>

#include "seams/usb_driver.h"

namespace kestrel {

// What can go wrong between the program and its board.
enum class UsbFault {
  Absent,     // one open or request fails, the next is served again
  Short,      // a transfer moves a byte less than it was asked for
  Late,       // the board takes a command, but the time is up before its answer comes
  Slow,       // the answer comes at the last moment; nothing has gone wrong
  Garbage,    // one answer consists of random bytes
  Babble,     // all answers do, from then on
  Unplugged,  // the board is gone for good
};

// What a request was about.
enum class UsbRequest { None, Open, Describe, Send, Receive };

// Hands requests on to another driver. Makes them fail from the n-th on, as if the board had been
// unplugged, until told otherwise; or lets one fault happen at the n-th.
class FailingUsbDriver : public UsbDriver {
 public:
  explicit FailingUsbDriver(UsbDriver& inner) : inner_(inner) {}

  // The next request is number 1.
  void FailFrom(int number) {
    Mend();
    failFrom_ = number;
    requests_ = 0;
  }

  // A fault at one request, the next being number 1. `incident` is what happens to the world then:
  // the plug is pulled, time passes. Requests that cannot have this fault are served.
  void FaultAt(int number, UsbFault fault, std::function<void()> incident = {}) {
    Mend();
    faultAt_ = number;
    fault_ = fault;
    incident_ = std::move(incident);
    requests_ = 0;
    met_ = UsbRequest::None;
    random_.seed(static_cast<unsigned>(number));
  }

  void Mend() {
    failFrom_ = 0;
    faultAt_ = 0;
  }

  // The request that had the fault.
  [[nodiscard]] UsbRequest Met() const { return met_; }

  // Sees every command block that goes out.
  void OnBlock(std::function<void(std::span<const std::uint8_t>)> watch) {
    onBlock_ = std::move(watch);
  }
  // What the board makes of every answer of its before it sends it.
  void OnAnswer(std::function<void(std::span<std::uint8_t>)> spoil) {
    onAnswer_ = std::move(spoil);
  }
  [[nodiscard]] int Requests() const { return requests_; }

  [[nodiscard]] Handle CreateFile(const std::string& path, std::uint32_t access,
                                  std::uint32_t share, std::uint32_t creation) override {
    if (Fails()) return -1;
    if (IsDue() && (fault_ == UsbFault::Absent || fault_ == UsbFault::Unplugged)) {
      Meet(UsbRequest::Open);
      if (fault_ == UsbFault::Absent) return -1;
    }
    return inner_.CreateFile(path, access, share, creation);
  }
  [[nodiscard]] bool DeviceIoControl(Handle device, std::uint32_t code,
                                     std::span<const std::uint8_t> input,
                                     std::span<std::uint8_t> output,
                                     std::uint32_t& returned) override {
    if (Fails()) return false;
    const UsbRequest kind = KindOf(code, input);
    if (onBlock_ && kind == UsbRequest::Send) onBlock_(output);
    if (!HasFault(kind)) {
      const bool good = inner_.DeviceIoControl(device, code, input, output, returned);
      if (good && onAnswer_ && kind == UsbRequest::Receive) onAnswer_(output);
      return good;
    }
    Meet(kind);
    const bool served =
        fault_ != UsbFault::Absent && inner_.DeviceIoControl(device, code, input, output, returned);
    return served && Spoil(output, returned);
  }
  void CloseHandle(Handle device) override { inner_.CloseHandle(device); }
  // As a system that does not tell of boards that come and go.
  void TellNothing() {
    tells_ = false;
    static_cast<void>(inner_.Watch({}));
  }
  // How often somebody asked whether a board is attached.
  [[nodiscard]] int Looks() const { return looks_; }
  [[nodiscard]] bool Watch(std::function<void()> changed) override {
    return tells_ && inner_.Watch(std::move(changed));
  }
  [[nodiscard]] bool Attached(const std::string& name) override {
    ++looks_;
    const bool failing = failFrom_ > 0 && requests_ + 1 >= failFrom_;
    return !failing && inner_.Attached(name);
  }
  [[nodiscard]] std::uint32_t Plugging(Handle device) override { return inner_.Plugging(device); }
  [[nodiscard]] std::int32_t LastError() override { return 2; }

 private:
  bool Fails() { return ++requests_ >= failFrom_ && failFrom_ > 0; }
  [[nodiscard]] bool IsDue() const { return requests_ == faultAt_; }

  static UsbRequest KindOf(std::uint32_t code, std::span<const std::uint8_t> input) {
    if (code != kBulkTransfer || input.empty()) return UsbRequest::Describe;
    return input[0] == 0 ? UsbRequest::Send : UsbRequest::Receive;
  }

  [[nodiscard]] bool HasFault(UsbRequest kind) const {
    const bool isAnswer = kind == UsbRequest::Receive || kind == UsbRequest::Describe;
    switch (fault_) {
      case UsbFault::Short:
        return IsDue() && kind != UsbRequest::Describe;
      case UsbFault::Garbage:
        return IsDue() && isAnswer;
      case UsbFault::Babble:
        return faultAt_ > 0 && requests_ >= faultAt_ && isAnswer;
      default:
        return IsDue();
    }
  }

  void Meet(UsbRequest kind) {
    if (met_ == UsbRequest::None) met_ = kind;
    if (incident_) incident_();
  }

  // Whether a request that was served counts as a success.
  bool Spoil(std::span<std::uint8_t> output, std::uint32_t& returned) {
    switch (fault_) {
      case UsbFault::Short:
        --returned;
        return true;
      case UsbFault::Late:
        returned = 0;
        return false;
      case UsbFault::Garbage:
      case UsbFault::Babble:
        std::generate(output.begin(), output.end(),
                      [this] { return static_cast<std::uint8_t>(random_()); });
        return true;
      default:
        return true;
    }
  }

  UsbDriver& inner_;
  bool tells_ = true;
  int looks_ = 0;
  std::function<void(std::span<const std::uint8_t>)> onBlock_;
  std::function<void(std::span<std::uint8_t>)> onAnswer_;
  std::function<void()> incident_;
  UsbFault fault_ = UsbFault::Absent;
  UsbRequest met_ = UsbRequest::None;
  std::mt19937 random_;
  int failFrom_ = 0;
  int faultAt_ = 0;
  int requests_ = 0;
};

}  // namespace kestrel
