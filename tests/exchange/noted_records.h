// Records with everything that can be known of them, for tests of files.
// SPDX-License-Identifier: MIT
#pragma once

#include <chrono>
#include <string>
#include <vector>

#include "exchange/record_note.h"
#include "study/sample_records.h"

namespace kestrel::exchange {

inline RecordNote SampleNote() {
  return {
      .machine = "Pump 3 \u2013 K\u00FChlwasser",
      .point = "DE bearing",
      .orientation = "X axial, Y horizontal, Z vertical",
      .speedRpm = 1480.5,
      .note = "after \"alignment\",\nsecond line\t'; DROP TABLE records; --\\ \U0001F527",
      .tags = {"good", "baseline"},
      .time = std::chrono::system_clock::time_point(std::chrono::milliseconds(1'710'404'813'250)),
      .sensor = "No. 17",
      .program = "0.1.0"};
}

inline NotedRecord NotedOf(const study::Sample& sample) {
  NotedRecord noted{.record = study::TakenOf(sample), .note = SampleNote()};
  Record& record = noted.record;
  record.settings.recCtrl = 0x0F02;
  record.conditions.supplyV = 3.2999F;
  record.conditions.temperatureC = 24.6F;
  record.status = {.word = 0x80, .known = true};
  record.alarms.axes[1] = {.status = 0x102, .peak = 1234, .peakBin = 57};
  record.alarms.gPerPeakLsb = record.lsbWeight;
  record.alarms.statusKnown = record.alarms.peaksKnown = true;
  record.sensor = {.product = 31407, .interface = "Ezusb-0", .adapter = "FIFO4"};
  return noted;
}

inline NotedRecord SpectrumNoted(int option = 0) {
  return NotedOf(
      {.tones = {study::ToneAtBin(20.3, 1.7, option), study::ToneAtBin(77.8, 0.02, option)},
       .option = option,
       .noiseDensityG = 0.0003,
       .second = 3});
}

// Beyond 1 g, so that a file of samples up to 1 must say its scale.
inline NotedRecord TimeNoted(int option = 0) {
  return NotedOf({.tones = {study::ToneAtBin(31.4, 1.7, option)},
                  .kind = RecordKind::Time,
                  .option = option,
                  .noiseDensityG = 0.0003,
                  .offsetG = -0.25,
                  .second = 4});
}

}  // namespace kestrel::exchange
