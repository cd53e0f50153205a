// The writers of the formats, one function each; records that can be written are handed to them.
// SPDX-License-Identifier: MIT
#pragma once

#include <span>
#include <string>

#include "exchange/outcome.h"
#include "exchange/record_note.h"

namespace kestrel::exchange {

// Universal file, one dataset 58 for each axis: values in g with 13 digits, or as doubles.
[[nodiscard]] std::string UffAscii(std::span<const NotedRecord> records);
[[nodiscard]] std::string UffBinary(std::span<const NotedRecord> records);

// MAT-file of level 5: a struct "record1", "record2", ... for each record.
[[nodiscard]] std::string MatFile(std::span<const NotedRecord> records);

// Facts as comment lines "# record 1, name: value", then one table of all points.
[[nodiscard]] std::string CsvFile(std::span<const NotedRecord> records);

// An object with all facts and points for each record.
[[nodiscard]] std::string JsonFile(std::span<const NotedRecord> records);

// WAV of 32-bit floats, three channels, of one time record: 1.0 is as many g as its text says.
[[nodiscard]] Exchanged<std::string> WavFile(const NotedRecord& noted);
[[nodiscard]] bool CanWriteWav();

}  // namespace kestrel::exchange
