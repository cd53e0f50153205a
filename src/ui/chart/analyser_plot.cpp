// The plot of the analyser: its layers, its view and what stands beside the pointer.
// SPDX-License-Identifier: MIT
#include "ui/chart/analyser_plot.h"

#include <QEvent>
#include <QPaintEvent>
#include <QPainter>
#include <algorithm>
#include <cmath>
#include <new>

#include "ui/chart/label_painter.h"
#include "ui/chart/plot_speaker.h"
#include "ui/chart/trace_painter.h"

namespace kestrel {
namespace {

constexpr int kWheelPause = 400;  // ms
constexpr int kDigits = 3;        // of a read-out that knows no bounds

// Rows begin with a line of the fast memory, an odd number of lines apart: what lies one below the
// other does not compete for the same places in it.
QImage BlankPicture(QSize pixels) {
  if (pixels.isEmpty()) return {};  // nobody would release the memory of an image that is none
  constexpr qsizetype kLine = 64;
  constexpr qsizetype kPixel = 4;
  const qsizetype bytesPerLine = ((kPixel * pixels.width() + kLine - 1) / kLine | 1) * kLine;
  const auto size = static_cast<std::size_t>(bytesPerLine * pixels.height());
  auto* memory = static_cast<uchar*>(operator new (size, std::align_val_t{kLine}));
  const auto release = [](void* used) { operator delete (used, std::align_val_t{kLine}); };
  return QImage(memory, pixels.width(), pixels.height(), bytesPerLine, QImage::Format_RGB32,
                release, memory);
}

}  // namespace

AnalyserPlot::AnalyserPlot(QWidget* parent)
    : QWidget(parent), look_(Look::Of(palette())), fonts_(font()) {
  setObjectName(QStringLiteral("analyserPlot"));
  setAttribute(Qt::WA_OpaquePaintEvent);
  setMouseTracking(true);
  setFocusPolicy(Qt::StrongFocus);
  settled_.setSingleShot(true);
  settled_.setInterval(kWheelPause);
  connect(&settled_, &QTimer::timeout, this, [this] { Changed(true); });
  PlotSpeaker::Present();
  navigator_.Follow(scene_);
}

void AnalyserPlot::SetScene(PlotScene scene) {
  scene_ = std::move(scene);
  navigator_.Follow(scene_);
  Redraw();
  if (overlay_.pointer) Point(overlay_.pointerPlace);
  NameView();
  emit ViewChanged();
}

void AnalyserPlot::SetCursor(SceneCursor cursor) {
  Refresh([&] { overlay_.cursor = std::move(cursor); });
  PlotSpeaker::CursorMoved(this);
}

PlotPage AnalyserPlot::Page() const {
  return {scene_, layout_, look_, fonts_};
}

PlotLayout AnalyserPlot::Laid() const {
  return LaidOut(scene_, navigator_.Ranges(), fonts_, size(), ratio_);
}

void AnalyserPlot::LayOut() {
  layout_ = Laid();
}

void AnalyserPlot::Redraw() {
  isPictureValid_ = false;
  LayOut();
  update();
}

// Repaints where the overlay was and where it will be.
void AnalyserPlot::Refresh(const std::function<void()>& change) {
  const QRegion before = OverlayRegion(Page(), overlay_);
  change();
  update(before + OverlayRegion(Page(), overlay_));
}

void AnalyserPlot::Changed(bool isRemembered) {
  if (isRemembered) {
    settled_.stop();
    navigator_.Remember();
  } else {
    settled_.start();
  }
  Redraw();
  emit ViewChanged();
}

void AnalyserPlot::ShowAll() {
  navigator_.ShowAll();
  Changed(true);
}

void AnalyserPlot::GoBack() {
  navigator_.GoBack();
  Redraw();
  emit ViewChanged();
}

void AnalyserPlot::GoForward() {
  navigator_.GoForward();
  Redraw();
  emit ViewChanged();
}

void AnalyserPlot::ShowAcross(const PlotRange& range, bool isRemembered) {
  navigator_.PutAcross(range);
  Changed(isRemembered);
}

void AnalyserPlot::ZoomAcross(double factor) {
  const PlotRange& shown = Ranges().across;
  const AxisMap map(shown, scene_.across.kind, 0, 1);
  const auto& members = overlay_.cursor.members;
  const bool isSeen = !members.empty() && shown.Holds(members[0].x);
  navigator_.ZoomAcross(isSeen ? members[0].x : map.FromPixel(0.5), factor);
  Changed(true);
}

void AnalyserPlot::ZoomUp(double factor) {
  for (std::size_t i = 0; i < scene_.panes.size(); ++i) {
    const AxisMap map(Ranges().up[i], scene_.panes[i].up, 0, 1);
    const bool hasZero = scene_.panes[i].up == AxisKind::Linear && Ranges().up[i].Holds(0);
    navigator_.ZoomUp(i, hasZero ? 0 : map.FromPixel(0.5), factor);
  }
  Changed(true);
}

void AnalyserPlot::DrawPicture(QSize pixels, double ratio) {
  if (ratio != ratio_) {
    ratio_ = ratio;
    isPictureValid_ = false;
    LayOut();
  }
  if (isPictureValid_ && picture_.size() == pixels) return;
  if (picture_.size() != pixels) picture_ = BlankPicture(pixels);
  picture_.setDevicePixelRatio(ratio);
  QPainter below(&picture_);
  PaintGround(below, Page());
  below.end();
  DrawTraces(picture_, Page());
  QPainter above(&picture_);
  PaintPeakLabels(above, Page());
  isPictureValid_ = true;
  ++tracePaints_;
}

void AnalyserPlot::paintEvent(QPaintEvent* event) {
  QPainter painter(this);
  const double ratio = painter.deviceTransform().m11();
  DrawPicture((QSizeF(size()) * ratio).toSize(), ratio);
  painter.setClipRegion(event->region());
  painter.save();
  painter.scale(1 / ratio, 1 / ratio);
  picture_.setDevicePixelRatio(1);
  painter.drawImage(QPoint(0, 0), picture_);
  painter.restore();
  PaintOverlay(painter, Page(), overlay_);
}

void AnalyserPlot::resizeEvent(QResizeEvent* event) {
  Redraw();
  QWidget::resizeEvent(event);
}

void AnalyserPlot::changeEvent(QEvent* event) {
  if (event->type() == QEvent::PaletteChange || event->type() == QEvent::FontChange) {
    look_ = Look::Of(palette());
    fonts_ = LookFonts(font());
    Redraw();
  }
  QWidget::changeEvent(event);
}

std::optional<double> AnalyserPlot::NearestSample(double x, int pane) const {
  if (pane < 0 || pane >= static_cast<int>(scene_.panes.size())) return std::nullopt;
  const auto& traces = scene_.panes[static_cast<std::size_t>(pane)].traces;
  const auto focus =
      std::find_if(traces.begin(), traces.end(), [](const auto& t) { return t.isFocus; });
  const auto trace = focus != traces.end() ? focus : traces.begin();
  if (trace == traces.end() || trace->x.empty()) return std::nullopt;
  const auto after = std::lower_bound(trace->x.begin(), trace->x.end(), x);
  if (after == trace->x.begin()) return *after;
  if (after == trace->x.end()) return trace->x.back();
  return x - *(after - 1) < *after - x ? *(after - 1) : *after;
}

PlotReadOut AnalyserPlot::ReadOutAt(double x, int pane) const {
  if (reader_) return reader_(x, pane);
  PlotReadOut readOut;
  const PlotPane& shown = scene_.panes[static_cast<std::size_t>(pane)];
  const auto text = [](double value) { return SignificantText(value, kDigits); };
  readOut.title = text(x * scene_.across.factor) + ' ' + scene_.across.unit;
  for (const SceneTrace& trace : shown.traces) {
    const auto place = std::lower_bound(trace.x.begin(), trace.x.end(), x);
    const auto index = static_cast<std::size_t>(place - trace.x.begin());
    if (place == trace.x.end() || *place != x || index >= trace.y.size()) continue;
    readOut.rows.push_back({trace.ink, trace.name, text(trace.y[index]) + ' ' + shown.unit});
  }
  return readOut;
}

void AnalyserPlot::NameView() {
  const std::string line = HeadLine(scene_);
  setAccessibleName(line.empty() ? tr("Plot") : QString::fromStdString(line));
}

}  // namespace kestrel
