// Repeated captures carried out: who begins them, when, and what became of them.
// SPDX-License-Identifier: MIT
#pragma once

#include <QObject>
#include <QTimer>
#include <functional>
#include <optional>
#include <string>
#include <vector>

#include "acquisition/capture_cycle.h"
#include "acquisition/repeat.h"
#include "acquisition/sensor_return.h"
#include "acquisition/settings_exchange.h"
#include "app/handler_edge.h"
#include "connection/core.h"

namespace kestrel {

// Repeats captures by pressing the main window's Start whenever one is due and nothing else is at
// work, or fetches what the sensor captures by itself in timer mode. Messages of its captures are
// taken aside: a lost sensor is a gap, looked for until it is back; what else goes wrong ends the
// repeat and is shown then. There is one in the program, which the main window owns.
class RepeatRunner : public QObject {
  Q_OBJECT

 public:
  struct Deeds {
    // Presses Start. Returns when the capture is over.
    std::function<void()> pressStart;
    // The same sensor is back: reads it, and gives it these settings again. Returns whether it has
    // them.
    std::function<bool(const SettingsExchange::Shown&)> giveSettingsBack;
  };

  RepeatRunner(Core& core, HandlerEdge& edge, CaptureCycle& cycle, SettingsExchange& settings,
               Deeds deeds);

  // Begins. Returns why not, with the cure, where it does not; empty where it does.
  QString Start(const RepeatSettings& settings);
  // No other capture begins; one under way is completed.
  void Stop();

  // Not ended yet.
  [[nodiscard]] bool Running() const;
  // None before the first one.
  [[nodiscard]] std::optional<RepeatProgress> Progress();

  // The user has stopped a capture in the main window.
  void UserStoppedCapture();
  // The program is closing: nothing is begun or shown any more.
  void Close();

 signals:
  // What Progress() returns is another; several times a second while it runs.
  void Changed();

 private:
  void Tick();
  void Step();
  void Plan();
  void Capture();
  void Fetch();
  void LookAtCount();
  void SeekSensor();
  // A sensor that was reset in the middle of a capture never completes it.
  void WatchCapture();
  void NoteRecord();
  void NoteLoss(const std::vector<std::string>& told);
  // What became of a capture or fetch; what was told meanwhile.
  void Conclude(const std::vector<std::string>& told);
  [[nodiscard]] std::vector<std::string> Quietly(const std::function<void()>& deed);
  [[nodiscard]] QString Unfit(RepeatMode mode) const;

  Core& core_;
  HandlerEdge& edge_;
  CaptureCycle& cycle_;
  SettingsExchange& settings_;
  Deeds deeds_;
  SensorReturn return_;
  CurrentRecord::Listener recordListener_;
  std::optional<Repeat> repeat_;
  SettingsExchange::Shown before_;  // the settings when the sensor was lost
  QTimer next_;                     // for what is due; rests while it is carried out
  QTimer display_;                  // for those who show the progress, then too
  bool lost_ = false;
  bool stoppedByUser_ = false;
  std::optional<std::chrono::nanoseconds> deadline_;  // of the capture under way, monotonic
  bool timedOut_ = false;
  bool closed_ = false;
};

}  // namespace kestrel
