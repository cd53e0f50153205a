// What is asked of the analysis for a record.
// SPDX-License-Identifier: MIT
#include "cli/number_report.h"

#include <algorithm>

#include "analysis/time_velocity.h"
#include "numeric/number_texts.h"
#include "record/record_notices.h"

namespace kestrel {
namespace {

using analysis::Quantity;
using analysis::QuantityChoice;
using analysis::Refusal;
using analysis::SensorBand;
using analysis::Spectrum;
using analysis::Told;

SensorBand BandOf(const BandTable& table, Axis axis, int number, int option) {
  return {.lowBin = table(kFLowField, number, option),
          .highBin = table(kFHighField, number, option),
          .warning = table(Alarm1Field(axis), number, option),
          .fault = table(Alarm2Field(axis), number, option)};
}

// Not where all is 0, as in a band that nobody has set.
bool HasBins(const SensorBand& band) {
  return band.highBin > 0 && band.lowBin >= 0 && band.lowBin <= band.highBin;
}

std::vector<BandNumbers> BandsOf(const Spectrum& spectrum, const QuantityChoice& quantity,
                                 const BandTable& table) {
  std::vector<SensorBand> bands;
  for (int number = 1; number <= kAlarmBands; ++number) {
    bands.push_back(BandOf(table, spectrum.axis, number, spectrum.option));
  }
  std::vector<BandNumbers> numbers;
  for (const auto& limits : analysis::LevelsOf(spectrum, bands)) {
    BandNumbers each{.band = bands[numbers.size()], .limits = limits};
    if (HasBins(each.band)) {
      each.level =
          analysis::LevelIn(spectrum, quantity, spectrum.FrequencyOf(each.band.lowBin - 0.5),
                            spectrum.FrequencyOf(each.band.highBin + 0.5));
    }
    numbers.push_back(each);
  }
  return numbers;
}

Refusal NoNumbers(std::string reason, std::string cure) {
  return {.title = "No peak or level can be determined from this record",
          .reason = std::move(reason),
          .cure = std::move(cure)};
}

// Blank words are no measurement, though they could be calculated with.
Refusal NothingStored(const Record& record) {
  return NoNumbers("All its points are the same blank word.",
                   record.origin.stored ? "Choose a record that has been stored" : "Capture again");
}

Told<ShapeNumbers> ShapeOf(const Record& record, Axis axis, const QuantityChoice& quantity) {
  const std::vector<double> samples = analysis::ValuesInG(record, axis, true);
  if (quantity.quantity == Quantity::Velocity) {
    const int option = record.settings.option;
    const auto velocity = analysis::VelocityOf(samples, option, analysis::LowestVelocityOf(option));
    if (!velocity) return velocity.Why();
    return ShapeNumbers{
        .levels = analysis::LevelsOf(velocity->mmPerS).value_or(analysis::TimeLevels{}),
        .unit = analysis::ShortUnitOf(quantity),
        .fromHz = velocity->fromHz};
  }
  const auto levels = analysis::LevelsOf(samples);
  if (quantity.quantity == Quantity::Acceleration && levels) {
    return ShapeNumbers{.levels = *levels, .unit = analysis::ShortUnitOf(quantity)};
  }
  if (!levels) return NoNumbers("It holds values that are not numbers.", "Capture again");
  std::string name = analysis::TitleOf(quantity);
  name.resize(std::min(name.find(','), name.size()));
  return Refusal{.title = name + " levels cannot be worked out over time",
                 .reason = "A time record tells levels of acceleration and velocity alone.",
                 .cure = "Choose --quantity g or velocity, or capture a spectrum"};
}

AxisNumbers OfSpectrum(const Spectrum& spectrum, const NumberChoice& choice,
                       const std::optional<BandTable>& bands) {
  const QuantityChoice quantity = choice.Quantity();
  AxisNumbers numbers;
  if (choice.Peaks() > 0) {
    numbers.peaks =
        analysis::PeaksIn(spectrum, quantity, {.atMost = static_cast<std::size_t>(choice.Peaks())});
  }
  if (choice.Levels() && spectrum.source == analysis::SpectrumSource::Sensor) {
    numbers.overall = analysis::OverallIn(spectrum, quantity);
    if (bands) numbers.bands = BandsOf(spectrum, quantity, *bands);
  }
  return numbers;
}

AxisNumbers Refused(const Refusal& refusal, const NumberChoice& choice) {
  AxisNumbers numbers;
  if (choice.Peaks() > 0) numbers.peaks = refusal;
  if (choice.Levels()) numbers.overall = refusal;
  return numbers;
}

void TakeAxis(NumberReport& report, const Record& record, Axis axis, const NumberChoice& choice,
              const std::optional<BandTable>& bands) {
  AxisNumbers& numbers = report.axes[Index(axis)];
  const auto spectrum = analysis::SpectrumOf(record, axis, {.ownRange = true});
  if (spectrum) {
    report.window = spectrum->window.name;
    report.validFromHz = spectrum->FrequencyOf(
        static_cast<double>(analysis::FirstValidBin(*spectrum, report.quantity)));
  }
  if (IsEmpty(record)) {
    numbers = Refused(NothingStored(record), choice);
    return;
  }
  if (!spectrum) {
    numbers = Refused(spectrum.Why(), choice);
    return;
  }
  numbers = OfSpectrum(*spectrum, choice, bands);
  if (choice.Levels() && record.kind == RecordKind::Time) {
    numbers.shape = ShapeOf(record, axis, report.quantity);
  }
}

// Of levels and densities; empty where it does not matter.
std::string NoticeOfAverages(const Record& record, const NumberChoice& choice) {
  const bool isPower = choice.Levels() || choice.Quantity().quantity == Quantity::Density;
  if (record.kind != RecordKind::Spectrum || !isPower) return {};
  return analysis::AveragesNotice(record.settings.averages);
}

// Notices about the scale mean those who show it by another; here it is the record's own.
std::vector<std::string> NoticesOf(const Record& record, const NumberChoice& choice) {
  std::vector<std::string> notices;
  for (const RecordNotice& notice : RecordNotices(record, {})) {
    if (notice.kind != NoticeKind::WrongScale) notices.push_back(notice.what + ". " + notice.means);
  }
  if (const auto averages = NoticeOfAverages(record, choice); !averages.empty()) {
    notices.push_back(averages);
  }
  return notices;
}

}  // namespace

NumberReport NumbersOf(const Record& record, const NumberChoice& choice,
                       const std::optional<BandTable>& bands) {
  NumberReport report{.quantity = choice.Quantity(),
                      .ownTransform = record.kind == RecordKind::Time,
                      .notices = NoticesOf(record, choice)};
  for (const Axis axis : kAxes) TakeAxis(report, record, axis, choice, bands);
  return report;
}

}  // namespace kestrel
