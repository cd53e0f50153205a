// What the user tells of the machine, and what the record shows of it.
// SPDX-License-Identifier: MIT
#include "ui/machine/known_panel.h"

#include <QAction>
#include <QEvent>
#include <QFormLayout>
#include <QHBoxLayout>
#include <QHeaderView>
#include <QShowEvent>
#include <QVBoxLayout>
#include <array>

#include "analysis/horizontal.h"
#include "ui/chart/look.h"
#include "ui/parts/widgets.h"
#include "ui/study/text_table.h"

namespace kestrel {
namespace {

enum Column { kName, kHz, kOrder, kLines, kColumns };
enum Mains { kNone, kFifty, kSixty, kOwn };

constexpr int kMostHarmonics = 50;

}  // namespace

KnownPanel::KnownPanel(StudyModel& model, QWidget* parent)
    : QWidget(parent),
      model_(model),
      speed_(new NumberField(QStringLiteral("shaftSpeed"), QStringLiteral("Shaft speed, rpm"),
                             {QStringLiteral("speed"), QStringLiteral("above 0 to 10,000,000 rpm"),
                              [](double rpm) { return analysis::IsSpeed(rpm); }, true})),
      fromPeak_(new QToolButton),
      mains_(new QComboBox),
      ownMains_(new NumberField(QStringLiteral("ownMains"), QStringLiteral("Line frequency, Hz"),
                                {QStringLiteral("frequency"),
                                 QStringLiteral("above 0 to 50,000 Hz"), study::IsFrequency})),
      harmonics_(new QSpinBox),
      table_(new QTableWidget(0, kColumns)),
      note_(new QLabel),
      add_(new QToolButton),
      remove_(new QToolButton) {
  setObjectName(QStringLiteral("knownPanel"));
  setAccessibleName(QStringLiteral("Known frequencies"));
  fromPeak_->setObjectName(QStringLiteral("speedFromPeak"));
  mains_->setObjectName(QStringLiteral("mains"));
  harmonics_->setObjectName(QStringLiteral("knownHarmonics"));
  table_->setObjectName(QStringLiteral("knownTable"));
  note_->setObjectName(QStringLiteral("knownNote"));
  add_->setObjectName(QStringLiteral("addKnown"));
  remove_->setObjectName(QStringLiteral("removeKnown"));
  setBackgroundRole(QPalette::Base);
  setAutoFillBackground(true);
  LayOut();
  Connect();
  Refresh();
}

void KnownPanel::LayOut() {
  fromPeak_->setText(QStringLiteral("From peak"));
  fromPeak_->setToolTip(
      QStringLiteral("Takes the frequency at the cursor, or of the largest peak, as the shaft's"));
  mains_->addItems({QStringLiteral("none"), QStringLiteral("50 Hz"), QStringLiteral("60 Hz"),
                    QStringLiteral("own")});
  mains_->setAccessibleName(QStringLiteral("Line frequency"));
  mains_->setToolTip(
      QStringLiteral("Of the mains that feed the machine; its multiples are marked"));
  harmonics_->setRange(1, kMostHarmonics);
  harmonics_->setKeyboardTracking(false);
  harmonics_->setAccessibleName(QStringLiteral("Harmonics that are marked"));
  SetUpMenu();
  remove_->setText(QStringLiteral("Remove"));
  remove_->setToolTip(QStringLiteral("Takes the selected frequency off the machine"));
  note_->setWordWrap(true);
  SetUpTable();

  auto* speed = new QHBoxLayout;
  speed->addWidget(speed_, 1, Qt::AlignTop);
  speed->addWidget(fromPeak_, 0, Qt::AlignTop);
  auto* mains = new QHBoxLayout;
  mains->addWidget(mains_, 1, Qt::AlignTop);
  mains->addWidget(ownMains_, 1, Qt::AlignTop);
  auto* form = new QFormLayout;
  form->addRow(QStringLiteral("Shaft speed, rpm"), speed);
  form->addRow(MakeCaption(QStringLiteral("Line frequency"), mains_), mains);
  form->addRow(QStringLiteral("Harmonics"), harmonics_);
  auto* buttons = new QHBoxLayout;
  buttons->addWidget(add_);
  buttons->addWidget(remove_);
  buttons->addStretch();
  auto* column = new QVBoxLayout(this);
  column->setContentsMargins(12, 8, 12, 8);
  column->addLayout(form);
  column->addWidget(table_, 1);
  column->addWidget(note_);
  column->addLayout(buttons);
}

void KnownPanel::SetUpMenu() {
  add_->setText(QStringLiteral("Add"));
  add_->setToolTip(QStringLiteral("A gear mesh, a bearing or a frequency of the machine"));
  add_->setPopupMode(QToolButton::InstantPopup);
  auto* menu = new QMenu(add_);
  menu->addAction(QStringLiteral("Gear mesh…"), this, &KnownPanel::AddMesh)
      ->setObjectName(QStringLiteral("addMesh"));
  menu->addAction(QStringLiteral("Bearing…"), this, &KnownPanel::AddBearing)
      ->setObjectName(QStringLiteral("addBearing"));
  menu->addAction(QStringLiteral("Frequency…"), this, &KnownPanel::AddFrequency)
      ->setObjectName(QStringLiteral("addFrequency"));
  add_->setMenu(menu);
}

void KnownPanel::SetUpTable() {
  table_->setHorizontalHeaderLabels({QStringLiteral("Name"), QStringLiteral("Hz"),
                                     QStringLiteral("Order"), QStringLiteral("Lines")});
  table_->setAccessibleName(QStringLiteral("Known frequencies"));
  table_->setShowGrid(false);
  table_->setFrameShape(QFrame::NoFrame);
  table_->setSelectionBehavior(QAbstractItemView::SelectRows);
  table_->setSelectionMode(QAbstractItemView::SingleSelection);
  table_->setEditTriggers(QAbstractItemView::NoEditTriggers);
  table_->setTabKeyNavigation(false);
  table_->verticalHeader()->hide();
  table_->horizontalHeader()->setHighlightSections(false);
  table_->horizontalHeaderItem(kName)->setTextAlignment(Qt::AlignLeft | Qt::AlignVCenter);
  table_->horizontalHeader()->setSectionResizeMode(QHeaderView::ResizeToContents);
  table_->horizontalHeader()->setSectionResizeMode(kName, QHeaderView::Stretch);
}

void KnownPanel::Connect() {
  connect(&model_, &StudyModel::Changed, this, [this] {
    if (isVisible()) Refresh();
  });
  connect(speed_, &NumberField::Entered, this, [this](double rpm) {
    analysis::Machine machine = model_.Choice().machine;
    machine.rpm = rpm;
    Change(machine);
  });
  connect(speed_, &NumberField::Cleared, this, [this] {
    analysis::Machine machine = model_.Choice().machine;
    machine.rpm.reset();
    Change(machine);
  });
  connect(fromPeak_, &QToolButton::clicked, this, &KnownPanel::TakeSpeedFromPeak);
  connect(mains_, &QComboBox::activated, this, &KnownPanel::ChooseMains);
  connect(ownMains_, &NumberField::Entered, this, [this](double hz) {
    analysis::Machine machine = model_.Choice().machine;
    machine.lineHz = hz;
    Change(machine);
  });
  connect(harmonics_, &QSpinBox::valueChanged, this, [this](int harmonics) {
    analysis::Machine machine = model_.Choice().machine;
    machine.harmonics = harmonics;
    Change(machine);
  });
  connect(remove_, &QToolButton::clicked, this, &KnownPanel::RemoveSelected);
  connect(table_, &QTableWidget::itemSelectionChanged, this,
          [this] { remove_->setEnabled(!table_->selectedItems().isEmpty()); });
  connect(table_, &QTableWidget::itemChanged, this, [this](const QTableWidgetItem* item) {
    if (isFilling_ || item->column() != kName) return;
    const std::string name = item->text().toStdString();
    const bool isOn = item->checkState() == Qt::Checked;
    model_.Change([&](study::StudyChoice& choice) {
      if (isOn) {
        choice.knownOff.erase(name);
        choice.showKnown = true;
      } else {
        choice.knownOff.insert(name);
      }
    });
  });
}

void KnownPanel::Change(const analysis::Machine& machine) {
  model_.Change([&](study::StudyChoice& choice) { study::ChangeMachine(choice, machine); });
}

void KnownPanel::ChooseMains(int index) {
  isOwnMains_ = index == kOwn;
  analysis::Machine machine = model_.Choice().machine;
  if (index == kNone) machine.lineHz.reset();
  if (index == kFifty) machine.lineHz = 50;
  if (index == kSixty) machine.lineHz = 60;
  Change(machine);
  if (isOwnMains_) ownMains_->setFocus();
}

void KnownPanel::TakeSpeedFromPeak() {
  const auto hz = study::ShaftHzOf(model_.Get());
  if (!hz) {
    speed_->Say(Text(hz.Why().reason + " " + hz.Why().cure + "."));
    return;
  }
  analysis::Machine machine = model_.Choice().machine;
  machine.rpm = *hz * 60;
  Change(machine);
}

void KnownPanel::RemoveSelected() {
  const auto rows = study::KnownTableOf(model_.Get()).rows;
  const int row = table_->currentRow();
  if (row < 0 || row >= static_cast<int>(rows.size())) return;
  Change(study::Without(model_.Choice().machine, rows[static_cast<std::size_t>(row)].known));
}

std::string KnownPanel::LoadLibrary(const std::string& text) {
  study::ReadBearings read = study::BearingsFrom(text);
  library_ = std::move(read.bearings);
  std::string message;
  for (const std::string& line : read.messages) message += (message.empty() ? "" : "\n") + line;
  return message;
}

void KnownPanel::ShowMains() {
  const auto& hz = model_.Choice().machine.lineHz;
  const bool isOwn = isOwnMains_ || (hz && *hz != 50 && *hz != 60);
  mains_->setCurrentIndex(isOwn ? kOwn : !hz ? kNone : *hz == 50 ? kFifty : kSixty);
  ownMains_->setVisible(isOwn);
  if (ownMains_->Number() != hz) ownMains_->SetNumber(hz);
}

void KnownPanel::Refresh() {
  const analysis::Machine& machine = model_.Choice().machine;
  if (speed_->Number() != machine.rpm) speed_->SetNumber(machine.rpm);
  ShowMains();
  const QSignalBlocker quiet(harmonics_);
  harmonics_->setValue(machine.harmonics);
  const study::KnownTable table = study::KnownTableOf(model_.Get());
  FillTable(table);
  SetInk(*note_, Look::Of(palette()).muted);
  note_->setText(table.rows.empty() && table.note.empty()
                     ? QStringLiteral("Shaft, gears, bearings and mains that you name here are "
                                      "marked in the spectrum and named in the peak table.")
                     : Text(table.note));
  note_->setVisible(!note_->text().isEmpty());
}

void KnownPanel::FillTable(const study::KnownTable& table) {
  isFilling_ = true;
  const Look look = Look::Of(palette());
  table_->setRowCount(static_cast<int>(table.rows.size()));
  table_->verticalHeader()->setDefaultSectionSize(fontMetrics().height() + 9);
  for (int row = 0; row < table_->rowCount(); ++row) {
    const study::KnownRow& known = table.rows[static_cast<std::size_t>(row)];
    const std::array texts{known.name, known.frequency, known.order, known.lines};
    for (int column = 0; column < kColumns; ++column) {
      auto* item = table_->item(row, column);
      if (item == nullptr) {
        item = new QTableWidgetItem;
        table_->setItem(row, column, item);
      }
      item->setText(Text(texts[static_cast<std::size_t>(column)]));
      item->setData(Qt::AccessibleTextRole,
                    item->text().isEmpty() ? QStringLiteral("none") : item->text());
      item->setForeground(known.isSeen ? look.text : look.muted);
      item->setToolTip(Text(known.why));
      if (column != kName) item->setTextAlignment(Qt::AlignRight | Qt::AlignVCenter);
      if (column == kName) item->setCheckState(known.isOn ? Qt::Checked : Qt::Unchecked);
    }
  }
  remove_->setEnabled(!table_->selectedItems().isEmpty());
  isFilling_ = false;
}

void KnownPanel::showEvent(QShowEvent* event) {
  QWidget::showEvent(event);
  Refresh();
}

void KnownPanel::changeEvent(QEvent* event) {
  if (event->type() == QEvent::PaletteChange && table_ != nullptr) Refresh();
  QWidget::changeEvent(event);
}

}  // namespace kestrel
