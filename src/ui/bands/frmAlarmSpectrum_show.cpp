// What the alarm editor shows, in its window and on the plot.
// SPDX-License-Identifier: MIT
#include "alarms/band_range.h"
#include "device/rec_ctrl.h"
#include "record/capture_data.h"
#include "ui/bands/frmAlarmSpectrum.h"

namespace kestrel {
namespace {

constexpr int kTimeMode = 2;

}  // namespace

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

// The lines on the plot follow the table. The record stays, so the sensor is asked nothing.
void frmAlarmSpectrum::RedrawOverlay() {
  if (OverlayAxis()) overlay_.RedrawBands();
}

std::string frmAlarmSpectrum::NoticeOfRange() const {
  return RangeNoticeText(AlarmBandTable, edits_.History().Ranges(), CurrentRange());
}

void frmAlarmSpectrum::KeepThresholdsInG() {
  panel_->grid->Commit();
  if (!transfer_.Running()) Finish(edits_.KeepInG(Context()));
}

void frmAlarmSpectrum::KeepThresholdCodes() {
  edits_.History().MeanFor(CurrentRange());
  Refresh();
}

void frmAlarmSpectrum::Refresh() {
  const int option = OverlayOption();
  const BandScale scale = CurrentScale();
  const bool rescaled = model_.Scale() != scale;
  edits_.History().MeanUnknownFor(CurrentRange());
  model_.Show(option, scale);
  panel_->lblBins->setText(tr("Bin 255: %1").arg(BinFrequencyText(kLastBin, option)));
  panel_->lblRange->setText(scale.Known()
                                ? tr("Range %1, up to %2 g")
                                      .arg(QString::fromStdString(gRecCtrl->RangeString()),
                                           QString::fromStdString(CellText(3, 65535, scale)))
                                : tr("Range not known"));
  panel_->lblState->setText(
      QString::fromStdString(StateText(AlarmBandTable, SensorHolds(), option)));
  panel_->rangeNotice->Show(NoticeOfRange());
  if (rangeNoted) rangeNoted(NoticeOfRange());
  ShowSteps();
  ShowHint();
  if (rescaled) RedrawOverlay();
  if (unread_)
    QMetaObject::invokeMethod(
        this, [this] { ReadOpened(); }, Qt::QueuedConnection);
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
  if (gRecCtrl && gRecCtrl->RecModeCode() == kTimeMode && CurrentScale().Known()) {
    hint += " " + tr("The mode is Manual Time: thresholds are shown on the scale of time records. "
                     "Alarms are judged on spectra, where each of them counts half.");
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
