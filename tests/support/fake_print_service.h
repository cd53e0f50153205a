// A system's printers as the test wants them.
// SPDX-License-Identifier: MIT
#pragma once

#include <functional>
#include <utility>

#include "ui/parts/page_printing.h"

namespace kestrel {

// A system's printers as the test wants them. What the user would choose in a dialog is chosen by
// calling `printer` or `file`; a test that leaves them alone has cancelled.
class FakePrintService : public PrintService {
 public:
  [[nodiscard]] bool HasPrinter() override { return hasPrinter; }
  void ChoosePrinter(QWidget* /*parent*/, std::function<void(QPrinter&)> chosen) override {
    printer = std::move(chosen);
  }
  void ChoosePdfFile(QWidget* /*parent*/, const QString& proposal,
                     std::function<void(const QString&)> chosen) override {
    proposedFile = proposal;
    file = std::move(chosen);
  }

  bool hasPrinter = true;
  QString proposedFile;
  std::function<void(QPrinter&)> printer;
  std::function<void(const QString&)> file;
};

}  // namespace kestrel
