// The sensor's registers, read and written by row or by byte address.
// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>
#include <optional>
#include <span>

#include "app/delay.h"
#include "regmap/reading.h"
#include "seams/error.h"
#include "transport/parallel_port.h"
#include "transport/spi_link.h"
#include "transport/usb_adapter.h"

namespace kestrel {

// Results of the last read by row, for reading (all 0).
extern const std::int32_t& RegValue;  // decoded value, no unit; 0 if the row is not readable
extern const float& RegScaled;  // value x scale + offset, in the row's unit; 0 if not readable
extern const std::int16_t& RegLowByte;   // bits 7..0 of the raw word
extern const std::int16_t& RegHighByte;  // bits 15..8 of the raw word
extern const std::int32_t& RegBit15;     // raw bit 15, for rows that keep it
extern const std::int32_t& RegBit14;     // raw bit 14, for rows that keep it

// Back to 0, LptWord included.
void ResetRegisterAccessState();

// The SPI frames of one access: the read command of a byte address, and a byte written to one.
[[nodiscard]] std::int32_t ReadFrameOf(std::int16_t address);
[[nodiscard]] std::int32_t WriteFrameOf(std::int16_t address, std::int32_t data);

// The only way to the sensor: 16-bit registers, read and written in SPI frames over the link of the
// interface that is in use; without one reads give 0 and writes do nothing. Operations are complete
// when they return, and must not be nested.
//
// Whoever shows or keeps what was read takes the reading that is returned, which is there only when
// the sensor gave it. LastOutcome() tells why there is none. The adapter shows its errors itself,
// and then counts as lost.
class RegisterAccess {
 public:
  RegisterAccess(UsbAdapter& usb, ParallelPort& port, SoftwareDelay& delay)
      : overAdapter_(usb), overPort_(port), delay_(delay) {}
  RegisterAccess(const RegisterAccess&) = delete;
  RegisterAccess& operator=(const RegisterAccess&) = delete;
  ~RegisterAccess() = default;

  // Takes this interface, kNoInterface included, for all that follows: InterfaceType names it.
  void Use(std::int16_t interfaceType);

  // Whether the sensor can be reached through the interface that is selected, as far as that is
  // known without asking it: an adapter that answered last, a port that is held.
  [[nodiscard]] bool Reachable() { return static_cast<bool>(link_->Ready()); }

  // How often an interface was taken so far: after each time the sensor may be another one.
  [[nodiscard]] int Connections() const { return connections_; }

  // How the last operation went.
  [[nodiscard]] const Outcome& LastOutcome() const { return last_; }

  // Reads a register by its row; nothing when the row is not readable (nothing is sent then) or the
  // sensor was not reached. Leaves the reading in the Reg... variables as well; these get the
  // answer of an earlier transfer where this one fails. A row outside the table throws RuntimeError
  // "Subscript out of range".
  std::optional<Reading> Read(std::int16_t row);
  void ReadReg(std::int16_t row) { Read(row); }

  // Writes a register by its row; value 0..65535. Returns whether the sensor was reached.
  bool Write(std::int16_t row, std::int32_t value);
  void WriteReg(std::int16_t row, std::int32_t value) { Write(row, value); }

  // One write frame. The address is masked with 127 in place.
  bool WriteRegByte(std::int16_t& address, std::uint8_t data);
  bool WriteRegByte(std::int16_t&& address, std::uint8_t data) {
    return WriteRegByte(address, data);
  }

  // Two write frames in one transaction. Addresses are masked with 127 and data with 255 in place.
  bool WriteRegBytePair(std::int16_t& address1, std::int16_t& data1, std::int16_t& address2,
                        std::int16_t& data2);

  // The raw 16-bit word at a byte address, which is masked with 127 in place.
  std::int32_t ReadRegWord(std::int16_t& address);

  // Sends 1 to 16 frames as one block; `answers`, of the same size, gets the word that came in
  // during each. Returns whether the sensor was reached.
  bool Exchange(std::span<const std::int32_t> frames, std::span<std::int32_t> answers);

  // The word of a row's register that came with Exchange, decoded and left in the Reg... variables
  // as Read does.
  Reading Keep(std::int16_t row, std::int32_t word);

  // While one stands, the interface keeps open what it would open for each operation: a board is
  // opened at the first and closed at the end, or when it fails.
  class HeldOpen {
   public:
    explicit HeldOpen(RegisterAccess& registers) : link_(*registers.link_) { link_.Hold(); }
    ~HeldOpen() { link_.Release(); }
    HeldOpen(const HeldOpen&) = delete;
    HeldOpen& operator=(const HeldOpen&) = delete;

   private:
    SpiLink& link_;
  };

 private:
  bool Send(std::span<const std::int32_t> frames);

  NoLink none_;
  AdapterLink overAdapter_;
  PortLink overPort_;
  SpiLink* link_ = &none_;
  SoftwareDelay& delay_;
  Outcome last_;
  int connections_ = 0;
};

}  // namespace kestrel
