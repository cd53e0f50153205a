// The adapter driver's requests, one by one, as calls of libusb.
// SPDX-License-Identifier: MIT
#include "platform/libusb/libusb_driver.h"

#include <libusb.h>

#include <algorithm>
#include <array>
#include <optional>
#include <utility>

#include "platform/libusb/bulk_request.h"
#include "seams/usb_no_driver.h"

// Headers of a system that the library's includes make a macro of this name.
#undef CreateFile

namespace kestrel {
namespace {

// The system error codes that the drivers' callers know.
constexpr std::int32_t kInvalidFunction = 1;
constexpr std::int32_t kInvalidHandle = 6;
constexpr std::int32_t kDeviceFailure = 31;
constexpr std::int32_t kInvalidParameter = 87;
constexpr std::int32_t kTimeout = 121;
constexpr std::int32_t kBufferTooSmall = 122;

constexpr std::size_t kDeviceDescriptorBuffer = 147;
constexpr std::size_t kPipeNumberSize = 4;
constexpr std::uint32_t kAnswerPipe = 1;

std::int32_t ErrorCode(int libusbError, std::int32_t refused) {
  switch (libusbError) {
    case LIBUSB_ERROR_NO_DEVICE:
      return kUsbNotAttached;
    case LIBUSB_ERROR_ACCESS:
      return refused;
    case LIBUSB_ERROR_BUSY:
      return kUsbBusyElsewhere;
    case LIBUSB_ERROR_NOT_SUPPORTED:
      return kUsbNoDriver;
    case LIBUSB_ERROR_TIMEOUT:
      return kTimeout;
    default:
      return kDeviceFailure;
  }
}

// The n of "\\.\Ezusb-n".
std::optional<std::size_t> BoardNumber(const std::string& path) {
  constexpr std::string_view kPrefix = "\\\\.\\Ezusb-";
  if (path.size() != kPrefix.size() + 1 || !path.starts_with(kPrefix)) return std::nullopt;
  const char digit = path.back();
  if (digit < '0' || digit > '3') return std::nullopt;
  return static_cast<std::size_t>(digit - '0');
}

std::uint32_t Copy(std::span<const std::uint8_t> from, std::span<std::uint8_t> to) {
  std::copy(from.begin(), from.end(), to.begin());
  return static_cast<std::uint32_t>(from.size());
}

std::uint32_t LittleEndian(std::span<const std::uint8_t> bytes) {
  std::uint32_t value = 0;
  for (std::size_t i = 0; i < bytes.size(); ++i) value |= std::uint32_t{bytes[i]} << (8 * i);
  return value;
}

// Takes what is left of an earlier transfer that was broken off, lest it be taken for the answer to
// the next command.
void DropOldAnswers(libusb_device_handle* device, std::uint8_t answerEndpoint) {
  constexpr int kMostPackets = 8;  // more than a board can hold back
  constexpr unsigned kWaitMs = 10;
  std::array<std::uint8_t, 1024> packet{};
  int moved = 0;
  for (int i = 0; i < kMostPackets; ++i) {
    if (libusb_bulk_transfer(device, answerEndpoint, packet.data(), packet.size(), &moved,
                             kWaitMs) != LIBUSB_SUCCESS) {
      return;
    }
  }
}

}  // namespace

// A board opened and claimed, until destroyed.
class LibusbDriver::OpenBoard {
 public:
  explicit OpenBoard(std::shared_ptr<UsbBoard> board) : board_(std::move(board)) {}
  ~OpenBoard() {
    if (claimed_) libusb_release_interface(Device(), *board_->Interface());
  }
  OpenBoard(const OpenBoard&) = delete;
  OpenBoard& operator=(const OpenBoard&) = delete;

  // Returns the library's error code.
  [[nodiscard]] int Open() {
    libusb_device_handle* device = nullptr;
    const int opened = libusb_open(board_->Device(), &device);
    if (opened != LIBUSB_SUCCESS) return opened;
    device_.reset(device);
    if (!board_->Interface()) return LIBUSB_SUCCESS;
    const int claimed = Claim(*board_->Interface());
    claimed_ = claimed == LIBUSB_SUCCESS;
    return claimed;
  }

