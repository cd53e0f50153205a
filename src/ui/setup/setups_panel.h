// The controls of set-ups: their list, the difference to the sensor, what can be done.
// SPDX-License-Identifier: MIT
#pragma once

#include <QCheckBox>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QProgressBar>
#include <QPushButton>
#include <QWidget>
#include <vector>

#include "setup/difference.h"
#include "setup/setup_store.h"
#include "ui/study/text_table.h"

namespace kestrel {

class SetupsPanel : public QWidget {
  Q_OBJECT

 public:
  SetupsPanel();

  // The list, with the one of this name chosen where it is there.
  void ShowEntries(const std::vector<setup::SetupStore::Entry>& entries, const QString& chosen);
  // The name that is chosen; empty for none.
  [[nodiscard]] QString Chosen() const;
  void ShowDifference(const std::vector<setup::Difference>& all);
  void ShowNoDifference(const QString& hint);
  // While the sensor is read or written only Cancel can be pressed.
  void ShowTransfer(const QString& activity, int done, int total);
  void EndTransfer();
  void EnableDeeds(bool hasChosen, bool canBeUsed);

  QListWidget* lstSetups;
  QLineEdit* txtSetupName;
  QPushButton* cmdSave;
  QPushButton* cmdCompare;
  QPushButton* cmdRestore;
  QPushButton* cmdExport;
  QPushButton* cmdImport;
  QPushButton* cmdDelete;
  QPushButton* cmdCancel;
  QPushButton* cmdClose;
  QCheckBox* ckFlash;
  QCheckBox* ckKeepNulls;
  QLabel* lblState;
  QLabel* lblNote;
  QProgressBar* prgTransfer;
  TextTable* tblDifference;

 private:
  [[nodiscard]] QWidget* MakeLeft();
  [[nodiscard]] QWidget* MakeRight();
  [[nodiscard]] QLayout* MakeDeeds();

  QWidget* left_ = nullptr;
  QWidget* deeds_ = nullptr;  // all that a transfer locks
};

}  // namespace kestrel
