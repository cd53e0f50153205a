// The register window over a scripted sensor, its requests counted.
// SPDX-License-Identifier: MIT
#pragma once

#include <QTextBlock>

#include "regmap/register_table.h"
#include "support/fake_print_service.h"
#include "ui/window_bench.h"
#include "ui/windows/frmManualReg.h"

namespace kestrel {

// Requests to the adapter for one listing: 49 registers are read, with three each.
inline constexpr int kListRequests = 49 * 3;

// The register window over the simulated sensor, with printers of the test's own.
class ManualRegBench : public WindowBench {
 protected:
  frmManualReg& Open() {
    Start();
    window_ = new frmManualReg(core_, Window().Edge(), &Window(), printers_);
    window_->ShowInFront();
    return *window_;
  }

  RegisterListBox& List() { return Find<RegisterListBox>("txtRegList"); }
  void Choose(std::int16_t row) { WindowBench::Choose("cmboRegister", row); }
  void Type(const char* text) { Find<QLineEdit>("txtDataWrite").setText(text); }
  void EnterInValue() { QTest::keyClick(&Find<QLineEdit>("txtDataWrite"), Qt::Key_Return); }

  std::int32_t InSensor(std::int16_t row) {
    core_.registers.ReadReg(row);
    return RegValue;
  }

  // The lines of the list that stand out, as the list shows them.
  std::vector<std::string> OutstandingLines() {
    std::vector<std::string> lines;
    for (QTextBlock block = List().document()->begin(); block.isValid(); block = block.next()) {
      if (List().StandsOut(block.blockNumber() - kListHeadingLines)) {
        lines.push_back(block.text().section(' ', 0, 0).toStdString());
      }
    }
    return lines;
  }

  // A line of the field table, cell by cell.
  std::vector<std::string> FieldLine(int line) {
    const auto& table = Find<QTableWidget>("tblFields");
    std::vector<std::string> cells;
    for (int column = 0; column < table.columnCount(); ++column) {
      cells.push_back(table.item(line, column)->text().toStdString());
    }
    return cells;
  }

  std::shared_ptr<FakePrintService> printers_ = std::make_shared<FakePrintService>();
  frmManualReg* window_ = nullptr;
};

}  // namespace kestrel
