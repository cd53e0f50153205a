// Which captures of a series are computed when nobody has looked for long.
// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>

namespace kestrel {

// Which records of a series leave a trace when they are over.
enum class Traces {
  OfTheNewest,    // buffers and registers show it
  OfALatestRun,   // alarms depend on the last few: the response delay counts them
  OfAnyRecord,    // an alarm of any may be latched, or may store it
  OfEveryRecord,  // each is stored
};

// How many of the next captures of a series may be counted without being computed, when a frame
// finds `due` of them complete (the one to begin next being the first) and `passed` have already
// been passed by, computed or not, since the frame before.
//
// Records that leave a trace are all computed as long as no more than kExactBlocks blocks of 512
// samples come between two frames (half an hour at one block a second, far longer than a program
// leaves a sensor it works with alone). From there on records are taken ever more thinly, in
// proportion to the time that nobody has looked, and each stands for those passed by before it, in
// the count of the response delay too; so even a year costs less than thirty times the exact part.
// The last records are a whole run again.
// Each that is computed is a record that the series really took, at its own moment.
[[nodiscard]] std::uint64_t OmissibleCaptures(Traces traces, unsigned blocks, std::uint64_t due,
                                              std::uint64_t passed);

inline constexpr unsigned kExactBlocks = 2048;

}  // namespace kestrel
