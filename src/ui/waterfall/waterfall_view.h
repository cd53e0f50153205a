// The waterfall: spectra of many records as a map of colours over frequency and time.
// SPDX-License-Identifier: MIT
#pragma once

#include <QString>
#include <QWidget>
#include <optional>
#include <vector>

#include "chart/axis_ticks.h"
#include "chart/plot_scene.h"
#include "chart/waterfall_rows.h"
#include "ui/chart/look.h"
#include "ui/waterfall/waterfall_image.h"

namespace kestrel {

// Where there are no records, by time.
struct WaterfallGap {
  double from = 0;  // seconds, UTC
  double to = 0;
  QString text;  // "No records 18:09:10 to 18:13:30: sensor unplugged"
};

// Used so: Begin once for records that belong together, then AddRow for each record; times are
// seconds since 1970, UTC, shown locally, newest at the top. A row covers the time since the row
// before it, as long as that is no gap. Values are in any quantity; the scale says which colours
// they have.
class WaterfallView : public QWidget {
  Q_OBJECT

 public:
  explicit WaterfallView(QWidget* parent = nullptr);

  // Forgets all rows. x of the values, in the unit of the axis.
  void Begin(const PlotAcross& across, std::vector<double> x);
  // False for a row that is not later than the last, or of another length.
  bool AddRow(double time, const std::vector<double>& values);
  void AddGap(const WaterfallGap& gap);
  void SetScale(const WaterfallScale& scale, const QString& title);
  void SetAcross(const PlotRange& range);  // linked to the spectrum above it
  void SetSpan(double seconds);            // from the upper edge to the lower
  void SetFrozen(bool isFrozen);           // rows are kept, the map stays

  // Lines across and along: the row at that time, and the cursor's members.
  void SetTimeCursor(std::optional<double> time);
  void SetCursor(SceneCursor cursor);

  [[nodiscard]] double Span() const { return span_; }
  [[nodiscard]] double Top() const { return top_; }  // the time at the upper edge
  [[nodiscard]] const WaterfallScale& Scale() const { return scale_; }
  [[nodiscard]] const WaterfallRows& Rows() const { return rows_; }
  [[nodiscard]] QRectF Canvas() const { return canvas_; }
  [[nodiscard]] double TimeAt(double y) const;
  [[nodiscard]] double YOf(double time) const;
  [[nodiscard]] double XOf(double x) const { return across_.ToPixel(x); }

  [[nodiscard]] QSize sizeHint() const override { return {800, 480}; }

 signals:
  void RowChosen(int row, double time);    // the record whose spectrum to show
  void ColumnChosen(double x);             // the place whose level over time to show
  void StepAsked(int rows, int bins);      // by the arrow keys
  void SpanTurned();                       // by the wheel
  void MenuAsked(QPoint place, double x);  // a place on the screen, and the x meant by it

 protected:
  void paintEvent(QPaintEvent* event) override;
  void resizeEvent(QResizeEvent* event) override;
  void changeEvent(QEvent* event) override;
  void mousePressEvent(QMouseEvent* event) override;
  void mouseMoveEvent(QMouseEvent* event) override;
  void wheelEvent(QWheelEvent* event) override;
  void keyPressEvent(QKeyEvent* event) override;
  void contextMenuEvent(QContextMenuEvent* event) override;

 private:
  void LayOut();
  void Rebuild();
  void AddToMap(std::size_t row);
  void Choose(QPointF place);
  [[nodiscard]] std::optional<WaterfallGap> GapIn(double from, double to) const;
  [[nodiscard]] QColor Paper() const;

  PlotAcross axis_;
  PlotRange shown_;
  std::vector<double> x_;
  WaterfallRows rows_;
  std::vector<WaterfallGap> gaps_;
  WaterfallScale scale_;
  QString scaleTitle_;
  double span_ = 600;
  double top_ = 0;  // the time at the upper edge
  bool isFrozen_ = false;
  std::optional<double> timeCursor_;
  SceneCursor cursor_;
  Look look_;
  LookFonts fonts_;
  ColourMap map_;
  QRectF canvas_;
  AxisMap across_;
  WaterfallImage image_;
  double ratio_ = 0;
  bool isMapValid_ = false;
};

}  // namespace kestrel
