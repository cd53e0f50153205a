// Records of a machine that was good for long and then got a bad bearing, for the workbench.
// SPDX-License-Identifier: MIT
#pragma once

#include <algorithm>
#include <array>
#include <cmath>
#include <random>
#include <vector>

#include "alarms/band_table.h"
#include "archive/kept_record.h"
#include "ui/made_up_records.h"

namespace kestrel {

// Bands 1 to 6 of option 0 as first and last bin.
inline constexpr std::array<std::array<int, 2>, 6> kMachineBands{
    {{3, 7}, {8, 28}, {40, 44}, {104, 120}, {132, 160}, {218, 255}}};

// A spectrum with a floor and a line in the middle of each band, each some decibels up or down from
// one record to the next; a bad bearing raises that of band 3 in Z and a little those above.
inline Record MachineSpectrum(int second, bool isBad, int range = 2) {
  constexpr std::array kLines{900, 700, 420, 300, 260, 200};
  std::mt19937 random(static_cast<unsigned>(second));
  std::normal_distribution<double> db(0, 0.4);
  Record record = MadeUpSpectrum(second, {});
  record.settings = SettingsFromWords(0 << 14 | 1 << 12 | range << 10 | 8, 0);
  record.scaledRange = static_cast<std::int16_t>(range);
  record.lsbWeight = LsbWeightOf(record.scaledRange, RecordKind::Spectrum);
  for (const Axis axis : kAxes) {
    for (std::size_t band = 0; band < kMachineBands.size(); ++band) {
      const int middle = (kMachineBands[band][0] + kMachineBands[band][1]) / 2;
      const bool isRaised = isBad && axis == Axis::Z && band >= 2;
      const double raised = isRaised ? (band == 2 ? 3.0 : 0.8) + 1.5 * std::abs(db(random)) : 0;
      const double word = kLines[band] * std::pow(10, (db(random) + raised) / 20);
      record.Of(axis).raw(middle) = static_cast<int>(std::lround(word));
    }
    for (int bin = 0; bin < 256; ++bin) {
      record.Of(axis).data(bin) = record.Of(axis).raw(bin) * record.lsbWeight;
    }
  }
  return record;
}

// Every two hours, the bad ones after the good ones, then some at another range.
inline std::vector<archive::NewRecord> MachineRecords(int good, int bad, int otherRange = 0) {
  std::vector<archive::NewRecord> records;
  for (int i = 0; i < good + bad + otherRange; ++i) {
    const bool isOther = i >= good + bad;
    const bool isBad = i >= good && !isOther;
    archive::NewRecord record{
        archive::NewUid(),
        MachineSpectrum(7200 * i, isBad, isOther ? 3 : 2),
        {.machine = "Pump 3", .point = "Drive end", .tags = {isBad ? "outer race" : "good"}},
        "0.1.0",
        "bench 1"};
    record.record.sensor = {31407, "Ezusb-0", "Board 7", true};
    records.push_back(std::move(record));
  }
  return records;
}

// As the sensor could hold them at 0 to 20 g, option 0.
inline BandTable MachineBandTable() {
  BandTable table;
  for (int band = 1; band <= kAlarmBands; ++band) {
    const auto& bins = kMachineBands[static_cast<std::size_t>(band - 1)];
    table(kFLowField, band, 0) = bins[0];
    table(kFHighField, band, 0) = bins[1];
    for (const Axis axis : kAxes) {
      table(Alarm1Field(axis), band, 0) = 1300 - 170 * band;
      table(Alarm2Field(axis), band, 0) = 1800 - 200 * band;
    }
  }
  return table;
}

}  // namespace kestrel
