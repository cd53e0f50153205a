// What the entries of the main menu do.
// SPDX-License-Identifier: MIT
#pragma once

#include <QMainWindow>
#include <functional>

#include "acquisition/desk.h"
#include "app/handler_edge.h"
#include "station/sensor_road.h"
#include "ui/main/main_menu.h"
#include "ui/main/secondary_windows.h"

namespace kestrel {

// What the entries of the main menu do, once it is connected.
class MenuCommands {
 public:
  struct Parts {
    Core& core;
    HandlerEdge& edge;
    Desk& desk;
    SecondaryWindows& windows;
    MainMenu& menu;
    QMainWindow& window;
    SimulatorControl simulator;
    std::function<bool()> isIdle;  // says so where a capture is waited for
    std::function<void(std::int16_t)> setProduct;
  };

  explicit MenuCommands(Parts parts) : parts_(std::move(parts)) {}

  void Connect();
  [[nodiscard]] bool SensorIsSimulated() const { return parts_.simulator.isConnected(); }

 private:
  template <typename Handler>
  void On(QAction* item, const char* name, Handler handler);
  void ConnectWindows();
  void mnuSimulated_Click();
  void mnu31407_Click();
  void mnuUnplug_Click();

  Parts parts_;
};

}  // namespace kestrel
