// Set-ups on their way to files and back.
// SPDX-License-Identifier: MIT
#include <QDir>
#include <QFileDialog>

#include "setup/setup_file.h"
#include "ui/setup/frmSetups.h"

namespace kestrel {
namespace {

std::filesystem::path PathOf(const QString& file) {
  return {file.toStdU16String()};
}

}  // namespace

void frmSetups::AskExport() {
  auto* dialog = new QFileDialog(this, tr("Export set-up"));
  dialog->setAttribute(Qt::WA_DeleteOnClose);
  dialog->setAcceptMode(QFileDialog::AcceptSave);
  dialog->setNameFilter(tr("Set-ups (*%1)").arg(setup::kSetupExtension));
  dialog->selectFile(QDir::home().filePath(panel_->Chosen() + setup::kSetupExtension));
  connect(dialog, &QFileDialog::fileSelected, this, [this](const QString& file) { Export(file); });
  dialog->open();
}

// The dialog has asked about a file that is there already.
void frmSetups::Export(const QString& file) {
  const auto saved = Chosen();
  if (!saved) return;
  Edge().Run("cmdExport_Click", [&] {
    setup::WriteSetup(core_.seams.files, PathOf(file), *saved);
    Note("Written: " + file.toStdString());
  });
}

void frmSetups::AskImport() {
  auto* dialog = new QFileDialog(this, tr("Import set-up"));
  dialog->setAttribute(Qt::WA_DeleteOnClose);
  dialog->setFileMode(QFileDialog::ExistingFile);
  dialog->setNameFilters(
      {tr("Set-ups (*%1)").arg(setup::kSetupExtension), tr("JSON (*.json)"), tr("All files (*)")});
  connect(dialog, &QFileDialog::fileSelected, this, [this](const QString& file) { Import(file); });
  dialog->open();
}

void frmSetups::Import(const QString& file) {
  const auto taken = setup::LoadSetup(core_.seams.files, PathOf(file));
  if (!taken) return Note("Not imported: " + taken.Why().Text());
  if (!MayKeep(taken->name)) return;
  Edge().Run("cmdImport_Click", [&] {
    store_.Save(*taken);
    Note("Kept as \"" + taken->name + "\".");
  });
  Refill(taken->name);
}

}  // namespace kestrel
