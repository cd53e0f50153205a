// A window that belongs to the main window.
// SPDX-License-Identifier: MIT
#pragma once

#include <QDialog>
#include <QString>
#include <functional>

#include "app/handler_edge.h"

namespace kestrel {

// The rule of all service windows: what changes the sensor is refused while a capture is waited
// for. Returns whether the handler ran.
bool RunUnlessCapturing(HandlerEdge& edge, const char* name, const std::function<void()>& handler);
// What a window says then.
[[nodiscard]] QString WhyRefused();

// A window that belongs to the main window and may go behind it. When first shown it is placed
// beside the plot where the screen has room, otherwise at its offset from the main window's corner.
// It is told whenever it becomes active.
class SecondaryWindow : public QDialog {
 public:
  // Shows the window, in front if it is open already.
  void ShowInFront();

 protected:
  // `name` is the object name. The offset from the main window's corner is in twips, 1/1440 inch.
  SecondaryWindow(const char* name, const QString& title, HandlerEdge& edge, QWidget* parent,
                  QPoint offsetTwips);

  virtual void Form_Activate() {}

  // Connects a signal to a handler that runs in the edge under this name.
  template <typename Sender, typename Signal, typename Handler>
  void On(Sender* sender, Signal signal, const char* name, Handler handler) {
    connect(sender, signal, this, [this, name, handler] { edge_.Run(name, handler); });
  }

  // The same for what changes the sensor or commands it: while a capture is waited for it is
  // refused, by one rule in every window, and the window says so. Reading goes on.
  template <typename Sender, typename Signal, typename Handler>
  void OnChange(Sender* sender, Signal signal, const char* name, Handler handler) {
    connect(sender, signal, this, [this, name, handler] { Change(name, handler); });
  }
  void Change(const char* name, const std::function<void()>& handler);

  // A change was refused; `why` is for the user.
  virtual void Refused(const QString& /*why*/) {}

  [[nodiscard]] HandlerEdge& Edge() { return edge_; }

  bool event(QEvent* event) override;

 private:
  void PlaceOnce();
  void StandOnItsOwn();

  HandlerEdge& edge_;
  QPoint offsetTwips_;
  bool placed_ = false;
};

}  // namespace kestrel
