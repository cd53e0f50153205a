// Ground, distribution, curves and thresholds of the plot of one band and axis.
// SPDX-License-Identifier: MIT
#include "ui/workbench/detail_painter.h"

#include <QCoreApplication>
#include <QPainterPath>
#include <algorithm>
#include <cmath>
#include <map>

#include "display/scene.h"
#include "numeric/number_texts.h"
#include "ui/chart/tabular_text.h"

namespace kestrel {
namespace {

constexpr double kDiamond = 4;

QString Tr(const char* text) {
  return QCoreApplication::translate("DetailPlot", text);
}

QColor InkOf(const DetailPage& page) {
  return page.look.Ink(study::InkOf(page.scene.axis));
}

QColor Faint(QColor colour, double part) {
  colour.setAlphaF(static_cast<float>(part));
  return colour;
}

double OnPixel(double x) {
  return std::floor(x) + 0.5;
}

void PaintGrid(QPainter& painter, const DetailPage& page) {
  const DetailLayout& layout = page.layout;
  for (const QRectF& canvas : {layout.records, layout.shares}) {
    painter.fillRect(canvas, page.look.canvas);
  }
  painter.setPen(QPen(page.look.grid, 1));
  for (const AxisTick& tick : layout.acrossTicks) {
    const double x = OnPixel(layout.across.ToPixel(tick.value));
    for (const QRectF& canvas : {layout.records, layout.shares}) {
      painter.drawLine(QPointF(x, canvas.top()), QPointF(x, canvas.bottom()));
    }
  }
  const auto across = [&](double y, const QRectF& canvas) {
    painter.drawLine(QPointF(canvas.left(), OnPixel(y)), QPointF(canvas.right(), OnPixel(y)));
  };
  for (const AxisTick& tick : layout.countTicks) {
    across(layout.counts.ToPixel(tick.value), layout.records);
  }
  for (const double part : {0.25, 0.5, 0.75, 1.0}) {
    across(layout.parts.ToPixel(part), layout.shares);
  }
  painter.setPen(QPen(page.look.axis, 1));
  for (const QRectF& canvas : {layout.records, layout.shares}) {
    across(canvas.bottom(), canvas);
    painter.drawLine(QPointF(OnPixel(canvas.left()), canvas.top()),
                     QPointF(OnPixel(canvas.left()), canvas.bottom()));
  }
}

void PaintTicks(QPainter& painter, const DetailPage& page) {
  const DetailLayout& layout = page.layout;
  const double line = layout.ticks.height();
  const auto up = [&](double y, const QString& text) {
    painter.setPen(QPen(page.look.axis, 1));
    painter.drawLine(QPointF(layout.records.left() - 4, OnPixel(y)),
                     QPointF(layout.records.left(), OnPixel(y)));
    painter.setPen(page.look.muted);
    DrawTabular(painter, page.fonts.small, QRectF(0, y - line / 2, layout.records.left() - 6, line),
                Qt::AlignRight, text);
  };
  for (const AxisTick& tick : layout.countTicks) {
    up(layout.counts.ToPixel(tick.value), QString::fromStdString(tick.label));
  }
  up(layout.parts.ToPixel(0), QStringLiteral("0 %"));
  up(layout.parts.ToPixel(0.5), QStringLiteral("50 %"));
  up(layout.parts.ToPixel(1), QStringLiteral("100 %"));
  for (const AxisTick& tick : layout.acrossTicks) {
    const double x = layout.across.ToPixel(tick.value);
    painter.setPen(QPen(page.look.axis, 1));
    painter.drawLine(QPointF(OnPixel(x), layout.shares.bottom()),
                     QPointF(OnPixel(x), layout.ticks.top()));
    painter.setPen(page.look.muted);
    DrawTabular(painter, page.fonts.small, QRectF(x - 40, layout.ticks.top(), 80, line),
                Qt::AlignHCenter, tick.label);
  }
  painter.setPen(page.look.muted);
  const QString unit = page.scene.decibelsRe ? Tr("dB re the proposed warning") : Tr("g peak");
  DrawTabular(painter, page.fonts.small, layout.axisTitle, Qt::AlignRight,
              Tr("Threshold for %1, %2").arg(page.scene.name, unit));
}

// From the right: sign, word.
class LegendLine {
 public:
  LegendLine(QPainter& painter, const DetailPage& page, const QRectF& line)
      : painter_(painter), page_(page), line_(line), right_(line.right()) {}

