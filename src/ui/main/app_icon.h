// The program's icon, painted at any size.
// SPDX-License-Identifier: MIT
#pragma once

#include <QIcon>

namespace kestrel {

// A spectrum under its two thresholds. The installed picture files show the same.
[[nodiscard]] QIcon AppIcon();

}  // namespace kestrel
