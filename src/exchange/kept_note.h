// Records of the archive on their way into a file.
// SPDX-License-Identifier: MIT
#pragma once

#include "archive/kept_record.h"
#include "exchange/record_note.h"

namespace kestrel::exchange {

// The record with what was added to it.
[[nodiscard]] NotedRecord Noted(archive::KeptRecord kept);

}  // namespace kestrel::exchange
