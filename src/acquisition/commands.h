// Kestrel evaluation program
// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>

namespace kestrel {

// Words for the COMMAND register.
inline constexpr std::int32_t kClearStatusCommand = 0x0010;
inline constexpr std::int32_t kCaptureCommand = 0x0800;
inline constexpr std::int32_t kRetrieveRecordCommand = 0x2000;

// STATUS bit 7.
inline constexpr std::int32_t kDataReadyFlag = 0x0080;

}  // namespace kestrel
