// Drawing zones and coverage.
// SPDX-License-Identifier: MIT
#include "ui/machine/severity_picture.h"

#include <QPainter>
#include <algorithm>
#include <array>
#include <cmath>
#include <utility>

#include "display/scene.h"
#include "numeric/number_texts.h"
#include "ui/chart/icons.h"
#include "ui/chart/tabular_text.h"

namespace kestrel {
namespace {

constexpr double kLowestHz = 1;
constexpr double kHighestHz = 5000;
constexpr double kSwatch = 10;
constexpr double kBarHeight = 12;
constexpr double kFigures = 120;  // right of the bars: value and zone

double Height(const QFont& font) {
  return std::ceil(QFontMetricsF(font).height());
}

std::array<QColor, 4> ZoneColours(const Look& look) {
  return {look.header, look.grid, look.isDark ? look.noticeEdge.darker(140) : look.notice,
          look.faultGround};
}

QString Spoken(const study::SeverityView& view) {
  QString text = QString::fromStdString(view.heading);
  if (!view.IsTold()) return text;
  for (const Axis axis : kAxes) {
    const auto& told = view.axes[Index(axis)];
    text += QStringLiteral(", %1 %2 mm/s RMS, zone %3")
                .arg(QLatin1Char(Letter(axis)))
                .arg(QString::fromStdString(analysis::SignificantText(told->mmPerS)))
                .arg(QLatin1Char(Letter(told->zone)));
  }
  return text;
}

}  // namespace

double PlaceInZones(double mmPerS, const analysis::ZoneLimits& limits) {
  const std::array edges{0.0, limits.ab, limits.bc, limits.cd, 2 * limits.cd};
  for (std::size_t zone = 0; zone + 1 < edges.size(); ++zone) {
    if (mmPerS > edges[zone + 1]) continue;
    const double part = (mmPerS - edges[zone]) / (edges[zone + 1] - edges[zone]);
    return (static_cast<double>(zone) + std::clamp(part, 0.0, 1.0)) / 4;
  }
  return 1;
}

SeverityPicture::SeverityPicture(QWidget* parent) : QWidget(parent) {
  setObjectName(QStringLiteral("severityPicture"));
  setAccessibleName(QStringLiteral("Severity estimate"));
  setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Fixed);
}

void SeverityPicture::Show(study::SeverityView view, const analysis::ZoneLimits& limits) {
  view_ = std::move(view);
  limits_ = limits;
  setAccessibleDescription(Spoken(view_));
  update();
}

void SeverityPicture::paintEvent(QPaintEvent* /*event*/) {
  QPainter painter(this);
  const Look look = Look::Of(palette());
  const LookFonts fonts(font());
  if (view_.IsTold()) {
    PaintZones(painter, look, fonts);
  } else {
    PaintCover(painter, look, fonts);
  }
}

void SeverityPicture::PaintCover(QPainter& painter, const Look& look,
                                 const LookFonts& fonts) const {
  const double line = Height(fonts.small);
  const double row = line + 6;
  const AxisMap across({kLowestHz, kHighestHz}, AxisKind::Logarithmic, 0.5, width() - 0.5);
  const double bottom = row * static_cast<double>(view_.options.size());
  const double from = across.ToPixel(analysis::kSeverityFromHz);
  const double to = across.ToPixel(analysis::kSeverityToHz);
  painter.fillRect(QRectF(from, 0, to - from, bottom), look.header);
  for (std::size_t i = 0; i < view_.options.size(); ++i) {
    const study::OptionCover& cover = view_.options[i];
    const double left = across.ToPixel(std::max(cover.fromHz, kLowestHz));
    const double right = across.ToPixel(std::min(cover.toHz, kHighestHz));
    const QRectF place(left, row * static_cast<double>(i) + 2, right - left, row - 4);
    const QString name = QStringLiteral("option %1").arg(cover.option);
    const bool isThere = cover.record != nullptr;
    if (isThere) painter.fillRect(place, look.options[static_cast<std::size_t>(cover.option)]);
    painter.setPen(QPen(look.axis, 1, isThere ? Qt::SolidLine : Qt::DashLine));
    painter.drawRect(place);
    const double wide = TabularWidth(fonts.small, name) + 12;
    const bool isInside = !isThere && place.width() > wide;
    const QRectF label = isInside ? place.adjusted(6, 0, -6, 0)
                         : place.left() > wide + 6
                             ? QRectF(place.left() - wide, place.top(), wide - 6, place.height())
                             : place.translated(place.width() + 6, 0);
    painter.setPen(isThere ? look.text : look.muted);
    DrawTabular(painter, fonts.small, label,
                isInside || place.left() <= wide + 6 ? Qt::AlignLeft : Qt::AlignRight, name);
  }
  painter.setPen(QPen(look.axis, 1));
  painter.drawLine(QPointF(from, 0), QPointF(from, bottom + 4));
  painter.drawLine(QPointF(to, 0), QPointF(to, bottom + 4));
  painter.setPen(look.muted);
  for (const double hz : {10.0, 100.0, 1000.0}) {
    const QString text = QString::fromStdString(analysis::NumberText(hz, 0)) +
                         (hz == 1000 ? QStringLiteral(" Hz") : QString());
    DrawTabular(painter, fonts.small, QRectF(across.ToPixel(hz) - 40, bottom + 6, 80, line),
                Qt::AlignHCenter, text);
  }
}

