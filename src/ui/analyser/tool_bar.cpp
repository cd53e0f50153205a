// What the controls of the analyser's tool bar do.
// SPDX-License-Identifier: MIT
#include "ui/analyser/tool_bar.h"

#include <QHBoxLayout>
#include <QPainter>
#include <array>

#include "ui/analyser/choice_menus.h"
#include "ui/chart/look.h"
#include "ui/study/text_table.h"

namespace kestrel {
namespace {

using analysis::Amplitude;
using analysis::Quantity;
using study::CursorKind;
using study::Scale;
using study::StudyChoice;
using study::View;

constexpr std::array kAmplitudes{Amplitude::Rms, Amplitude::Peak, Amplitude::PeakToPeak};

QString UnitName(analysis::HorizontalUnit unit) {
  switch (unit) {
    case analysis::HorizontalUnit::Bin:
      return AnalyserToolBar::tr("Bins");
    case analysis::HorizontalUnit::Cpm:
      return QStringLiteral("CPM");
    case analysis::HorizontalUnit::Order:
      return AnalyserToolBar::tr("Orders");
    default:
      return QStringLiteral("Hz");
  }
}

QString CursorName(CursorKind kind) {
  switch (kind) {
    case CursorKind::Single:
      return AnalyserToolBar::tr("Single");
    case CursorKind::Delta:
      return AnalyserToolBar::tr("Delta");
    case CursorKind::Harmonic:
      return AnalyserToolBar::tr("Harmonic");
    case CursorKind::Sideband:
      return AnalyserToolBar::tr("Sideband");
    default:
      return AnalyserToolBar::tr("No cursor");
  }
}

QString CursorIcon(CursorKind kind) {
  switch (kind) {
    case CursorKind::Delta:
      return QStringLiteral("curd");
    case CursorKind::Harmonic:
      return QStringLiteral("curh");
    case CursorKind::Sideband:
      return QStringLiteral("curs");
    default:
      return QStringLiteral("cur1");
  }
}

QString QuantityName(const StudyChoice& choice) {
  if (choice.view == View::Time) {
    return choice.timeQuantity == study::TimeQuantity::Velocity ? QStringLiteral("Velocity, mm/s")
                                                                : QStringLiteral("Acceleration, g");
  }
  analysis::QuantityChoice shown = choice.quantity;
  if (shown.quantity == Quantity::Level) shown.quantity = Quantity::Acceleration;
  const QString title = Text(analysis::TitleOf(shown));
  return title.section(' ', 0, shown.quantity == Quantity::Density ? -1 : 1);
}

}  // namespace

void ChooseQuantity(StudyChoice& choice, Quantity quantity) {
  choice.quantity.quantity = quantity;
  choice.difference = false;
}

void ChooseVertical(StudyChoice& choice, int kind) {
  if (kind == 2) {
    choice.quantity.quantity = Quantity::Level;
    return;
  }
  if (choice.quantity.quantity == Quantity::Level) {
    choice.quantity.quantity = Quantity::Acceleration;
  }
  choice.up = kind == 1 ? Scale::Logarithmic : Scale::Linear;
}

bool HasLevel(const StudyChoice& choice) {
  return choice.quantity.quantity == Quantity::Acceleration ||
         choice.quantity.quantity == Quantity::Level;
}

void ShowOrHide(StudyChoice& choice, Axis axis) {
  choice.shown[Index(axis)] = !choice.shown[Index(axis)];
}

int VerticalOf(const StudyChoice& choice) {
  if (choice.quantity.quantity == Quantity::Level) return 2;
  return choice.up == Scale::Logarithmic ? 1 : 0;
}

AnalyserToolBar::AnalyserToolBar(StudyModel& model) : model_(model) {
  setObjectName("toolBar");
  Fill();
  LayOut();
  Connect();
  Show();
}

void AnalyserToolBar::Fill() {
  cmdQuantity = new FlatButton("cmdQuantity", tr("Acceleration, g"));
  cmdQuantity->setToolTip(tr("Quantity, and what magnitudes are taken for"));
  cmdQuantity->SetMenu(new QuantityMenu(model_, this));
  segAmplitude =
      new Segments("segAmplitude", tr("Kind of amplitude"),
                   {{"cmdRms", "RMS"}, {"cmdPeak", tr("Peak")}, {"cmdPeakToPeak", "P-P"}});
  segVertical =
      new Segments("segVertical", tr("Vertical axis"),
                   {{"cmdVerticalLinear", tr("Lin")},
                    {"cmdVerticalLog", tr("Log")},
                    {"cmdVerticalDecibel", "dB", {}, tr("Level of acceleration in decibels")}});
  cmdUnit = new FlatButton("cmdUnit", "Hz");
  cmdUnit->setToolTip(tr("Unit of the horizontal axis (U)"));
  cmdUnit->SetMenu(new UnitMenu(model_, this));
  segHorizontal =
      new Segments("segHorizontal", tr("Horizontal axis"),
                   {{"cmdHorizontalLinear", tr("Lin")}, {"cmdHorizontalLog", tr("Log")}});
  segLayout = new Segments("segLayout", tr("Axes overlaid or stacked"),
                           {{"cmdOverlaid", {}, "overlay", tr("Axes in one plot (O)")},
                            {"cmdStacked", {}, "stacked", tr("A plot for each axis (O)")}});
  cmdTraces = new FlatButton("cmdTraces", tr("Traces"));
  cmdTraces->setToolTip(tr("Axes, reference, averages, holds"));
  cmdTraces->SetMenu(new TracesMenu(model_, this));
  cmdCursor = new FlatButton("cmdCursor", tr("No cursor"), "cur1");
  cmdCursor->setToolTip(tr("Kind of cursor (C, D, H, S; N for none)"));
  cmdCursor->SetMenu(new CursorMenu(model_, this));
  cmdBands = MakeFlatToggle("cmdBands", tr("Bands"), "bands", tr("The sensor's alarm bands (B)"));
  cmdLabels =
      MakeFlatToggle("cmdLabels", tr("Labels"), "label", tr("Frequencies at the peaks (L)"));
  cmdKnown = MakeFlatToggle("cmdKnown", tr("Known"), "star", tr("Known frequencies as bands"));
  cmdLive = MakeFlatToggle("cmdLive", tr("Live"), "freeze", {});
  cmdBack = MakeFlatButton("cmdBack", {}, "back", tr("Back to the view before (Alt+Left)"));
  cmdForward = MakeFlatButton("cmdForward", {}, "fwd", tr("Forward again (Alt+Right)"));
  cmdShowAll = MakeFlatButton("cmdShowAll", {}, "fit", tr("Show all (A)"));
  cmdCopy = MakeFlatButton("cmdCopy", {}, "copy", tr("Copy the plot as a picture (Ctrl+C)"));
  cmdExport = new FlatButton("cmdExport", tr("Export"), "export");
  cmdExport->setToolTip(tr("Save the plot as PNG, PDF or SVG (Ctrl+E)"));
}

void AnalyserToolBar::LayOut() {
  auto* row = new QHBoxLayout(this);
  row->setContentsMargins(8, 8, 8, 8);
  row->setSpacing(6);
  const std::array<QWidget*, 6> what{cmdQuantity, segAmplitude,  segVertical,
                                     cmdUnit,     segHorizontal, segLayout};
  for (QWidget* control : what) row->addWidget(control);
  for (QWidget* control : {cmdTraces, cmdCursor, cmdBands, cmdLabels, cmdKnown}) {
    row->addWidget(control);
  }
  row->addStretch(1);
  row->setSpacing(6);
  row->addWidget(cmdLive);
  for (QWidget* control : {cmdBack, cmdForward, cmdShowAll, cmdCopy, cmdExport}) {
    row->addWidget(control);
  }
}

void AnalyserToolBar::Connect() {
  connect(segAmplitude, &Segments::Chosen, this, [this](int index) {
    model_.Change([index](StudyChoice& choice) {
      choice.quantity.amplitude = kAmplitudes[static_cast<std::size_t>(index)];
    });
  });
  connect(segVertical, &Segments::Chosen, this, [this](int kind) {
    model_.Change([kind](StudyChoice& choice) { ChooseVertical(choice, kind); });
  });
  connect(segHorizontal, &Segments::Chosen, this, [this](int kind) {
    model_.Change([kind](StudyChoice& choice) {
      choice.across = kind == 1 ? Scale::Logarithmic : Scale::Linear;
    });
  });
  connect(segLayout, &Segments::Chosen, this, [this](int kind) {
    model_.Change([kind](StudyChoice& choice) { choice.stacked = kind == 1; });
  });
  const auto toggles = [this](FlatButton* button, bool StudyChoice::*part) {
    connect(button, &QToolButton::clicked, this, [this, part](bool on) {
      model_.Change([part, on](StudyChoice& choice) { choice.*part = on; });
    });
  };
  toggles(cmdBands, &StudyChoice::showBands);
  toggles(cmdLabels, &StudyChoice::showLabels);
  toggles(cmdKnown, &StudyChoice::showKnown);
  connect(&model_, &StudyModel::Changed, this, &AnalyserToolBar::Show);
  connect(&model_, &StudyModel::CursorMoved, this, &AnalyserToolBar::ShowCursor);
}

void AnalyserToolBar::Show() {
  const StudyChoice& choice = model_.Choice();
  const bool isTime = choice.view == View::Time;
  const bool isWaterfall = choice.view == View::Waterfall;
  const Quantity quantity = choice.quantity.quantity;
  cmdQuantity->SetCaption(QuantityName(choice), {});
  for (int i = 0; i < 3; ++i) {
    if (choice.quantity.amplitude == kAmplitudes[static_cast<std::size_t>(i)]) {
      segAmplitude->Choose(i);
    }
  }
  const bool hasKind = quantity != Quantity::Level && quantity != Quantity::Density;
  segAmplitude->setEnabled(hasKind);
  segAmplitude->setToolTip(hasKind ? QString() : tr("Levels and densities are of RMS."));
  segVertical->Choose(VerticalOf(choice));
  const bool hasLevel = HasLevel(choice);
  segVertical->Button(2).setEnabled(hasLevel);
  segVertical->Button(2).setToolTip(hasLevel ? tr("Level of acceleration in decibels")
                                             : tr("Decibels are shown of acceleration only."));
  cmdUnit->SetCaption(UnitName(choice.unit), {});
  segHorizontal->Choose(choice.across == Scale::Logarithmic ? 1 : 0);
  segLayout->Choose(choice.stacked ? 1 : 0);
  cmdBands->setChecked(choice.showBands);
  cmdLabels->setChecked(choice.showLabels);
  cmdKnown->setChecked(choice.showKnown);
  const bool isLive = model_.Get().IsLive() && !model_.Get().IsHeld();
  cmdLive->setChecked(!isLive);
  cmdLive->SetCaption(isLive ? tr("Live") : tr("Held"), "freeze");
  cmdLive->setToolTip(isLive ? tr("Each new record is shown. Hold what is shown (Space)")
                             : tr("What is shown stays. Go on with new records (Space)"));
  for (QWidget* control : std::array<QWidget*, 7>{segAmplitude, segVertical, cmdUnit, segHorizontal,
                                                  cmdBands, cmdLabels, cmdKnown}) {
    control->setVisible(!isTime);
  }
  segLayout->setVisible(!isWaterfall);
  cmdLabels->setVisible(!isTime && !isWaterfall);
  ShowCursor();
}

// The kind alone: the cursor itself moves with every movement of the pointer.
void AnalyserToolBar::ShowCursor() {
  const CursorKind kind = model_.Choice().cursor;
  cmdCursor->SetCaption(CursorName(kind), CursorIcon(kind));
  ShowWords();
}

// Words go before controls do.
void AnalyserToolBar::ShowWords() {
  const std::array buttons{cmdBands, cmdLabels, cmdKnown, cmdLive, cmdExport};
  int words = 0;
  narrow_ = layout()->sizeHint().width();
  for (const FlatButton* button : buttons) {
    if (button->isHidden()) continue;
    words += button->WordWidth();
    if (button->IsWordShown()) narrow_ -= button->WordWidth();
  }
  for (FlatButton* button : buttons) button->SetWordShown(narrow_ + words <= width());
}

QSize AnalyserToolBar::minimumSizeHint() const {
  return {narrow_, layout()->sizeHint().height()};
}

void AnalyserToolBar::resizeEvent(QResizeEvent* event) {
  QWidget::resizeEvent(event);
  ShowWords();
}

void AnalyserToolBar::paintEvent(QPaintEvent* /*event*/) {
  QPainter painter(this);
  painter.fillRect(rect(), Look::Of(palette()).window);
}

}  // namespace kestrel
