// The text in which a WAV file says what its samples mean.
// SPDX-License-Identifier: MIT
#pragma once

#include <chrono>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

#include "exchange/record_note.h"

namespace kestrel::exchange {

// Readers of the text take less than 2,048 bytes.
inline constexpr std::size_t kWavText = 2047;

// g of a sample of 1.0: 32,768 words of the record, so that every word is a sample without loss
// and none is beyond 1; more where a value needs it.
[[nodiscard]] double WavScale(const Record& record);

// Lines "name: value", as many as fit; what was noted comes last.
[[nodiscard]] std::string WavText(const NotedRecord& noted);

// What such a text tells.
struct WavTold {
  double gPerUnit = 0;  // g of a sample of 1.0
  double rateHz = 0;    // the true one; a WAV file itself holds whole numbers only
  std::optional<RecordSettings> settings{};
  std::optional<double> lsbWeight{};
  std::optional<std::int16_t> scaledRange{};
};
// Nothing where the text is another's, or is damaged.
[[nodiscard]] std::optional<WavTold> WavToldBy(std::string_view text);

}  // namespace kestrel::exchange
