// Byte access to the registers of the parallel port.
// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>

namespace kestrel {

// Byte access to the parallel port's registers. Port is an I/O address; of a value only the low
// byte matters.
class PortIo {
 public:
  virtual ~PortIo() = default;

  // Grants the program access to the ports.
  virtual void giveio() = 0;

  // Whether accesses at this base address reach a port. Where the system does not guard its ports
  // they always do.
  [[nodiscard]] virtual bool IsHeld(std::int16_t /*base*/) { return true; }

  virtual void vbOut(std::int16_t port, std::int16_t value) = 0;
  [[nodiscard]] virtual std::int16_t vbInp(std::int16_t port) = 0;
};

}  // namespace kestrel
