// Which devices on the buses are adapter boards, in which order.
// SPDX-License-Identifier: MIT
#include "platform/libusb/usb_bus.h"

#include <libusb.h>

#include <algorithm>
#include <span>
#include <utility>

namespace kestrel {
namespace {

// The devices on all buses, held for as long as the list is looked at.
class DeviceList {
 public:
  explicit DeviceList(libusb_context* context) : count_(libusb_get_device_list(context, &list_)) {}
  ~DeviceList() { libusb_free_device_list(list_, 1); }
  DeviceList(const DeviceList&) = delete;
  DeviceList& operator=(const DeviceList&) = delete;

  [[nodiscard]] std::span<libusb_device*> Devices() const {
    return {list_, count_ > 0 ? static_cast<std::size_t>(count_) : 0};
  }

 private:
  libusb_device** list_ = nullptr;
  ssize_t count_;
};

bool IsAdapterVendor(libusb_device* device) {
  libusb_device_descriptor descriptor{};
  return libusb_get_device_descriptor(device, &descriptor) == LIBUSB_SUCCESS &&
         descriptor.idVendor == kAdapterVendor;
}

}  // namespace

void UsbBus::Exit::operator()(libusb_context* context) const {
  libusb_exit(context);
}

bool UsbBus::Started() {
  if (context_) return true;
  libusb_context* context = nullptr;
  if (libusb_init(&context) != LIBUSB_SUCCESS) return false;
  context_.reset(context);
  isListLive_ = rules_.isListLive.value_or(libusb_has_capability(LIBUSB_CAP_HAS_HOTPLUG) != 0);
  return true;
}

bool UsbBus::IsTaken(std::size_t number) const {
  return rules_.isTaken && rules_.isTaken(number);
}

// A board that the other driver leads to is none that the library can open. Without any such board,
// one that cannot be opened is here to be told of.
bool UsbBus::IsOurs(libusb_device* device) const {
  bool isAnyTaken = false;
  for (std::size_t n = 0; n < kNumbers; ++n) isAnyTaken = isAnyTaken || IsTaken(n);
  if (!isAnyTaken) return true;
  libusb_device_handle* handle = nullptr;
  const int opened = libusb_open(device, &handle);
  if (opened == LIBUSB_SUCCESS) libusb_close(handle);
  return opened != LIBUSB_ERROR_NOT_SUPPORTED;
}

// A board that stays attached keeps its object, and with it what was learnt of it.
UsbBus::Boards UsbBus::Attached() {
  const DeviceList list(context_.get());
  Boards attached;
  for (libusb_device* device : list.Devices()) {
    if (!IsAdapterVendor(device)) continue;
    const auto known = std::find_if(boards_.begin(), boards_.end(),
                                    [&](const auto& board) { return board->Device() == device; });
    if (known != boards_.end()) {
      attached.push_back(*known);
    } else if (IsOurs(device)) {
      attached.push_back(std::make_shared<UsbBoard>(device, ++pluggings_));
    }
  }
  std::sort(attached.begin(), attached.end(),
            [](const auto& a, const auto& b) { return a->IsBefore(*b); });
  return attached;
}

void UsbBus::Refresh() {
  const auto now = std::chrono::steady_clock::now();
  if (!isListLive_ && listed_ && now - *listed_ < rules_.listAge) return;
  listed_ = now;
  const Boards before = std::exchange(boards_, Attached());
  const auto isIn = [](const Boards& boards, const std::shared_ptr<UsbBoard>& board) {
    return std::find(boards.begin(), boards.end(), board) != boards.end();
  };
  Boards ousted;
  for (std::size_t n = 0; n < kNumbers; ++n) {
    std::shared_ptr<UsbBoard>& board = numbers_[n].board;
    if (board && IsTaken(n)) ousted.push_back(board);
    if (board && (IsTaken(n) || !isIn(boards_, board))) board.reset();
  }
  for (const std::shared_ptr<UsbBoard>& board : boards_) {
    if (!isIn(before, board) || isIn(ousted, board)) Give(board);
  }
}

// Their places keep their numbers.
void UsbBus::Forget() {
  listed_.reset();
  boards_.clear();
  for (Number& number : numbers_) number.board.reset();
}

// The number of its place, else one that was never used, else the first that is free.
void UsbBus::Give(const std::shared_ptr<UsbBoard>& board) {
  const auto first = [this](const auto& fits) {
    return std::find_if(numbers_.begin(), numbers_.end(), [&](const Number& number) {
      return !number.board && fits(number) &&
             !IsTaken(static_cast<std::size_t>(&number - numbers_.data()));
    });
  };
  auto found = first([&](const Number& number) { return number.place == board->Place(); });
  if (found == numbers_.end()) found = first([](const Number& number) { return !number.place; });
  if (found == numbers_.end()) found = first([](const Number& /*number*/) { return true; });
  if (found != numbers_.end()) *found = {board->Place(), board};
}

std::shared_ptr<UsbBoard> UsbBus::Board(std::size_t number) {
  if (number >= kNumbers || !Started()) return nullptr;
  Refresh();
  return numbers_[number].board;
}

std::shared_ptr<UsbBoard> UsbBus::BoardToUse(std::size_t number) {
  if (number >= kNumbers || !Started()) return nullptr;
  const auto before = std::exchange(lastUse_, std::chrono::steady_clock::now());
  if (!isListLive_) {
    if (lastUse_ - before >= rules_.shortestPlug) {
      Forget();
    } else if (numbers_[number].board && !IsTaken(number)) {
      return numbers_[number].board;
    }
  }
  return Board(number);
}

}  // namespace kestrel
