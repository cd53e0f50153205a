// The main window's data log, its interface and its end.
// SPDX-License-Identifier: MIT
#include "ui/main/frm1.h"

#include <QStatusBar>

#include <QAction>
#include <QProgressBar>
#include <algorithm>

#include "device/rec_ctrl.h"
#include "logging/data_log.h"
#include "record/capture_data.h"
#include "regmap/register_table.h"
#include "ui/window_bench.h"

namespace kestrel {
namespace {

using Frm1 = WindowBench;

TEST_F(Frm1, ADataLogFileFollowsEachRecord) {
  Start();
  ChooseShortCaptures();
  Find<QCheckBox>("ckDataLog").click();
  EXPECT_EQ(Find<QCheckBox>("ckDataLog").text(), "Datalog   ON");
  Press("cmdStart");
  Press("cmdStart");
  EXPECT_EQ(BoxText("txtFileCount"), "2");
  EXPECT_TRUE(files_.contents.contains(files_.ProgramFolder() / "Datalog_1.csv"));
  EXPECT_TRUE(files_.contents.contains(files_.ProgramFolder() / "Datalog_2.csv"));
}

TEST_F(Frm1, AFileThatCannotBeWrittenGivesOneMessageAndKeepsTheRecord) {
  Start();
  ChooseShortCaptures();
  Find<QCheckBox>("ckDataLog").click();
  files_.failure = "No space left on device";
  Press("cmdStart");
  ASSERT_EQ(messages_.Texts().size(), 1U);
  EXPECT_EQ(messages_.Texts()[0], "cmdStart_Click\n" +
                                      (files_.ProgramFolder() / "Datalog_1.csv").string() +
                                      ": No space left on device");
  EXPECT_EQ(Find<QPushButton>("cmdStart").text(), "Start");
  EXPECT_FALSE(RawX == RecordArray{});
  files_.failure.clear();
  Press("cmdStart");
  EXPECT_EQ(BoxText("txtFileCount"), "1") << "the index was not used up";
}

TEST_F(Frm1, WithoutAnInterfaceDataAreRefused) {
  files_.contents.clear();
  Start();
  ASSERT_EQ(messages_.Texts().size(), 1U);
  EXPECT_EQ(messages_.Texts()[0], "Please select an interface before taking data");
  EXPECT_EQ(Text("lblInterface"), "No interface selected");
  Press("cmdStart");
  ASSERT_EQ(messages_.Texts().size(), 2U);
  EXPECT_EQ(messages_.Texts()[1], "Please select an interface before taking data");
  EXPECT_EQ(Find<QPushButton>("cmdStart").text(), "Start");
}

TEST_F(Frm1, TheMenuConnectsTheSimulatedSensorAndRemembersTheInterface) {
  files_.contents.clear();
  Start();
  Window().findChild<QAction*>("mnuSimulated")->trigger();
  EXPECT_EQ(simulatorConnected_, 1);
  EXPECT_EQ(files_.contents[files_.WorkingFolder() / "CommPort.cfg"],
            "Interface = 2\nPort Address = 0\nProductNumber = 31407\n");
  ChooseShortCaptures();
  Press("cmdStart");
  EXPECT_EQ(Text("lblRecCount"), "1");
}

TEST_F(Frm1, ExitClosesTheWindow) {
  Start();
  Window().findChild<QAction*>("MnuExit")->trigger();
  EXPECT_FALSE(Window().isVisible());
}

TEST_F(Frm1, TheLogGoesOnBehindFilesOfEarlierDaysWhenToldSo) {
  files_.contents["/program/Datalog_1.csv"] = "earlier";
  files_.contents["/program/Datalog_12.csv"] = "earlier";
  Start();
  Find<QCheckBox>("ckDataLog").click();
  EXPECT_EQ(messages_.questions,
            std::vector<std::string>{
                "There are files of earlier captures under this name: Datalog_1.csv to "
                "Datalog_12.csv. Going on behind them keeps them: the next number is then 13."});
  EXPECT_EQ(Window().statusBar()->currentMessage(), "Next file: /program/Datalog_13.csv. ");
  ChooseShortCaptures();
  Press("cmdStart");
  EXPECT_EQ(files_.contents["/program/Datalog_1.csv"], "earlier");
  EXPECT_EQ(files_.contents.count("/program/Datalog_13.csv"), 1U);
  for (int i = 0; i < 2; ++i) Find<QCheckBox>("ckDataLog").click();
  EXPECT_EQ(messages_.questions.size(), 1U) << "files of this run are not of earlier days";
}

TEST_F(Frm1, AnotherNameForTheLogOpensItsSettings) {
  files_.contents["/program/Datalog_1.csv"] = "earlier";
  messages_.earlierFiles = EarlierFiles::OtherName;
  Start();
  Find<QCheckBox>("ckDataLog").click();
  EXPECT_TRUE(Find<QDialog>("frmFileDir").isVisible());
  EXPECT_EQ(DataLogIndex, 1);
}

TEST_F(Frm1, NothingIsAskedWhereNoFileIsInTheWay) {
  files_.contents["/program/Datalog.csv"] = "another file";
  Start();
  Find<QCheckBox>("ckDataLog").click();
  EXPECT_TRUE(messages_.questions.empty());
}

TEST_F(Frm1, ReplacingFilesOfEarlierDaysIsAskedAboutOnceAndTold) {
  files_.contents["/program/Datalog_1.csv"] = "earlier";
  messages_.earlierFiles = EarlierFiles::Replace;
  Start();
  for (int i = 0; i < 3; ++i) Find<QCheckBox>("ckDataLog").click();
  EXPECT_EQ(messages_.questions.size(), 1U);
  EXPECT_EQ(Window().statusBar()->currentMessage(),
            "Next file: /program/Datalog_1.csv. Earlier files with this or a higher number, which "
            "new ones will replace: 1.");
}

// The name is another one from the first letter on; nobody has been asked about its files.
TEST_F(Frm1, ANameChosenWhileTheLogIsOnIsAskedAboutAtItsFirstFile) {
  files_.contents["/program/pump_1.csv"] = "earlier";
  Start();
  ChooseShortCaptures();
  Find<QCheckBox>("ckDataLog").click();
  EXPECT_TRUE(messages_.questions.empty());
  NameDataLog("pump");
  Press("cmdStart");
  EXPECT_EQ(messages_.questions,
            std::vector<std::string>{
                "There are files of earlier captures under this name: pump_1.csv. Going on behind "
                "them keeps them: the next number is then 2."});
  EXPECT_EQ(files_.contents["/program/pump_1.csv"], "earlier");
  EXPECT_EQ(files_.contents.count("/program/pump_2.csv"), 1U);
  Press("cmdStart");
  EXPECT_EQ(messages_.questions.size(), 1U);
  NumberDataLog(2);
  Press("cmdStart");
  EXPECT_EQ(messages_.questions.size(), 1U) << "a file of this run is replaced unasked";
}

TEST_F(Frm1, ANumberSetBackReplacesFilesOfEarlierDaysOnlyWhenToldSo) {
  files_.contents["/program/Datalog_1.csv"] = "earlier";
  files_.contents["/program/Datalog_2.csv"] = "earlier";
  Start();
  ChooseShortCaptures();
  Find<QCheckBox>("ckDataLog").click();
  NumberDataLog(1);
  messages_.earlierFiles = EarlierFiles::Replace;
  Press("cmdStart");
  EXPECT_NE(files_.contents["/program/Datalog_1.csv"], "earlier");
  Press("cmdStart");
  EXPECT_NE(files_.contents["/program/Datalog_2.csv"], "earlier");
  EXPECT_EQ(messages_.questions.size(), 2U) << "once when switched on, once when it was set back";
}

TEST_F(Frm1, AnotherNameWantedAtAFileKeepsItAndOpensTheSettings) {
  files_.contents["/program/pump_1.csv"] = "earlier";
  messages_.earlierFiles = EarlierFiles::OtherName;
  Start();
  ChooseShortCaptures();
  Find<QCheckBox>("ckDataLog").click();
  NameDataLog("pump");
  Press("cmdStart");
  QApplication::processEvents();
  EXPECT_EQ(files_.contents["/program/pump_1.csv"], "earlier");
  EXPECT_EQ(files_.contents.count("/program/pump_2.csv"), 1U);
  EXPECT_TRUE(Find<QDialog>("frmFileDir").isVisible());
}

TEST_F(Frm1, WhereNoNumberIsLeftEarlierFilesAreKeptAndItIsSaid) {
  files_.contents["/program/pump_1.csv"] = "earlier";
  files_.contents["/program/pump_32767.csv"] = "earlier";
  Start();
  ChooseShortCaptures();
  Find<QCheckBox>("ckDataLog").click();
  NameDataLog("pump");
  Press("cmdStart");
  ASSERT_EQ(messages_.Texts().size(), 1U);
  EXPECT_EQ(messages_.Texts()[0],
            "cmdStart_Click\npump_1.csv to pump_32767.csv: these files of earlier captures are "
            "kept, and no number behind them is left. Choose another name for the data log.");
  EXPECT_EQ(files_.contents["/program/pump_1.csv"], "earlier");
}

TEST_F(Frm1, TheLastFileIsNamed) {
  Start();
  ChooseShortCaptures();
  Find<QCheckBox>("ckDataLog").click();
  Press("cmdStart");
  EXPECT_EQ(Window().statusBar()->currentMessage(), "Written: /program/Datalog_1.csv");
  EXPECT_EQ(Find<QLineEdit>("txtFileCount").toolTip(), "/program/Datalog_1.csv");
}

}  // namespace
}  // namespace kestrel
