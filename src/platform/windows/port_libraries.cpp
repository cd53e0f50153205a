// Loading the port libraries, and saying in words why one cannot be used.
// SPDX-License-Identifier: MIT
#include "platform/windows/port_libraries.h"

#include <windows.h>

#include <cstddef>
#include <cstdint>
#include <cstring>
#include <system_error>

namespace kestrel {
namespace {

constexpr std::int16_t kOpenInputs = 0xFF;  // unconnected inputs read high

template <typename Function>
Function Find(void* library, const char* name) {
  if (library == nullptr) return nullptr;
  return reinterpret_cast<Function>(
      reinterpret_cast<void*>(GetProcAddress(static_cast<HMODULE>(library), name)));
}

// The processor that a library was made for, from its header; 0 when it cannot be told.
WORD MachineOf(const std::string& name) {
  const HMODULE file = LoadLibraryExA(name.c_str(), nullptr, LOAD_LIBRARY_AS_DATAFILE);
  if (file == nullptr) return 0;
  // The system marks what is mapped as data in the lowest bits of the handle.
  const auto* base = reinterpret_cast<const std::byte*>(reinterpret_cast<std::uintptr_t>(file) &
                                                        ~std::uintptr_t{3});
  IMAGE_DOS_HEADER start{};
  std::memcpy(&start, base, sizeof start);
  WORD machine = 0;
  std::memcpy(&machine, base + start.e_lfanew + sizeof(DWORD), sizeof machine);
  FreeLibrary(file);
  return machine;
}

std::string WhyNotLoaded(const std::string& name, DWORD error) {
  if (error == ERROR_MOD_NOT_FOUND) {
    return name + " was not found. Put it into the program's folder.";
  }
  if (error == ERROR_BAD_EXE_FORMAT && MachineOf(name) == IMAGE_FILE_MACHINE_I386) {
    return name + " is a library for 32-bit programs, and this program is a 64-bit one. Put the " +
           "64-bit library into the program's folder, or use the USB adapter.";
  }
  if (error == ERROR_BAD_EXE_FORMAT) {
    return name + " is damaged or made for another kind of program. Put the library for 64-bit " +
           "programs into the program's folder.";
  }
  return name + " cannot be loaded: " +
         std::error_code(static_cast<int>(error), std::system_category()).message();
}

std::string WhyNoFunction(const std::string& name, const char* function) {
  return name + " has no function " + function + ": it is another library of the same name. " +
         "Put the right one into the program's folder.";
}

std::string WhyNoDriver(const std::string& name) {
  return name + " is there, but its driver is not installed. Start the program as administrator " +
         "once to install it.";
}

void Append(std::string& text, const std::string& line) {
  text += (text.empty() ? "" : "\n") + line;
}

void* LoadOrTell(const std::string& name, std::string& fault) {
  void* library = LoadLibraryA(name.c_str());
  if (library == nullptr) Append(fault, WhyNotLoaded(name, GetLastError()));
  return library;
}

template <typename Function>
Function FindOrTell(void* library, const std::string& name, const char* function,
                    std::string& fault) {
  const auto found = Find<Function>(library, function);
  if (library != nullptr && found == nullptr) Append(fault, WhyNoFunction(name, function));
  return found;
}

// One that is not there is offered.
void* LoadInstead(const std::string& name, std::string& fault) {
  void* library = LoadLibraryA(name.c_str());
  const DWORD error = GetLastError();
  if (library != nullptr) return library;
  Append(fault, error == ERROR_MOD_NOT_FOUND
                    ? name + ", a port library for 64-bit programs, can be used in their place."
                    : WhyNotLoaded(name, error));
  return nullptr;
}

void Free(void* library) {
  if (library != nullptr) FreeLibrary(static_cast<HMODULE>(library));
}

}  // namespace

PortLibraries::~PortLibraries() {
  Free(ports_);
  Free(access_);
  Free(common_);
}

void PortLibraries::Load() {
  if (tried_) return;
  tried_ = true;
  ports_ = LoadOrTell(names_.ports, fault_);
  out_ = FindOrTell<Out>(ports_, names_.ports, "vbOut", fault_);
  inp_ = FindOrTell<Inp>(ports_, names_.ports, "vbInp", fault_);
  access_ = LoadOrTell(names_.access, fault_);
  giveio_ = FindOrTell<GiveIo>(access_, names_.access, "giveio", fault_);
  if (!fault_.empty()) LoadCommon();
}

void PortLibraries::LoadCommon() {
  void* library = LoadInstead(names_.common, fault_);
  if (library == nullptr) return;
  const auto out = FindOrTell<Out>(library, names_.common, "Out32", fault_);
  const auto inp = FindOrTell<Inp>(library, names_.common, "Inp32", fault_);
  const auto isOpen = FindOrTell<IsOpen>(library, names_.common, "IsInpOutDriverOpen", fault_);
  const bool isWhole = out != nullptr && inp != nullptr && isOpen != nullptr;
  if (!isWhole || isOpen() == 0) {
    if (isWhole) Append(fault_, WhyNoDriver(names_.common));
    return Free(library);
  }
  fault_.clear();
  common_ = library;
  out_ = out;
  inp_ = inp;
  giveio_ = nullptr;  // the driver lets every program in
}

bool PortLibraries::BringsDriver() {
  Load();
  return common_ != nullptr;
}

const std::string& PortLibraries::Fault() {
  Load();
  return fault_;
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
