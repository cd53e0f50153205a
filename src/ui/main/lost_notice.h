// The strip that says the adapter has been lost, and the cure.
// SPDX-License-Identifier: MIT
#pragma once

#include <QFrame>
#include <QLabel>
#include <QPushButton>

#include "app/handler_edge.h"
#include "connection/core.h"

namespace kestrel {

// A strip that says the USB adapter has been lost, until an interface can be used again. What the
// windows show stays.
class LostNotice : public QFrame {
  Q_OBJECT

 public:
  LostNotice(Core& core, HandlerEdge& edge);

  // Shows or hides the strip as the interface stands; to be called after every handler.
  void Refresh();

 signals:
  void SelectWanted();     // the user wants to select an adapter
  void InterfaceChosen();  // another try has found an adapter, and it is the interface now

 private:
  void LayOut();
  void TryAgain();

  Core& core_;
  HandlerEdge& edge_;
  QLabel* lblLost_;
  QLabel* lblLostReason_;  // why the last try failed
  QPushButton* cmdLostSelect_;
  QPushButton* cmdLostRetry_;
};

}  // namespace kestrel
