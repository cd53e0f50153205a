// Printing and its dialogs, left to the event loop.
// SPDX-License-Identifier: MIT
#include "ui/parts/page_printing.h"

#include <gtest/gtest.h>

#include <QApplication>
#include <QFileDialog>
#include <QPrintDialog>

#include "support/temporary_folder.h"

namespace kestrel {
namespace {

template <typename Dialog>
Dialog* OpenDialog(QWidget& parent) {
  QApplication::processEvents();
  return parent.findChild<Dialog*>();
}

TEST(SystemPrintService, TheFileDialogIsLeftToTheEventLoopAndHandsOverTheFile) {
  const TemporaryFolder folder;
  const QString proposal = QString::fromStdString((folder.path() / "Registers.pdf").string());
  QWidget parent;
  SystemPrintService service;
  QString chosen;
  service.ChoosePdfFile(&parent, proposal, [&](const QString& file) { chosen = file; });
  auto* dialog = OpenDialog<QFileDialog>(parent);
  ASSERT_NE(dialog, nullptr);
  EXPECT_TRUE(dialog->isVisible());
  EXPECT_EQ(chosen, "");
  QMetaObject::invokeMethod(dialog, "accept");
  EXPECT_EQ(chosen, proposal);
}

TEST(SystemPrintService, AFileDialogThatIsCancelledHandsNothingOver) {
  QWidget parent;
  SystemPrintService service;
  bool called = false;
  service.ChoosePdfFile(&parent, "x.pdf", [&](const QString&) { called = true; });
  auto* dialog = OpenDialog<QFileDialog>(parent);
  ASSERT_NE(dialog, nullptr);
  dialog->reject();
  QApplication::processEvents();
  EXPECT_FALSE(called);
}

TEST(SystemPrintService, ThePrintDialogIsLeftToTheEventLoopAndHandsOverAPrinter) {
  QWidget parent;
  SystemPrintService service;
  int printers = 0;
  service.ChoosePrinter(&parent, [&](QPrinter&) { ++printers; });
  auto* dialog = OpenDialog<QPrintDialog>(parent);
  ASSERT_NE(dialog, nullptr);
  EXPECT_TRUE(dialog->isVisible());
  EXPECT_TRUE(dialog->testOption(QPrintDialog::PrintToFile));
  EXPECT_EQ(printers, 0);
  dialog->done(QDialog::Accepted);
  EXPECT_EQ(printers, 1);
}

}  // namespace
}  // namespace kestrel
