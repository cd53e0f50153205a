// The parallel port through libraries that are installed: win95io.dll with giveio.dll, or
// inpoutx64.dll. SPDX-License-Identifier: MIT
#pragma once

#include <string>
#include <utility>

#include "seams/port_io.h"

namespace kestrel {

// The parallel port through libraries, which are looked for when first needed: in the program's
// folder, then where the system looks. Where one of the first two cannot be used, a library that
// reaches the ports by a driver of its own takes their place. Without any of them every input reads
// as open and nothing is put out; Fault tells why.
class PortLibraries : public PortIo {
 public:
  struct Names {
    std::string ports = "win95io.dll";
    std::string access = "giveio.dll";
    std::string common = "inpoutx64.dll";
  };

  PortLibraries() = default;
  explicit PortLibraries(Names names) : names_(std::move(names)) {}
  ~PortLibraries() override;
  PortLibraries(const PortLibraries&) = delete;
  PortLibraries& operator=(const PortLibraries&) = delete;

  void giveio() override;
  // Whether the ports can be reached.
  [[nodiscard]] bool IsHeld(std::int16_t /*base*/) override { return Fault().empty(); }
  void vbOut(std::int16_t port, std::int16_t value) override;
  [[nodiscard]] std::int16_t vbInp(std::int16_t port) override;

  // Which library cannot be used, why, and what to do about it, a line each; empty when the ports
  // can be reached.
  [[nodiscard]] const std::string& Fault();

  // Whether the common library is in use, which has brought its driver along.
  [[nodiscard]] bool BringsDriver();

 private:
  // As the libraries export them; their callers clear the stack on 32-bit systems only.
  using GiveIo = void(__stdcall*)();
  using Out = void(__stdcall*)(std::int16_t port, std::int16_t value);
  using Inp = std::int16_t(__stdcall*)(std::int16_t port);
  using IsOpen = int(__stdcall*)();

  void Load();
  void LoadCommon();

  Names names_;
  std::string fault_;
  bool tried_ = false;
  void* ports_ = nullptr;
  void* access_ = nullptr;
  void* common_ = nullptr;  // while it is in use
  GiveIo giveio_ = nullptr;
  Out out_ = nullptr;
  Inp inp_ = nullptr;
};

}  // namespace kestrel
