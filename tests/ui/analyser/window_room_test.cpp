// Bars and tables of the analyser have the room that they need.
// SPDX-License-Identifier: MIT
#include <QScrollArea>

#include "support/memory_files.h"
#include "ui/analyser/no_host.h"
#include "ui/made_up_records.h"
#include "ui/parts/clear_style.h"

namespace kestrel {
namespace {

class AnalyserRoom : public ::testing::Test {
 protected:
  AnalyserRoom() {
    ClearStyle::Use();
    TakeRecord(window_.Model(), MadeUpSpectrum(0, {{42, 700}, {84, 300}, {126, 90}}));
  }
  void Show(int width) {
    window_.resize(width, 720);
    window_.show();
    for (int i = 0; i < 3; ++i) QApplication::processEvents();
  }
  template <typename Control>
  Control& In(const char* name) {
    return *window_.findChild<Control*>(name);
  }
  void ExpectWholeBars() {
    auto& bars = In<QScrollArea>("bars");
    EXPECT_EQ(bars.geometry().bottom(), bars.parentWidget()->rect().bottom());
    EXPECT_EQ(bars.viewport()->height(), bars.widget()->height());
    EXPECT_EQ(bars.viewport()->height(), bars.widget()->sizeHint().height());
  }

  MemoryFiles files_;
  frmAnalyser window_{NoHost(files_)};
};

TEST_F(AnalyserRoom, BarsAreAsHighAsWhatIsInThemAtEveryWidth) {
  for (const int width : {1280, 640, 1280, 1600}) {
    SCOPED_TRACE(width);
    Show(width);
    ExpectWholeBars();
  }
}

TEST_F(AnalyserRoom, BarsOfAnotherViewAreWholeToo) {
  Show(1280);
  for (const study::View view :
       {study::View::Time, study::View::Waterfall, study::View::Spectrum}) {
    window_.Model().Change([view](study::StudyChoice& choice) { choice.view = view; });
    QApplication::processEvents();
    ExpectWholeBars();
  }
}

TEST_F(AnalyserRoom, NoCellOfThePeaksIsCutAtTheUsualWidth) {
  TakeRecord(window_.Model(), MadeUpSpectrum(10, {{41, 3500},
                                                  {42, 7000},
                                                  {43, 3500},
                                                  {115, 350},
                                                  {116, 700},
                                                  {117, 350},
                                                  {209, 90},
                                                  {210, 180},
                                                  {211, 90}}));
  window_.Model().Change([](study::StudyChoice& choice) { choice.machine.rpm = 59'214; });
  Show(1280);
  auto& peaks = In<QTableView>("tblPeaks");
  const auto& rows = *peaks.model();
  ASSERT_EQ(rows.rowCount(), 3);
  EXPECT_LE(peaks.horizontalHeader()->length(), peaks.viewport()->width());
  for (int column = 0; column < rows.columnCount(); ++column) {
    if (peaks.isColumnHidden(column)) continue;
    for (int row = 0; row < rows.rowCount(); ++row) {
      EXPECT_GE(peaks.columnWidth(column), peaks.sizeHintForIndex(rows.index(row, column)).width())
          << row << ' ' << column;
    }
  }
  EXPECT_FALSE(peaks.isColumnHidden(5)) << "orders";
}

}  // namespace
}  // namespace kestrel
