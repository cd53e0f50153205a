// The error of a board that is attached, but that no driver lets programs use.
// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>

namespace kestrel {

// Of an open that failed, beside those of seams/usb_driver.h; not every system has such boards.
inline constexpr std::int32_t kUsbNoDriver = 50;

}  // namespace kestrel
