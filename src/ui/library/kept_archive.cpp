// The settings file of the archive.
// SPDX-License-Identifier: MIT
#include "ui/library/kept_archive.h"

#include <QSettings>

#include "analysis/horizontal.h"

namespace kestrel {
namespace {

QSettings File() {
  return {QSettings::IniFormat, QSettings::UserScope, "kestrel", "archive"};
}

}  // namespace

KeptArchive ReadKeptArchive() {
  const QSettings file = File();
  const auto text = [&](const char* key) { return file.value(key).toString().toStdString(); };
  KeptArchive kept;
  kept.isOn = file.value("keep", true).toBool();
  kept.site.machine = text("site/machine");
  kept.site.point = text("site/point");
  kept.site.orientation = text("site/orientation");
  bool isNumber = false;
  const double rpm = file.value("site/rpm").toDouble(&isNumber);
  if (isNumber && analysis::IsSpeed(rpm)) kept.site.rpm = rpm;
  const qlonglong limit = file.value("limit").toLongLong(&isNumber);
  if (isNumber && limit > 0) kept.limit = limit;
  return kept;
}

void WriteKeptArchive(const KeptArchive& kept) {
  QSettings file = File();
  const auto put = [&](const char* key, const std::string& text) {
    file.setValue(key, QString::fromStdString(text));
  };
  file.setValue("keep", kept.isOn);
  put("site/machine", kept.site.machine);
  put("site/point", kept.site.point);
  put("site/orientation", kept.site.orientation);
  file.setValue("site/rpm", kept.site.rpm ? QVariant(*kept.site.rpm) : QVariant());
  file.setValue("limit", kept.limit ? QVariant(qlonglong{*kept.limit}) : QVariant());
}

}  // namespace kestrel
