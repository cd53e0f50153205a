// What a restart remembers of the trend view.
// SPDX-License-Identifier: MIT
#include <cmath>

#include "ui/study/text_table.h"
#include "ui/trend/trend_view.h"

namespace kestrel {
namespace {

constexpr int kMostName = 80;

}  // namespace

void TrendView::Keep(QSettings& kept) const {
  kept.beginGroup("trend");
  kept.setValue("level", static_cast<int>(choice_.level.of));
  kept.setValue("from", choice_.level.fromHz);
  kept.setValue("to", choice_.level.toHz);
  kept.setValue("near", choice_.level.nearHz);
  kept.setValue("within", choice_.level.withinHz);
  kept.setValue("name", Text(choice_.level.name));
  kept.setValue("band", choice_.level.band);
  kept.setValue("option", choice_.level.option);
  kept.setValue("scale", static_cast<int>(choice_.up));
  kept.setValue("thresholds", choice_.hasLimits);
  kept.setValue("temperature", choice_.hasTemperature);
  kept.setValue("warning", choice_.limits.warning.value_or(0));
  kept.setValue("fault", choice_.limits.fault.value_or(0));
  kept.endGroup();
}

// What cannot be one is as it is at the first start.
void TrendView::Restore(const QSettings& kept) {
  const auto number = [&](const char* key) {
    const double value = kept.value(QStringLiteral("trend/") + key).toDouble();
    return std::isfinite(value) ? value : 0;
  };
  const auto whole = [&](const char* key, int most) {
    const double value = number(key);
    return value >= 0 && value <= most ? static_cast<int>(value) : 0;
  };
  trend::Level level{.of = static_cast<archive::TrendOf>(
                         whole("level", static_cast<int>(archive::TrendOf::PeakNear))),
                     .fromHz = number("from"),
                     .toHz = number("to"),
                     .nearHz = number("near"),
                     .withinHz = number("within"),
                     .name = kept.value("trend/name").toString().left(kMostName).toStdString(),
                     .band = whole("band", 6),
                     .option = whole("option", 3)};
  const bool isNear = level.of == archive::TrendOf::PeakNear;
  const bool isWhole = isNear ? study::IsFrequency(level.nearHz) && level.withinHz > 0
                              : !archive::IsWorkedOut(level.of) || level.fromHz < level.toHz;
  if (!isWhole) level = {};
  choice_.level = wanted_ = level;
  choice_.up = static_cast<AxisKind>(whole("scale", 2));
  choice_.hasLimits = kept.value("trend/thresholds", true).toBool();
  choice_.hasTemperature = kept.value("trend/temperature", false).toBool();
  trend::Limits& limits = typed_[TitleOf(level)];
  if (number("warning") > 0) limits.warning = number("warning");
  if (number("fault") > 0) limits.fault = number("fault");
  Redraw();
}

}  // namespace kestrel
