// The analyser's upper bar: views, the sensor's state, repeat, and the one main button.
// SPDX-License-Identifier: MIT
#pragma once

#include <QLabel>
#include <QProgressBar>
#include <QTabBar>
#include <QWidget>

#include "ui/study/flat_button.h"

namespace kestrel {

// Tabs with an underline in the accent.
class ViewTabs : public QTabBar {
 public:
  explicit ViewTabs(QWidget* parent = nullptr);

 protected:
  [[nodiscard]] QSize tabSizeHint(int index) const override;
  void paintEvent(QPaintEvent* event) override;
};

class ViewBar : public QWidget {
  Q_OBJECT

 public:
  ViewBar();

  void SetView(int view);
  // "Simulated sensor", "USB adapter Ezusb-0", "No sensor".
  void SetSensor(const QString& text, const QString& tip);
  // While something runs, the main button says Stop, at the same place.
  void SetRunning(bool isRunning);
  // What the main button says while nothing runs, and its tip; empty: one capture.
  void NameCapture(const QString& text, const QString& tip);
  // "Capture 12 of 50, next in 6 s, 6 min 20 s left"; none with an empty text. `part` 0 to 1, below
  // 0 when the end is not known.
  void SetProgress(const QString& text, double part);

  FlatButton* cmdRepeat;
  FlatButton* cmdCapture;

 signals:
  void ViewChosen(int view);

 protected:
  void paintEvent(QPaintEvent* event) override;

 private:
  ViewTabs* tabs_;
  QLabel* lblSensor_;
  bool isRunning_ = false;
  QString captureName_;
  QString captureTip_;
  QWidget* progress_;
  QLabel* lblProgress_;
  QProgressBar* barProgress_;
};

}  // namespace kestrel
