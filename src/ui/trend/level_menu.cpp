// How the menu is filled, and bands and frequencies of the user's own are asked for.
// SPDX-License-Identifier: MIT
#include "ui/trend/level_menu.h"

#include <algorithm>
#include <cmath>

#include "analysis/known_frequencies.h"
#include "numeric/number_texts.h"
#include "record/frequency.h"
#include "ui/study/text_table.h"
#include "ui/trend/pair_dialog.h"

namespace kestrel {
namespace {

using archive::TrendOf;
using trend::Level;

constexpr int kOptions = 4;
constexpr double kNearPart = 0.01;  // of the frequency

QString Hertz(double hz) {
  return Text(analysis::NumberText(hz, hz < 100 ? 1 : 0));
}

NumberField::Rule FrequencyRule(const QString& what) {
  return {what, LevelMenu::tr("above 0 to 50,000 Hz"), study::IsFrequency};
}

bool IsUsed(const analysis::SensorBand& band) {
  return band.highBin >= band.lowBin && band.highBin > 0 && band.highBin <= 255;
}

// The bins of a band with their edges.
Level LevelOf(TrendOf of, int option, int number, const analysis::SensorBand& band) {
  const double width = BinWidth(option);
  return {.of = of,
          .fromHz = (band.lowBin - 0.5) * width,
          .toHz = (band.highBin + 0.5) * width,
          .name = "Band " + std::to_string(number),
          .band = number,
          .option = option};
}

}  // namespace

LevelMenu::LevelMenu(StudyModel& model, QWidget* parent) : QMenu(parent), model_(model) {
  setObjectName("mnuTrendLevel");
  connect(this, &QMenu::aboutToShow, this, &LevelMenu::Fill);
}

void LevelMenu::Add(QMenu& menu, const QString& name, const QString& text, const Level& level) {
  QAction* action = menu.addAction(text);
  action->setObjectName(name);
  connect(action, &QAction::triggered, this, [this, level] { emit Chosen(level); });
}

void LevelMenu::Fill() {
  for (QMenu* menu : findChildren<QMenu*>(Qt::FindDirectChildrenOnly)) delete menu;
  clear();
  Add(*this, "mnuTrendRms", tr("&RMS over all frequencies"), {.of = TrendOf::Rms});
  Add(*this, "mnuTrendPeak", tr("&Peak over all frequencies"), {.of = TrendOf::Peak});
  QMenu* rms = addMenu(tr("RMS of a &band"));
  QMenu* peak = addMenu(tr("Peak of a b&and"));
  QMenu* near = addMenu(tr("Peak &near a frequency"));
  rms->setObjectName("mnuTrendBandRms");
  peak->setObjectName("mnuTrendBandPeak");
  near->setObjectName("mnuTrendNear");
  AddBands(*rms, TrendOf::BandRms);
  AddBands(*peak, TrendOf::BandPeak);
  AddNear(*near);
  addSeparator();
  Add(*this, "mnuTrendTemperature", tr("&Temperature"), {.of = TrendOf::Temperature});
  Add(*this, "mnuTrendSupply", tr("&Supply"), {.of = TrendOf::Supply});
}

void LevelMenu::AddBands(QMenu& menu, TrendOf of) {
  const QString name = of == TrendOf::BandRms ? "mnuTrendRmsOf" : "mnuTrendPeakOf";
  for (int option = 0; option < kOptions; ++option) {
    const auto* bands = model_.Get().BandsOf(option, model_.Choice().focus);
    if (bands == nullptr) continue;
    for (int number = 1; number <= static_cast<int>(bands->size()); ++number) {
      const auto& band = bands->at(static_cast<std::size_t>(number - 1));
      if (!IsUsed(band)) continue;
      const Level level = LevelOf(of, option, number, band);
      Add(menu, QStringLiteral("%1_%2_%3").arg(name).arg(option).arg(number),
          tr("Band %1, option %2: %3 to %4 Hz")
              .arg(number)
              .arg(option)
              .arg(Hertz(std::max(level.fromHz, 0.0)), Hertz(level.toHz)),
          level);
    }
  }
  for (const study::FreeBand& band : model_.Choice().bands) {
    Add(menu, name + "_" + Text(band.name),
        tr("%1: %2 to %3 Hz").arg(Text(band.name), Hertz(band.fromHz), Hertz(band.toHz)),
        {.of = of, .fromHz = band.fromHz, .toHz = band.toHz, .name = band.name});
  }
  if (!menu.isEmpty()) menu.addSeparator();
  QAction* other = menu.addAction(tr("Other &band..."), this, [this, of] { AskBand(of); });
  other->setObjectName(name + "_other");
}

void LevelMenu::AddNear(QMenu& menu) {
  int number = 0;
  for (const auto& known : analysis::FrequenciesOf(model_.Choice().machine)) {
    if (!study::IsFrequency(known.hz)) continue;
    // Within a bin of the slowest option at least.
    const double within = std::max(known.hz * kNearPart, 2 * BinWidth(kOptions - 1));
    Add(menu, QStringLiteral("mnuTrendNear_%1").arg(number++),
        tr("%1, %2 Hz").arg(Text(known.name), Hertz(known.hz)),
        {.of = TrendOf::PeakNear, .nearHz = known.hz, .withinHz = within, .name = known.name});
  }
  if (!menu.isEmpty()) menu.addSeparator();
  QAction* other = menu.addAction(tr("Other &frequency..."), this, &LevelMenu::AskNear);
  other->setObjectName("mnuTrendNear_other");
}

void LevelMenu::AskBand(TrendOf of) {
  auto* dialog = new PairDialog(
      {.name = "askTrendBand",
       .title = tr("Band"),
       .why = {},
       .first = {"txtTrendFrom", tr("From, Hz"), 100, FrequencyRule(tr("frequency"))},
       .second = {"txtTrendTo", tr("To, Hz"), 1000, FrequencyRule(tr("frequency"))},
       .whyNot =
           [](PairDialog::Number from, PairDialog::Number to) {
             return *from < *to
                        ? QString()
                        : tr("A band ends above where it begins. Type a larger number for To.");
           },
       .told =
           [this, of](PairDialog::Number from, PairDialog::Number to) {
             emit Chosen({.of = of, .fromHz = *from, .toHz = *to});
           }},
      window());
  dialog->show();
}

void LevelMenu::AskNear() {
  auto* dialog = new PairDialog(
      {.name = "askTrendNear",
       .title = tr("Peak near a frequency"),
       .why = tr("The largest peak that stands out of the noise there, read between bins."),
       .first = {"txtTrendNear", tr("Frequency, Hz"), 1000, FrequencyRule(tr("frequency"))},
       .second = {"txtTrendWithin", tr("How far from it, Hz"), 50, FrequencyRule(tr("width"))},
       .told =
           [this](PairDialog::Number near, PairDialog::Number within) {
             emit Chosen({.of = TrendOf::PeakNear, .nearHz = *near, .withinHz = *within});
           }},
      window());
  dialog->show();
}

}  // namespace kestrel
