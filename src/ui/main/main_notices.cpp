// The words of the main window's notices.
// SPDX-License-Identifier: MIT
#include "ui/main/main_notices.h"

namespace kestrel {

void MainNotices::ComeBack(const SettingsExchange::Shown& before,
                           const SettingsExchange::Shown& now) {
  if (before == now || before.lists.empty()) return;
  earlier_ = before;
  strip_.Put({.id = kRestoreId,
              .gravity = Gravity::Offer,
              .text = tr("The sensor has started anew with settings of its own. They are not those "
                         "that were on the screen before."),
              .cure = tr("Restore the earlier settings"),
              .carryOut = [this] { emit RestoreWanted(); },
              .closed = {}});
}

void MainNotices::ShowTimerMode(bool on, const QString& every) {
  if (!on) timerClosed_ = false;
  if (!on || timerClosed_) {
    strip_.Take(kTimerId);
    return;
  }
  strip_.Put(
      {.id = kTimerId,
       .gravity = Gravity::Hint,
       .text = tr("Timer mode: once started, the sensor goes on capturing by itself, %1, also "
                  "when this program is closed. Another mode ends it as well.")
                   .arg(every),
       .cure = tr("Stop the timer"),
       .carryOut = [this] { emit StopTimerWanted(); },
       .closed = [this] { timerClosed_ = true; }});
}

void MainNotices::TimerStopped() {
  timerClosed_ = true;
  strip_.Take(kTimerId);
}

// One that was closed stays so until there is something else to tell.
void MainNotices::ShowBandRange(const QString& text) {
  if (text == bandRange_) return;
  bandRange_ = text;
  if (text.isEmpty()) {
    strip_.Take(kBandRangeId);
    return;
  }
  strip_.Put({.id = kBandRangeId,
              .gravity = Gravity::Doubt,
              .text = tr("Alarm bands: %1").arg(text),
              .cure = tr("Keep g values"),
              .carryOut = [this] { emit KeepThresholdsWanted(); },
              .closed = {}});
}

void MainNotices::Asleep() {
  strip_.Put(
      {.id = kAsleepId,
       .gravity = Gravity::Doubt,
       .text = tr("The sensor was told to sleep. What is shown was read before; reading wakes "
                  "it."),
       .cure = tr("Read the sensor"),
       .carryOut = [this] { emit ReadWanted(); },
       .closed = {}});
}

}  // namespace kestrel
