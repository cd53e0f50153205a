// Boards plugged in and out, handles, and the driver's requests served by firmware.
// SPDX-License-Identifier: MIT
#include "simulator/simulated_adapter.h"

#include <algorithm>
#include <string>

namespace kestrel {
namespace {

// The system's error codes.
constexpr std::int32_t kInvalidFunction = 1;
constexpr std::int32_t kFileNotFound = 2;
constexpr std::int32_t kAccessDenied = 5;
constexpr std::int32_t kInvalidHandle = 6;
constexpr std::int32_t kDeviceFailure = 31;
constexpr std::int32_t kInvalidParameter = 87;
constexpr std::int32_t kTimeout = 121;
constexpr std::int32_t kBufferTooSmall = 122;
constexpr std::int32_t kNotConnected = 1167;

constexpr std::uint32_t kWriteAccess = 0x40000000;
constexpr std::uint32_t kShareWrite = 2;
constexpr std::uint32_t kOpenExisting = 3;

constexpr std::size_t kDeviceDescriptorBuffer = 147;
constexpr std::size_t kStringRequestSize = 5;
constexpr std::size_t kPipeNumberSize = 4;
constexpr std::uint32_t kCommandPipe = 0;
constexpr std::uint32_t kAnswerPipe = 1;

std::uint32_t Copy(std::span<const std::uint8_t> from, std::span<std::uint8_t> to) {
  const std::size_t count = std::min(from.size(), to.size());
  std::copy_n(from.begin(), count, to.begin());
  return static_cast<std::uint32_t>(count);
}

std::uint32_t LittleEndian(std::span<const std::uint8_t> bytes) {
  std::uint32_t value = 0;
  for (std::size_t i = 0; i < bytes.size(); ++i) value |= std::uint32_t{bytes[i]} << (8 * i);
  return value;
}

}  // namespace

SimulatedAdapter::SimulatedAdapter(SimulatedSensor& sensor) : sensor_(sensor) {
  SetBoard(0, {});
}

void SimulatedAdapter::SetBoard(std::size_t number, const BoardDescription& board) {
  AdapterFirmware firmware(sensor_, board.firmwareMajor, board.firmwareMinor);
  boards_.at(number).emplace(Board{board, std::move(firmware), ++pluggings_});
  if (changed_) changed_();
}

void SimulatedAdapter::RemoveBoard(std::size_t number) {
  boards_.at(number).reset();
  if (changed_) changed_();
}

void SimulatedAdapter::Unplug(std::size_t number) {
  if (!boards_.at(number)) return;
  boards_[number]->plugging = 0;
  const bool onePlugged = std::any_of(boards_.begin(), boards_.end(), [](const auto& board) {
    return board && board->plugging != 0;
  });
  if (!onePlugged) sensor_.CutPower();
  if (changed_) changed_();
}

void SimulatedAdapter::Replug(std::size_t number) {
  if (!boards_.at(number)) return;
  const BoardDescription board = boards_[number]->description;
  SetBoard(number, board);
  sensor_.RestorePower();
}

UsbDriver::Handle SimulatedAdapter::CreateFile(const std::string& path, std::uint32_t access,
                                               std::uint32_t share, std::uint32_t creation) {
  for (std::size_t number = 0; number < kBoardCount; ++number) {
    if (path != "\\\\.\\Ezusb-" + std::to_string(number)) continue;
    if (!IsPlugged(number)) break;
    if (access != kWriteAccess) return Refuse(kAccessDenied);
    if (share != kShareWrite || creation != kOpenExisting) return Refuse(kInvalidParameter);
    handles_[++lastHandle_] = {number, boards_[number]->plugging};
    return lastHandle_;
  }
  return Refuse(kFileNotFound);
}

void SimulatedAdapter::CloseHandle(Handle device) {
  if (handles_.erase(device) != 0) return;
  ++handleErrors_;
  Fail(kInvalidHandle);
}

bool SimulatedAdapter::Attached(const std::string& name) {
  for (std::size_t number = 0; number < kBoardCount; ++number) {
    if (name == "Ezusb-" + std::to_string(number)) return IsPlugged(number);
  }
  return false;
}

std::uint32_t SimulatedAdapter::Plugging(Handle device) {
  const auto file = handles_.find(device);
  return file == handles_.end() ? 0 : file->second.plugging;
}

bool SimulatedAdapter::IsPlugged(std::size_t number) const {
  return boards_[number] && boards_[number]->plugging != 0;
}

bool SimulatedAdapter::DeviceIoControl(Handle device, std::uint32_t code,
                                       std::span<const std::uint8_t> input,
                                       std::span<std::uint8_t> output, std::uint32_t& returned) {
  returned = 0;
  Board* board = BoardOf(device);
  return board != nullptr && Request(*board, code, input, output, returned);
}

SimulatedAdapter::Board* SimulatedAdapter::BoardOf(Handle device) {
  const auto file = handles_.find(device);
  if (file == handles_.end()) {
    ++handleErrors_;
    Fail(kInvalidHandle);
    return nullptr;
  }
  auto& board = boards_[file->second.board];
  if (board && board->plugging == file->second.plugging) return &*board;
  Fail(kNotConnected);
  return nullptr;
}

bool SimulatedAdapter::Request(Board& board, std::uint32_t code,
                               std::span<const std::uint8_t> input, std::span<std::uint8_t> output,
                               std::uint32_t& returned) {
  switch (code) {
    case kGetDeviceDescriptor:
      if (output.size() < kDeviceDescriptorBuffer) return Fail(kBufferTooSmall);
      returned = Copy(DeviceDescriptor(board.description), output);
      return true;
    case kGetStringDescriptor: {
      if (input.size() != kStringRequestSize) return Fail(kInvalidParameter);
      const auto descriptor = StringDescriptor(board.description, input[0]);
      if (descriptor.empty()) return Fail(kDeviceFailure);
      returned = Copy(descriptor, output);
      return true;
    }
    case kGetPipeInformation:
      if (output.size() < kPipeInformationSize) return Fail(kBufferTooSmall);
      returned = Copy(PipeInformation(board.description), output);
      return true;
    case kBulkTransfer:
      return Bulk(board, input, output, returned);
    default:
      return Fail(kInvalidFunction);
  }
}

bool SimulatedAdapter::Bulk(Board& board, std::span<const std::uint8_t> input,
                            std::span<std::uint8_t> output, std::uint32_t& returned) {
  if (input.size() != kPipeNumberSize) return Fail(kInvalidParameter);
  switch (LittleEndian(input)) {
    case kCommandPipe:
      if (!board.firmware.Accept(output)) return Fail(kDeviceFailure);  // stall
      returned = static_cast<std::uint32_t>(output.size());
      return true;
    case kAnswerPipe:
      returned = static_cast<std::uint32_t>(board.firmware.Fetch(output));
      return returned != 0 || Fail(kTimeout);
    default:
      return Fail(kInvalidParameter);
  }
}

UsbDriver::Handle SimulatedAdapter::Refuse(std::int32_t error) {
  lastError_ = error;
  return -1;
}

bool SimulatedAdapter::Fail(std::int32_t error) {
  lastError_ = error;
  return false;
}

}  // namespace kestrel
