// A window that shows and edits registers of the sensor.
// SPDX-License-Identifier: MIT
#pragma once

#include <QLabel>
#include <functional>

#include "transport/register_access.h"
#include "ui/parts/secondary_window.h"

namespace kestrel {

// A window that shows and edits registers of the sensor. It reads them whenever it becomes active;
// below its controls it has a line for notes, and the buttons Read and Close. A change that was not
// carried out is taken back, so that the controls show what the sensor holds.
class SensorWindow : public SecondaryWindow {
 public:
  // Refreshes the controls from the sensor, as when the window becomes active.
  void ReadAgain();

 protected:
  SensorWindow(const char* name, const QString& title, RegisterAccess& registers, HandlerEdge& edge,
               QWidget* parent, QPoint offsetTwips);

  // Puts the controls above the notes and buttons.
  void LayOut(QLayout* controls);

  // Refreshes the controls from the sensor.
  virtual void ReadSensor() = 0;
  // Takes changes of the controls back.
  virtual void ShowLastRead() = 0;

  // Connects a signal to a handler of the user's that changes the sensor. `name` is its name in
  // messages.
  template <typename Sender, typename Signal>
  void OnUse(Sender* sender, Signal signal, const char* name, std::function<void()> handler) {
    OnChange(sender, signal, name, [this, handler = std::move(handler)] { Use(handler); });
  }

  // What such a handler runs in: the note tells whether the sensor was reached.
  void Use(const std::function<void()>& handler);

  void Refused(const QString& why) override;

  // Stays until the next handler.
  void Note(const QString& text);
  // The same, painted at once.
  void NoteNow(const QString& text);

  void Form_Activate() override;
  void keyPressEvent(QKeyEvent* event) override;

 private:
  void NoteWhetherReached();

  RegisterAccess& registers_;
  QLabel* lblNote_;
  bool notesFailure_ = false;  // that the sensor was not reached
};

}  // namespace kestrel
