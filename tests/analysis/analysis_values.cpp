// Answers questions about analysed numbers, one a line, for check_analysis.py.
// SPDX-License-Identifier: MIT
#include <cstdint>
#include <functional>
#include <iostream>
#include <map>
#include <sstream>
#include <string>
#include <vector>

#include "analysis/baseline.h"
#include "analysis/joined.h"
#include "analysis/levels.h"
#include "analysis/quantity.h"
#include "analysis/severity.h"
#include "analysis/third_octaves.h"
#include "analysis/time_velocity.h"
#include "analysis/windows.h"
#include "record/frequency.h"

namespace kestrel::analysis {
namespace {

using Numbers = std::vector<double>;
// What stands after the name of a question: window code, option, then numbers.
struct Question {
  int window = 0;
  int option = 0;
  Numbers numbers{};
};

Spectrum SpectrumFrom(const Question& question, std::size_t first = 0) {
  Spectrum spectrum{.binWidthHz = BinWidth(question.option),
                    .window = WindowOfCode(question.window),
                    .option = question.option};
  const auto begin = question.numbers.begin() + static_cast<std::ptrdiff_t>(first);
  spectrum.peakG.assign(begin, begin + kSpectrumBins);
  return spectrum;
}

Numbers Curve(const Question& question, const QuantityChoice& choice) {
  const Told<QuantityCurve> curve = InQuantity(SpectrumFrom(question), choice);
  return curve ? curve->values : Numbers{};
}

Numbers WindowFacts(const Question& question) {
  const Window window = WindowOfCode(question.window);
  Numbers facts{window.gain, window.noiseBandwidth, window.scallopDb};
  const Numbers samples = WindowSamples(window, kTransformLength);
  facts.insert(facts.end(), samples.begin(), samples.end());
  return facts;
}

Numbers Level(const Question& question) {
  const Told<BandLevel> level =
      LevelBetween(SpectrumFrom(question, 2), question.numbers[0], question.numbers[1]);
  return level ? Numbers{level->rmsG, level->peakG, level->peakHz} : Numbers{};
}

Numbers LevelAs(const Question& question, const QuantityChoice& choice) {
  const Told<QuantityLevel> level =
      LevelIn(SpectrumFrom(question, 2), choice, question.numbers[0], question.numbers[1]);
  return level ? Numbers{level->fromHz, level->rms, level->largest, level->largestHz} : Numbers{};
}

Numbers Time(const Question& question) {
  const std::optional<TimeLevels> levels = LevelsOf(question.numbers);
  const std::optional<SelfTest> test = TestSelf(question.numbers, WindowOfCode(question.window));
  return {levels->meanG,     levels->rmsG,       levels->peakG,     *levels->crest,
          *levels->kurtosis, test->spectrumRmsG, test->differenceDb};
}

Numbers Velocity(const Question& question) {
  const Numbers samples(question.numbers.begin() + 1, question.numbers.end());
  const Told<VelocityRecord> velocity = VelocityOf(samples, question.option, question.numbers[0]);
  return velocity ? velocity->mmPerS : Numbers{};
}

// Four spectra, option 0 first.
std::vector<Spectrum> Four(const Question& question) {
  std::vector<Spectrum> captures;
  for (int option = 0; option < kOptions; ++option) {
    Question one = question;
    one.option = option;
    captures.push_back(SpectrumFrom(one, static_cast<std::size_t>(option) * kSpectrumBins));
  }
  return captures;
}

Numbers JoinedPoints(const Question& question) {
  Numbers numbers;
  const Told<Joined> joined = Join(Four(question));
  for (const JoinedPoint& point : joined->points) {
    numbers.insert(numbers.end(), {point.hz, point.density});
  }
  return numbers;
}

Numbers Overlaps(const Question& question) {
  Numbers numbers;
  const Told<Joined> joined = Join(Four(question));
  for (const Overlap& overlap : joined->overlaps) {
    numbers.insert(numbers.end(),
                   {overlap.fromHz, overlap.toHz, overlap.fineRmsG, overlap.coarseRmsG});
  }
  return numbers;
}

Numbers Severity(const Question& question) {
  return {EstimateSeverity(*Join(Four(question)), {"any", 1, 2, 3})->mmPerS};
}

Numbers ThirdOctaves(const Question& question) {
  Numbers numbers;
  for (const ThirdOctave& band : ThirdOctavesOf(Four(question))) {
    numbers.insert(numbers.end(), {band.centreHz, band.rmsG});
  }
  return numbers;
}

// Of pairs of a count and what it is of.
Numbers Bounds(const Question& question) {
  Numbers bounds;
  for (std::size_t i = 0; i + 1 < question.numbers.size(); i += 2) {
    const ShareBounds each =
        BoundsOf(static_cast<int>(question.numbers[i]), static_cast<int>(question.numbers[i + 1]));
    bounds.insert(bounds.end(), {each.low, each.high});
  }
  return bounds;
}

// Of a number of captures, a share and a confidence; 0 for none.
Numbers Rank(const Question& question) {
  const std::vector<double>& numbers = question.numbers;
  return {static_cast<double>(
      RankFor(static_cast<int>(numbers[0]), numbers[1], numbers[2]).value_or(0))};
}

Numbers UsualLevels(const Question& question) {
  const auto usual = UsualOf(question.numbers);
  return {usual->meanDb, usual->sigmaDb, FalseAlarmRate(18, usual->sigmaDb)};
}

using Answer = std::function<Numbers(const Question&)>;

std::map<std::string, Answer> Answers() {
  const auto curve = [](QuantityChoice choice) {
    return [choice](const Question& question) { return Curve(question, choice); };
  };
  return {{"rms", curve({Quantity::Acceleration, Amplitude::Rms})},
          {"pp", curve({Quantity::Acceleration, Amplitude::PeakToPeak})},
          {"level", curve({.quantity = Quantity::Level})},
          {"micro",
           curve({Quantity::Level, Amplitude::Rms, LevelReference::MicrometrePerSecondSquared})},
          {"density", curve({.quantity = Quantity::Density})},
          {"velocity", curve({Quantity::Velocity, Amplitude::Rms})},
          {"displacement", curve({Quantity::Displacement, Amplitude::PeakToPeak})},
          {"window", WindowFacts},
          {"transform",
           [](const Question& question) {
             return Transform(question.numbers, WindowOfCode(question.window));
           }},
          {"band", Level},
          {"velocityband",
           [](const Question& question) {
             return LevelAs(question, {Quantity::Velocity, Amplitude::Rms});
           }},
          {"displacementband",
           [](const Question& question) {
             return LevelAs(question, {Quantity::Displacement, Amplitude::PeakToPeak});
           }},
          {"time", Time},
          {"timevelocity", Velocity},
          {"joined", JoinedPoints},
          {"overlaps", Overlaps},
          {"severity", Severity},
          {"thirds", ThirdOctaves},
          {"bounds", Bounds},
          {"rank", Rank},
          {"usual", UsualLevels}};
}

void AnswerAll(std::istream& questions, std::ostream& answers) {
  const std::map<std::string, Answer> known = Answers();
  answers.precision(17);
  for (std::string line; std::getline(questions, line);) {
    std::istringstream words(line);
    std::string name;
    Question question;
    words >> name >> question.window >> question.option;
    for (double number = 0; words >> number;) question.numbers.push_back(number);
    for (const double number : known.at(name)(question)) answers << number << ' ';
    answers << '\n';
  }
}

}  // namespace
}  // namespace kestrel::analysis

int main() {
  kestrel::analysis::AnswerAll(std::cin, std::cout);
  return 0;
}
