// A trend as columns or JSON.
// SPDX-License-Identifier: MIT
#include "cli/archive/trend_command.h"

#include <CLI/Config.hpp>
#include <CLI/Formatter.hpp>
#include <CLI/Validators.hpp>

#include "cli/archive/archive_command.h"
#include "cli/word_choice.h"
#include "numeric/number_format.h"
#include "numeric/number_parse.h"
#include "record/utc_time.h"

namespace kestrel {
namespace {

using archive::Trend;
using archive::TrendOf;
using archive::TrendPoint;
using archive::TrendSeries;

const WordCodes<TrendOf> kLevels{{"rms", TrendOf::Rms},
                                 {"peak", TrendOf::Peak},
                                 {"temperature", TrendOf::Temperature},
                                 {"supply", TrendOf::Supply}};
const WordCodes<Axis> kAxisWords{{"X", Axis::X}, {"Y", Axis::Y}, {"Z", Axis::Z}};

std::string FrequencyProblem(const std::string& text) {
  const auto hz = WholeTextNumber(text);
  if (hz && *hz >= 0 && *hz <= 1e6) return {};
  return "\"" + text + "\" is not a frequency; give 0 to 1,000,000 Hz";
}

Json SeriesJson(const TrendSeries& series) {
  Json points = Json::array();
  for (const TrendPoint& point : series.points) {
    points.push_back({{"time", UtcText(point.time)},
                      {"value", point.value},
                      {"id", point.id},
                      {"alarm", point.alarm}});
  }
  return {{"kind", series.kind == RecordKind::Time ? "time" : "spectrum"},
          {"sample_rate_option", series.option},
          {"window", series.window},
          {"points", points}};
}

Json TrendJson(const Trend& trend) {
  Json json{{"unit", trend.unit}, {"refused", trend.refused}, {"refusal", trend.refusal}};
  json["series"] = Json::array();
  for (const TrendSeries& series : trend.series) json["series"].push_back(SeriesJson(series));
  return json;
}

void PrintTrend(std::ostream& out, const Trend& trend) {
  out << "series\ttime (UTC)\t" << trend.unit << "\tid\talarm\n";
  int number = 0;
  for (const TrendSeries& series : trend.series) {
    ++number;
    for (const TrendPoint& point : series.points) {
      out << number << '\t' << UtcText(point.time) << '\t' << GeneralNumber(point.value) << '\t'
          << point.id << '\t' << (point.alarm ? "yes" : "no") << '\n';
    }
  }
}

}  // namespace

void TrendCommand::AddTo(CLI::App& app) {
  word_ = app.add_subcommand("trend", "Report a level of kept records over time");
  AddChoice(*word_, "level", of_, kLevels, "The level")->required();
  AddChoice(*word_, "--axis", axis_, kAxisWords, "Axis of an RMS or a peak, X if not given");
  auto* low = word_->add_option("--low", low_, "Lower end of a band of the spectrum, Hz")
                  ->check(FrequencyProblem);
  auto* high =
      word_->add_option("--high", high_, "Upper end of the band, Hz")->check(FrequencyProblem);
  low->needs(high);
  auto* near = word_->add_option("--near", near_, "Largest peak near this frequency, Hz")
                   ->check(FrequencyProblem)
                   ->excludes(low)
                   ->excludes(high);
  auto* within =
      word_->add_option("--within", within_, "How far from it at most, Hz; 1 % of it if not given")
          ->check(FrequencyProblem);
  within->needs(near);
  filter_.AddTo(*word_);
}

archive::TrendChoice TrendCommand::Choice() const {
  archive::TrendChoice choice{
      .of = *of_, .axis = axis_.value_or(Axis::X), .fromHz = low_, .toHz = high_};
  if (near_) return ChoiceNear(choice);
  if (high_ <= 0) return choice;
  if (low_ >= high_) {
    throw RuntimeError("A band cannot go from " + GeneralNumber(low_) + " to " +
                       GeneralNumber(high_) + " Hz; give a --low below the --high.");
  }
  if (choice.of != TrendOf::Rms && choice.of != TrendOf::Peak) {
    throw RuntimeError(
        "A band has an RMS and a peak; leave out --low and --high for temperature and supply.");
  }
  choice.of = choice.of == TrendOf::Rms ? TrendOf::BandRms : TrendOf::BandPeak;
  return choice;
}

archive::TrendChoice TrendCommand::ChoiceNear(archive::TrendChoice choice) const {
  constexpr double kUsualPart = 0.01;
  choice.nearHz = *near_;
  choice.withinHz = within_.value_or(*near_ * kUsualPart);
  if (choice.of != TrendOf::Peak)
    throw RuntimeError(
        "Near a frequency only a peak can be followed; ask for peak, or leave out --near.");
  if (choice.withinHz <= 0)
    throw RuntimeError("--within 0 Hz holds no peak; give a width above 0 Hz.");
  choice.of = TrendOf::PeakNear;
  return choice;
}

ExitCode TrendCommand::Run(Session& session, const Output& output) {
  const archive::TrendChoice choice = Choice();
  archive::Archive archive = OpenArchive(session, database::Access::ReadOnly);
  const Trend trend = TrendFor(archive, filter_.Filter(), choice, [&](auto done, auto all) {
    session.ShowProgress({"Records", static_cast<int>(done), static_cast<int>(all)});
    return !session.Interrupted();
  });
  session.EndProgress();
  if (!trend.whole) return ExitCode::Interrupted;
  if (trend.refused > 0) {
    session.Say(std::to_string(trend.refused) +
                (trend.refused == 1 ? " record is" : " records are") +
                " left out: " + trend.refusal);
  }
  if (output.json)
    output.Write(TrendJson(trend));
  else
    PrintTrend(output.out, trend);
  return ExitCode::Success;
}

}  // namespace kestrel
