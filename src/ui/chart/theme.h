// Light, dark, or as the system has it: for the whole program.
// SPDX-License-Identifier: MIT
#pragma once

namespace kestrel {

enum class Theme { System, Light, Dark };

// Windows that are open change at once.
void ApplyTheme(Theme theme);

}  // namespace kestrel
