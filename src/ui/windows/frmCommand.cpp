// The list of functions and the button that sends one.
// SPDX-License-Identifier: MIT
#include "ui/windows/frmCommand.h"

#include <QHBoxLayout>
#include <QVBoxLayout>

#include "app/program_state.h"
#include "ui/parts/widgets.h"

namespace kestrel {
namespace {

constexpr QPoint kPlaceTwips{600, 3300};

}  // namespace

frmCommand::frmCommand(Core& core, HandlerEdge& edge, QWidget* parent)
    : SecondaryWindow("frmCommand", tr("Global commands"), edge, parent, kPlaceTwips),
      registers_(core.registers),
      cbxCommand_(MakeComboBox("cbxCommand", tr("Function"), tr("Function of the sensor"))),
      LbLBusy_(MakeLabel("LbLBusy", tr("Busy..."))),
      lblNote_(MakeLabel("lblNote", "")),
      commands_(core.registers, core.delay, core.seams.loop, core.seams.messages, *this) {
  cbxCommand_->setPlaceholderText("Select a Function");
  for (const char* item : kCommandItems) cbxCommand_->addItem(item);
  cbxCommand_->setCurrentIndex(-1);
  cbxCommand_->setMinimumContentsLength(34);

  QPushButton* cmdWrite = MakeButton("cmdWrite", tr("&Write"), tr("Send the function"));
  cmdWrite->setAutoDefault(true);
  QPushButton* cmdClose = MakeButton("cmdClose", tr("&Close"), tr("Close this window"));
  cmdClose->setAutoDefault(false);
  PaintGround(LbLBusy_, ToColour(Rgb(240, 240, 0)));
  LbLBusy_->setAlignment(Qt::AlignCenter);
  LbLBusy_->setMargin(3);
  KeepPlaceWhileHidden(LbLBusy_);
  LbLBusy_->hide();

  auto* buttons = new QHBoxLayout;
  buttons->addWidget(LbLBusy_);
  buttons->addStretch();
  buttons->addWidget(cmdWrite);
  buttons->addWidget(cmdClose);
  auto* all = new QVBoxLayout(this);
  all->addWidget(MakeCaption(tr("&Function"), cbxCommand_));
  all->addWidget(cbxCommand_);
  all->addWidget(lblNote_);
  all->addLayout(buttons);
  lblNote_->setWordWrap(true);
  lblNote_->setMinimumHeight(2 * fontMetrics().lineSpacing());  // nothing moves when it tells
  OnChange(cmdWrite, &QPushButton::clicked, "cmdWrite_Click", [this] { cmdWrite_Click(); });
  connect(cmdClose, &QPushButton::clicked, this, &QWidget::close);
}

void frmCommand::cmdWrite_Click() {
  const int bit = cbxCommand_->currentIndex();
  lblNote_->clear();
  commands_.cmdWrite_Click(bit);
  if (bit >= 0 && registers_.Reachable()) emit Sent(bit);
}

void frmCommand::ShowBusyLabel(bool shown) {
  LbLBusy_->setVisible(shown);
}

}  // namespace kestrel
