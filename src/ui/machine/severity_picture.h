// Severity drawn: the zones with a mark of each axis, or what of the band is covered.
// SPDX-License-Identifier: MIT
#pragma once

#include <QWidget>

#include "display/severity_view.h"
#include "ui/chart/look.h"

namespace kestrel {

class SeverityPicture : public QWidget {
  Q_OBJECT

 public:
  explicit SeverityPicture(QWidget* parent = nullptr);

  void Show(study::SeverityView view, const analysis::ZoneLimits& limits);
  [[nodiscard]] const study::SeverityView& View() const { return view_; }

  [[nodiscard]] QSize sizeHint() const override { return {300, 116}; }
  [[nodiscard]] QSize minimumSizeHint() const override { return {220, 116}; }

 protected:
  void paintEvent(QPaintEvent* event) override;

 private:
  void PaintCover(QPainter& painter, const Look& look, const LookFonts& fonts) const;
  void PaintZones(QPainter& painter, const Look& look, const LookFonts& fonts) const;
  void PaintAxis(QPainter& painter, const Look& look, const LookFonts& fonts, Axis axis,
                 const QRectF& bar) const;

  study::SeverityView view_;
  analysis::ZoneLimits limits_;
};

// Where a velocity stands on a bar of four zones of equal width, 0 to 1.
[[nodiscard]] double PlaceInZones(double mmPerS, const analysis::ZoneLimits& limits);

}  // namespace kestrel
