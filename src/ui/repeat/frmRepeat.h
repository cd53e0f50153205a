// The window in which captures are repeated: how often, how many, and how far they are.
// SPDX-License-Identifier: MIT
#pragma once

#include <QLabel>
#include <QLineEdit>
#include <QPlainTextEdit>
#include <QProgressBar>
#include <QPushButton>
#include <QRadioButton>

#include "ui/parts/secondary_window.h"
#include "ui/repeat/repeat_runner.h"

namespace kestrel {

// Starts and stops repeated captures and shows their progress. Closing it ends nothing.
class frmRepeat : public SecondaryWindow {
 public:
  frmRepeat(RepeatRunner& runner, HandlerEdge& edge, QWidget* parent);

 private:
  void LayOut();
  [[nodiscard]] QWidget* HowOften();
  [[nodiscard]] QWidget* HowMany();
  [[nodiscard]] QWidget* HowFar();
  void Connect();
  void Begin();
  void ShowState();
  void ShowProgress(const RepeatProgress& progress);
  // A text that is refused is shown with its cure, and its box has the focus.
  void Refuse(const Error& error);
  [[nodiscard]] RepeatMode Mode() const;

  RepeatRunner& runner_;
  QRadioButton* optEvery_;
  QRadioButton* optAtOnce_;
  QRadioButton* optFollow_;
  QLineEdit* txtSeconds_;
  QRadioButton* optTimes_;
  QRadioButton* optUntilStopped_;
  QLineEdit* txtTimes_;
  QLabel* lblRepeatState_;
  QProgressBar* prgRepeat_;
  QPlainTextEdit* txtGaps_;
  QPushButton* cmdRepeatStart_;
  QPushButton* cmdRepeatStop_;
};

}  // namespace kestrel
