// What the main window's strip tells, apart from a lost adapter and the record itself.
// SPDX-License-Identifier: MIT
#pragma once

#include <QObject>

#include "acquisition/settings_exchange.h"
#include "ui/parts/notice_strip.h"

namespace kestrel {

// Notices with their cures as signals; who hears them runs them as handlers.
class MainNotices : public QObject {
  Q_OBJECT

 public:
  explicit MainNotices(NoticeStrip& strip) : strip_(strip) {}

  // The sensor came back with other settings than those on the screen before, if they differ.
  void ComeBack(const SettingsExchange::Shown& before, const SettingsExchange::Shown& now);
  [[nodiscard]] const SettingsExchange::Shown& Earlier() const { return earlier_; }
  void SettingsRestored() { strip_.Take(kRestoreId); }

  // Whether the sensor is set to capture by itself, and how often ("every 10 minutes").
  void ShowTimerMode(bool on, const QString& every);
  // A capture is started: what was closed may hold again.
  void CaptureStarted() { timerClosed_ = false; }
  void TimerStopped();

  // Alarm thresholds were given for another range; none are with an empty text.
  void ShowBandRange(const QString& text);

  // The sensor was told to sleep: nothing is read until the user wants to.
  void Asleep();
  void Awake() { strip_.Take(kAsleepId); }

 signals:
  void RestoreWanted();
  void StopTimerWanted();
  void ReadWanted();
  void KeepThresholdsWanted();

 private:
  static constexpr const char* kRestoreId = "restore";
  static constexpr const char* kTimerId = "timer";
  static constexpr const char* kBandRangeId = "bandRange";
  static constexpr const char* kAsleepId = "asleep";

  NoticeStrip& strip_;
  SettingsExchange::Shown earlier_;
  bool timerClosed_ = false;
  QString bandRange_;
};

}  // namespace kestrel
