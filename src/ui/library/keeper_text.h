// What a keeper's state means, in words.
// SPDX-License-Identifier: MIT
#pragma once

#include <QString>

#include "archive/keeper.h"

namespace kestrel {

// "1 record", "3 records".
[[nodiscard]] QString CountOf(std::int64_t count, const QString& one, const QString& many);

// What stands in the way, what waits and what the size limit removed, with the cure; empty while
// all is well.
[[nodiscard]] QString KeeperText(const archive::KeeperState& state);

}  // namespace kestrel
