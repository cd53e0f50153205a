// The adapter boards that are attached at the moment.
// SPDX-License-Identifier: MIT
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <optional>
#include <vector>

#include "platform/linux/usb_board.h"

struct libusb_context;

namespace kestrel {

// The adapter boards that are attached at the moment, under the numbers 0 to 3. A board keeps its
// number for as long as it is attached, and its place on the bus keeps the number while it is away:
// no other board gets it as long as there are numbers that were never used. Boards that are found
// at the same time are numbered in bus order.
class UsbBus {
 public:
  static constexpr std::size_t kNumbers = 4;

  // The attached board of this number; null when there is none. Costs no input or output: the
  // library keeps the list of devices up to date.
  [[nodiscard]] std::shared_ptr<UsbBoard> Board(std::size_t number);

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
  [[nodiscard]] Boards Attached();
  void Give(const std::shared_ptr<UsbBoard>& board);

  std::unique_ptr<libusb_context, Exit> context_;  // made when a board is first asked for
  Boards boards_;                                  // in bus order, those without a number too
  std::array<Number, kNumbers> numbers_;
  std::uint32_t pluggings_ = 0;
};

}  // namespace kestrel