void SeverityPicture::PaintZones(QPainter& painter, const Look& look,
                                 const LookFonts& fonts) const {
  const double line = Height(fonts.small);
  const double left = 3 * kSwatch + 8;
  const double wide = std::max(80.0, width() - left - kFigures);
  const double row = std::max(line, kBarHeight) + 10;
  painter.setPen(look.muted);
  for (int zone = 0; zone < 4; ++zone) {
    DrawTabular(painter, fonts.smallBold, QRectF(left + zone * wide / 4, 0, wide / 4, line),
                Qt::AlignHCenter, QString(QLatin1Char(static_cast<char>('A' + zone))));
  }
  DrawTabular(painter, fonts.small, QRectF(width() - kFigures, 0, kFigures, line), Qt::AlignRight,
              QStringLiteral("mm/s RMS"));
  double top = line + 6;
  for (const Axis axis : kAxes) {
    PaintAxis(painter, look, fonts, axis, QRectF(left, top, wide, kBarHeight));
    top += row;
  }
  painter.setPen(look.muted);
  const std::array edges{limits_.ab, limits_.bc, limits_.cd};
  for (std::size_t i = 0; i < edges.size(); ++i) {
    const double x = left + static_cast<double>(i + 1) * wide / 4;
    DrawTabular(painter, fonts.small, QRectF(x - 30, top - 2, 60, line), Qt::AlignHCenter,
                QString::number(edges[i]));
  }
}

void SeverityPicture::PaintAxis(QPainter& painter, const Look& look, const LookFonts& fonts,
                                Axis axis, const QRectF& bar) const {
  const analysis::SeverityEstimate& estimate = *view_.axes[Index(axis)];
  const double line = Height(fonts.plain);
  const double middle = bar.center().y();
  painter.fillRect(QRectF(0, middle - kSwatch / 2, kSwatch, kSwatch), look.Ink(study::InkOf(axis)));
  painter.setPen(look.text);
  DrawTabular(painter, fonts.plain, QRectF(kSwatch + 6, middle - line / 2, 20, line), Qt::AlignLeft,
              QString(QLatin1Char(Letter(axis))));
  const auto colours = ZoneColours(look);
  const double step = bar.width() / 4;
  for (std::size_t zone = 0; zone < colours.size(); ++zone) {
    const QRectF place(bar.left() + static_cast<double>(zone) * step, bar.top(), step,
                       bar.height());
    painter.fillRect(place, colours[zone]);
    painter.setPen(QPen(look.hairline, 1));
    painter.drawRect(place);
  }
  const double x = bar.left() + PlaceInZones(estimate.mmPerS, limits_) * bar.width();
  painter.fillRect(QRectF(x - 2, bar.top() - 3, 4, bar.height() + 6), look.text);
  const QRectF figures(bar.right() + 8, middle - line / 2, width() - bar.right() - 8, line);
  if (estimate.uncertain) {
    PaintIcon(painter, QRectF(figures.left(), middle - 7, 14, 14), QStringLiteral("warn"),
              look.warning);
  }
  painter.setPen(look.text);
  DrawTabular(painter, fonts.bold, figures.adjusted(16, 0, -46, 0), Qt::AlignRight,
              analysis::SignificantText(estimate.mmPerS));
  DrawTabular(painter, fonts.plain, figures, Qt::AlignRight,
              QStringLiteral("zone %1").arg(QLatin1Char(Letter(estimate.zone))));
}

}  // namespace kestrel
