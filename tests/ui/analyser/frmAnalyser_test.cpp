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

TEST_F(FrmAnalyser, ABandOfTheUsersIsAmongTheLevelsAndGoesWithDelete) {
  frmAnalyser& window = Open();
  Capture();
  auto& levels = *window.findChild<QTableView*>("tblLevels");
  const int before = levels.model()->rowCount();
  window.findChild<QToolButton*>("dockLevels_add")->click();
  auto* dialog = window.findChild<QDialog*>("bandDialog");
  ASSERT_NE(dialog, nullptr);
  dialog->findChild<QLineEdit*>("txtBandName")->setText("Mesh");
  for (auto* button : dialog->findChildren<QPushButton*>()) {
    if (button->text() == "Add") button->click();
  }
  ASSERT_EQ(levels.model()->rowCount(), before + 1);
  EXPECT_TRUE(levels.model()->index(before, 0).data().toString().startsWith("Mesh"));
  levels.selectRow(before);
  QTest::keyClick(&levels, Qt::Key_Delete);
  EXPECT_EQ(levels.model()->rowCount(), before);
  EXPECT_TRUE(window.Model().Choice().bands.empty());
}

TEST_F(FrmAnalyser, TheWaterfallIsWrittenAsAPictureOfEachKind) {
  frmAnalyser& window = Open();
  Capture();
  window.ChooseView(study::View::Waterfall);
  const QTemporaryDir folder;
  for (const QString& ending : PictureEndings()) {
    const QString file = folder.filePath("map." + ending);
    ASSERT_TRUE(window.Export(file)) << ending.toStdString();
    EXPECT_GT(QFileInfo(file).size(), 5000) << ending.toStdString();
  }
  const QImage image(folder.filePath("map.png"));
  EXPECT_FALSE(image.isNull());
  EXPECT_TRUE(image.text("Description").contains("version"));
}

TEST_F(FrmAnalyser, Pictures) {
  const QString folder = qEnvironmentVariable("KESTREL_LOOK");
  if (folder.isEmpty()) GTEST_SKIP();
  frmAnalyser& window = Open();
  const auto save = [&](const QString& name) {
    QTest::qWait(50);
    window.grab().save(folder + "/" + name + ".png");
  };
  for (const int theme : {1, 2}) {
    ApplyTheme(static_cast<Theme>(theme));
    const QString t = theme == 1 ? "-light" : "-dark";
    window.resize(1440, 900);
    save("empty" + t);
    for (int i = 0; i < 3; ++i) Capture();
    QTest::qWait(20);
    window.Model().Change([](auto& c) {
      c.up = study::Scale::Logarithmic;
      c.focus = Axis::Z;
    });
    window.Area().Commands().CarryOut(PlotCommand::CursorHarmonic);
    save("spectrum" + t);
    window.resize(1280, 720);
    save("small" + t);
    window.resize(1440, 900);
    window.Model().Change([](auto& c) { c.stacked = true; });
    window.Model().TakeReference();
    window.Area().Commands().CarryOut(PlotCommand::CursorSideband);
    save("stacked" + t);
    window.Model().Change([](auto& c) {
      c.stacked = false;
      c.quantity.quantity = analysis::Quantity::Velocity;
      c.quantity.lowestHz = 0;
    });
    save("velocity" + t);
    window.Model().Change([](auto& c) { c.quantity.quantity = analysis::Quantity::Acceleration; });
    window.ChooseView(study::View::Time);
    save("nosamples" + t);
    Choose("cbxRecMode", 2);
    Capture();
    save("time" + t);
    window.Model().Change([](auto& c) {
      c.timeQuantity = study::TimeQuantity::Velocity;
      c.timeFromHz = 10;
    });
    save("refusal" + t);
    window.Model().Change([](auto& c) { c.timeFromHz = 0; });
    save("timevelocity" + t);
    window.ChooseView(study::View::Waterfall);
    save("waterfall" + t);
    window.ChooseView(study::View::Spectrum);
    Choose("cbxRecMode", 0);
  }
  ApplyTheme(Theme::System);
}

}  // namespace
}  // namespace kestrel
