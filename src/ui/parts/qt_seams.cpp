// Message boxes and the hourglass, by the toolkit.
// SPDX-License-Identifier: MIT
#include "ui/parts/qt_seams.h"

#include <QApplication>
#include <QMessageBox>
#include <QPushButton>
#include <cstdio>

#include "app/program_state.h"

namespace kestrel {

namespace {

// The button that was pressed. The hourglass of a waiting handler must not cover the box.
int ShowBox(QMessageBox::Icon icon, const std::string& title, const std::string& text,
            const std::string& explanation, QMessageBox::StandardButtons buttons) {
  QMessageBox box(QApplication::activeWindow());
  box.setIcon(icon);
  box.setWindowTitle(QString::fromStdString(title));
  box.setTextFormat(Qt::PlainText);
  box.setText(QString::fromStdString(text));
  box.setInformativeText(QString::fromStdString(explanation));
  box.setStandardButtons(buttons);
  QApplication::setOverrideCursor(Qt::ArrowCursor);
  const int pressed = box.exec();
  QApplication::restoreOverrideCursor();
  return pressed;
}

}  // namespace

void QtMessages::Show(const std::string& text, const std::string& title) {
  ShowExplained(text, title, "");
}

// A box without a title has none; its icon tells what kind of box it is.
void QtMessages::ShowExplained(const std::string& text, const std::string& title,
                               const std::string& explanation) {
  ShowBox(title == "Error" ? QMessageBox::Critical : QMessageBox::Information, title, text,
          explanation, QMessageBox::Ok);
}

Unsaved QtMessages::AskToSave(const std::string& text) {
  const int pressed = ShowBox(QMessageBox::Question, kApplicationTitle, text, "",
                              QMessageBox::Save | QMessageBox::Discard | QMessageBox::Cancel);
  if (pressed == QMessageBox::Save) return Unsaved::Save;
  return pressed == QMessageBox::Discard ? Unsaved::Discard : Unsaved::Cancel;
}

// Escape, the box's close button and Return change nothing.
bool QtMessages::AskToGoOn(const std::string& text, const std::string& deed) {
  QMessageBox box(QMessageBox::Question, kApplicationTitle, QString::fromStdString(text),
                  QMessageBox::Cancel, QApplication::activeWindow());
  box.setTextFormat(Qt::PlainText);
  const QAbstractButton* goOn =
      box.addButton(QString::fromStdString(deed), QMessageBox::DestructiveRole);
  box.setDefaultButton(QMessageBox::Cancel);
  box.setEscapeButton(QMessageBox::Cancel);
  QApplication::setOverrideCursor(Qt::ArrowCursor);
  box.exec();
  QApplication::restoreOverrideCursor();
  return box.clickedButton() == goOn;
}

// Escape and the box's close button replace nothing.
EarlierFiles QtMessages::AskAboutEarlierFiles(const std::string& text) {
  QMessageBox box(QMessageBox::Question, kApplicationTitle, QString::fromStdString(text),
                  QMessageBox::NoButton, QApplication::activeWindow());
  box.setTextFormat(Qt::PlainText);
  QPushButton* goOn = box.addButton(QMessageBox::tr("&Go on behind them"), QMessageBox::AcceptRole);
  const QAbstractButton* replace =
      box.addButton(QMessageBox::tr("&Replace them"), QMessageBox::DestructiveRole);
  const QAbstractButton* other =
      box.addButton(QMessageBox::tr("Choose &another name..."), QMessageBox::ActionRole);
  box.setDefaultButton(goOn);
  box.setEscapeButton(goOn);
  QApplication::setOverrideCursor(Qt::ArrowCursor);
  box.exec();
  QApplication::restoreOverrideCursor();
  if (box.clickedButton() == replace) return EarlierFiles::Replace;
  return box.clickedButton() == other ? EarlierFiles::OtherName : EarlierFiles::GoOn;
}

void ConsoleMessages::Show(const std::string& text, const std::string& title) {
  std::fprintf(stderr, "%s%s%s\n", title.c_str(), title.empty() ? "" : ": ", text.c_str());
}

QtMousePointer::~QtMousePointer() {
  Restore();
}

void QtMousePointer::ShowHourglass() {
  if (!hourglass_) QApplication::setOverrideCursor(Qt::WaitCursor);
  hourglass_ = true;
}

void QtMousePointer::ShowDefault() {
  Restore();
}

void QtMousePointer::Restore() {
  if (hourglass_) QApplication::restoreOverrideCursor();
  hourglass_ = false;
}

}  // namespace kestrel
