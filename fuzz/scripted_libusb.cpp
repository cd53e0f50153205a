// The system's USB library played by an input.
// SPDX-License-Identifier: MIT
#include "scripted_libusb.h"

#include <libusb.h>

#include <array>
#include <list>
#include <map>
#include <utility>
#include <vector>

#include "require.h"

struct libusb_context {};

// A device with one configuration.
struct libusb_device {
  libusb_device_descriptor descriptor{};
  std::uint8_t address = 0;
  std::vector<std::uint8_t> ports;
  bool configured = false;
  bool attached = true;
  std::vector<libusb_interface> interfaces;
  std::list<std::vector<libusb_interface_descriptor>> settings;
  std::list<std::vector<libusb_endpoint_descriptor>> endpoints;
  int references = 1;  // the library's own
};

struct libusb_device_handle {
  libusb_device* device;
  std::map<int, bool> claimed;
};

namespace kestrel {
namespace {

struct Bus {
  Input* input = nullptr;
  std::list<libusb_device> devices;
  libusb_context context;
  int contexts = 0;
  int lists = 0;
  int configs = 0;
  int opened = 0;
  int transfers = 0;
  libusb_transfer* pending = nullptr;
};

Bus bus;  // of the input at hand

// Success, or one of the library's errors.
int Outcome() {
  constexpr std::array<int, 8> kErrors{
      LIBUSB_ERROR_IO,   LIBUSB_ERROR_ACCESS,  LIBUSB_ERROR_NO_DEVICE, LIBUSB_ERROR_BUSY,
      LIBUSB_ERROR_PIPE, LIBUSB_ERROR_TIMEOUT, LIBUSB_ERROR_OTHER,     LIBUSB_ERROR_OVERFLOW};
  const std::uint8_t how = bus.input->Byte();
  return how < 0xE0 ? LIBUSB_SUCCESS : kErrors[how % kErrors.size()];
}

libusb_interface_descriptor SettingOf(Input& input, libusb_device& device, std::uint8_t number) {
  std::vector<libusb_endpoint_descriptor> endpoints(input.Byte() % 24U);
  for (auto& endpoint : endpoints) {
    endpoint.bEndpointAddress = input.Byte();
    endpoint.bmAttributes = input.Byte();
    endpoint.wMaxPacketSize = input.Word();
  }
  libusb_interface_descriptor setting{};
  setting.bInterfaceNumber = number;
  setting.bInterfaceClass = input.Byte();
  setting.bNumEndpoints = static_cast<std::uint8_t>(endpoints.size());
  setting.endpoint = endpoints.empty() ? nullptr : device.endpoints.emplace_back(endpoints).data();
  return setting;
}

void PlugInDevice(Input& input) {
  libusb_device& device = bus.devices.emplace_back();
  device.address = static_cast<std::uint8_t>(bus.devices.size());
  device.descriptor.bLength = 18;
  device.descriptor.idVendor = input.Byte() % 4 == 0 ? input.Word() : 0x5A17;
  device.descriptor.idProduct = input.Word();
  device.ports.resize(input.Byte() % 8U);
  for (auto& port : device.ports) port = input.Byte();
  device.configured = input.Byte() % 8 != 0;
  const auto interfaces = static_cast<std::uint8_t>(input.Byte() % 4U);
  for (std::uint8_t number = 0; number < interfaces; ++number) {
    std::vector<libusb_interface_descriptor> settings;
    const int count = input.Byte() % 3;
    for (int i = 0; i < count; ++i) settings.push_back(SettingOf(input, device, number));
    const auto* first = settings.empty() ? nullptr : device.settings.emplace_back(settings).data();
    device.interfaces.push_back({first, count});
  }
}

int Deliver(unsigned char* data, int length, int* moved) {
  const std::string_view bytes =
      bus.input->Bytes(std::min<std::size_t>(static_cast<std::size_t>(length), bus.input->Byte()));
  std::copy(bytes.begin(), bytes.end(), data);
  *moved = static_cast<int>(bytes.size());
  return Outcome();
}

// The endpoint of an interface in use, of the kind that the call is for.
const libusb_endpoint_descriptor* EndpointOf(const libusb_device_handle& handle,
                                             std::uint8_t address) {
  for (const auto& [number, claimed] : handle.claimed) {
    if (!claimed) continue;
    const libusb_interface& used = handle.device->interfaces.at(static_cast<std::size_t>(number));
    for (int i = 0; i < used.altsetting[0].bNumEndpoints; ++i) {
      const auto& endpoint = used.altsetting[0].endpoint[i];
      if (endpoint.bEndpointAddress == address && (endpoint.bmAttributes & 3) == 2)
        return &endpoint;
    }
  }
  return nullptr;
}

}  // namespace

void PlugIn(Input& input) {
  bus = {};
  bus.input = &input;
  const int devices = input.Between(0, 5);
  for (int i = 0; i < devices; ++i) PlugInDevice(input);
}

void ChangeBus(Input& input) {
  constexpr std::size_t kMostDevices = 12;
  const std::uint8_t which = input.Byte();
  if (which % 2 == 0 && bus.devices.size() < kMostDevices) return PlugInDevice(input);
  if (!bus.devices.empty()) {
    std::next(bus.devices.begin(), which / 2 % static_cast<int>(bus.devices.size()))->attached =
        false;
  }
}

bool AllGivenBack() {
  for (const libusb_device& device : bus.devices) {
    if (device.references != 1) return false;
  }
  return bus.contexts == 0 && bus.lists == 0 && bus.configs == 0 && bus.opened == 0 &&
         bus.transfers == 0;
}

}  // namespace kestrel

