// The analyser over the simulated sensor: captures are shown, read and steered from it.
// SPDX-License-Identifier: MIT
#include "ui/analyser/frmAnalyser.h"

#include "ui/window_bench.h"

namespace kestrel {
namespace {

class FrmAnalyser : public WindowBench {
 protected:
  frmAnalyser& Open() {
    Start();
    ChooseShortCaptures();
    Trigger("mnuAnalyser");
    return *Window().findChild<frmAnalyser*>("frmAnalyser");
  }
  void Capture() { Press("cmdStart"); }
};

TEST_F(FrmAnalyser, ShowsEachNewRecordAsItComes) {
  frmAnalyser& window = Open();
  EXPECT_EQ(window.Model().Get().Shown(), nullptr);
  Capture();
  ASSERT_NE(window.Model().Get().Shown(), nullptr);
  EXPECT_EQ(*window.Model().Get().Shown()->record, core_.record.Get());
  EXPECT_GT(window.findChild<QTableView*>("tblPeaks")->model()->rowCount(), 3);
}

}  // namespace
}  // namespace kestrel
