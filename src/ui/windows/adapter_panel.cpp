// The search for boards and the choice among them.
// SPDX-License-Identifier: MIT
#include "ui/windows/adapter_panel.h"

#include <QGridLayout>

#include "app/program_state.h"
#include "app/system_name.h"
#include "transport/adapter_choice.h"
#include "transport/adapter_search.h"
#include "ui/parts/secondary_window.h"
#include "ui/parts/widgets.h"

namespace kestrel {
namespace {

constexpr std::array kColumnNames{"lblBoardType", "lblString1", "lblString2", "lblFirmware",
                                  "lblUsbVersion"};
constexpr std::array kHeadings{"Board", "Type", "String 1", "String 2", "Firmware", "USB"};
constexpr int kFindingLine = kAdapterNames + 1;
constexpr int kColumns = static_cast<int>(kHeadings.size());

QLabel* MakeHeading(const QString& text) {
  auto* heading = new QLabel(text);
  QFont bold = heading->font();
  bold.setBold(true);
  heading->setFont(bold);
  return heading;
}

}  // namespace

AdapterPanel::AdapterPanel(Core& core, HandlerEdge& edge)
    : cmdFindEzUsb(
          MakeButton("cmdFindEzUsb", tr("&Find boards"), tr("Search for adapter boards again"))),
      core_(core),
      edge_(edge),
      options_(new QButtonGroup(this)),
      lblFinding_(MakeLabel("lblFinding", "")) {
  LayOut();
  ShowRecords();
  connect(cmdFindEzUsb, &QPushButton::clicked, this, &AdapterPanel::Search);
  connect(options_, &QButtonGroup::idClicked, this, [this](int index) {
    Change("optUsbPort_Click", [this, index] { optUsbPort_Click(index); });
    ShowRecords();  // a choice that was refused is not shown either
  });
}

void AdapterPanel::LayOut() {
  auto* grid = new QGridLayout(this);
  grid->setContentsMargins(0, 0, 0, 0);
  grid->setHorizontalSpacing(18);
  int column = 0;
  for (const char* heading : kHeadings) grid->addWidget(MakeHeading(tr(heading)), 0, column++);
  for (int index = 0; index < kAdapterNames; ++index) {
    const Row row = MakeRow(index);
    rows_[static_cast<std::size_t>(index)] = row;
    grid->addWidget(row.optUsbPort, index + 1, 0);
    column = 0;
    for (QLabel* label : row.columns) grid->addWidget(label, index + 1, ++column);
  }
  lblFinding_->setWordWrap(true);
  lblFinding_->setTextInteractionFlags(Qt::TextSelectableByMouse);
  lblFinding_->setAlignment(Qt::AlignTop | Qt::AlignLeft);
  grid->addWidget(lblFinding_, kFindingLine, 0, 1, kColumns);
  for (int i = 1; i <= 3; ++i) grid->setColumnStretch(i, 1);
  grid->setRowStretch(kFindingLine, 1);
}

AdapterPanel::Row AdapterPanel::MakeRow(int index) {
  Row row{new QRadioButton(tr("Ezusb-&%1").arg(index)), {}};
  row.optUsbPort->setObjectName(ArrayName("optUsbPort", index));
  row.optUsbPort->setToolTip(tr("Use this board"));
  options_->addButton(row.optUsbPort, index);
  for (std::size_t i = 0; i < row.columns.size(); ++i) {
    row.columns[i] = MakeLabel(ArrayName(kColumnNames[i], index), "");
    row.columns[i]->setAccessibleDescription(
        tr("%1 of Ezusb-%2").arg(tr(kHeadings[i + 1])).arg(index));
  }
  return row;
}

void AdapterPanel::ShowRecords() {
  for (std::size_t i = 0; i < rows_.size(); ++i) {
    const bool present = AdapterRecords[i].present;
    const AdapterRow row = RowOf(AdapterRecords[i]);
    const std::array texts{row.boardType, row.string1, row.string2, row.firmware, row.usbVersion};
    rows_[i].optUsbPort->setEnabled(present);
    for (std::size_t column = 0; column < texts.size(); ++column) {
      rows_[i].columns[column]->setText(present ? QString::fromStdString(texts[column]) : "-");
      rows_[i].columns[column]->setEnabled(present);
    }
  }
  // An exclusive group keeps one checked once there was one; here there may be none again.
  options_->setExclusive(false);
  for (int i = 0; i < kAdapterNames; ++i) {
    options_->button(i)->setChecked(UsbPresent && SelectedAdapterNumber == i);
  }
  options_->setExclusive(true);
}

void AdapterPanel::Change(const char* name, const std::function<void()>& handler) {
  if (!RunUnlessCapturing(edge_, name, handler)) lblFinding_->setText(WhyRefused());
}

void AdapterPanel::Search() {
  Change("cmdFindEzUsb_Click", [this] { cmdFindEzUsb_Click(); });
  ShowRecords();
}

void AdapterPanel::cmdFindEzUsb_Click() {
  if (!UsbOffered(core_.seams.messages)) return;
  core_.usb.FindAdapters();
  static_cast<void>(core_.usb.FindLost());  // the board in use may be the one that is not there
  lblFinding_->setText(QString::fromStdString(ExplainSearch()));
}

void AdapterPanel::optUsbPort_Click(int index) {
  if (ChooseAdapter(core_.usb, core_.registers, core_.seams.files, index)) emit InterfaceChosen();
}

}  // namespace kestrel
