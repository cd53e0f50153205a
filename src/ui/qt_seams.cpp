// Kestrel evaluation program
// SPDX-License-Identifier: MIT
#include "ui/qt_seams.h"

#include <QApplication>
#include <QMessageBox>
#include <cstdio>

#include "app/program_state.h"

namespace kestrel {

void QtMessages::Show(const std::string& text, const std::string& title) {
  QMessageBox box(QApplication::activeWindow());
  box.setIcon(title == "Error" ? QMessageBox::Critical : QMessageBox::Information);
  box.setWindowTitle(QString::fromStdString(title.empty() ? kApplicationTitle : title));
  box.setTextFormat(Qt::PlainText);
  box.setText(QString::fromStdString(text));
  box.setStandardButtons(QMessageBox::Ok);
  // The hourglass of a waiting handler must not cover the box.
  QApplication::setOverrideCursor(Qt::ArrowCursor);
  box.exec();
  QApplication::restoreOverrideCursor();
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
