// The words and cures of a lost adapter.
// SPDX-License-Identifier: MIT
#include "ui/main/lost_notice.h"

#include <QAccessible>
#include <QHBoxLayout>
#include <QVBoxLayout>

#include "app/program_state.h"
#include "transport/adapter_choice.h"
#include "transport/adapter_search.h"
#include "ui/parts/notice_strip.h"
#include "ui/parts/widgets.h"

namespace kestrel {
LostNotice::LostNotice(Core& core, HandlerEdge& edge)
    : core_(core),
      edge_(edge),
      lblLost_(MakeLabel("lblLost", tr("The USB adapter has been lost. What is on the screen is "
                                       "what was read last."))),
      lblLostReason_(MakeLabel("lblLostReason", "")),
      cmdLostSelect_(MakeButton("cmdLostSelect", tr("Select adapter..."),
                                tr("Show the boards that are attached"))),
      cmdLostRetry_(MakeButton("cmdLostRetry", tr("Try again"),
                               tr("Search for the adapter again (Ctrl+R)"))) {
  setObjectName("lostNotice");
  setAccessibleName(tr("USB adapter lost"));
  LayOut();
  hide();
  connect(cmdLostSelect_, &QPushButton::clicked, this, &LostNotice::SelectWanted);
  connect(cmdLostRetry_, &QPushButton::clicked, this,
          [this] { edge_.RunIdle("cmdLostRetry_Click", [this] { TryAgain(); }); });
}

void LostNotice::LayOut() {
  PaintNotice(*this);
  // The main window's mnemonics have used up the letters of these captions.
  cmdLostRetry_->setShortcut(QKeySequence("Ctrl+R"));
  lblLostReason_->setWordWrap(true);
  lblLostReason_->hide();
  auto* texts = new QVBoxLayout;
  texts->addWidget(lblLost_);
  texts->addWidget(lblLostReason_);
  auto* all = new QHBoxLayout(this);
  all->addLayout(texts, 1);
  all->addWidget(cmdLostSelect_);
  all->addWidget(cmdLostRetry_);
}

// Once lost, an adapter stays lost until something can be used again: a capture's vain search for
// it leaves no interface selected.
void LostNotice::Refresh() {
  if (core_.registers.Reachable()) {
    hide();
    lblLostReason_->hide();
  } else if (InterfaceType == kUsbAdapter && isHidden()) {
    show();
    QAccessibleEvent alert(this, QAccessible::Alert);
    QAccessible::updateAccessibility(&alert);
  }
}

void LostNotice::TryAgain() {
  if (ChooseAdapterAgain(core_.usb, core_.registers, core_.seams.files)) {
    emit InterfaceChosen();
    return;
  }
  lblLostReason_->setText(QString::fromStdString(ExplainSearch()));
  lblLostReason_->show();
}

}  // namespace kestrel
