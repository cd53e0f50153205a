// The plot of one band and axis: thresholds are dragged by the mouse and moved by keys.
// SPDX-License-Identifier: MIT
#pragma once

#include <QWidget>

#include "ui/workbench/detail_layout.h"

namespace kestrel {

// Keys: left and right move the threshold that is chosen by 0.1 dB, with Shift by 1 dB, with Ctrl
// by one code; up and down choose the other; Backspace goes back to what the rule proposes.
class DetailPlot : public QWidget {
  Q_OBJECT

 public:
  explicit DetailPlot(QWidget* parent = nullptr);

  void SetScene(DetailScene scene);
  [[nodiscard]] const DetailScene& Scene() const { return scene_; }
  [[nodiscard]] DetailLayout Laid() const;
  [[nodiscard]] AlarmLevel Chosen() const { return chosen_; }

  [[nodiscard]] QSize sizeHint() const override { return {560, 300}; }
  [[nodiscard]] QSize minimumSizeHint() const override { return {300, 210}; }

 signals:
  void LevelMoved(kestrel::AlarmLevel level, double g);  // by the mouse, as it moves
  // By keys: decibels, or with 0 decibels by so many codes.
  void LevelStepped(kestrel::AlarmLevel level, double db, int codes);
  void ResetAsked();

 protected:
  bool event(QEvent* event) override;
  void paintEvent(QPaintEvent* event) override;
  void changeEvent(QEvent* event) override;
  void mousePressEvent(QMouseEvent* event) override;
  void mouseMoveEvent(QMouseEvent* event) override;
  void mouseReleaseEvent(QMouseEvent* event) override;
  void keyPressEvent(QKeyEvent* event) override;
  void focusInEvent(QFocusEvent* event) override;
  void focusOutEvent(QFocusEvent* event) override;

 private:
  [[nodiscard]] std::optional<AlarmLevel> LevelAt(QPointF place) const;
  void Choose(AlarmLevel level);
  void Describe();

  DetailScene scene_;
  AlarmLevel chosen_ = AlarmLevel::Warning;
  std::optional<AlarmLevel> dragged_;
};

}  // namespace kestrel
