// One adapter board on the bus: its endpoints and what it says of itself.
// SPDX-License-Identifier: MIT
#pragma once

#include <array>
#include <cstdint>
#include <memory>
#include <optional>
#include <span>
#include <tuple>
#include <utility>
#include <vector>

struct libusb_device;

namespace kestrel {

inline constexpr std::uint16_t kAdapterVendor = 0x5A17;

// One endpoint of a board.
struct UsbPipe {
  std::uint8_t endpoint = 0;  // address; bit 7 set: towards the computer
  std::uint8_t type = 0;      // as in the endpoint's attributes; 2 is bulk
  std::uint16_t packetSize = 0;
  std::uint8_t interval = 0;

  [[nodiscard]] bool IsBulk() const { return type == 2; }
  [[nodiscard]] bool IsInput() const { return (endpoint & 0x80U) != 0; }
};

// Where something is plugged in: bus number, the ports on the way from the root.
using UsbPlace = std::pair<std::uint8_t, std::vector<std::uint8_t>>;

// A board on the bus, from being plugged in until it is unplugged.
class UsbBoard {
 public:
  static constexpr std::size_t kPipeInformationSize = 356;

  // `plugging` counts the boards that were plugged in since the program started.
  UsbBoard(libusb_device* device, std::uint32_t plugging);

  [[nodiscard]] libusb_device* Device() const { return device_.get(); }

  // Number of the interface in use; none on a board without interfaces.
  [[nodiscard]] std::optional<int> Interface() const { return interface_; }

  // Pipe 0 is the first bulk output, pipe 1 the first bulk input; the board's other endpoints
  // follow, bulk ones first. Null when there is no such pipe.
  [[nodiscard]] const UsbPipe* Pipe(std::uint32_t number) const;

  [[nodiscard]] std::array<std::uint8_t, 18> DeviceDescriptor() const;

  // A head of 16 bytes, the last four the number of pipes, then 20 bytes a pipe. Pipe 3 tells the
  // bus speed by its packet size: on a board with fewer bulk endpoints it repeats the answer pipe.
  [[nodiscard]] std::array<std::uint8_t, kPipeInformationSize> PipeInformation() const;

  [[nodiscard]] const UsbPlace& Place() const { return place_; }
  [[nodiscard]] std::uint32_t Plugging() const { return plugging_; }

  // Bus order: by place, then by device address.
  [[nodiscard]] bool IsBefore(const UsbBoard& other) const {
    return std::tie(place_, address_) < std::tie(other.place_, other.address_);
  }

  // Whether the answer pipe is known to hold no answer of an earlier, broken-off transfer.
  bool answersInStep = false;

 private:
  struct Unref {
    void operator()(libusb_device* device) const;
  };

  void ReadPipes();

  std::unique_ptr<libusb_device, Unref> device_;
  UsbPlace place_;
  std::uint8_t address_;
  std::uint32_t plugging_;
  std::optional<int> interface_;
  std::uint8_t interfaceClass_ = 0;
  std::vector<UsbPipe> pipes_;
};

}  // namespace kestrel
