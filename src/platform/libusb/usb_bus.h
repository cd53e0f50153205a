// The adapter boards that are attached at the moment.
// SPDX-License-Identifier: MIT
#pragma once

#include <array>
#include <chrono>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <utility>
#include <vector>

#include "platform/libusb/usb_board.h"

struct libusb_context;

namespace kestrel {

// What differs between systems.
struct UsbBusRules {
  // Whether a number belongs to a board that another driver of the system leads to. None: to none.
  std::function<bool(std::size_t number)> isTaken = {};
  // Whether the library is told of boards that come and go. Unknown: it is asked.
  std::optional<bool> isListLive = {};
  // A cable is not pulled and put back in less.
  std::chrono::milliseconds shortestPlug{1000};
  // How long a list holds that is not live.
  std::chrono::milliseconds listAge{200};
};

// The adapter boards that are attached at the moment, under the numbers 0 to 3. A board keeps its
// number for as long as it is attached, and its place on the bus keeps the number while it is away:
// no other board gets it as long as there are numbers that were never used. Boards that are found
// at the same time are numbered in bus order.
//
// A library that is not told of boards that come and go asks the whole system for them each time.
// What it said then holds for a moment, and for boards in use until one of them fails; after a
// pause in which a cable could have been pulled and put back, each board counts as plugged in anew.
class UsbBus {
 public:
  static constexpr std::size_t kNumbers = 4;

  explicit UsbBus(UsbBusRules rules = {}) : rules_(std::move(rules)) {}

  // The attached board of this number; null when there is none.
  [[nodiscard]] std::shared_ptr<UsbBoard> Board(std::size_t number);

  // The same, to be opened.
  [[nodiscard]] std::shared_ptr<UsbBoard> BoardToUse(std::size_t number);
  void NoteUse() { lastUse_ = std::chrono::steady_clock::now(); }
  // A board could not be opened, or failed: it may be another one by now.
  void NoteFault() {
    if (!isListLive_) Forget();
  }

  // The library's, once a board was asked for.
  [[nodiscard]] libusb_context* Context() const { return context_.get(); }

 private:
  struct Exit {
    void operator()(libusb_context* context) const;
  };
  struct Number {
    std::optional<UsbPlace> place;    // of the board that had it last
    std::shared_ptr<UsbBoard> board;  // null while it is away
  };
  using Boards = std::vector<std::shared_ptr<UsbBoard>>;

  [[nodiscard]] bool Started();
  void Refresh();
  void Forget();
  [[nodiscard]] Boards Attached();
  [[nodiscard]] bool IsTaken(std::size_t number) const;
  [[nodiscard]] bool IsOurs(libusb_device* device) const;
  void Give(const std::shared_ptr<UsbBoard>& board);

  UsbBusRules rules_;
  bool isListLive_ = true;
  std::chrono::steady_clock::time_point lastUse_;
  std::optional<std::chrono::steady_clock::time_point> listed_;
  std::unique_ptr<libusb_context, Exit> context_;  // made when a board is first asked for
  Boards boards_;                                  // in bus order, those without a number too
  std::array<Number, kNumbers> numbers_;
  std::uint32_t pluggings_ = 0;
};

}  // namespace kestrel
