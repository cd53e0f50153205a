// Tests of the monitor's view in the real windows, over a process that the test plays.
// SPDX-License-Identifier: MIT
#include "ui/watch/monitor_view.h"

#include "ui/watch/watch_bench.h"

namespace kestrel {
namespace {

class MonitorViewTest : public WatchBench {
 protected:
  QString Button() { return In<QToolButton>("cmdCapture").text(); }
};

TEST_F(MonitorViewTest, IsTheEighthViewAndSaysAtFirstWhatToDo) {
  StartWatching();
  Trigger("mnuAnalyser");
  WindowKey(Qt::Key_8, Qt::ControlModifier);
  EXPECT_EQ(Choice().view, study::View::Monitor);
  EXPECT_TRUE(In<QLabel>("lblNoPlan").isVisible());
  EXPECT_TRUE(In<QToolButton>("cmdFirstPlan").isVisible());
  EXPECT_EQ(Button(), "Start monitoring");
  EXPECT_FALSE(In<QToolButton>("cmdCapture").isEnabled());
  Analyser().ChooseView(study::View::Spectrum);
  EXPECT_EQ(Button(), "Capture");
  EXPECT_TRUE(In<QToolButton>("cmdCapture").isEnabled());
}

TEST_F(MonitorViewTest, ANewPlanCapturesAsTheSensorIsSetNow) {
  StartWatching(database_.Name(), {.scenario = "bearing-fault"});
  Choose("cbxFFTAvgs", 4);
  NewPlan();
  const auto& plan = Analyser().Monitor().Plan().Plan();
  ASSERT_TRUE(plan);
  EXPECT_EQ(plan->bench, "bench 1");
  EXPECT_TRUE(plan->road.simulated);
  EXPECT_EQ(plan->road.scenario, "bearing-fault");
  ASSERT_EQ(plan->steps.size(), 1U);
  EXPECT_EQ(plan->steps[0].averages, 4);
  EXPECT_EQ(plan->steps[0].option, gRecCtrl->SampleRate());
  EXPECT_EQ(plan->steps[0].range, gRecCtrl->RangeFS());
}

TEST_F(MonitorViewTest, ThePlanIsSavedBeforeItIsStarted) {
  StartWatching();
  BeginMonitoring();
  ASSERT_TRUE(files_.contents.contains("/program/sensor.plan"));
  const auto text = files_.contents["/program/sensor.plan"];
  EXPECT_TRUE(std::holds_alternative<monitor::Plan>(monitor::PlanOf(text)));
  EXPECT_TRUE(fake_.arguments.contains("/program/sensor.plan"));
  EXPECT_TRUE(fake_.arguments.contains(QString::fromStdString(database_.Name())));
  EXPECT_TRUE(In<QPlainTextEdit>("txtPlan").isReadOnly());
}

TEST_F(MonitorViewTest, AnotherNewPlanGetsAFileOfItsOwn) {
  StartWatching();
  files_.contents["/program/sensor.plan"] = "mine";
  NewPlan();
  Click("cmdPlanSave");
  EXPECT_EQ(files_.contents["/program/sensor.plan"], "mine");
  EXPECT_TRUE(files_.contents.contains("/program/sensor_2.plan"));
}

TEST_F(MonitorViewTest, APlanWithMistakesIsNotStarted) {
  StartWatching();
  NewPlan();
  auto& text = In<QPlainTextEdit>("txtPlan");
  text.setPlainText(text.toPlainText().replace("every = ", "every = x"));
  Click("cmdCapture");
  EXPECT_EQ(fake_.begun, 0);
  EXPECT_NE(Notices().find("The plan has a mistake."), std::string::npos) << Notices();
  EXPECT_FALSE(files_.contents.contains("/program/sensor.plan"));
  EXPECT_TRUE(NoBoxes());
}

TEST_F(MonitorViewTest, ShowsHowTheMonitorStands) {
  StartWatching();
  BeginMonitoring();
  EXPECT_EQ(Figure("State"), "Starting");
  EXPECT_EQ(Button(), "Stop");
  fake_.Tell({.doing = monitor::Account::Doing::Capturing,
              .isConnected = true,
              .nextIn = 59.0,
              .lastRecord = std::chrono::system_clock::now(),
              .records = 1234,
              .missed = 3,
              .incidents = {Lasting("archive away", "The archive is away.")},
              .alarms = {Lasting("alarm", "Fault 3, Z"), Lasting("alarm", "Warning 3, Z")}});
  EXPECT_EQ(Figure("State"), "Capturing");
  EXPECT_EQ(Figure("Records"), "1,234");
  EXPECT_EQ(Figure("Missed"), "3");
  EXPECT_EQ(Figure("Alarms"), "2");
  EXPECT_EQ(Figure("Incidents"), "1");
  EXPECT_NE(Figure("Next"), "–");
  EXPECT_EQ(Rows("tblIncidents").rowCount(), 3);
  EXPECT_EQ(Cell("tblIncidents", 0, 1), "open");
}

TEST_F(MonitorViewTest, ListsTheJournalBesideWhatLasts) {
  auto archive = Archived();
  const auto now = std::chrono::system_clock::now();
  archive::JournalEntry over = Lasting("sensor away", "Unplugged.", now - std::chrono::hours(2));
  over.bench = "bench 1";
  over.sensor = "sensor";
  over.ended = over.began + std::chrono::minutes(3);
  over.missed = 18;
  archive::JournalEntry other = over;
  other.uid = archive::NewUid();
  other.sensor = "another";
  PutEntries(archive, std::vector{over, other});
  StartWatching();
  BeginMonitoring();
  fake_.Tell({.incidents = {Lasting("broker away", "No broker.", now)}});
  ASSERT_TRUE(Gets([&] { return Rows("tblIncidents").rowCount() == 2; }));
  EXPECT_EQ(Cell("tblIncidents", 0, 2), "broker away");
  EXPECT_EQ(Cell("tblIncidents", 1, 1), "3 min");
  EXPECT_EQ(Cell("tblIncidents", 1, 3), "18");
}

TEST_F(MonitorViewTest, FollowsTheLevelOfThePlansRecords) {
  StartWatching();
  BeginMonitoring();
  MonitorTrend& trend = Analyser().Monitor().Trend();
  ASSERT_TRUE(Gets([&] { return trend.Plot().Scene().hint.find("No record") == 0; }))
      << trend.Plot().Scene().hint;
  Keeper().SetSite({.machine = "sensor"});
  fake_.Tell({.records = 0});
  const auto now = std::chrono::system_clock::now();
  archive::NewRecord record{
      archive::NewUid(), core_.record.Get(), {.machine = "sensor"}, "0.1.0", "bench 1"};
  record.record.kind = RecordKind::Spectrum;
  record.record.time = now;
  Archived().KeepAll(std::vector{record});
  fake_.Tell({.records = 1});
  EXPECT_TRUE(Gets([&] { return trend.Data().Shown().size() == 1; }));
}

TEST_F(MonitorViewTest, StopsInOrderAndCanBeStartedAgain) {
  StartWatching();
  BeginMonitoring();
  fake_.Tell({.records = 5});
  Click("cmdCapture");
  EXPECT_EQ(fake_.askedToEnd, 1);
  EXPECT_EQ(Button(), "Ending");
  EXPECT_FALSE(In<QToolButton>("cmdCapture").isEnabled());
  fake_.End();
  EXPECT_EQ(Button(), "Start monitoring");
  EXPECT_EQ(Figure("State"), "Stopped");
  EXPECT_EQ(Figure("Records"), "5");
  EXPECT_FALSE(In<QPlainTextEdit>("txtPlan").isReadOnly());
  WindowKey(Qt::Key_F5);
  EXPECT_EQ(fake_.begun, 2);
  EXPECT_TRUE(NoBoxes());
}

TEST_F(MonitorViewTest, AnEndByItselfIsSaidWithTheLastWordsAndToldToTheDesktop) {
  StartWatching();
  BeginMonitoring();
  fake_.hears.complaint("The disk burns.");
  fake_.End({.code = 1});
  EXPECT_NE(Notices().find("Its last words: The disk burns."), std::string::npos) << Notices();
  EXPECT_EQ(Figure("State"), "Broke off");
  ASSERT_EQ(notifier_.told.size(), 1U);
  EXPECT_TRUE(NoBoxes());
  Click("cmdCapture");
  QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
  Settle();
  EXPECT_EQ(Notices().find("last words"), std::string::npos);
}

TEST_F(MonitorViewTest, SaysWhereThereIsNoProgramOrNoArchive) {
  StartWatching("");
  NewPlan();
  Click("cmdCapture");
  EXPECT_NE(Notices().find("There is no archive for the records"), std::string::npos) << Notices();
  auto& text = In<QPlainTextEdit>("txtPlan");
  text.setPlainText("archive = /data/mine.db\n" + text.toPlainText());
  fake_.isMissing = true;
  Click("cmdCapture");
  EXPECT_NE(Notices().find("The program kestrel-cli"), std::string::npos) << Notices();
  fake_.isMissing = false;
  Click("cmdCapture");
  EXPECT_EQ(fake_.begun, 1);
  EXPECT_TRUE(NoBoxes());
}

TEST_F(MonitorViewTest, ThePlanOfLastTimeIsThereAgain) {
  StartWatching();
  NewPlan();
  Click("cmdPlanSave");
  const std::string text = files_.contents["/program/sensor.plan"];
  windows_.reset();
  StartWatching();
  OpenMonitor();
  EXPECT_EQ(Analyser().Monitor().Plan().Text().toStdString(), text);
  EXPECT_TRUE(Analyser().Monitor().Plan().IsSaved());
}

TEST_F(MonitorViewTest, AFileThatCannotBeReadOrWrittenIsSaid) {
  StartWatching();
  OpenMonitor().Open("/nothing.plan");
  EXPECT_NE(Notices().find("/nothing.plan cannot be read"), std::string::npos) << Notices();
  Click("cmdFirstPlan");
  files_.failure = "no room";
  Click("cmdPlanSave");
  EXPECT_NE(Notices().find("no room"), std::string::npos) << Notices();
  EXPECT_FALSE(Analyser().Monitor().Plan().IsSaved());
  EXPECT_TRUE(NoBoxes());
}

TEST_F(MonitorViewTest, FilesAreAskedForWithoutKeepingTheProgram) {
  StartWatching();
  NewPlan();
  for (const char* button : {"cmdPlanOpen", "cmdPlanSaveAs"}) {
    Click(button);
    EXPECT_EQ(QApplication::activeModalWidget(), nullptr) << button;
  }
}

}  // namespace
}  // namespace kestrel
