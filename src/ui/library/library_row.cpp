// From a kept record to what a list tells of it.
// SPDX-License-Identifier: MIT
#include "ui/library/library_row.h"

#include <QStringList>
#include <algorithm>
#include <cmath>

#include "record/record_line.h"

namespace kestrel {
namespace {

constexpr double kDecades = 3.5;

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
                 .hasAlarm = false,
                 .remarks = record.remarks};
  for (const Axis axis : kAxes) {
    if (record.record.alarms.Of(axis).status != 0) row.hasAlarm = true;
  }
  if (sensor.simulated) row.source += QStringLiteral(" (simulated)");
  if (!record.bench.empty()) row.source += ", " + QString::fromStdString(record.bench);
  return row;
}

QList<double> SketchOf(const Record& record) {
  constexpr std::size_t kColumns = 64;
  QList<double> heights;
  const std::size_t points = record.Points();
  double largest = 1e-12;
  for (const Axis axis : kAxes) {
    for (const double value : record.Values(axis)) largest = std::max(largest, std::abs(value));
  }
  for (std::size_t column = 0; column < kColumns; ++column) {
    double most = 0;
    double sample = 0;
    for (std::size_t i = column * points / kColumns; i < (column + 1) * points / kColumns; ++i) {
      for (const Axis axis : kAxes) most = std::max(most, std::abs(record.Values(axis)[i]));
      sample = record.Values(Axis::X)[i];
    }
    const double log = 1 + std::log10(std::max(most / largest, 1e-9)) / kDecades;
    heights << (record.kind == RecordKind::Time ? 0.5 + 0.5 * sample / largest
                                                : std::clamp(log, 0.0, 1.0));
  }
  return heights;
}

}  // namespace kestrel
