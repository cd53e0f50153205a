// Records as names, counts and messages.
// SPDX-License-Identifier: MIT
#include "monitor/own_records.h"

#include <algorithm>
#include <string>

#include "numeric/hash.h"
#include "record/frequency.h"

namespace kestrel::monitor {

archive::Uid UidOfWords(const Record& record) {
  std::string words = std::to_string(record.settings.recInfo);
  for (const Axis axis : kAxes) {
    for (const double word : record.Of(axis).raw.First(record.Points())) {
      words += ' ' + std::to_string(static_cast<std::int64_t>(word));
    }
  }
  archive::Uid uid{};
  for (std::size_t half = 0; half < 2; ++half) {
    const auto hash = static_cast<std::uint64_t>(HashOf((half == 0 ? "a" : "b") + words));
    for (std::size_t i = 0; i < 8; ++i) {
      uid[8 * half + i] = static_cast<std::uint8_t>(hash >> (8 * i) & 0xFFU);
    }
  }
  return uid;
}

std::int64_t MissedBetween(std::chrono::system_clock::time_point last,
                           std::chrono::system_clock::time_point now, std::chrono::seconds every) {
  if (now <= last || every.count() <= 0) return 0;
  const auto period = std::chrono::duration_cast<std::chrono::system_clock::duration>(every);
  return (now - last - std::chrono::system_clock::duration{1}) / period;
}

bool IsJudged(const Plan& plan, const AlarmKey& key) {
  return std::ranges::any_of(plan.steps, [&](const Step& step) {
    if (key.kind == AlarmKind::Severity) {
      return step.kind == StepKind::Wide && plan.judging.severity.has_value();
    }
    if (step.kind == StepKind::TimeRecord) return false;
    const bool isOfOption = step.kind == StepKind::Wide || step.option == key.option;
    return isOfOption && (key.kind == AlarmKind::Band || !step.bands.empty());
  });
}

publish::RecordFacts FactsOf(const Record& record, const archive::Uid& uid) {
  return {.uid = archive::TextOf(uid),
          .time = record.time,
          .option = record.settings.option,
          .window = record.settings.window,
          .range = static_cast<int>(FullScaleOf(record.settings.range))};
}

publish::Levels LevelsOf(const Record& record, const archive::Uid& uid,
                         const publish::Names& names) {
  publish::Levels levels{.of = names, .record = FactsOf(record, uid)};
  const archive::KeptLevels kept = archive::LevelsFor(record);
  for (const Axis axis : kAxes) {
    publish::AxisLevels& of = levels.axes[Index(axis)];
    if (const auto& level = kept[Index(axis)]) {
      of.rmsG = level->rmsG;
      of.peakG = level->peakG;
    }
    if (record.kind == RecordKind::Spectrum && record.alarms.peaksKnown) {
      of.topHz = record.alarms.Of(axis).peakBin * BinWidth(record.settings.option);
    }
  }
  return levels;
}

publish::Spectrum SpectrumOf(const Record& record, const archive::Uid& uid,
                             const publish::Names& names) {
  publish::Spectrum spectrum{
      .of = names, .record = FactsOf(record, uid), .binHz = BinWidth(record.settings.option)};
  for (const Axis axis : kAxes) {
    const auto values = record.Values(axis);
    spectrum.g[Index(axis)].assign(values.begin(), values.end());
  }
  return spectrum;
}

}  // namespace kestrel::monitor
