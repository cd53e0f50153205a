// How the plot is laid out and what its labels show.
// SPDX-License-Identifier: MIT
#include "ui/plot/plot_panel.h"

#include <QHBoxLayout>
#include <QKeyEvent>
#include <QTimer>
#include <QVBoxLayout>
#include <cmath>
#include <optional>

#include "alarms/alarm_status.h"
#include "app/program_state.h"
#include "plot/plot_summary.h"
#include "plot/trace_values.h"
#include "record/frequency.h"
#include "ui/parts/widgets.h"

namespace kestrel {
namespace {

constexpr const char* kStartScale = "1";

// A short line in the trace's colour, beside its check box.
QLabel* MakeSwatch(double colour) {
  constexpr int kThickness = 4;
  auto* swatch = new QLabel;
  swatch->setFixedHeight(kThickness);
  PaintGround(swatch, ToColour(colour));
  return swatch;
}

std::optional<CursorStep> StepFor(int key) {
  switch (key) {
    case Qt::Key_Left:
      return CursorStep::BinBack;
    case Qt::Key_Right:
      return CursorStep::BinForward;
    case Qt::Key_PageDown:
      return CursorStep::PageBack;
    case Qt::Key_PageUp:
      return CursorStep::PageForward;
    case Qt::Key_Home:
      return CursorStep::First;
    case Qt::Key_End:
      return CursorStep::Last;
    default:
      return std::nullopt;
  }
}

}  // namespace

PlotPanel::PlotPanel(const CurrentRecord& record)
    : cmdPlotScale(new ScaleButton("cmdPlotScale", kStartScale)),
      record_(record),
      strip_(new QHBoxLayout),
      frame_(new PlotFrame),
      crossHair_(new CrossHair(frame_->pic1)),
      bandLines_(new BandLines(frame_->pic1)),
      hoverValues_(new HoverValues(frame_->pic1)),
      grip_(*frame_->pic1) {
  for (const Axis axis : kAxes) {
    const QString letter = QString(QChar(Letter(axis)));
    traces_[Index(axis)] =
        MakeCheckBox("ck" + letter + "trace", "&" + letter, tr("Show the %1 axis").arg(letter));
  }
  LayOut();
  PreparePlot();
  NameParts();
}

void PlotPanel::NameParts() {
  for (const Axis axis : kAxes) {
    TraceBox(axis)->setAccessibleName(tr("Trace of axis %1").arg(QChar(Letter(axis))));
  }
  PlotAccessible::Attach(frame_->pic1, *this);
}

void PlotPanel::PreparePlot() {
  PictureBox* pic1 = frame_->pic1;
  pic1->setFocusPolicy(Qt::StrongFocus);
  pic1->installEventFilter(this);
  connect(pic1, &PictureBox::PointerMoved, this, &PlotPanel::PointerMoved);
  connect(pic1, &PictureBox::PointerPressed, this, &PlotPanel::PointerPressed);
  connect(pic1, &PictureBox::PointerReleased, this, &PlotPanel::PointerReleased);
  connect(pic1, &PictureBox::PointerLeft, this, &PlotPanel::PointerLeft);
  connect(pic1, &PictureBox::PointerLost, this, &PlotPanel::PointerLost);
  connect(pic1, &PictureBox::PointerLeft, crossHair_, &CrossHair::Hide);
  connect(pic1, &PictureBox::PointerLeft, this, &PlotPanel::HideHoverValues);
}

bool PlotPanel::eventFilter(QObject* watched, QEvent* event) {
  if (event->type() == QEvent::KeyPress) {
    const auto step = StepFor(static_cast<QKeyEvent*>(event)->key());
    if (step) {
      emit CursorStepped(*step);
      return true;
    }
  }
  return QWidget::eventFilter(watched, event);
}

void PlotPanel::LayOut() {
  strip_->addWidget(new QLabel(tr("Full scale, g")));
  strip_->addWidget(cmdPlotScale);
  strip_->addStretch(1);
  for (const Axis axis : kAxes) {
    swatches_[Index(axis)] = MakeSwatch(TraceColour(axis));
    strip_->addWidget(swatches_[Index(axis)]);
    strip_->addWidget(traces_[Index(axis)]);
  }
  strip_->addStretch(8);
  readouts_.AddTo(*strip_);
  auto* all = new QVBoxLayout(this);
  all->setContentsMargins(0, 0, 0, 0);
  all->addLayout(strip_);
  all->addWidget(frame_, 1);
  SetSpacing(RoomySpacing());
}

void PlotPanel::SetSpacing(const Spacing& spacing) {
  strip_->setSpacing(spacing.beside);
  layout()->setSpacing(spacing.between);
  for (QLabel* swatch : swatches_) swatch->setFixedWidth(spacing.swatch);
}

void PlotPanel::SetStartValues() {
  readouts_.SetStartValues();
  frame_->lblXmin->setText("0");
  SetScaleCaption(kStartScale);
  SetYmax(kStartScale);
  SetYmid("0.5");
  SetYmin("0");
  SetXmax(std::to_string(kFftWidth));
  SetUnit("bin");
  for (QCheckBox* box : traces_) box->setChecked(true);
  frame_->pic1->Scale(0, 1, kFftWidth, 0);
  frame_->pic1->SetHint(tr("No record yet. Press Start."));
}

void PlotPanel::IniAlarmBandLabels() {
  SetEdgeLabels(" ");
}
void PlotPanel::ClearABLabels() {
  SetEdgeLabels("");
}

void PlotPanel::SetEdgeLabels(const QString& text) {
  for (int band = 1; band <= kAlarmBands; ++band) {
    for (const bool high : {false, true}) frame_->Edges().SetText(high, band, text);
  }
}

void PlotPanel::SetUnit(const std::string& text) {
  frame_->Label5->setText(QString::fromStdString(text));
}
void PlotPanel::ShowFrequency(bool shown) {
  readouts_.ShowFrequency(shown);
}
void PlotPanel::SetXmax(const std::string& text) {
  frame_->lblXmax->setText(QString::fromStdString(text));
}
void PlotPanel::SetYmax(const std::string& text) {
  frame_->lblYmax->setText(QString::fromStdString(text));
}
void PlotPanel::SetYmid(const std::string& text) {
  frame_->LbLYmid->setText(QString::fromStdString(text));
}
void PlotPanel::SetYmin(const std::string& text) {
  frame_->lblYmin->setText(QString::fromStdString(text));
}
std::string PlotPanel::Ymax() {
  return frame_->lblYmax->text().toStdString();
}

std::string PlotPanel::ScaleCaption() {
  return cmdPlotScale->text().toStdString();
}
void PlotPanel::SetScaleCaption(const std::string& text) {
  const QString scale = QString::fromStdString(text);
  cmdPlotScale->setText(scale);
  cmdPlotScale->setAccessibleName(tr("Full scale %1 g").arg(scale));
}

bool PlotPanel::TraceTicked(Axis axis) {
  return TraceBox(axis)->isChecked();
}
void PlotPanel::TickTrace(Axis axis) {
  TraceBox(axis)->setChecked(true);
}

// The bands belong to FFT records.
void PlotPanel::SetScale(double left, double top, double right, double bottom) {
  frame_->pic1->Scale(left, top, right, bottom);
  bandLines_->setVisible(ScaleWidth() == kFftWidth);
}
// Told when the new picture is complete.
void PlotPanel::ClearPlot() {
  frame_->pic1->Cls();
  HideHoverValues();
  QTimer::singleShot(0, this, [this] { PlotAccessible::PictureChanged(frame_->pic1); });
}
void PlotPanel::DrawLine(std::size_t trace, double x1, double y1, double x2, double y2,
                         double colour) {
  frame_->pic1->Line(trace, x1, y1, x2, y2, colour);
}

double PlotPanel::ScaleWidth() {
  return frame_->pic1->ScaleWidth();
}
double PlotPanel::ScaleHeight() {
  return frame_->pic1->ScaleHeight();
}
void PlotPanel::ShowLine(int index, const OverlayLine& line) {
  bandLines_->SetLine(index, line);
}
void PlotPanel::PlaceEdgeLabel(bool high, int band, const std::string& text, double x) {
  frame_->Edges().PlaceAt(high, band, x);
  frame_->Edges().SetText(high, band, QString::fromStdString(text));
}
void PlotPanel::ShowGrip(Grip grip) {
  grip_.Show(grip);
}

void PlotPanel::SetCursorX(const std::string& text) {
  readouts_.SetX(text);
}
void PlotPanel::SetCursorFrequency(const std::string& text) {
  readouts_.SetFrequency(text);
}
void PlotPanel::SetCursorTime(const std::string& text) {
  readouts_.SetTime(text);
}
void PlotPanel::ClearCursor() {
  readouts_.Clear();
  crossHair_->Hide();
}
void PlotPanel::SetCursorY(const std::string& text) {
  readouts_.SetY(text);
}
void PlotPanel::MoveCrossHair(double x, double y) {
  crossHair_->Move(x, y);
  PlotAccessible::CursorMoved(frame_->pic1, CursorIndex());
}

void PlotPanel::ShowHoverValues(double x, double y) {
  const Record& record = record_.Get();
  const int index = static_cast<int>(std::nearbyint(x));
  if (frame_->pic1->IsEmpty() || index < 0 || index > record.Width()) {
    HideHoverValues();
    return;
  }
  PointOfRecord point{.index = index,
                      .hertz = index * BinWidth(record.settings.option),
                      .isTime = record.kind == RecordKind::Time,
                      .g = {},
                      .shown = {}};
  for (const Axis axis : kAxes) {
    point.g[Index(axis)] = record.Values(axis)[static_cast<std::size_t>(index)];
    point.shown[Index(axis)] = TraceTicked(axis);
  }
  hoverValues_->ShowBeside({x, y}, QString::fromStdString(TraceValues(point)));
}

QString PlotPanel::CursorInWords() {
  return readouts_.InWords(frame_->Label5->text());
}

QString PlotPanel::PictureInWords() {
  const QString keys = tr("Arrow, page, home and end keys move the cursor.");
  if (frame_->pic1->IsEmpty()) return tr("No record yet.") + " " + keys;
  std::array<bool, 3> shown{};
  for (const Axis axis : kAxes) shown[Index(axis)] = TraceTicked(axis);
  return QString::fromStdString(PlotSummary(record_.Get(), shown)) + " " + keys;
}

int PlotPanel::CursorIndex() {
  return readouts_.Index();
}
int PlotPanel::LastIndex() {
  return static_cast<int>(ScaleWidth());
}
void PlotPanel::PlaceCursor(int index) {
  emit CursorPlaced(index);
}

}  // namespace kestrel
