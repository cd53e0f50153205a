// The lists and boxes of the record settings.
// SPDX-License-Identifier: MIT
#include "ui/panels/record_panel.h"

#include <QFormLayout>
#include <QHBoxLayout>
#include <QSignalBlocker>
#include <span>

#include "device/rec_ctrl.h"
#include "numeric/number_format.h"
#include "record/frequency.h"
#include "ui/parts/widgets.h"

namespace kestrel {
namespace {

constexpr int kLargestCount = 255;
constexpr int kLastStoredRecord = 15;

QHBoxLayout* SideBySide(std::initializer_list<QWidget*> widgets) {
  auto* row = new QHBoxLayout;
  for (QWidget* widget : widgets) row->addWidget(widget);
  return row;
}

QStringList Texts(std::span<const char* const> texts) {
  return {texts.begin(), texts.end()};
}

}  // namespace

RecordPanel::RecordPanel(QLabel* lblRecCount)
    : cmdGetRecord(MakeButton("cmdGetRecord", tr("Get reco&rd"),
                              tr("Read the stored record out of the sensor's flash memory"))),
      cmdRecInfo(MakeButton("cmdRecInfo", tr("Info..."),
                            tr("How the record in the sensor's buffers was taken"))),
      lblRecCount_(lblRecCount) {
  setObjectName("FraCap");
  setTitle(tr("Record settings"));
  cmdRecInfo->setAccessibleName(tr("Record information..."));
  BuildLists();
  BuildBoxes();
  LayOut();
  Connect();
}

void RecordPanel::BuildLists() {
  const auto add = [this](Setting setting, const char* name, const QString& what,
                          const QString& toolTip, std::optional<int> last = {}) {
    lists_[static_cast<std::size_t>(setting)] = MakeComboBox(name, what, toolTip, last);
  };
  add(Setting::RecMode, "cbxRecMode", tr("Record mode"),
      tr("Manual and timer captures give spectra, manual time captures give time records"));
  add(Setting::Window, "cbxWindow", tr("FFT window"), tr("Window applied before the FFT"));
  add(Setting::SignalRange, "cbxSignalRange", tr("Signal range"), tr("Full scale of the sensor"));
  add(Setting::Storage, "cbxStorage", tr("Record storage"),
      tr("Which records the sensor keeps in its flash memory"));
  add(Setting::Units, "cbxUnits", tr("Time unit of the recording period"),
      tr("Time unit of the recording period"));
  add(Setting::Interval, "cbxInterval", tr("Recording period"),
      tr("Time between two captures in timer mode"), kLargestCount);
  add(Setting::FftAvgs, "cbxFFTAvgs", tr("FFT averages"),
      tr("Number of spectra averaged into one record"), kLargestCount);
  add(Setting::RecPntr, "cbxRecPntr", tr("Stored record"),
      tr("Number of the stored record to retrieve"), kLastStoredRecord);
}

void RecordPanel::BuildBoxes() {
  for (std::size_t bit = 0; bit < kRateBits; ++bit) {
    const QString name = QString("ckBW%1").arg(bit);
    const QString weight = QString::number(1 << bit);
    ckBW_[bit] = MakeCheckBox(name, weight, tr("Adds %1 to the sample-rate option").arg(weight));
    ckBW_[bit]->setAccessibleName(tr("Sample-rate option plus %1").arg(weight));
  }
  lblSampleRate_ = MakeLabel("lblSampleRate", "");
  ckPowerDown_ = MakeCheckBox("ckPowerDown", tr("Po&wer-down between records"),
                              tr("Power-down bit as the sensor holds it"));
}

void RecordPanel::LayOut() {
  auto* form = new QFormLayout(this);
  form->setFieldGrowthPolicy(QFormLayout::AllNonFixedFieldsGrow);
  const auto add = [&](const QString& caption, Setting setting) {
    form->addRow(MakeCaption(caption, List(setting)), List(setting));
  };
  add(tr("&Mode"), Setting::RecMode);
  add(tr("Wi&ndow"), Setting::Window);
  add(tr("Ran&ge"), Setting::SignalRange);
  add(tr("S&torage"), Setting::Storage);
  add(tr("FFT &averages"), Setting::FftAvgs);
  form->addRow(MakeCaption(tr("Rate &option"), ckBW_[0]),
               SideBySide({ckBW_[0], ckBW_[1], ckBW_[2], ckBW_[3]}));
  form->addRow("", lblSampleRate_);
  // The two lists together are wider than the other ones: they take the room beside their caption.
  QHBoxLayout* every = SideBySide({MakeCaption(tr("E&very"), List(Setting::Interval)),
                                   List(Setting::Interval), List(Setting::Units)});
  every->setStretch(1, 1);
  every->setStretch(2, 1);
  form->addRow(every);
  NameUnseen(tr("Time unit"), List(Setting::Units));
  add(tr("Stored re&cord"), Setting::RecPntr);
  form->addRow(SideBySide({cmdGetRecord, cmdRecInfo}));
  form->addRow(ckPowerDown_);
  SetSpacing(RoomySpacing());
}

void RecordPanel::SetSpacing(const Spacing& spacing) {
  auto* form = qobject_cast<QFormLayout*>(layout());
  SpaceGroup(*form, spacing);
  form->setVerticalSpacing(spacing.control);
  form->setHorizontalSpacing(spacing.beside);
  for (auto* row : form->findChildren<QHBoxLayout*>()) row->setSpacing(spacing.beside);
}

void RecordPanel::Connect() {
  const auto list = [this](Setting setting, void (RecordPanel::*signal)()) {
    OnChosen(List(setting), this, [this, signal](int /*index*/) { emit(this->*signal)(); });
  };
  for (const Setting setting :
       {Setting::RecMode, Setting::Window, Setting::SignalRange, Setting::Storage}) {
    list(setting, &RecordPanel::RecCtrlChanged);
  }
  list(Setting::Units, &RecordPanel::RecPrdChanged);
  list(Setting::Interval, &RecordPanel::RecPrdChanged);
  list(Setting::FftAvgs, &RecordPanel::FftAvgsChanged);
  list(Setting::RecPntr, &RecordPanel::RecPntrChanged);
  for (QCheckBox* box : ckBW_) {
    connect(box, &QCheckBox::clicked, this, &RecordPanel::RecCtrlChanged);
    connect(box, &QCheckBox::toggled, this, &RecordPanel::ShowSampleRate);
  }
  connect(ckPowerDown_, &QCheckBox::clicked, this, &RecordPanel::RecCtrlChanged);
  ShowSampleRate();
}

void RecordPanel::FillLists() {
  const auto fill = [this](Setting setting, const QStringList& items) {
    const QSignalBlocker quiet(List(setting));
    List(setting)->clear();
    List(setting)->addItems(items);
  };
  fill(Setting::RecMode, {"Manual", "Timer", "Manual Time"});
  fill(Setting::Window, {"Rectangular", "Hanning", "Flat Top"});
  fill(Setting::SignalRange, {"0 to 1g", "0 to 5g", "0 to 20g", "0 to 70g"});
  fill(Setting::Storage, Texts(kStorageMethods));
  fill(Setting::Units, Texts(kTimeUnits));
  fill(Setting::FftAvgs, Numbers(kLargestCount));
  fill(Setting::RecPntr, Numbers(kLastStoredRecord));
  fill(Setting::Interval, Numbers(kLargestCount));
}

QComboBox* RecordPanel::List(Setting setting) const {
  return lists_[static_cast<std::size_t>(setting)];
}

int RecordPanel::Selected(Setting setting) {
  return List(setting)->currentIndex();
}

bool RecordPanel::Select(Setting setting, int index) {
  QComboBox* list = List(setting);
  if (index < 0 || index >= list->count()) return false;
  const QSignalBlocker quiet(list);
  list->setCurrentIndex(index);
  return true;
}

void RecordPanel::Deselect(Setting setting) {
  const QSignalBlocker quiet(List(setting));
  List(setting)->setCurrentIndex(-1);
}

bool RecordPanel::SampleRateBit(int bit) {
  return ckBW_.at(static_cast<std::size_t>(bit))->isChecked();
}

void RecordPanel::SetSampleRateBit(int bit, bool on) {
  ckBW_.at(static_cast<std::size_t>(bit))->setChecked(on);
}

bool RecordPanel::PowerDownTicked() {
  return ckPowerDown_->isChecked();
}
void RecordPanel::SetPowerDown(bool on) {
  ckPowerDown_->setChecked(on);
}

void RecordPanel::SetRecCount(const std::string& text) {
  lblRecCount_->setText(QString::fromStdString(text));
}

std::string RecordPanel::FraCapCaption() {
  return title().toStdString();
}
void RecordPanel::SetFraCapCaption(const std::string& text) {
  setTitle(QString::fromStdString(text));
}

QString RecordPanel::FftAvgsText() const {
  return List(Setting::FftAvgs)->currentText();
}

QString RecordPanel::PeriodInWords() const {
  return tr("every %1 %2")
      .arg(List(Setting::Interval)->currentText(), List(Setting::Units)->currentText().toLower());
}

// The sensor knows options 0 to 3; the upper two bits of the code mean nothing to it.
void RecordPanel::ShowSampleRate() {
  const int option = (ckBW_[0]->isChecked() ? 1 : 0) + (ckBW_[1]->isChecked() ? 2 : 0);
  lblSampleRate_->setText(
      tr("%1: %2 samples/s")
          .arg(option)
          .arg(QString::fromStdString(GroupedWholeNumber(SampleFrequency(option)))));
}

}  // namespace kestrel
