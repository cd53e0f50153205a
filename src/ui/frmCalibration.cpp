// Kestrel evaluation program
// SPDX-License-Identifier: MIT
#include "ui/frmCalibration.h"

#include <QGridLayout>
#include <QHBoxLayout>
#include <QVBoxLayout>

#include "ui/widgets.h"

namespace kestrel {
namespace {

constexpr QPoint kPlaceTwips{300, 3000};

struct Names {
  const char* caption;
  const char* word;
  const char* value;
  const char* write;
  const char* writeCaption;
  const char* handler;
};

constexpr std::array<Names, 3> kNames{
    {{"&X", "lblXnullReg", "txtXnull", "cmdWriteX", "&Write X", "cmdWriteX_Click"},
     {"AUX&0", "lblAUX0nullReg", "txtAUX0null", "cmdWriteAUX0", "W&rite AUX0",
      "cmdWriteAUX0_Click"},
     {"AUX&1", "lblAUX1nullReg", "txtAUX1null", "cmdWriteAUX1", "Wr&ite AUX1",
      "cmdWriteAUX1_Click"}}};

QLineEdit* MakeValueBox(const char* name) {
  auto* box = new QLineEdit;
  box->setObjectName(name);
  box->setAlignment(Qt::AlignRight);
  return box;
}

}  // namespace

frmCalibration::frmCalibration(Core& core, HandlerEdge& edge, QWidget* parent)
    : SecondaryWindow("frmCalibration", tr("Calibration"), edge, parent, kPlaceTwips),
      logic_(core.registers, core.delay, core.seams.pointer, *this),
      rows_{},
      cmdAutoNull_(MakeButton("cmdAutoNull", tr("&Auto null"),
                              tr("The sensor measures its offsets and corrects them"))),
      cmdFlashUpdate_(
          MakeButton("cmdFlashUpdate", tr("&Flash update"), tr("Sends command 12 to the sensor"))) {
  LayOut();
  Connect();
}

void frmCalibration::LayOut() {
  auto* grid = new QGridLayout;
  grid->addWidget(new QLabel(tr("Null")), 0, 0);
  grid->addWidget(new QLabel(tr("Word, hex")), 0, 1);
  grid->addWidget(new QLabel(tr("Value, g")), 0, 2);
  for (std::size_t i = 0; i < rows_.size(); ++i) {
    const Names& names = kNames[i];
    Row& row = rows_[i];
    row.word = MakeLabel(names.word, "");
    row.word->setTextInteractionFlags(Qt::TextSelectableByMouse);
    row.word->setMinimumWidth(row.word->fontMetrics().horizontalAdvance("00000000"));
    row.value = MakeValueBox(names.value);
    row.write = MakeButton(names.write, tr(names.writeCaption), tr("Write the value, read back"));
    row.write->setAutoDefault(false);
    const int line = static_cast<int>(i) + 1;
    grid->addWidget(MakeCaption(tr(names.caption), row.value), line, 0);
    grid->addWidget(row.word, line, 1);
    grid->addWidget(row.value, line, 2);
    grid->addWidget(row.write, line, 3);
  }
  QPushButton* close = MakeButton("cmdClose", tr("&Close"), tr("Close this window"));
  auto* buttons = new QHBoxLayout;
  for (QPushButton* button : {cmdAutoNull_, cmdFlashUpdate_, close}) {
    button->setAutoDefault(false);
    if (button == close) buttons->addStretch();
    buttons->addWidget(button);
  }
  auto* all = new QVBoxLayout(this);
  all->addLayout(grid);
  all->addLayout(buttons);
  connect(close, &QPushButton::clicked, this, &QWidget::close);
}

// Enter in a value box writes it.
void frmCalibration::Connect() {
  for (const Axis axis : kAxes) {
    const Row& row = rows_[Index(axis)];
    const char* handler = kNames[Index(axis)].handler;
    On(row.write, &QPushButton::clicked, handler, [this, axis] { logic_.WriteNull(axis); });
    On(row.value, &QLineEdit::returnPressed, handler, [this, axis] { logic_.WriteNull(axis); });
  }
  On(cmdAutoNull_, &QPushButton::clicked, "cmdAutoNull_Click",
     [this] { logic_.cmdAutoNull_Click(); });
  On(cmdFlashUpdate_, &QPushButton::clicked, "cmdFlashUpdate_Click",
     [this] { logic_.cmdFlashUpdate_Click(); });
}

void frmCalibration::Form_Activate() {
  logic_.ReadCalRegisters();
}

void frmCalibration::ShowNull(Axis axis, const std::string& word, const std::string& value) {
  rows_[Index(axis)].word->setText(QString::fromStdString(word));
  rows_[Index(axis)].value->setText(QString::fromStdString(value));
}

std::string frmCalibration::ValueText(Axis axis) {
  return rows_[Index(axis)].value->text().toStdString();
}

}  // namespace kestrel
