// Kestrel evaluation program
// SPDX-License-Identifier: MIT
#pragma once

#include "seams/port_io.h"

namespace kestrel {

// The parallel port through win95io.dll and giveio.dll, which are looked for when first needed: in
// the program's folder, then where the system looks. Without them every input reads as open and
// nothing is put out.
class PortLibraries : public PortIo {
 public:
  PortLibraries() = default;
  ~PortLibraries() override;
  PortLibraries(const PortLibraries&) = delete;
  PortLibraries& operator=(const PortLibraries&) = delete;

  void giveio() override;
  void vbOut(std::int16_t port, std::int16_t value) override;
  [[nodiscard]] std::int16_t vbInp(std::int16_t port) override;

 private:
  // As the libraries export them; their callers clear the stack on 32-bit systems only.
  using GiveIo = void(__stdcall*)();
  using Out = void(__stdcall*)(std::int16_t port, std::int16_t value);
  using Inp = std::int16_t(__stdcall*)(std::int16_t port);

  void Load();

  bool tried_ = false;
  void* ports_ = nullptr;
  void* access_ = nullptr;
  GiveIo giveio_ = nullptr;
  Out out_ = nullptr;
  Inp inp_ = nullptr;
};

}  // namespace kestrel
