// Reports from the analyser: of what the plot shows, and of records selected in the library.
// SPDX-License-Identifier: MIT
#include <gmock/gmock.h>

#include <QFileDialog>
#include <QSignalSpy>
#include <QStatusBar>

#include "support/memory_files.h"
#include "support/temporary_database.h"
#include "ui/analyser/no_host.h"
#include "ui/made_up_records.h"

namespace kestrel {
namespace {

using ::testing::HasSubstr;
using ::testing::StartsWith;

const std::vector<std::pair<int, int>> kLines{{41, 600}, {42, 1200}, {43, 600}};

class ReportExports : public ::testing::Test {
 protected:
  void Open(RecordKeeper* keeper = nullptr) {
    AnalyserHost host = NoHost(files_);
    host.keeper = keeper;
    window_ = std::make_unique<frmAnalyser>(host);
    window_->show();
  }
  // Whether it was written.
  bool Print(const char* file) {
    QSignalSpy ended(&window_->Reports(), &ReportExport::Ended);
    window_->Reports().Write(file);
    if (ended.isEmpty()) ended.wait(20'000);
    return !ended.isEmpty() && ended.takeFirst().at(0).toBool();
  }
  [[nodiscard]] std::string Said() const {
    return window_->statusBar()->currentMessage().toStdString();
  }

  MemoryFiles files_;
  CurrentRecord record_;
  TemporaryFile database_;
  std::unique_ptr<frmAnalyser> window_;
};

TEST_F(ReportExports, WithoutARecordNothingIsAskedAndItIsSaid) {
  Open();
  window_->Reports().Ask();
  EXPECT_EQ(window_->findChild<QFileDialog*>("askReport"), nullptr);
  EXPECT_THAT(Said(), HasSubstr("Capture one (F5)"));
  EXPECT_FALSE(Print("/a.pdf"));
  EXPECT_TRUE(files_.contents.empty());
}

TEST_F(ReportExports, WhatThePlotShowsIsPrinted) {
  Open();
  TakeRecord(window_->Model(), MadeUpSpectrum(0, kLines));
  ASSERT_TRUE(Print("/reports/a.pdf")) << Said();
  EXPECT_THAT(files_.contents["/reports/a.pdf"], StartsWith("%PDF-"));
  EXPECT_EQ(Said(), "Written: /reports/a.pdf");
}

TEST_F(ReportExports, TheMenuAsksForAFile) {
  Open();
  TakeRecord(window_->Model(), MadeUpSpectrum(0, kLines));
  window_->findChild<QAction*>("mnuReport")->trigger();
  auto* dialog = window_->findChild<QFileDialog*>("askReport");
  ASSERT_NE(dialog, nullptr);
  EXPECT_EQ(dialog->defaultSuffix(), "pdf");
  dialog->reject();
}

TEST_F(ReportExports, ADiskThatIsFullIsSaidAndNothingIsLeft) {
  Open();
  TakeRecord(window_->Model(), MadeUpSpectrum(0, kLines));
  files_.failure = "No space left on device";
  EXPECT_FALSE(Print("/reports/a.pdf"));
  EXPECT_THAT(Said(), HasSubstr("No space left on device"));
  EXPECT_TRUE(files_.contents.empty());
}

class ReportsOfTheArchive : public ReportExports {
 protected:
  ReportsOfTheArchive() {
    std::vector<archive::NewRecord> records;
    for (int i = 0; i < 8; ++i) {
      archive::NewRecord kept{archive::NewUid(),
                              MadeUpSpectrum(60 * i, kLines),
                              {.machine = "Pump " + std::to_string(i)},
                              "0.1.0",
                              "bench 1"};
      kept.record.settings = SettingsFromWords(1 << 12 | 2 << 10 | 8, 0);
      records.push_back(std::move(kept));
    }
    archive::Archive(database_.Connect()).KeepAll(records);
    keeper_ = std::make_unique<RecordKeeper>(record_, ArchiveChoice{.place = {database_.Name()}});
  }
  ~ReportsOfTheArchive() override { window_.reset(); }

  // The title that the file carries, as UTF-16 in its information.
  static bool IsTitled(const std::string& pdf, const std::string& title) {
    std::string wide;
    for (const char letter : title) wide += {'\0', letter};
    return pdf.find(wide) != std::string::npos;
  }

  std::unique_ptr<RecordKeeper> keeper_;
};

TEST_F(ReportsOfTheArchive, WhatTheArchiveKnowsOfARecordStandsInItsReport) {
  Open(keeper_.get());
  archive::Archive archive(database_.Connect());
  const auto kept = archive.Get(archive.Find({}).front());
  TakeRecord(window_->Model(), kept->record);
  ASSERT_TRUE(Print("/a.pdf")) << Said();
  EXPECT_TRUE(IsTitled(files_.contents["/a.pdf"], "Pump 7"));
}

TEST_F(ReportsOfTheArchive, TheRecordsSelectedInTheLibraryAreCompared) {
  Open(keeper_.get());
  window_->ChooseView(study::View::Library);
  LibraryTable* table = window_->Library().Table();
  ASSERT_TRUE(QTest::qWaitFor([&] { return table->model()->rowCount() == 8; }, 20'000));
  EXPECT_FALSE(Print("/none.pdf"));
  EXPECT_THAT(Said(), HasSubstr("select a record"));
  table->selectRow(2);
  ASSERT_TRUE(Print("/one.pdf")) << Said();
  EXPECT_TRUE(IsTitled(files_.contents["/one.pdf"], "Pump 5"));
  table->selectAll();
  EXPECT_FALSE(Print("/many.pdf"));
  EXPECT_THAT(Said(), HasSubstr("up to 6 records, 8 are selected"));
  table->clearSelection();
  for (const int row : {0, 1}) {
    table->selectionModel()->select(table->model()->index(row, 0),
                                    QItemSelectionModel::Select | QItemSelectionModel::Rows);
  }
  ASSERT_TRUE(Print("/two.pdf")) << Said();
  EXPECT_TRUE(IsTitled(files_.contents["/two.pdf"], "Comparison of records"));
}

TEST_F(ReportsOfTheArchive, TheMenuOfARowOffersTheReport) {
  Open(keeper_.get());
  LibraryTable* table = window_->Library().Table();
  EXPECT_EQ(table->contextMenuPolicy(), Qt::ActionsContextMenu);
  EXPECT_TRUE(table->actions().contains(window_->findChild<QAction*>("mnuReport")));
}

}  // namespace
}  // namespace kestrel
