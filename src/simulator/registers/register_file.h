// The sensor's register storage: 64 words.
// SPDX-License-Identifier: MIT
#pragma once

#include <array>
#include <cstdint>

namespace kestrel {

// The sensor's register storage: 64 words at even byte addresses 0x00..0x7E. Addresses without a
// register read 0 and ignore writes.
class RegisterFile {
 public:
  using Words = std::array<std::uint16_t, 64>;

  // Every register at its factory value.
  RegisterFile();

  // The factory values, in the form that flash keeps.
  [[nodiscard]] static const Words& FactoryValues();

  // The word that holds this byte address.
  [[nodiscard]] std::uint16_t Read(std::uint8_t address) const { return words_[Index(address)]; }

  // A write from outside: one byte, only the bits that may be written.
  void WriteByte(std::uint8_t address, std::uint8_t data);

  // The sensor's own access; access rights do not matter.
  void Set(std::uint8_t address, std::uint16_t word) { words_[Index(address)] = word; }
  void SetBits(std::uint8_t address, std::uint16_t mask);
  void ClearBits(std::uint8_t address, std::uint16_t mask);
  void Add(std::uint8_t address, std::uint64_t count);  // wraps at 16 bits

  // What flash keeps: all words; Restart takes only the settings from it.
  [[nodiscard]] const Words& Image() const { return words_; }

  // Settings from flash, everything else but the permanent registers at its reset value.
  void Restart(const Words& flash);

 private:
  [[nodiscard]] static std::size_t Index(std::uint8_t address) { return (address >> 1U) & 63U; }

  Words words_;
};

}  // namespace kestrel
