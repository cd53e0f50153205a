// The alarm editor beside the main window, driven by keys and pointer.
// SPDX-License-Identifier: MIT
#pragma once

#include <QClipboard>
#include <QGuiApplication>
#include <array>
#include <filesystem>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "alarms/band_table.h"
#include "regmap/register_table.h"
#include "ui/bands/frmAlarmSpectrum.h"
#include "ui/parts/widgets.h"
#include "ui/window_bench.h"

namespace kestrel {

// Notes what the editor asks of the plot.
class RecordingOverlay : public OverlayControl {
 public:
  void PlotBands() override { asked.emplace_back("PlotBands"); }
  void RedrawBands() override { asked.emplace_back("RedrawBands"); }
  void ClearLines() override { asked.emplace_back("ClearLines"); }
  void ClearABLabels() override { asked.emplace_back("ClearABLabels"); }
  void PlotRecord() override { asked.emplace_back("PlotRecord"); }

  std::vector<std::string> Take() { return std::exchange(asked, {}); }

  std::vector<std::string> asked;
};

// The alarm editor beside the main window, over the simulated sensor, driven by keys and pointer.
class AlarmEditorBench : public WindowBench {
 protected:
  using Row = std::array<std::int32_t, 8>;

  ~AlarmEditorBench() override { QApplication::processEvents(); }

  // The main window's start, a range, and bands in the sensor.
  frmAlarmSpectrum& Begin() {
    if (windows_ == nullptr) Start();
    editor_ = new frmAlarmSpectrum(core_, Window().Edge(), overlay_, &Window());
    return *editor_;
  }
  frmAlarmSpectrum& Open() {
    if (editor_ == nullptr) Begin();
    editor_->ShowInFront();
    // Painting comes first, then the reading.
    for (int i = 0; i < 5; ++i) QApplication::processEvents();
    return *editor_;
  }

  // The one that the main window opens, with the bands on its plot.
  frmAlarmSpectrum& OpenByMenu() {
    Trigger("mnuAlarmSpectrum");
    editor_ = static_cast<frmAlarmSpectrum*>(&Find<QDialog>("frmAlarmSpectrum"));
    for (int i = 0; i < 5; ++i) QApplication::processEvents();
    return *editor_;
  }

  template <typename Control>
  Control& Get(const char* name) {
    auto* control = editor_->findChild<Control*>(name);
    if (control == nullptr) throw std::runtime_error(std::string("no control ") + name);
    return *control;
  }
  BandGrid& Grid() { return Get<BandGrid>("grdBands"); }
  std::string Message() { return Get<QLabel>("lblmsg").text().toStdString(); }
  std::string State() { return Get<QLabel>("lblState").text().toStdString(); }
  std::string Hint() { return Get<QLabel>("lblHint").text().toStdString(); }
  void Click(const char* button) {
    QTest::mouseClick(&Get<QAbstractButton>(button), Qt::LeftButton);
    QApplication::processEvents();
  }
  void ShowOption(int option) { Get<QComboBox>("cbxSRoption").setCurrentIndex(option); }

  // Cells, band 1..6 and column 1..8.
  void GoTo(int band, int column) {
    Grid().setFocus();
    Grid().Select({{band, column}, {band, column}});
  }
  void Select(const CellBlock& block) {
    Grid().setFocus();
    Grid().Select(block);
  }
  std::string Shown(int band, int column) { return Data(band, column, Qt::DisplayRole); }
  std::string Data(int band, int column, int role) {
    return Grid().model()->index(band - 1, column - 1).data(role).toString().toStdString();
  }
  int Marks(int band, int column) {
    return Grid().model()->index(band - 1, column - 1).data(BandGridModel::MarksRole).toInt();
  }
  BandCell Cursor() { return BandGridModel::CellAt(Grid().currentIndex()); }
  QLineEdit* Editor(int band, int column) {
    return Grid().findChild<QLineEdit*>(ArrayName("Text1", band * 10 + column));
  }
  // A key for whoever has the focus in the editor.
  void Key(Qt::Key key, Qt::KeyboardModifiers modifiers = Qt::NoModifier) {
    QTest::keyClick(editor_->focusWidget(), key, modifiers);
    QApplication::processEvents();
    // The line edit of an edit that was left.
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
  }
  void Type(const char* text) {
    for (; *text != '\0'; ++text) QTest::keyClick(editor_->focusWidget(), *text);
  }
  void Enter(int band, int column, const char* text) {
    GoTo(band, column);
    Type(text);
    Key(Qt::Key_Return);
  }
  static QString Clipboard() { return QGuiApplication::clipboard()->text(); }
  static void PutOnClipboard(const QString& text) { QGuiApplication::clipboard()->setText(text); }

  static Row Values(int band, int option) {
    Row row{};
    for (std::size_t i = 0; i < row.size(); ++i)
      row[i] = AlarmBandTable(kBandFields[i], band, option);
    return row;
  }
  // A band in the sensor's flash.
  void PutIntoSensor(int band, int option, const Row& values) {
    const auto rows = BandRows();
    for (std::size_t i = 0; i < rows.size(); ++i) core_.registers.WriteReg(rows[i], values[i]);
    core_.registers.WriteReg(row::ALM_PNTR, band + 256 * option);
    core_.registers.WriteReg(row::COMMAND, 4096);
    core_.delay.Delay(float{kFlashMs});
  }
  // What the sensor's flash holds.
  Row FromSensor(int band, int option) {
    core_.registers.WriteReg(row::ALM_PNTR, band + 256 * option);
    core_.registers.WriteReg(row::COMMAND, 16384);
    core_.delay.Delay(float{kFlashMs});
    Row values{};
    const auto rows = BandRows();
    for (std::size_t i = 0; i < rows.size(); ++i) {
      core_.registers.ReadReg(rows[i]);
      values[i] = RegValue;
    }
    return values;
  }

  RecordingOverlay overlay_;
  frmAlarmSpectrum* editor_ = nullptr;  // belongs to the main window

 private:
  static constexpr float kFlashMs = 50;

  static std::array<std::int16_t, 8> BandRows() {
    return {row::ALM_F_LOW,  row::ALM_F_HIGH, row::ALM_X_MAG1, row::ALM_Y_MAG1,
            row::ALM_Z_MAG1, row::ALM_X_MAG2, row::ALM_Y_MAG2, row::ALM_Z_MAG2};
  }
};

using Words = std::vector<std::string>;

// Columns of the table.
constexpr int kFLow = 1;
constexpr int kFHigh = 2;

constexpr const char* kProposed = "AlarmSpectrum_Default.csv";
inline const std::filesystem::path kProposedFile = "/program/AlarmSpectrum_Default.csv";

class FrmAlarmSpectrum : public AlarmEditorBench {
 protected:
  static constexpr Row kBand{40, 52, 120, 121, 122, 200, 201, 202};

  void OpenWithBand() {
    Start();
    PutIntoSensor(3, 2, kBand);
    Open();
  }
  void Reopen() {
    editor_->close();
    overlay_.Take();
    Open();
  }
  QComboBox& Files() { return Get<QComboBox>("cbxAfiles"); }
  void ChooseFile(const char* name) { Files().setEditText(name); }
};

}  // namespace kestrel
