// Claims a port of the ppdev driver and explains why one cannot be had.
// SPDX-License-Identifier: MIT
#include "platform/linux/ppdev_port.h"

#include <fcntl.h>
#include <linux/ppdev.h>
#include <sys/ioctl.h>

#include <cerrno>
#include <cstring>
#include <future>
#include <sstream>
#include <thread>

namespace kestrel {
namespace {

constexpr std::int16_t kNothingThere = 0xFF;

std::string Hexadecimal(std::uint32_t address) {
  std::ostringstream text;
  text << "0x" << std::hex << std::uppercase << address;
  return text.str();
}

// A port that was opened and claimed, or the system's error number.
struct ClaimResult {
  FileDescriptor port;
  int error = 0;
};

ClaimResult OpenPort(const std::filesystem::path& device) {
  FileDescriptor port(open(device.c_str(), O_RDWR | O_CLOEXEC));
  const int error = port.IsOpen() ? 0 : errno;
  return {std::move(port), error};
}

ClaimResult ClaimOpen(FileDescriptor port) {
  if (ioctl(port.Number(), PPCLAIM) == 0) return {std::move(port), 0};
  return {FileDescriptor(), errno};
}

// Fails at once when any other driver or program has registered for the port.
ClaimResult ClaimForUsAlone(FileDescriptor port) {
  if (ioctl(port.Number(), PPEXCL) != 0) return {FileDescriptor(), errno};
  return ClaimOpen(std::move(port));
}

// The driver puts a claim to sleep for as long as another program holds the port, so a thread of
// its own waits. When it succeeds too late, it lets go of the port again.
ClaimResult ClaimShared(FileDescriptor port, std::chrono::milliseconds patience) {
  std::packaged_task<ClaimResult(FileDescriptor)> claim(ClaimOpen);
  std::future<ClaimResult> result = claim.get_future();
  std::thread(std::move(claim), std::move(port)).detach();
  if (result.wait_for(patience) != std::future_status::ready) return {FileDescriptor(), EBUSY};
  return result.get();
}

ClaimResult ClaimDevice(const std::filesystem::path& device, std::chrono::milliseconds patience) {
  ClaimResult first = OpenPort(device);
  if (first.error != 0) return first;
  ClaimResult alone = ClaimForUsAlone(std::move(first.port));
  if (alone.error == 0) return alone;
  ClaimResult second = OpenPort(device);
  if (second.error != 0) return second;
  return ClaimShared(std::move(second.port), patience);
}

std::string ExplainError(const std::string& device, int error) {
  switch (error) {
    case EACCES:
    case EPERM:
      return "There is no permission to use " + device +
             ". Add the user to the group lp (sudo usermod -aG lp \"$USER\") and log in again.";
    case ENOENT:
      return device + " does not exist. The driver may be missing (sudo modprobe ppdev).";
    case EBUSY:
    case EAGAIN:
    case ENXIO:  // the driver's words for a port that another driver keeps to itself
    case ENODEV:
      return device + " is in use by another program or driver. Close what uses it, or unload a " +
             "printer driver (sudo modprobe -r lp).";
    default:
      return device + " cannot be used: " + std::strerror(error) + ".";
  }
}

std::string ExplainAddress(std::uint16_t base, const std::vector<SystemParallelPort>& ports) {
  if (ports.empty()) {
    return "The system has found no parallel port. The driver may be missing (sudo modprobe -a "
           "parport_pc ppdev), or the port may be switched off in the firmware's settings.";
  }
  std::string text = "No parallel port has the address " + Hexadecimal(base) + ". There is";
  const char* separator = " ";
  for (const SystemParallelPort& port : ports) {
    text += separator + port.device.string() +
            (port.base == 0 ? " without an address" : " at " + Hexadecimal(port.base));
    separator = ", ";
  }
  return text + ".";
}

}  // namespace

PpdevPort::PpdevPort(std::function<std::int16_t()> baseAddress)
    : PpdevPort(std::move(baseAddress), Options()) {}

PpdevPort::PpdevPort(std::function<std::int16_t()> baseAddress, Options options)
    : baseAddress_(std::move(baseAddress)), options_(std::move(options)) {}

PpdevPort::~PpdevPort() {
  Release();
}

void PpdevPort::Release() {
  if (port_.IsOpen()) ioctl(port_.Number(), PPRELEASE);
  port_ = FileDescriptor();
  if (options_.locks != nullptr) options_.locks->Release(locked_);
}

bool PpdevPort::Claim() {
  const auto base = static_cast<std::uint16_t>(baseAddress_());
  if (port_.IsOpen() && base == base_) return true;
  Release();
  base_ = base;
  explanation_.clear();
  const std::filesystem::path device = FindDevice(base);
  if (device.empty()) return false;
  locked_ = device.filename().string();
  if (options_.locks != nullptr && !options_.locks->Take(locked_)) {
    explanation_ = device.string() + " is in use by " + options_.locks->Holder(locked_) +
                   ". End that program, or use another port.";
    return false;
  }
  ClaimResult claimed = ClaimDevice(device, options_.patience);
  if (claimed.error != 0) explanation_ = ExplainError(device.string(), claimed.error);
  port_ = std::move(claimed.port);
  if (!port_.IsOpen()) Release();
  return port_.IsOpen();
}

// Empty when no port has this address.
std::filesystem::path PpdevPort::FindDevice(std::uint16_t base) {
  if (!options_.device.empty()) return options_.device;
  const std::vector<SystemParallelPort> ports = ParallelPorts(options_.folders);
  for (const SystemParallelPort& port : ports) {
    if (port.base != 0 && port.base == base) return port.device;
  }
  explanation_ = ExplainAddress(base, ports);
  return {};
}

void PpdevPort::vbOut(std::int16_t port, std::int16_t value) {
  if (!port_.IsOpen() || static_cast<std::uint16_t>(port) != base_) return;
  const auto data = static_cast<unsigned char>(value & 0xFF);
  if (ioctl(port_.Number(), PPWDATA, &data) != 0) Release();
}

std::int16_t PpdevPort::vbInp(std::int16_t port) {
  const auto statusAddress = static_cast<std::uint16_t>(base_ + 1);
  if (!port_.IsOpen() || static_cast<std::uint16_t>(port) != statusAddress) return kNothingThere;
  unsigned char status = 0;
  if (ioctl(port_.Number(), PPRSTATUS, &status) == 0) return status;
  Release();
  return kNothingThere;
}

}  // namespace kestrel
