// The settings file of monitoring.
// SPDX-License-Identifier: MIT
#include "ui/watch/kept_watch.h"

#include <QSettings>

namespace kestrel {
namespace {

QSettings File() {
  return {QSettings::IniFormat, QSettings::UserScope, "kestrel", "monitor"};
}

}  // namespace

KeptWatch ReadKeptWatch() {
  const QSettings file = File();
  return {.file = file.value("plan").toString(), .isTold = file.value("notify", true).toBool()};
}

void WriteKeptWatch(const KeptWatch& kept) {
  QSettings file = File();
  file.setValue("plan", kept.file);
  file.setValue("notify", kept.isTold);
}

}  // namespace kestrel
