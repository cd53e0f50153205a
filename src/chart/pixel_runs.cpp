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

#else

std::uint32_t Blended(std::uint32_t ground, std::uint32_t colour, int part) {
  const auto mix = [&](int shift) {
    const int from = static_cast<int>(ground >> shift & 0xFFU);
    const int to = static_cast<int>(colour >> shift & 0xFFU);
    return static_cast<std::uint32_t>(from + (((to - from) * part) >> kFullBits)) << shift;
  };
  return kOpaque | mix(16) | mix(8) | mix(0);
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
  const auto blended = [&](__m128i ground, __m128i twice) {
    const __m128i even = Mixed(_mm_and_si128(ground, low), redBlue, twice);
    const __m128i odd = Mixed(_mm_srli_epi16(ground, 8), alphaGreen, twice);
    return _mm_or_si128(even, _mm_slli_epi16(odd, 8));
  };
  for (; i + 4 <= parts.size(); i += 4) {
    const __m128i four = _mm_loadl_epi64(reinterpret_cast<const __m128i*>(parts.data() + i));
    Stored(pixels + i, blended(Loaded(pixels + i), _mm_unpacklo_epi16(four, four)));
  }
  for (; i < parts.size(); ++i) {
    const __m128i ground = _mm_cvtsi32_si128(static_cast<int>(pixels[i]));
    const __m128i one = blended(ground, _mm_set1_epi16(parts[i]));
    pixels[i] = static_cast<std::uint32_t>(_mm_cvtsi128_si32(one));
  }
#else
  for (; i < parts.size(); ++i) pixels[i] = Blended(pixels[i], colour, parts[i]);
#endif
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
  __m128i slope = none;
  __m128i sum = _mm_set1_epi32(kHalf);
  const auto four = [&](std::size_t i) {
    slope = RunningSum(Loaded(bends.data() + i), LastOf(slope));
    sum = RunningSum(_mm_add_epi32(Loaded(steps.data() + i), slope), LastOf(sum));
    Stored(steps.data() + i, none);
    Stored(bends.data() + i, none);
    return _mm_srai_epi32(sum, kShift);
  };
  for (std::size_t i = 0; i < cover.size(); i += kRowsAtOnce) {
    const __m128i first = four(i);
    const __m128i parts = _mm_packs_epi32(first, four(i + 4));
    Stored(cover.data() + i, _mm_min_epi16(_mm_max_epi16(parts, none), _mm_set1_epi16(kFullCover)));
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

// A trapezoid: as high as the place in the first line's way, at most as the stroke is thick, and as
// what is left of the second line's way.
void CoverSteep(std::span<std::int16_t> cover, double top, double thickness, double rise) {
  constexpr int kFineBits = 3;  // parts of kFullCover are cut into as many again
  constexpr int kFine = kFullCover << kFineBits;
  constexpr int kRounding = 1 << (kFineBits - 1);
  const double each = kFine / rise;  // from row to row
  const auto first = static_cast<float>((0.5 - top) * each + kRounding);
  const auto step = static_cast<float>(each);
  const int apart = static_cast<int>(std::min(kMostThickness, thickness / rise) * kFine);
  const auto end = static_cast<std::int16_t>(apart + kFine + 2 * kRounding);
  const auto most = static_cast<std::int16_t>(std::min(apart, kFine) + kRounding);
#if defined(__SSE2__)
  const __m128 onward = _mm_set1_ps(4 * step);
  __m128 low = _mm_add_ps(_mm_set1_ps(first), _mm_setr_ps(0, step, 2 * step, 3 * step));
  for (std::size_t i = 0; i < cover.size(); i += kRowsAtOnce) {
    const __m128 high = _mm_add_ps(low, onward);
    const __m128i place = _mm_packs_epi32(_mm_cvtps_epi32(low), _mm_cvtps_epi32(high));
    const __m128i rest = _mm_subs_epi16(_mm_set1_epi16(end), place);
    const __m128i height = _mm_min_epi16(_mm_min_epi16(place, rest), _mm_set1_epi16(most));
    const __m128i parts = _mm_max_epi16(height, _mm_setzero_si128());
    Stored(cover.data() + i, _mm_srai_epi16(parts, kFineBits));
    low = _mm_add_ps(high, onward);
  }
#else
  for (std::size_t i = 0; i < cover.size(); ++i) {
    const float place = std::clamp(first + static_cast<float>(i) * step, 0.0F, 1.0F * end);
    const auto height = static_cast<std::int16_t>(std::min(place, 1.0F * end - place));
    cover[i] = static_cast<std::int16_t>(std::min(height, most) >> kFineBits);
  }
#endif
}

}  // namespace kestrel
