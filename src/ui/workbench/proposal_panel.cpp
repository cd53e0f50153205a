// How a proposal stands against what is set now.
// SPDX-License-Identifier: MIT
#include "ui/workbench/proposal_panel.h"

#include <QEvent>
#include <QHBoxLayout>
#include <QHeaderView>
#include <QVBoxLayout>
#include <cmath>

#include "numeric/number_texts.h"
#include "ui/workbench/detail_of.h"

namespace kestrel {
namespace {

QString GText(const std::optional<double>& g) {
  return g ? Text(analysis::SignificantText(*g)) : Text(analysis::kNoNumber);
}

}  // namespace

ProposalPanel::ProposalPanel(WorkbenchModel& model)
    : cmdReport(new FlatButton("cmdBandReport", tr("Report..."), "export")),
      cmdWrite(new FlatButton("cmdWriteBands", tr("Write to sensor..."))),
      cmdTakeOver(new FlatButton("cmdTakeOverBands", tr("Take over"))),
      cmdReset(new FlatButton("cmdResetThreshold", {}, "back")),
      model_(model),
      table_(new TextTable("tblProposal")),
      lblRefusal_(new BenchNote("lblProposalRefusal")),
      lblSaid_(new BenchNote("lblProposalSaid")) {
  setObjectName("proposalPanel");
  LayOut();
  connect(&model_, &WorkbenchModel::Changed, this, &ProposalPanel::Show);
  connect(cmdReset, &QToolButton::clicked, &model_, &WorkbenchModel::ResetThreshold);
  Show();
}

void ProposalPanel::LayOut() {
  table_->setAccessibleName(tr("Thresholds now and proposed, g peak"));
  table_->setVerticalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
  table_->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
  table_->SetColumns({{.head = tr("g peak"), .alignment = Qt::AlignLeft},
                      {.head = tr("Now")},
                      {.head = tr("Proposed")},
                      {.head = tr("dB"), .spoken = tr("Change, dB")},
                      {.head = tr("Code")}});
  table_->horizontalHeader()->setSectionResizeMode(QHeaderView::Stretch);
  table_->horizontalHeader()->setSectionResizeMode(0, QHeaderView::ResizeToContents);
  cmdTakeOver->SetMain(true);
  cmdTakeOver->setToolTip(
      tr("Put all six bands into the table of the window Alarm spectrum, where Undo takes them "
         "back"));
  cmdWrite->setToolTip(tr("Take over, then write all bands into the sensor and read them back"));
  cmdReport->setToolTip(tr("Keep the evidence in a file: sets, rule, thresholds and replay"));
  cmdReset->setToolTip(tr("Back to what the rule proposes (Backspace in the plot)"));
  cmdReset->setAccessibleName(tr("Back to what the rule proposes"));
  lblRefusal_->SetWarning(true);
  auto* buttons = new QHBoxLayout;
  buttons->setContentsMargins(12, 4, 12, 8);
  buttons->setSpacing(8);
  buttons->addWidget(cmdReport);
  buttons->addStretch(1);
  buttons->addWidget(cmdWrite);
  buttons->addWidget(cmdTakeOver);
  const auto inside = [](QWidget* widget) {
    auto* row = new QHBoxLayout;
    row->setContentsMargins(12, 2, 12, 0);
    row->addWidget(widget);
    return row;
  };
  auto* column = new QVBoxLayout(this);
  column->setContentsMargins(0, 0, 0, 0);
  column->setSpacing(0);
  column->addWidget(table_);
  column->addLayout(inside(lblRefusal_));
  column->addLayout(inside(lblSaid_));
  column->addLayout(buttons);
  lblSaid_->hide();
  FitTable();
}

void ProposalPanel::FitTable() {
  const int row = table_->verticalHeader()->defaultSectionSize();
  table_->setFixedHeight(table_->horizontalHeader()->sizeHint().height() + 2 * row + 2);
}

void ProposalPanel::Say(const QString& text) {
  lblSaid_->setText(text);
  lblSaid_->setVisible(!text.isEmpty());
}

QString ProposalPanel::Summary() const {
  if (!model_.HasGood()) return {};
  const baseline::CellPlace cell = model_.Choice().cell;
  return tr("band %1, %2; %L3 changed in all")
      .arg(cell.band)
      .arg(QLatin1Char(Letter(cell.axis)))
      .arg(model_.Bench().Changes());
}

void ProposalPanel::Show() {
  const bool isThere = model_.HasGood();
  for (FlatButton* button : {cmdReport, cmdWrite, cmdTakeOver}) {
    button->setEnabled(isThere && !model_.IsReading());
  }
  cmdReset->setEnabled(isThere && model_.Cell().isMoved);
  std::vector<std::vector<TextCell>> rows;
  QString refusal;
  if (isThere) {
    const baseline::CellState& state = model_.Cell();
    refusal = Text(state.levels.refusal.empty() ? state.proposal.refusal : state.levels.refusal);
    const auto add = [&](const QString& name, const baseline::Threshold& threshold, double steps) {
      baseline::Threshold shown = threshold;
      shown.proposed = steps > 0 ? std::optional(steps) : std::nullopt;
      const auto change = shown.ChangeDb();
      rows.push_back(
          {{name},
           {GText(ThresholdG(model_.Bench(), threshold.now))},
           {GText(ThresholdG(model_.Bench(), steps))},
           {change ? Text(analysis::SignedDecibelText(*change)) : Text(analysis::kNoNumber)},
           {steps > 0 ? QString::number(std::llround(steps)) : Text(analysis::kNoNumber)}});
    };
    add(tr("Warning"), state.proposal.warning, state.warning);
    add(tr("Fault"), state.proposal.fault, state.fault);
    if (refusal.isEmpty() && state.proposal.warning.isBeyond) {
      refusal = tr("The rule asks for more than the range holds: this band would never warn.");
    }
  }
  table_->Model().SetRows(std::move(rows));
  lblRefusal_->setText(refusal);
  lblRefusal_->setVisible(!refusal.isEmpty());
}

void ProposalPanel::changeEvent(QEvent* event) {
  QWidget::changeEvent(event);
  if (event->type() == QEvent::FontChange) FitTable();
}

}  // namespace kestrel