  [[nodiscard]] libusb_device_handle* Device() const { return device_.get(); }
  [[nodiscard]] UsbBoard& Board() const { return *board_; }

 private:
  struct Close {
    void operator()(libusb_device_handle* device) const { libusb_close(device); }
  };

  // A driver of the kernel gives way and gets the board back afterwards. To try without comes
  // first: it saves a call at every close of a board that no driver wants.
  [[nodiscard]] int Claim(int interface) {
    const int claimed = libusb_claim_interface(Device(), interface);
    if (claimed != LIBUSB_ERROR_BUSY) return claimed;
    libusb_set_auto_detach_kernel_driver(Device(), 1);
    return libusb_claim_interface(Device(), interface);
  }

  std::shared_ptr<UsbBoard> board_;
  std::unique_ptr<libusb_device_handle, Close> device_;
  bool claimed_ = false;
};

LibusbDriver::LibusbDriver(std::chrono::milliseconds timeLimit, std::function<void(bool)> waiting,
                           UsbBusRules rules, std::int32_t refused)
    : budget_(timeLimit), waiting_(std::move(waiting)), refused_(refused), bus_(std::move(rules)) {}

LibusbDriver::~LibusbDriver() = default;

UsbDriver::Handle LibusbDriver::CreateFile(const std::string& path, std::uint32_t /*access*/,
                                           std::uint32_t /*share*/, std::uint32_t /*creation*/) {
  const std::optional<std::size_t> number = BoardNumber(path);
  std::shared_ptr<UsbBoard> board = number ? bus_.BoardToUse(*number) : nullptr;
  if (!board) {
    Fail(kUsbNotAttached);
    return -1;
  }
  auto opened = std::make_unique<OpenBoard>(std::move(board));
  if (const int error = opened->Open(); error != LIBUSB_SUCCESS) {
    FailOf(error);
    return -1;
  }
  open_[++lastHandle_] = std::move(opened);
  return lastHandle_;
}

void LibusbDriver::CloseHandle(Handle device) {
  if (open_.erase(device) == 0) Fail(kInvalidHandle);
  bus_.NoteUse();
}

bool LibusbDriver::Attached(const std::string& name) {
  const std::optional<std::size_t> number = BoardNumber("\\\\.\\" + name);
  return number && bus_.Board(*number) != nullptr;
}

std::string LibusbDriver::PlaceOf(const std::string& name) {
  const std::optional<std::size_t> number = BoardNumber("\\\\.\\" + name);
  const auto board = number ? bus_.BoardToUse(*number) : nullptr;
  if (!board) return {};
  const auto& [bus, ports] = board->Place();
  std::string place = "usb-" + std::to_string(bus);
  for (std::size_t i = 0; i < ports.size(); ++i) {
    place += (i == 0 ? "-" : ".") + std::to_string(ports[i]);
  }
  return place;
}

bool LibusbDriver::Watch(std::function<void()> changed) {
  watch_.reset();
  if (!changed) return true;
  watch_ = std::make_unique<UsbWatch>(std::move(changed));
  return watch_->Runs();
}

std::uint32_t LibusbDriver::Plugging(Handle device) {
  const auto found = open_.find(device);
  return found == open_.end() ? 0 : found->second->Board().Plugging();
}

bool LibusbDriver::DeviceIoControl(Handle device, std::uint32_t code,
                                   std::span<const std::uint8_t> input,
                                   std::span<std::uint8_t> output, std::uint32_t& returned) {
  returned = 0;
  const auto found = open_.find(device);
  if (found == open_.end()) return Fail(kInvalidHandle);
  OpenBoard& board = *found->second;
  switch (code) {
    case kGetDeviceDescriptor:
      if (output.size() < kDeviceDescriptorBuffer) return Fail(kBufferTooSmall);
      returned = Copy(board.Board().DeviceDescriptor(), output);
      return true;
    case kGetPipeInformation:
      if (output.size() < UsbBoard::kPipeInformationSize) return Fail(kBufferTooSmall);
      returned = Copy(board.Board().PipeInformation(), output);
      return true;
    case kGetStringDescriptor:
      if (input.empty()) return Fail(kInvalidParameter);
      return ReadString(board, input[0], output, returned);
    case kBulkTransfer:
    case kBulkRead:
      return Bulk(board, code, input, output, returned);
    default:
      return Fail(kInvalidFunction);
  }
}

// Boards tell their strings in the languages that string 0 lists.
bool LibusbDriver::ReadString(OpenBoard& board, std::uint8_t index, std::span<std::uint8_t> output,
                              std::uint32_t& returned) {
  constexpr std::uint16_t kEnglish = 0x0409;
  const auto request = [&](std::uint8_t string, std::uint16_t language,
                           std::span<std::uint8_t> buffer) {
    const auto start = std::chrono::steady_clock::now();
    const int moved =
        libusb_control_transfer(board.Device(), LIBUSB_ENDPOINT_IN, LIBUSB_REQUEST_GET_DESCRIPTOR,
                                static_cast<std::uint16_t>(LIBUSB_DT_STRING << 8U | string),
                                language, buffer.data(), static_cast<std::uint16_t>(buffer.size()),
                                static_cast<unsigned>(budget_.Left(start).count()));
    if (moved == LIBUSB_ERROR_TIMEOUT) budget_.GivenUp(start, std::chrono::steady_clock::now());
    return moved;
  };
  std::array<std::uint8_t, 4> languages{};
  std::uint16_t language = kEnglish;
  if (request(0, 0, languages) == static_cast<int>(languages.size())) {
    language = static_cast<std::uint16_t>(languages[2] | languages[3] << 8U);
  }
  const int moved = request(index, language, output);
  if (moved < 0) return FailOf(moved);
  returned = static_cast<std::uint32_t>(moved);
  return true;
}

bool LibusbDriver::Bulk(OpenBoard& board, std::uint32_t code, std::span<const std::uint8_t> input,
                        std::span<std::uint8_t> output, std::uint32_t& returned) {
  if (input.size() != kPipeNumberSize) return Fail(kInvalidParameter);
  const UsbPipe* pipe = board.Board().Pipe(LittleEndian(input));
  if (pipe == nullptr || !pipe->IsBulk()) return Fail(kInvalidParameter);
  if (code == kBulkRead && !pipe->IsInput()) return Fail(kInvalidParameter);
  return Transfer(board, *pipe, output, returned);
}

bool LibusbDriver::Transfer(OpenBoard& board, const UsbPipe& pipe, std::span<std::uint8_t> buffer,
                            std::uint32_t& moved) {
  if (!pipe.IsInput() && !board.Board().answersInStep) {
    DropOldAnswers(board.Device(), board.Board().Pipe(kAnswerPipe)->endpoint);
    board.Board().answersInStep = true;
  }
  int count = 0;
  const int error = Move(board.Device(), pipe, buffer, count);
  moved = static_cast<std::uint32_t>(count);
  if (error != LIBUSB_SUCCESS || moved != buffer.size()) board.Board().answersInStep = false;
  if (error == LIBUSB_SUCCESS) return true;
  // A refused transfer leaves the pipe shut; the next one is to find it open.
  if (error == LIBUSB_ERROR_PIPE) libusb_clear_halt(board.Device(), pipe.endpoint);
  return FailOf(error);
}

int LibusbDriver::Move(libusb_device_handle* device, const UsbPipe& pipe,
                       std::span<std::uint8_t> buffer, int& moved) {
  const auto start = std::chrono::steady_clock::now();
  BulkRequest request(bus_.Context(), device, pipe.endpoint, buffer, budget_.Left(start));
  if (const int error = request.Submit(); error != LIBUSB_SUCCESS) return error;
  request.WaitFor(kNoticeable);
  const bool noticed = !request.Ended() && waiting_;
  if (noticed) waiting_(true);
  while (!request.Ended()) request.WaitFor(kTimeLimit);
  if (noticed) waiting_(false);
  moved = request.Moved();
  if (request.Error() == LIBUSB_ERROR_TIMEOUT) {
    budget_.GivenUp(start, std::chrono::steady_clock::now());
  }
  return request.Error();
}

bool LibusbDriver::Fail(std::int32_t error) {
  lastError_ = error;
  return false;
}

bool LibusbDriver::FailOf(int libusbError) {
  bus_.NoteFault();
  return Fail(ErrorCode(libusbError, refused_));
}

}  // namespace kestrel
