// Access masks and reset values applied to the sensor's words.
// SPDX-License-Identifier: MIT
#include "simulator/registers/register_file.h"

#include "simulator/registers/sensor_registers.h"

namespace kestrel {
namespace {

constexpr RegisterFile::Words Column(std::uint16_t sensor::RegisterSpec::*column) {
  RegisterFile::Words words{};
  for (const auto& entry : sensor::kRegisters) words[entry.address / 2U] = entry.*column;
  return words;
}

constexpr RegisterFile::Words kReset = Column(&sensor::RegisterSpec::reset);
constexpr RegisterFile::Words kWritable = Column(&sensor::RegisterSpec::writable);

}  // namespace

RegisterFile::RegisterFile() : words_(kReset) {}

const RegisterFile::Words& RegisterFile::FactoryValues() {
  return kReset;
}

void RegisterFile::WriteByte(std::uint8_t address, std::uint8_t data) {
  const unsigned shift = (address & 1U) * 8U;
  const unsigned mask = kWritable[Index(address)] & (0xFFU << shift);
  std::uint16_t& word = words_[Index(address)];
  word = static_cast<std::uint16_t>((word & ~mask) | ((unsigned{data} << shift) & mask));
}

void RegisterFile::SetBits(std::uint8_t address, std::uint16_t mask) {
  Set(address, static_cast<std::uint16_t>(Read(address) | mask));
}

void RegisterFile::ClearBits(std::uint8_t address, std::uint16_t mask) {
  Set(address, static_cast<std::uint16_t>(Read(address) & ~mask));
}

void RegisterFile::Add(std::uint8_t address, std::uint64_t count) {
  Set(address, static_cast<std::uint16_t>((Read(address) + count) & 0xFFFFU));
}

void RegisterFile::Restart(const Words& flash) {
  for (const auto& entry : sensor::kRegisters) {
    const std::size_t index = Index(entry.address);
    if (entry.keeps == sensor::Keeps::Settings) words_[index] = flash[index];
    if (entry.keeps == sensor::Keeps::Nothing) words_[index] = entry.reset;
  }
}

}  // namespace kestrel
