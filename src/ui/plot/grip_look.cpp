// Shapes and hints for each kind of grip.
// SPDX-License-Identifier: MIT
#include "ui/plot/grip_look.h"

#include <QCoreApplication>

namespace kestrel {
namespace {

Qt::CursorShape GripShape(Grip grip) {
  switch (grip) {
    case Grip::Band:
      return Qt::SizeHorCursor;
    case Grip::Edge:
      return Qt::SplitHCursor;
    case Grip::Level:
      return Qt::SizeVerCursor;
    default:
      return Qt::ArrowCursor;
  }
}

QString GripHint(Grip grip) {
  const auto tr = [](const char* text) { return QCoreApplication::translate("PlotPanel", text); };
  switch (grip) {
    case Grip::Band:
      return tr("Drag to move the band, with Shift to move this edge only");
    case Grip::Edge:
      return tr("Drag to move this edge only");
    case Grip::Level:
      return tr("Drag to set the alarm level");
    default:
      return {};
  }
}

}  // namespace

void GripLook::Show(Grip grip) {
  if (grip == grip_) return;
  grip_ = grip;
  picture_.setToolTip(GripHint(grip));
  if (grip == Grip::None) {
    picture_.unsetCursor();
  } else {
    picture_.setCursor(GripShape(grip));
  }
}

}  // namespace kestrel
