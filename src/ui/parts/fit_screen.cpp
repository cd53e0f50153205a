// Scroll bars for windows that are larger than the screen.
// SPDX-License-Identifier: MIT
#include "ui/parts/fit_screen.h"

#include <QPointer>
#include <QScreen>
#include <QScrollArea>
#include <QScrollBar>
#include <QVBoxLayout>

namespace kestrel {
namespace {

constexpr const char* kArea = "scrContent";
constexpr QSize kFrame(4, 30);  // of the window manager
bool endlessScreen = false;     // AssumeEndlessScreen

// It takes no focus: Tab scrolls to what it comes to. The window goes on painting its ground
// itself, since some read the sensor once they are painted.
QScrollArea* MakeArea(QWidget& window, QWidget* content) {
  auto* area = new QScrollArea(&window);
  area->setObjectName(kArea);
  area->setAccessibleName(QScrollArea::tr("Content of the window"));
  area->setFrameShape(QFrame::NoFrame);
  area->setFocusPolicy(Qt::NoFocus);
  area->setWidgetResizable(true);
  area->setWidget(content);
  content->setAutoFillBackground(false);
  area->viewport()->setAutoFillBackground(false);
  return area;
}

QSize SizeWithBars(const QScrollArea& area) {
  const QSize bars(area.verticalScrollBar()->sizeHint().width(),
                   area.horizontalScrollBar()->sizeHint().height());
  return area.widget()->sizeHint() + bars;
}

}  // namespace

void AssumeEndlessScreen() {
  endlessScreen = true;
}

QSize RoomOnScreen(const QWidget& window) {
  if (endlessScreen) return {QWIDGETSIZE_MAX, QWIDGETSIZE_MAX};
  return window.screen()->availableGeometry().size() - kFrame;
}

bool FitsOnScreen(const QWidget& window) {
  const QSize needed = window.minimumSizeHint().expandedTo(window.minimumSize());
  const QSize room = RoomOnScreen(window);
  return needed.width() <= room.width() && needed.height() <= room.height();
}

// The content stays within the window all along, so that the tab order stays as it is.
void FitScreen(QDialog& window) {
  if (window.findChild<QScrollArea*>(kArea) != nullptr || window.layout() == nullptr) return;
  window.ensurePolished();
  if (FitsOnScreen(window)) return;
  const QPointer<QWidget> focused = window.focusWidget();
  auto* content = new QWidget(&window);
  window.setMinimumSize(0, 0);
  content->setLayout(window.layout());
  QScrollArea* area = MakeArea(window, content);
  auto* all = new QVBoxLayout(&window);
  all->setContentsMargins(0, 0, 0, 0);
  all->addWidget(area);
  if (focused) focused->setFocus();  // the move has taken it away
  window.resize(SizeWithBars(*area).boundedTo(RoomOnScreen(window)));
}

void FitScreen(QMainWindow& window) {
  window.ensurePolished();
  if (!FitsOnScreen(window)) {
    window.setCentralWidget(MakeArea(window, window.takeCentralWidget()));
  }
  window.resize(window.size().boundedTo(RoomOnScreen(window)));
}

}  // namespace kestrel
