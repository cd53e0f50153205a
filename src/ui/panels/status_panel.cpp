// The lights of the status flags.
// SPDX-License-Identifier: MIT
#include "ui/panels/status_panel.h"

#include <QGridLayout>
#include <QHBoxLayout>
#include <algorithm>

#include "ui/parts/widgets.h"

namespace kestrel {
namespace {

// Every capture ends with data ready.
bool IsException(int bit, const std::string& text) {
  return text != kStatusFlagClear && (1 << bit) != kDataReadyFlag;
}

}  // namespace

StatusPanel::StatusPanel(Locale& locale)
    : AsOfBox(tr("Sensor status"), locale),
      CmdReadStatus(MakeButton("CmdReadStatus", tr("Rea&d status"),
                               tr("Read the status and all settings from the sensor"))),
      cmdClearStatus(
          MakeButton("cmdClearStatus", tr("C&lear status"), tr("Clear the sensor's status flags"))),
      buttons_(new QHBoxLayout) {
  auto* grid = new QGridLayout(this);
  grid->setColumnStretch(0, 1);
  int flagWidth = 0;
  for (const char* text : {"FAIL", "SET"}) {
    flagWidth = std::max(flagWidth, StateChip({}, text).sizeHint().width());
  }
  for (int bit = 0; bit < static_cast<int>(kStatusFlags); ++bit) {
    const auto at = static_cast<std::size_t>(bit);
    lblStatusName_[at] = MakeLabel(ArrayName("lblStatusName", bit), "");
    lblStatusFlag_[at] = new StateChip(ArrayName("lblStatusFlag", bit), QString(QChar(0x2013)));
    lblStatusFlag_[at]->setAlignment(Qt::AlignRight | Qt::AlignVCenter);
    lblStatusFlag_[at]->setMinimumWidth(flagWidth);
    lblStatusName_[at]->setBuddy(lblStatusFlag_[at]);
    grid->addWidget(lblStatusName_[at], bit, 0);
    grid->addWidget(lblStatusFlag_[at], bit, 1);
  }
  buttons_->addWidget(CmdReadStatus);
  buttons_->addWidget(cmdClearStatus);
  grid->addLayout(buttons_, grid->rowCount(), 0, 1, 2);
  SetSpacing(RoomySpacing());
}

void StatusPanel::SetSpacing(const Spacing& spacing) {
  auto* grid = qobject_cast<QGridLayout*>(layout());
  SpaceGroup(*grid, spacing);
  grid->setVerticalSpacing(spacing.line);
  grid->setHorizontalSpacing(spacing.beside);
  buttons_->setSpacing(spacing.beside);
  buttons_->setContentsMargins(0, spacing.control, 0, 0);
}

void StatusPanel::SetStatusName(int bit, const std::string& text) {
  lblStatusName_.at(static_cast<std::size_t>(bit))->setText(QString::fromStdString(text));
}

void StatusPanel::SetStatusFlag(int bit, const std::string& text, double colour) {
  StateChip* flag = lblStatusFlag_.at(static_cast<std::size_t>(bit));
  flag->setText(QString::fromStdString(text));
  flag->ShowState(ToColour(colour), IsException(bit, text));
  Refreshed();
}

void StatusPanel::Grey() {
  for (StateChip* flag : lblStatusFlag_) flag->Grey();
}

}  // namespace kestrel
