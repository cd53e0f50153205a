// The editor of the spectral alarm bands.
// SPDX-License-Identifier: MIT
#pragma once

#include <QTimer>
#include <functional>
#include <memory>
#include <string>

#include "alarms/alarm_files.h"
#include "alarms/band_edits.h"
#include "alarms/band_state.h"
#include "alarms/band_transfer.h"
#include "connection/core.h"
#include "plot/overlay_control.h"
#include "plot/overlay_owner.h"
#include "ui/bands/band_editor_panel.h"
#include "ui/bands/band_grid_model.h"
#include "ui/parts/secondary_window.h"
#include "ui/windows/frmMsg.h"

namespace kestrel {

// Stands in the place of a file's name after the sensor was read.
inline constexpr const char* kReadFromFlash = "values read from flash mem.";

// The editor of the spectral alarm bands: their table, its way to and from the sensor and files,
// and their lines on the main window's plot.
class frmAlarmSpectrum : public SecondaryWindow,
                         public OverlayOwner,
                         public BandTransferView,
                         public AlarmFilesView {
 public:
  frmAlarmSpectrum(Core& core, HandlerEdge& edge, OverlayControl& overlay, QWidget* parent);

  // Shows table, range and marks as they are now.
  void Refresh();
  // Ends a transfer before its next band.
  void CancelTransfer();
  // Another sensor may be connected now.
  void ForgetSensor();

  // Asks about bands that are neither in the sensor nor in a file. False where the user would
  // rather go on with them, or where they could not be saved.
  [[nodiscard]] bool MayBeLost();

  // What the user has to know of thresholds that were given for another range than the present
  // one, "" when there are none; and what he can do: have their codes recalculated so that they
  // keep their g values, or take them as they are now.
  [[nodiscard]] std::string NoticeOfRange() const;
  std::function<void(const std::string& notice)> rangeNoted;  // as it stands, again and again
  void KeepThresholdsInG();
  void KeepThresholdCodes();

  // Takes another window's bands into the table, and on request writes all bands and reads them
  // back, once the reading that belongs to the opening is through. `told` hears how it ended.
  struct TakingOver {
    BandProposal proposal;
    bool isWritten = false;
    std::function<void(const std::string& outcome)> told;
  };
  void TakeOver(TakingOver taking);

  // OverlayOwner
  [[nodiscard]] std::optional<Axis> OverlayAxis() override;
  [[nodiscard]] std::int16_t OverlayOption() override;
  void TakeDraggedEdges(int band, int fLow, int fHigh) override;
  void TakeDraggedLevel(int band, int alarm, double g) override;

  // BandTransferView and AlarmFilesView
  void DisplaySpectrum(std::int16_t option) override;
  void ShowTransfer(const std::string& activity, int done, int total) override;
  void HideTransfer() override;
  void SetMessage(const std::string& text) override;
  void ShowReading(const std::string& text) override;
  void HideReading() override;
  void DisplaySelected() override;

  void reject() override;

 protected:
  void Form_Activate() override;
  void showEvent(QShowEvent* event) override;
  void paintEvent(QPaintEvent* event) override;
  void keyPressEvent(QKeyEvent* event) override;

 private:
  void ConnectEdits();
  void ConnectTransfers();
  void ConnectPlot();
  void Form_Load();
  void ReadOpened();
  bool ReadAround(const BandTable& entered);
  void Form_Unload();

  void Text1_Change(BandCell cell, const std::string& text);
  void cbxSRoption_Click();
  void cmdReadAll_Click();
  void cmdWriteAll_Click();
  void cmdClearAll_Click();
  void cmdReadFile_Click();
  void cmdWriteFile_Click();
  void opOFF_Click();
  void PlotChosenAxis();
  void cmdPlotBands_Click();

  [[nodiscard]] BandEdits::Context Context();
  [[nodiscard]] SensorValues SensorHolds() const;
  void CopyBlock();
  void Finish(const EditOutcome& outcome);
  void Turn(EditOutcome (BandEdits::*turn)(int&));
  // Whether the table changed; the change is one step.
  bool KeepStep(const std::string& what);
  // Whether the transfer ran to its end.
  bool Transfer(const char* name, const std::string& step, const std::function<void()>& transfer);
  bool ReadAll(const char* name);
  [[nodiscard]] std::string WhyNotWritten() const;
  // What waits to be taken over, if it may be now.
  void TakeWaiting();
  [[nodiscard]] std::string WriteAndCompare(std::int32_t range);
  void ListFiles();
  bool SaveAs(const std::string& name);
  void RedrawOverlay();

  void ShowSteps();
  void ShowState();
  void ShowHint();
  void AddToMessage(const QString& text);

  Core& core_;
  OverlayControl& overlay_;
  BandEdits edits_;
  BandTransfer transfer_;
  AlarmFiles files_;
  BandGridModel model_;
  BandEditorPanel* panel_;
  QAction* undo_;
  QAction* redo_;
  std::unique_ptr<frmMsg> reading_;  // while a file is read
  bool loadWhenPainted_ = false;
  QTimer afterPainting_;
  bool cancelled_ = false;
  bool unread_ = false;              // the reading of the opening has to wait
  std::optional<BandTable> opened_;  // the table at the opening, unless a file has replaced it
  bool whole_ = false;               // the table has been filled as a whole
  bool closeAfterTransfer_ = false;
  std::optional<TakingOver> taking_;  // waits
};

}  // namespace kestrel
