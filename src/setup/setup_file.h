// Set-ups as files that people can read: bytes in, bytes out.
// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <string>
#include <string_view>

#include "exchange/outcome.h"
#include "setup/setup.h"

namespace kestrel::setup {

inline constexpr const char* kSetupExtension = ".setup.json";
inline constexpr std::size_t kLargestSetupFile = 262144;  // bytes

// JSON, a line a register and a line a band, with what each word means beside it. The same set-up
// makes the same bytes.
[[nodiscard]] std::string SetupFileText(const Setup& setup);

// The set-up of a file, whole or not at all: what stands there must be complete, named once and
// within its register. The meanings beside the words are for people and are not read. A fault names
// the file, the line or the field, and the value.
[[nodiscard]] exchange::Exchanged<Setup> ReadSetupFile(const std::string& file,
                                                       std::string_view bytes);

}  // namespace kestrel::setup
