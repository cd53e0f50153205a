// The library's calendar, its size limit, its export, and what another window does meanwhile.
// SPDX-License-Identifier: MIT
#include <QCalendarWidget>
#include <QFileDialog>
#include <QInputDialog>
#include <QTextCharFormat>

#include "exchange/kept_note.h"
#include "ui/library/calendar_popup.h"
#include "ui/library/library_bench.h"
#include "ui/made_up_records.h"

namespace kestrel {
namespace {

using exchange::ExportFormat;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::SizeIs;

class LibraryDialogs : public LibraryBench {
 protected:
  // Records of these days after 21 November 2025, in local time at noon or so.
  void PutOnDays(std::initializer_list<int> days) {
    std::vector<archive::NewRecord> records;
    int second = 0;
    for (const int day : days) {
      records.push_back({archive::NewUid(),
                         MadeUpSpectrum(86'400 * day - 6 * 3600 + second++, {{42, 700}}),
                         {.machine = "Pump", .note = "day " + std::to_string(day)},
                         "0.1.0",
                         "bench 1"});
    }
    Archived().KeepAll(records);
  }
  void OpenLibrary(int rows) {
    StartKeeping();
    Trigger("mnuAnalyser");
    Analyser().ChooseView(study::View::Library);
    ASSERT_TRUE(Shows(rows));
  }
  bool Shows(int rows) {
    return Gets([&] { return Table().model()->rowCount() == rows; });
  }
  LibraryTable& Table() { return *Analyser().Library().Table(); }
  QCalendarWidget& Calendar() { return In<QCalendarWidget>("calLibrary"); }
  static QDate DayOf(int day) {
    return QDateTime::fromSecsSinceEpoch(kMadeUpStart + 86'400 * day - 6 * 3600).date();
  }
};

TEST_F(LibraryDialogs, TheCalendarShowsDaysWithRecordsAndChoosesOne) {
  PutOnDays({0, 2, 2, 2, 5});
  OpenLibrary(5);
  Click("cmdCalendar");
  auto& popup = In<QWidget>("popCalendar");
  EXPECT_TRUE(popup.isVisible());
  ASSERT_TRUE(Gets([this] { return Calendar().dateTextFormat().size() == 3; }));
  EXPECT_EQ(Calendar().dateTextFormat(DayOf(2)).fontWeight(), QFont::Bold);
  EXPECT_NE(Calendar().dateTextFormat(DayOf(1)).fontWeight(), QFont::Bold);
  Calendar().setSelectedDate(DayOf(2));
  EXPECT_EQ(In<QLabel>("lblDayCount").text(), "3 records");
  Calendar().setSelectedDate(DayOf(1));
  EXPECT_EQ(In<QLabel>("lblDayCount").text(), "No records on this day");
  Calendar().setSelectedDate(DayOf(0));
  EXPECT_EQ(In<QLabel>("lblDayCount").text(), "1 record");
  EXPECT_EQ(Table().model()->rowCount(), 5) << "selecting alone filters nothing";
  emit Calendar().activated(DayOf(2));
  EXPECT_FALSE(popup.isVisible());
  EXPECT_TRUE(Shows(3));
  EXPECT_EQ(In<QComboBox>("cbxLibraryTime").currentText(), "Between");
  Click("cmdClearFilter");
  EXPECT_TRUE(Shows(5));
}

TEST_F(LibraryDialogs, TheCalendarCountsWhatTheOtherFiltersLeave) {
  PutOnDays({0, 2, 2});
  OpenLibrary(3);
  In<QLineEdit>("txtLibraryText").setText("day 2");
  ASSERT_TRUE(Shows(2));
  Click("cmdCalendar");
  ASSERT_TRUE(Gets([this] { return Calendar().dateTextFormat().size() == 1; }));
  EXPECT_TRUE(Calendar().dateTextFormat().contains(DayOf(2)));
}

TEST_F(LibraryDialogs, TheSizeLimitIsAskedForAndRemembered) {
  OpenLibrary(0);
  In<QAction>("mnuLimit").trigger();
  auto& dialog = In<QInputDialog>("askLimit");
  EXPECT_EQ(dialog.doubleValue(), 0) << "none at first";
  EXPECT_THAT(dialog.labelText().toStdString(), HasSubstr("the oldest records go first"));
  dialog.setDoubleValue(25);
  dialog.accept();
  ASSERT_TRUE(Keeper().Limit());
  EXPECT_EQ(*Keeper().Limit(), 25'000'000);
  Settle();
  In<QAction>("mnuLimit").trigger();
  ASSERT_TRUE(Gets([this] {
    auto* again = Analyser().findChild<QInputDialog*>("askLimit");
    return again != nullptr && again->doubleValue() == 25;
  }));
  In<QInputDialog>("askLimit").reject();
  EXPECT_EQ(*Keeper().Limit(), 25'000'000) << "cancelled";
  Settle();
  In<QAction>("mnuLimit").trigger();
  In<QInputDialog>("askLimit").setDoubleValue(0);
  In<QInputDialog>("askLimit").accept();
  EXPECT_FALSE(Keeper().Limit());
}

TEST_F(LibraryDialogs, ALimitRemovesTheOldestAndSaysSo) {
  std::vector<archive::NewRecord> records;
  for (int i = 0; i < 900; ++i) {
    records.push_back(
        {archive::NewUid(), MadeUpSpectrum(60 * i, {{42, 700 + i}}), {}, "0.1.0", "bench 1"});
  }
  Archived().KeepAll(records);
  OpenLibrary(900);
  const auto before = Archived().Size();
  ASSERT_GT(before, 1'000'000);
  In<QAction>("mnuLimit").trigger();
  In<QInputDialog>("askLimit").setDoubleValue(1);
  In<QInputDialog>("askLimit").accept();
  Capture();
  ASSERT_TRUE(Kept());
  ASSERT_TRUE(Gets([this] { return Keeper().State().pruned.count > 0; }));
  EXPECT_TRUE(Gets([this] { return In<QLabel>("lblLibraryKeeper").text().contains("limit"); }))
      << In<QLabel>("lblLibraryKeeper").text().toStdString();
  EXPECT_LT(Archived().Count(), 901);
}

TEST_F(LibraryDialogs, RowsThatAnotherWindowDeletedAreGoneWithTheNextLook) {
  PutOnDays({0, 1, 2, 3});
  OpenLibrary(4);
  const auto ids = Archived().Find({});
  Table().selectRow(1);
  Archived().Remove(std::span(ids).subspan(1, 2));
  Click("cmdOpenRecord");
  Settle();
  QTest::qWait(100);
  EXPECT_EQ(Choice().view, study::View::Library) << "there is nothing to look at";
  Analyser().Library().Refresh();
  EXPECT_TRUE(Shows(2));
  EXPECT_EQ(Analyser().Library().Table()->Chosen().size(), 0U);
}

class LibraryExport : public LibraryDialogs {
 protected:
  void SetUp() override {
    PutOnDays({0, 1, 2});
    OpenLibrary(3);
  }
  // As the dialog hands it over.
  void ExportTo(const QString& file, ExportFormat format) {
    const auto kinds = RecordExport::Kinds();
    auto* dialog = Analyser().findChild<QFileDialog*>("askRecordExport");
    ASSERT_NE(dialog, nullptr);
    for (const QString& kind : kinds) {
      if (RecordExport::FormatOf(kind, {}) == format) dialog->selectNameFilter(kind);
    }
    emit dialog->fileSelected(file);
    dialog->close();
  }
  bool Says(const char* text) {
    return Gets([&] { return Said().contains(text); });
  }
};

TEST_F(LibraryExport, NeedsASelectionAndAsksForTheFile) {
  EXPECT_TRUE(In<QToolButton>("cmdExportRecords").isVisible());
  EXPECT_FALSE(In<QToolButton>("cmdExportRecords").isEnabled());
  Table().selectRow(0);
  EXPECT_TRUE(In<QToolButton>("cmdExportRecords").isEnabled());
  Click("cmdExportRecords");
  auto& dialog = In<QFileDialog>("askRecordExport");
  EXPECT_EQ(dialog.windowTitle(), "Export 1 record");
  EXPECT_EQ(dialog.nameFilters(), RecordExport::Kinds());
  dialog.reject();
  EXPECT_TRUE(files_.contents.size() > 0);
}

TEST_F(LibraryExport, WritesEveryFormatOfOneOrManyRecords) {
  Table().selectAll();
  for (const ExportFormat format : exchange::kExportFormats) {
    if (format == ExportFormat::Wav) continue;
    Click("cmdExportRecords");
    const std::string name = "/out/" + exchange::NameOf(format) + exchange::ExtensionOf(format);
    ExportTo(QString::fromStdString(name), format);
    ASSERT_TRUE(Says((name + ": 3 records").c_str())) << Said().toStdString();
    // What the same records make on the command line.
    std::vector<exchange::NotedRecord> records;
    for (const ArchiveId id : Table().Chosen()) {
      records.push_back(exchange::Noted(*Archived().Get(id)));
    }
    EXPECT_EQ(files_.contents[name], *exchange::Exported(records, format)) << name;
    Settle();
  }
}

TEST_F(LibraryExport, SaysWhatAFormatCannotHold) {
  Table().selectRow(0);
  Click("cmdExportRecords");
  ExportTo("/out/a.wav", ExportFormat::Csv);  // the ending goes first
  ASSERT_TRUE(Says("Not written: A WAV file holds time records")) << Said().toStdString();
  EXPECT_FALSE(files_.contents.contains("/out/a.wav"));
}

TEST_F(LibraryExport, SaysThatAFileCannotBeWritten) {
  files_.failure = "the disk is full";
  Table().selectRow(0);
  Click("cmdExportRecords");
  ExportTo("/out/a.csv", ExportFormat::Csv);
  EXPECT_TRUE(Says("the disk is full. Choose a folder")) << Said().toStdString();
}

TEST_F(LibraryExport, SaysThatRecordsAreGone) {
  Table().selectAll();
  const auto ids = Table().Chosen();
  Archived().Remove(std::span(ids).first(2));
  Click("cmdExportRecords");
  ExportTo("/out/a.json", ExportFormat::Json);
  EXPECT_TRUE(Says("1 record; 2 are not in the archive any more")) << Said().toStdString();
}

TEST_F(LibraryExport, TheEndingAndTheKindChooseTheFormat) {
  const QString binary = RecordExport::Kinds()[1];
  EXPECT_EQ(RecordExport::FormatOf(binary, "a"), ExportFormat::Uff58b);
  EXPECT_EQ(RecordExport::FormatOf(binary, "a.uff"), ExportFormat::Uff58b);
  EXPECT_EQ(RecordExport::FormatOf(binary, "a.CSV"), ExportFormat::Csv);
  EXPECT_EQ(RecordExport::FormatOf(binary, "a.dat"), ExportFormat::Uff58b);
}

TEST_F(LibraryExport, TheWindowClosesInTheMiddle) {
  Table().selectAll();
  Click("cmdExportRecords");
  ExportTo("/out/a.csv", ExportFormat::Csv);
  Window().close();
  windows_.reset();
}

}  // namespace
}  // namespace kestrel
