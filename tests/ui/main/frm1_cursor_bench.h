// The main window's plot under pointer and keys.
// SPDX-License-Identifier: MIT
#pragma once

#include <QAccessible>
#include <QImage>
#include <QMouseEvent>
#include <algorithm>

#include "numeric/number_format.h"
#include "record/capture_data.h"
#include "ui/main/frm1.h"
#include "ui/plot/cross_hair.h"
#include "ui/rendering.h"
#include "ui/window_bench.h"

namespace kestrel {

class Frm1Cursor : public WindowBench {
 protected:
  PictureBox& Plot() { return Find<PictureBox>("pic1"); }

  // To a place in the plot's coordinates.
  void MovePointer(double x, double y) {
    const QPointF at = Plot().ToPixels({x, y});
    QMouseEvent event(QEvent::MouseMove, at, Plot().mapToGlobal(at), Qt::NoButton, Qt::NoButton,
                      Qt::NoModifier);
    QApplication::sendEvent(&Plot(), &event);
  }
  void LeavePlot() {
    QEvent leave(QEvent::Leave);
    QApplication::sendEvent(&Plot(), &leave);
  }
  QWidget& CrossHairWidget() {
    for (QObject* child : Plot().children()) {
      if (auto* crossHair = dynamic_cast<CrossHair*>(child)) return *crossHair;
    }
    throw std::runtime_error("no cross-hair");
  }
  void Key(Qt::Key key) { QTest::keyClick(&Plot(), key); }

  void ExpectReadOuts(const char* x, const char* frequency, const char* y) {
    EXPECT_EQ(Text("lblCursorX"), x);
    EXPECT_EQ(Text("LblFreq"), frequency);
    EXPECT_EQ(Text("lblCursorY"), y);
  }
  QImage Picture() {
    QApplication::processEvents();
    return RenderOf(Plot(), 1);
  }
};

}  // namespace kestrel
