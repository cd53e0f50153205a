// What files of others, and data-log files, bring back: values, what is known of them and what not.
// SPDX-License-Identifier: MIT
#pragma once

#include <chrono>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "exchange/outcome.h"
#include "record/record.h"

namespace kestrel::exchange {

struct ImportedTrace {
  std::optional<Axis> axis{};  // none where the file does not tell
  bool reversed = false;       // measured against the direction of the axis
  std::string label{};         // as the file names it
  std::vector<double> values{};
};

// Traces that were measured together. What the file does not tell is empty: it is asked for, or
// stays unknown, and is never assumed.
struct ImportedRecord {
  RecordKind kind = RecordKind::Spectrum;
  std::vector<ImportedTrace> traces{};  // all of one length, at least one value
  std::optional<double> first{};        // Hz or s of the first value
  std::optional<double> step{};         // Hz or s between two values
  std::string quantity{};               // "Acceleration"; empty where it is not told
  std::string unit{};                   // "g", "m/s^2" as the file has it
  std::optional<double> gPerUnit{};     // what a value is multiplied by to be in g
  bool amplitudes = true;               // false: of another kind, such as power; see `quantity`
  std::optional<RecordSettings> settings{};
  std::optional<double> lsbWeight{};  // g per LSB
  std::optional<std::int16_t> scaledRange{};
  std::optional<double> averages{};
  std::optional<float> supplyV{};
  std::optional<float> temperatureC{};
  std::optional<std::int32_t> recordCount{};
  std::optional<std::int32_t> status{};
  std::optional<std::chrono::system_clock::time_point> time{};
  std::string timeText{};  // as the file has it, where it does not tell which moment that is
  std::string title{};
  std::string note{};
};

struct ImportedFile {
  std::string file{};
  std::vector<ImportedRecord> records{};  // at least one
  std::vector<std::string> notices{};     // what was left out and why, a line each
};

// Reads the bytes of a data-log file, a universal file with datasets 58, or a WAV file; which it is
// is seen from its content. `file` is how messages name it. All of it is read, or nothing.
[[nodiscard]] Exchanged<ImportedFile> Imported(const std::string& file, std::string_view bytes);

// What a record has to be told before it is as good as one from the sensor, a line each: "sample
// rate", "range".
[[nodiscard]] std::vector<std::string> UnknownsOf(const ImportedRecord& record);

// What whoever imports says of a record that does not tell it itself; what the file tells counts
// more.
struct Said {
  std::optional<std::int16_t> option{};  // sample-rate option, 0..3
  std::optional<std::int16_t> range{};   // range code, 0..3
  std::optional<std::int16_t> window{};  // window code, 0..2; of a spectrum
  std::optional<bool> words{};           // the values are words of the sensor, not g
};

// The same as a record of the sensor: three axes of 256 or 512 points whose values are whole words
// at the range. A fault says which of this is not so, or not known.
[[nodiscard]] Exchanged<Record> RecordOf(const ImportedRecord& imported, const Said& said);

}  // namespace kestrel::exchange
