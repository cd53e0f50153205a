// Windows that fit the screen they are shown on.
// SPDX-License-Identifier: MIT
#pragma once

#include <QDialog>
#include <QMainWindow>

namespace kestrel {

// For pictures drawn without a screen: every window has all the room it asks for.
void AssumeEndlessScreen();

// Room for a window's content on its screen, in the toolkit's unscaled pixels.
[[nodiscard]] QSize RoomOnScreen(const QWidget& window);

// Whether what the window needs at least has room on its screen.
[[nodiscard]] bool FitsOnScreen(const QWidget& window);

// Where the screen is too small for a window, as with a large scale or a large font, its content
// scrolls. To be asked before the window is shown; the window is left as it is where it fits.
void FitScreen(QDialog& window);
void FitScreen(QMainWindow& window);

}  // namespace kestrel
