// What has begun and what is over since the last account.
// SPDX-License-Identifier: MIT
#include "ui/watch/alarm_teller.h"

#include <QStringList>
#include <algorithm>

#include "ui/watch/kept_watch.h"

namespace kestrel {
namespace {

using Entries = std::vector<archive::JournalEntry>;

constexpr std::size_t kMostNamed = 3;

Entries Without(const Entries& entries, const Entries& others) {
  Entries rest;
  std::ranges::copy_if(entries, std::back_inserter(rest), [&](const auto& entry) {
    return std::ranges::find(others, entry.uid, &archive::JournalEntry::uid) == others.end();
  });
  return rest;
}

QString TextOf(const Entries& entries) {
  QStringList lines;
  for (const auto& entry : entries) {
    if (static_cast<std::size_t>(lines.size()) == kMostNamed) {
      lines << AlarmTeller::tr("and %1 more").arg(entries.size() - kMostNamed);
      break;
    }
    lines << QString::fromStdString(entry.text);
  }
  return lines.join('\n');
}

}  // namespace

AlarmTeller::AlarmTeller(MonitorRunner& runner, Notifier* notifier)
    : runner_(runner), notifier_(notifier), isOn_(ReadKeptWatch().isTold) {
  connect(&runner, &MonitorRunner::Changed, this, &AlarmTeller::Look);
  connect(&runner, &MonitorRunner::Ended, this, [this](bool byItself) {
    if (byItself) Tell(tr("Monitoring has ended: %1").arg(Sensor()), runner_.Trouble());
  });
}

void AlarmTeller::SwitchOn(bool isOn) {
  isOn_ = isOn;
  KeptWatch kept = ReadKeptWatch();
  kept.isTold = isOn;
  WriteKeptWatch(kept);
}

QString AlarmTeller::Sensor() const {
  return runner_.What() ? QString::fromStdString(runner_.What()->plan.sensor) : QString();
}

void AlarmTeller::Look() {
  if (!runner_.Account()) {
    isFollowing_ = false;
    return;
  }
  const Entries now = runner_.Account()->alarms;
  const Entries begun = Without(now, standing_);
  const Entries over = Without(standing_, now);
  standing_ = now;
  if (!std::exchange(isFollowing_, true)) return;
  if (!begun.empty()) Tell(tr("Alarm: %1").arg(Sensor()), TextOf(begun));
  if (!over.empty()) Tell(tr("Alarm over: %1").arg(Sensor()), TextOf(over));
}

void AlarmTeller::Tell(const QString& title, const QString& text) {
  if (isOn_ && notifier_ != nullptr) notifier_->Tell(title, text);
}

}  // namespace kestrel