  template <typename Sign>
  void Add(const QString& word, double wide, const Sign& sign) {
    const double text = TabularWidth(page_.fonts.small, word);
    painter_.setPen(page_.look.text);
    DrawTabular(painter_, page_.fonts.small,
                QRectF(right_ - text, line_.top(), text, line_.height()), Qt::AlignLeft, word);
    sign(QRectF(right_ - text - 8 - wide, line_.center().y() - 5, wide, 10));
    right_ -= text + 8 + wide + 16;
  }
  void Title(const QString& word) {
    painter_.setPen(page_.look.muted);
    DrawTabular(painter_, page_.fonts.small, line_, Qt::AlignLeft, word);
  }

 private:
  QPainter& painter_;
  const DetailPage& page_;
  QRectF line_;
  double right_;
};

void PaintLegends(QPainter& painter, const DetailPage& page) {
  const DetailScene& scene = page.scene;
  LegendLine above(painter, page, page.layout.titleLine);
  above.Title(Tr("Records"));
  if (scene.showsBad && !scene.bad.empty()) {
    above.Add(Tr("known bad, %L1").arg(scene.bad.size()), 10, [&](const QRectF& place) {
      PaintDiamond(painter, place.center(), kDiamond, page.look.fault, page.look.canvas);
    });
  }
  above.Add(Tr("known good, %L1").arg(scene.goodCount), 14,
            [&](const QRectF& place) { painter.fillRect(place, Faint(InkOf(page), 0.7)); });
  LegendLine below(painter, page, page.layout.shareLine);
  below.Title(Tr("Share, with 95 % bounds"));
  const auto line = [&](const QPen& pen) {
    return [&painter, pen](const QRectF& place) {
      painter.setPen(pen);
      painter.drawLine(QPointF(place.left(), place.center().y()),
                       QPointF(place.right(), place.center().y()));
    };
  };
  QPen missed(page.look.fault, 1.5, Qt::CustomDashLine, Qt::FlatCap);
  missed.setDashPattern({3, 2});
  if (!scene.misses.empty()) below.Add(Tr("misses of bad"), 18, line(missed));
  below.Add(Tr("false alarms of good"), 18, line(QPen(InkOf(page), 1.5)));
}

void PaintDistribution(QPainter& painter, const DetailPage& page) {
  const DetailLayout& layout = page.layout;
  for (const DetailScene::Bar& bar : page.scene.good) {
    if (bar.count == 0) continue;
    const double left = layout.across.ToPixel(bar.from);
    const double top = layout.counts.ToPixel(bar.count);
    painter.fillRect(QRectF(left, top, std::max(1.0, layout.across.ToPixel(bar.to) - left - 1),
                            layout.records.bottom() - top),
                     Faint(InkOf(page), 0.7));
  }
  if (!page.scene.showsBad) return;
  std::map<int, int> stacks;  // diamonds by column
  for (const double g : page.scene.bad) {
    const double x = layout.across.ToPixel(g);
    const int column = static_cast<int>(std::floor(x / (2 * kDiamond + 1)));
    const double y = layout.records.bottom() - kDiamond - 2 - stacks[column]++ * (2 * kDiamond + 2);
    if (y < layout.records.top() + kDiamond || !page.scene.across.Holds(g)) continue;
    PaintDiamond(painter, {x, y}, kDiamond, page.look.fault, page.look.canvas);
  }
}

void PaintCurve(QPainter& painter, const DetailPage& page,
                const std::vector<DetailScene::Share>& curve, const QColor& colour,
                const QPen& pen) {
  if (curve.empty()) return;
  const DetailLayout& layout = page.layout;
  const auto at = [&](double g, double part) {
    return QPointF(layout.across.ToPixel(g), layout.parts.ToPixel(part));
  };
  QPainterPath line(at(curve.front().g, curve.front().share));
  QPainterPath bounds(at(curve.front().g, curve.front().high));
  for (const DetailScene::Share& each : curve) {
    line.lineTo(at(each.g, each.share));
    bounds.lineTo(at(each.g, each.high));
  }
  for (auto each = curve.rbegin(); each != curve.rend(); ++each) {
    bounds.lineTo(at(each->g, each->low));
  }
  painter.save();
  painter.setClipRect(layout.shares.adjusted(0, -1, 0, 1));
  painter.setRenderHint(QPainter::Antialiasing);
  painter.fillPath(bounds, Faint(colour, 0.14));
  painter.strokePath(line, pen);
  painter.restore();
}

void PaintNow(QPainter& painter, const DetailPage& page) {
  if (!page.scene.showsNow) return;
  QPen pen(page.look.axis, 1, Qt::CustomDashLine, Qt::FlatCap);
  pen.setDashPattern({1, 2});
  const DetailLayout& layout = page.layout;
  for (const auto& g : page.scene.now) {
    if (!g || !page.scene.across.Holds(*g)) continue;
    const double x = OnPixel(layout.across.ToPixel(*g));
    painter.setPen(pen);
    painter.drawLine(QPointF(x, layout.records.top()), QPointF(x, layout.shares.bottom()));
    painter.setPen(page.look.muted);
    const QString text = Tr("now %1").arg(QString::fromStdString(analysis::SignificantText(*g)));
    const double wide = TabularWidth(page.fonts.small, text);
    const bool isRight = x + 4 + wide < layout.records.right();
    DrawWithHalo(painter, page.fonts.small,
                 QRectF(isRight ? x + 4 : x - 4 - wide, layout.records.top() + 2, wide,
                        layout.ticks.height()),
                 Qt::AlignLeft, text, page.look.canvas);
  }
}

void PaintFlag(QPainter& painter, const DetailPage& page, AlarmLevel level, bool isChosen) {
  const QRectF& place = page.layout.flagPlaces[Index(level)];
  if (place.isEmpty()) return;
  const QColor colour = level == AlarmLevel::Warning ? page.look.warning : page.look.fault;
  const double x = page.layout.across.ToPixel(*page.scene.proposed[Index(level)]);
  QPainterPath flag;
  flag.setFillRule(Qt::WindingFill);
  flag.addRoundedRect(place, 3, 3);
  const double at = std::clamp(x, place.left() + 4, place.right() - 4);
  flag.addPolygon(QPolygonF({{at - 4, place.bottom() - 0.5},
                             {at + 4, place.bottom() - 0.5},
                             {x, page.layout.flags.bottom()}}));
  painter.save();
  painter.setRenderHint(QPainter::Antialiasing);
  painter.fillPath(flag, colour);
  painter.setPen(page.look.panel);
  DrawTabular(painter, page.fonts.smallBold, place, Qt::AlignHCenter,
              page.scene.flags[Index(level)]);
  if (isChosen) {
    painter.setBrush(Qt::NoBrush);
    painter.setPen(QPen(page.look.accent, 2));
    painter.drawRoundedRect(place.adjusted(-1, 0, 1, 1), 4, 4);
  }
  painter.restore();
}

void PaintThreshold(QPainter& painter, const DetailPage& page, AlarmLevel level) {
  const auto g = page.scene.proposed[Index(level)];
  if (!g || !page.scene.across.Holds(*g)) return;
  const bool isWarning = level == AlarmLevel::Warning;
  QPen pen(isWarning ? page.look.warning : page.look.fault, 2,
           isWarning ? Qt::CustomDashLine : Qt::SolidLine, Qt::FlatCap);
  if (isWarning) pen.setDashPattern({2.5, 1.5});
  const double x = std::round(page.layout.across.ToPixel(*g));
  painter.setPen(pen);
  painter.drawLine(QPointF(x, page.layout.flags.bottom()), QPointF(x, page.layout.shares.bottom()));
}

}  // namespace

void PaintDiamond(QPainter& painter, QPointF middle, double half, const QColor& colour,
                  const QColor& ground) {
  painter.save();
  painter.setRenderHint(QPainter::Antialiasing);
  painter.setPen(QPen(colour, 1.25));
  painter.setBrush(ground);
  painter.drawPolygon(QPolygonF({middle + QPointF(0, -half), middle + QPointF(half, 0),
                                 middle + QPointF(0, half), middle + QPointF(-half, 0)}));
  painter.restore();
}

void PaintDetail(QPainter& painter, const DetailPage& page, std::optional<AlarmLevel> chosen) {
  PaintGrid(painter, page);
  PaintTicks(painter, page);
  PaintLegends(painter, page);
  PaintDistribution(painter, page);
  QPen missed(page.look.fault, 1.5, Qt::CustomDashLine, Qt::FlatCap);
  missed.setDashPattern({3, 2});
  PaintCurve(painter, page, page.scene.misses, page.look.fault, missed);
  PaintCurve(painter, page, page.scene.falseAlarms, InkOf(page), QPen(InkOf(page), 1.5));
  PaintNow(painter, page);
  painter.setPen(page.look.muted);
  DrawWithHalo(painter, page.fonts.small,
               QRectF(page.layout.records.left() + 8, page.layout.records.top() + 2,
                      page.layout.records.width() / 2, page.layout.ticks.height()),
               Qt::AlignLeft, page.scene.note, page.look.canvas);
  for (const AlarmLevel level : kAlarmLevels) PaintThreshold(painter, page, level);
  for (const AlarmLevel level : kAlarmLevels) PaintFlag(painter, page, level, chosen == level);
}

}  // namespace kestrel
