// Pictures of the window of set-ups, light and dark, beside approved ones.
// SPDX-License-Identifier: MIT
#include "regmap/register_table.h"
#include "support/dark_palette.h"
#include "ui/approved_picture.h"
#include "ui/parts/clear_style.h"
#include "ui/rendering.h"
#include "ui/setup/frmSetups.h"
#include "ui/window_bench.h"

namespace kestrel {
namespace {

class SetupPictures : public WindowBench, public testing::WithParamInterface<bool> {
 protected:
  SetupPictures() {
    archive_.usual = {"/data/kestrel/archive.db"};
    ClearStyle::Use();
    QFont font(QStringLiteral("DejaVu Sans"));
    font.setPixelSize(12);
    QApplication::setFont(font);
  }
  ~SetupPictures() override { QApplication::setFont(before_); }

 private:
  QFont before_ = QApplication::font();
};

TEST_P(SetupPictures, LookAsApproved) {
  const QPalette before = QApplication::palette();
  if (GetParam()) QApplication::setPalette(DarkPalette());
  Start();
  Trigger("mnuSetups");
  QApplication::processEvents();
  auto& form = Find<frmSetups>("frmSetups");
  for (const char* name : {"Fan, hall 2", "Pump 1", "Pump 2, after repair"}) {
    form.findChild<QLineEdit*>("txtSetupName")->setText(name);
    form.findChild<QPushButton*>("cmdSave")->click();
  }
  core_.registers.Write(row::FFT_AVG, 31);
  core_.registers.Write(row::REC_CTRL, 0x2120);
  core_.registers.Write(row::ALM_CTRL, 0x0307);
  form.findChild<QPushButton*>("cmdCompare")->click();
  QApplication::processEvents();
  // The time of day is another one each time.
  form.findChild<QLabel*>("lblState")
      ->setText(form.findChild<QLabel*>("lblState")->text().section(", as of", 0, 0));
  form.findChild<QLabel*>("lblNote")->setText(
      "Written and read back: FFT_AVG; REC_CTRL.\nAll else was equal already.");
  form.resize(860, 560);
  QApplication::processEvents();
  const QString name = QStringLiteral("setups-%1.png").arg(GetParam() ? "dark" : "light");
  const QImage picture = RenderOf(form, 1);
  QApplication::setPalette(before);
  ExpectApproved(picture, name, 1, KESTREL_APPROVED);
}

INSTANTIATE_TEST_SUITE_P(Both, SetupPictures, testing::Bool());

}  // namespace
}  // namespace kestrel
