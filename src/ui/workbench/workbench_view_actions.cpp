// What the workbench's results are used for: the alarm editor, the sensor, a file.
// SPDX-License-Identifier: MIT
#include <QCoreApplication>
#include <QFileDialog>
#include <QFileInfo>
#include <QMessageBox>
#include <QPointer>
#include <QPushButton>

#include "baseline/evidence.h"
#include "numeric/runtime_error.h"
#include "ui/report/qt_report_painter.h"
#include "ui/study/text_table.h"
#include "ui/workbench/workbench_view.h"

namespace kestrel {
namespace {

std::string ContentOf(const report::Report& evidence, const QString& ending) {
  if (ending.compare("csv", Qt::CaseInsensitive) == 0) return baseline::EvidenceCsv(evidence);
  if (ending.compare("pdf", Qt::CaseInsensitive) != 0) return baseline::EvidenceText(evidence);
  return QtReportPainter().Pdf(evidence, UsualPaper()).pdf;
}

}  // namespace

void WorkbenchView::Propose(bool isWritten) {
  if (!model_.HasGood()) return;
  proposal_->Say(isWritten ? tr("Writing to the sensor") : tr("Taking over"));
  const QPointer<WorkbenchView> self(this);
  host_.propose(model_.Proposal(), isWritten, [self](const std::string& outcome) {
    if (self) self->proposal_->Say(Text(outcome));
  });
}

void WorkbenchView::AskWrite() {
  if (!model_.HasGood()) return;
  const baseline::Settings& settings = model_.Bench().TheSets().settings;
  auto* box = new QMessageBox(
      QMessageBox::Question, tr("Write to sensor"),
      tr("Write the bands into the sensor? The six bands of option %1 are those of the workbench, "
         "with thresholds for the range %2; the bands of the other options are written as the "
         "window Alarm spectrum has them. All are read back afterwards.")
          .arg(settings.option)
          .arg(Text(baseline::RangeText(settings.range))),
      QMessageBox::Cancel, this);
  box->setObjectName("askWriteBands");
  box->setAttribute(Qt::WA_DeleteOnClose);
  box->setTextFormat(Qt::PlainText);
  QPushButton* yes = box->addButton(tr("&Write"), QMessageBox::AcceptRole);
  yes->setObjectName("cmdWriteNow");
  box->setDefaultButton(yes);
  connect(box, &QMessageBox::accepted, this, [this] { Propose(true); });
  box->open();
}

void WorkbenchView::AskReport() {
  if (!model_.HasGood()) return;
  auto* dialog = new QFileDialog(this, tr("Keep the evidence"));
  dialog->setObjectName("askEvidence");
  dialog->setAttribute(Qt::WA_DeleteOnClose);
  dialog->setAcceptMode(QFileDialog::AcceptSave);
  dialog->setNameFilters(
      {tr("Pages (*.pdf)"), tr("Text (*.txt)"), tr("Comma-separated values (*.csv)")});
  dialog->setDefaultSuffix("pdf");
  connect(dialog, &QFileDialog::filterSelected, dialog, [dialog](const QString& kind) {
    dialog->setDefaultSuffix(kind.section(QLatin1Char('.'), -1).chopped(1));
  });
  connect(dialog, &QFileDialog::fileSelected, this,
          [this](const QString& file) { WriteEvidence(file); });
  dialog->open();
}

bool WorkbenchView::WriteEvidence(const QString& file) {
  if (!model_.HasGood()) return false;
  const baseline::EvidenceOrigin origin{
      .program = "version " + QCoreApplication::applicationVersion().toStdString(),
      .archive = archive::Shown(model_.Place()),
      .time = std::chrono::system_clock::now()};
  const auto evidence = EvidenceOf(model_.Bench(), origin);
  try {
    host_.files.ReplaceWhole(file.toStdU16String(), ContentOf(evidence, QFileInfo(file).suffix()));
  } catch (const RuntimeError& error) {
    proposal_->Say(tr("The evidence is not written: %1. Choose a folder that you may write in.")
                       .arg(error.what()));
    return false;
  }
  proposal_->Say(tr("Written: %1").arg(file));
  return true;
}

}  // namespace kestrel
