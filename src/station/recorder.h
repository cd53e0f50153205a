// How a station's sensor records, and records out of it: captured now, or stored earlier.
// SPDX-License-Identifier: MIT
#pragma once

#include <chrono>
#include <cstdint>
#include <filesystem>
#include <optional>
#include <string>

#include "acquisition/fast_readout.h"
#include "connection/core.h"
#include "logging/data_log.h"
#include "record/record.h"
#include "station/result.h"
#include "station/unattended_loop.h"
#include "station/watch.h"

namespace kestrel {

// The codes of the sensor's settings; in a change what is empty stays as the sensor has it.
struct RecordSetup {
  std::optional<std::int16_t> mode{};      // 0 manual FFT, 1 timer FFT, 2 time record
  std::optional<std::int16_t> range{};     // 0..3 for 1, 5, 20, 70 g
  std::optional<std::int16_t> option{};    // sample-rate option 0..3
  std::optional<std::int16_t> window{};    // 0 rectangular, 1 Hanning, 2 flat top
  std::optional<std::int16_t> averages{};  // FFT averages 1..255
};

// What a capture gave. `record` is scaled by the range in its own information word.
struct Captured {
  Record record;
  bool interrupted = false;  // an interrupt ended the wait or came during the read-out
};

class Recorder {
 public:
  Recorder(Core& core, UnattendedLoop& loop, StepEnd& end, const Watch& watch);

  // Writes what is asked for and reads back how the sensor records: every field is filled.
  Result<RecordSetup> Configure(const RecordSetup& change);

  // Clears STATUS, tells the sensor to capture and waits, as long as it takes, until data are ready
  // or an interrupt makes the sensor stop; then reads what it holds. Whether these data are of this
  // capture tells Record::IsNew. An interrupt is no failure.
  Result<Captured> Capture();

  // Record 0..15 of the sensor's flash. The sensor does not tell of which kind it is.
  Result<Record> ReadStored(int number, RecordKind kind);
  // The record that is in the sensor's buffers, as one it took by itself.
  Result<Record> ReadPresent(RecordKind kind);

  // How the points of a record are read. A road that is refused is noted as a message.
  [[nodiscard]] FastReadout& Fast() { return fast_; }

  // g per code of a magnitude or a threshold at the settings that were last read.
  [[nodiscard]] double GPerCode() const;

  // Writes the record at hand to the next numbered data file, scaled by the range that is set;
  // returns its path.
  Result<std::filesystem::path> WriteDataFile();

 private:
  class NoCount : public DataLogView {
   public:
    void SetFileCountColour(double /*colour*/) override {}
    void SetFileCount(const std::string& /*text*/) override {}
  };
  enum class Wait { Ready, Stopped, Lost };

  Result<Record> ReadWithState(RecordKind kind, const RecordOrigin& origin);
  bool Start();
  Wait WaitForData(RecordOrigin& origin);
  Wait Stop(RecordOrigin& origin);
  [[nodiscard]] std::chrono::nanoseconds ShortestCapture() const;
  std::optional<Record> ReadOut(RecordKind kind, const RecordOrigin& origin);
  // The record at hand from now on; returns it scaled by its own range.
  Record HandOver(Record record);

  Core& core_;
  UnattendedLoop& loop_;
  StepEnd& end_;
  const Watch& watch_;
  FastReadout fast_;
  NoCount view_;
  DataLog log_;
  RecordSetup setup_;
};

}  // namespace kestrel
