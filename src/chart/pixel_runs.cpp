// Blending, turning and summing up, four pixels at a time with SSE2.
// SPDX-License-Identifier: MIT
#include "chart/pixel_runs.h"

#include <algorithm>

#if defined(__SSE2__)
#include <emmintrin.h>
#if defined(__GNUC__)
#include <immintrin.h>
#define KESTREL_WIDE_REGISTERS
#endif
#endif

namespace kestrel {
namespace {

constexpr std::uint32_t kOpaque = 0xff000000U;
constexpr int kFullBits = 7;
static_assert(1 << kFullBits == kFullCover);
constexpr int kShift = kCoverOneBits - kFullBits;
constexpr std::int32_t kHalf = 1 << (kShift - 1);

std::uint32_t Blended(std::uint32_t ground, std::uint32_t colour, int part) {
  const auto mix = [&](int shift) {
    const int from = static_cast<int>(ground >> shift & 0xFFU);
    const int to = static_cast<int>(colour >> shift & 0xFFU);
    return static_cast<std::uint32_t>(from + (((to - from) * part) >> kFullBits)) << shift;
  };
  return kOpaque | mix(16) | mix(8) | mix(0);
}

#if defined(KESTREL_WIDE_REGISTERS)
__attribute__((target("avx"))) void ClearUpperParts() {
  _mm256_zeroupper();
}
#endif

#if defined(__SSE2__)

__m128i Loaded(const void* place) {
  return _mm_loadu_si128(static_cast<const __m128i*>(place));
}

void Stored(void* place, __m128i four) {
  _mm_storeu_si128(static_cast<__m128i*>(place), four);
}

// Every second byte of four pixels, in words, each by the part that its pixel has twice.
__m128i Mixed(__m128i ground, __m128i colour, __m128i parts) {
  const __m128i change = _mm_mullo_epi16(_mm_sub_epi16(colour, ground), parts);
  return _mm_add_epi16(ground, _mm_srai_epi16(change, kFullBits));
}

__m128i RunningSum(__m128i four, __m128i before) {
  four = _mm_add_epi32(four, _mm_slli_si128(four, 4));
  return _mm_add_epi32(before, _mm_add_epi32(four, _mm_slli_si128(four, 8)));
}

__m128i LastOf(__m128i four) {
  return _mm_shuffle_epi32(four, _MM_SHUFFLE(3, 3, 3, 3));
}

void TurnFour(const std::uint32_t* from, std::ptrdiff_t fromStride, std::uint32_t* to,
              std::ptrdiff_t toStride) {
  const __m128i a = Loaded(from);
  const __m128i b = Loaded(from + fromStride);
  const __m128i c = Loaded(from + 2 * fromStride);
  const __m128i d = Loaded(from + 3 * fromStride);
  const __m128i ab = _mm_unpacklo_epi32(a, b);
  const __m128i cd = _mm_unpacklo_epi32(c, d);
  const __m128i abHigh = _mm_unpackhi_epi32(a, b);
  const __m128i cdHigh = _mm_unpackhi_epi32(c, d);
  Stored(to, _mm_unpacklo_epi64(ab, cd));
  Stored(to + toStride, _mm_unpackhi_epi64(ab, cd));
  Stored(to + 2 * toStride, _mm_unpacklo_epi64(abHigh, cdHigh));
  Stored(to + 3 * toStride, _mm_unpackhi_epi64(abHigh, cdHigh));
}

#endif

}  // namespace

void ClearWideRegisters() {
#if defined(KESTREL_WIDE_REGISTERS)
  if (__builtin_cpu_supports("avx") != 0) ClearUpperParts();
#endif
}

void Blend(std::uint32_t* pixels, std::span<const std::int16_t> parts, std::uint32_t colour) {
  std::size_t i = 0;
#if defined(__SSE2__)
  const __m128i low = _mm_set1_epi16(0xFF);
  const __m128i wide = _mm_set1_epi32(static_cast<int>(colour | kOpaque));
  const __m128i redBlue = _mm_and_si128(wide, low);
  const __m128i alphaGreen = _mm_srli_epi16(wide, 8);
  for (; i + 4 <= parts.size(); i += 4) {
    const __m128i four = _mm_loadl_epi64(reinterpret_cast<const __m128i*>(parts.data() + i));
    const __m128i twice = _mm_unpacklo_epi16(four, four);
    const __m128i ground = Loaded(pixels + i);
    const __m128i even = Mixed(_mm_and_si128(ground, low), redBlue, twice);
    const __m128i odd = Mixed(_mm_srli_epi16(ground, 8), alphaGreen, twice);
    Stored(pixels + i, _mm_or_si128(even, _mm_slli_epi16(odd, 8)));
  }
#endif
  for (; i < parts.size(); ++i) pixels[i] = Blended(pixels[i], colour, parts[i]);
}

void Turn(const std::uint32_t* from, std::ptrdiff_t fromStride, int columns, int rows,
          std::uint32_t* to, std::ptrdiff_t toStride) {
  int row = 0;
#if defined(__SSE2__)
  for (; row + 4 <= rows; row += 4) {
    const std::uint32_t* source = from + row * fromStride;
    int column = 0;
    for (; column + 4 <= columns; column += 4) {
      TurnFour(source + column, fromStride, to + column * toStride + row, toStride);
    }
    for (; column < columns; ++column) {
      for (int i = 0; i < 4; ++i) to[column * toStride + row + i] = source[i * fromStride + column];
    }
  }
#endif
  for (; row < rows; ++row) {
    for (int column = 0; column < columns; ++column) {
      to[column * toStride + row] = from[row * fromStride + column];
    }
  }
}

void SumUp(std::span<std::int32_t> steps, std::span<std::int32_t> bends,
           std::span<std::int16_t> cover) {
#if defined(__SSE2__)
  const __m128i none = _mm_setzero_si128();
  const __m128i full = _mm_set1_epi16(kFullCover);
  __m128i slope = none;
  __m128i sum = _mm_set1_epi32(kHalf);
  for (std::size_t i = 0; i < cover.size(); i += kRowsAtOnce) {
    slope = RunningSum(Loaded(bends.data() + i), LastOf(slope));
    sum = RunningSum(_mm_add_epi32(Loaded(steps.data() + i), slope), LastOf(sum));
    const __m128i parts = _mm_packs_epi32(_mm_srai_epi32(sum, kShift), none);
    _mm_storel_epi64(reinterpret_cast<__m128i*>(cover.data() + i),
                     _mm_min_epi16(_mm_max_epi16(parts, none), full));
    Stored(steps.data() + i, none);
    Stored(bends.data() + i, none);
  }
#else
  std::int32_t slope = 0;
  std::int32_t sum = kHalf;
  for (std::size_t i = 0; i < cover.size(); ++i) {
    slope += bends[i];
    sum += steps[i] + slope;
    steps[i] = bends[i] = 0;
    cover[i] = static_cast<std::int16_t>(std::clamp(sum >> kShift, 0, kFullCover));
  }
#endif
}

void CoverSteep(std::span<std::int16_t> cover, double top, double thickness, double rise) {
  const double each = kFullCover / rise;  // from row to row
  const double first = (0.5 - top) * each;
  const double apart = thickness * each;
  std::size_t i = 0;
#if defined(__SSE2__)
  const __m128 none = _mm_setzero_ps();
  const __m128 full = _mm_set1_ps(kFullCover);
  const __m128 four = _mm_set1_ps(static_cast<float>(4 * each));
  const __m128 lanes = _mm_mul_ps(_mm_setr_ps(0, 1, 2, 3), _mm_set1_ps(static_cast<float>(each)));
  const __m128 later = _mm_set1_ps(static_cast<float>(apart));
  __m128 above = _mm_add_ps(_mm_set1_ps(static_cast<float>(first)), lanes);
  const auto next = [&] {
    const __m128 one = _mm_min_ps(_mm_max_ps(above, none), full);
    const __m128 other = _mm_min_ps(_mm_max_ps(_mm_sub_ps(above, later), none), full);
    above = _mm_add_ps(above, four);
    return _mm_cvtps_epi32(_mm_sub_ps(one, other));
  };
  for (; i + 8 <= cover.size(); i += 8) {
    const __m128i low = next();
    Stored(cover.data() + i, _mm_packs_epi32(low, next()));
  }
#endif
  const auto below = [](double place) { return std::clamp(place, 0.0, double{1} * kFullCover); };
  for (; i < cover.size(); ++i) {
    const double place = first + static_cast<double>(i) * each;
    cover[i] = static_cast<std::int16_t>(below(place) - below(place - apart) + 0.5);
  }
}

}  // namespace kestrel
