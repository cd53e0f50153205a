// The main window with a spectrum, and an editor that shows six bands over it.
// SPDX-License-Identifier: MIT
#pragma once

#include <QImage>
#include <QMouseEvent>
#include <cmath>
#include <stdexcept>

#include "support/fake_band_overlay.h"
#include "support/given.h"
#include "ui/main/frm1.h"
#include "ui/plot/band_lines.h"
#include "ui/rendering.h"
#include "ui/window_bench.h"

namespace kestrel {

inline constexpr QRgb kAmber = 0xFFFFE600;
inline constexpr QRgb kRed = 0xFFE60000;
inline constexpr QRgb kCyan = 0xFF00FFFF;
inline constexpr double kGPerLsb = 0.0011921;  // range 0 to 70 g, as the sensor starts

// The main window with a spectrum, and an editor that shows six bands over it.
class OverlayWindowBench : public WindowBench {
 protected:
  // A spectrum, and over it six bands 40 bins apart and 20 wide, with levels near 0.2 and 0.6 g.
  void StartWithBands() {
    Start();
    Window().resize(1240, 690);  // all of the plot in sight, however small the screen
    ChooseShortCaptures();
    Press("cmdStart");
    for (int band = 1; band <= 6; ++band) {
      Given(AlarmBandTable)(kFLowField, band, 0) = 40 * band - 30;
      Given(AlarmBandTable)(kFHighField, band, 0) = 40 * band - 10;
      Given(AlarmBandTable)(Alarm1Field(Axis::X), band, 0) = 168;
      Given(AlarmBandTable)(Alarm2Field(Axis::X), band, 0) = 503;
    }
    owner_.keeps = true;
    Window().Overlay().SetOwner(&owner_);
    Window().Overlay().PlotBands();
    QApplication::processEvents();
  }

  PictureBox& Plot() { return Find<PictureBox>("pic1"); }
  QWidget& LinesWidget() {
    for (QObject* child : Plot().children()) {
      if (auto* lines = dynamic_cast<BandLines*>(child)) return *lines;
    }
    throw std::runtime_error("no band lines");
  }
  QLabel& Label(const char* name) { return Find<QLabel>(name); }

  void Mouse(QEvent::Type type, double x, double y, bool held,
             Qt::KeyboardModifiers keys = Qt::NoModifier) {
    const QPointF at = Plot().ToPixels({x, y});
    const auto button = type == QEvent::MouseMove ? Qt::NoButton : Qt::LeftButton;
    QMouseEvent event(type, at, Plot().mapToGlobal(at), button,
                      held ? Qt::LeftButton : Qt::NoButton, keys);
    QApplication::sendEvent(&Plot(), &event);
  }
  void Hover(double x, double y) { Mouse(QEvent::MouseMove, x, y, false); }
  void Grab(double x, double y) {
    Hover(x, y);
    Mouse(QEvent::MouseButtonPress, x, y, true);
  }
  void Pull(double x, double y, Qt::KeyboardModifiers keys = Qt::NoModifier) {
    Mouse(QEvent::MouseMove, x, y, true, keys);
  }
  void Release(double x, double y) { Mouse(QEvent::MouseButtonRelease, x, y, false); }

  const OverlayLine& Line(int group, int band) { return Window().Overlay().Lines()(group, band); }
  DragMode Mode() { return Window().Overlay().Drag().Mode(); }

  QImage Picture() {
    QApplication::processEvents();
    return RenderOf(Plot(), 1);
  }
  int Column(double x) { return static_cast<int>(std::floor(x / 255 * Plot().width())); }
  int Row(double g) { return static_cast<int>(std::floor((1 - g) * Plot().height())); }

  static int CountOf(const QImage& image, QRgb colour) {
    int count = 0;
    for (int y = 0; y < image.height(); ++y) {
      for (int x = 0; x < image.width(); ++x) count += image.pixel(x, y) == colour ? 1 : 0;
    }
    return count;
  }

  void ExpectDragUndone() {
    EXPECT_EQ(Mode(), DragMode::Idle);
    EXPECT_EQ(Line(1, 2).x1, 50);
    EXPECT_EQ(Line(2, 2).x1, 70);
    EXPECT_TRUE(owner_.edges.empty());
    EXPECT_EQ(AlarmBandTable(kFLowField, 2, 0), 50);
  }

  FakeOverlayOwner owner_;
};

}  // namespace kestrel
