// Ports locked by their base addresses.
// SPDX-License-Identifier: MIT
#include "platform/locked_port.h"

#include <array>
#include <cstdio>

namespace kestrel {
namespace {

constexpr std::int16_t kOpenInputs = 0xFF;  // unconnected inputs read high
constexpr int kRegisters = 4;               // that ports are at least apart

std::string HexOf(int base) {
  std::array<char, 8> text{};
  std::snprintf(text.data(), text.size(), "%X", static_cast<unsigned>(base));
  return text.data();
}

std::string LockOf(int base) {
  return "port-" + HexOf(base);
}

}  // namespace

std::int16_t LockedPort::vbInp(std::int16_t port) {
  return Take(port) ? under_.vbInp(port) : kOpenInputs;
}

bool LockedPort::Take(std::int16_t port) {
  const int base = static_cast<std::uint16_t>(port) / kRegisters * kRegisters;
  if (base_ == base) return true;
  LetGo();
  if (!locks_.Take(LockOf(base))) {
    explanation_ = "The port " + HexOf(base) + " is in use by " + locks_.Holder(LockOf(base)) +
                   ". Close that program.";
    return false;
  }
  base_ = base;
  return true;
}

void LockedPort::LetGo() {
  if (base_) locks_.Release(LockOf(*base_));
  base_.reset();
  explanation_.clear();
}

}  // namespace kestrel
