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
      choice.machine.bearings = {
          {.name = "front", .factors = *analysis::FactorsOf(geometry), .geometry = geometry}};
      choice.showKnown = true;
    });
    Key(Qt::Key_Z, Qt::ShiftModifier);
    Key(Qt::Key_H);
  }
  frmAnalyser& Window() { return *program_->Window().findChild<frmAnalyser*>("frmAnalyser"); }
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
  QString Everything(const char* table) {
    QString all;
    const int rows = Window().findChild<QTableView*>(table)->model()->rowCount();
    for (int row = 0; row < rows; ++row) all += Row(table, row).join(" | ") + "\n";
    return all;
  }

  MemoryFiles files_;
  std::unique_ptr<Program> program_;
};

TEST_F(WorkedExample, Look) {
  Prepare();
  for (const char* table : {"tblPeaks", "tblCursor", "tblLevels", "tblBands"}) {
    std::printf("%s\n%s\n", table, Everything(table).toUtf8().constData());
  }
  std::printf("%s\n",
              Window().findChild<QLabel*>("dockCursor_summary")->text().toUtf8().constData());
  Window().Model().Change([](auto& c) { c.difference = true; });
  QApplication::processEvents();
  std::printf("diff %s\n%s\n", Window().Area().Plot().Cursor().spoken.c_str(),
              Everything("tblCursor").toUtf8().constData());
  Window().Model().Change([](auto& c) { c.difference = false; });
  Window().ChooseView(study::View::Waterfall);
  QApplication::processEvents();
  std::printf("figures %s\n",
              Window().findChild<QLabel*>("waterfallFigures")->text().toUtf8().constData());
}

}  // namespace
}  // namespace kestrel
