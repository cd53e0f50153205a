// Draws the documents' pictures from the real windows over the simulated sensor.
// SPDX-License-Identifier: MIT
// Draws the documents' pictures from the real windows over the simulated sensor, into a folder:
// kestrel_pictures FOLDER. Sharpness follows QT_SCALE_FACTOR.

#include <QDir>
#include <QPainter>
#include <QRadioButton>
#include <QSettings>
#include <QTemporaryDir>
#include <QTimer>
#include <algorithm>
#include <cstdio>
#include <vector>

#include "archive_pictures.h"
#include "studio.h"
#include "support/dark_palette.h"

namespace kestrel {
namespace {

constexpr int kAlarmCaptures = 5;     // until the bearing's warning
constexpr int kAnalyserCaptures = 6;  // behind the reference
constexpr double kSpindleRpm = 59'214;

void DrawBands(Gallery& gallery) {
  Studio studio(BearingFault());
  studio.Capture(kAlarmCaptures, "2");
  QDialog& editor = studio.Open("mnuAlarmSpectrum", "frmAlarmSpectrum");
  studio.Find<QRadioButton>("opZ").click();
  gallery.Add("alarm_spectrum.png", editor);
  gallery.Add("bands_on_plot.png", studio.Window());
  gallery.Add("alarm_control.png", studio.Open("mnuAlarmCtrl", "frmALM_CTRL"));
}

void DrawWindows(Gallery& gallery) {
  Studio studio(RunningMachine());
  studio.Capture(1, "1");
  gallery.Add("spectrum.png", studio.Window());
  QDialog& log = studio.Open("mnuDatalog", "frmFileDir");
  gallery.Add("data_log.png", log);
  log.close();
  QDialog& registers = studio.Open("mnuRegisters", "frmManualReg");
  auto* list = registers.findChild<QComboBox*>("cmboRegister");
  list->setCurrentIndex(list->findText("REC_CTRL"));
  registers.findChild<QPushButton*>("cmdReadAllReg")->click();
  gallery.Add("registers.png", registers);
  gallery.Add("dio_gpio.png", studio.Open("mnuDIOGPIO", "frmDIOGPIO"));
  gallery.Add("calibration.png", studio.Open("MnuCal", "frmCalibration"));
  gallery.Add("usb_adapter.png", studio.Open("mnuUsb", "frmUSBselect"));
  studio.LoseAdapter();
  gallery.Add("adapter_lost.png", studio.Find<QFrame>("lostNotice"));
}

// The line under the plot in each of its states, one below the other.
class RecordLines {
 public:
  void Add(Studio& studio) {
    Settle();
    auto& line = studio.Find<QWidget>("recordCaption");
    QPixmap picture(line.size() * line.devicePixelRatioF());
    picture.setDevicePixelRatio(line.devicePixelRatioF());
    picture.fill(line.palette().color(QPalette::Window));
    line.render(&picture);
    lines_.push_back(picture);
  }
  [[nodiscard]] QPixmap Stacked() const {
    constexpr int kGap = 14;
    QSizeF size(0, kGap);
    for (const QPixmap& line : lines_) {
      const QSizeF own = line.deviceIndependentSize();
      size = {std::max(size.width(), own.width() + 2 * kGap), size.height() + own.height() + kGap};
    }
    const qreal ratio = lines_.front().devicePixelRatio();
    QPixmap all((size * ratio).toSize());
    all.setDevicePixelRatio(ratio);
    all.fill(QApplication::palette().color(QPalette::Window));
    QPainter painter(&all);
    qreal y = kGap;
    for (const QPixmap& line : lines_) {
      painter.drawPixmap(QPointF(kGap, y), line);
      y += line.deviceIndependentSize().height() + kGap;
    }
    return all;
  }

 private:
  std::vector<QPixmap> lines_;
};

void DrawRecordLines(Gallery& gallery, const char* name) {
  RecordLines lines;
  {
    Studio studio(BearingFault());
    studio.Press("cmdReadBuffer");
    lines.Add(studio);  // nothing was captured yet
    studio.Capture(1, "1");
    lines.Add(studio);
    studio.Choose("cbxFFTAvgs", 255);
    QTimer::singleShot(50, &studio.Window(), [&studio] { studio.Press("cmdStart"); });
    studio.Press("cmdStart");
    lines.Add(studio);  // stopped
    studio.Choose("cbxFFTAvgs", 8);
    studio.Capture(kAlarmCaptures, "1");
    studio.Choose("cbxSignalRange", 1);
    studio.Press("cmdReadBuffer");
    lines.Add(studio);  // scaled for another range
    studio.Choose("cbxSignalRange", 0);
    studio.Capture(kAlarmCaptures, "1");
    lines.Add(studio);  // clipped
  }
  Studio studio(RunningMachine());
  studio.Capture(1, "1");
  studio.LoseAdapter();
  lines.Add(studio);
  gallery.AddPicture(name, lines.Stacked());
}

// The worked example of the guide: a reference, six captures more, and what is known of the
// machine.
void DrawAnalyser(Gallery& gallery) {
  Studio studio(BearingFault());
  studio.Press("cmdStart");
  studio.Trigger("mnuAnalyser");
  auto& window = studio.Analyser();
  window.resize(kAnalyserSize);
  window.Model().TakeReference();
  for (int i = 0; i < kAnalyserCaptures; ++i) studio.Press("cmdStart");
  const analysis::BearingGeometry geometry{20, 4, 24, 0};
  window.Model().Change([&](study::StudyChoice& choice) {
    choice.machine.rpm = kSpindleRpm;
    choice.machine.meshes = {{.name = "Gear mesh", .teeth = 23}};
    choice.machine.bearings = {
        {.name = "front", .factors = *analysis::FactorsOf(geometry), .geometry = geometry}};
    choice.focus = Axis::Z;
    choice.up = study::Scale::Logarithmic;
  });
  window.Area().Commands().CarryOut(PlotCommand::CursorHarmonic);
  gallery.Add("analyser.png", window);
}

void DrawDark(Gallery& gallery) {
  QApplication::setPalette(DarkPalette());
  Studio studio(RunningMachine());
  studio.ChooseMode("Manual Time");
  studio.Capture(1, "2");
  gallery.Add("time_record_dark.png", studio.Window());
}

}  // namespace
}  // namespace kestrel

int main(int argc, char** argv) {
  using namespace kestrel;
  if (argc != 2 || !QDir(argv[1]).exists()) {
    std::fprintf(stderr, "usage: kestrel_pictures FOLDER\n");
    return 2;
  }
  const QApplication application(argc, argv);
  const QTemporaryDir settings;  // of a user who has changed none
  QSettings::setPath(QSettings::IniFormat, QSettings::UserScope, settings.path());
  Gallery gallery(argv[1]);
  DrawWindows(gallery);
  DrawBands(gallery);
  DrawAnalyser(gallery);
  DrawArchive(gallery);
  DrawRecordLines(gallery, "record_line.png");
  DrawDark(gallery);
  DrawRecordLines(gallery, "record_line_dark.png");
  return gallery.Complete() ? 0 : 1;
}
