// How the controls of set-ups are laid out and filled.
// SPDX-License-Identifier: MIT
#include "ui/setup/setups_panel.h"

#include <QHBoxLayout>
#include <QSignalBlocker>
#include <QVBoxLayout>

#include "ui/parts/local_time.h"
#include "ui/parts/widgets.h"

namespace kestrel {
namespace {

constexpr int kNameRole = Qt::UserRole;
constexpr int kNoteLines = 5;

QLabel* MakeLine(const char* name) {
  QLabel* label = MakeLabel(name, "");
  label->setWordWrap(true);
  label->setTextFormat(Qt::PlainText);
  label->setTextInteractionFlags(Qt::TextSelectableByMouse);
  label->setAlignment(Qt::AlignTop | Qt::AlignLeft);
  return label;
}

QListWidgetItem* MakeItem(const setup::SetupStore::Entry& entry) {
  const QString name = Text(entry.name);
  auto* item = new QListWidgetItem;
  item->setData(kNameRole, name);
  if (entry.setup) {
    item->setText(name);
    item->setToolTip(
        SetupsPanel::tr("Saved %1, %2")
            .arg(LocalTime(entry.setup->when), entry.setup->sensor.simulated
                                                   ? SetupsPanel::tr("from the simulated sensor")
                                                   : Text(entry.setup->sensor.interface)));
  } else {
    item->setText(SetupsPanel::tr("%1 (cannot be read)").arg(name));
    item->setToolTip(Text(entry.trouble));
  }
  return item;
}

}  // namespace

SetupsPanel::SetupsPanel()
    : lstSetups(new QListWidget),
      txtSetupName(new QLineEdit),
      cmdSave(MakeButton("cmdSave", tr("&Save"),
                         tr("Read registers and bands of all options, and keep them under this "
                            "name"))),
      cmdCompare(MakeButton("cmdCompare", tr("&Compare"),
                            tr("Read the sensor and show where it differs"))),
      cmdRestore(MakeButton("cmdRestore", tr("&Restore..."),
                            tr("Write what differs into the sensor and read it back"))),
      cmdExport(MakeButton("cmdExport", tr("&Export..."), tr("Write this set-up to a file"))),
      cmdImport(MakeButton("cmdImport", tr("&Import..."), tr("Keep the set-up of a file"))),
      cmdDelete(MakeButton("cmdDelete", tr("&Delete..."), tr("Delete this set-up"))),
      cmdCancel(MakeButton("cmdCancel", tr("Ca&ncel"), tr("End before the next band"))),
      cmdClose(MakeButton("cmdClose", tr("C&lose"), tr("Close this window"))),
      ckFlash(MakeCheckBox("ckFlash", tr("Also save the registers in the sensor's &flash"),
                           tr("They are then there after a loss of power"))),
      ckKeepNulls(MakeCheckBox("ckKeepNulls", tr("Leave the &offset corrections as they are"),
                               tr("X_NULL, Y_NULL and Z_NULL belong to one sensor"))),
      lblState(MakeLine("lblState")),
      lblNote(MakeLine("lblNote")),
      prgTransfer(new QProgressBar),
      tblDifference(new TextTable("tblDifference")) {
  lstSetups->setObjectName("lstSetups");
  lstSetups->setSpacing(2);
  lstSetups->setAccessibleName(tr("Saved set-ups"));
  txtSetupName->setObjectName("txtSetupName");
  txtSetupName->setToolTip(tr("Name under which the sensor's set-up is saved"));
  prgTransfer->setObjectName("prgTransfer");
  prgTransfer->setAccessibleName(tr("Progress of the transfer"));
  prgTransfer->setTextVisible(true);
  KeepPlaceWhileHidden(prgTransfer);
  KeepPlaceWhileHidden(cmdCancel);
  tblDifference->setAccessibleName(tr("Where the sensor differs from the set-up"));
  tblDifference->SetColumns({{.head = tr("Setting"), .alignment = Qt::AlignLeft},
                             {.head = tr("Saved"), .alignment = Qt::AlignLeft},
                             {.head = tr("In the sensor"), .alignment = Qt::AlignLeft}});
  auto* columns = new QHBoxLayout(this);
  columns->addWidget(left_ = MakeLeft());
  columns->addWidget(MakeRight(), 1);
  for (QPushButton* button : findChildren<QPushButton*>()) button->setAutoDefault(false);
  EndTransfer();
}

QWidget* SetupsPanel::MakeLeft() {
  auto* all = new QWidget;
  auto* column = new QVBoxLayout(all);
  column->setContentsMargins(0, 0, 0, 0);
  column->addWidget(MakeCaption(tr("Saved set-&ups"), lstSetups));
  column->addWidget(lstSetups, 1);
  for (QPushButton* button : {cmdExport, cmdImport, cmdDelete}) column->addWidget(button);
  all->setMaximumWidth(28 * fontMetrics().averageCharWidth());
  return all;
}

QLayout* SetupsPanel::MakeDeeds() {
  auto* name = new QHBoxLayout;
  name->addWidget(MakeCaption(tr("Na&me"), txtSetupName));
  name->addWidget(txtSetupName, 1);
  name->addWidget(cmdSave);
  return name;
}

// Room for notes and progress, so that nothing moves when there is something to tell.
QWidget* SetupsPanel::MakeRight() {
  auto* all = new QWidget;
  auto* column = new QVBoxLayout(all);
  column->setContentsMargins(0, 0, 0, 0);
  deeds_ = new QWidget;
  auto* inside = new QVBoxLayout(deeds_);
  inside->setContentsMargins(0, 0, 0, 0);
  inside->addLayout(MakeDeeds());
  inside->addWidget(lblState);
  inside->addWidget(tblDifference, 1);
  inside->addWidget(ckKeepNulls);
  inside->addWidget(ckFlash);
  auto* use = new QHBoxLayout;
  use->addWidget(cmdCompare);
  use->addWidget(cmdRestore);
  use->addStretch();
  inside->addLayout(use);
  column->addWidget(deeds_, 1);
  lblNote->setMinimumSize(60 * fontMetrics().averageCharWidth(),
                          kNoteLines * fontMetrics().lineSpacing());
  column->addWidget(lblNote);
  auto* last = new QHBoxLayout;
  last->addWidget(prgTransfer, 1);
  last->addWidget(cmdCancel);
  last->addWidget(cmdClose);
  column->addLayout(last);
  return all;
}

void SetupsPanel::ShowEntries(const std::vector<setup::SetupStore::Entry>& entries,
                              const QString& chosen) {
  const QSignalBlocker quiet(lstSetups);
  lstSetups->clear();
  for (const auto& entry : entries) {
    lstSetups->addItem(MakeItem(entry));
    if (Text(entry.name) == chosen) lstSetups->setCurrentRow(lstSetups->count() - 1);
  }
}

QString SetupsPanel::Chosen() const {
  const QListWidgetItem* item = lstSetups->currentItem();
  return item == nullptr ? QString() : item->data(kNameRole).toString();
}

void SetupsPanel::ShowDifference(const std::vector<setup::Difference>& all) {
  std::vector<std::vector<TextCell>> rows;
  for (const setup::Difference& one : all) {
    rows.push_back({{Text(one.place)}, {Text(one.saved)}, {Text(one.now)}});
  }
  tblDifference->SetHint(tr("Equal: nothing differs."));
  tblDifference->Model().SetRows(std::move(rows));
}

void SetupsPanel::ShowNoDifference(const QString& hint) {
  tblDifference->SetHint(hint);
  tblDifference->Model().SetRows({});
}

void SetupsPanel::ShowTransfer(const QString& activity, int done, int total) {
  left_->setEnabled(false);
  deeds_->setEnabled(false);
  prgTransfer->setFormat(activity + " %p %");
  prgTransfer->setRange(0, total);
  prgTransfer->setValue(done);
  prgTransfer->show();
  cmdCancel->show();
}

void SetupsPanel::EndTransfer() {
  left_->setEnabled(true);
  deeds_->setEnabled(true);
  prgTransfer->hide();
  cmdCancel->hide();
}

void SetupsPanel::EnableDeeds(bool hasChosen, bool canBeUsed) {
  cmdDelete->setEnabled(hasChosen);
  for (QPushButton* button : {cmdCompare, cmdRestore, cmdExport}) {
    button->setEnabled(hasChosen && canBeUsed);
  }
}

}  // namespace kestrel
