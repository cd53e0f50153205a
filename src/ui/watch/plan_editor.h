// The text of a plan with its lines counted, and what is wrong with each beside it.
// SPDX-License-Identifier: MIT
#pragma once

#include <QPlainTextEdit>
#include <map>

#include "monitor/plan/plan.h"

namespace kestrel {

// The Tab key leads on to the next control.
class PlanEditor : public QPlainTextEdit {
 public:
  PlanEditor();

  void SetMistakes(const monitor::Mistakes& mistakes);
  // The cursor to a line, from 1.
  void GoTo(std::size_t line);

 protected:
  void resizeEvent(QResizeEvent* event) override;
  void paintEvent(QPaintEvent* event) override;
  void changeEvent(QEvent* event) override;
  bool eventFilter(QObject* watched, QEvent* event) override;

 private:
  void FitGutter();
  void PaintGutter();
  // Each line that is seen, with its number from 1 and its place in the viewport.
  void EachLine(const std::function<void(const QTextBlock&, int, const QRectF&)>& deed) const;

  QWidget* gutter_;
  std::map<int, QString> mistakes_;  // by line
};

}  // namespace kestrel
