// The lights of the status flags.
// SPDX-License-Identifier: MIT
#include "ui/main/status_panel.h"

#include <QGridLayout>
#include <QHBoxLayout>

#include "ui/parts/widgets.h"

namespace kestrel {

StatusPanel::StatusPanel(Locale& locale)
    : AsOfBox(tr("Sensor status"), locale),
      CmdReadStatus(MakeButton("CmdReadStatus", tr("Rea&d status"),
                               tr("Read the status and all settings from the sensor"))),
      cmdClearStatus(MakeButton("cmdClearStatus", tr("C&lear status"),
                                tr("Clear the sensor's status flags"))) {
  auto* grid = new QGridLayout(this);
  grid->setVerticalSpacing(3);
  grid->setColumnStretch(0, 1);
  const int flagWidth = fontMetrics().horizontalAdvance("FAIL") + 24;
  for (int bit = 0; bit < static_cast<int>(kStatusFlags); ++bit) {
    const auto at = static_cast<std::size_t>(bit);
    lblStatusName_[at] = MakeLabel(ArrayName("lblStatusName", bit), "");
    lblStatusFlag_[at] = MakeLabel(ArrayName("lblStatusFlag", bit), QString(QChar(0x2013)));
    lblStatusFlag_[at]->setAlignment(Qt::AlignCenter);
    lblStatusFlag_[at]->setMinimumWidth(flagWidth);
    lblStatusName_[at]->setBuddy(lblStatusFlag_[at]);
    grid->addWidget(lblStatusName_[at], bit, 0);
    grid->addWidget(lblStatusFlag_[at], bit, 1);
  }
  auto* buttons = new QHBoxLayout;
  buttons->setSpacing(6);  // the grid's tighter lines would leave none
  buttons->addWidget(CmdReadStatus);
  buttons->addWidget(cmdClearStatus);
  grid->addLayout(buttons, grid->rowCount(), 0, 1, 2);
}

void StatusPanel::SetStatusName(int bit, const std::string& text) {
  lblStatusName_.at(static_cast<std::size_t>(bit))->setText(QString::fromStdString(text));
}

void StatusPanel::SetStatusFlag(int bit, const std::string& text, double colour) {
  QLabel* flag = lblStatusFlag_.at(static_cast<std::size_t>(bit));
  flag->setText(QString::fromStdString(text));
  PaintGround(flag, ToColour(colour));
  Refreshed();
}

void StatusPanel::Grey() {
  for (QLabel* flag : lblStatusFlag_) PaintGrey(flag);
}

}  // namespace kestrel
