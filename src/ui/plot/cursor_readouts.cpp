// How the cursor's read-outs are laid out and told.
// SPDX-License-Identifier: MIT
#include "ui/plot/cursor_readouts.h"

#include <QCoreApplication>
#include <QGridLayout>

#include "ui/parts/widgets.h"

namespace kestrel {
namespace {

QString Tr(const char* text) {
  return QCoreApplication::translate("PlotPanel", text);
}

// Keeps its place while hidden and does not move its neighbours.
QLabel* MakeReadout(const char* name, const QString& widest) {
  QLabel* label = MakeLabel(name, "");
  label->setAlignment(Qt::AlignRight | Qt::AlignVCenter);
  label->setMinimumWidth(label->fontMetrics().horizontalAdvance(widest));
  KeepPlaceWhileHidden(label);
  return label;
}

}  // namespace

CursorReadouts::CursorReadouts()
    : lblCursorX_(MakeReadout("lblCursorX", "000")),
      LblFreq_(MakeReadout("LblFreq", "00,000 Hz")),
      lblCursorTime_(MakeLabel("lblCursorTime", "")),
      lblCursorY_(MakeReadout("lblCursorY", "-000.000")) {
  lblCursorTime_->setAlignment(Qt::AlignRight | Qt::AlignVCenter);
  lblCursorX_->setAccessibleDescription(Tr("Cursor, bin or sample"));
  LblFreq_->setAccessibleDescription(Tr("Cursor, frequency"));
  lblCursorTime_->setAccessibleDescription(Tr("Cursor, time of the sample"));
  lblCursorY_->setAccessibleDescription(Tr("Cursor, acceleration in g"));
}

// Frequency and time share a place: a record has the one or the other.
void CursorReadouts::AddTo(QHBoxLayout& strip) {
  auto* shared = new QGridLayout;
  shared->addWidget(LblFreq_, 0, 0);
  shared->addWidget(lblCursorTime_, 0, 0);
  strip.addWidget(new QLabel(Tr("Cursor")));
  strip.addWidget(lblCursorX_);
  strip.addLayout(shared);
  strip.addWidget(lblCursorY_);
  strip.addWidget(new QLabel(Tr("g")));
}

void CursorReadouts::SetStartValues() {
  lblCursorX_->setText("0");
  LblFreq_->setText(QString("0") + " Hz");
  lblCursorY_->setText("0.00");
}

void CursorReadouts::Clear() {
  for (QLabel* label : {lblCursorX_, LblFreq_, lblCursorTime_, lblCursorY_}) label->clear();
}

QString CursorReadouts::InWords(const QString& unit) const {
  if (lblCursorX_->text().isEmpty()) return Tr("Plot, no cursor");
  const QLabel* place = LblFreq_->isHidden() ? lblCursorTime_ : LblFreq_;
  const QString where = place->text().isEmpty() ? QString() : place->text() + ", ";
  return Tr("Plot, cursor at %1 %2, %3%4 g")
      .arg(unit, lblCursorX_->text(), where, lblCursorY_->text());
}

}  // namespace kestrel
