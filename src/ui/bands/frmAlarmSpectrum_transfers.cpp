// What the alarm editor does with the sensor and with files.
// SPDX-License-Identifier: MIT
#include <QPointer>
#include <QSignalBlocker>
#include <algorithm>
#include <vector>

#include "alarms/alarm_file.h"
#include "alarms/band_range.h"
#include "app/program_state.h"
#include "numeric/runtime_error.h"
#include "ui/bands/frmAlarmSpectrum.h"

namespace kestrel {
namespace {

QString RangeOfFile() {
  const std::int32_t range = CurrentRange();
  if (range == kRangeNotKnown) {
    return QObject::tr("The file holds codes; in g they can be shown once the range is known.");
  }
  return QObject::tr("The file holds codes; the g values shown hold good for the range %1.")
      .arg(QString::fromStdString(RangeName(range)));
}

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
  panel_->grid->Commit();
  bool begun = false;
  bool complete = false;
  Edge().RunIdle(name, [&] {
    begun = true;
    cancelled_ = false;
    const HandlerEdge::Occupation occupation(Edge());
    const TransferMode mode(*panel_);
    transfer();
    complete = !cancelled_ && core_.registers.Reachable();
  });
  if (!begun) SetMessage("The sensor is busy with something else. Nothing was transferred.");
  KeepStep(step);
  RedrawOverlay();
  if (closeAfterTransfer_) {
    closeAfterTransfer_ = false;
    reject();
  }
  if (taking_) {
    QMetaObject::invokeMethod(
        this, [this] { TakeWaiting(); }, Qt::QueuedConnection);
  }
  return complete;
}

bool frmAlarmSpectrum::ReadAll(const char* name) {
  const BandTable before = AlarmBandTable;
  const std::vector<BandPlace> edited = EditedValues(before, SensorHolds());
  const bool complete =
      Transfer(name, "reading from the sensor", [this] { transfer_.ReadAllFlash(); });
  whole_ = whole_ || complete;
  const auto replaced = std::count_if(edited.begin(), edited.end(), [&](const BandPlace& place) {
    return ValueAt(before, place) != ValueAt(AlarmBandTable, place);
  });
  if (replaced > 0) {
    AddToMessage(
        tr("Values replaced that had not been written: %1. Undo brings them back.").arg(replaced));
  }
  return complete;
}

// The reading that belongs to the opening, once the sensor is free.
void frmAlarmSpectrum::ReadOpened() {
  // A main window that was closed takes this one along: the sensor is left alone from then on.
  const bool leaving = parentWidget() != nullptr && !parentWidget()->isVisible();
  if (!unread_ || !isVisible() || leaving || !Edge().Resting()) return;
  unread_ = false;
  const BandTable entered = AlarmBandTable;
  const bool untouched = entered == BandTable{} && edits_.History().NextUndo().empty();
  const bool read = opened_ == entered ? ReadAll("Form_Load") : ReadAround(entered);
  // There is nothing to go back to.
  if (untouched) edits_.History().Restart();
  DisplaySelected();
  const bool named = !panel_->cbxAfiles->currentText().isEmpty();
  if (read && !named) panel_->cbxAfiles->setEditText(kReadFromFlash);
}

// What was entered while the reading had to wait stays; a file that was loaded stays whole.
bool frmAlarmSpectrum::ReadAround(const BandTable& entered) {
  const bool read =
      Transfer("Form_Load", "reading from the sensor", [this] { transfer_.ReadAllFlash(); });
  whole_ = whole_ || read;
  const auto kept = ChangedPlaces(opened_.value_or(AlarmBandTable), entered);
  for (const BandPlace& place : kept) {
    ChangeableBands()(place.field, place.band, place.option) = ValueAt(entered, place);
  }
  KeepStep("what was entered before the reading");
  AddToMessage(tr("Values entered before that were kept: %1.").arg(kept.size()));
  return read;
}

// Writing begins by clearing the sensor, so a table that holds less than it would lose bands.
std::string frmAlarmSpectrum::WhyNotWritten() const {
  if (unread_) {
    return "Not written: the sensor's own bands have not been read yet and would be lost. They are "
           "read as soon as the sensor is free.";
  }
  if (!whole_) {
    return "Not written: the sensor's own bands were not all read and would be lost. Press Read "
           "all or load a file first.";
  }
  return "";
}

void frmAlarmSpectrum::ForgetSensor() {
  transfer_.ForgetSensor();
  Refresh();
}

void frmAlarmSpectrum::cmdReadAll_Click() {
  ReadAll("cmdReadAll_Click");
}

void frmAlarmSpectrum::cmdWriteAll_Click() {
  const std::string reason = WhyNotWritten();
  if (!reason.empty()) {
    SetMessage(reason);
    return;
  }
  Transfer("cmdWriteAll_Click", "writing to the sensor", [this] { transfer_.cmdWriteAll_Click(); });
}

void frmAlarmSpectrum::cmdClearAll_Click() {
  const BandTable before = AlarmBandTable;
  const bool cleared = Transfer("cmdClearAll_Click", "clearing all bands",
                                [this] { transfer_.cmdClearAll_Click(); });
  whole_ = whole_ || cleared;
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

// What a bad line leaves behind is one step, too. The window that tells of the reading lets events
// run, so a press may come while an earlier one is still at work.
void frmAlarmSpectrum::cmdReadFile_Click() {
  if (reading_) return;
  const std::string name = panel_->cbxAfiles->currentText().toStdString();
  if (name.empty() || name == kReadFromFlash) {
    ListFiles();
    SetMessage(panel_->cbxAfiles->count() == 0
                   ? "Not loaded: there is no alarm file yet in " + files_.PlacesText() + "."
                   : "Not loaded. Choose an alarm file from the list first.");
    return;
  }
  int taken = 0;
  Edge().Run("cmdReadFile_Click", [&] { taken = files_.ReadFile(name); });
  HideReading();
  if (taken > 0) AddToMessage(RangeOfFile());
  if (taken >= kAlarmBands * kSampleRateOptions) {
    whole_ = true;
    opened_.reset();
  }
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
  panel_->grid->Commit();
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
  if (isVisible()) activateWindow();
}

}  // namespace kestrel
