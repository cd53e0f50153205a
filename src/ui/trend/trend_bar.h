// The controls over a trend: what is followed, how it is drawn, of when, and of which machine.
// SPDX-License-Identifier: MIT
#pragma once

#include <QComboBox>
#include <QLineEdit>
#include <QTimer>
#include <QWidget>
#include <array>

#include "archive/filter.h"
#include "trend/choice.h"
#include "ui/library/library.h"
#include "ui/study/flat_button.h"

namespace kestrel {

class TrendBar : public QWidget {
  Q_OBJECT

 public:
  TrendBar();

  void Show(const trend::Choice& choice);
  // "12 Oct 2026 to 21 Nov 2026"
  void ShowSpan(const QString& span);
  void ShowSeries(const archive::Levels& levels, std::size_t chosen, const trend::Level& level);
  void SetChoices(const LibraryChoices& choices);

  [[nodiscard]] archive::Filter Filter() const;
  [[nodiscard]] std::string Machine() const;
  [[nodiscard]] bool IsFiltered() const { return Filter() != archive::Filter{}; }
  void FocusFilter() { txtText_->setFocus(); }

  FlatButton* cmdLevel;
  std::array<FlatButton*, 3> axes;
  Segments* segVertical;
  FlatButton* cmdLimits;
  FlatButton* cmdSetLimits;
  FlatButton* cmdTemperature;
  FlatButton* cmdBack;
  FlatButton* cmdForward;
  FlatButton* cmdShowAll;
  FlatButton* cmdCopy;
  FlatButton* cmdExport;
  FlatButton* cmdSpan;

 signals:
  void LastAsked(double seconds);  // the last day, week, month; 0 for all
  void FilterChanged();
  void MachineChosen();
  void SeriesChosen(int index);

 private:
  void LayOut();
  void Connect();
  void Clear();

  std::array<FlatButton*, 4> spans_;
  QComboBox* cbxSeries_;
  QComboBox* cbxMachine_;
  QComboBox* cbxPoint_;
  QLineEdit* txtText_;
  FlatButton* cmdClear_;
  QTimer typing_;
};

}  // namespace kestrel
