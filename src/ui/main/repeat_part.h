// What the main window has of repeated captures: menu entries, a line in the status bar, keys.
// SPDX-License-Identifier: MIT
#pragma once

#include <QKeyEvent>
#include <QMainWindow>
#include <QPointer>
#include <functional>

#include "acquisition/desk.h"
#include "ui/main/freshness.h"
#include "ui/main/main_menu.h"
#include "ui/main/record_cures.h"
#include "ui/panels/capture_panel.h"
#include "ui/parts/line_label.h"
#include "ui/repeat/frmRepeat.h"
#include "ui/repeat/repeat_runner.h"
#include "ui/repeat/wide_runner.h"

namespace kestrel {

// Owns the runners and their window, and joins them to the main window's Start, menu and status
// bar.
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
    RecordCures& cures;
  };

  explicit RepeatPart(const Parts& parts);
  // The window goes before what it uses.
  ~RepeatPart() override;
  RepeatPart(const RepeatPart&) = delete;
  RepeatPart& operator=(const RepeatPart&) = delete;

  [[nodiscard]] RepeatRunner& Runner() { return runner_; }
  [[nodiscard]] WideRunner& Wide() { return wide_; }
  // Captures follow each other by themselves.
  [[nodiscard]] bool Running() const { return runner_.Running() || wide_.Running(); }
  // Before the main window closes: false while the settings of a wide spectrum are still to be put
  // back; `goOn` is called when they are.
  [[nodiscard]] bool MayClose(std::function<void()> goOn);
  void Close();
  void Open();

  // The user presses Start, which says Stop while a capture is waited for, or Escape.
  void NoteStartPressed();
  // Whether this key press, in the main window, ends a repeat that waits for its next capture.
  [[nodiscard]] bool TakesKey(const QObject& watched, const QEvent& press);

 private:
  void ShowState();

  Parts parts_;
  RepeatRunner runner_;
  WideRunner wide_;
  LineLabel* lblRepeat_;
  QPointer<frmRepeat> form_;
};

}  // namespace kestrel
