// The sixteen boxes of frames, laid out and read.
// SPDX-License-Identifier: MIT
#include "ui/parts/frame_table.h"

#include <QGridLayout>

#include "ui/parts/widgets.h"

namespace kestrel {
namespace {

constexpr int kLines = kFramesPerTransfer / 2;
constexpr int kGridColumns = 4;  // number, sent, answer, gap
constexpr int kDigits = 7;

}  // namespace

QLineEdit* MakeEntry(const QString& name, const QString& accessibleName, const QString& toolTip,
                     int digits) {
  constexpr int kFramePixels = 16;
  auto* box = new QLineEdit;
  box->setObjectName(name);
  box->setAccessibleName(accessibleName);
  box->setToolTip(toolTip);
  box->setMaximumWidth(digits * box->fontMetrics().horizontalAdvance('0') + kFramePixels);
  return box;
}

FrameTable::FrameTable() : QGroupBox(tr("Frames, hexadecimal")) {
  MakeBoxes();
  LayOut();
}

void FrameTable::MakeBoxes() {
  for (int number = 1; number <= kFramesPerTransfer; ++number) {
    Row& row = rows_[static_cast<std::size_t>(number - 1)];
    row.txtTx = MakeEntry(ArrayName("txtTx", number), tr("Frame %1 to send").arg(number),
                          tr("16-bit word in hexadecimal digits, 0 to FEFF"), kDigits);
    row.txtRx = MakeReadOut(ArrayName("txtRx", number), tr("Answer during frame %1").arg(number));
    row.txtRx->setMaximumWidth(row.txtTx->maximumWidth());
    row.txtRx->setFocusPolicy(Qt::ClickFocus);
  }
}

void FrameTable::LayOut() {
  auto* grid = new QGridLayout(this);
  grid->addWidget(MakeCaption(tr("Sen&t"), rows_[0].txtTx), 0, 1);
  grid->addWidget(new QLabel(tr("Answer")), 0, 2);
  grid->addWidget(new QLabel(tr("Sent")), 0, kGridColumns + 1);
  grid->addWidget(new QLabel(tr("Answer")), 0, kGridColumns + 2);
  grid->setColumnMinimumWidth(kGridColumns - 1, 2 * fontMetrics().averageCharWidth());
  for (int i = 0; i < kFramesPerTransfer; ++i) {
    const int line = i % kLines + 1;
    const int column = kGridColumns * (i / kLines);
    const Row& row = rows_[static_cast<std::size_t>(i)];
    grid->addWidget(MakeCaption(QString::number(i + 1), row.txtTx), line, column, Qt::AlignRight);
    grid->addWidget(row.txtTx, line, column + 1);
    grid->addWidget(row.txtRx, line, column + 2);
  }
  grid->setRowStretch(kLines + 1, 1);
}

FrameTexts FrameTable::Frames() const {
  FrameTexts texts;
  for (std::size_t i = 0; i < rows_.size(); ++i) texts[i] = rows_[i].txtTx->text().toStdString();
  return texts;
}

void FrameTable::PointAt(int number) {
  QLineEdit* box = rows_.at(static_cast<std::size_t>(number - 1)).txtTx;
  box->setFocus();
  box->selectAll();
}

void FrameTable::ShowAnswers(const std::vector<std::string>& answers) {
  for (std::size_t i = 0; i < rows_.size(); ++i) {
    rows_[i].txtRx->setText(i < answers.size() ? QString::fromStdString(answers[i]) : "");
  }
}

}  // namespace kestrel
