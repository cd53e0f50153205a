// What is done with the records that are selected in the library.
// SPDX-License-Identifier: MIT
#include <QInputDialog>
#include <QMessageBox>
#include <algorithm>

#include "ui/library/keeper_text.h"
#include "ui/library/library_edits.h"
#include "ui/library/library_view.h"
#include "ui/parts/local_time.h"

namespace kestrel {
namespace {

constexpr double kBytesOfMegabyte = 1e6;

}  // namespace

std::vector<ArchiveId> LibraryView::Chosen() const {
  return table_ != nullptr ? table_->Chosen() : std::vector<ArchiveId>();
}

void LibraryView::AddRowAction(QAction* action) {
  if (table_ == nullptr) return;
  table_->addAction(action);
  table_->setContextMenuPolicy(Qt::ActionsContextMenu);
}

void LibraryView::ShowChosen() {
  if (!library_) return;
  if (remarks_->IsEdited()) TakeRemarks();  // nothing that was written is lost
  const std::vector<ArchiveId> ids = Chosen();
  const auto count = static_cast<int>(ids.size());
  for (std::size_t i = 0; i < ways_.size(); ++i) {
    const WayRange range = RangeOf(static_cast<Way>(i));
    ways_[i]->setEnabled(count >= range.least && count <= range.most);
  }
  cmdDelete_->setEnabled(count > 0);
  cmdExport_->setEnabled(count > 0);
  for (const auto& take : mnuTake_) {
    if (take) take->setEnabled(count > 0);
  }
  remarked_ = ids;
  std::vector<archive::Remarks> remarks;
  for (const ArchiveId id : ids) {
    const LibraryRow* row = model_->Known(id);
    if (row != nullptr) remarks.push_back(row->remarks);
  }
  const bool isAllKnown = remarks.size() == ids.size();
  if (!isAllKnown) remarks.clear();
  const LibraryRow* first = ids.empty() ? nullptr : model_->Known(ids.front());
  const QString title = ids.empty()  ? tr("No record selected")
                        : count == 1 ? (first != nullptr ? LocalTime(first->time) : QString())
                        : isAllKnown ? CountOf(count, tr("record"), tr("records"))
                                     : tr("%L1 records, not all read yet").arg(count);
  remarks_->Show(title, remarks);
  ShowCounts();
}

void LibraryView::Look(Way way) {
  std::vector<ArchiveId> ids = Chosen();
  const auto count = static_cast<int>(ids.size());
  if (count < RangeOf(way).least || count > RangeOf(way).most) return;
  library_->Load(std::move(ids), [this, way](const std::vector<study::RecordPointer>& records) {
    if (records.empty()) return;
    const QString said = LookAt(study_, way, records);
    if (!said.isEmpty()) emit Said(said);
  });
}

void LibraryView::TakeRemarks() {
  const archive::RemarksChange change = remarks_->Change();
  if (!remarked_.empty() && !change.IsNone()) {
    edits_.push(new RemarksEdit(*library_, remarked_, change));
  }
  remarks_->Settle();
}

void LibraryView::AskDelete() {
  std::vector<ArchiveId> ids = Chosen();
  if (ids.empty()) return;
  auto* box = new QMessageBox(
      QMessageBox::Question, tr("Delete"),
      tr("Delete %1? They can be brought back until the program closes.")
          .arg(CountOf(static_cast<std::int64_t>(ids.size()), tr("record"), tr("records"))),
      QMessageBox::Cancel, this);
  if (ids.size() == 1) {
    box->setText(tr("Delete 1 record? It can be brought back until the program closes."));
  }
  box->setObjectName("askDelete");
  box->setAttribute(Qt::WA_DeleteOnClose);
  box->setTextFormat(Qt::PlainText);
  QPushButton* yes = box->addButton(tr("&Delete"), QMessageBox::AcceptRole);
  box->setDefaultButton(yes);
  connect(box, &QMessageBox::accepted, this, [this, ids = std::move(ids)] {
    edits_.push(new Deletion(*library_, ids));
    table_->setFocus();
  });
  box->open();
}

void LibraryView::AskLimit() {
  auto* dialog = new QInputDialog(this);
  dialog->setObjectName("askLimit");
  dialog->setAttribute(Qt::WA_DeleteOnClose);
  dialog->setWindowTitle(tr("Size limit"));
  dialog->setInputMode(QInputDialog::DoubleInput);
  dialog->setLabelText(
      tr("The archive's largest size in MB; 0 for no limit. Beyond it the oldest records go first, "
         "and what went is said. Those with a note, a tag or an alarm stay."));
  dialog->setDoubleRange(0, 1e9);
  dialog->setDoubleDecimals(0);
  dialog->setDoubleValue(static_cast<double>(keeper_->Limit().value_or(0)) / kBytesOfMegabyte);
  connect(dialog, &QInputDialog::doubleValueSelected, this, [this](double megabytes) {
    const auto bytes = static_cast<std::int64_t>(megabytes * kBytesOfMegabyte);
    keeper_->SetLimit(bytes > 0 ? std::optional(bytes) : std::nullopt);
  });
  dialog->open();
}

void LibraryView::SetExport(Exports exports) {
  exports_ = std::move(exports);
  cmdExport_->setVisible(exports_ && library_);
}

void LibraryView::AddActions(QMenu& menu) {
  QAction* undo = edits_.createUndoAction(&menu, tr("&Undo"));
  undo->setObjectName("mnuUndo");
  undo->setShortcut(QKeySequence::Undo);
  QAction* redo = edits_.createRedoAction(&menu, tr("&Redo"));
  redo->setObjectName("mnuRedo");
  redo->setShortcuts({QKeySequence(Qt::CTRL | Qt::Key_Y), QKeySequence(QKeySequence::Redo)});
  menu.addAction(undo);
  menu.addAction(redo);
  menu.addSeparator();
  QAction* remarks = menu.addAction(tr("&Edit remarks"), this, [this] { remarks_->FocusFirst(); });
  remarks->setObjectName("mnuRemarks");
  remarks->setShortcut(Qt::Key_F2);
  menu.addAction(tr("&Delete..."), this, &LibraryView::AskDelete)->setObjectName("mnuDelete");
  menu.addSeparator();
  for (const bool areGood : {true, false}) {
    QAction* take = menu.addAction(areGood ? tr("Take as known &good") : tr("Take as known &bad"),
                                   this, [this, areGood] {
                                     if (taken_) taken_(Chosen(), areGood);
                                   });
    take->setObjectName(areGood ? "mnuTakeGood" : "mnuTakeBad");
    take->setToolTip(tr("Records selected in the library, for the view Alarm bands"));
    mnuTake_[areGood ? 0 : 1] = take;
  }
  ShowChosen();
  menu.addSeparator();
  mnuKeep_ = menu.addAction(tr("&Keep every record"));
  mnuKeep_->setObjectName("mnuKeepEvery");
  mnuKeep_->setCheckable(true);
  mnuKeep_->setChecked(keeper_ != nullptr && keeper_->IsOn());
  connect(mnuKeep_, &QAction::triggered, this, [this](bool isOn) { keeper_->SwitchOn(isOn); });
  menu.addAction(tr("Size &limit..."), this, &LibraryView::AskLimit)->setObjectName("mnuLimit");
  if (library_) return;
  for (QAction* action : menu.actions()) action->setEnabled(false);
}

}  // namespace kestrel
