// The adapter driver with up to four boards, all wired to one simulated sensor.
// SPDX-License-Identifier: MIT
#pragma once

#include <array>
#include <cstdint>
#include <functional>
#include <map>
#include <optional>
#include <utility>

#include "seams/usb_driver.h"
#include "simulator/adapter_descriptors.h"
#include "simulator/adapter_firmware.h"
#include "simulator/sensor/simulated_sensor.h"

namespace kestrel {

// The driver with up to four boards plugged in, "\\.\Ezusb-0" to "\\.\Ezusb-3", all wired to one
// sensor. It starts with one board, number 0.
class SimulatedAdapter : public UsbDriver {
 public:
  static constexpr std::size_t kBoardCount = 4;

  explicit SimulatedAdapter(SimulatedSensor& sensor);

  // Plugs a board in, in place of any other of this number, or takes it away for good. Handles that
  // were open on it are dead from then on. Number 0..3.
  void SetBoard(std::size_t number, const BoardDescription& board);
  void RemoveBoard(std::size_t number);

  // Pulls the cable, and puts it back: the board starts afresh. The sensor is powered through the
  // cables: with the last one it stops, with the first one it starts again from its flash.
  void Unplug(std::size_t number = 0);
  void Replug(std::size_t number = 0);

  [[nodiscard]] std::size_t OpenHandles() const { return handles_.size(); }

  // Times that a handle was closed or used which is not open.
  [[nodiscard]] unsigned HandleErrors() const { return handleErrors_; }

  [[nodiscard]] Handle CreateFile(const std::string& path, std::uint32_t access,
                                  std::uint32_t share, std::uint32_t creation) override;
  [[nodiscard]] bool DeviceIoControl(Handle device, std::uint32_t code,
                                     std::span<const std::uint8_t> input,
                                     std::span<std::uint8_t> output,
                                     std::uint32_t& returned) override;
  void CloseHandle(Handle device) override;
  [[nodiscard]] bool Attached(const std::string& name) override;
  // In the thread of whoever plugs.
  [[nodiscard]] bool Watch(std::function<void()> changed) override {
    changed_ = std::move(changed);
    return true;
  }
  [[nodiscard]] std::uint32_t Plugging(Handle device) override;
  [[nodiscard]] std::int32_t LastError() override { return lastError_; }

 private:
  struct Board {
    BoardDescription description;
    AdapterFirmware firmware;
    unsigned plugging;  // which plugging-in this is; 0 while unplugged
  };
  struct OpenFile {
    std::size_t board;
    unsigned plugging;
  };

  [[nodiscard]] bool IsPlugged(std::size_t number) const;
  [[nodiscard]] Board* BoardOf(Handle device);
  [[nodiscard]] bool Request(Board& board, std::uint32_t code, std::span<const std::uint8_t> input,
                             std::span<std::uint8_t> output, std::uint32_t& returned);
  [[nodiscard]] bool Bulk(Board& board, std::span<const std::uint8_t> input,
                          std::span<std::uint8_t> output, std::uint32_t& returned);
  [[nodiscard]] Handle Refuse(std::int32_t error);  // always below 1
  bool Fail(std::int32_t error);                    // always false

  SimulatedSensor& sensor_;
  std::array<std::optional<Board>, kBoardCount> boards_;
  std::map<Handle, OpenFile> handles_;
  Handle lastHandle_ = 0;
  unsigned pluggings_ = 0;
  unsigned handleErrors_ = 0;
  std::int32_t lastError_ = 0;
  std::function<void()> changed_;
};

}  // namespace kestrel
