// From a kept record to what a list tells of it.
// SPDX-License-Identifier: MIT
#include "ui/library/library_row.h"

#include <QStringList>

#include "record/record_line.h"

namespace kestrel {
namespace {

// "Spectrum, 70 g, option 0, 8 avg".
QString ShortLine(const Record& record) {
  const RecordSettings& settings = record.settings;
  const bool isTime = record.kind == RecordKind::Time;
  QStringList parts{isTime ? QStringLiteral("Time") : QStringLiteral("Spectrum")};
  if (settings.range >= 0 && settings.range <= 3) {
    parts << QStringLiteral("%1 g").arg(FullScaleOf(settings.range));
  }
  parts << QStringLiteral("option %1").arg(settings.option);
  if (!isTime) parts << QStringLiteral("%1 avg").arg(settings.averages);
  return parts.join(QStringLiteral(", "));
}

}  // namespace

LibraryRow RowOf(const archive::KeptRecord& record) {
  const SensorIdentity& sensor = record.record.sensor;
  LibraryRow row{.id = record.id,
                 .time = record.record.time,
                 .kind = record.record.kind,
                 .line = ShortLine(record.record),
                 .source = QString::fromStdString(sensor.interface),
                 .full = QString::fromStdString(RecordLine(record.record, {})),
                 .levels = record.levels,
                 .hasAlarm = record.record.alarms.IsOn(),
                 .remarks = record.remarks};
  if (sensor.simulated) row.source += QStringLiteral(" (simulated)");
  if (!record.bench.empty()) row.source += ", " + QString::fromStdString(record.bench);
  return row;
}

}  // namespace kestrel
