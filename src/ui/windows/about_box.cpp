// The text of the box about the program.
// SPDX-License-Identifier: MIT
#include "ui/windows/about_box.h"

#include <QApplication>
#include <QMessageBox>

#include "app/program_state.h"

namespace kestrel {

void ShowAboutBox(QWidget& window) {
  auto* box =
      new QMessageBox(QMessageBox::Information, QObject::tr("About"),
                      QObject::tr("%1 %2\n\nBench program for one tri-axial vibration sensor.")
                          .arg(kApplicationTitle, QApplication::applicationVersion()),
                      QMessageBox::Ok, &window);
  box->setAttribute(Qt::WA_DeleteOnClose);
  box->open();
}

}  // namespace kestrel
