// Samples read one by one, the record in blocks, and the two compared.
// SPDX-License-Identifier: MIT
#include "acquisition/fast_readout.h"

#include <algorithm>

#include "acquisition/sensor_identity.h"
#include "regmap/register_table.h"

namespace kestrel {
namespace {

constexpr int kSamplesOfAnAxis = 3;
constexpr int kFirstSamplesOfAnAxis = 32;

// One place in each of `count` equal parts of the points.
std::vector<int> Spread(int points, int count, std::mt19937& random) {
  std::vector<int> places;
  for (int part = 0; part < count; ++part) {
    const int from = part * points / count;
    const int to = (part + 1) * points / count;
    places.push_back(from + static_cast<int>(random() % static_cast<std::uint32_t>(to - from)));
  }
  return places;
}

std::int32_t WordAt(const BufferWords& words, const BufferPlace& place) {
  return words[Index(place.axis)][static_cast<std::size_t>(place.point)];
}

void Fill(Record& record, const BufferWords& words) {
  for (const Axis axis : kAxes) {
    for (int i = 0; i < static_cast<int>(record.Points()); ++i) {
      PutPoint(record, {axis, i}, WordAt(words, {axis, i}));
    }
  }
}

}  // namespace

FastReadout::FastReadout(Core& core) : core_(core) {}

void FastReadout::Choose(bool chosen) {
  if (chosen == chosen_) return;
  if (chosen) std::erase(refused_, Present().road);
  chosen_ = chosen;
  proven_.reset();
}

bool FastReadout::InUse() const {
  return chosen_ && std::ranges::find(refused_, Present().road) == refused_.end();
}

FastReadout::Tried FastReadout::Present() const {
  const SensorIdentity sensor = PresentSensor(core_);
  std::string road = sensor.interface;
  if (!sensor.adapter.empty()) road += ", " + sensor.adapter;
  return {road, core_.registers.Connections()};
}

bool FastReadout::ReadPoints(Record& record, const ReadoutSteps& steps) {
  if (!InUse()) return ReadPointsSingly(core_.registers, record, steps);
  const int points = static_cast<int>(record.Points());
  const auto tell = [&](int done) {
    if (steps.points) steps.points(3 * done, 3 * points);
  };
  const auto samples = ReadSamples(points);
  const auto words = samples ? ReadInBlocks(core_.registers, points, tell) : std::nullopt;
  if (!words) return false;
  const auto wrong = std::ranges::find_if(
      *samples, [&](const Sample& sample) { return WordAt(*words, sample.place) != sample.word; });
  if (wrong != samples->end()) {
    return ReadAgain(record, steps,
                     {Present().road, wrong->place, wrong->word, WordAt(*words, wrong->place)});
  }
  proven_ = Present();
  Fill(record, *words);
  return true;
}

std::vector<BufferPlace> FastReadout::Places(int points) {
  if (!random_) {
    random_.emplace(
        static_cast<std::uint32_t>(core_.seams.clock.UtcNow().time_since_epoch().count()));
  }
  const bool isFirst = proven_ != Present();
  std::vector<BufferPlace> places;
  for (const Axis axis : kAxes) {
    auto spread = Spread(points, isFirst ? kFirstSamplesOfAnAxis : kSamplesOfAnAxis, *random_);
    if (isFirst) {
      spread.front() = 0;
      spread.back() = points - 1;
    }
    for (const int point : spread) places.push_back({axis, point});
  }
  return places;
}

std::optional<std::vector<FastReadout::Sample>> FastReadout::ReadSamples(int points) {
  std::vector<Sample> samples;
  for (const BufferPlace& place : Places(points)) {
    const auto word = ReadBufferWord(core_.registers, place);
    if (!word) return std::nullopt;
    samples.push_back({place, *word});
  }
  return samples;
}

bool FastReadout::ReadAgain(Record& record, const ReadoutSteps& steps,
                            const Difference& difference) {
  const auto count = core_.registers.Read(row::REC_CNT);
  if (!count || !ReadPointsSingly(core_.registers, record, steps)) return false;
  if (count->value != record.conditions.recordCount) return true;
  refused_.push_back(difference.road);
  if (told_) told_(difference);
  return true;
}

std::string TextOf(const FastReadout::Difference& difference) {
  return std::string("The fast read-out is switched off for ") + difference.road + ": point " +
         std::to_string(difference.place.point) + " of axis " + Letter(difference.place.axis) +
         " came as " + std::to_string(difference.inBlock) + " in a block and as " +
         std::to_string(difference.single) +
         " by itself. The record was read again in the ordinary way.";
}

}  // namespace kestrel
