// How the plot is laid out and what its labels show.
// SPDX-License-Identifier: MIT
#include "ui/plot/plot_panel.h"

#include <QGridLayout>
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
  auto* swatch = new QLabel;
  swatch->setFixedSize(18, 4);
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

Qt::CursorShape GripShape(Grip grip) {
  switch (grip) {
    case Grip::Band:
      return Qt::SizeHorCursor;
    case Grip::Edge:
      return Qt::SplitHCursor;
    case Grip::Level:
      return Qt::SizeVerCursor;
    default:
      return Qt::ArrowCursor;
  }
}

QString GripHint(Grip grip) {
  switch (grip) {
    case Grip::Band:
      return PlotPanel::tr("Drag to move the band, with Shift to move this edge only");
    case Grip::Edge:
      return PlotPanel::tr("Drag to move this edge only");
    case Grip::Level:
      return PlotPanel::tr("Drag to set the alarm level");
    default:
      return {};
  }
}

// A cursor read-out that keeps its place while hidden and does not move its neighbours.
QLabel* MakeCursorLabel(const char* name, const QString& widest) {
  QLabel* label = MakeLabel(name, "");
  label->setAlignment(Qt::AlignRight | Qt::AlignVCenter);
  label->setMinimumWidth(label->fontMetrics().horizontalAdvance(widest));
  KeepPlaceWhileHidden(label);
  return label;
}

}  // namespace

PlotPanel::PlotPanel(const CurrentRecord& record)
    : cmdPlotScale(MakeButton("cmdPlotScale", kStartScale,
                              tr("Vertical full scale in g; each press takes the next step"))),
      record_(record),
      lblCursorX_(MakeCursorLabel("lblCursorX", "000")),
      LblFreq_(MakeCursorLabel("LblFreq", "00,000 Hz")),
      lblCursorTime_(MakeLabel("lblCursorTime", "")),
      lblCursorY_(MakeCursorLabel("lblCursorY", "-000.000")),
      frame_(new PlotFrame),
      crossHair_(new CrossHair(frame_->pic1)),
      bandLines_(new BandLines(frame_->pic1)),
      hoverValues_(new HoverValues(frame_->pic1)) {
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
  lblCursorX_->setAccessibleDescription(tr("Cursor, bin or sample"));
  LblFreq_->setAccessibleDescription(tr("Cursor, frequency"));
  lblCursorTime_->setAccessibleDescription(tr("Cursor, time of the sample"));
  lblCursorY_->setAccessibleDescription(tr("Cursor, acceleration in g"));
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
  auto* strip = new QHBoxLayout;
  strip->addWidget(new QLabel(tr("Full scale, g")));
  strip->addWidget(cmdPlotScale);
  strip->addSpacing(16);
  for (const Axis axis : kAxes) {
    strip->addWidget(MakeSwatch(TraceColour(axis)));
    strip->addWidget(traces_[Index(axis)]);
  }
  strip->addStretch();
  LayOutReadOuts(*strip);
  auto* all = new QVBoxLayout(this);
  all->setContentsMargins(0, 0, 0, 0);
  all->addLayout(strip);
  all->addWidget(frame_, 1);
}

// Frequency and time share a place: a record has the one or the other.
void PlotPanel::LayOutReadOuts(QBoxLayout& strip) {
  auto* shared = new QGridLayout;
  shared->addWidget(LblFreq_, 0, 0);
  shared->addWidget(lblCursorTime_, 0, 0);
  lblCursorTime_->setAlignment(Qt::AlignRight | Qt::AlignVCenter);
  strip.addWidget(new QLabel(tr("Cursor")));
  strip.addWidget(lblCursorX_);
  strip.addLayout(shared);
  strip.addWidget(lblCursorY_);
  strip.addWidget(new QLabel(tr("g")));
}

void PlotPanel::SetStartValues() {
  lblCursorX_->setText("0");
  LblFreq_->setText(QString("0") + " Hz");
  lblCursorY_->setText("0.00");
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
    for (const bool high : {false, true}) frame_->SetEdgeText(high, band, text);
  }
}

void PlotPanel::SetUnit(const std::string& text) {
  frame_->Label5->setText(QString::fromStdString(text));
}
void PlotPanel::ShowFrequency(bool shown) {
  LblFreq_->setVisible(shown);
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
  frame_->PlaceEdgeLabel(high, band, x);
  frame_->SetEdgeText(high, band, QString::fromStdString(text));
}
void PlotPanel::ShowGrip(Grip grip) {
  if (grip == grip_) return;
  grip_ = grip;
  PictureBox* pic1 = frame_->pic1;
  pic1->setToolTip(GripHint(grip));
  if (grip == Grip::None) {
    pic1->unsetCursor();
  } else {
    pic1->setCursor(GripShape(grip));
  }
}

void PlotPanel::SetCursorX(const std::string& text) {
  lblCursorX_->setText(QString::fromStdString(text));
}
void PlotPanel::SetCursorFrequency(const std::string& text) {
  LblFreq_->setText(QString::fromStdString(text));
}
void PlotPanel::SetCursorTime(const std::string& text) {
  lblCursorTime_->setText(QString::fromStdString(text));
}
void PlotPanel::ClearCursor() {
  for (QLabel* label : {lblCursorX_, LblFreq_, lblCursorTime_, lblCursorY_}) label->clear();
  crossHair_->Hide();
}
void PlotPanel::SetCursorY(const std::string& text) {
  lblCursorY_->setText(QString::fromStdString(text));
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
  if (lblCursorX_->text().isEmpty()) return tr("Plot, no cursor");
  const QLabel* place = LblFreq_->isHidden() ? lblCursorTime_ : LblFreq_;
  const QString where = place->text().isEmpty() ? QString() : place->text() + ", ";
  return tr("Plot, cursor at %1 %2, %3%4 g")
      .arg(frame_->Label5->text(), lblCursorX_->text(), where, lblCursorY_->text());
}

QString PlotPanel::PictureInWords() {
  const QString keys = tr("Arrow, page, home and end keys move the cursor.");
  if (frame_->pic1->IsEmpty()) return tr("No record yet.") + " " + keys;
  std::array<bool, 3> shown{};
  for (const Axis axis : kAxes) shown[Index(axis)] = TraceTicked(axis);
  return QString::fromStdString(PlotSummary(record_.Get(), shown)) + " " + keys;
}

int PlotPanel::CursorIndex() {
  return lblCursorX_->text().toInt();
}
int PlotPanel::LastIndex() {
  return static_cast<int>(ScaleWidth());
}
void PlotPanel::PlaceCursor(int index) {
  emit CursorPlaced(index);
}

}  // namespace kestrel
