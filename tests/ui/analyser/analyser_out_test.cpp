// What leaves the analyser: tables and pictures on the clipboard and in files.
// SPDX-License-Identifier: MIT
#include <QClipboard>
#include <QFileDialog>
#include <QStatusBar>
#include <QTemporaryDir>

#include "platform/system_files.h"
#include "ui/analyser/analyser_bench.h"
#include "ui/analyser/no_host.h"

namespace kestrel {
namespace {

class AnalyserOut : public AnalyserBench {
 protected:
  void SetUp() override {
    Open();
    Capture();
    QApplication::clipboard()->clear();
  }
  QByteArray Written(const char* file) { return QByteArray::fromStdString(files_.contents[file]); }
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
  ASSERT_TRUE(Analyser().Export("/pictures/a.png"));
  const QImage picture = QImage::fromData(Written("/pictures/a.png"), "PNG");
  EXPECT_EQ(picture.size(), Plot().size() * 2);
  EXPECT_EQ(picture.text("Title"), "Spectrum");
  EXPECT_TRUE(picture.text("Source").contains("version"));
  EXPECT_EQ(Said(), "Written: /pictures/a.png");
  ASSERT_TRUE(Analyser().Export("/pictures/a.pdf"));
  EXPECT_TRUE(Written("/pictures/a.pdf").startsWith("%PDF-"));
  if (PictureEndings().contains("svg")) {
    ASSERT_TRUE(Analyser().Export("/pictures/a.SVG"));
    EXPECT_TRUE(Written("/pictures/a.SVG").startsWith("<?xml"));
  }
}

TEST_F(AnalyserOut, TheWaterfallIsWrittenAsAPictureOfEachKind) {
  Analyser().ChooseView(study::View::Waterfall);
  for (const QString& ending : PictureEndings()) {
    const std::string file = "/pictures/map." + ending.toStdString();
    ASSERT_TRUE(Analyser().Export(QString::fromStdString(file))) << file;
    EXPECT_GT(Written(file.c_str()).size(), 5000) << file;
  }
  const QImage image = QImage::fromData(Written("/pictures/map.png"), "PNG");
  EXPECT_FALSE(image.isNull());
  EXPECT_TRUE(image.text("Description").contains("version"));
}

TEST_F(AnalyserOut, AKindThatThereIsNotIsToldWithThoseThatThereAre) {
  EXPECT_FALSE(Analyser().Export("/pictures/a.bmp"));
  EXPECT_TRUE(Said().contains("\".bmp\" is not a kind of picture")) << Said().toStdString();
  EXPECT_TRUE(Said().contains("png"));
  EXPECT_FALSE(files_.contents.contains("/pictures/a.bmp"));
}

TEST_F(AnalyserOut, AFullDiskIsToldWithTheCureAndLeavesTheFileOfBefore) {
  ASSERT_TRUE(Analyser().Export("/pictures/a.png"));
  const QByteArray before = Written("/pictures/a.png");
  Key(Qt::Key_Plus);
  files_.failure = "No space left on device";
  EXPECT_FALSE(Analyser().Export("/pictures/a.png"));
  EXPECT_EQ(Written("/pictures/a.png"), before);
  EXPECT_EQ(Said(),
            "The picture is not written: /pictures/a.png: No space left on device. Choose a folder "
            "that you may write in.");
}

// The real disk. Somebody to whom no folder is closed has at least none that is made of files.
TEST_F(AnalyserOut, AFolderThatMayNotBeWrittenInIsToldWithTheCure) {
  const QTemporaryDir folder;
  QFile::setPermissions(folder.path(), QFile::ReadOwner | QFile::ExeOwner);
  SystemFiles disk;
  const bool isClosed = !disk.CanWriteIn(folder.path().toStdString());
  const QString file = (isClosed ? folder.path() : QStringLiteral("/proc/self")) + "/plot.png";
  frmAnalyser analyser(NoHost(disk));
  EXPECT_FALSE(analyser.Export(file));
  const QString said = analyser.statusBar()->currentMessage();
  EXPECT_TRUE(said.startsWith("The picture is not written: " + file)) << said.toStdString();
  EXPECT_TRUE(said.endsWith("Choose a folder that you may write in."));
  EXPECT_FALSE(QFile::exists(file));
  QFile::setPermissions(folder.path(), QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner);
  EXPECT_EQ(QDir(folder.path()).entryList(QDir::Files).size(), 0) << "nothing half-written is left";
  EXPECT_TRUE(analyser.Export(folder.path() + "/plot.png"));
}

TEST_F(AnalyserOut, CtrlEAsksForAFileAndClosesWithTheWindow) {
  WindowKey(Qt::Key_E, Qt::ControlModifier);
  auto* dialog = Analyser().findChild<QFileDialog*>("askExport");
  ASSERT_NE(dialog, nullptr);
  EXPECT_EQ(dialog->acceptMode(), QFileDialog::AcceptSave);
  emit dialog->fileSelected("/pictures/asked.png");
  EXPECT_TRUE(files_.contents.contains("/pictures/asked.png"));
  Analyser().close();
}

}  // namespace
}  // namespace kestrel
