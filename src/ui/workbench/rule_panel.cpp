// How the rule and the judgement are entered, and what they need.
// SPDX-License-Identifier: MIT
#include "ui/workbench/rule_panel.h"

#include <QHBoxLayout>
#include <QSignalBlocker>
#include <QVBoxLayout>
#include <algorithm>

#include "ui/parts/widgets.h"
#include "ui/study/text_table.h"

namespace kestrel {
namespace {

using baseline::RuleKind;

QDoubleSpinBox* MakeSpin(const char* name, const QString& accessibleName, double least, double most,
                         const QString& suffix) {
  auto* spin = new QDoubleSpinBox;
  spin->setObjectName(name);
  spin->setAccessibleName(accessibleName);
  spin->setToolTip(accessibleName);
  spin->setRange(least, most);
  spin->setDecimals(1);
  spin->setSingleStep(suffix.isEmpty() ? 0.1 : 0.5);
  spin->setSuffix(suffix);
  spin->setAlignment(Qt::AlignRight);
  spin->setKeyboardTracking(false);
  return spin;
}

QSpinBox* MakeCount(const char* name, const QString& accessibleName) {
  auto* spin = new QSpinBox;
  spin->setObjectName(name);
  spin->setAccessibleName(accessibleName);
  spin->setToolTip(accessibleName);
  spin->setRange(1, kMostOf);
  spin->setKeyboardTracking(false);
  return spin;
}

QString Decibels() {
  return QStringLiteral(" dB");
}

}  // namespace

RulePanel::RulePanel(WorkbenchModel& model)
    : model_(model),
      kinds_{},
      needs_{},
      spnK_(MakeSpin("spnK", tr("k: number of standard deviations above the mean of the decibels"),
                     kLeastK, kMostK, {})),
      spnAtLeast_(
          MakeSpin("spnAtLeast",
                   tr("The warning lies at least this far above the mean, however little the "
                      "good records differ"),
                   0, kMostDb, Decibels())),
      spnFaultAbove_(MakeSpin("spnFaultAbove", tr("The fault lies this far above the warning"), 0,
                              kMostDb, Decibels())),
      spnM_(MakeCount("spnM", tr("This many records above the warning raise an alarm"))),
      spnN_(MakeCount("spnN", tr("out of this many in a row"))),
      spnHysteresis_(MakeSpin("spnHysteresis",
                              tr("An alarm ends when as many records are below the warning by "
                                 "this much"),
                              0, kMostDb, Decibels())) {
  setObjectName("rulePanel");
  const std::array<std::pair<const char*, QString>, 3> captions{
      {{"optMeanSigma", tr("mean + k \u00B7 \u03C3, of decibels")},
       {"optLimit95", tr("limit for 9&5 % of records")},
       {"optLimit99", tr("limit for 9&9 % of records")}}};
  for (std::size_t i = 0; i < kinds_.size(); ++i) {
    kinds_[i] = new QRadioButton(captions[i].second);
    kinds_[i]->setObjectName(captions[i].first);
    needs_[i] = new BenchNote(QString(captions[i].first) + "_needs");
  }
  LayOut();
  Connect();
  connect(&model_, &WorkbenchModel::Changed, this, &RulePanel::Show);
  Show();
}

void RulePanel::LayOut() {
  auto* column = new QVBoxLayout(this);
  column->setContentsMargins(0, 0, 0, 8);
  column->setSpacing(2);
  const auto inside = [column](QWidget* widget, int left) {
    auto* row = new QHBoxLayout;
    row->setContentsMargins(left, 2, 12, 2);
    row->addWidget(widget, 1);
    column->addLayout(row);
  };
  const auto field = [column](const QString& caption, int left, QWidget* first,
                              std::initializer_list<QWidget*> more = {}) {
    auto* row = new QHBoxLayout;
    row->setContentsMargins(left, 2, 12, 2);
    row->setSpacing(4);
    row->addWidget(MakeCaption(caption, first), 1);
    row->addWidget(first);
    for (QWidget* widget : more) row->addWidget(widget);
    column->addLayout(row);
  };
  column->addWidget(new BenchHeading("lblRule", tr("Rule")));
  inside(kinds_[0], 12);
  field(tr("&k"), 34, spnK_);
  field(tr("at &least"), 34, spnAtLeast_);
  for (std::size_t i = 1; i < kinds_.size(); ++i) {
    inside(kinds_[i], 12);
    inside(needs_[i], 34);
  }
  needs_[0]->hide();
  field(tr("Fault above warning"), 12, spnFaultAbove_);
  column->addWidget(new BenchHeading("lblJudgement", tr("Judgement in replay")));
  field(tr("Records a&bove"), 12, spnM_, {MakeCaption(tr("of"), spnN_), spnN_});
  field(tr("&Hysteresis"), 12, spnHysteresis_);
  inside(
      new BenchNote("lblSensorJudges", tr("The sensor itself judges each record alone. More than "
                                          "1 of 1 is judged by this program.")),
      12);
  int width = 0;
  for (const QWidget* spin : {spnK_, spnAtLeast_, spnFaultAbove_, spnHysteresis_}) {
    width = std::max(width, spin->sizeHint().width());
  }
  for (QWidget* spin : {spnK_, spnAtLeast_, spnFaultAbove_, spnHysteresis_}) {
    spin->setMinimumWidth(width);
  }
}

void RulePanel::Connect() {
  for (QRadioButton* kind : kinds_) {
    connect(kind, &QRadioButton::clicked, this, &RulePanel::TakeRule);
  }
  for (QDoubleSpinBox* spin : {spnK_, spnAtLeast_, spnFaultAbove_}) {
    connect(spin, &QDoubleSpinBox::valueChanged, this, &RulePanel::TakeRule);
  }
  for (QSpinBox* spin : {spnM_, spnN_}) {
    connect(spin, &QSpinBox::valueChanged, this, &RulePanel::TakeJudgement);
  }
  connect(spnHysteresis_, &QDoubleSpinBox::valueChanged, this, &RulePanel::TakeJudgement);
}

void RulePanel::TakeRule() {
  baseline::Rule rule{.k = spnK_->value(),
                      .atLeastDb = spnAtLeast_->value(),
                      .faultAboveDb = spnFaultAbove_->value()};
  for (std::size_t i = 0; i < kinds_.size(); ++i) {
    if (kinds_[i]->isChecked()) rule.kind = static_cast<RuleKind>(i);
  }
  model_.SetRule(rule);
}

// m is never more than n, whichever of the two was changed.
void RulePanel::TakeJudgement() {
  const bool isOfM = sender() == spnM_;
  const int m = isOfM ? spnM_->value() : std::min(spnM_->value(), spnN_->value());
  const int n = isOfM ? std::max(spnM_->value(), spnN_->value()) : spnN_->value();
  model_.SetJudgement({.m = m, .n = n, .hysteresisDb = spnHysteresis_->value()});
}

void RulePanel::Show() {
  const baseline::Rule& rule = model_.Choice().rule;
  const baseline::Judgement& judgement = model_.Choice().judgement;
  const auto set = [](auto* spin, auto value) {
    const QSignalBlocker quiet(spin);
    spin->setValue(value);
  };
  set(spnK_, rule.k);
  set(spnAtLeast_, rule.atLeastDb);
  set(spnFaultAbove_, rule.faultAboveDb);
  set(spnM_, judgement.m);
  set(spnN_, judgement.n);
  set(spnHysteresis_, judgement.hysteresisDb);
  spnHysteresis_->setEnabled(!judgement.IsSingle());
  spnHysteresis_->setToolTip(judgement.IsSingle()
                                 ? tr("A record judged alone has no hysteresis: choose more than 1 "
                                      "record first")
                                 : spnHysteresis_->accessibleName());
  const bool isMean = rule.kind == RuleKind::MeanAndSigma;
  spnK_->setEnabled(isMean);
  spnAtLeast_->setEnabled(isMean);
  kinds_[static_cast<std::size_t>(rule.kind)]->setChecked(true);
  ShowNeeds();
}

// A rule that the records do not suffice for says how many are missing.
void RulePanel::ShowNeeds() {
  const std::size_t good = model_.HasBench() ? model_.Bench().TheSets().good.size() : 0;
  for (std::size_t i = 1; i < kinds_.size(); ++i) {
    baseline::Rule rule = model_.Choice().rule;
    rule.kind = static_cast<RuleKind>(i);
    const QString shortage = Text(ShortageText(rule, good));
    const bool isShort = !shortage.isEmpty();
    needs_[i]->setText(
        isShort ? shortage
                : tr("95 % sure with %L1 records: %L2 chosen").arg(RecordsNeeded(rule)).arg(good));
    needs_[i]->SetWarning(isShort && good > 0);
    kinds_[i]->setEnabled(!isShort || kinds_[i]->isChecked());
    kinds_[i]->setToolTip(isShort ? shortage : QString());
  }
}

}  // namespace kestrel
