// How the height of bars follows what is in them.
// SPDX-License-Identifier: MIT
#include "ui/study/scrolling_bars.h"

#include <QEvent>
#include <QScrollBar>

namespace kestrel {

ScrollingBars::ScrollingBars(const QString& name, QWidget* bars) {
  setObjectName(name);
  setFrameShape(QFrame::NoFrame);
  setWidgetResizable(true);
  setVerticalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
  setFocusPolicy(Qt::NoFocus);
  setWidget(bars);
  FitHeight();
}

bool ScrollingBars::eventFilter(QObject* watched, QEvent* event) {
  if (watched == widget() && event->type() == QEvent::LayoutRequest) FitHeight();
  return QScrollArea::eventFilter(watched, event);
}

void ScrollingBars::resizeEvent(QResizeEvent* event) {
  QScrollArea::resizeEvent(event);
  FitHeight();
}

void ScrollingBars::FitHeight() {
  const bool scrolls = widget()->minimumSizeHint().width() > width();
  setFixedHeight(widget()->sizeHint().height() +
                 (scrolls ? horizontalScrollBar()->sizeHint().height() : 0));
}

}  // namespace kestrel
