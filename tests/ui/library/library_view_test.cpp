// The library: records of the archive found, looked at, remarked upon, deleted and brought back.
// SPDX-License-Identifier: MIT
#include <QMessageBox>
#include <QScrollBar>
#include <QTableView>

#include "numeric/number_texts.h"
#include "ui/library/library_bench.h"
#include "ui/made_up_records.h"

namespace kestrel {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::SizeIs;

class LibraryOfRecords : public LibraryBench {
 protected:
  // Spectra a minute apart, of two machines in turn; the latest has the largest number.
  void Put(int count, int from = 0) {
    std::vector<archive::NewRecord> records;
    for (int i = from; i < from + count; ++i) {
      records.push_back({archive::NewUid(),
                         MadeUpSpectrum(60 * i, {{42, 700}}, i % 4),
                         {.machine = i % 2 == 0 ? "Pump" : "Fan", .note = "n" + std::to_string(i)},
                         "0.1.0",
                         "bench 1"});
      records.back().record.settings = SettingsFromWords((i % 4) << 14 | 1 << 12 | 2 << 10 | 8, 0);
      if (i % 5 == 0) records.back().record.alarms.axes[2].status = 1;
    }
    Archived().KeepAll(records);
  }
  frmAnalyser& OpenLibrary(int rows) {
    StartKeeping();
    Trigger("mnuAnalyser");
    Analyser().ChooseView(study::View::Library);
    EXPECT_TRUE(Gets([&] { return Table().model()->rowCount() == rows; }))
        << Table().model()->rowCount();
    ReadAll();
    return Analyser();
  }
  // Until what is seen has been read.
  void ReadAll() {
    EXPECT_TRUE(Gets([this] {
      Table().viewport()->repaint();
      if (Table().rowAt(1) < 0) return Table().model()->rowCount() == 0;
      const int seen = Table().rowAt(Table().viewport()->height() - 2);
      const int last = seen < 0 ? Table().model()->rowCount() - 1 : seen;
      for (int row = Table().rowAt(1); row <= last; ++row) {
        if (CellOf(row, LibraryModel::Time) == "…") return false;
      }
      return true;
    }));
  }
  LibraryTable& Table() { return *Analyser().Library().Table(); }
  QString CellOf(int row, int column) {
    return Table().model()->index(row, column).data().toString();
  }
  void Choose(std::initializer_list<int> rows) {
    QItemSelection selection;
    for (const int row : rows) {
      selection.select(Table().model()->index(row, 0),
                       Table().model()->index(row, LibraryModel::Columns - 1));
    }
    Table().selectionModel()->select(selection, QItemSelectionModel::ClearAndSelect);
  }
  void Write(const char* field, const QString& text) {
    auto& edit = In<QLineEdit>(field);
    edit.selectAll();
    edit.insert(text);
    emit edit.textEdited(text);
    emit edit.returnPressed();
  }
  std::vector<std::string> Machines() {
    std::vector<std::string> all;
    for (const auto& record : All()) all.push_back(record.remarks.machine);
    return all;
  }
  bool Shows(int rows) {
    return Gets([&] { return Table().model()->rowCount() == rows; });
  }
  void AcceptDeletion() {
    ASSERT_TRUE(
        Gets([this] { return Analyser().findChild<QMessageBox*>("askDelete") != nullptr; }));
    auto& box = In<QMessageBox>("askDelete");
    box.defaultButton()->click();
  }
};

TEST_F(LibraryOfRecords, ListsTheLatestFirstWithWhatIsKnownOfThem) {
  Put(6);
  OpenLibrary(6);
  EXPECT_EQ(CellOf(0, LibraryModel::Machine), "Fan");
  EXPECT_EQ(CellOf(0, LibraryModel::Note), "n5");
  EXPECT_THAT(CellOf(0, LibraryModel::Kind).toStdString(),
              HasSubstr("Spectrum, 20 g, option 1, 8 avg"));
  EXPECT_EQ(CellOf(0, LibraryModel::Alarm), "alarm");
  EXPECT_EQ(CellOf(1, LibraryModel::Alarm), "");
  const auto all = All();
  EXPECT_EQ(CellOf(0, LibraryModel::Z),
            QString::fromStdString(analysis::SignificantText(all[0].levels[2]->rmsG)));
  EXPECT_THAT(
      Table().model()->index(0, LibraryModel::Time).data(Qt::ToolTipRole).toString().toStdString(),
      HasSubstr("UTC"));
  EXPECT_TRUE(Gets([this] {
    return !Table().model()->index(0, 0).data(LibraryModel::Sketch).value<QList<double>>().empty();
  }));
}

TEST_F(LibraryOfRecords, AnEmptyArchiveSaysWhatWillBeThere) {
  OpenLibrary(0);
  EXPECT_TRUE(Gets([this] { return In<QLabel>("lblLibraryCounts").text() == "0 records"; }));
}

TEST_F(LibraryOfRecords, WithoutAnArchiveItSaysSo) {
  Open();
  Analyser().ChooseView(study::View::Library);
  EXPECT_THAT(In<QLabel>("lblNoArchive").text().toStdString(), HasSubstr("--archive"));
  EXPECT_TRUE(In<QLabel>("lblNoArchive").isVisible());
}

TEST_F(LibraryOfRecords, ANewRecordAppearsAtTheTopAndSelectionAndPlaceStay) {
  Put(200);
  OpenLibrary(200);
  Table().verticalScrollBar()->setValue(1000);
  const int top = Table().rowAt(1);
  const ArchiveId atTop = Table().model()->index(top, 0).data(LibraryModel::Id).toLongLong();
  Choose({top + 1, top + 3});
  const auto chosen = Table().Chosen();
  Capture();
  ASSERT_TRUE(Shows(201));
  EXPECT_EQ(Table().Chosen(), chosen);
  EXPECT_EQ(Table().model()->index(Table().rowAt(1), 0).data(LibraryModel::Id).toLongLong(), atTop);
  Table().verticalScrollBar()->setValue(0);
  ReadAll();
  Capture();
  ASSERT_TRUE(Shows(202));
  EXPECT_EQ(Table().rowAt(1), 0) << "who looks at the newest goes on doing so";
}

TEST_F(LibraryOfRecords, WhereTheSensorSitsIsToldHere) {
  OpenLibrary(0);
  Write("site_machine", "Mixer 3");
  EXPECT_EQ(Keeper().Site().machine, "Mixer 3");
  Write("site_rpm", "fast");
  EXPECT_FALSE(In<QLabel>("site_fault").isHidden());
  EXPECT_FALSE(Keeper().Site().rpm);
  Write("site_rpm", "1480.5");
  EXPECT_EQ(Keeper().Site().rpm, 1480.5);
  Capture();
  ASSERT_TRUE(Shows(1));
  ASSERT_TRUE(Kept());
  EXPECT_THAT(Machines(), ElementsAre("Mixer 3"));
}

TEST_F(LibraryOfRecords, FiltersFindWhatTheyName) {
  Put(20);
  OpenLibrary(20);
  ASSERT_TRUE(Gets([this] { return In<QComboBox>("cbxLibraryMachine").count() == 4; }));
  In<QComboBox>("cbxLibraryMachine").setCurrentIndex(1);
  EXPECT_TRUE(Shows(10)) << "Fan";
  ReadAll();
  EXPECT_EQ(CellOf(3, LibraryModel::Machine), "Fan");
  In<QComboBox>("cbxLibraryOption").setCurrentIndex(2);
  EXPECT_TRUE(Shows(5));
  In<QComboBox>("cbxLibraryAlarm").setCurrentIndex(1);
  EXPECT_TRUE(Shows(1));
  Click("cmdClearFilter");
  EXPECT_TRUE(Shows(20));
  In<QComboBox>("cbxLibraryKind").setCurrentIndex(2);
  EXPECT_TRUE(Shows(0));
  Click("cmdClearFilter");
  In<QLineEdit>("txtLibraryText").setText("N1");
  EXPECT_TRUE(Shows(11)) << "n1, n10 to n19";
  In<QLineEdit>("txtLibraryText").setText("'; drop table record; --");
  EXPECT_TRUE(Shows(0));
  In<QLineEdit>("txtLibraryText").clear();
  EXPECT_TRUE(Shows(20));
  In<QComboBox>("cbxLibraryTime").setCurrentIndex(2);
  EXPECT_TRUE(Shows(0)) << "taken long ago";
  In<QComboBox>("cbxLibraryTime").setCurrentIndex(4);
  In<QDateEdit>("dateFrom").setDate(QDate(2025, 11, 20));
  In<QDateEdit>("dateUntil").setDate(QDate(2025, 11, 22));
  EXPECT_TRUE(Shows(20));
}

TEST_F(LibraryOfRecords, ADoubleClickOpensARecordBesideTheLiveOne) {
  Put(3);
  OpenLibrary(3);
  Choose({1});
  emit Table().doubleClicked(Table().model()->index(1, 1));
  ASSERT_TRUE(Gets([this] { return Choice().view == study::View::Spectrum; }));
  EXPECT_EQ(Study().Shown()->record->time, MadeUpTime(60));
  EXPECT_FALSE(Study().IsLive());
  EXPECT_EQ(Study().Live(), nullptr);
}

TEST_F(LibraryOfRecords, SeveralAreOverlaidAveragedSubtractedAndStacked) {
  Put(4);
  OpenLibrary(4);
  const auto way = [&](const char* button, std::initializer_list<int> rows) {
    Analyser().ChooseView(study::View::Library);
    Choose(rows);
    Click(button);
    return Gets([this] { return Choice().view != study::View::Library; });
  };
  ASSERT_TRUE(way("cmdOverlay", {0, 1, 2}));
  EXPECT_THAT(Study().Selected(), SizeIs(3));
  EXPECT_THAT(Study().Others(), SizeIs(2));
  ASSERT_TRUE(way("cmdDifference", {0, 2}));
  EXPECT_TRUE(Choice().difference);
  EXPECT_EQ(Study().Reference()->record->time, MadeUpTime(60));
  EXPECT_EQ(Study().Shown()->record->time, MadeUpTime(180));
  ASSERT_TRUE(way("cmdAverage", {0, 1, 2, 3}));
  EXPECT_FALSE(Choice().difference);
  EXPECT_THAT(Said().toStdString(), HasSubstr("left out of the average: other sample-rate option"));
  ASSERT_TRUE(way("cmdWaterfall", {0, 1, 2, 3}));
  EXPECT_EQ(Choice().view, study::View::Waterfall);
  EXPECT_EQ(Study().Rows().Rows(), 4U);
}

TEST_F(LibraryOfRecords, WhatCannotBeDoneWithTheSelectionIsGrey) {
  Put(40);
  OpenLibrary(40);
  EXPECT_FALSE(In<QToolButton>("cmdOpenRecord").isEnabled());
  EXPECT_FALSE(In<QToolButton>("cmdDeleteRecords").isEnabled());
  Table().selectAll();
  EXPECT_FALSE(In<QToolButton>("cmdOverlay").isEnabled()) << "more than can be read";
  EXPECT_TRUE(In<QToolButton>("cmdAverage").isEnabled());
  EXPECT_FALSE(In<QToolButton>("cmdDifference").isEnabled());
}

TEST_F(LibraryOfRecords, RemarksOfSeveralAreEditedUndoneAndDoneAgain) {
  Put(4);
  OpenLibrary(4);
  Choose({0, 1});
  EXPECT_EQ(In<QLineEdit>("remarks_machine").placeholderText(), "several");
  const QString odd = QStringLiteral("Lüfter \"7\" 🛠 مضخة '; delete from record; --");
  Write("remarks_machine", odd);
  const auto has = [&](const std::string& first, const std::string& second) {
    return Gets([&] { return Machines()[0] == first && Machines()[1] == second; });
  };
  ASSERT_TRUE(has(odd.toStdString(), odd.toStdString()));
  EXPECT_TRUE(Gets([&] { return CellOf(0, LibraryModel::Machine) == odd; }));
  EXPECT_EQ(All()[0].remarks.note, "n3") << "what was not written stays";
  In<QAction>("mnuUndo").trigger();
  ASSERT_TRUE(has("Fan", "Pump"));
  In<QAction>("mnuRedo").trigger();
  ASSERT_TRUE(has(odd.toStdString(), odd.toStdString()));
  Write("remarks_tags", " b, a ,,b ");
  ASSERT_TRUE(Gets([&] { return All()[1].remarks.tags == std::vector<std::string>{"a", "b"}; }));
}

TEST_F(LibraryOfRecords, WhatIsWrittenBeforeAnEditIsReadAgainIsKeptBesideIt) {
  Put(4);
  OpenLibrary(4);
  Choose({0, 1});
  Write("remarks_machine", "Mill");
  Write("remarks_tags", "a");
  Write("remarks_point", "NDE");
  In<QAction>("mnuUndo").trigger();
  Write("remarks_orientation", "X up");
  const archive::Remarks all{.machine = "Mill", .orientation = "X up", .note = "n3", .tags = {"a"}};
  EXPECT_TRUE(Gets([&] { return All()[0].remarks == all; }));
}

TEST_F(LibraryOfRecords, DeletingAsksAndCanBeUndoneUntilTheProgramCloses) {
  Put(5);
  OpenLibrary(5);
  Choose({0, 1, 2});
  QTest::keyClick(&Table(), Qt::Key_Delete);
  ASSERT_NE(Analyser().findChild<QMessageBox*>("askDelete"), nullptr);
  EXPECT_EQ(In<QMessageBox>("askDelete").text(),
            "Delete 3 records? They can be brought back until the program closes.");
  AcceptDeletion();
  ASSERT_TRUE(Shows(2));
  In<QAction>("mnuUndo").trigger();
  ASSERT_TRUE(Shows(5));
  In<QAction>("mnuRedo").trigger();
  ASSERT_TRUE(Shows(2));
  EXPECT_THAT(Archived().Find({.deleted = true}), SizeIs(3));
  windows_.reset();
  EXPECT_THAT(Archived().Find({.deleted = true}), IsEmpty()) << "gone for good";
  EXPECT_THAT(Archived().Find({}), SizeIs(2));
}

TEST_F(LibraryOfRecords, WhatAnotherProgramBroughtBackIsNotPurged) {
  Put(3);
  OpenLibrary(3);
  Choose({0, 1});
  QTest::keyClick(&Table(), Qt::Key_Delete);
  AcceptDeletion();
  ASSERT_TRUE(Shows(1));
  const auto deleted = Archived().Find({.deleted = true});
  Archived().BringBack(std::span(deleted).first(1));
  windows_.reset();
  EXPECT_THAT(Archived().Find({}), SizeIs(2));
}

TEST_F(LibraryOfRecords, FiveThousandScrollAndOnlyWhatIsSeenIsRead) {
  Put(5000);
  OpenLibrary(5000);
  auto& model = static_cast<LibraryModel&>(*Table().model());
  const auto known = [&] {
    int count = 0;
    for (const ArchiveId id : model.Ids()) count += model.Known(id) != nullptr ? 1 : 0;
    return count;
  };
  EXPECT_LE(known(), 2 * LibraryModel::kBlock);
  QScrollBar& bar = *Table().verticalScrollBar();
  for (int i = 1; i <= 20; ++i) {
    bar.setValue(bar.maximum() * i / 20);
    QApplication::processEvents();
  }
  ReadAll();
  EXPECT_EQ(CellOf(4999, LibraryModel::Note), "n0");
  EXPECT_LT(known(), 5000);
}

TEST_F(LibraryOfRecords, ADamagedArchiveIsSaidInWordsAndTheProgramGoesOn) {
  const std::string place = folder_.Write("broken.db", "SQLite format 3 it is not").string();
  StartKeeping(place);
  Trigger("mnuAnalyser");
  Analyser().ChooseView(study::View::Library);
  const auto said = [this] {
    QString all;
    for (const auto* label : In<QWidget>("libraryNotices").findChildren<QLabel*>())
      all += label->text();
    return all.toStdString();
  };
  ASSERT_TRUE(Gets([&] { return !said().empty(); }));
  EXPECT_THAT(said(), HasSubstr(place));
  EXPECT_THAT(said(), HasSubstr("Keep a copy of it"));
  Capture();
  EXPECT_NE(Study().Live(), nullptr);
  EXPECT_THAT(messages_.Texts(), IsEmpty());
}

TEST_F(LibraryOfRecords, AnArchiveOfALaterVersionIsSaid) {
  Put(1);
  database_.Connect()->Run("update about set value = 99");
  StartKeeping();
  Trigger("mnuAnalyser");
  Analyser().ChooseView(study::View::Library);
  EXPECT_TRUE(Gets([this] {
    for (const auto* label : In<QWidget>("libraryNotices").findChildren<QLabel*>()) {
      if (label->text().contains("later version")) return true;
    }
    return false;
  }));
}

TEST_F(LibraryOfRecords, AnArchiveDamagedInTheMiddleIsSaidAndTriedAgain) {
  Put(300);
  OpenLibrary(300);
  database_.Connect()->Run("alter table record rename to hidden");
  Analyser().Library().Refresh();
  const auto isSaid = [this] { return !In<QWidget>("libraryNotices").isHidden(); };
  ASSERT_TRUE(Gets(isSaid));
  EXPECT_EQ(Table().model()->rowCount(), 300) << "what was read stays to be seen";
  database_.Connect()->Run("alter table hidden rename to record");
  Analyser().Library().Refresh();
  EXPECT_TRUE(Gets([&] { return !isSaid(); }));
}

TEST_F(LibraryOfRecords, TheWindowClosesAtAnyMoment) {
  Put(2000);
  for (int passes = 0; passes < 40; passes += 3) {
    StartKeeping();
    Trigger("mnuAnalyser");
    Analyser().ChooseView(study::View::Library);
    Capture();
    for (int i = 0; i < passes; ++i) QApplication::processEvents();
    if (passes % 2 == 0) Table().verticalScrollBar()->setValue(20'000);
    Window().close();
    windows_.reset();
  }
  EXPECT_GT(Archived().Count(), 2000);
}

}  // namespace
}  // namespace kestrel
