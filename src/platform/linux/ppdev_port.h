// The parallel port through the ppdev driver.
// SPDX-License-Identifier: MIT
#pragma once

#include <chrono>
#include <functional>
#include <string>
#include <utility>

#include "platform/device_locks.h"
#include "platform/linux/file_descriptor.h"
#include "platform/linux/parallel_ports.h"
#include "seams/port_io.h"

namespace kestrel {

// The parallel port through the system's ppdev driver: the port that has the base address asked
// for, claimed until this object is destroyed, one system call an access.
class PpdevPort : public PortIo {
 public:
  struct Options {
    // A device such as "/dev/parport1" to take whatever its address, for ports that have none.
    std::filesystem::path device = {};
    ParallelPortFolders folders = {};
    // How long another program's hold on the port is waited for.
    std::chrono::milliseconds patience{500};
    // Shared with other programs; null: the driver alone tells that a port is in use.
    DeviceLocks* locks = nullptr;
  };

  // `baseAddress` tells which port is wanted at the moment.
  explicit PpdevPort(std::function<std::int16_t()> baseAddress);
  PpdevPort(std::function<std::int16_t()> baseAddress, Options options);
  ~PpdevPort() override;
  PpdevPort(const PpdevPort&) = delete;
  PpdevPort& operator=(const PpdevPort&) = delete;

  // As Options::device; a port that is held already is kept.
  void UseDevice(std::filesystem::path device) { options_.device = std::move(device); }

  // Takes hold of the port that is wanted, giving up one held at another address.
  void giveio() override { static_cast<void>(Claim()); }

  // Whether the port of this address is claimed. A port that no longer answers is given up.
  [[nodiscard]] bool IsHeld(std::int16_t base) override {
    return port_.IsOpen() && static_cast<std::uint16_t>(base) == base_;
  }

  // Another program may have the port, until the next Claim.
  void LetGo() { Release(); }

  // As giveio; returns whether the port is held.
  bool Claim();

  // Why the last Claim did not get the port, and what can be done about it; empty when it did.
  [[nodiscard]] std::string Explanation() const { return explanation_; }

  // The data register at the base address; written nowhere else.
  void vbOut(std::int16_t port, std::int16_t value) override;

  // The status register at the base address + 1, its lines with the sign they have there (bit 6,
  // ACK, is high when the line is). Anything else reads 0xFF, as where no port answers.
  [[nodiscard]] std::int16_t vbInp(std::int16_t port) override;

 private:
  [[nodiscard]] std::filesystem::path FindDevice(std::uint16_t base);
  void Release();

  std::function<std::int16_t()> baseAddress_;
  Options options_;
  FileDescriptor port_;  // open only while claimed
  std::uint16_t base_ = 0;
  std::string locked_;  // name of its lock
  std::string explanation_;
};

}  // namespace kestrel
