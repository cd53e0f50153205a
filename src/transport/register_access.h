// Kestrel evaluation program
// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>

#include "app/delay.h"
#include "transport/parallel_port.h"
#include "transport/usb_adapter.h"

namespace kestrel {

// Results of the last ReadReg (all 0).
extern std::int32_t RegValue;     // decoded value; 0 if the row is not readable
extern float RegScaled;           // value x scale + offset of the row; 0 if not readable
extern std::int16_t RegLowByte;   // bits 7..0 of the raw word
extern std::int16_t RegHighByte;  // bits 15..8 of the raw word
extern std::int32_t RegBit15;     // raw bit 15, for rows that keep it
extern std::int32_t RegBit14;     // raw bit 14, for rows that keep it

// Back to 0, LptWord included.
void ResetRegisterAccessState();

// The only way to the sensor: 16-bit registers, read and written in SPI frames through the
// interface that InterfaceType names; with any other InterfaceType reads give 0 and writes do
// nothing. Operations are complete when they return, and must not be nested.
//
// Transfer errors are shown by the adapter, which then counts as lost; a read then gives the
// answer of an earlier transfer. Callers that show or keep what they read ask Usable() first.
class RegisterAccess {
 public:
  RegisterAccess(UsbAdapter& usb, ParallelPort& port, SoftwareDelay& delay)
      : usb_(usb), port_(port), delay_(delay) {}

  // Whether an interface is selected and, for an adapter, still answers.
  [[nodiscard]] static bool Usable();

  // Reads a register by its row and leaves it in the Reg... variables. Sends nothing for a row that
  // is not readable. A row outside the table throws RuntimeError "Subscript out of range".
  void ReadReg(std::int16_t row);

  // Writes a register by its row; value 0..65535.
  void WriteReg(std::int16_t row, std::int32_t value);

  // One write frame. The address is masked with 127 in place.
  void WriteRegByte(std::int16_t& address, std::uint8_t data);
  void WriteRegByte(std::int16_t&& address, std::uint8_t data) { WriteRegByte(address, data); }

  // Two write frames in one transaction. Addresses are masked with 127 and data with 255 in place.
  void WriteRegBytePair(std::int16_t& address1, std::int16_t& data1, std::int16_t& address2,
                        std::int16_t& data2);

  // The raw 16-bit word at a byte address, which is masked with 127 in place.
  std::int32_t ReadRegWord(std::int16_t& address);

 private:
  UsbAdapter& usb_;
  ParallelPort& port_;
  SoftwareDelay& delay_;
};

}  // namespace kestrel
