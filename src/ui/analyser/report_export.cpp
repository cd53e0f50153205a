// Asking for the file and the records, and putting the pages in place.
// SPDX-License-Identifier: MIT
#include "ui/analyser/report_export.h"

#include <QFileDialog>
#include <algorithm>
#include <utility>

#include "numeric/runtime_error.h"
#include "report/report_of.h"
#include "ui/report/qt_report_painter.h"

namespace kestrel {
namespace {

// Of the options of these records, as far as the sensor's bands have been read.
report::ReportChoice ChoiceFor(const study::Study& study,
                               const std::vector<archive::KeptRecord>& records) {
  report::ReportChoice choice{.study = study.Choice()};
  for (const archive::KeptRecord& kept : records) {
    const int option = kept.record.settings.option;
    if (study.BandsOf(option, Axis::X) == nullptr) continue;
    for (const Axis axis : kAxes) {
      choice.bands[option][Index(axis)] = *study.BandsOf(option, axis);
    }
  }
  return choice;
}

}  // namespace

ReportExport::ReportExport(StudyModel& model, LibraryView& library, Files& files,
                           QMainWindow& window)
    : QObject(&window), model_(model), library_(library), files_(files), window_(window) {
  if (library_.Archive() == nullptr) return;
  connect(library_.Archive(), &Library::Failed, this, [this] {
    if (!waiting_) return;
    if (isFromLibrary_) {
      Fail(library_.Archive()->Trouble());
      return;
    }
    Records records;  // without what the archive knows of them
    for (const study::RecordPointer& record : Shown()) records.emplace_back().record = *record;
    Print(records);
  });
}

std::vector<study::RecordPointer> ReportExport::Shown() const {
  std::vector<study::RecordPointer> records;
  const study::Study& study = model_.Get();
  if (study.Shown() != nullptr) records.push_back(study.Shown()->record);
  for (const study::Measured& other : study.Others()) records.push_back(other.record);
  return records;
}

QString ReportExport::WhyNothing() const {
  const std::size_t count = isFromLibrary_ ? library_.Chosen().size() : Shown().size();
  if (count == 0) {
    return isFromLibrary_ ? tr("Nothing to report: select a record in the list first.")
                          : tr("Nothing to report: there is no record yet. Capture one (F5).");
  }
  if (count <= report::kMostCompared) return {};
  return tr("A report compares up to %1 records, %2 are selected. Select fewer.")
      .arg(report::kMostCompared)
      .arg(count);
}

void ReportExport::Ask() {
  if (const QString why = WhyNothing(); !why.isEmpty()) {
    emit Said(why, true);
    return;
  }
  auto* dialog = new QFileDialog(&window_, tr("Report"));
  dialog->setObjectName("askReport");
  dialog->setAttribute(Qt::WA_DeleteOnClose);
  dialog->setAcceptMode(QFileDialog::AcceptSave);
  dialog->setNameFilters({tr("PDF files (*.pdf)")});
  dialog->setDefaultSuffix(QStringLiteral("pdf"));
  connect(dialog, &QFileDialog::fileSelected, this, &ReportExport::Write);
  dialog->open();
}

void ReportExport::Write(const QString& file) {
  if (const QString why = WhyNothing(); !why.isEmpty()) {
    Fail(why);
    return;
  }
  waiting_ = file;
  emit Said(tr("Printing the report..."), false);
  const auto print = [this](const Records& records) { Print(records); };
  Library* archive = library_.Archive();
  if (isFromLibrary_) {
    archive->LoadKept(library_.Chosen(), print);
  } else if (archive != nullptr) {
    archive->Recognise(Shown(), print);
  } else {
    Records records;
    for (const study::RecordPointer& record : Shown()) records.emplace_back().record = *record;
    Print(records);
  }
}

void ReportExport::Print(const Records& records) {
  if (!waiting_) return;
  const QString file = *std::exchange(waiting_, std::nullopt);
  try {
    const report::Report report = ReportOn(records, ChoiceFor(model_.Get(), records));
    const report::PaintedReport painted = QtReportPainter().Pdf(report, UsualPaper());
    files_.ReplaceWhole(file.toStdU16String(), painted.pdf);
    QString said = tr("Written: %1").arg(file);
    for (const std::string& notice : painted.notices) said += ". " + QString::fromStdString(notice);
    emit Said(said, !painted.notices.empty());
    emit Ended(true);
  } catch (const RuntimeError& error) {
    Fail(QString::fromUtf8(error.what()));
  }
}

void ReportExport::Fail(const QString& why) {
  waiting_.reset();
  emit Said(tr("The report is not written: %1").arg(why), true);
  emit Ended(false);
}

}  // namespace kestrel