using kestrel::bus;
using kestrel::Require;

extern "C" {

int libusb_init(libusb_context** context) {
  ++bus.contexts;
  *context = &bus.context;
  return LIBUSB_SUCCESS;
}

void libusb_exit(libusb_context* /*context*/) {
  --bus.contexts;
}

ssize_t libusb_get_device_list(libusb_context* /*context*/, libusb_device*** list) {
  ++bus.lists;
  *list = new libusb_device*[bus.devices.size() + 1];
  std::size_t count = 0;
  for (libusb_device& device : bus.devices) {
    if (device.attached) (*list)[count++] = libusb_ref_device(&device);
  }
  (*list)[count] = nullptr;
  return static_cast<ssize_t>(count);
}

void libusb_free_device_list(libusb_device** list, int unref) {
  --bus.lists;
  for (libusb_device** device = list; unref != 0 && *device != nullptr; ++device) {
    libusb_unref_device(*device);
  }
  delete[] list;
}

libusb_device* libusb_ref_device(libusb_device* device) {
  ++device->references;
  return device;
}

void libusb_unref_device(libusb_device* device) {
  --device->references;
  Require(device->references >= 1, "a device is given back once");
}

int libusb_get_device_descriptor(libusb_device* device, libusb_device_descriptor* descriptor) {
  *descriptor = device->descriptor;
  return LIBUSB_SUCCESS;
}

int libusb_get_active_config_descriptor(libusb_device* device, libusb_config_descriptor** config) {
  if (!device->configured) return LIBUSB_ERROR_NOT_FOUND;
  return libusb_get_config_descriptor(device, 0, config);
}

int libusb_get_config_descriptor(libusb_device* device, uint8_t /*index*/,
                                 libusb_config_descriptor** config) {
  if (const int outcome = kestrel::Outcome(); outcome != LIBUSB_SUCCESS) return outcome;
  ++bus.configs;
  *config = new libusb_config_descriptor{};
  (*config)->bNumInterfaces = static_cast<uint8_t>(device->interfaces.size());
  (*config)->interface = device->interfaces.data();
  return LIBUSB_SUCCESS;
}

void libusb_free_config_descriptor(libusb_config_descriptor* config) {
  --bus.configs;
  delete config;
}

uint8_t libusb_get_bus_number(libusb_device* /*device*/) {
  return 1;
}

uint8_t libusb_get_device_address(libusb_device* device) {
  return device->address;
}

int libusb_get_port_numbers(libusb_device* device, uint8_t* ports, int most) {
  if (device->ports.size() > static_cast<std::size_t>(most)) return LIBUSB_ERROR_OVERFLOW;
  std::copy(device->ports.begin(), device->ports.end(), ports);
  return static_cast<int>(device->ports.size());
}

int libusb_open(libusb_device* device, libusb_device_handle** handle) {
  if (const int outcome = kestrel::Outcome(); outcome != LIBUSB_SUCCESS) return outcome;
  ++bus.opened;
  *handle = new libusb_device_handle{libusb_ref_device(device), {}};
  return LIBUSB_SUCCESS;
}

void libusb_close(libusb_device_handle* handle) {
  --bus.opened;
  for (const auto& [number, claimed] : handle->claimed) {
    Require(!claimed, "an interface is released before its board is closed");
  }
  libusb_unref_device(handle->device);
  delete handle;
}

int libusb_claim_interface(libusb_device_handle* handle, int number) {
  Require(number >= 0 && static_cast<std::size_t>(number) < handle->device->interfaces.size(),
          "an interface that is claimed is there");
  if (const int outcome = kestrel::Outcome(); outcome != LIBUSB_SUCCESS) return outcome;
  handle->claimed[number] = true;
  return LIBUSB_SUCCESS;
}

int libusb_release_interface(libusb_device_handle* handle, int number) {
  Require(handle->claimed[number], "an interface that is released was claimed");
  handle->claimed[number] = false;
  return LIBUSB_SUCCESS;
}

int libusb_set_auto_detach_kernel_driver(libusb_device_handle* /*handle*/, int /*enable*/) {
  return LIBUSB_SUCCESS;
}

int libusb_clear_halt(libusb_device_handle* handle, unsigned char endpoint) {
  Require(kestrel::EndpointOf(*handle, endpoint) != nullptr, "a pipe of the board is opened again");
  return LIBUSB_SUCCESS;
}

int libusb_control_transfer(libusb_device_handle* /*handle*/, uint8_t /*type*/, uint8_t /*request*/,
                            uint16_t /*value*/, uint16_t /*index*/, unsigned char* data,
                            uint16_t length, unsigned int /*timeout*/) {
  int moved = 0;
  const int outcome = kestrel::Deliver(data, length, &moved);
  return outcome == LIBUSB_SUCCESS ? moved : outcome;
}

int libusb_bulk_transfer(libusb_device_handle* handle, unsigned char endpoint, unsigned char* data,
                         int length, int* moved, unsigned int /*timeout*/) {
  Require(kestrel::EndpointOf(*handle, endpoint) != nullptr, "a bulk pipe of the board is used");
  if ((endpoint & LIBUSB_ENDPOINT_IN) != 0) return kestrel::Deliver(data, length, moved);
  const int outcome = kestrel::Outcome();
  *moved = outcome == LIBUSB_SUCCESS ? length : length / 2;
  return outcome;
}

libusb_transfer* libusb_alloc_transfer(int /*packets*/) {
  ++bus.transfers;
  return new libusb_transfer{};
}

void libusb_free_transfer(libusb_transfer* transfer) {
  Require(bus.pending != transfer, "a transfer is kept until it has ended");
  --bus.transfers;
  delete transfer;
}

int libusb_submit_transfer(libusb_transfer* transfer) {
  Require(kestrel::EndpointOf(*transfer->dev_handle, transfer->endpoint) != nullptr,
          "a bulk pipe of the board is used");
  Require(bus.pending == nullptr, "one transfer at a time");
  if (const int outcome = kestrel::Outcome(); outcome != LIBUSB_SUCCESS) return outcome;
  bus.pending = transfer;
  return LIBUSB_SUCCESS;
}

int libusb_cancel_transfer(libusb_transfer* transfer) {
  Require(bus.pending == transfer, "what is called off is under way");
  return LIBUSB_SUCCESS;
}

// The end comes at once, at a later call, or after an error of the call itself.
int libusb_handle_events_timeout_completed(libusb_context* context, timeval* /*time*/,
                                           int* completed) {
  Require(context == &bus.context && *completed == 0, "there is something to wait for");
  const std::uint8_t when = bus.input->Byte();
  if (when >= 0xFC) return when == 0xFF ? LIBUSB_ERROR_IO : LIBUSB_SUCCESS;
  libusb_transfer* ended = std::exchange(bus.pending, nullptr);
  const int outcome = libusb_bulk_transfer(ended->dev_handle, ended->endpoint, ended->buffer,
                                           ended->length, &ended->actual_length, ended->timeout);
  ended->status = outcome == LIBUSB_SUCCESS         ? LIBUSB_TRANSFER_COMPLETED
                  : outcome == LIBUSB_ERROR_TIMEOUT ? LIBUSB_TRANSFER_TIMED_OUT
                  : outcome == LIBUSB_ERROR_PIPE    ? LIBUSB_TRANSFER_STALL
                                                    : LIBUSB_TRANSFER_ERROR;
  ended->callback(ended);
  return LIBUSB_SUCCESS;
}

}  // extern "C"
