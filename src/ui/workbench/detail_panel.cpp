// Edges that snap to bins, and thresholds that snap to codes.
// SPDX-License-Identifier: MIT
#include "ui/workbench/detail_panel.h"

#include <QHBoxLayout>
#include <QSignalBlocker>
#include <QVBoxLayout>
#include <algorithm>
#include <cmath>

#include "alarms/band_cells.h"
#include "alarms/band_range.h"
#include "record/frequency.h"
#include "ui/parts/widgets.h"

namespace kestrel {
namespace {

QDoubleSpinBox* MakeEdge(const char* name, const QString& accessibleName) {
  auto* spin = new QDoubleSpinBox;
  spin->setObjectName(name);
  spin->setAccessibleName(accessibleName);
  spin->setToolTip(accessibleName);
  spin->setDecimals(1);
  spin->setGroupSeparatorShown(true);
  spin->setKeyboardTracking(false);
  spin->setAlignment(Qt::AlignRight);
  return spin;
}

baseline::Alarm AlarmOf(AlarmLevel level) {
  return level == AlarmLevel::Warning ? baseline::Alarm::Warning : baseline::Alarm::Fault;
}

}  // namespace

DetailPanel::DetailPanel(WorkbenchModel& model)
    : model_(model),
      plot_(new DetailPlot),
      spnLow_(MakeEdge("spnBandFrom", tr("First frequency of the band, Hz; it snaps to a bin"))),
      spnHigh_(MakeEdge("spnBandTo", tr("Last frequency of the band, Hz; it snaps to a bin"))) {
  setObjectName("detailPanel");
  LayOut();
  connect(spnLow_, &QDoubleSpinBox::valueChanged, this, [this] { TakeEdges(true); });
  connect(spnHigh_, &QDoubleSpinBox::valueChanged, this, [this] { TakeEdges(false); });
  connect(plot_, &DetailPlot::LevelMoved, this, &DetailPanel::Move);
  connect(plot_, &DetailPlot::LevelStepped, this, &DetailPanel::Step);
  connect(plot_, &DetailPlot::ResetAsked, &model_, &WorkbenchModel::ResetThreshold);
  connect(&model_, &WorkbenchModel::Changed, this, &DetailPanel::Show);
  Show();
}

void DetailPanel::LayOut() {
  auto* edges = new QHBoxLayout;
  edges->setContentsMargins(12, 4, 12, 2);
  edges->setSpacing(6);
  edges->addWidget(MakeCaption(tr("Band fro&m"), spnLow_));
  edges->addWidget(spnLow_);
  edges->addWidget(MakeCaption(tr("&to"), spnHigh_));
  edges->addWidget(spnHigh_);
  edges->addWidget(MakeLabel("lblBandHz", tr("Hz")));
  edges->addStretch(1);
  auto* column = new QVBoxLayout(this);
  column->setContentsMargins(0, 0, 0, 0);
  column->setSpacing(0);
  column->addLayout(edges);
  column->addWidget(plot_, 1);
}

QString DetailPanel::Title() const {
  return tr("Band %1").arg(model_.Choice().cell.band);
}

QString DetailPanel::Summary() const {
  if (!model_.HasGood()) return {};
  const baseline::CellPlace cell = model_.Choice().cell;
  const baseline::Counts& counts = model_.Cell().warnings;
  QString text = tr("%1, %2 Hz, option %3")
                     .arg(QLatin1Char(Letter(cell.axis)))
                     .arg(BandHzText(model_.Bench(), cell.band))
                     .arg(model_.Bench().TheSets().settings.option);
  if (!model_.Cell().levels.refusal.empty()) return text;
  text += tr("; %L1 of %L2 good above the warning")
              .arg(counts.falseAlarms.counted)
              .arg(counts.falseAlarms.of);
  if (counts.caught.of == 0) return text;
  return text + tr(", %L1 of %L2 bad below it").arg(counts.Misses().counted).arg(counts.caught.of);
}

void DetailPanel::Show() {
  ShowEdges();
  if (!model_.HasGood()) {
    DetailScene scene;
    scene.hint =
        tr("The levels of the records in one band and axis, with the thresholds over "
           "them.");
    plot_->SetScene(std::move(scene));
    return;
  }
  const baseline::CellPlace cell = model_.Choice().cell;
  DetailScene scene = DetailOf(model_.Bench(), cell, model_.Choice().look);
  if (scene.hint.isEmpty()) curves_.Fill(model_.Bench(), cell, scene);
  plot_->SetScene(std::move(scene));
}

void DetailPanel::ShowEdges() {
  for (QDoubleSpinBox* spin : {spnLow_, spnHigh_}) spin->setEnabled(model_.HasGood());
  if (!model_.HasGood()) return;
  const double width = BinWidth(model_.Bench().TheSets().settings.option);
  const baseline::Band& band = model_.Bench().BandAt(model_.Choice().cell.band);
  const auto set = [width](QDoubleSpinBox* spin, int bin) {
    const QSignalBlocker quiet(spin);
    spin->setRange(0, kLastBin * width);
    spin->setSingleStep(width);
    spin->setValue(bin * width);
  };
  set(spnLow_, band.lowBin);
  set(spnHigh_, band.highBin);
}

// The other edge gives way where this one passes it.
void DetailPanel::TakeEdges(bool isLow) {
  if (!model_.HasGood()) return;
  const double width = BinWidth(model_.Bench().TheSets().settings.option);
  const auto bin = [width](const QDoubleSpinBox* spin) {
    return std::clamp(static_cast<int>(std::lround(spin->value() / width)), 0, kLastBin);
  };
  const int low = bin(spnLow_);
  const int high = bin(spnHigh_);
  model_.SetEdges(model_.Choice().cell.band, isLow ? low : std::min(low, high),
                  isLow ? std::max(low, high) : high);
  ShowEdges();
}

void DetailPanel::Move(AlarmLevel level, double g) {
  if (!model_.HasGood()) return;
  model_.SetThreshold(AlarmOf(level), std::max(1.0, g / model_.Bench().StepInG()));
}

// From no threshold on, a key begins at the mean of the good records.
void DetailPanel::Step(AlarmLevel level, double db, int codes) {
  if (!model_.HasGood()) return;
  const baseline::CellState& state = model_.Cell();
  const double now = level == AlarmLevel::Warning ? state.warning : state.fault;
  const auto mean = ReferenceG(state, model_.Bench().StepInG());
  const double from = now > 0 ? now : mean.value_or(1) / model_.Bench().StepInG();
  double next = codes != 0 ? from + codes : from * std::pow(10, db / 20);
  // Small codes: a step of a key is one code at least, in its direction.
  if (codes == 0) next = db > 0 ? std::max(next, from + 1) : std::min(std::floor(next), from - 1);
  model_.SetThreshold(AlarmOf(level), std::clamp(next, 1.0, static_cast<double>(kLargestCode)));
}

}  // namespace kestrel
