// Pages laid out on paper or into a file.
// SPDX-License-Identifier: MIT
#include "ui/parts/page_printing.h"

#include <QBuffer>
#include <QFileDialog>
#include <QLocale>
#include <QPdfWriter>
#include <QPrintDialog>
#include <QPrinterInfo>

#include "app/program_state.h"

namespace kestrel {
namespace {

// The paper that is usual where the user is.
QPageLayout UsualPaper() {
  const bool letter = QLocale::system().measurementSystem() == QLocale::ImperialUSSystem;
  return {QPageSize(letter ? QPageSize::Letter : QPageSize::A4), QPageLayout::Portrait,
          QMarginsF(0, 0, 0, 0)};
}

}  // namespace

bool SystemPrintService::HasPrinter() {
  return !QPrinterInfo::availablePrinterNames().isEmpty();
}

void SystemPrintService::ChoosePrinter(QWidget* parent, std::function<void(QPrinter&)> chosen) {
  const auto printer = std::make_shared<QPrinter>(QPrinter::HighResolution);
  auto* dialog = new QPrintDialog(printer.get(), parent);
  dialog->setAttribute(Qt::WA_DeleteOnClose);
  dialog->setOptions(QPrintDialog::PrintToFile | QPrintDialog::PrintShowPageSize |
                     QPrintDialog::PrintCollateCopies);
  QObject::connect(dialog, qOverload<>(&QPrintDialog::accepted), parent,
                   [printer, chosen = std::move(chosen)] { chosen(*printer); });
  dialog->open();
}

void SystemPrintService::ChoosePdfFile(QWidget* parent, const QString& proposal,
                                       std::function<void(const QString& file)> chosen) {
  auto* dialog = new QFileDialog(parent, QObject::tr("Print to a PDF file"), proposal,
                                 QObject::tr("PDF files (*.pdf)"));
  dialog->setAttribute(Qt::WA_DeleteOnClose);
  dialog->setAcceptMode(QFileDialog::AcceptSave);
  dialog->setDefaultSuffix("pdf");
  QObject::connect(dialog, &QFileDialog::fileSelected, parent, std::move(chosen));
  dialog->open();
}

QByteArray PdfPages(const QTextDocument& document, const QPageLayout& layout) {
  QByteArray content;
  QBuffer buffer(&content);
  buffer.open(QIODevice::WriteOnly);
  QPdfWriter writer(&buffer);
  writer.setTitle(document.metaInformation(QTextDocument::DocumentTitle));
  writer.setCreator(kApplicationTitle);
  writer.setPageLayout(layout);
  document.print(&writer);
  return content;
}

void PagePrinting::Print(QWidget* parent, const char* handler,
                         std::shared_ptr<QTextDocument> document, const QString& pdfProposal,
                         std::function<void(const QString& where)> printed) {
  if (service_->HasPrinter()) {
    service_->ChoosePrinter(parent, [this, handler, document, printed](QPrinter& printer) {
      edge_.Run(handler, [&] {
        const QString where = PrintTo(printer, *document);
        if (!where.isEmpty()) printed(where);
      });
    });
    return;
  }
  messages_.Show("Printing: no printer is set up. The pages can be kept in a PDF file instead.");
  service_->ChoosePdfFile(parent, pdfProposal,
                          [this, handler, document, printed](const QString& file) {
                            edge_.Run(handler, [&] {
                              SavePdf(file, *document, UsualPaper());
                              printed(file);
                            });
                          });
}

QString PagePrinting::PrintTo(QPrinter& printer, const QTextDocument& document) {
  QString file = printer.outputFileName();
  if (!file.isEmpty()) {
    SavePdf(file, document, printer.pageLayout());
    return file;
  }
  document.print(&printer);
  if (printer.printerState() == QPrinter::Idle) return printer.printerName();
  messages_.Show("Printing: the printer \"" + printer.printerName().toStdString() +
                 "\" did not take the pages.");
  return {};
}

void PagePrinting::SavePdf(const QString& file, const QTextDocument& document,
                           const QPageLayout& layout) {
  const QByteArray content = PdfPages(document, layout);
  files_.ReplaceWhole(file.toStdU16String(),
                      {content.data(), static_cast<std::size_t>(content.size())});
}

}  // namespace kestrel
