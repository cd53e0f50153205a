// Where a secondary window stands, and what it refuses during a capture.
// SPDX-License-Identifier: MIT
#include "ui/parts/secondary_window.h"

#include <QEvent>
#include <QScreen>
#include <algorithm>

#include "ui/parts/fit_screen.h"

namespace kestrel {
namespace {

constexpr int kTwipsPerPixel = 15;  // at 96 pixels an inch, the toolkit's unscaled pixel

}  // namespace

bool RunUnlessCapturing(HandlerEdge& edge, const char* name, const std::function<void()>& handler) {
  bool ran = false;
  edge.RunIdle(name, [&] {
    ran = true;
    handler();
  });
  return ran;
}

QString WhyRefused() {
  return QObject::tr(
      "Not done: the sensor is busy with a capture. Try again when it is complete, or stop it.");
}

SecondaryWindow::SecondaryWindow(const char* name, const QString& title, HandlerEdge& edge,
                                 QWidget* parent, QPoint offsetTwips)
    : QDialog(parent), edge_(edge), offsetTwips_(offsetTwips) {
  setObjectName(name);
  setWindowTitle(title);
}

void SecondaryWindow::ShowInFront() {
  PlaceOnce();
  show();
  raise();
  activateWindow();
}

// Where the user moved it later, it stays. It never begins outside the screen.
void SecondaryWindow::PlaceOnce() {
  if (placed_ || parentWidget() == nullptr) return;
  placed_ = true;
  adjustSize();
  FitScreen(*this);
  const QRect room = parentWidget()->screen()->availableGeometry();
  const QPoint wished = parentWidget()->pos() + offsetTwips_ / kTwipsPerPixel;
  move(std::max(room.left(), std::min(wished.x(), room.right() - width())),
       std::max(room.top(), std::min(wished.y(), room.bottom() - height())));
}

void SecondaryWindow::Change(const char* name, const std::function<void()>& handler) {
  if (!RunUnlessCapturing(edge_, name, handler)) Refused(WhyRefused());
}

bool SecondaryWindow::event(QEvent* event) {
  const bool done = QDialog::event(event);
  // What is read may need more room than what was shown before.
  if (event->type() == QEvent::LayoutRequest && placed_) FitScreen(*this);
  if (event->type() == QEvent::WindowActivate) {
    edge_.Run("Form_Activate", [this] { Form_Activate(); });
  }
  return done;
}

}  // namespace kestrel
