// Where a secondary window stands, and what it refuses during a capture.
// SPDX-License-Identifier: MIT
#include "ui/parts/secondary_window.h"

#include <QEvent>
#include <QScreen>
#include <QWindow>
#include <algorithm>
#include <optional>

#include "ui/parts/fit_screen.h"

namespace kestrel {
namespace {

constexpr int kTwipsPerPixel = 15;  // at 96 pixels an inch, the toolkit's unscaled pixel
constexpr const char* kPlot = "pic1";

struct Surroundings {
  QRect room;  // of the screen
  QRect main;  // with its frame
  QRect plot;
};

Surroundings Around(const QWidget& main) {
  const auto* plot = main.findChild<const QWidget*>(kPlot);
  return {.room = main.screen()->availableGeometry(),
          .main = main.frameGeometry(),
          .plot = plot == nullptr ? main.frameGeometry()
                                  : QRect(plot->mapToGlobal(QPoint()), plot->size())};
}

// Left edge of a window as wide as that, frame and all, which leaves the plot free and stands for
// the most part beside the main window; none where the screen has no room for it.
std::optional<int> BesideThePlot(const Surroundings& around, int width) {
  const int right = std::min(around.main.right() + 1, around.room.right() + 1 - width);
  const bool isFreeRight =
      right > around.plot.right() && right + width - around.main.right() > width / 2;
  if (isFreeRight) return right;
  const int left = std::max(around.main.left() - width, around.room.left());
  const bool isFreeLeft =
      left + width <= around.plot.left() && around.main.left() - left > width / 2;
  return isFreeLeft ? std::optional(left) : std::nullopt;
}

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
    : QDialog(parent, Qt::Window), edge_(edge), offsetTwips_(offsetTwips) {
  setObjectName(name);
  setWindowTitle(title);
  setAttribute(Qt::WA_QuitOnClose, false);
}

void SecondaryWindow::ShowInFront() {
  PlaceOnce();
  show();
  raise();
  activateWindow();
}

// The system keeps a window that belongs to another one in front of it.
void SecondaryWindow::StandOnItsOwn() {
  create();
  windowHandle()->setTransientParent(nullptr);
}

// Where the user moved it later, it stays. It never begins outside the screen.
void SecondaryWindow::PlaceOnce() {
  if (placed_ || parentWidget() == nullptr) return;
  placed_ = true;
  adjustSize();
  FitScreen(*this);
  StandOnItsOwn();
  const Surroundings around = Around(*parentWidget());
  const QRect room = around.room;
  const int frame = around.main.width() - parentWidget()->width();
  const QPoint wished = parentWidget()->pos() + offsetTwips_ / kTwipsPerPixel;
  const int x = BesideThePlot(around, width() + frame).value_or(wished.x());
  move(std::max(room.left(), std::min(x, room.right() - width())),
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
