// Captures repeated from the main window's menu.
// SPDX-License-Identifier: MIT

#include <QMessageBox>
#include <QProgressBar>

#include "logging/data_log.h"
#include "ui/main/repeat_bench.h"

namespace kestrel {
namespace {

class RepeatedCaptures : public RepeatBench {};

TEST_F(RepeatedCaptures, RunOneAfterTheOtherAsOftenAsWanted) {
  BeginAtOnce("3");
  EXPECT_TRUE(Ends());
  EXPECT_EQ(Text("lblRecCount"), "3");
  EXPECT_EQ(starts.size(), 3U);
  EXPECT_EQ(State(), "3 of 3 captures done, complete");
  EXPECT_EQ(Text("lblRepeat"), "Repeat: 3 of 3 captures done, complete");
  EXPECT_EQ(Find<QProgressBar>("prgRepeat").value(), 3);
  EXPECT_EQ(Find<QPushButton>("cmdStart").text(), "Start");
  EXPECT_TRUE(messages_.Texts().empty());
}

// Nobody may be there to answer.
TEST_F(RepeatedCaptures, LeaveFilesOfEarlierDaysAloneWithoutAsking) {
  Find<QCheckBox>("ckDataLog").click();
  files_.contents["/program/pump_2.csv"] = "earlier";
  NameDataLog("pump");
  BeginAtOnce("3");
  EXPECT_TRUE(Ends());
  EXPECT_TRUE(messages_.questions.empty());
  EXPECT_EQ(files_.contents["/program/pump_2.csv"], "earlier");
  for (const char* file : {"/program/pump_1.csv", "/program/pump_3.csv", "/program/pump_4.csv"}) {
    EXPECT_EQ(files_.contents.count(file), 1U) << file;
  }
}

TEST_F(RepeatedCaptures, BeginAtTheirTimesAndNeverBefore) {
  Type("txtSeconds", "4");
  Type("txtTimes", "3");
  Press("cmdRepeatStart");
  EXPECT_TRUE(Ends());
  ASSERT_EQ(starts.size(), 3U);
  const std::chrono::seconds period{4};
  // The first began a little after the start from which the times are counted.
  EXPECT_GE(starts[1] - starts[0], period - std::chrono::seconds{1});
  EXPECT_EQ((starts[2] - starts[0] + std::chrono::seconds{1}) / period, 2 + Progress().missed);
}

TEST_F(RepeatedCaptures, AreLoggedLikeThoseOfStart) {
  Find<QCheckBox>("ckDataLog").click();
  BeginAtOnce("2");
  EXPECT_TRUE(Ends());
  EXPECT_EQ(files_.contents.count("/program/Datalog_1.csv"), 1U);
  EXPECT_EQ(files_.contents.count("/program/Datalog_2.csv"), 1U);
  EXPECT_EQ(files_.contents.count("/program/Datalog_3.csv"), 0U);
}

TEST_F(RepeatedCaptures, LeaveTheWindowsUsableInBetween) {
  BeginEvery("60");
  ASSERT_TRUE(Reaches(1));
  Trigger("mnuRecInfo");
  EXPECT_TRUE(Find<QDialog>("frmRecInfo").isVisible());
  Press("CmdReadStatus");
  Press("cmdReadBuffer");
  EXPECT_TRUE(Runner().Running());
  EXPECT_EQ(starts.size(), 1U);
}

TEST_F(RepeatedCaptures, TellTheTimeToTheNext) {
  BeginEvery("3600");
  ASSERT_TRUE(Reaches(1));
  EXPECT_TRUE(
      QTest::qWaitFor([this] { return State().startsWith("1 capture done, the next in "); }));
  EXPECT_TRUE(State().contains("59 min") || State().contains("1 h 00 min"))
      << State().toStdString();
}

TEST_F(RepeatedCaptures, AreStoppedInTheFormBetweenTwo) {
  BeginEvery("3600");
  ASSERT_TRUE(Reaches(1));
  ASSERT_TRUE(QTest::qWaitFor([this] { return Progress().state == RepeatState::Waiting; }));
  Press("cmdRepeatStop");
  EXPECT_FALSE(Runner().Running());
  EXPECT_EQ(State(), "1 capture done, stopped");
  EXPECT_TRUE(Find<QPushButton>("cmdRepeatStart").isEnabled());
}

TEST_F(RepeatedCaptures, StoppedDuringOneCompleteIt) {
  AtCapture([this] { Press("cmdRepeatStop"); });
  BeginAtOnce("5");
  EXPECT_TRUE(Ends());
  EXPECT_EQ(Text("lblRecCount"), "1");
  EXPECT_EQ(State(), "1 of 5 captures done, stopped");
}

TEST_F(RepeatedCaptures, EndWhenTheMainWindowsStopIsPressed) {
  Choose("cbxFFTAvgs", 200);
  AtCapture([this] { Press("cmdStart"); });
  BeginAtOnce("5");
  EXPECT_TRUE(Ends());
  EXPECT_EQ(starts.size(), 1U);
  EXPECT_EQ(State(), "0 of 5 captures done, the last capture was stopped");
}

TEST_F(RepeatedCaptures, EndWithEscapeDuringACapture) {
  Choose("cbxFFTAvgs", 200);
  AtCapture([this] { QTest::keyClick(&Find<QCheckBox>("ckAutoPlot"), Qt::Key_Escape); });
  BeginAtOnce("5");
  EXPECT_TRUE(Ends());
  EXPECT_EQ(starts.size(), 1U);
}

TEST_F(RepeatedCaptures, EndWithEscapeBetweenTwo) {
  BeginEvery("3600");
  ASSERT_TRUE(Reaches(1));
  ASSERT_TRUE(QTest::qWaitFor([this] { return Progress().state == RepeatState::Waiting; }));
  QTest::keyClick(&Find<QCheckBox>("ckAutoPlot"), Qt::Key_Escape);
  EXPECT_FALSE(Runner().Running());
}

TEST_F(RepeatedCaptures, AreStoppedFromTheMenu) {
  EXPECT_FALSE(Find<QAction>("mnuRepeatStop").isEnabled());
  BeginEvery("3600");
  EXPECT_TRUE(Find<QAction>("mnuRepeatStop").isEnabled());
  ASSERT_TRUE(Reaches(1));
  Trigger("mnuRepeatStop");
  EXPECT_TRUE(Ends());
  EXPECT_FALSE(Find<QAction>("mnuRepeatStop").isEnabled());
}

TEST_F(RepeatedCaptures, GoOnWhenTheFormIsClosed) {
  BeginAtOnce("4");
  Find<QDialog>("frmRepeat").close();
  EXPECT_TRUE(Ends());
  EXPECT_EQ(Progress().done, 4);
  Trigger("mnuRepeat");
  EXPECT_EQ(State(), "4 of 4 captures done, complete");
}

TEST_F(RepeatedCaptures, BeginNothingWhileAQuestionIsOpen) {
  BeginEvery("1");
  ASSERT_TRUE(Reaches(1));
  QMessageBox box(QMessageBox::Question, "?", "?", QMessageBox::Yes, &Window());
  box.open();
  ASSERT_TRUE(Pauses());
  EXPECT_EQ(Progress().reason, "A question or message is open.");
  const std::size_t before = starts.size();
  QTest::qWait(500);
  EXPECT_EQ(starts.size(), before);
  box.accept();
  EXPECT_TRUE(QTest::qWaitFor([&] { return starts.size() > before; }));
  EXPECT_GT(Progress().missed, 0);
}

TEST_F(RepeatedCaptures, BeginNothingWhileAMessageOfAHandlerIsShown) {
  BeginEvery("1");
  ASSERT_TRUE(Reaches(1));
  ASSERT_TRUE(QTest::qWaitFor([this] { return Progress().state == RepeatState::Waiting; }));
  std::size_t before = 0;
  messages_.WhileShown([&] {
    before = starts.size();
    QTest::qWait(500);
    EXPECT_EQ(starts.size(), before);
  });
  Window().Edge().Run("test", [this] { messages_.Show("something"); });
  EXPECT_TRUE(QTest::qWaitFor([&] { return starts.size() > before; }));
}

TEST_F(RepeatedCaptures, AFailureThatIsNotTheSensorsEndsThemAndIsShownOnce) {
  Find<QCheckBox>("ckDataLog").click();
  files_.failure = "the disk is full";
  BeginAtOnce("5");
  EXPECT_TRUE(Ends());
  EXPECT_EQ(starts.size(), 1U);
  ASSERT_EQ(messages_.Texts().size(), 1U);
  EXPECT_TRUE(Progress().reason.find("the disk is full") != std::string::npos) << Progress().reason;
  EXPECT_EQ(Progress().done, 0);
}

TEST_F(RepeatedCaptures, AreRefusedWhereTextsMakeNoSense) {
  Type("txtSeconds", "2,5");
  Press("cmdRepeatStart");
  EXPECT_EQ(State(),
            "\"2,5\" is not a number of seconds. Type digits, with a point as decimal mark: 2.5");
  EXPECT_FALSE(Runner().Running());
  Type("txtSeconds", "5");
  Type("txtTimes", "0");
  Press("cmdRepeatStart");
  EXPECT_TRUE(State().startsWith("\"0\" captures are too few. "));
  EXPECT_EQ(starts.size(), 0U);
}

TEST_F(RepeatedCaptures, AreRefusedWithoutASensor) {
  hardware_.Adapter().Unplug(0);
  ASSERT_TRUE(QTest::qWaitFor([this] { return Find<QFrame>("lostNotice").isVisible(); }));
  BeginAtOnce("5");
  EXPECT_FALSE(Runner().Running());
  EXPECT_TRUE(State().startsWith("The sensor cannot be reached."));
  EXPECT_TRUE(messages_.Texts().empty());
}

TEST_F(RepeatedCaptures, AreRefusedWhereTheModeIsAnother) {
  Find<QRadioButton>("optFollow").click();
  Press("cmdRepeatStart");
  EXPECT_TRUE(State().startsWith("The sensor is not in timer mode."));
  Choose("cbxRecMode", 1);
  BeginAtOnce("5");
  EXPECT_TRUE(State().startsWith("The sensor is in timer mode and captures by itself."));
  EXPECT_EQ(starts.size(), 0U);
}

TEST_F(RepeatedCaptures, EndWithTheMainWindowBetweenTwo) {
  BeginEvery("1");
  ASSERT_TRUE(Reaches(1));
  EXPECT_TRUE(Window().close());
  const std::size_t before = starts.size();
  QTest::qWait(500);
  EXPECT_EQ(starts.size(), before);
  windows_.reset();
}

TEST_F(RepeatedCaptures, EndWithTheMainWindowDuringOne) {
  Choose("cbxFFTAvgs", 100);
  bool closed = false;
  AtCapture([&] { closed = Window().close(); });
  BeginAtOnce("5");
  ASSERT_TRUE(QTest::qWaitFor([&] { return closed; }));
  QTest::qWait(200);
  EXPECT_EQ(starts.size(), 1U);
  windows_.reset();
  EXPECT_TRUE(messages_.Texts().empty());
}

}  // namespace
}  // namespace kestrel
