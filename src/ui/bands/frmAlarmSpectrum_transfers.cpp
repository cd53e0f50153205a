// Kestrel evaluation program
// SPDX-License-Identifier: MIT
// What the editor does with the sensor, files and the plot.
#include <QPointer>
#include <QSignalBlocker>
#include <algorithm>
#include <vector>

#include "alarms/alarm_file.h"
#include "connection/start.h"
#include "device/rec_ctrl.h"
#include "record/capture_data.h"
#include "record/frequency.h"
#include "ui/bands/frmAlarmSpectrum.h"

namespace kestrel {
namespace {

// Keeps everything but Cancel from being used, and gives the focus back afterwards.
class TransferMode {
 public:
  explicit TransferMode(BandEditorPanel& panel) : panel_(panel), focus_(panel.focusWidget()) {
    panel_.ShowTransferring(true);
    panel_.cmdCancel->setFocus();
  }
  ~TransferMode() {
    panel_.ShowTransferring(false);
    if (focus_) focus_->setFocus();
  }
  TransferMode(const TransferMode&) = delete;
  TransferMode& operator=(const TransferMode&) = delete;

 private:
  BandEditorPanel& panel_;
  QPointer<QWidget> focus_;
};

}  // namespace

bool frmAlarmSpectrum::Transfer(const char* name, const std::string& step,
                                const std::function<void()>& transfer) {
  bool begun = false;
  bool complete = false;
  Edge().RunIdle(name, [&] {
    begun = true;
    cancelled_ = false;
    const HandlerEdge::Occupation occupation(Edge());
    const TransferMode mode(*panel_);
    transfer();
    complete = !cancelled_ && RegisterAccess::Usable();
  });
  if (!begun) SetMessage("The sensor is busy with something else. Nothing was transferred.");
  KeepStep(step);
  RedrawOverlay();
  if (closeAfterTransfer_) {
    closeAfterTransfer_ = false;
    reject();
  }
  return complete;
}

bool frmAlarmSpectrum::ReadAll(const char* name) {
  const BandTable before = AlarmBandTable;
  const std::vector<BandPlace> edited = EditedValues(before, SensorHolds());
  const bool complete =
      Transfer(name, "reading from the sensor", [this] { transfer_.ReadAllFlash(); });
  const auto replaced = std::count_if(edited.begin(), edited.end(), [&](const BandPlace& place) {
    return ValueAt(before, place) != ValueAt(AlarmBandTable, place);
  });
  if (replaced > 0) {
    AddToMessage(
        tr("Values replaced that had not been written: %1. Undo brings them back.").arg(replaced));
  }
  return complete;
}

void frmAlarmSpectrum::ForgetSensor() {
  transfer_.ForgetSensor();
  Refresh();
}

void frmAlarmSpectrum::cmdReadAll_Click() {
  ReadAll("cmdReadAll_Click");
}

void frmAlarmSpectrum::cmdWriteAll_Click() {
  Transfer("cmdWriteAll_Click", "writing to the sensor", [this] { transfer_.cmdWriteAll_Click(); });
}

void frmAlarmSpectrum::cmdClearAll_Click() {
  const BandTable before = AlarmBandTable;
  Transfer("cmdClearAll_Click", "clearing all bands", [this] { transfer_.cmdClearAll_Click(); });
  if (AlarmBandTable != before) {
    AddToMessage(
        tr("Undo brings the values back into this table; Write all puts them into the "
           "sensor again."));
  }
}

void frmAlarmSpectrum::ShowTransfer(const std::string& activity, int done, int total) {
  panel_->lblTransfer->setText(QString::fromStdString(activity));
  panel_->barTransfer->setRange(0, total);
  panel_->barTransfer->setValue(done);
}

void frmAlarmSpectrum::HideTransfer() {
  panel_->lblTransfer->clear();
  panel_->barTransfer->reset();
}

// What a bad line leaves behind is one step, too.
void frmAlarmSpectrum::cmdReadFile_Click() {
  const std::string name = panel_->cbxAfiles->currentText().toStdString();
  if (name.empty() || name == kReadFromFlash) {
    ListFiles();
    SetMessage(panel_->cbxAfiles->count() == 0
                   ? "Not loaded: there is no alarm file yet in " +
                         FolderOfUserFiles(core_.seams.files).string() + "."
                   : "Not loaded. Choose an alarm file from the list first.");
    return;
  }
  Edge().Run("cmdReadFile_Click", [&] { files_.ReadFile(name); });
  HideReading();
  if (KeepStep("loading " + name)) RedrawOverlay();
}

void frmAlarmSpectrum::cmdWriteFile_Click() {
  const std::string name = panel_->cbxAfiles->currentText().toStdString();
  files_.cmdWriteFile_Click(name);
  ListFiles();
  if (IsAlarmFileName(name)) return;
  SetMessage("Not saved. Type a file name, or press Use name to take \"" +
             panel_->txtFileName->text().toStdString() + "\".");
}

bool frmAlarmSpectrum::SaveAs(const std::string& name) {
  try {
    files_.cmdWriteFile_Click(name);
    return true;
  } catch (const RuntimeError& error) {
    core_.seams.messages.Show(error.what());
    return false;
  }
}

bool frmAlarmSpectrum::MayBeLost() {
  const BandHistory& history = edits_.History();
  const bool changed = !history.NextUndo().empty() || !history.NextRedo().empty();
  if (!changed || files_.HoldTable() || EditedValues(AlarmBandTable, SensorHolds()).empty()) {
    return true;
  }
  const std::string name = files_.NameToSaveUnder(panel_->cbxAfiles->currentText().toStdString());
  const std::string file = (FolderOfUserFiles(core_.seams.files) / name).string();
  switch (core_.seams.messages.AskToSave(
      "The alarm bands were changed, and are neither in the sensor nor in a file.\n\n"
      "Save them as " +
      file + " before closing?")) {
    case Unsaved::Save:
      return SaveAs(name);
    case Unsaved::Discard:
      return true;
    case Unsaved::Cancel:
      return false;
  }
  return false;
}

void frmAlarmSpectrum::ListFiles() {
  const QString text = panel_->cbxAfiles->currentText();
  panel_->cbxAfiles->clear();
  for (const std::string& name : files_.ListAlarmFiles()) {
    if (!name.empty()) panel_->cbxAfiles->addItem(QString::fromStdString(name));
  }
  panel_->cbxAfiles->setEditText(text);
}

void frmAlarmSpectrum::ShowReading(const std::string& text) {
  reading_ = std::make_unique<frmMsg>();
  reading_->setAttribute(Qt::WA_ShowWithoutActivating);
  reading_->ShowPainted(kApplicationTitle, text);
}

void frmAlarmSpectrum::HideReading() {
  if (!reading_) return;
  reading_.reset();
  activateWindow();
}

std::optional<Axis> frmAlarmSpectrum::OverlayAxis() {
  if (!isVisible()) return std::nullopt;
  if (panel_->opX->isChecked()) return Axis::X;
  if (panel_->opY->isChecked()) return Axis::Y;
  if (panel_->opZ->isChecked()) return Axis::Z;
  return std::nullopt;
}

std::int16_t frmAlarmSpectrum::OverlayOption() {
  return static_cast<std::int16_t>(std::max(0, panel_->cbxSRoption->currentIndex()));
}

void frmAlarmSpectrum::TakeDraggedEdges(int band, int fLow, int fHigh) {
  if (!transfer_.Running()) Finish(edits_.SetEdges(band, fLow, fHigh, Context()));
}

void frmAlarmSpectrum::TakeDraggedLevel(int band, int alarm, double g) {
  const auto axis = OverlayAxis();
  if (axis && !transfer_.Running()) Finish(edits_.SetLevel(band, alarm, *axis, g, Context()));
}

void frmAlarmSpectrum::opOFF_Click() {
  overlay_.ClearLines();
  overlay_.PlotRecord();
  ShowHint();
}

void frmAlarmSpectrum::PlotChosenAxis() {
  if (OverlayAxis()) overlay_.PlotBands();
  ShowHint();
}

void frmAlarmSpectrum::cmdPlotBands_Click() {
  if (!OverlayAxis()) SetMessage("Choose X, Y or Z to see the bands of an axis on the plot.");
  overlay_.PlotBands();
}

// The lines on the plot follow the table.
void frmAlarmSpectrum::RedrawOverlay() {
  if (OverlayAxis()) {
    Edge().Run("PlotBands", [this] { overlay_.PlotBands(); });
  }
}

void frmAlarmSpectrum::Refresh() {
  const int option = OverlayOption();
  const BandScale scale = CurrentScale();
  model_.Show(option, scale);
  panel_->lblBins->setText(tr("Bin 255: %1").arg(BinFrequencyText(kLastBin, option)));
  panel_->lblRange->setText(scale.Known()
                                ? tr("Range %1, up to %2 g")
                                      .arg(QString::fromStdString(gRecCtrl->RangeString()),
                                           QString::fromStdString(CellText(3, 65535, scale)))
                                : tr("Range not known"));
  panel_->lblState->setText(
      QString::fromStdString(StateText(AlarmBandTable, SensorHolds(), option)));
  ShowSteps();
  ShowHint();
}

void frmAlarmSpectrum::ShowSteps() {
  const auto show = [](QAction* action, QPushButton* button, const std::string& what,
                       const QString& keys) {
    action->setEnabled(!what.empty());
    button->setEnabled(!what.empty());
    button->setToolTip(what.empty() ? keys : QString::fromStdString(what) + "\n" + keys);
  };
  show(undo_, panel_->cmdUndo, edits_.History().NextUndo(), tr("Ctrl+Z"));
  show(redo_, panel_->cmdRedo, edits_.History().NextRedo(), tr("Ctrl+Y"));
}

void frmAlarmSpectrum::ShowHint() {
  QString hint =
      tr("On the plot: drag an edge to move the band, with Shift to move only that edge; drag a "
         "level to set its threshold.");
  if (OverlayAxis() && Buff.sampleRateOption != OverlayOption()) {
    hint += " " + tr("The record on the plot has sample-rate option %1, the bands shown are those "
                     "of option %2.")
                      .arg(Buff.sampleRateOption)
                      .arg(OverlayOption());
  }
  panel_->lblHint->setText(hint);
}

void frmAlarmSpectrum::SetMessage(const std::string& text) {
  panel_->lblmsg->setText(QString::fromStdString(text));
  panel_->lblmsg->setToolTip({});
}

void frmAlarmSpectrum::AddToMessage(const QString& text) {
  const QString before = panel_->lblmsg->text();
  panel_->lblmsg->setText(before.isEmpty() ? text : before + " " + text);
}

}  // namespace kestrel
