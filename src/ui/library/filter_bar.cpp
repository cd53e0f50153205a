// How the filters are laid out and read.
// SPDX-License-Identifier: MIT
#include "ui/library/filter_bar.h"

#include <QDateTime>
#include <QHBoxLayout>
#include <QLabel>
#include <QSignalBlocker>
#include <QVBoxLayout>

#include "ui/library/archive_widgets.h"
#include "ui/parts/widgets.h"

namespace kestrel {
namespace {

constexpr int kTypingMs = 200;

enum TimeRange { kAllTimes, kToday, kSevenDays, kThirtyDays, kBetween };

std::chrono::system_clock::time_point StartOf(QDate day) {
  return std::chrono::system_clock::time_point(
      std::chrono::milliseconds(day.startOfDay().toMSecsSinceEpoch()));
}

QLineEdit* MakeText(const char* name, const QString& hint, const QString& accessibleName) {
  auto* text = new QLineEdit;
  text->setObjectName(name);
  text->setPlaceholderText(hint);
  text->setAccessibleName(accessibleName);
  text->setToolTip(accessibleName);
  text->setClearButtonEnabled(true);
  return text;
}

QDateEdit* MakeDate(const char* name, const QString& accessibleName) {
  auto* date = new QDateEdit(QDate::currentDate());
  date->setObjectName(name);
  date->setAccessibleName(accessibleName);
  date->setToolTip(accessibleName);
  date->setDisplayFormat(QStringLiteral("yyyy-MM-dd"));
  date->setCalendarPopup(true);
  return date;
}

}  // namespace

FilterBar::FilterBar()
    : cmdCalendar(new FlatButton("cmdCalendar", tr("Calendar"), "cal")),
      txtText_(MakeText("txtLibraryText", tr("Machine, point, note, tag"), tr("Text to look for"))),
      cbxTime_(MakeComboBox("cbxLibraryTime", tr("When"), tr("When the records were taken"))),
      dateFrom_(MakeDate("dateFrom", tr("From this day"))),
      dateUntil_(MakeDate("dateUntil", tr("Until this day, which is part of it"))),
      cbxMachine_(MakeComboBox("cbxLibraryMachine", tr("Machine"), tr("Machine"))),
      cbxPoint_(MakeComboBox("cbxLibraryPoint", tr("Point"), tr("Measuring point"))),
      cbxKind_(MakeComboBox("cbxLibraryKind", tr("Kind"), tr("Kind of record"))),
      cbxOption_(MakeComboBox("cbxLibraryOption", tr("Option"), tr("Sample-rate option"))),
      cbxAlarm_(MakeComboBox("cbxLibraryAlarm", tr("Alarm"), tr("Whether an alarm was on"))),
      txtTag_(MakeText("txtLibraryTag", tr("Tag"), tr("A tag, as it is written"))),
      cmdClear_(new FlatButton("cmdClearFilter", tr("Show all"), "fit")) {
  setObjectName("filterBar");
  cmdCalendar->setToolTip(tr("Choose a day that has records"));
  cmdClear_->setToolTip(tr("Take all filters away"));
  cbxTime_->addItems({tr("Any time"), tr("Today"), tr("7 days"), tr("30 days"), tr("Between")});
  cbxKind_->addItem(tr("All kinds"));
  cbxKind_->addItem(tr("Spectra"), static_cast<int>(RecordKind::Spectrum));
  cbxKind_->addItem(tr("Time records"), static_cast<int>(RecordKind::Time));
  cbxOption_->addItem(tr("All options"));
  for (int i = 0; i < 4; ++i) cbxOption_->addItem(tr("Option %1").arg(i), i);
  cbxAlarm_->addItem(tr("Alarm or not"));
  cbxAlarm_->addItem(tr("With alarm"), true);
  cbxAlarm_->addItem(tr("Without alarm"), false);
  SetChoices({});
  LayOut();
  Connect();
  ShowDays();
}

void FilterBar::LayOut() {
  auto* upper = new QHBoxLayout;
  txtText_->setMinimumWidth(180);
  upper->addWidget(txtText_, 1);
  for (QWidget* control :
       std::initializer_list<QWidget*>{cbxTime_, dateFrom_, dateUntil_, cmdCalendar, cmdClear_}) {
    upper->addWidget(control);
  }
  auto* lower = new QHBoxLayout;
  for (QComboBox* list : {cbxMachine_, cbxPoint_}) {
    list->setSizeAdjustPolicy(QComboBox::AdjustToContents);
    lower->addWidget(list, 1);
  }
  for (QWidget* control :
       std::initializer_list<QWidget*>{cbxKind_, cbxOption_, cbxAlarm_, txtTag_}) {
    lower->addWidget(control);
  }
  auto* rows = new QVBoxLayout(this);
  rows->setContentsMargins(8, 8, 8, 8);
  rows->setSpacing(8);
  for (QHBoxLayout* row : {upper, lower}) {
    row->setSpacing(8);
    rows->addLayout(row);
  }
}

void FilterBar::Connect() {
  typing_.setSingleShot(true);
  typing_.setInterval(kTypingMs);
  connect(&typing_, &QTimer::timeout, this, &FilterBar::Ask);
  for (QLineEdit* text : {txtText_, txtTag_}) {
    connect(text, &QLineEdit::textChanged, &typing_, qOverload<>(&QTimer::start));
    connect(text, &QLineEdit::returnPressed, this, &FilterBar::Ask);
  }
  for (QComboBox* list : {cbxTime_, cbxPoint_, cbxKind_, cbxOption_, cbxAlarm_}) {
    connect(list, &QComboBox::currentIndexChanged, this, &FilterBar::Ask);
  }
  connect(cbxMachine_, &QComboBox::currentIndexChanged, this, [this] {
    const QSignalBlocker blocker(cbxPoint_);
    cbxPoint_->setCurrentIndex(0);
    emit MachineChosen();
    Ask();
  });
  for (QDateEdit* date : {dateFrom_, dateUntil_}) {
    connect(date, &QDateEdit::dateChanged, this, &FilterBar::Ask);
  }
  connect(cmdClear_, &QToolButton::clicked, this, &FilterBar::Clear);
}

void FilterBar::Ask() {
  typing_.stop();
  ShowDays();
  cmdClear_->setEnabled(!IsClear());
  emit Changed();
}

void FilterBar::ShowDays() {
  for (QDateEdit* date : {dateFrom_, dateUntil_}) {
    date->setVisible(cbxTime_->currentIndex() == kBetween);
  }
}

void FilterBar::SetChoices(const LibraryChoices& choices) {
  FillChoices(*cbxMachine_, tr("All machines"), choices.machines, tr("No machine noted"));
  FillChoices(*cbxPoint_, tr("All points"), choices.points, tr("No point noted"));
}

void FilterBar::ChooseDay(QDate day) {
  for (QDateEdit* date : {dateFrom_, dateUntil_}) {
    const QSignalBlocker blocker(date);
    date->setDate(day);
  }
  const QSignalBlocker blocker(cbxTime_);
  cbxTime_->setCurrentIndex(kBetween);
  Ask();
}

void FilterBar::Clear() {
  for (QComboBox* list : {cbxTime_, cbxMachine_, cbxPoint_, cbxKind_, cbxOption_, cbxAlarm_}) {
    const QSignalBlocker blocker(list);
    list->setCurrentIndex(0);
  }
  txtText_->clear();
  txtTag_->clear();
  Ask();
}

bool FilterBar::IsClear() const {
  return Filter(QDate::currentDate()) == archive::Filter{};
}

std::string FilterBar::Machine() const {
  return cbxMachine_->currentData().toString().toStdString();
}

template <typename Value>
std::optional<Value> FilterBar::Chosen(const QComboBox& list) const {
  const QVariant chosen = list.currentData();
  return chosen.isValid() ? std::optional(chosen.value<Value>()) : std::nullopt;
}

archive::Filter FilterBar::Filter(QDate today) const {
  archive::Filter filter;
  const int range = cbxTime_->currentIndex();
  if (range == kToday) filter.from = StartOf(today);
  if (range == kSevenDays) filter.from = StartOf(today.addDays(-6));
  if (range == kThirtyDays) filter.from = StartOf(today.addDays(-29));
  if (range == kBetween) {
    filter.from = StartOf(std::min(dateFrom_->date(), dateUntil_->date()));
    filter.until = StartOf(std::max(dateFrom_->date(), dateUntil_->date()).addDays(1));
  }
  if (const auto machine = Chosen<QString>(*cbxMachine_)) filter.machine = machine->toStdString();
  if (const auto point = Chosen<QString>(*cbxPoint_)) filter.point = point->toStdString();
  if (const auto kind = Chosen<int>(*cbxKind_)) filter.kind = static_cast<RecordKind>(*kind);
  filter.option = Chosen<int>(*cbxOption_);
  filter.alarm = Chosen<bool>(*cbxAlarm_);
  filter.tag = txtTag_->text().trimmed().toStdString();
  filter.text = txtText_->text().trimmed().toStdString();
  return filter;
}

}  // namespace kestrel
