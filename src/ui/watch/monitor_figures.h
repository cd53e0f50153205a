// How a monitor stands, in figures side by side.
// SPDX-License-Identifier: MIT
#pragma once

#include <QLabel>
#include <QWidget>
#include <array>

#include "ui/watch/monitor_runner.h"

namespace kestrel {

class MonitorFigures : public QWidget {
 public:
  MonitorFigures();

  void Show(const MonitorRunner& runner);

 protected:
  void changeEvent(QEvent* event) override;
  void paintEvent(QPaintEvent* event) override;

 private:
  enum Figure { State, Next, Last, Records, Missed, Alarms, Incidents, kFigures };
  enum class Ink { Plain, Warning, Fault };

  void Put(Figure figure, const QString& text, Ink ink = Ink::Plain, const QString& tip = {});
  void Colour();

  struct Tile {
    QLabel* caption = nullptr;
    QLabel* value = nullptr;
    Ink ink = Ink::Plain;
  };
  std::array<Tile, kFigures> tiles_;
};

// "12 s", "4:05 min", "2:30 h".
[[nodiscard]] QString CountDown(double seconds);

}  // namespace kestrel
