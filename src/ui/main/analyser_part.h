// What the main window has of the analyser: menu entry, button, and the records that it is shown.
// SPDX-License-Identifier: MIT
#pragma once

#include <QPointer>
#include <QPushButton>
#include <deque>
#include <functional>
#include <memory>

#include "alarms/band_table.h"
#include "connection/core.h"
#include "ui/analyser/frmAnalyser.h"
#include "ui/main/main_menu.h"
#include "ui/main/record_cures.h"
#include "ui/main/secondary_windows.h"
#include "ui/panels/capture_panel.h"
#include "ui/repeat/repeat_runner.h"
#include "ui/repeat/wide_runner.h"
#include "ui/watch/watch_part.h"

namespace kestrel {

// The window is made when first opened. Records and gaps that came before are kept for it. It
// stands beside the main window, not above it, and closes with it.
class AnalyserPart : public QObject {
 public:
  struct Parts {
    Core& core;
    CapturePanel& capture;
    MainMenu& menu;
    RecordCures& cures;
    RepeatRunner& repeats;
    WideRunner& wide;
    std::function<void()> openRepeat;
    RecordKeeper& keeper;
    SecondaryWindows& windows;
    WatchPart& watch;
  };

  explicit AnalyserPart(const Parts& parts);
  // The window goes before what it uses.
  ~AnalyserPart() override;
  AnalyserPart(const AnalyserPart&) = delete;
  AnalyserPart& operator=(const AnalyserPart&) = delete;

  QPushButton* cmdAnalyser;  // belongs into the main window

  void Open();
  void OpenMonitor();
  // As the main window closes.
  void Close();
  [[nodiscard]] frmAnalyser* Window() { return window_; }
  // After every handler: alarm bands or the interface may be others.
  void Refresh();
  // Records are missing from here on.
  void NoteGap(const std::string& reason);

 private:
  // A record, or without one a gap.
  struct Waiting {
    std::shared_ptr<const Record> record;
    std::string gap;
  };
  [[nodiscard]] AnalyserHost Host();
  void TakeRecord();
  void ConnectWide();
  void CaptureWide(unsigned options);
  void ShowProgress();
  void Wait(Waiting what);
  void GiveBands();
  void Later(std::function<void()> deed);

  Parts parts_;
  QPointer<frmAnalyser> window_;
  std::deque<Waiting> waiting_;  // for a window not made yet
  std::shared_ptr<const Record> last_;
  BandTable bands_;  // as the window has them
  bool hasBands_ = false;
  std::size_t gaps_ = 0;
  std::optional<archive::Uid> wideSet_;  // of the wide spectrum that was captured last
  CurrentRecord::Listener recordListener_;
};

}  // namespace kestrel
