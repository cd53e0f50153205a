// What writer and reader of universal files share: numbers of the format, and our own words in it.
// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>

namespace kestrel::exchange {

inline constexpr const char* kUffMark = "    -1";
inline constexpr std::size_t kUffLine = 80;
inline constexpr int kUffIdLines = 5;
inline constexpr int kUffHeaderLines = 11;

// Function types.
inline constexpr int kUffGeneral = 0;
inline constexpr int kUffTimeResponse = 1;
inline constexpr int kUffSpectrum = 12;

// Ordinate data types: real, single and double precision.
inline constexpr int kUffRealSingle = 2;
inline constexpr int kUffRealDouble = 4;

// Specific data types of an axis.
inline constexpr int kUffUnknown = 0;
inline constexpr int kUffAnything = 1;
inline constexpr int kUffAcceleration = 12;
inline constexpr int kUffTime = 17;
inline constexpr int kUffFrequency = 18;

// Columns and values a line: 6E13.5 and 4E20.12.
inline constexpr std::size_t kUffSingleColumns = 13;
inline constexpr std::size_t kUffSingleAcross = 6;
inline constexpr std::size_t kUffDoubleColumns = 20;
inline constexpr std::size_t kUffDoubleAcross = 4;
inline constexpr int kUffSingleDecimals = 5;
inline constexpr int kUffDoubleDecimals = 12;

// What ID lines 4 and 5 of our own files begin with.
inline constexpr const char* kUffOwnSettings = "KESTREL1";
inline constexpr const char* kUffOwnConditions = "MEASURED";

}  // namespace kestrel::exchange
