// What the main window has of repeated captures: menu entries, a line in the status bar, keys.
// SPDX-License-Identifier: MIT
#pragma once

#include <QKeyEvent>
#include <QMainWindow>
#include <QPointer>

#include "acquisition/desk.h"
#include "ui/main/capture_panel.h"
#include "ui/main/freshness.h"
#include "ui/main/main_menu.h"
#include "ui/parts/line_label.h"
#include "ui/repeat/frmRepeat.h"
#include "ui/repeat/repeat_runner.h"

namespace kestrel {

// Owns the runner and its window, and joins them to the main window's Start, menu and status bar.
class RepeatPart : public QObject {
 public:
  struct Parts {
    Core& core;
    HandlerEdge& edge;
    Desk& desk;
    Freshness& freshness;
    CapturePanel& capture;
    MainMenu& menu;
    QMainWindow& window;
  };

  explicit RepeatPart(const Parts& parts);
  // The window goes before what it uses.
  ~RepeatPart() override;
  RepeatPart(const RepeatPart&) = delete;
  RepeatPart& operator=(const RepeatPart&) = delete;

  [[nodiscard]] RepeatRunner& Runner() { return runner_; }
  void Open();

  // The user presses Start, which says Stop while a capture is waited for, or Escape.
  void NoteStartPressed();
  // Whether this key press, in the main window, ends a repeat that waits for its next capture.
  [[nodiscard]] bool TakesKey(const QObject& watched, const QEvent& press);

 private:
  void ShowState();

  Parts parts_;
  RepeatRunner runner_;
  LineLabel* lblRepeat_;
  QPointer<frmRepeat> form_;
};

}  // namespace kestrel
