// The rows of the record information, filled.
// SPDX-License-Identifier: MIT
#include "ui/windows/frmRecInfo.h"

#include <QGridLayout>
#include <QShowEvent>

#include "device/rec_info.h"
#include "numeric/conversions.h"
#include "numeric/number_format.h"
#include "ui/parts/widgets.h"

namespace kestrel {
namespace {

constexpr QPoint kPlaceTwips{1300, 6700};

QLabel* MakeCell(const char* name, std::size_t row) {
  QLabel* label = MakeLabel(ArrayName(name, static_cast<int>(row)), "");
  label->setTextInteractionFlags(Qt::TextSelectableByMouse);
  return label;
}

}  // namespace

frmRecInfo::frmRecInfo(Core& /*core*/, HandlerEdge& edge, QWidget* parent)
    : SecondaryWindow("frmRecInfo", tr("Record information"), edge, parent, kPlaceTwips),
      lblHex_(MakeLabel("lblHex", "")) {
  LayOut();
}

void frmRecInfo::LayOut() {
  auto* grid = new QGridLayout(this);
  grid->setHorizontalSpacing(18);
  grid->addWidget(MakeCaption(tr("Record information word, hexadecimal"), lblHex_), 0, 0, 1, 3);
  grid->addWidget(lblHex_, 0, 3);
  int column = 0;
  for (const QString& heading : {tr("Bits"), tr("Parameter"), tr("Value"), tr("Setting")}) {
    auto* label = new QLabel(heading);
    QFont bold = label->font();
    bold.setBold(true);
    label->setFont(bold);
    grid->addWidget(label, 1, column++);
  }
  for (std::size_t row = 4; row >= 1; --row) {
    rows_[row] = {MakeCell("lblBits", row), MakeCell("lblParam", row), MakeCell("lblValue", row),
                  MakeCell("lblSetting", row)};
    rows_[row].lblParam->setBuddy(rows_[row].lblValue);
    const int line = 6 - static_cast<int>(row);
    grid->addWidget(rows_[row].lblBits, line, 0);
    grid->addWidget(rows_[row].lblParam, line, 1);
    grid->addWidget(rows_[row].lblValue, line, 2);
    grid->addWidget(rows_[row].lblSetting, line, 3);
  }
  QPushButton* refresh = MakeButton("cmdRead", tr("&Read"), tr("Read the word from the sensor"));
  QPushButton* close = MakeButton("cmdClose", tr("&Close"), tr("Close this window"));
  grid->addWidget(refresh, 6, 2);
  grid->addWidget(close, 6, 3, Qt::AlignRight);
  On(refresh, &QPushButton::clicked, "cmdRead_Click", [this] { Read_RecInfo(); });
  connect(close, &QPushButton::clicked, this, &QWidget::close);
}

void frmRecInfo::showEvent(QShowEvent* event) {
  SecondaryWindow::showEvent(event);
  if (!event->spontaneous()) Edge().Run("Form_Load", [this] { Read_RecInfo(); });
}

void frmRecInfo::Read_RecInfo() {
  if (!gRecInfo->ReadRec_Info()) return;
  lblHex_->setText(QString::fromStdString(Hex(ToLong(gRecInfo->DecimalReadWord()))) + "   ");
  ShowRow(4, gRecInfo->SampleRateOption());
  ShowRow(3, gRecInfo->Windowing());
  ShowRow(2, gRecInfo->SignalRange());
  ShowRow(1, gRecInfo->FFTAverages());
}

void frmRecInfo::ShowRow(std::size_t index, const cBitFieldProp& field) {
  const auto show = [](QLabel* label, const QString& text) { label->setText(text + "  "); };
  const QString title = QString::fromStdString(field.BFTitle());
  rows_[index].lblBits->setAccessibleDescription(tr("Bits of %1").arg(title));
  show(rows_[index].lblBits, QString::fromStdString(field.BFRange()));
  show(rows_[index].lblParam, title);
  show(rows_[index].lblValue, QString::number(field.BFValue()));
  rows_[index].lblSetting->setAccessibleDescription(tr("Setting of %1").arg(title));
  show(rows_[index].lblSetting, QString::fromStdString(field.SettingDecription()));
}

}  // namespace kestrel
