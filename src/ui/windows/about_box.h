// The box that tells the program's name and version.
// SPDX-License-Identifier: MIT
#pragma once

#include <QWidget>

namespace kestrel {

// Opens a box over the window that tells the program's name and version; it closes itself.
void ShowAboutBox(QWidget& window);

}  // namespace kestrel
