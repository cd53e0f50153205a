// The adapter boards that are attached at the moment.
// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <memory>
#include <vector>

#include "platform/linux/usb_board.h"

struct libusb_context;

namespace kestrel {

// The adapter boards that are attached at the moment.
class UsbBus {
 public:
  // The n-th attached board with the adapter's vendor number in bus order, from 0; null when there
  // are not so many. Costs no input or output: the library keeps the list of devices up to date.
  [[nodiscard]] std::shared_ptr<UsbBoard> Board(std::size_t number);

 private:
  struct Exit {
    void operator()(libusb_context* context) const;
  };

  [[nodiscard]] bool Started();
  void Refresh();

  std::unique_ptr<libusb_context, Exit> context_;  // made when a board is first asked for
  std::vector<std::shared_ptr<UsbBoard>> boards_;  // in bus order
};

}  // namespace kestrel
