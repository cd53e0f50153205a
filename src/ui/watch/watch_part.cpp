// The monitor joined to the main window.
// SPDX-License-Identifier: MIT
#include "ui/watch/watch_part.h"

#include <QFileInfo>
#include <utility>

#include "ui/watch/cli_process.h"

namespace kestrel {
namespace {

constexpr const char* kNoticeId = "monitor";

MakeMonitorProcess Usual() {
  return []() -> std::unique_ptr<MonitorProcess> {
    const QString program = CommandLineProgram();
    if (program.isEmpty()) return nullptr;
    return std::make_unique<CliProcess>(program);
  };
}

}  // namespace

WatchPart::WatchPart(const Parts& parts, const WatchChoice& choice)
    : parts_(parts),
      road_(choice.road),
      loan_(parts.core, parts.edge, parts.settings,
            {.isBusy = parts.isBusy,
             .letGo = choice.letGo,
             .giveSettingsBack = parts.giveSettingsBack}),
      runner_(parts.core.seams.clock,
              {.make = choice.make ? choice.make : Usual(),
               .lend = [this](const monitor::Plan& plan) { return Lend(plan); },
               .takeBack = [this] { loan_.TakeBack(); }}),
      teller_(runner_, choice.notifier) {
  connect(&loan_, &SensorLoan::Changed, this, [this] {
    ShowNotice();
    emit Changed();
  });
  connect(&runner_, &MonitorRunner::Changed, this, &WatchPart::ShowNotice);
}

QString WatchPart::Lend(const monitor::Plan& plan) {
  if (!IsSameRoad(plan.road, RoadOf(parts_.core, road_))) return {};
  if (loan_.Lend()) return {};
  return tr(
      "A capture is under way, or the sensor is being read. Stop that first, then start the "
      "plan again.");
}

MonitorHost WatchPart::Host() {
  return {.runner = &runner_, .teller = &teller_, .present = [this] {
            return PresentPlan(parts_.settings.LastRead(), RoadOf(parts_.core, road_), parts_.bench,
                               parts_.keeper.Site());
          }};
}

QString WatchPart::WhoHasIt() const {
  const QString plan = runner_.What() ? QFileInfo(runner_.What()->file).fileName() : QString();
  return isClosing_ ? tr("The monitor finishes what is under way; then the program closes.")
                    : tr("The monitor has the sensor (%1). Stop it in the analyser to use the "
                         "sensor here.")
                          .arg(plan);
}

InterfaceText WatchPart::Interface() const {
  return {tr("The monitor has the sensor").toStdString(), WhoHasIt().toStdString()};
}

// One that was closed stays so until there is something else to tell.
void WatchPart::ShowNotice() {
  Notice notice{.id = kNoticeId, .text = {}, .cure = {}, .carryOut = {}, .closed = {}};
  if (loan_.IsLent()) {
    notice.text =
        isClosing_ ? WhoHasIt() : tr("%1 What stands here was read before.").arg(WhoHasIt());
    notice.cure = tr("Show the monitor");
    notice.carryOut = parts_.openMonitor;
  } else if (loan_.IsLost()) {
    notice.gravity = Gravity::Fault;
    notice.text =
        tr("Monitoring has ended, and the sensor could not be found again. Another program may "
           "have it, or its adapter is unplugged.");
    notice.cure = tr("Look again");
    notice.carryOut = [this] { loan_.SeekAgain(); };
  }
  if (std::exchange(shown_, notice.text) == notice.text) return;
  notice.text.isEmpty() ? parts_.strip.Take(kNoticeId) : parts_.strip.Put(notice);
}

bool WatchPart::MayClose(std::function<void()> goOn) {
  if (!runner_.Running() || isClosing_) return true;
  isClosing_ = true;
  const auto end = [this, goOn = std::move(goOn)] {
    isClosing_ = false;
    goOn();
  };
  connect(&runner_, &MonitorRunner::Ended, this, end,
          static_cast<Qt::ConnectionType>(Qt::QueuedConnection | Qt::SingleShotConnection));
  runner_.Stop();
  ShowNotice();
  return false;
}

}  // namespace kestrel
