// Which devices on the buses are adapter boards, in which order.
// SPDX-License-Identifier: MIT
#include "platform/linux/usb_bus.h"

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
  return true;
}

// A board that stays attached keeps its object, and with it what was learnt of it.
UsbBus::Boards UsbBus::Attached() {
  const DeviceList list(context_.get());
  Boards attached;
  for (libusb_device* device : list.Devices()) {
    if (!IsAdapterVendor(device)) continue;
    const auto known = std::find_if(boards_.begin(), boards_.end(),
                                    [&](const auto& board) { return board->Device() == device; });
    attached.push_back(known != boards_.end() ? *known
                                              : std::make_shared<UsbBoard>(device, ++pluggings_));
  }
  std::sort(attached.begin(), attached.end(),
            [](const auto& a, const auto& b) { return a->IsBefore(*b); });
  return attached;
}

void UsbBus::Refresh() {
  const Boards before = std::exchange(boards_, Attached());
  const auto isIn = [](const Boards& boards, const std::shared_ptr<UsbBoard>& board) {
    return std::find(boards.begin(), boards.end(), board) != boards.end();
  };
  for (Number& number : numbers_) {
    if (number.board && !isIn(boards_, number.board)) number.board.reset();
  }
  for (const std::shared_ptr<UsbBoard>& board : boards_) {
    if (!isIn(before, board)) Give(board);
  }
}

// The number of its place, else one that was never used, else the first that is free.
void UsbBus::Give(const std::shared_ptr<UsbBoard>& board) {
  const auto first = [this](const auto& fits) {
    return std::find_if(numbers_.begin(), numbers_.end(),
                        [&](const Number& number) { return !number.board && fits(number); });
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

}  // namespace kestrel
