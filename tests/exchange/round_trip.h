// Files for tests of the readers, and what they say of them.
// SPDX-License-Identifier: MIT
#pragma once

#include <string>
#include <vector>

#include "exchange/exported.h"
#include "exchange/imported.h"
#include "exchange/noted_records.h"
#include "logging/data_log_text.h"

namespace kestrel::exchange {

inline std::string BytesOf(const std::vector<NotedRecord>& records, ExportFormat format) {
  const auto bytes = Exported(records, format);
  EXPECT_TRUE(bytes) << bytes.Why().Text();
  return bytes ? *bytes : "";
}

// One axis of a spectrum as a file of another program would have it, without our own words.
inline std::string OneDataset(ExportFormat format) {
  std::string bytes = BytesOf({SpectrumNoted()}, format);
  bytes.resize(bytes.find("    -1\n    -1\n") + 7);
  for (const char* own : {"KESTREL1", "MEASURED"}) bytes.replace(bytes.find(own), 8, "whatever");
  return bytes;
}

inline std::string DataLogOf(const Record& record, char decimalMark = '.',
                             DataLogValues values = DataLogValues::Scaled) {
  return DataLogText(
      record, FormatFor(decimalMark),
      {.baseName = "pump", .date = "3/14/24", .time = "8:26:53", .averageExponent = 3}, values);
}

// The fault's text; empty where the file was imported.
inline std::string WhyNotImported(const std::string& file, const std::string& bytes) {
  const auto imported = Imported(file, bytes);
  return imported ? "" : imported.Why().Text();
}

inline std::string LittleEndian(unsigned value, std::size_t size) {
  std::string bytes;
  for (std::size_t i = 0; i < size; ++i) bytes += static_cast<char>(value >> (8 * i) & 0xFFU);
  return bytes;
}

// Whole numbers of 16 bits on two channels, as a sound recorder writes them.
inline std::string PlainWav(const std::vector<int>& samples = {0, 16384, -32768, 32767}) {
  std::string data;
  for (const int sample : samples) data += LittleEndian(static_cast<unsigned>(sample), 2);
  const std::string chunks = "fmt " + LittleEndian(16, 4) + LittleEndian(1, 2) +
                             LittleEndian(2, 2) + LittleEndian(8000, 4) + LittleEndian(32000, 4) +
                             LittleEndian(4, 2) + LittleEndian(16, 2) + "data" +
                             LittleEndian(static_cast<unsigned>(data.size()), 4) + data;
  return "RIFF" + LittleEndian(static_cast<unsigned>(chunks.size()) + 4, 4) + "WAVE" + chunks;
}

// The text with the first `from` replaced.
inline std::string With(std::string text, const std::string& from, const std::string& to) {
  const std::size_t at = text.find(from);
  EXPECT_NE(at, std::string::npos) << from;
  return at == std::string::npos ? text : text.replace(at, from.size(), to);
}

}  // namespace kestrel::exchange
