// The notes, buttons and readings of a window over sensor registers.
// SPDX-License-Identifier: MIT
#include "ui/parts/sensor_window.h"

#include <QHBoxLayout>
#include <QKeyEvent>
#include <QPushButton>
#include <QVBoxLayout>

#include "ui/parts/widgets.h"

namespace kestrel {

SensorWindow::SensorWindow(const char* name, const QString& title, RegisterAccess& registers,
                           HandlerEdge& edge, QWidget* parent, QPoint offsetTwips)
    : SecondaryWindow(name, title, edge, parent, offsetTwips),
      registers_(registers),
      lblNote_(MakeLabel("lblNote", "")) {
  lblNote_->setWordWrap(true);
  lblNote_->setTextInteractionFlags(Qt::TextSelectableByMouse);
  // Room for the longest note, so that nothing moves when there is something to tell.
  lblNote_->setMinimumSize(36 * lblNote_->fontMetrics().averageCharWidth(),
                           3 * lblNote_->fontMetrics().lineSpacing());
}

void SensorWindow::LayOut(QLayout* controls) {
  QPushButton* read = MakeButton("cmdRead", tr("&Read"), tr("Read the sensor again"));
  QPushButton* close = MakeButton("cmdClose", tr("&Close"), tr("Close this window"));
  auto* last = new QHBoxLayout;
  last->addWidget(lblNote_, 1);
  for (QPushButton* button : {read, close}) {
    button->setAutoDefault(false);
    last->addWidget(button, 0, Qt::AlignBottom);
  }
  auto* all = new QVBoxLayout(this);
  all->addLayout(controls, 1);
  all->addLayout(last);
  On(read, &QPushButton::clicked, "cmdRead_Click", [this] { Use([this] { ReadSensor(); }); });
  connect(close, &QPushButton::clicked, this, &QWidget::close);
}

void SensorWindow::Use(const std::function<void()>& handler) {
  Note("");
  handler();
  NoteWhetherReached();
}

void SensorWindow::Refused(const QString& why) {
  ShowLastRead();
  Note(why);
  notesFailure_ = true;
}

void SensorWindow::ReadAgain() {
  Edge().Run("Form_Activate", [this] { Form_Activate(); });
}

void SensorWindow::Form_Activate() {
  ReadSensor();
  NoteWhetherReached();
}

void SensorWindow::NoteWhetherReached() {
  if (registers_.Reachable()) {
    if (notesFailure_) Note("");
  } else {
    Note(tr("The sensor cannot be reached: nothing new was read."));
    notesFailure_ = true;
  }
}

void SensorWindow::Note(const QString& text) {
  notesFailure_ = false;
  lblNote_->setText(text);
}

void SensorWindow::NoteNow(const QString& text) {
  Note(text);
  lblNote_->repaint();
}

// Enter presses the button that has the focus and never another one.
void SensorWindow::keyPressEvent(QKeyEvent* event) {
  if (event->key() != Qt::Key_Return && event->key() != Qt::Key_Enter) {
    SecondaryWindow::keyPressEvent(event);
  } else if (auto* button = qobject_cast<QPushButton*>(focusWidget())) {
    button->click();
  }
}

}  // namespace kestrel
