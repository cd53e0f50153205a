// What leaves the analyser: tables and pictures on the clipboard and in files.
// SPDX-License-Identifier: MIT
#include <QClipboard>
#include <QFileDialog>
#include <QStatusBar>
#include <QTemporaryDir>

#include "ui/analyser/analyser_bench.h"

namespace kestrel {
namespace {

class AnalyserOut : public AnalyserBench {
 protected:
  void SetUp() override {
    Open();
    Capture();
    QApplication::clipboard()->clear();
  }
  QByteArray Begin(const QString& file, int bytes) {
    QFile written(file);
    EXPECT_TRUE(written.open(QIODevice::ReadOnly)) << file.toStdString();
    return written.read(bytes);
  }
  QTemporaryDir folder_;
};

TEST_F(AnalyserOut, EveryTableIsCopiedWithTabsHeadsAndUnits) {
  Key(Qt::Key_C);
  for (const char* dock : {"dockPeaks_copy", "dockLevels_copy", "dockCursor_copy"}) {
    QApplication::clipboard()->clear();
    Click(dock);
    const QStringList lines = QApplication::clipboard()->text().split('\n');
    ASSERT_GT(lines.size(), 1) << dock;
    EXPECT_GE(lines[0].count('\t'), 1) << dock;
    EXPECT_EQ(lines[1].count('\t'), lines[0].count('\t')) << dock;
  }
  auto& peaks = In<QTableView>("tblPeaks");
  peaks.setFocus();
  QTest::keyClick(&peaks, Qt::Key_C, Qt::ControlModifier);
  const QString head = QApplication::clipboard()->text().section('\n', 0, 0);
  EXPECT_TRUE(head.contains("Hz")) << head.toStdString();
  EXPECT_TRUE(head.contains("g peak") || head.contains("g RMS")) << head.toStdString();
}

TEST_F(AnalyserOut, ThePlotIsCopiedAsAPicture) {
  Key(Qt::Key_C, Qt::ControlModifier);
  EXPECT_FALSE(QApplication::clipboard()->image().isNull());
  EXPECT_EQ(Said(), "The picture is on the clipboard.");
}

TEST_F(AnalyserOut, TheWaterfallIsCopiedAsAPicture) {
  Click("cmdCopy");
  const QImage spectrum = QApplication::clipboard()->image();
  Analyser().ChooseView(study::View::Waterfall);
  Settle();
  Click("cmdCopy");
  ASSERT_FALSE(QApplication::clipboard()->image().isNull());
  EXPECT_NE(QApplication::clipboard()->image(), spectrum);
}

TEST_F(AnalyserOut, PicturesAreWrittenInEachKind) {
  const QString png = folder_.filePath("a.png");
  ASSERT_TRUE(Analyser().Export(png));
  const QImage picture(png);
  EXPECT_EQ(picture.size(), Plot().size() * 2);
  EXPECT_EQ(picture.text("Title"), "Spectrum");
  EXPECT_TRUE(picture.text("Source").contains("version"));
  EXPECT_EQ(Said(), "Written: " + png);
  ASSERT_TRUE(Analyser().Export(folder_.filePath("a.pdf")));
  EXPECT_EQ(Begin(folder_.filePath("a.pdf"), 5), "%PDF-");
  if (PictureEndings().contains("svg")) {
    ASSERT_TRUE(Analyser().Export(folder_.filePath("a.SVG")));
    EXPECT_EQ(Begin(folder_.filePath("a.SVG"), 5), "<?xml");
  }
}

TEST_F(AnalyserOut, WhatCannotBeWrittenIsToldWithTheCure) {
  EXPECT_FALSE(Analyser().Export(folder_.filePath("a.bmp")));
  EXPECT_TRUE(Said().contains("\".bmp\" is no kind of picture")) << Said().toStdString();
  EXPECT_TRUE(Said().contains("png"));
  EXPECT_FALSE(QFile::exists(folder_.filePath("a.bmp")));
  EXPECT_FALSE(Analyser().Export(folder_.filePath("none/a.png")));
  EXPECT_TRUE(Said().contains("Choose a folder that you may write in")) << Said().toStdString();
}

// A file that stands there is not harmed by a picture that fails.
TEST_F(AnalyserOut, AFullDiskIsToldAndLeavesTheFileOfBefore) {
  if (!QFile::exists("/dev/full")) GTEST_SKIP() << "no device that is always full";
  const QString link = folder_.filePath("full.png");
  ASSERT_TRUE(QFile::link("/dev/full", link));
  EXPECT_FALSE(Analyser().Export(link));
  EXPECT_TRUE(Said().contains("cannot be written")) << Said().toStdString();
}

TEST_F(AnalyserOut, CtrlEAsksForAFileAndClosesWithTheWindow) {
  WindowKey(Qt::Key_E, Qt::ControlModifier);
  auto* dialog = Analyser().findChild<QFileDialog*>("askExport");
  ASSERT_NE(dialog, nullptr);
  EXPECT_EQ(dialog->acceptMode(), QFileDialog::AcceptSave);
  emit dialog->fileSelected(folder_.filePath("asked.png"));
  EXPECT_TRUE(QFile::exists(folder_.filePath("asked.png")));
  Analyser().close();
}

}  // namespace
}  // namespace kestrel
