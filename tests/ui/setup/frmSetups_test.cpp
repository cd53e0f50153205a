// The window of set-ups in the real program, over the simulated sensor.
// SPDX-License-Identifier: MIT
#include "ui/setup/frmSetups.h"

#include <gmock/gmock.h>

#include <QStatusBar>

#include "device/rec_ctrl.h"
#include "regmap/register_table.h"
#include "setup/setup_file.h"
#include "ui/window_bench.h"

namespace kestrel {
namespace {

using testing::HasSubstr;

class Setups : public WindowBench {
 protected:
  Setups() { archive_.usual = {"/data/kestrel/archive.db"}; }

  void Open() {
    Start();
    Trigger("mnuSetups");
    Settle();
  }
  static void Settle() {
    for (int i = 0; i < 10; ++i) QApplication::processEvents();
  }
  frmSetups& Form() { return Find<frmSetups>("frmSetups"); }
  template <typename Control>
  Control& In(const char* name) {
    return *Form().findChild<Control*>(name);
  }
  void Click(const char* button) {
    In<QPushButton>(button).click();
    Settle();
  }
  void SaveAs(const char* name) {
    In<QLineEdit>("txtSetupName").setText(name);
    Click("cmdSave");
  }
  std::string Note() { return In<QLabel>("lblNote").text().toStdString(); }
  std::string State() { return In<QLabel>("lblState").text().toStdString(); }
  TextTableModel& Table() { return In<TextTable>("tblDifference").Model(); }
  std::string Cell(int row, int column) {
    return Table().index(row, column).data().toString().toStdString();
  }
  void Write(std::int16_t row, std::int32_t value) {
    ASSERT_TRUE(core_.registers.Write(row, value));
  }
};

TEST_F(Setups, SavedChangedComparedRestoredAndEqualAgain) {
  Open();
  EXPECT_EQ(State(), "No set-up is chosen.");
  SaveAs("pump");
  EXPECT_EQ(Note(), "Saved as \"pump\".");
  EXPECT_EQ(files_.contents.count("/data/kestrel/setups/pump.setup.json"), 1U);
  EXPECT_EQ(In<QListWidget>("lstSetups").currentItem()->text(), "pump");
  EXPECT_THAT(State(), HasSubstr("Equal: the sensor held all of \"pump\" at "));

  Write(row::FFT_AVG, 31);
  Write(row::REC_CTRL, 0x2030);
  Click("cmdCompare");
  EXPECT_THAT(State(), HasSubstr("2 settings differ from \"pump\", as of "));
  ASSERT_EQ(Table().rowCount(), 2);
  EXPECT_EQ(Cell(0, 0), "FFT_AVG");
  EXPECT_EQ(Cell(0, 1), "8");
  EXPECT_EQ(Cell(0, 2), "31");
  EXPECT_EQ(Cell(1, 2), "2: Flat Top");

  Click("cmdRestore");
  EXPECT_THAT(messages_.questions.back(), HasSubstr("Restoring \"pump\" writes registers"));
  EXPECT_THAT(Note(), HasSubstr("Written and read back: FFT_AVG; REC_CTRL."));
  EXPECT_THAT(State(), HasSubstr("Equal: "));
  EXPECT_EQ(Table().rowCount(), 0);
  EXPECT_EQ(core_.registers.Read(row::REC_CTRL)->raw, 0x1030);
  EXPECT_EQ(Find<QComboBox>("cbxFFTAvgs").currentIndex(), 8) << "the main window shows it too";
}

TEST_F(Setups, NothingIsWrittenReplacedOrDeletedWithoutAYes) {
  Open();
  SaveAs("pump");
  const auto before = files_.contents;
  Write(row::FFT_AVG, 31);
  messages_.goesOn = false;
  SaveAs("pump");
  Click("cmdRestore");
  Click("cmdDelete");
  EXPECT_EQ(messages_.questions.size(), 3U);
  EXPECT_EQ(files_.contents, before);
  EXPECT_EQ(core_.registers.Read(row::FFT_AVG)->raw, 31);
  messages_.goesOn = true;
  Click("cmdDelete");
  EXPECT_EQ(files_.contents.count("/data/kestrel/setups/pump.setup.json"), 0U);
  EXPECT_EQ(In<QListWidget>("lstSetups").count(), 0);
  EXPECT_FALSE(In<QPushButton>("cmdDelete").isEnabled());
}

TEST_F(Setups, BadNamesAreRefusedInTheWindow) {
  Open();
  SaveAs("a/b");
  EXPECT_EQ(Note(), "Not saved: the character / cannot stand in a file name.");
  SaveAs("");
  EXPECT_EQ(Note(), "Not saved: a set-up needs a name.");
  EXPECT_TRUE(In<QLineEdit>("txtSetupName").hasFocus());
}

TEST_F(Setups, FilesGoThereAndBackAndBadOnesAreTold) {
  Open();
  SaveAs("pump");
  Form().Export("/out/handed.json");
  EXPECT_EQ(Note(), "Written: /out/handed.json");
  Click("cmdDelete");
  Form().Import("/out/handed.json");
  EXPECT_EQ(Note(), "Kept as \"pump\".");
  files_.contents["/out/cut.json"] = files_.contents["/out/handed.json"].substr(0, 200);
  Form().Import("/out/cut.json");
  EXPECT_THAT(Note(), HasSubstr("Not imported: /out/cut.json, line 7: the file ends"));
  files_.failure = "No space left on device";
  Form().Export("/out/full.json");
  ASSERT_EQ(messages_.Texts().size(), 1U);
  EXPECT_THAT(messages_.Texts()[0], HasSubstr("/out/full.json: No space left on device"));
}

TEST_F(Setups, ADamagedSetupStandsInTheListAndCannotBeRestored) {
  files_.contents["/data/kestrel/setups/bad.setup.json"] = "{";
  Open();
  In<QListWidget>("lstSetups").setCurrentRow(0);
  EXPECT_THAT(State(), HasSubstr("bad.setup.json, line 1: the file ends in the middle"));
  EXPECT_FALSE(In<QPushButton>("cmdRestore").isEnabled());
  EXPECT_TRUE(In<QPushButton>("cmdDelete").isEnabled());
}

TEST_F(Setups, WhileACaptureIsAwaitedTheSensorIsLeftAlone) {
  Open();
  SaveAs("pump");
  ChooseShortCaptures();
  DuringCapture([&] {
    Click("cmdCompare");
    EXPECT_THAT(Note(), HasSubstr("the sensor is busy with a capture"));
    Click("cmdRestore");
    EXPECT_THAT(Note(), HasSubstr("the sensor is busy with a capture"));
    EXPECT_TRUE(In<QPushButton>("cmdCompare").isEnabled());
  });
  Press("cmdStart");
  EXPECT_EQ(Text("lblRecCount"), "1");
}

TEST_F(Setups, ATransferEndsWithCancelAndWithTheWindow) {
  Open();
  SaveAs("pump");
  Write(row::FFT_AVG, 31);
  QTimer::singleShot(0, &Form(), [this] { In<QPushButton>("cmdCancel").click(); });
  In<QPushButton>("cmdRestore").click();
  EXPECT_THAT(Note(), HasSubstr("Ended before it was complete.\nNothing was written."));
  EXPECT_TRUE(In<QPushButton>("cmdRestore").isEnabled());
  QTimer::singleShot(0, &Form(), [this] { Form().close(); });
  In<QPushButton>("cmdCompare").click();
  EXPECT_FALSE(Form().isVisible());
  EXPECT_TRUE(Window().Edge().Resting());
}

TEST_F(Setups, LostAtAnyTransferItSaysSoAndTheProgramGoesOn) {
  Open();
  usb_.FailFrom(0);
  SaveAs("pump");
  const int requests = usb_.Requests();
  ASSERT_GT(requests, 800);
  const auto saved = files_.contents;
  for (int number = 1; number <= requests; number += 61) {
    SCOPED_TRACE(number);
    for (const char* deed : {"cmdSave", "cmdCompare", "cmdRestore"}) {
      usb_.FailFrom(number);
      Click(deed);
      if (core_.registers.Reachable()) continue;  // it needed fewer
      EXPECT_THAT(Note(), HasSubstr("The sensor was lost."));
      EXPECT_EQ(files_.contents, saved) << "nothing is saved half";
      EXPECT_TRUE(Window().Edge().Resting());
      EXPECT_TRUE(In<QPushButton>(deed).isEnabled());
      EXPECT_TRUE(In<QPushButton>("cmdCancel").isHidden());
      usb_.Mend();
      Find<QPushButton>("cmdLostRetry").click();
      Settle();
      ASSERT_TRUE(core_.registers.Reachable());
    }
    usb_.Mend();
    Click("cmdCompare");
    EXPECT_THAT(State(), HasSubstr("Equal: "));
    files_.contents = saved;
  }
}

TEST_F(Setups, TheKeyboardReachesEverything) {
  Open();
  SaveAs("pump");
  In<QListWidget>("lstSetups").setFocus();
  QSet<QWidget*> reached;
  for (int i = 0; i < 40; ++i) {
    reached.insert(QApplication::focusWidget());
    QTest::keyClick(QApplication::focusWidget(), Qt::Key_Tab);
  }
  for (const char* name :
       {"lstSetups", "txtSetupName", "cmdSave", "cmdCompare", "cmdRestore", "cmdExport",
        "cmdImport", "cmdDelete", "cmdClose", "ckFlash", "ckKeepNulls", "tblDifference"}) {
    EXPECT_TRUE(reached.contains(&In<QWidget>(name))) << name;
  }
  Write(row::FFT_AVG, 31);
  In<QPushButton>("cmdCompare").setFocus();
  QTest::keyClick(&In<QPushButton>("cmdCompare"), Qt::Key_Return);
  EXPECT_EQ(Table().rowCount(), 1);
  EXPECT_TRUE(In<QPushButton>("cmdCompare").hasFocus()) << "where it was before the transfer";
}

TEST_F(Setups, WithoutAFolderTheyAreKeptInFilesOnly) {
  archive_.usual = {};
  Open();
  SaveAs("pump");
  EXPECT_THAT(Note(), HasSubstr("no folder for the user's data is known"));
}

}  // namespace
}  // namespace kestrel
