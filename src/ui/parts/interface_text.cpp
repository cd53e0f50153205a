// The interface's name, place and state put together.
// SPDX-License-Identifier: MIT
#include "ui/parts/interface_text.h"

#include "app/program_state.h"
#include "numeric/number_format.h"
#include "transport/usb_adapter.h"

namespace kestrel {

InterfaceText DescribeInterface() {
  if (InterfaceType == kParallelPort) {
    return {"Parallel port 0x" + Hex(PortAddress), "The sensor is wired to the parallel port."};
  }
  if (InterfaceType == kUsbAdapter && UsbPresent) {
    const AdapterRecord& board = SelectedAdapter;
    return {"USB adapter " + board.deviceName + " (" + board.string2 + ")",
            board.boardType + ", firmware " +
                FixedNumber(static_cast<double>(board.firmwareVersion), 1) + ", USB " +
                board.usbVersion};
  }
  if (InterfaceType == kUsbAdapter) {
    return {"USB adapter lost", "The next capture looks for it again."};
  }
  return {"No interface selected", "Choose one from the Interface menu."};
}

}  // namespace kestrel
