// A parallel port that other programs of this machine leave alone, and that is left to them.
// SPDX-License-Identifier: MIT
#pragma once

#include <optional>
#include <string>

#include "platform/device_locks.h"
#include "seams/port_io.h"

namespace kestrel {

// A port is this program's from its first access on, until another one is used or it is let go. One
// of another program is not touched: it reads as open, and Explanation tells whose it is.
class LockedPort : public PortIo {
 public:
  LockedPort(PortIo& under, DeviceLocks& locks) : under_(under), locks_(locks) {}

  void giveio() override { under_.giveio(); }
  [[nodiscard]] bool IsHeld(std::int16_t base) override {
    return Take(base) && under_.IsHeld(base);
  }
  void vbOut(std::int16_t port, std::int16_t value) override {
    if (Take(port)) under_.vbOut(port, value);
  }
  [[nodiscard]] std::int16_t vbInp(std::int16_t port) override;

  // Another program may have the port.
  void LetGo();

  // Whose the port is that could not be had; empty when it could.
  [[nodiscard]] const std::string& Explanation() const { return explanation_; }

 private:
  // The port that this register belongs to.
  [[nodiscard]] bool Take(std::int16_t port);

  PortIo& under_;
  DeviceLocks& locks_;
  std::optional<int> base_;  // of the port that is this program's
  std::string explanation_;
};

}  // namespace kestrel
