// Submits a bulk transfer and handles the library's events until it has ended.
// SPDX-License-Identifier: MIT
#include "platform/libusb/bulk_request.h"

#include <libusb.h>

namespace kestrel {

void BulkRequest::Free::operator()(libusb_transfer* transfer) const {
  libusb_free_transfer(transfer);
}

BulkRequest::BulkRequest(libusb_context* context, libusb_device_handle* device,
                         std::uint8_t endpoint, std::span<std::uint8_t> buffer,
                         std::chrono::milliseconds limit)
    : context_(context), transfer_(libusb_alloc_transfer(0)) {
  const auto end = [](libusb_transfer* transfer) { *static_cast<int*>(transfer->user_data) = 1; };
  libusb_fill_bulk_transfer(transfer_.get(), device, endpoint, buffer.data(),
                            static_cast<int>(buffer.size()), end, &ended_,
                            static_cast<unsigned>(limit.count()));
}

int BulkRequest::Submit() {
  return libusb_submit_transfer(transfer_.get());
}

// A library that cannot handle its events any more still ends a transfer that is called off.
void BulkRequest::WaitFor(std::chrono::milliseconds time) {
  const auto deadline = std::chrono::steady_clock::now() + time;
  while (!Ended()) {
    const auto left = std::chrono::duration_cast<std::chrono::microseconds>(
        deadline - std::chrono::steady_clock::now());
    if (left.count() <= 0) return;
    timeval wait{};  // its numbers are of other types elsewhere
    wait.tv_sec = static_cast<decltype(wait.tv_sec)>(left.count() / 1000000);
    wait.tv_usec = static_cast<decltype(wait.tv_usec)>(left.count() % 1000000);
    const int error = libusb_handle_events_timeout_completed(context_, &wait, &ended_);
    if (error != LIBUSB_SUCCESS && error != LIBUSB_ERROR_INTERRUPTED) {
      libusb_cancel_transfer(transfer_.get());
    }
  }
}

int BulkRequest::Error() const {
  switch (transfer_->status) {
    case LIBUSB_TRANSFER_COMPLETED:
      return LIBUSB_SUCCESS;
    case LIBUSB_TRANSFER_TIMED_OUT:
      return LIBUSB_ERROR_TIMEOUT;
    case LIBUSB_TRANSFER_STALL:
      return LIBUSB_ERROR_PIPE;
    case LIBUSB_TRANSFER_OVERFLOW:
      return LIBUSB_ERROR_OVERFLOW;
    case LIBUSB_TRANSFER_NO_DEVICE:
      return LIBUSB_ERROR_NO_DEVICE;
    default:
      return LIBUSB_ERROR_IO;
  }
}

int BulkRequest::Moved() const {
  return transfer_->actual_length;
}

}  // namespace kestrel
