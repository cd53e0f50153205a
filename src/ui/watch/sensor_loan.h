// The main window's sensor, given away to the monitor and taken back.
// SPDX-License-Identifier: MIT
#pragma once

#include <QObject>
#include <QTimer>
#include <functional>
#include <optional>

#include "acquisition/sensor_return.h"
#include "acquisition/settings_exchange.h"
#include "app/handler_edge.h"
#include "connection/core.h"

namespace kestrel {

// Meanwhile no handler of any window is begun, and no interface is selected. Nothing of it shows a
// box: what is told on the way back is dropped, and the sensor is looked for again.
class SensorLoan : public QObject {
  Q_OBJECT

 public:
  struct Deeds {
    // Whether something is under way that needs the sensor.
    std::function<bool()> isBusy;
    // Lets go of boards and ports that this program holds.
    std::function<void()> letGo;
    // The same sensor is back: reads it, and gives it these settings again.
    std::function<void(const SettingsExchange::Shown&)> giveSettingsBack;
  };

  SensorLoan(Core& core, HandlerEdge& edge, SettingsExchange& settings, Deeds deeds);

  // False where it is in use just now; true also where there is none to give away.
  [[nodiscard]] bool Lend();
  void TakeBack();
  // The program is closing: it is looked for no longer.
  void Close();

  [[nodiscard]] bool IsLent() const { return occupation_.has_value(); }
  // It was taken back, and was not found so far.
  [[nodiscard]] bool IsSought() const { return seek_.isActive(); }
  // It was not found, and is looked for no longer.
  [[nodiscard]] bool IsLost() const { return isLost_; }
  void SeekAgain();

 signals:
  void Changed();

 private:
  void Seek();

  Core& core_;
  HandlerEdge& edge_;
  SettingsExchange& settings_;
  Deeds deeds_;
  SensorReturn return_;
  SettingsExchange::Shown before_;
  std::optional<HandlerEdge::Occupation> occupation_;
  QTimer seek_;
  int looks_ = 0;
  bool isLost_ = false;
};

}  // namespace kestrel
