// Searching whenever the adapter window is opened.
// SPDX-License-Identifier: MIT
#include "ui/windows/frmUSBselect.h"

#include <QHBoxLayout>
#include <QShowEvent>
#include <QVBoxLayout>

#include "ui/parts/fit_screen.h"
#include "ui/parts/widgets.h"

namespace kestrel {

frmUSBselect::frmUSBselect(Core& core, HandlerEdge& edge, QWidget* parent)
    : SecondaryWindow("frmUSBselect", tr("USB adapter"), edge, parent, {3000, 3000}),
      core_(core),
      adapters_(new AdapterPanel(core, edge)) {
  QPushButton* cmdDebugUsb =
      MakeButton("cmdDebugUsb", tr("&Debug..."), tr("Send frames to the selected board by hand"));
  QPushButton* cmdExit = MakeButton("cmdExit", tr("E&xit"), tr("Close this window"));
  auto* buttons = new QHBoxLayout;
  buttons->addWidget(adapters_->cmdFindEzUsb);
  buttons->addWidget(cmdDebugUsb);
  buttons->addStretch();
  buttons->addWidget(cmdExit);
  auto* all = new QVBoxLayout(this);
  all->addWidget(adapters_, 1);
  all->addLayout(buttons);
  setMinimumSize(76 * fontMetrics().averageCharWidth(), 16 * fontMetrics().lineSpacing());
  connect(adapters_, &AdapterPanel::InterfaceChosen, this, &frmUSBselect::InterfaceChosen);
  On(cmdDebugUsb, &QPushButton::clicked, "cmdDebugUsb_Click", [this] { cmdDebugUsb_Click(); });
  connect(cmdExit, &QPushButton::clicked, this, &QWidget::close);
}

void frmUSBselect::showEvent(QShowEvent* event) {
  SecondaryWindow::showEvent(event);
  if (event->spontaneous()) return;
  adapters_->Search();
  FitScreen(*this);
  resize(size().expandedTo(sizeHint()).boundedTo(RoomOnScreen(*this)));
}

void frmUSBselect::Form_Activate() {
  adapters_->ShowRecords();
}

void frmUSBselect::cmdDebugUsb_Click() {
  if (debugWindow_ == nullptr) {
    debugWindow_ = new frmUSBdebug(core_, Edge(), parentWidget());
    connect(debugWindow_, &frmUSBdebug::InterfaceChosen, this, &frmUSBselect::InterfaceChosen);
  }
  debugWindow_->ShowInFront();
}

}  // namespace kestrel
