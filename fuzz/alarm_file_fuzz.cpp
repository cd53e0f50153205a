// Arbitrary bytes read as an alarm file.
// SPDX-License-Identifier: MIT
// Reads arbitrary bytes as an alarm file.

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

#include "alarms/alarm_file.h"
#include "numeric/runtime_error.h"
#include "require.h"

namespace kestrel {
namespace {

constexpr std::int32_t kBefore = 123456789;  // what a table held before

// Calls `take` with option, band and field of every place that a file can name.
template <typename Take>
void ForEachPlace(int firstBand, int lastBand, int lastOption, Take take) {
  for (int option = 0; option <= lastOption; ++option) {
    for (int band = firstBand; band <= lastBand; ++band) {
      for (const int field : kBandFields) take(option, band, field);
    }
  }
}

void CheckMessage(const std::string& message, std::string_view content) {
  Require(message.starts_with("line "), "a refusal names the line");
  Require(message.size() < 300, "a refusal is short");
  const auto line = std::stoul(message.substr(5));
  Require(line >= 1 && line <= content.size() + 1, "the line is one of the file's");
  for (const char c : message) Require(static_cast<unsigned char>(c) >= ' ', "one line of text");
}

// How many lines were taken; -1 when the file was refused.
int Read(std::string_view content, BandTable& table) {
  try {
    const int taken = ReadAlarmFileText(content, table);
    Require(taken >= 0, "lines are counted");
    return taken;
  } catch (const RuntimeError& error) {
    CheckMessage(error.what(), content);
    return -1;
  }
}

void CheckRead(std::string_view content) {
  BandTable table;
  ForEachPlace(0, 7, 4,
               [&](int option, int band, int field) { table(field, band, option) = kBefore; });
  const int taken = Read(content, table);

  BandTable anew;
  Require(Read(content, anew) == taken, "what a table held has no say");
  std::size_t places = 0;
  ForEachPlace(0, 7, 4, [&](int option, int band, int field) {
    const std::int32_t value = table(field, band, option);
    Require(
        value == anew(field, band, option) || (value == kBefore && anew(field, band, option) == 0),
        "a place is read or left alone");
    if (value != kBefore) ++places;
  });
  Require(taken < 0 || places <= static_cast<std::size_t>(taken) * kBandFields.size(),
          "a line names one band");
  for (int option = 0; option <= 4; ++option) {
    for (int band = 0; band <= 7; ++band) {
      Require(anew(2, band, option) == 0 && anew(6, band, option) == 0, "unused fields stay");
    }
  }

  BandTable again;
  Require(ReadAlarmFileText(AlarmFileText(anew), again) == 24, "what was saved is read");
  ForEachPlace(1, 6, 3, [&](int option, int band, int field) {
    Require(again(field, band, option) == anew(field, band, option), "and is the same");
  });
}

}  // namespace
}  // namespace kestrel

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  kestrel::CheckRead({reinterpret_cast<const char*>(data), size});
  return 0;
}
