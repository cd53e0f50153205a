// Painting a waterfall's axes, scale, gaps and cursors.
// SPDX-License-Identifier: MIT
#include "ui/waterfall/waterfall_painter.h"

#include <QDateTime>
#include <QFontMetricsF>
#include <QLinearGradient>
#include <algorithm>
#include <array>
#include <cmath>

#include "ui/chart/ground_painter.h"
#include "ui/chart/tabular_text.h"

namespace kestrel {
namespace {

constexpr double kTick = 4;
constexpr double kTimeApart = 28;
constexpr double kScaleWidth = 170;
constexpr double kScaleHeight = 10;

double Height(const QFont& font) {
  return std::ceil(QFontMetricsF(font).height());
}

QString LocalText(double time, bool hasSeconds) {
  const auto moment = QDateTime::fromMSecsSinceEpoch(static_cast<qint64>(time * 1000));
  return moment.toString(hasSeconds ? QStringLiteral("HH:mm:ss") : QStringLiteral("HH:mm"));
}

QString DayText(double time) {
  return QDateTime::fromMSecsSinceEpoch(static_cast<qint64>(time * 1000))
      .toString(QStringLiteral("d MMM"));
}

QString TimeText(double time, double step) {
  return step >= 86400 ? DayText(time) : LocalText(time, step < 60);
}

double TimeStep(double span, int most) {
  constexpr std::array kSteps{1.0,     2.0,      5.0,      10.0,      30.0,      60.0,      120.0,
                              300.0,   600.0,    1800.0,   3600.0,    7200.0,    21600.0,   43200.0,
                              86400.0, 172800.0, 604800.0, 2592000.0, 7776000.0, 31536000.0};
  const auto* step =
      std::find_if(kSteps.begin(), kSteps.end(), [&](double s) { return span / s <= most; });
  return step == kSteps.end() ? kSteps.back() : *step;
}

}  // namespace

std::vector<double> TimeTicks(double from, double to, int most) {
  const double step = TimeStep(to - from, std::max(most, 1));
  // Round in local time.
  const double zone =
      QDateTime::fromMSecsSinceEpoch(static_cast<qint64>(to * 1000)).offsetFromUtc();
  std::vector<double> ticks;
  for (double tick = std::ceil((from + zone) / step) * step; tick - zone <= to; tick += step) {
    ticks.push_back(tick - zone);
  }
  return ticks;
}

QRectF WaterfallCanvas(QSizeF size, const LookFonts& fonts, double ratio) {
  const auto snapped = [&](double value) { return std::round(value * ratio) / ratio; };
  const double left = 12 + TabularWidth(fonts.small, QStringLiteral("00:00:00")) + 2 * kTick;
  const double top = Height(fonts.small) + kScaleHeight + Height(fonts.small) + 10;
  const double bottom = size.height() - 2 * kTick - 2 * Height(fonts.small) - 6;
  return {QPointF(snapped(left), snapped(top)),
          QPointF(snapped(std::max(left + 16, size.width() - 28)),
                  snapped(std::max(top + 16, bottom)))};
}

void PaintWaterfallGaps(QPainter& painter, const WaterfallPage& page, const WaterfallRows& rows,
                        const std::vector<WaterfallGap>& gaps) {
  const auto hatch = [&](double from, double to) {
    const double upper = std::clamp(page.YOf(to), page.canvas.top(), page.canvas.bottom());
    const double lower = std::clamp(page.YOf(from), page.canvas.top(), page.canvas.bottom());
    const QRectF place(page.canvas.left(), upper, page.canvas.width(), lower - upper);
    PaintHatch(painter, page.look, place);
    return place;
  };
  // Bins that hold offset, not vibration.
  const auto x = [&](double value) {
    return std::clamp(page.across.ToPixel(value), page.canvas.left(), page.canvas.right());
  };
  const double valid = std::isfinite(page.axis.validFrom) ? x(page.axis.validFrom) : 0;
  const double first = x(page.axis.whole.low);
  PaintHatch(painter, page.look,
             QRectF(first, page.canvas.top(), std::max(0.0, valid - first), page.canvas.height()));
  const double oldest = rows.Count() > 0 ? rows.Time(0) : page.top;
  hatch(page.top - page.span, std::min(oldest, page.top));
  for (const WaterfallGap& gap : gaps) {
    const QRectF place = hatch(gap.from, gap.to);
    const double height = Height(page.fonts.small) + 4;
    if (place.height() < height || gap.text.isEmpty()) continue;
    const QRectF chip(place.left() + 12, place.center().y() - height / 2,
                      TabularWidth(page.fonts.small, gap.text) + 16, height);
    painter.fillRect(chip, page.look.panel);
    painter.setPen(page.look.text);
    DrawTabular(painter, page.fonts.small, chip, Qt::AlignHCenter, gap.text);
  }
}

void PaintWaterfallAxes(QPainter& painter, const WaterfallPage& page) {
  const QRectF& canvas = page.canvas;
  const double pixel = 1 / page.ratio;
  FillColumn(painter, page.ratio, canvas.left() - pixel, canvas.top(), canvas.bottom(),
             page.look.axis);
  FillRow(painter, page.ratio, canvas.bottom(), canvas.left() - pixel, canvas.right(),
          page.look.axis);
  painter.setPen(page.look.muted);
  const double height = Height(page.fonts.small);
  const double factor = page.axis.factor > 0 ? page.axis.factor : 1;
  const PlotRange range{page.shown.low * factor, page.shown.high * factor};
  for (const AxisTick& tick : AxisTicks(range, page.axis.kind, canvas.width(), 60)) {
    const double x = page.across.ToPixel(tick.value / factor);
    FillColumn(painter, page.ratio, x, canvas.bottom(), canvas.bottom() + kTick, page.look.axis);
    DrawTabular(painter, page.fonts.small, QRectF(x - 40, canvas.bottom() + 2 * kTick, 80, height),
                Qt::AlignHCenter, QString::fromStdString(tick.label));
  }
  DrawTabular(
      painter, page.fonts.small,
      QRectF(canvas.left(), canvas.bottom() + 2 * kTick + height + 2, canvas.width(), height),
      Qt::AlignRight, page.axis.title);
  DrawTabular(painter, page.fonts.small, QRectF(12, canvas.top() - height - 4, 200, height),
              Qt::AlignLeft, QStringLiteral("Local time"));
  const int most = static_cast<int>(canvas.height() / kTimeApart);
  const double step = TimeStep(page.span, std::max(most, 1));
  for (const double time : TimeTicks(page.top - page.span, page.top, most)) {
    const double y = page.YOf(time);
    FillRow(painter, page.ratio, y, canvas.left() - kTick, canvas.left(), page.look.axis);
    DrawTabular(painter, page.fonts.small, QRectF(0, y - 10, canvas.left() - 2 * kTick, 20),
                Qt::AlignRight, TimeText(time, step));
  }
}

void PaintColourScale(QPainter& painter, const WaterfallPage& page, const WaterfallScale& scale,
                      const ColourMap& map, const QString& title) {
  const double height = Height(page.fonts.small);
  const QRectF bar(page.canvas.right() - kScaleWidth, height / 2 - kScaleHeight / 2 + 2,
                   kScaleWidth, kScaleHeight);
  QLinearGradient colours(bar.topLeft(), bar.topRight());
  for (std::size_t i = 0; i < map.size(); i += 15) {
    colours.setColorAt(static_cast<double>(i) / 255, QColor::fromRgb(map[i]));
  }
  painter.fillRect(bar, colours);
  painter.setPen(QPen(page.look.axis, 1));
  painter.drawRect(bar.adjusted(0.5, 0.5, -0.5, -0.5));
  painter.setPen(page.look.muted);
  DrawTabular(painter, page.fonts.small,
              QRectF(page.canvas.left(), 2, bar.left() - 10 - page.canvas.left(), height),
              Qt::AlignRight, title);
  const AxisMap places(scale.range, scale.kind, bar.left(), bar.right());
  for (const AxisTick& tick : AxisTicks(scale.range, scale.kind, kScaleWidth, 44)) {
    const double x = places.ToPixel(tick.value);
    FillColumn(painter, page.ratio, std::min(x, bar.right() - 1), bar.bottom(), bar.bottom() + 3,
               page.look.axis);
    DrawTabular(painter, page.fonts.small, QRectF(x - 30, bar.bottom() + 3, 60, height),
                Qt::AlignHCenter, QString::fromStdString(tick.label));
  }
}

void PaintWaterfallCursor(QPainter& painter, const WaterfallPage& page, const SceneCursor& cursor,
                          std::optional<double> time) {
  const QRectF& canvas = page.canvas;
  for (const PlotMember& member : cursor.members) {
    if (!page.shown.Holds(member.x)) continue;
    QPen pen(page.look.accent, member.kind == MemberKind::Main ? 1.5 : 1);
    if (member.kind != MemberKind::Main) {
      pen.setDashPattern(member.kind == MemberKind::Found ? QList<qreal>{4, 3}
                                                          : QList<qreal>{1, 4});
    }
    painter.setPen(pen);
    const double x = std::floor(page.across.ToPixel(member.x)) + 0.5;
    painter.drawLine(QPointF(x, canvas.top()), QPointF(x, canvas.bottom()));
  }
  if (!time || *time > page.top || *time < page.top - page.span) return;
  const double y = std::floor(page.YOf(*time)) + 0.5;
  painter.setPen(QPen(page.look.accent, 1.5));
  painter.drawLine(QPointF(canvas.left(), y), QPointF(canvas.right(), y));
  const double height = Height(page.fonts.smallBold) + 4;
  const QRectF flag(2, y - height / 2, canvas.left() - 6, height);
  painter.save();
  painter.setRenderHint(QPainter::Antialiasing);
  painter.setPen(Qt::NoPen);
  painter.setBrush(page.look.accent);
  painter.drawRoundedRect(flag, 3, 3);
  painter.setPen(page.look.onAccent);
  DrawTabular(painter, page.fonts.smallBold, flag, Qt::AlignHCenter, LocalText(*time, true));
  painter.restore();
}

}  // namespace kestrel
