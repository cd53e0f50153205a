// Kestrel evaluation program
// SPDX-License-Identifier: MIT
#include "platform/linux/absent_hardware.h"

namespace kestrel {
namespace {

constexpr UsbDriver::Handle kNoHandle = -1;
constexpr std::int32_t kNotFound = 2;       // the drivers' own code for a device that is not there
constexpr std::int16_t kOpenInputs = 0xFF;  // unconnected inputs read high
constexpr std::int32_t kCouldNotRun = 1;

}  // namespace

UsbDriver::Handle AbsentUsbDriver::CreateFile(const std::string&, std::uint32_t, std::uint32_t,
                                              std::uint32_t) {
  return kNoHandle;
}

bool AbsentUsbDriver::DeviceIoControl(Handle, std::uint32_t, std::span<const std::uint8_t>,
                                      std::span<std::uint8_t>, std::uint32_t& returned) {
  returned = 0;
  return false;
}

void AbsentUsbDriver::CloseHandle(Handle) {}

std::int32_t AbsentUsbDriver::LastError() {
  return kNotFound;
}

void AbsentPortIo::giveio() {}

void AbsentPortIo::vbOut(std::int16_t, std::int16_t) {}

std::int16_t AbsentPortIo::vbInp(std::int16_t) {
  return kOpenInputs;
}

std::string AbsentDriverService::ReadRegistryValue(const std::string&, const std::string&) {
  return {};
}

void AbsentDriverService::WriteRegistryValue(const std::string&, const std::string&, std::int32_t,
                                             const std::string&) {}

std::string AbsentDriverService::ProgramFolder() {
  return {};
}

void AbsentDriverService::WriteBatchFile(const std::string&, const std::string&) {}

std::int32_t AbsentDriverService::RunAndWait(const std::string&) {
  return kCouldNotRun;
}

}  // namespace kestrel
