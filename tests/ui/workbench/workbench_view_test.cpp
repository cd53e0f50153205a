// The workbench: records become sets, sets become thresholds, and counts follow at once.
// SPDX-License-Identifier: MIT
#include <QFileInfo>
#include <QListWidget>
#include <fstream>

#include "archive/place.h"
#include "ui/workbench/workbench_bench.h"

namespace kestrel {
namespace {

using baseline::Alarm;
using baseline::Verdict;
using testing::AllOf;
using testing::HasSubstr;
using testing::StartsWith;

class WorkbenchOfRecords : public WorkbenchBench {
 protected:
  QStringList SetLines() {
    QStringList lines;
    auto& list = In<QListWidget>("lstSets");
    for (int i = 0; i < list.count(); ++i) {
      lines << list.item(i)->data(Qt::AccessibleTextRole).toString();
    }
    return lines;
  }
  void Drag(AlarmLevel level, double toG) {
    const DetailLayout laid = Detail().Laid();
    const double y = laid.shares.center().y();
    const double from = laid.across.ToPixel(*Detail().Scene().proposed[Index(level)]);
    const QPoint begin = QPointF(from, y).toPoint();
    const QPoint end = QPointF(laid.across.ToPixel(toG), y).toPoint();
    QTest::mousePress(&Detail(), Qt::LeftButton, {}, begin);
    QTest::mouseMove(&Detail(), (begin + end) / 2);
    QTest::mouseMove(&Detail(), end);
    QTest::mouseRelease(&Detail(), Qt::LeftButton, {}, end);
  }
  // The bench as the logic alone makes it of the same archive.
  baseline::Workbench Alone() {
    archive::Archive archive = Archived();
    const std::vector<baseline::Part> parts{Tagged(Verdict::Good, "good"),
                                            Tagged(Verdict::Bad, "outer race")};
    baseline::Loaded loaded = Load(archive, SetsOf(archive, parts));
    auto spectra = std::make_shared<const baseline::Spectra>(std::move(loaded.spectra));
    return {std::move(loaded.sets), spectra, baseline::BandsOf(MachineBandTable(), 0)};
  }
};

TEST_F(WorkbenchOfRecords, BeforeRecordsAreChosenItSaysInASentenceHowToBegin) {
  Put(4, 0);
  OpenWorkbench();
  EXPECT_THAT(Label("lblWorkbenchEmpty").toStdString(), HasSubstr("known to be good"));
  EXPECT_TRUE(In<QWidget>("cmdBeginWorkbench").isVisible());
  EXPECT_TRUE(In<QWidget>("cmdBeginWorkbench").isEnabled());
  EXPECT_FALSE(In<QWidget>("cmdTakeOverBands").isEnabled());
  EXPECT_FALSE(In<QWidget>("cmdWriteBands").isEnabled());
}

TEST_F(WorkbenchOfRecords, WithoutAnArchiveItSaysSo) {
  Open();
  Analyser().ChooseView(study::View::AlarmBands);
  EXPECT_THAT(Label("lblWorkbenchEmpty").toStdString(), HasSubstr("--archive"));
  EXPECT_FALSE(In<QWidget>("cmdBeginWorkbench").isEnabled());
}

TEST_F(WorkbenchOfRecords, CountsAreThoseOfTheLogicOverTheSameRecords) {
  OpenFilled();
  const baseline::Workbench alone = Alone();
  ASSERT_EQ(alone.TheSets().good.size(), 64U);
  ASSERT_EQ(alone.TheSets().bad.size(), 12U);
  const baseline::Overall& overall = alone.Everything();
  EXPECT_EQ(Label("lblFalseAlarms").toInt(), overall.falseAlarms.counted);
  EXPECT_EQ(Label("lblFalseAlarms_of"), "of 64");
  EXPECT_EQ(Label("lblMisses").toInt(), overall.misses.counted);
  EXPECT_EQ(Label("lblMisses_of"), "of 12");
  int row = 0;
  int caught = 0;
  for (const baseline::CellPlace& cell : baseline::AllCells()) {
    const baseline::Counts& counts = alone.At(cell).warnings;
    EXPECT_EQ(Cell("tblReplay", row, 2).toInt(), counts.falseAlarms.counted) << row;
    EXPECT_EQ(Cell("tblReplay", row, 4).toInt(), counts.caught.counted) << row;
    caught += counts.caught.counted;
    ++row;
  }
  EXPECT_GT(caught, 5) << "the bad bearing shows";
  const baseline::CellState& state = alone.At({3, Axis::Z});
  EXPECT_EQ(Cell("tblProposal", 0, 4).toInt(), static_cast<int>(state.warning));
  EXPECT_EQ(Cell("tblProposal", 1, 4).toInt(), static_cast<int>(state.fault));
  EXPECT_EQ(Cell("tblProposal", 0, 1), "0.241") << "790 codes of 0 to 20 g";
}

TEST_F(WorkbenchOfRecords, WhatIsLeftOutIsToldWithItsReason) {
  OpenFilled(20, 4, 5);
  const QString lines = SetLines().join("\n");
  EXPECT_THAT(lines.toStdString(), HasSubstr("Known good, 20"));
  EXPECT_THAT(lines.toStdString(), HasSubstr("Known bad, 4"));
  EXPECT_THAT(lines.toStdString(), HasSubstr("Left out, 5"));
  EXPECT_THAT(lines.toStdString(), HasSubstr("0 to 70 g"));
}

TEST_F(WorkbenchOfRecords, TheLibrarysSelectionIsTakenAsGoodAndBad) {
  Put(6, 2);
  OpenWorkbench();
  Analyser().ChooseView(study::View::Library);
  LibraryTable& table = *Analyser().Library().Table();
  ASSERT_TRUE(Gets([&] { return table.model()->rowCount() == 8; }));
  EXPECT_FALSE(In<QAction>("mnuTakeGood").isEnabled()) << "nothing is selected";
  const auto take = [&](int first, int last, const char* entry) {
    QItemSelection rows(table.model()->index(first, 0),
                        table.model()->index(last, LibraryModel::Columns - 1));
    table.selectionModel()->select(rows, QItemSelectionModel::ClearAndSelect);
    In<QAction>(entry).trigger();
  };
  take(0, 1, "mnuTakeBad");
  EXPECT_THAT(Said().toStdString(), HasSubstr("2 records taken as known bad"));
  take(2, 7, "mnuTakeGood");
  ASSERT_TRUE(Read());
  Analyser().ChooseView(study::View::AlarmBands);
  ASSERT_TRUE(Bench().HasGood());
  EXPECT_EQ(Bench().Bench().TheSets().good.size(), 6U);
  EXPECT_EQ(Bench().Bench().TheSets().bad.size(), 2U);
}

TEST_F(WorkbenchOfRecords, TheFormCountsWhatFitsAndTakesIt) {
  Put(8, 3);
  OpenWorkbench();
  Click("cmdBeginWorkbench");
  ASSERT_TRUE(Gets([this] { return Label("lblSetCount").startsWith("11 records"); }));
  auto& form = In<QDialog>("chooseGood");
  form.findChild<QLineEdit*>("txtLibraryTag")->setText("good");
  ASSERT_TRUE(Gets([this] { return Label("lblSetCount").startsWith("8 records"); }));
  form.findChild<QComboBox*>("cbxSetEvery")->setCurrentIndex(4);  // one every 8 h
  form.findChild<QLineEdit*>("txtSetName")->setText("after the overhaul");
  form.findChild<QAbstractButton*>("cmdTakeSet")->click();
  ASSERT_TRUE(Gets([this] { return Bench().HasGood(); }));
  EXPECT_EQ(Bench().Bench().TheSets().good.size(), 2U) << "of 14 hours";
  EXPECT_THAT(SetLines().join("\n").toStdString(), HasSubstr("after the overhaul"));
}

TEST_F(WorkbenchOfRecords, AFilterThatFitsNothingCannotBeTaken) {
  Put(3, 0);
  OpenWorkbench();
  Click("cmdAddBad");
  auto& form = In<QDialog>("chooseBad");
  form.findChild<QLineEdit*>("txtLibraryTag")->setText("no such tag");
  ASSERT_TRUE(Gets([this] { return Label("lblSetCount") == "No record fits."; }));
  EXPECT_FALSE(form.findChild<QAbstractButton*>("cmdTakeSet")->isEnabled());
}

TEST_F(WorkbenchOfRecords, SetsAreTakenOutAgainByDel) {
  OpenFilled(20, 4);
  auto& list = In<QListWidget>("lstSets");
  list.setCurrentRow(3);  // below the heading of the bad ones
  QTest::keyClick(&list, Qt::Key_Delete);
  ASSERT_TRUE(Read());
  EXPECT_EQ(Bench().Bench().TheSets().bad.size(), 0U);
  EXPECT_EQ(Bench().Bench().TheSets().good.size(), 20U);
  EXPECT_EQ(Label("lblMisses_share"), "none chosen");
  EXPECT_EQ(All().size(), 24U) << "the records stay";
}

TEST_F(WorkbenchOfRecords, DraggingTheWarningChangesTheCountsAtOnce) {
  OpenFilled();
  const baseline::Counts before = Counts();
  EXPECT_GT(before.caught.counted, 0);
  const DetailScene& scene = Detail().Scene();
  Drag(AlarmLevel::Warning, scene.across.low * 1.01);
  EXPECT_EQ(Counts().falseAlarms.counted, 64) << "below all good ones";
  EXPECT_EQ(Counts().caught.counted, 12);
  EXPECT_EQ(Label("lblFalseAlarms").toInt(), 64);
  EXPECT_TRUE(Bench().Cell().isMoved);
  EXPECT_TRUE(In<QWidget>("cmdResetThreshold").isEnabled());
  Click("cmdResetThreshold");
  EXPECT_EQ(Counts(), before);
}

TEST_F(WorkbenchOfRecords, AThresholdIsMovedByKeysAsFinelyAsTheSensorHoldsIt) {
  OpenFilled();
  Detail().setFocus();
  const double warning = Bench().Cell().warning;
  const double fault = Bench().Cell().fault;
  QTest::keyClick(&Detail(), Qt::Key_Right, Qt::ControlModifier);
  EXPECT_EQ(Bench().Cell().warning, warning + 1);
  QTest::keyClick(&Detail(), Qt::Key_Left, Qt::ControlModifier);
  EXPECT_EQ(Bench().Cell().warning, warning);
  QTest::keyClick(&Detail(), Qt::Key_Right, Qt::ShiftModifier);
  EXPECT_NEAR(20 * std::log10(Bench().Cell().warning / warning), 1, 0.02);
  QTest::keyClick(&Detail(), Qt::Key_Down);
  EXPECT_EQ(Detail().Chosen(), AlarmLevel::Fault);
  QTest::keyClick(&Detail(), Qt::Key_Left);
  EXPECT_NEAR(20 * std::log10(Bench().Cell().fault / fault), -0.1, 0.02);
  EXPECT_LT(Bench().Cell().fault, fault);
  QTest::keyClick(&Detail(), Qt::Key_Backspace);
  EXPECT_EQ(Bench().Cell().warning, warning);
  EXPECT_EQ(Bench().Cell().fault, fault);
}

TEST_F(WorkbenchOfRecords, EdgesSnapToBinsAndTheLevelsFollow) {
  OpenFilled();
  const double width = BinWidth(0);
  auto& from = In<QDoubleSpinBox>("spnBandFrom");
  auto& to = In<QDoubleSpinBox>("spnBandTo");
  EXPECT_NEAR(from.value(), 40 * width, 0.1);
  EXPECT_NEAR(to.value(), 44 * width, 0.1);
  from.setValue(43.3 * width);
  EXPECT_EQ(Bench().Bench().BandAt(3).lowBin, 43);
  EXPECT_NEAR(from.value(), 43 * width, 0.1);
  EXPECT_EQ(Counts().caught.counted, 0) << "the line of the bearing is no longer in the band";
  from.stepBy(-1);
  EXPECT_EQ(Bench().Bench().BandAt(3).lowBin, 42);
  EXPECT_GT(Counts().caught.counted, 0);
  from.setValue(60 * width);
  EXPECT_EQ(Bench().Bench().BandAt(3).highBin, 60) << "the other edge gives way";
}

TEST_F(WorkbenchOfRecords, TheRuleProposesAnewAndTooFewRecordsAreSaidWithTheNumberMissing) {
  OpenFilled();
  const double warning = Bench().Cell().warning;
  In<QDoubleSpinBox>("spnK").setValue(6);
  EXPECT_GT(Bench().Cell().warning, warning);
  const QString needs = Label("optLimit99_needs");
  EXPECT_THAT(needs.toStdString(), HasSubstr("299"));
  EXPECT_THAT(needs.toStdString(), HasSubstr("235"));
  EXPECT_FALSE(In<QWidget>("optLimit99").isEnabled());
  EXPECT_EQ(In<QWidget>("optLimit99").toolTip(), needs);
  EXPECT_TRUE(In<QWidget>("optLimit95").isEnabled());
  Click("optLimit95");
  EXPECT_EQ(Bench().Choice().rule.kind, baseline::RuleKind::Limit95);
  EXPECT_LE(Counts().falseAlarms.counted, 3);
  EXPECT_FALSE(In<QWidget>("spnK").isEnabled()) << "it is of the other rule";
}

TEST_F(WorkbenchOfRecords, SeveralRecordsCanBeAskedForAndTheSensorsWayIsSaid) {
  OpenFilled();
  EXPECT_THAT(Label("lblSensorJudges").toStdString(), HasSubstr("judges each record alone"));
  EXPECT_FALSE(In<QWidget>("spnHysteresis").isEnabled());
  In<QSpinBox>("spnM").setValue(3);
  EXPECT_EQ(In<QSpinBox>("spnN").value(), 3) << "m is never more than n";
  In<QSpinBox>("spnN").setValue(5);
  EXPECT_TRUE(In<QWidget>("spnHysteresis").isEnabled());
  EXPECT_EQ(Bench().Choice().judgement, (baseline::Judgement{3, 5, 1}));
  baseline::Workbench alone = Alone();
  alone.SetJudgement({3, 5, 1});
  EXPECT_EQ(Bench().Bench().Everything(), alone.Everything());
  EXPECT_THAT(Label("cardReplay_summary").toStdString(), HasSubstr("3 of 5"));
}

TEST_F(WorkbenchOfRecords, ACellIsChosenByMouseAndKeysInTableAndReplay) {
  OpenFilled();
  auto& table = In<DistributionTable>("tblDistributions");
  EXPECT_EQ(table.currentIndex(), table.model()->index(2, 3));
  table.setFocus();
  QTest::keyClick(&table, Qt::Key_Up);
  EXPECT_EQ(Bench().Choice().cell, (baseline::CellPlace{2, Axis::Z}));
  QTest::keyClick(&table, Qt::Key_Left);
  EXPECT_EQ(Bench().Choice().cell, (baseline::CellPlace{2, Axis::Y}));
  EXPECT_EQ(Label("cardDetail_title"), "Band 2");
  const QRect place = table.visualRect(table.model()->index(4, 1));
  QTest::mouseClick(table.viewport(), Qt::LeftButton, {}, place.center());
  EXPECT_EQ(Bench().Choice().cell, (baseline::CellPlace{5, Axis::X}));
  In<QTableView>("tblReplay").setCurrentIndex(Rows("tblReplay").index(0, 0));
  EXPECT_EQ(Bench().Choice().cell, (baseline::CellPlace{1, Axis::X}));
  EXPECT_EQ(table.currentIndex(), table.model()->index(0, 1));
  EXPECT_THAT(table.model()->index(2, 3).data(Qt::AccessibleTextRole).toString().toStdString(),
              HasSubstr("band 3, Z"));
}

TEST_F(WorkbenchOfRecords, TheCurvesFallAndRiseAndHoldTheirBounds) {
  OpenFilled();
  const DetailScene& scene = Detail().Scene();
  ASSERT_GT(scene.falseAlarms.size(), 100U);
  EXPECT_EQ(scene.falseAlarms.front().share, 1);
  EXPECT_EQ(scene.falseAlarms.back().share, 0);
  EXPECT_EQ(scene.misses.front().share, 0);
  EXPECT_EQ(scene.misses.back().share, 1);
  for (const auto* curve : {&scene.falseAlarms, &scene.misses}) {
    for (const DetailScene::Share& each : *curve) {
      EXPECT_LE(each.low, each.share);
      EXPECT_GE(each.high, each.share);
    }
  }
  EXPECT_EQ(scene.bad.size(), 12U);
  In<QAbstractButton>("cmdShowBad").click();
  EXPECT_TRUE(Detail().Scene().misses.empty());
  In<QAbstractButton>("cmdInDb").click();
  EXPECT_TRUE(Detail().Scene().decibelsRe);
}

TEST_F(WorkbenchOfRecords, WithoutKnownBandsUsualOnesStandInAndThatIsSaid) {
  Put(10, 0);
  StartKeeping();
  Trigger("mnuAnalyser");
  Analyser().ChooseView(study::View::AlarmBands);
  Bench().AddPart(Tagged(Verdict::Good, "good"));
  ASSERT_TRUE(Read());
  EXPECT_FALSE(Bench().KnowsBands());
  EXPECT_TRUE(Bench().Bench().BandAt(1).IsUsed());
  EXPECT_TRUE(In<QWidget>("workbenchNotices").isVisible());
  EXPECT_EQ(Cell("tblProposal", 0, 1), QString::fromUtf8("–")) << "nothing is set now";
}

TEST_F(WorkbenchOfRecords, SetsAndRuleAreThereAgainAfterARestart) {
  OpenFilled(20, 4);
  In<QDoubleSpinBox>("spnK").setValue(4);
  windows_.reset();
  OpenWorkbench();
  ASSERT_TRUE(Gets([this] { return Bench().HasGood(); }));
  EXPECT_EQ(Bench().Bench().TheSets().good.size(), 20U);
  EXPECT_EQ(Bench().Bench().TheSets().bad.size(), 4U);
  EXPECT_EQ(In<QDoubleSpinBox>("spnK").value(), 4);
}

TEST_F(WorkbenchOfRecords, ReadingCanBeCancelledAndTheWindowClosedMeanwhile) {
  Put(400, 0);
  OpenWorkbench();
  Bench().AddPart(Tagged(Verdict::Good, "good"));
  EXPECT_TRUE(In<QWidget>("cmdCancelReading").isVisible());
  Click("cmdCancelReading");
  EXPECT_FALSE(Bench().IsReading());
  EXPECT_FALSE(In<QWidget>("cmdCancelReading").isVisible());
  Settle();
  EXPECT_FALSE(Bench().HasGood());
  Click("cmdReadAgain");
  windows_.reset();  // while it reads
  OpenWorkbench();
  EXPECT_TRUE(Gets([this] { return Bench().HasGood(); }));
}

TEST_F(WorkbenchOfRecords, ADamagedArchiveIsTold) {
  const std::string file = (folder_.path() / "damaged.db").string();
  std::ofstream(file) << "this is not a database, and never was one; it is long enough to be read";
  StartKeeping(file);
  Trigger("mnuAnalyser");
  Analyser().ChooseView(study::View::AlarmBands);
  Bench().AddPart(Tagged(Verdict::Good, "good"));
  ASSERT_TRUE(Gets([this] { return !Bench().Trouble().isEmpty(); }));
  EXPECT_THAT(Bench().Trouble().toStdString(), HasSubstr("damaged.db"));
  EXPECT_TRUE(In<QWidget>("workbenchNotices").isVisible());
  EXPECT_THAT(Label("lblWorkbenchEmpty").toStdString(), HasSubstr("cannot be read now"));
}

TEST_F(WorkbenchOfRecords, TheEvidenceGoesIntoAFileOrItIsSaidWhyNot) {
  OpenFilled();
  EXPECT_TRUE(View().WriteEvidence("/evidence.txt"));
  EXPECT_THAT(files_.contents["/evidence.txt"], HasSubstr("64"));
  EXPECT_TRUE(View().WriteEvidence("/evidence.csv"));
  EXPECT_THAT(files_.contents["/evidence.csv"], HasSubstr("\r\n"));
  EXPECT_TRUE(View().WriteEvidence("/evidence.pdf"));
  EXPECT_THAT(files_.contents["/evidence.pdf"], AllOf(StartsWith("%PDF-"), HasSubstr("%%EOF")));
  files_.failure = "No space left on device";
  EXPECT_FALSE(View().WriteEvidence("/other.txt"));
  EXPECT_THAT(Label("lblProposalSaid").toStdString(), HasSubstr("No space left"));
}

}  // namespace
}  // namespace kestrel
