// A board's descriptors and pipes, read and put into the adapter driver's form.
// SPDX-License-Identifier: MIT
#include "platform/libusb/usb_board.h"

#include <libusb.h>

#include <algorithm>
#include <functional>

namespace kestrel {
namespace {

constexpr std::size_t kMostPorts = 7;  // depth of a bus
constexpr std::size_t kSpeedPipe = 3;

struct FreeConfig {
  void operator()(libusb_config_descriptor* config) const { libusb_free_config_descriptor(config); }
};
using ConfigDescriptor = std::unique_ptr<libusb_config_descriptor, FreeConfig>;

ConfigDescriptor ReadConfig(libusb_device* device) {
  libusb_config_descriptor* config = nullptr;
  if (libusb_get_active_config_descriptor(device, &config) != LIBUSB_SUCCESS &&
      libusb_get_config_descriptor(device, 0, &config) != LIBUSB_SUCCESS) {
    return nullptr;
  }
  return ConfigDescriptor(config);
}

std::vector<UsbPipe> PipesOf(const libusb_interface_descriptor& interface) {
  std::vector<UsbPipe> pipes;
  for (const auto& endpoint : std::span(interface.endpoint, interface.bNumEndpoints)) {
    pipes.push_back(
        {endpoint.bEndpointAddress, static_cast<std::uint8_t>(endpoint.bmAttributes & 0x03U),
         static_cast<std::uint16_t>(endpoint.wMaxPacketSize & 0x7FFU), endpoint.bInterval});
  }
  return pipes;
}

bool IsBulkOutput(const UsbPipe& pipe) {
  return pipe.IsBulk() && !pipe.IsInput();
}
bool IsBulkInput(const UsbPipe& pipe) {
  return pipe.IsBulk() && pipe.IsInput();
}

bool CarriesCommands(const std::vector<UsbPipe>& pipes) {
  return std::any_of(pipes.begin(), pipes.end(), IsBulkOutput) &&
         std::any_of(pipes.begin(), pipes.end(), IsBulkInput);
}

// The command pipe to place 0 and the answer pipe to place 1; the others keep their order.
void Arrange(std::vector<UsbPipe>& pipes) {
  std::stable_partition(pipes.begin(), pipes.end(), [](const auto& pipe) { return pipe.IsBulk(); });
  const auto output = std::find_if(pipes.begin(), pipes.end(), IsBulkOutput);
  std::rotate(pipes.begin(), output, output + 1);
  const auto input = std::find_if(pipes.begin(), pipes.end(), IsBulkInput);
  std::rotate(pipes.begin() + 1, input, input + 1);
}

void PutWord(std::span<std::uint8_t> bytes, std::size_t at, std::size_t word) {
  bytes[at] = static_cast<std::uint8_t>(word & 0xFFU);
  bytes[at + 1] = static_cast<std::uint8_t>(word >> 8U & 0xFFU);
}

}  // namespace

void UsbBoard::Unref::operator()(libusb_device* device) const {
  libusb_unref_device(device);
}

UsbBoard::UsbBoard(libusb_device* device, std::uint32_t plugging)
    : device_(libusb_ref_device(device)),
      address_(libusb_get_device_address(device)),
      plugging_(plugging) {
  std::array<std::uint8_t, kMostPorts> ports{};
  const int depth = libusb_get_port_numbers(device, ports.data(), kMostPorts);
  place_ = {libusb_get_bus_number(device), {ports.begin(), ports.begin() + std::max(depth, 0)}};
  ReadPipes();
}

// The first interface that has both a command and an answer pipe; failing that the first of all,
// without pipes.
void UsbBoard::ReadPipes() {
  const ConfigDescriptor config = ReadConfig(Device());
  if (!config) return;
  for (const auto& interface : std::span(config->interface, config->bNumInterfaces)) {
    if (interface.num_altsetting < 1) continue;
    const libusb_interface_descriptor& setting = interface.altsetting[0];
    if (!interface_) interface_ = setting.bInterfaceNumber;
    std::vector<UsbPipe> pipes = PipesOf(setting);
    if (!CarriesCommands(pipes)) continue;
    Arrange(pipes);
    interface_ = setting.bInterfaceNumber;
    interfaceClass_ = setting.bInterfaceClass;
    pipes_ = std::move(pipes);
    return;
  }
}

const UsbPipe* UsbBoard::Pipe(std::uint32_t number) const {
  return number < pipes_.size() ? &pipes_[number] : nullptr;
}

std::array<std::uint8_t, 18> UsbBoard::DeviceDescriptor() const {
  libusb_device_descriptor known{};
  libusb_get_device_descriptor(Device(), &known);
  std::array<std::uint8_t, 18> bytes{known.bLength, known.bDescriptorType};
  PutWord(bytes, 2, known.bcdUSB);
  bytes[4] = known.bDeviceClass;
  bytes[5] = known.bDeviceSubClass;
  bytes[6] = known.bDeviceProtocol;
  bytes[7] = known.bMaxPacketSize0;
  PutWord(bytes, 8, known.idVendor);
  PutWord(bytes, 10, known.idProduct);
  PutWord(bytes, 12, known.bcdDevice);
  bytes[14] = known.iManufacturer;
  bytes[15] = known.iProduct;
  bytes[16] = known.iSerialNumber;
  bytes[17] = known.bNumConfigurations;
  return bytes;
}

std::array<std::uint8_t, UsbBoard::kPipeInformationSize> UsbBoard::PipeInformation() const {
  constexpr std::size_t kHead = 16;
  constexpr std::size_t kSlot = 20;
  constexpr std::size_t kMostSlots = (kPipeInformationSize - kHead) / kSlot;

  std::vector<UsbPipe> pipes = pipes_;
  const auto others = std::find_if(pipes.begin(), pipes.end(), std::not_fn(&UsbPipe::IsBulk));
  const auto bulk = static_cast<std::size_t>(others - pipes.begin());
  if (!pipes.empty() && bulk <= kSpeedPipe) {
    pipes.insert(others, kSpeedPipe + 1 - bulk, UsbPipe{pipes[1]});
  }
  if (pipes.size() > kMostSlots) pipes.resize(kMostSlots);

  std::array<std::uint8_t, kPipeInformationSize> bytes{};
  PutWord(bytes, 0, kHead + pipes.size() * kSlot);
  bytes[2] = static_cast<std::uint8_t>(interface_.value_or(0));
  bytes[4] = interfaceClass_;
  PutWord(bytes, 8, 1);  // interface handle
  PutWord(bytes, 12, pipes.size());
  std::size_t at = kHead;
  for (const UsbPipe& pipe : pipes) {
    PutWord(bytes, at, pipe.packetSize);
    bytes[at + 2] = pipe.endpoint;
    bytes[at + 3] = pipe.interval;
    PutWord(bytes, at + 4, pipe.type);
    at += kSlot;
  }
  return bytes;
}

}  // namespace kestrel
