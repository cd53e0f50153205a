// The guide's worked example: a bearing's fault found, with the numbers that the guide tells.
// SPDX-License-Identifier: MIT
#include <QTableView>
#include <filesystem>
#include <fstream>
#include <iterator>

#include "../bench/program.h"
#include "support/memory_files.h"
#include "support/reset_program.h"
#include "ui/analyser/frmAnalyser.h"
#include "ui/main/frm1.h"

namespace kestrel {
namespace {

constexpr int kCaptures = 7;

class WorkedExample : public ::testing::Test {
 protected:
  WorkedExample() { ResetProgram(); }

  // Steps one to three: reference, captures, what is known of the machine.
  void Prepare() {
    program_ = std::make_unique<Program>(BearingFault(), &files_);
    Expose(program_->Window());
    program_->Press("cmdStart");
    program_->Window().findChild<QAction*>("mnuAnalyser")->trigger();
    QApplication::processEvents();
    Key(Qt::Key_R);
    for (int i = 1; i < kCaptures; ++i) program_->Press("cmdStart");
    Window().Model().Change([](study::StudyChoice& choice) {
      const analysis::BearingGeometry geometry{20, 4, 24, 0};
      choice.machine.rpm = 59214;
      choice.machine.meshes = {{.name = "Gear mesh", .teeth = 23}};
      choice.machine.bearings = {
          {.name = "front", .factors = *analysis::FactorsOf(geometry), .geometry = geometry}};
      choice.showKnown = true;
    });
    Key(Qt::Key_Z, Qt::ShiftModifier);
    Key(Qt::Key_H);
  }
  static frmAnalyser& Window() {
    for (QWidget* top : QApplication::topLevelWidgets()) {
      if (auto* analyser = dynamic_cast<frmAnalyser*>(top)) return *analyser;
    }
    throw std::runtime_error("no analyser");
  }
  void Key(int key, Qt::KeyboardModifiers modifiers = {}) {
    QTest::keyClick(&Window().Area().Plot(), static_cast<Qt::Key>(key), modifiers);
  }
  QStringList Row(const char* table, int row) {
    const auto* model = Window().findChild<QTableView*>(table)->model();
    QStringList cells;
    for (int i = 0; i < model->columnCount(); ++i) cells << model->index(row, i).data().toString();
    return cells;
  }
  static QString Guide() {
    std::ifstream stream(std::filesystem::path(KESTREL_ROOT) / "docs" / "guide.md");
    return QString::fromStdString({std::istreambuf_iterator<char>(stream), {}}).simplified();
  }
  static double Number(QString cell) { return cell.remove(',').toDouble(); }
  // The row of the peak table that is named so.
  QStringList Named(const QString& name, const QString& axis) {
    const int rows = Window().findChild<QTableView*>("tblPeaks")->model()->rowCount();
    for (int row = 0; row < rows; ++row) {
      const QStringList cells = Row("tblPeaks", row);
      if (cells.last() == name && cells.first() == axis) return cells;
    }
    ADD_FAILURE() << name.toStdString() << " is not a peak's name";
    return QStringList(7);
  }

  MemoryFiles files_;
  std::unique_ptr<Program> program_;
};

TEST_F(WorkedExample, ThePeaksAreNamedAndReadAsTheGuideTells) {
  Prepare();
  const QStringList largest = Row("tblPeaks", 0);
  EXPECT_EQ(largest.first(), "Z");
  EXPECT_EQ(largest.last(), "Outer race, front 1×");
  EXPECT_TRUE(Guide().contains("Z at 8,221 Hz ±0.7 with 1.30 g ±0.006"));
  EXPECT_NEAR(Number(largest[1]), 8221, 1);
  EXPECT_EQ(largest[2], "±0.7");
  EXPECT_NEAR(Number(largest[3]), 1.30, 0.006);
  EXPECT_EQ(largest[4], "±0.006");
  EXPECT_TRUE(Guide().contains("X at 22,699 Hz is the gear mesh, and Y at 987 Hz the shaft"));
  EXPECT_NEAR(Number(Named("Gear mesh", "X")[1]), 22699, 3);
  EXPECT_NEAR(Number(Named("Shaft 1×", "Y")[1]), 987, 3);
}

TEST_F(WorkedExample, TheHarmonicCursorFindsTheMembersThatTheGuideTells) {
  Prepare();
  const QString summary = Window().findChild<QLabel*>("dockCursor_summary")->text();
  EXPECT_TRUE(summary.startsWith("Harmonic on Z, f₀ 8,22")) << summary.toStdString();
  EXPECT_TRUE(summary.endsWith(" Hz ±0.8, least squares over 5 members")) << summary.toStdString();
  EXPECT_NEAR(Number(Row("tblCursor", 0)[1]), 8221, 1);
  EXPECT_TRUE(Guide().contains("f₀ = 8,221 Hz ±0.8; the sixth is not found"));
  EXPECT_EQ(Row("tblCursor", 5)[2], "not found");
}

TEST_F(WorkedExample, TheLevelsHaveGrownOnOneAxisAlone) {
  Prepare();
  EXPECT_TRUE(Guide().contains("Z has 1.08 g RMS, nearly 7 dB above the reference"));
  EXPECT_NEAR(Number(Row("tblLevels", 0)[3]), 1.08, 0.015);
  const QStringList change = Row("tblLevels", 3);
  EXPECT_EQ(change.first(), "re reference, dB");
  EXPECT_NEAR(Number(change[1]), 0, 0.15);
  EXPECT_NEAR(Number(change[2]), 0, 0.15);
  EXPECT_NEAR(Number(change[3]), 6.9, 0.15);
}

TEST_F(WorkedExample, TheWaterfallsColumnRises) {
  Prepare();
  const auto levels = Window().Model().Get().Rows().ColumnAt(8218.7, Axis::Z);
  ASSERT_EQ(levels.size(), std::size_t{kCaptures});
  for (std::size_t i = 1; i < levels.size(); ++i) {
    EXPECT_GT(levels[i].peakG, levels[i - 1].peakG + 0.05);
  }
}

TEST_F(WorkedExample, TheFactorsOfTheGeometryAreThoseOfTheGuide) {
  const auto factors = *analysis::FactorsOf({20, 4, 24, 0});
  EXPECT_NEAR(factors.outer, 8.333, 0.0005);
  EXPECT_NEAR(factors.inner, 11.667, 0.0005);
  EXPECT_TRUE(Guide().contains("outer race 8.333×, inner race 11.667×"));
}

}  // namespace
}  // namespace kestrel
