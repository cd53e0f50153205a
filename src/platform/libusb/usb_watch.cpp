// The library's messages of boards that come and go.
// SPDX-License-Identifier: MIT
#include "platform/libusb/usb_watch.h"

#include <libusb.h>

#include <utility>

#include "platform/libusb/usb_board.h"

namespace kestrel {

void UsbWatch::Exit::operator()(libusb_context* context) const {
  libusb_exit(context);
}

UsbWatch::UsbWatch(std::function<void()> changed) : changed_(std::move(changed)) {
  libusb_context* context = nullptr;
  if (libusb_init(&context) != LIBUSB_SUCCESS) return;
  context_.reset(context);
  if (Register()) thread_ = std::thread([this] { Wait(); });
}

UsbWatch::~UsbWatch() {
  if (!Runs()) return;
  isEnding_ = true;
  libusb_interrupt_event_handler(context_.get());
  thread_.join();
}

bool UsbWatch::Register() {
  if (libusb_has_capability(LIBUSB_CAP_HAS_HOTPLUG) == 0) return false;
  const auto tell = [](libusb_context* /*context*/, libusb_device* /*device*/,
                       libusb_hotplug_event /*event*/, void* watch) {
    static_cast<UsbWatch*>(watch)->changed_();
    return 0;  // go on
  };
  return libusb_hotplug_register_callback(
             context_.get(), LIBUSB_HOTPLUG_EVENT_DEVICE_ARRIVED | LIBUSB_HOTPLUG_EVENT_DEVICE_LEFT,
             0, kAdapterVendor, LIBUSB_HOTPLUG_MATCH_ANY, LIBUSB_HOTPLUG_MATCH_ANY, tell, this,
             nullptr) == LIBUSB_SUCCESS;
}

// A library that cannot wait any more is not asked in a circle.
void UsbWatch::Wait() {
  while (!isEnding_) {
    const int error = libusb_handle_events(context_.get());
    if (error != LIBUSB_SUCCESS && error != LIBUSB_ERROR_INTERRUPTED) return;
  }
}

}  // namespace kestrel
