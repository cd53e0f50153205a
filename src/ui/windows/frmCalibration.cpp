// The offset corrections and their two commands.
// SPDX-License-Identifier: MIT
#include "ui/windows/frmCalibration.h"

#include <QGridLayout>
#include <QHBoxLayout>
#include <QKeyEvent>
#include <QScopedValueRollback>
#include <QVBoxLayout>
#include <algorithm>

#include "ui/parts/widgets.h"

namespace kestrel {
namespace {

constexpr QPoint kPlaceTwips{300, 3000};
constexpr int kMostCharacters = 24;  // a note must have room for them

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
     {"AUX&0", "lblAUX0nullReg", "txtAUX0null", "cmdWriteAUX0", "Wri&te AUX0",
      "cmdWriteAUX0_Click"},
     {"AUX&1", "lblAUX1nullReg", "txtAUX1null", "cmdWriteAUX1", "Wr&ite AUX1",
      "cmdWriteAUX1_Click"}}};

QLineEdit* MakeValueBox(const char* name) {
  auto* box = new QLineEdit;
  box->setObjectName(name);
  box->setAlignment(Qt::AlignRight);
  box->setMaxLength(kMostCharacters);
  box->setToolTip(QObject::tr("Correction in g, with a point as decimal mark; Enter writes it"));
  return box;
}

}  // namespace

frmCalibration::frmCalibration(Core& core, HandlerEdge& edge, QWidget* parent)
    : SensorWindow("frmCalibration", tr("Calibration"), core.registers, edge, parent, kPlaceTwips),
      logic_(core.registers, core.delay, core.seams.pointer, *this),
      rows_{},
      cmdAutoNull_(MakeButton("cmdAutoNull", tr("&Auto null"),
                              tr("The sensor measures its offsets and corrects them"))),
      cmdFlashUpdate_(
          MakeButton("cmdFlashUpdate", tr("&Flash update"), tr("Sends 0x1000 to COMMAND"))) {
  auto* note =
      new QLabel(tr("Flash update sends function 12 to the sensor.\n"
                    "Function 6 of the Global commands window saves the settings."));
  auto* commands = new QHBoxLayout;
  for (QPushButton* button : {cmdAutoNull_, cmdFlashUpdate_}) {
    button->setAutoDefault(false);
    commands->addWidget(button);
  }
  commands->addStretch();
  auto* all = new QVBoxLayout;
  all->addLayout(Rows());
  all->addLayout(commands);
  all->addWidget(note);
  all->addStretch();
  LayOut(all);
  Connect();
}

QLayout* frmCalibration::Rows() {
  auto* grid = new QGridLayout;
  grid->setHorizontalSpacing(18);
  grid->addWidget(new QLabel(tr("Register, hex")), 0, 1);
  grid->addWidget(new QLabel(tr("Correction, g")), 0, 2);
  for (std::size_t i = 0; i < rows_.size(); ++i) {
    const Names& names = kNames[i];
    Row& row = rows_[i];
    row.word = MakeLabel(names.word, "");
    row.word->setTextInteractionFlags(Qt::TextSelectableByMouse);
    row.word->setMinimumWidth(row.word->fontMetrics().horizontalAdvance("FFFF"));
    row.value = MakeValueBox(names.value);
    const QString axis = QString(tr(names.caption)).remove('&');
    row.word->setAccessibleDescription(tr("Register of %1, hexadecimal").arg(axis));
    row.value->setAccessibleName(tr("Correction of %1 in g").arg(axis));
    row.write = MakeButton(names.write, tr(names.writeCaption), tr("Write the value, read back"));
    row.write->setAutoDefault(false);
    const int line = static_cast<int>(i) + 1;
    grid->addWidget(MakeCaption(tr(names.caption), row.value), line, 0);
    grid->addWidget(row.word, line, 1);
    grid->addWidget(row.value, line, 2);
    grid->addWidget(row.write, line, 3);
  }
  grid->setColumnStretch(2, 1);
  return grid;
}

void frmCalibration::Connect() {
  const auto clicked = &QPushButton::clicked;
  for (const Axis axis : kAxes) {
    const Row& row = rows_[Index(axis)];
    const auto write = [this, axis] { logic_.WriteNull(axis); };
    OnUse(row.write, clicked, kNames[Index(axis)].handler, write);
    connect(row.value, &QLineEdit::returnPressed, row.write, &QPushButton::click);
  }
  OnUse(cmdAutoNull_, clicked, "cmdAutoNull_Click", [this] { logic_.cmdAutoNull_Click(); });
  OnUse(cmdFlashUpdate_, clicked, "cmdFlashUpdate_Click",
        [this] { logic_.cmdFlashUpdate_Click(); });
}

void frmCalibration::Form_Activate() {
  const QScopedValueRollback<bool> keep(keepEdits_, true);
  SensorWindow::Form_Activate();
}

void frmCalibration::ShowNull(Axis axis, const std::string& word, const std::string& value) {
  const Row& row = rows_[Index(axis)];
  row.word->setText(QString::fromStdString(word));
  if (keepEdits_ && row.value->isModified()) return;
  row.value->setText(QString::fromStdString(value));
}

std::string frmCalibration::ValueText(Axis axis) {
  return rows_[Index(axis)].value->text().toStdString();
}

void frmCalibration::ShowNote(const std::string& text) {
  Note(QString::fromStdString(text));
}

void frmCalibration::ShowBusy(const std::string& text) {
  NoteNow(QString::fromStdString(text));
}

bool frmCalibration::IsEdited() const {
  return std::any_of(rows_.begin(), rows_.end(),
                     [](const Row& row) { return row.value->isModified(); });
}

void frmCalibration::keyPressEvent(QKeyEvent* event) {
  if (event->key() == Qt::Key_Escape && IsEdited()) {
    logic_.ShowLastRead();
  } else {
    SensorWindow::keyPressEvent(event);
  }
}

}  // namespace kestrel
