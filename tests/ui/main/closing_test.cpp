// Closing the program while bands are neither in the sensor nor in a file.
// SPDX-License-Identifier: MIT
// Closing the program while alarm bands are neither in the sensor nor in a file.

#include <gmock/gmock.h>

#include "alarms/alarm_file.h"
#include "alarms/band_table.h"
#include "ui/bands/band_grid.h"
#include "ui/window_bench.h"

namespace kestrel {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

const std::filesystem::path kDefault = "/program/AlarmSpectrum_Default.csv";

class Closing : public WindowBench {
 protected:
  void OpenEditor() {
    Start();
    Trigger("mnuAlarmSpectrum");
    for (int i = 0; i < 5; ++i) QApplication::processEvents();
  }
  // F-low of band 1.
  void Edit(const char* text) {
    auto& grid = Find<BandGrid>("grdBands");
    grid.setFocus();
    grid.Select({{1, 1}, {1, 1}});
    auto& editor = Find<QDialog>("frmAlarmSpectrum");
    for (; *text != '\0'; ++text) QTest::keyClick(editor.focusWidget(), *text);
    QTest::keyClick(editor.focusWidget(), Qt::Key_Return);
    QApplication::processEvents();
  }
};

TEST_F(Closing, NothingIsAskedWhereNothingWasEdited) {
  OpenEditor();
  EXPECT_TRUE(Window().close());
  EXPECT_THAT(messages_.questions, IsEmpty());
}

TEST_F(Closing, EditedBandsAreAskedAboutAndDiscardedWhenToldSo) {
  OpenEditor();
  Edit("12");
  ASSERT_EQ(AlarmBandTable(kFLowField, 1, 0), 12);
  EXPECT_TRUE(Window().close());
  EXPECT_THAT(messages_.questions,
              ElementsAre("The alarm bands were changed, and are neither in the sensor nor in a "
                          "file.\n\nSave them as /program/AlarmSpectrum_Default.csv before "
                          "closing?"));
  EXPECT_FALSE(files_.contents.contains(kDefault));
}

TEST_F(Closing, SavingWritesTheFileThatTheQuestionNames) {
  OpenEditor();
  Edit("12");
  messages_.answer = Unsaved::Save;
  EXPECT_TRUE(Window().close());
  EXPECT_EQ(files_.contents.at(kDefault), AlarmFileText(AlarmBandTable));
}

TEST_F(Closing, CancelKeepsTheProgramAndTheBands) {
  OpenEditor();
  Edit("12");
  messages_.answer = Unsaved::Cancel;
  EXPECT_FALSE(Window().close());
  EXPECT_TRUE(Window().isVisible());
  EXPECT_EQ(AlarmBandTable(kFLowField, 1, 0), 12);
}

TEST_F(Closing, AFileThatCannotBeWrittenKeepsTheProgram) {
  OpenEditor();
  Edit("12");
  messages_.answer = Unsaved::Save;
  files_.failure = "the disk is full";
  EXPECT_FALSE(Window().close());
  EXPECT_THAT(messages_.Texts(), ElementsAre(kDefault.string() + ": the disk is full"));
}

TEST_F(Closing, BandsInTheSensorOrInAFileAreSafe) {
  OpenEditor();
  Edit("12");
  Press("cmdWriteAll");
  EXPECT_TRUE(Window().close());
  Edit("13");
  Find<QComboBox>("cbxAfiles").setEditText("AlarmSpectrum_pump.csv");
  Press("cmdWriteFile");
  EXPECT_TRUE(Window().close());
  EXPECT_THAT(messages_.questions, IsEmpty());
}

TEST_F(Closing, BandsOfAnEditorThatIsClosedAreAskedAboutToo) {
  OpenEditor();
  Edit("12");
  Press("cmdClose");
  Find<QDialog>("frmAlarmSpectrum").close();
  EXPECT_TRUE(Window().close());
  EXPECT_EQ(messages_.questions.size(), 1U);
}

TEST_F(Closing, ACaptureThatIsWaitedForGoesOnWhenClosingIsCancelled) {
  OpenEditor();
  Edit("12");
  messages_.answer = Unsaved::Cancel;
  bool closed = true;
  During(20, [&] { closed = Window().close(); });
  Press("cmdStart");
  EXPECT_FALSE(closed);
  EXPECT_NE(BoxText("txtPK_1"), "0.000");
}

}  // namespace
}  // namespace kestrel
