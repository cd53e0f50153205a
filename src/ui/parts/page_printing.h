// The system's printers and its dialogs.
// SPDX-License-Identifier: MIT
#pragma once

#include <QByteArray>
#include <QPageLayout>
#include <QPrinter>
#include <QTextDocument>
#include <functional>
#include <memory>

#include "app/handler_edge.h"
#include "seams/files.h"
#include "seams/messages.h"

namespace kestrel {

// The system's printers and its dialogs. The dialogs are opened and left to the event loop; when
// one is cancelled, nothing is called.
class PrintService {
 public:
  virtual ~PrintService() = default;
  [[nodiscard]] virtual bool HasPrinter() = 0;
  virtual void ChoosePrinter(QWidget* parent, std::function<void(QPrinter&)> chosen) = 0;
  virtual void ChoosePdfFile(QWidget* parent, const QString& proposal,
                             std::function<void(const QString& file)> chosen) = 0;
};

class SystemPrintService : public PrintService {
 public:
  [[nodiscard]] bool HasPrinter() override;
  void ChoosePrinter(QWidget* parent, std::function<void(QPrinter&)> chosen) override;
  void ChoosePdfFile(QWidget* parent, const QString& proposal,
                     std::function<void(const QString& file)> chosen) override;
};

// The pages of a document as a PDF file's content.
[[nodiscard]] QByteArray PdfPages(const QTextDocument& document, const QPageLayout& layout);

// Sends documents to a printer that the user chooses, or to a PDF file, which is put in place whole
// or not at all. Where no printer is set up, says so and offers the file.
class PagePrinting {
 public:
  PagePrinting(std::shared_ptr<PrintService> service, HandlerEdge& edge, Messages& messages,
               Files& files)
      : service_(std::move(service)), edge_(edge), messages_(messages), files_(files) {}

  // `printed` is told where the pages went, once they have. `handler` names the work in messages.
  void Print(QWidget* parent, const char* handler, std::shared_ptr<QTextDocument> document,
             const QString& pdfProposal, std::function<void(const QString& where)> printed);

 private:
  // Where the pages went; empty where they could not be printed, which has been shown.
  QString PrintTo(QPrinter& printer, const QTextDocument& document);
  void SavePdf(const QString& file, const QTextDocument& document, const QPageLayout& layout);

  std::shared_ptr<PrintService> service_;
  HandlerEdge& edge_;
  Messages& messages_;
  Files& files_;
};

}  // namespace kestrel
