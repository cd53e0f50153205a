// The sets of the workbench: what is known to be good, known to be bad, and left out, and why.
// SPDX-License-Identifier: MIT
#pragma once

#include <QListWidget>
#include <QWidget>
#include <vector>

#include "ui/study/flat_button.h"
#include "ui/workbench/workbench_model.h"

namespace kestrel {

class SetsPanel : public QWidget {
  Q_OBJECT

 public:
  explicit SetsPanel(WorkbenchModel& model);

  // Opens the form that chooses more.
  void Choose(baseline::Verdict verdict);

  FlatButton* cmdGood;
  FlatButton* cmdBad;

 protected:
  void changeEvent(QEvent* event) override;
  bool eventFilter(QObject* watched, QEvent* event) override;

 private:
  // A heading has a count. `part` is the place of what was chosen; −1 for what nobody chose.
  struct Row {
    QString icon = {};
    QString first = {};
    QString second = {};
    QString count = {};
    int part = -1;
    bool operator==(const Row&) const = default;
  };

  void LayOut();
  void Show();
  void Fill();
  void AddHeading(const QString& text, std::size_t count);
  void AddParts(baseline::Verdict verdict);
  void RemoveCurrent();

  WorkbenchModel& model_;
  std::vector<Row> rows_;
  QListWidget* list_;
  FlatButton* cmdRemove_;
  FlatButton* cmdAgain_;
};

}  // namespace kestrel
