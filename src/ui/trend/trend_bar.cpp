// How the trend's controls are laid out, shown and read.
// SPDX-License-Identifier: MIT
#include "ui/trend/trend_bar.h"

#include <QHBoxLayout>
#include <QSignalBlocker>
#include <QVBoxLayout>

#include "ui/library/archive_widgets.h"
#include "ui/parts/widgets.h"
#include "ui/study/text_table.h"

namespace kestrel {
namespace {

constexpr int kTypingMs = 250;
constexpr double kDay = 86'400;
constexpr std::array kSpans{kDay, 7 * kDay, 30 * kDay, 0.0};
constexpr std::array kScales{AxisKind::Linear, AxisKind::Logarithmic, AxisKind::Decibel};

}  // namespace

TrendBar::TrendBar()
    : cmdLevel(
          MakeFlatButton("cmdTrendLevel", tr("Level: RMS"), "", tr("What is followed over time"))),
      segVertical(new Segments("segTrendVertical", tr("Vertical axis"),
                               {{"optTrendLin", tr("Lin"), {}, tr("Linear (G)")},
                                {"optTrendLog", tr("Log"), {}, tr("Logarithmic (G)")},
                                {"optTrendDb", tr("dB"), {}, tr("Decibels re 1 g (G)")}})),
      cmdLimits(MakeFlatToggle("cmdTrendLimits", tr("Thresholds"), "bands",
                               tr("Lines of warning and fault (B)"))),
      cmdSetLimits(MakeFlatButton("cmdTrendSetLimits", tr("Set..."), "",
                                  tr("Thresholds of your own, in place of the sensor's"))),
      cmdTemperature(MakeFlatToggle("cmdTrendTemperature", tr("Temperature"), "plus",
                                    tr("The sensor's temperature in a plot of its own, below"))),
      cmdBack(MakeFlatButton("cmdTrendBack", {}, "back", tr("The view before (Alt+Left)"))),
      cmdForward(MakeFlatButton("cmdTrendForward", {}, "fwd", tr("The view after (Alt+Right)"))),
      cmdShowAll(MakeFlatButton("cmdTrendShowAll", {}, "fit", tr("Show all (A)"))),
      cmdCopy(MakeFlatButton("cmdTrendCopy", {}, "copy", tr("Copy the picture (Ctrl+C)"))),
      cmdExport(MakeFlatButton("cmdTrendExport", tr("Export"), "export",
                               tr("What is shown as a table (CSV) or a picture (Ctrl+E)"))),
      cmdSpan(MakeFlatButton("cmdTrendSpan", tr("All"), "cal", tr("From when to when"))),
      cbxSeries_(MakeComboBox("cbxTrendSeries", tr("Records that can be compared"),
                              tr("Only records of one kind, sample-rate option and window can be "
                                 "compared; others are a trend of their own"))),
      cbxMachine_(MakeComboBox("cbxTrendMachine", tr("Machine"), tr("Machine"))),
      cbxPoint_(MakeComboBox("cbxTrendPoint", tr("Point"), tr("Measuring point"))),
      txtText_(new QLineEdit),
      cmdClear_(
          MakeFlatButton("cmdTrendClear", tr("Show all"), "fit", tr("Take the filters away"))) {
  setObjectName("trendBar");
  for (const Axis axis : kAxes) {
    const QString letter(QLatin1Char(Letter(axis)));
    FlatButton* button =
        MakeFlatToggle("cmdTrend" + letter, letter, "",
                       tr("Show or hide %1; Shift+%1 makes it the main one").arg(letter));
    button->SetSwatch(static_cast<int>(Index(axis)));
    button->SetPlace(axis == Axis::X   ? FlatButton::Place::First
                     : axis == Axis::Z ? FlatButton::Place::Last
                                       : FlatButton::Place::Middle);
    axes[Index(axis)] = button;
  }
  const std::array texts{tr("Day"), tr("Week"), tr("Month"), tr("All")};
  const std::array tips{tr("The last day that has records"), tr("The last 7 days with records"),
                        tr("The last 30 days with records"), tr("From the first record on (A)")};
  const std::array names{"cmdTrendDay", "cmdTrendWeek", "cmdTrendMonth", "cmdTrendAll"};
  for (std::size_t i = 0; i < spans_.size(); ++i) {
    spans_[i] = MakeFlatButton(names[i], texts[i], "", tips[i]);
    spans_[i]->SetPlace(i == 0                   ? FlatButton::Place::First
                        : i + 1 == spans_.size() ? FlatButton::Place::Last
                                                 : FlatButton::Place::Middle);
  }
  txtText_->setObjectName("txtTrendText");
  txtText_->setPlaceholderText(tr("Machine, point, note, tag"));
  txtText_->setAccessibleName(tr("Text to look for"));
  txtText_->setToolTip(tr("Only records with this text (Ctrl+F)"));
  txtText_->setClearButtonEnabled(true);
  cmdClear_->setEnabled(false);
  SetChoices({});
  LayOut();
  Connect();
}

void TrendBar::LayOut() {
  auto* rows = new QVBoxLayout(this);
  rows->setContentsMargins(8, 8, 8, 8);
  rows->setSpacing(8);
  auto* upper = new QHBoxLayout;
  auto* lower = new QHBoxLayout;
  const auto group = [](QHBoxLayout* row, const auto& buttons) {
    auto* together = new QHBoxLayout;
    together->setSpacing(0);
    for (FlatButton* button : buttons) together->addWidget(button);
    row->addLayout(together);
  };
  upper->addWidget(cmdLevel);
  group(upper, axes);
  for (QWidget* control : std::initializer_list<QWidget*>{segVertical, cmdLimits, cmdSetLimits,
                                                          cmdTemperature, cbxSeries_}) {
    upper->addWidget(control);
  }
  upper->addStretch(1);
  for (QWidget* control : {cmdBack, cmdForward, cmdShowAll, cmdCopy, cmdExport}) {
    upper->addWidget(control);
  }
  group(lower, spans_);
  for (QWidget* control :
       std::initializer_list<QWidget*>{cmdSpan, cbxMachine_, cbxPoint_, txtText_, cmdClear_}) {
    lower->addWidget(control);
  }
  txtText_->setMaximumWidth(260);
  lower->addStretch(1);
  for (QHBoxLayout* row : {upper, lower}) {
    row->setSpacing(8);
    rows->addLayout(row);
  }
}

void TrendBar::Connect() {
  typing_.setSingleShot(true);
  typing_.setInterval(kTypingMs);
  const auto ask = [this] {
    typing_.stop();
    cmdClear_->setEnabled(IsFiltered());
    emit FilterChanged();
  };
  for (std::size_t i = 0; i < spans_.size(); ++i) {
    connect(spans_[i], &QToolButton::clicked, this, [this, i] { emit LastAsked(kSpans[i]); });
  }
  connect(&typing_, &QTimer::timeout, this, ask);
  connect(txtText_, &QLineEdit::textChanged, &typing_, qOverload<>(&QTimer::start));
  connect(txtText_, &QLineEdit::returnPressed, this, ask);
  connect(cbxPoint_, &QComboBox::currentIndexChanged, this, ask);
  connect(cbxMachine_, &QComboBox::currentIndexChanged, this, [this, ask] {
    const QSignalBlocker blocker(cbxPoint_);
    cbxPoint_->setCurrentIndex(0);
    emit MachineChosen();
    ask();
  });
  connect(cmdClear_, &QToolButton::clicked, this, [this, ask] {
    Clear();
    ask();
  });
  connect(cbxSeries_, &QComboBox::activated, this, &TrendBar::SeriesChosen);
}

void TrendBar::Clear() {
  for (QComboBox* list : {cbxMachine_, cbxPoint_}) {
    const QSignalBlocker blocker(list);
    list->setCurrentIndex(0);
  }
  const QSignalBlocker blocker(txtText_);
  txtText_->clear();
}

void TrendBar::Show(const trend::Choice& choice) {
  cmdLevel->SetCaption(tr("Level: %1").arg(Text(TitleOf(choice.level))), {});
  const bool isOfAxis = archive::IsOfAxis(choice.level.of);
  for (const Axis axis : kAxes) {
    axes[Index(axis)]->setChecked(isOfAxis && choice.Shows(axis));
    axes[Index(axis)]->setEnabled(isOfAxis);
  }
  for (int i = 0; i < 3; ++i) {
    if (choice.up == kScales[static_cast<std::size_t>(i)]) segVertical->Choose(i);
  }
  segVertical->setEnabled(isOfAxis);
  segVertical->setToolTip(isOfAxis ? QString() : tr("Conditions are drawn linearly."));
  cmdLimits->setChecked(choice.hasLimits);
  cmdTemperature->setChecked(choice.hasTemperature);
  cmdTemperature->setEnabled(choice.level.of != archive::TrendOf::Temperature);
}

void TrendBar::ShowSpan(const QString& span) {
  cmdSpan->SetCaption(span, QStringLiteral("cal"));
}

void TrendBar::ShowSeries(const archive::Levels& levels, std::size_t chosen,
                          const trend::Level& level) {
  const QSignalBlocker blocker(cbxSeries_);
  cbxSeries_->clear();
  for (const archive::LevelSeries& series : levels.series) {
    cbxSeries_->addItem(tr("%1 (%L2)").arg(Text(NameOf(series, level))).arg(series.points.size()));
  }
  cbxSeries_->setCurrentIndex(static_cast<int>(chosen));
  cbxSeries_->setVisible(levels.series.size() > 1);
}

void TrendBar::SetChoices(const LibraryChoices& choices) {
  FillChoices(*cbxMachine_, tr("All machines"), choices.machines, tr("No machine noted"));
  FillChoices(*cbxPoint_, tr("All points"), choices.points, tr("No point noted"));
}

std::string TrendBar::Machine() const {
  return cbxMachine_->currentData().toString().toStdString();
}

archive::Filter TrendBar::Filter() const {
  archive::Filter filter;
  const auto chosen = [](const QComboBox& list) -> std::optional<std::string> {
    if (!list.currentData().isValid()) return std::nullopt;
    return list.currentData().toString().toStdString();
  };
  filter.machine = chosen(*cbxMachine_);
  filter.point = chosen(*cbxPoint_);
  filter.text = txtText_->text().trimmed().toStdString();
  return filter;
}

}  // namespace kestrel
