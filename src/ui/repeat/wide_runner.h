// The captures of a wide spectrum carried out over the main window, and the settings put back.
// SPDX-License-Identifier: MIT
#pragma once

#include <QObject>
#include <QTimer>
#include <functional>
#include <optional>
#include <string>
#include <vector>

#include "acquisition/sensor_return.h"
#include "acquisition/settings_exchange.h"
#include "acquisition/wide_run.h"
#include "app/handler_edge.h"
#include "connection/core.h"

namespace kestrel {

// Chooses one rate option after the other and presses the main window's Start, whenever nothing
// else is at work. Messages of its captures are taken aside and become the reason of its end.
// Whatever ends it, the settings are put back: of a lost sensor when it is back, or until the user
// gives up. There is one in the program.
class WideRunner : public QObject {
  Q_OBJECT

 public:
  struct Deeds {
    // Presses Start. Returns when the capture is over.
    std::function<void()> pressStart;
    // Whether the sensor has the option now.
    std::function<bool(int option)> chooseOption;
    // The same sensor is back: reads it, and gives it these settings again. Returns whether it has
    // them.
    std::function<bool(const SettingsExchange::Shown&)> giveSettingsBack;
    // What else may not run meanwhile does.
    std::function<bool()> isOtherAtWork;
  };

  WideRunner(Core& core, HandlerEdge& edge, SettingsExchange& settings, Deeds deeds);

  // Captures at these options, a bit each. Returns why not, with the cure, where it does not; empty
  // where it does.
  QString Start(unsigned options);
  // What is complete is kept. Once more, while a lost sensor is looked for: it is looked for no
  // longer.
  void Stop();

  [[nodiscard]] bool Running() const { return run_ && !run_->Ended(); }
  // None before the first one.
  [[nodiscard]] std::optional<WideProgress> Progress();
  // How long four captures take with the settings that the window shows, about, s.
  [[nodiscard]] double ExpectedSeconds() const;

  // The user has stopped a capture in the main window.
  void UserStoppedCapture();
  // The program is closing: nothing is begun or shown any more. Stop it first, and wait for Ended.
  void Close();

 signals:
  void Began(unsigned options);
  void RecordTaken(const kestrel::Record& record);
  void Changed();  // what Progress() returns
  void Ended();

 private:
  void Tick();
  void Step();
  void Plan();
  void Set(int option);
  void Capture(int option);
  void PutBack();
  void SeekSensor();
  void Finish();
  void WatchCapture();
  void Conclude(int option, const std::vector<std::string>& told);
  void Lose(const std::vector<std::string>& told);
  [[nodiscard]] std::vector<std::string> Quietly(const std::function<void()>& deed);
  [[nodiscard]] int Averages() const;

  Core& core_;
  HandlerEdge& edge_;
  SettingsExchange& settings_;
  Deeds deeds_;
  SensorReturn return_;
  CurrentRecord::Listener recordListener_;
  std::optional<WideRun> run_;
  SettingsExchange::Shown before_;
  bool wasLost_ = false;
  bool isTold_ = true;  // the end
  std::optional<Record> taken_;
  bool isCapturing_ = false;
  bool stoppedByUser_ = false;
  std::optional<std::chrono::nanoseconds> deadline_;  // of the capture under way, monotonic
  bool timedOut_ = false;
  bool closed_ = false;
  QTimer next_;
  QTimer display_;
};

}  // namespace kestrel
