// The choice of a parallel port by its address.
// SPDX-License-Identifier: MIT
#pragma once

#include <string>

#include "seams/driver_service.h"
#include "seams/files.h"
#include "seams/messages.h"
#include "seams/port_io.h"
#include "transport/parallel_port.h"
#include "transport/register_access.h"

namespace kestrel {

// Makes a parallel port the interface.
class PortChoice {
 public:
  PortChoice(DriverService& service, PortIo& io, ParallelPort& port, RegisterAccess& registers,
             Files& files, Messages& messages)
      : service_(service),
        io_(io),
        port_(port),
        registers_(registers),
        files_(files),
        messages_(messages) {}

  // PortAddress as the user sees it, in hexadecimal digits.
  [[nodiscard]] static std::string AddressText();

  // Takes an address in hexadecimal digits over, selects the parallel port, prepares it where the
  // program does not hold it yet, and remembers the choice in CommPort.cfg. Any text that is no
  // 16-bit address is explained and changes nothing. Returns whether the port is selected.
  bool cmdOK_Click(const std::string& text);

 private:
  DriverService& service_;
  PortIo& io_;
  ParallelPort& port_;
  RegisterAccess& registers_;
  Files& files_;
  Messages& messages_;
};

}  // namespace kestrel
