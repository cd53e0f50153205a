// Kestrel evaluation program
// SPDX-License-Identifier: MIT
#include "platform/windows/port_libraries.h"

#include <windows.h>

namespace kestrel {
namespace {

constexpr std::int16_t kOpenInputs = 0xFF;  // unconnected inputs read high

template <typename Function>
Function Find(void* library, const char* name) {
  if (library == nullptr) return nullptr;
  return reinterpret_cast<Function>(
      reinterpret_cast<void*>(GetProcAddress(static_cast<HMODULE>(library), name)));
}

void Free(void* library) {
  if (library != nullptr) FreeLibrary(static_cast<HMODULE>(library));
}

}  // namespace

PortLibraries::~PortLibraries() {
  Free(ports_);
  Free(access_);
}

void PortLibraries::Load() {
  if (tried_) return;
  tried_ = true;
  ports_ = LoadLibraryA("win95io.dll");
  out_ = Find<Out>(ports_, "vbOut");
  inp_ = Find<Inp>(ports_, "vbInp");
  access_ = LoadLibraryA("giveio.dll");
  giveio_ = Find<GiveIo>(access_, "giveio");
}

void PortLibraries::giveio() {
  Load();
  if (giveio_ != nullptr) giveio_();
}

void PortLibraries::vbOut(std::int16_t port, std::int16_t value) {
  Load();
  if (out_ != nullptr) out_(port, value);
}

std::int16_t PortLibraries::vbInp(std::int16_t port) {
  Load();
  return inp_ != nullptr ? inp_(port) : kOpenInputs;
}

}  // namespace kestrel
