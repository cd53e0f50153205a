// The plot of the analyser: draws the scene it is handed, and turns mouse and keys into wishes.
// SPDX-License-Identifier: MIT
#pragma once

#include <QImage>
#include <QTimer>
#include <QWidget>
#include <functional>
#include <optional>

#include "chart/plot_scene.h"
#include "ui/chart/overlay_painter.h"
#include "ui/chart/plot_navigator.h"

namespace kestrel {

// What a key asks of whoever owns the plot. Zoom, pan, show all, back and forward the plot does
// itself.
enum class PlotCommand {
  ShowX,
  ShowY,
  ShowZ,
  FocusX,
  FocusY,
  FocusZ,
  Stack,
  CursorSingle,
  CursorDelta,
  CursorHarmonic,
  CursorSideband,
  CursorNone,
  CursorTrace,
  NextMember,
  PreviousMember,
  FirstValid,
  LastValid,
  SnapToPeak,
  SmallerPeak,
  LargerPeak,
  Marker,
  Vertical,
  Horizontal,
  Bands,
  Labels,
  Reference,
  Freeze,
  Copy,
  Export,
};

// Used so:
//   plot->SetScene(scene);    everything that changes with the record; cheap enough for each record
//   plot->SetCursor(cursor);  repaints the cursor alone
//   plot->SetReader(...);     formats what stands beside the pointer, with bounds and units
// and, answering the signals, with a new scene or cursor. The plot owns the view (zoom, history): a
// new scene never interrupts a drag nor moves what the user has zoomed into. Panes are stacked and
// share the horizontal axis. Values along x are in Hz or s throughout, whatever is written at the
// axis.
class AnalyserPlot : public QWidget {
  Q_OBJECT

 public:
  // What stands beside the pointer at x (of the nearest sample) over a pane.
  using Reader = std::function<PlotReadOut(double x, int pane)>;

  explicit AnalyserPlot(QWidget* parent = nullptr);

  void SetScene(PlotScene scene);
  [[nodiscard]] const PlotScene& Scene() const { return scene_; }
  void SetCursor(SceneCursor cursor);
  [[nodiscard]] const SceneCursor& Cursor() const { return overlay_.cursor; }
  void SetReader(Reader reader) { reader_ = std::move(reader); }

  [[nodiscard]] const PlotRanges& Ranges() const { return navigator_.Ranges(); }
  [[nodiscard]] bool ShowsAll() const { return navigator_.IsAutomatic(); }
  [[nodiscard]] bool CanGoBack() const { return navigator_.CanGoBack(); }
  [[nodiscard]] bool CanGoForward() const { return navigator_.CanGoForward(); }
  void ShowAll();
  void GoBack();
  void GoForward();
  // Not remembered, it becomes a view to come back to when it has come to rest.
  void ShowAcross(const PlotRange& range, bool isRemembered = true);
  void ZoomAcross(double factor);  // about the cursor, otherwise the middle
  void ZoomUp(double factor);      // all panes, about their lower end or their middle

  [[nodiscard]] PlotLayout Laid() const;
  [[nodiscard]] std::optional<double> PointerX() const { return overlay_.pointer; }

  // How often what lies below the cursor has been drawn.
  [[nodiscard]] int TracePaints() const { return tracePaints_; }

  [[nodiscard]] QSize sizeHint() const override { return {800, 480}; }
  [[nodiscard]] QSize minimumSizeHint() const override { return {240, 160}; }

 signals:
  void ViewChanged();                     // what is shown, or where back and forward lead
  void CursorPlaced(double x, int pane);  // by a click
  void MemberDragged(int member, double x);
  void MemberClicked(int member);
  void SnapAsked(double x, int pane);  // a peak or flag was double-clicked
  void StepAsked(double bins);         // 1, 10 or 0.1, to the left negative
  void CommandAsked(kestrel::PlotCommand command);
  void PointerMoved(double x, int pane);  // to the nearest sample
  void PointerLeft();
  // By the right button or the menu key: a place on the screen, and the x meant by it.
  void MenuAsked(QPoint place, double x, int pane);

 protected:
  bool event(QEvent* event) override;
  void paintEvent(QPaintEvent* event) override;
  void resizeEvent(QResizeEvent* event) override;
  void changeEvent(QEvent* event) override;
  void mousePressEvent(QMouseEvent* event) override;
  void mouseMoveEvent(QMouseEvent* event) override;
  void mouseReleaseEvent(QMouseEvent* event) override;
  void mouseDoubleClickEvent(QMouseEvent* event) override;
  void wheelEvent(QWheelEvent* event) override;
  void leaveEvent(QEvent* event) override;
  void contextMenuEvent(QContextMenuEvent* event) override;
  void keyPressEvent(QKeyEvent* event) override;
  void focusInEvent(QFocusEvent* event) override;
  void focusOutEvent(QFocusEvent* event) override;

 private:
  enum class Drag { None, Click, Pan, PanAcross, PanUp, Member, Band };
  struct Press {
    Drag drag = Drag::None;
    Drag wished = Drag::None;  // once the pointer has moved
    QPointF place;
    Qt::MouseButton button = Qt::NoButton;
    int pane = -1;
    int member = -1;
    PlotRanges ranges;
  };

  [[nodiscard]] PlotPage Page() const;
  void LayOut();
  void Redraw();
  void Refresh(const std::function<void()>& change);
  void DrawPicture(QSize pixels, double ratio);
  void Changed(bool isRemembered);
  void Pan(QPointF place);
  void ZoomToBand();
  void Point(QPointF place);
  void ForgetPointer();
  void SetHover(QPointF place);
  [[nodiscard]] Drag DragAt(QPointF place, int* member) const;
  [[nodiscard]] std::optional<double> NearestSample(double x, int pane) const;
  [[nodiscard]] PlotReadOut ReadOutAt(double x, int pane) const;
  [[nodiscard]] int PaneOrFirst(QPointF place) const;
  bool SnapAt(QPointF place);
  bool MoveView(const QKeyEvent& event);
  bool StepCursor(const QKeyEvent& event);
  bool Command(const QKeyEvent& event);
  void NameView();

  PlotScene scene_;
  PlotNavigator navigator_;
  PlotOverlay overlay_;
  Reader reader_;
  Look look_;
  LookFonts fonts_;
  PlotLayout layout_;
  QImage picture_;  // ground, traces and labels
  double ratio_ = 1;
  bool isPictureValid_ = false;
  int tracePaints_ = 0;
  Press press_;
  QTimer settled_;  // after the last turn of the wheel
};

}  // namespace kestrel
