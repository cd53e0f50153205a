// What one move costs while a band or a level is dragged over the plot.
// SPDX-License-Identifier: MIT
// What one move of the pointer costs while it drags an alarm band, or an alarm level, over the
// plot: until lines, labels, read-outs and cross-hair are painted, in the real main window.

#include <QLabel>
#include <chrono>
#include <cstdio>
#include <vector>

#include "device/rec_ctrl.h"
#include "figure.h"
#include "plot_moves.h"
#include "record/capture_data.h"
#include "support/fake_band_overlay.h"
#include "support/given.h"
#include "ui/plot/band_lines.h"

namespace kestrel {
namespace {

constexpr int kMoves = 401;
constexpr double kPromisedMs = 4;
constexpr int kWideBand = 3;

// Six bands, the dragged one half as wide as the record.
void SetBands() {
  for (int band = 1; band <= kAlarmBands; ++band) {
    Given(AlarmBandTable)(kFLowField, band, 0) = 40 * band - 30;
    Given(AlarmBandTable)(kFHighField, band, 0) = 40 * band - 10;
    Given(AlarmBandTable)(Alarm1Field(Axis::X), band, 0) = 168;
    Given(AlarmBandTable)(Alarm2Field(Axis::X), band, 0) = 503;
  }
  Given(AlarmBandTable)(kFHighField, kWideBand, 0) = AlarmBandTable(kFLowField, kWideBand, 0) + 128;
}

// All over the half of the plot in which the wide band can follow, never twice running in the same
// bin or row.
QPointF Place(int move) {
  return {move * 307 % (kPlot.width() / 2 - 20) + 0.5, move * 389 % kPlot.height() + 0.5};
}

class DragBench {
 public:
  DragBench(frm1& window, PictureBox& plot)
      : overlay_(window.Overlay()),
        plot_(plot),
        lines_(LayerOf<BandLines>(plot)),
        readOut_(*window.findChild<QLabel*>("lblCursorX")) {}

  // Drags what lies at this place; the work of each move in ms.
  std::vector<double> Drag(QPointF from) {
    SendMouse(plot_, QEvent::MouseMove, from, Qt::NoButton, false);
    SendMouse(plot_, QEvent::MouseButtonPress, from, Qt::LeftButton, true);
    grabbed_ = grabbed_ && overlay_.Drag().Dragging();
    if (!grabbed_) return {0};
    MoveMs(Place(kMoves));
    std::vector<double> times;
    for (int move = 0; move < kMoves; ++move) times.push_back(MoveMs(Place(move)));
    overlay_.EndDrag();
    SendMouse(plot_, QEvent::MouseButtonRelease, from, Qt::LeftButton, false);
    return times;
  }

  [[nodiscard]] bool Grabbed() const { return grabbed_; }

 private:
  double MoveMs(QPointF at) {
    using Clock = std::chrono::steady_clock;
    const int linesBefore = lines_.Paints();
    const int readOutBefore = readOut_.Paints();
    const auto start = Clock::now();
    SendMouse(plot_, QEvent::MouseMove, at, Qt::NoButton, true);
    while (lines_.Paints() == linesBefore || readOut_.Paints() == readOutBefore) {
      QCoreApplication::processEvents();
    }
    return std::chrono::duration<double, std::milli>(Clock::now() - start).count();
  }

  BandOverlay& overlay_;
  PictureBox& plot_;
  PaintCount lines_;
  PaintCount readOut_;
  bool grabbed_ = true;
};

void Report(const char* what, const std::vector<double>& times) {
  const double median = Median(times);
  Print({.name = std::string("pointer move dragging ") + what + ", 1600 x 900",
         .measured = Amount(median, 2, "ms"),
         .promise = "at most 4 ms",
         .kept = median <= kPromisedMs});
}

int Measure() {
  Program program;
  frm1& window = program.Window();
  Expose(window);
  program.Press("cmdStart");
  PictureBox& plot = *window.findChild<PictureBox*>("pic1");
  EnlargePlot(window, plot);
  SetBands();
  FakeOverlayOwner owner;
  window.Overlay().SetOwner(&owner);
  window.Overlay().PlotBands();
  QApplication::processEvents();

  DragBench bench(window, plot);
  const double low = AlarmBandTable(kFLowField, kWideBand, 0);
  const double alarm1 = AlarmBandTable(Alarm1Field(Axis::X), kWideBand, 0) * gRecCtrl->gLsb();
  const int drawnBefore = plot.TracePaintCount();
  const std::vector<double> band = bench.Drag(plot.ToPixels({low, 0.9}));
  const std::vector<double> level = bench.Drag(plot.ToPixels({low + 15, alarm1}));
  const bool dragged = plot.size() == kPlot && Buff.width == kFftWidth && bench.Grabbed() &&
                       plot.TracePaintCount() == drawnBefore;
  window.Overlay().SetOwner(nullptr);
  Report("a band", band);
  Report("an alarm level", level);
  return WasDone(dragged, "nothing was dragged, or traces were drawn again");
}

}  // namespace
}  // namespace kestrel

int main(int argc, char** argv) {
  if (!qEnvironmentVariableIsSet("QT_QPA_PLATFORM")) qputenv("QT_QPA_PLATFORM", "offscreen");
  const QApplication application(argc, argv);
  return kestrel::Measure();
}
