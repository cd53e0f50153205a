// The parallel port's address and its choice.
// SPDX-License-Identifier: MIT
#include "ui/windows/frmPort.h"

#include <QHBoxLayout>
#include <QHideEvent>
#include <QVBoxLayout>
#include <algorithm>

#include "ui/parts/widgets.h"

namespace kestrel {
namespace {

constexpr const char* kUsualAddresses = "378 on most computers; 278 or 3BC on others.";

}  // namespace

frmPort::frmPort(Core& core, HandlerEdge& edge, QWidget* parent)
    : SecondaryWindow("frmPort", tr("Parallel port"), edge, parent, {3000, 3000}),
      choice_(core.seams.driverService, core.seams.port, core.port, core.registers,
              core.seams.files, core.seams.messages),
      txtUser_(new QLineEdit),
      lblHint_(MakeLabel("lblHint", tr(kUsualAddresses))) {
  txtUser_->setObjectName("txtUser");
  txtUser_->setToolTip(tr("Base address of the port, in hexadecimal digits"));
  txtUser_->setAccessibleName(tr("Port address, hexadecimal"));
  QPushButton* cmdOK = MakeButton("cmdOK", tr("&OK"), tr("Use the parallel port at this address"));
  QPushButton* cmdCancel = MakeButton("cmdCancel", tr("&Cancel"), tr("Leave all as it is"));
  cmdOK->setDefault(true);

  auto* address = new QHBoxLayout;
  address->addWidget(MakeCaption(tr("Port &address (hexadecimal)"), txtUser_));
  address->addWidget(txtUser_, 1);
  auto* buttons = new QHBoxLayout;
  buttons->addStretch();
  buttons->addWidget(cmdOK);
  buttons->addWidget(cmdCancel);
  auto* all = new QVBoxLayout(this);
  all->addLayout(address);
  lblHint_->setWordWrap(true);
  all->addWidget(lblHint_);
  all->addStretch();
  all->addLayout(buttons);
  OnChange(cmdOK, &QPushButton::clicked, "cmdOK_Click", [this] { cmdOK_Click(); });
  connect(cmdCancel, &QPushButton::clicked, this, &QWidget::close);
}

// The window may be shown without becoming active.
void frmPort::showEvent(QShowEvent* event) {
  Form_Activate();
  // The hint wraps: its lines are known only at the window's width. Half a line more, since heights
  // are rounded on scaled screens.
  txtUser_->setMinimumWidth(txtUser_->fontMetrics().horizontalAdvance("0x03780"));
  if (layout()->hasHeightForWidth()) {
    const int needed = layout()->totalHeightForWidth(width()) + fontMetrics().height() / 2;
    resize(width(), std::max(height(), needed));
  }
  SecondaryWindow::showEvent(event);
}

// A text that the user has begun stays while other windows come and go.
void frmPort::Form_Activate() {
  if (!txtUser_->isModified()) txtUser_->setText(QString::fromStdString(PortChoice::AddressText()));
}

void frmPort::cmdOK_Click() {
  if (!choice_.cmdOK_Click(txtUser_->text().toStdString())) {
    txtUser_->setFocus();
    txtUser_->selectAll();
    return;
  }
  txtUser_->setText(QString::fromStdString(PortChoice::AddressText()));
  close();
  emit InterfaceChosen();
}

// The next opening begins with the address in use.
void frmPort::hideEvent(QHideEvent* event) {
  SecondaryWindow::hideEvent(event);
  if (event->spontaneous()) return;
  txtUser_->setModified(false);
  lblHint_->setText(tr(kUsualAddresses));
}

}  // namespace kestrel
