// A dark theme as desktops have it.
// SPDX-License-Identifier: MIT
#pragma once

#include <QColor>
#include <QPalette>

namespace kestrel {

// A dark theme as desktops have it. The program itself follows the system's palette.
inline QPalette DarkPalette() {
  QPalette palette(QColor(0x35, 0x37, 0x3B), QColor(0x2A, 0x2C, 0x30));
  palette.setColor(QPalette::Base, QColor(0x22, 0x24, 0x27));
  palette.setColor(QPalette::Text, QColor(0xE6, 0xE8, 0xEA));
  palette.setColor(QPalette::WindowText, QColor(0xE6, 0xE8, 0xEA));
  palette.setColor(QPalette::ButtonText, QColor(0xE6, 0xE8, 0xEA));
  palette.setColor(QPalette::Highlight, QColor(0x3A, 0x6E, 0xA5));
  for (const auto role : {QPalette::Text, QPalette::WindowText, QPalette::ButtonText}) {
    palette.setColor(QPalette::Disabled, role, QColor(0x8A, 0x8D, 0x92));
  }
  return palette;
}

}  // namespace kestrel
