// The panel of the four adapter records.
// SPDX-License-Identifier: MIT
#pragma once

#include <QButtonGroup>
#include <QLabel>
#include <QPushButton>
#include <QRadioButton>
#include <QWidget>
#include <array>
#include <functional>

#include "app/handler_edge.h"
#include "connection/core.h"
#include "transport/usb_adapter.h"

namespace kestrel {

// The four adapter records with an option button each, the search for boards, and what it came to.
class AdapterPanel : public QWidget {
  Q_OBJECT

 public:
  AdapterPanel(Core& core, HandlerEdge& edge);

  // Shows the records and the selected one as they stand.
  void ShowRecords();

  // Searches now, or shows what is known already while a capture is waited for.
  void Search();

  QPushButton* cmdFindEzUsb;

 signals:
  // The user chose a board, and it is the interface now.
  void InterfaceChosen();

 private:
  struct Row {
    QRadioButton* optUsbPort;
    std::array<QLabel*, 5> columns;
  };

  void LayOut();
  [[nodiscard]] Row MakeRow(int index);
  void Change(const char* name, const std::function<void()>& handler);
  void cmdFindEzUsb_Click();
  void optUsbPort_Click(int index);

  Core& core_;
  HandlerEdge& edge_;
  std::array<Row, kAdapterNames> rows_{};
  QButtonGroup* options_;
  QLabel* lblFinding_;
};

}  // namespace kestrel
