// The register window's list: marks, log, copying.
// SPDX-License-Identifier: MIT
#include <QClipboard>
#include <fstream>
#include <iterator>

#include "ui/rendering.h"
#include "ui/windows/manual_reg_bench.h"

namespace kestrel {
namespace {

using Words = std::vector<std::string>;

std::string Golden() {
  std::ifstream file(std::string(KESTREL_GOLDEN) + "/Registers_LOG.txt", std::ios::binary);
  return {std::istreambuf_iterator<char>(file), {}};
}

class FrmManualRegList : public ManualRegBench {
 protected:
  static qsizetype Pages(const std::string& pdf) {
    return QByteArray::fromStdString(pdf).count("/Type /Page\n");
  }
};

TEST_F(FrmManualRegList, WritesTheRegisterLogOfANewlyStartedSensor) {
  Open();
  Press("cmdWriteFile");
  const std::string golden = Golden();
  ASSERT_FALSE(golden.empty());
  EXPECT_EQ(files_.contents["/program/Registers_LOG.txt"], golden);
  EXPECT_EQ(Text("lblNote"), "The list was written to /program/Registers_LOG.txt.");
}

TEST_F(FrmManualRegList, ALostSensorLeavesTheListAndGivesOneMessage) {
  Open();
  const QString list = List().toPlainText();
  for (const int request : {1, 2, 3, 74, kListRequests}) {
    SCOPED_TRACE(request);
    usb_.Mend();
    core_.usb.SelectUsbAdapter();
    messages_.Clear();
    usb_.FailFrom(request);
    Press("cmdReadAllReg");
    EXPECT_EQ(messages_.Texts().size(), 1U);
    EXPECT_EQ(List().toPlainText(), list);
    EXPECT_EQ(Text("lblListNote"),
              "The sensor cannot be reached. This is the list read at 9:26:53 AM.");
  }
  EXPECT_EQ(Text("lblInterface"), "USB adapter lost");
}

TEST_F(FrmManualRegList, ALogThatCannotBeWrittenIsToldWithFileAndReason) {
  Open();
  files_.failure = "No space left on device";
  Press("cmdWriteFile");
  EXPECT_EQ(messages_.Texts(),
            Words{"cmdWriteFile_Click\n/program/Registers_LOG.txt: No space left on device"});
  EXPECT_EQ(Text("lblNote"), "");
}

TEST_F(FrmManualRegList, CopiesTheWholeListWithItsLineEnds) {
  Open();
  Press("cmdWriteFile");
  Press("cmdCopy");
  const std::string copied = QApplication::clipboard()->text().toStdString();
  const std::string log = files_.contents["/program/Registers_LOG.txt"];
  ASSERT_FALSE(copied.empty());
  EXPECT_EQ(copied, log.substr(log.find("Name\t")));
}

TEST_F(FrmManualRegList, CopiesTheSelectionByButtonAndKey) {
  Open();
  QTextCursor cursor(List().document());
  cursor.movePosition(QTextCursor::Down, QTextCursor::MoveAnchor, 2);
  cursor.movePosition(QTextCursor::Down, QTextCursor::KeepAnchor, 2);
  List().setTextCursor(cursor);
  const QString wanted = "ENDURANCE     \t0\t0000\r\nX_NULL     \t2\t0000\r\n";
  Press("cmdCopy");
  EXPECT_EQ(QApplication::clipboard()->text(), wanted);
  QApplication::clipboard()->clear();
  QTest::keyClick(&List(), Qt::Key_C, Qt::ControlModifier);
  EXPECT_EQ(QApplication::clipboard()->text(), wanted);
  cursor.clearSelection();
  List().setTextCursor(cursor);
  QTest::keyClick(&List(), Qt::Key_C, Qt::ControlModifier);
  EXPECT_TRUE(QApplication::clipboard()->text().startsWith("Name\t\tAddr\tHex\r\n"));
}

// The mark is painted into the list's margin, so that it does not depend on colour alone.
TEST_F(FrmManualRegList, AChangedLineIsPaintedWithAMarkAndATint) {
  Open();
  const auto painted = [this] { return RenderOf(*List().viewport(), 1); };
  const QImage calm = painted();
  core_.registers.WriteReg(row::Y_NULL, 0);
  Press("cmdReadAllReg");
  EXPECT_EQ(painted(), calm);
  core_.registers.WriteReg(row::Y_NULL, 1);
  Press("cmdReadAllReg");
  const QImage marked = painted();
  const QTextBlock block = List().document()->findBlockByNumber(kListHeadingLines + row::Y_NULL);
  QTextCursor cursor(block);
  const QRect line = List().cursorRect(cursor);
  const int middle = line.center().y();
  const QColor tint = marked.pixelColor(marked.width() - 3, middle);
  EXPECT_NE(tint, calm.pixelColor(calm.width() - 3, middle));
  int markPixels = 0;
  for (int x = 0; x < line.left(); ++x) {
    if (marked.pixelColor(x, middle) != tint) ++markPixels;
  }
  EXPECT_GE(markPixels, 4);
}

TEST_F(FrmManualRegList, PrintsTheWholeListToAFileChosenInThePrintDialog) {
  Open();
  Choose(row::STATUS);
  Press("cmdPrint");
  ASSERT_TRUE(printers_->printer);
  QPrinter printer;
  printer.setOutputFileName("/pages/out.pdf");
  printers_->printer(printer);
  const std::string pdf = files_.contents["/pages/out.pdf"];
  EXPECT_EQ(pdf.substr(0, 5), "%PDF-");
  EXPECT_EQ(Pages(pdf), 2);
  EXPECT_EQ(Text("lblNote"), "Printed to /pages/out.pdf.");
  EXPECT_TRUE(messages_.Texts().empty());
}

TEST_F(FrmManualRegList, ASmallPaperTakesMorePages) {
  Open();
  Press("cmdPrint");
  QPrinter printer;
  printer.setOutputFileName("/pages/small.pdf");
  printer.setPageSize(QPageSize(QPageSize::A6));
  printers_->printer(printer);
  EXPECT_GE(Pages(files_.contents["/pages/small.pdf"]), 3);
}

TEST_F(FrmManualRegList, WithoutAPrinterSaysSoAndOffersAPdfFile) {
  printers_->hasPrinter = false;
  Open();
  Press("cmdPrint");
  EXPECT_EQ(messages_.Texts(), Words{"Printing: no printer is set up. The pages can be kept in a "
                                     "PDF file instead."});
  EXPECT_FALSE(printers_->printer);
  EXPECT_EQ(printers_->proposedFile, "/program/Registers.pdf");
  ASSERT_TRUE(printers_->file);
  printers_->file("/pages/chosen.pdf");
  EXPECT_EQ(files_.contents["/pages/chosen.pdf"].substr(0, 5), "%PDF-");
  EXPECT_EQ(Text("lblNote"), "Printed to /pages/chosen.pdf.");
}

TEST_F(FrmManualRegList, APdfFileThatCannotBeWrittenIsToldWithFileAndReason) {
  printers_->hasPrinter = false;
  Open();
  Press("cmdPrint");
  messages_.Clear();
  files_.failure = "Permission denied";
  printers_->file("/pages/chosen.pdf");
  EXPECT_EQ(messages_.Texts(), Words{"cmdPrint_Click\n/pages/chosen.pdf: Permission denied"});
  EXPECT_EQ(Text("lblNote"), "");
}

TEST_F(FrmManualRegList, ACancelledPrintDialogPrintsNothing) {
  Open();
  const auto before = files_.contents;
  Press("cmdPrint");
  EXPECT_EQ(files_.contents, before);
  EXPECT_EQ(Text("lblNote"), "");
}

TEST_F(FrmManualRegList, APrinterThatTakesNoPagesIsTold) {
  Open();
  Press("cmdPrint");
  QPrinter printer;
  printer.setOutputFormat(QPrinter::PdfFormat);  // and no file to put it in
  printers_->printer(printer);
  EXPECT_EQ(messages_.Texts(), Words{"Printing: the printer \"\" did not take the pages."});
  EXPECT_EQ(Text("lblNote"), "");
}

}  // namespace
}  // namespace kestrel
