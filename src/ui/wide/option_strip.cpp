// Painting the rate options.
// SPDX-License-Identifier: MIT
#include "ui/wide/option_strip.h"

#include <QEvent>
#include <QPainter>
#include <algorithm>
#include <cmath>
#include <utility>

#include "analysis/joined.h"
#include "ui/chart/tabular_text.h"
#include "ui/study/text_table.h"

namespace kestrel {
namespace {

constexpr double kThin = 0.28;  // of a row: what a capture holds
constexpr double kThick = 0.8;  // what is used of it
constexpr double kEdge = 12;
constexpr double kChipGap = 8;
constexpr double kChipPad = 4;

QString SpokenOf(const std::vector<study::OptionLane>& lanes) {
  QStringList texts;
  for (const study::OptionLane& lane : lanes) {
    QString text = OptionStrip::tr("option %1").arg(Text(lane.text));
    if (!lane.isThere) text += OptionStrip::tr(", no capture");
    for (const auto& chip : lane.chips) {
      text += QStringLiteral(", %1 %2 dB").arg(QLatin1Char(Letter(chip.axis))).arg(Text(chip.text));
    }
    texts << text;
  }
  return texts.join(QStringLiteral("; "));
}

// Black or white, whichever reads better on a colour.
QColor InkOn(const QColor& ground) {
  return ground.lightnessF() > 0.55F ? QColor(0x1A, 0x21, 0x2B) : QColor(Qt::white);
}

}  // namespace

OptionStrip::OptionStrip() {
  setObjectName("optionStrip");
  setAccessibleName(tr("Sample-rate options of the wide spectrum"));
  setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Fixed);
}

void OptionStrip::Show(std::vector<study::OptionLane> lanes) {
  lanes_ = std::move(lanes);
  setAccessibleDescription(SpokenOf(lanes_));
  setToolTip(
      tr("Thin what a capture holds, thick what is used of it. Where two hold the same "
         "frequencies their RMS is compared: the slower option over the faster one, dB."));
  update();
}

void OptionStrip::Follow(double left, double right, const PlotRange& shown) {
  left_ = left;
  right_ = std::max(left + 1, right);
  across_ = AxisMap(shown, AxisKind::Logarithmic, left_, right_);
  update();
}

double OptionStrip::RowHeight() const {
  return std::max(22.0, std::ceil(QFontMetricsF(LookFonts(font()).small).height()) + 8);
}

QSize OptionStrip::sizeHint() const {
  const double caption = std::ceil(QFontMetricsF(LookFonts(font()).small).height()) + 10;
  return {400, static_cast<int>(caption + 4 * RowHeight() + 6)};
}

QRectF OptionStrip::PlaceOf(std::size_t row, const PlotRange& hz, double part) const {
  const double caption = std::ceil(QFontMetricsF(LookFonts(font()).small).height()) + 10;
  const double high = RowHeight() * part;
  const double middle = caption + RowHeight() * (static_cast<double>(row) + 0.5);
  const double from = std::clamp(across_.ToPixel(hz.low), left_, right_);
  const double to = std::clamp(across_.ToPixel(hz.high), left_, right_);
  return {from, middle - high / 2, to - from, high};
}

void OptionStrip::PaintChips(QPainter& painter, const Look& look, const LookFonts& fonts,
                             std::size_t row, double left) const {
  double wide = 0;
  for (const auto& chip : lanes_[row].chips) {
    wide += TabularWidth(fonts.small, chip.text) + 2 * kChipPad + kChipGap;
  }
  const QRectF lane = PlaceOf(row, {1, study::kMostHz}, kThick);
  // Beyond what the capture holds; where there is no room, before its end.
  double x = std::min(left + kChipGap, right_ - wide);
  for (const auto& chip : lanes_[row].chips) {
    const double width = TabularWidth(fonts.small, chip.text) + 2 * kChipPad;
    const QRectF place(x, lane.top(), width, lane.height());
    if (chip.isUnsteady) {
      painter.setPen(QPen(look.noticeEdge, 1));
      painter.setBrush(look.notice);
      painter.drawRoundedRect(place, 3, 3);
    } else {
      painter.fillRect(place, look.canvas);
    }
    painter.setPen(chip.isUnsteady ? look.noticeText : look.text);
    DrawTabular(painter, chip.isUnsteady ? fonts.smallBold : fonts.small, place, Qt::AlignHCenter,
                chip.text);
    x += width + kChipGap;
  }
}

void OptionStrip::PaintLane(QPainter& painter, const Look& look, const LookFonts& fonts,
                            std::size_t row) const {
  const study::OptionLane& lane = lanes_[row];
  const QColor colour = look.options[static_cast<std::size_t>(lane.option)];
  const QRectF holds = PlaceOf(row, lane.holds, kThin);
  const QRectF used = PlaceOf(row, lane.used, kThick);
  painter.setPen(look.muted);
  DrawTabular(painter, fonts.small,
              QRectF(kEdge, used.top(), std::max(1.0, left_ - kEdge - 8), used.height()),
              Qt::AlignRight, tr("opt. %1").arg(lane.option));
  if (!lane.isThere) {
    painter.setBrush(Qt::NoBrush);
    painter.setPen(QPen(look.axis, 1, Qt::DashLine));
    painter.drawRect(PlaceOf(row, lane.holds, kThick));
    painter.setPen(look.muted);
    DrawTabular(
        painter, fonts.small,
        QRectF(holds.left() + 6, used.top(), std::max(1.0, holds.width() - 12), used.height()),
        Qt::AlignHCenter, tr("no capture"));
    return;
  }
  QColor thin = colour;
  thin.setAlphaF(0.35F);
  painter.fillRect(holds, thin);
  if (used.width() < 1) return;
  painter.fillRect(used, colour);
  if (TabularWidth(fonts.small, lane.text) + 8 < used.width()) {
    painter.setPen(InkOn(colour));
    DrawTabular(painter, fonts.smallBold, used, Qt::AlignHCenter, lane.text);
  }
  if (!lane.chips.empty()) PaintChips(painter, look, fonts, row, holds.right());
}

void OptionStrip::paintEvent(QPaintEvent* /*event*/) {
  const Look look = Look::Of(palette());
  const LookFonts fonts(font());
  QPainter painter(this);
  painter.fillRect(rect(), look.panel);
  painter.setPen(look.muted);
  const double line = std::ceil(QFontMetricsF(fonts.small).height());
  DrawTabular(
      painter, fonts.small, QRectF(kEdge, 4, width() - 2 * kEdge, line), Qt::AlignLeft,
      tr("Sample-rate options: thin what the capture holds, thick what is used; overlaps compared "
         "by RMS, X Y Z in dB (limit %1)")
          .arg(analysis::kSteadyLimitDb, 0, 'f', 1));
  for (std::size_t row = 0; row < lanes_.size(); ++row) PaintLane(painter, look, fonts, row);
}

bool OptionStrip::event(QEvent* event) {
  if (event->type() == QEvent::FontChange) updateGeometry();
  return QWidget::event(event);
}

}  // namespace kestrel
