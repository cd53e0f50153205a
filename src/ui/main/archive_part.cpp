// The archive's menu entry, line and question.
// SPDX-License-Identifier: MIT
#include "ui/main/archive_part.h"

#include <QStatusBar>

#include "ui/library/keeper_text.h"

namespace kestrel {
namespace {

constexpr std::chrono::seconds kPatience{3};
constexpr std::chrono::seconds kLastPatience{10};

}  // namespace

ArchivePart::ArchivePart(const Parts& parts) : parts_(parts), lblArchive_(new LineLabel) {
  lblArchive_->setObjectName("lblArchive");
  lblArchive_->setTextFormat(Qt::PlainText);
  parts_.window.statusBar()->addWidget(lblArchive_, 1);
  connect(parts_.menu.mnuKeepRecords, &QAction::triggered, this,
          [this](bool isOn) { parts_.keeper.SwitchOn(isOn); });
  connect(&parts_.keeper, &RecordKeeper::StateChanged, this, [this] { Show(); });
  connect(&parts_.keeper, &RecordKeeper::ChoiceChanged, this, [this] { Show(); });
  Show();
}

void ArchivePart::Show() {
  QAction& entry = *parts_.menu.mnuKeepRecords;
  const bool hasPlace = parts_.keeper.HasPlace();
  entry.setEnabled(hasPlace);
  entry.setChecked(parts_.keeper.IsOn());
  entry.setToolTip(
      hasPlace ? tr("Into the archive %1").arg(QString::fromStdString(Shown(parts_.keeper.Place())))
               : tr("The program was started without an archive"));
  const QString text = KeeperText(parts_.keeper.State());
  lblArchive_->setText(text);
  lblArchive_->setToolTip(text);
  lblArchive_->setVisible(!text.isEmpty());
}

bool ArchivePart::Finish(std::chrono::milliseconds patience) {
  if (parts_.keeper.Finish(std::chrono::milliseconds(0))) return true;
  parts_.pointer.ShowHourglass();
  const bool isDone = parts_.keeper.Finish(patience);
  parts_.pointer.ShowDefault();
  return isDone;
}

bool ArchivePart::MayClose() {
  if (Finish(kPatience)) return true;
  const QString text =
      tr("%1\n\nWhat is in memory only is lost when the program closes. Save tries once more to "
         "archive it, for %2 seconds.")
          .arg(KeeperText(parts_.keeper.State()))
          .arg(kLastPatience.count());
  switch (parts_.messages.AskToSave(text.toStdString())) {
    case Unsaved::Save:
      return Finish(kLastPatience);
    case Unsaved::Discard:
      return true;
    default:
      return false;
  }
}

}  // namespace kestrel
