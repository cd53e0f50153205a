// The pictures that need an archive: weeks of a machine, made for them.
// SPDX-License-Identifier: MIT
#pragma once

#include <QSize>

#include "studio.h"

namespace kestrel {

inline constexpr QSize kAnalyserSize(1400, 820);

void DrawArchive(Gallery& gallery);

}  // namespace kestrel
