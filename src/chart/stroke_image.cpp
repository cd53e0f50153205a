// Filling a picture's columns with the coverage of a stroke.
// SPDX-License-Identifier: MIT
#include "chart/stroke_image.h"

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <span>

#if defined(__SSE2__)
#include <emmintrin.h>
#endif

#include "chart/column_cover.h"

namespace kestrel {
namespace {

// So many columns are turned on their side and drawn into while they lie in the fast memory.
constexpr int kStripWidth = 16;

constexpr std::uint32_t kOpaque = 0xff000000U;

std::uint32_t Blended(std::uint32_t ground, std::uint32_t colour, int part) {
  const auto mix = [&](int shift) {
    const int from = static_cast<int>(ground >> shift & 0xFFU);
    const int to = static_cast<int>(colour >> shift & 0xFFU);
    return static_cast<std::uint32_t>(from + ((to - from) * part) / ColumnCover::kFull) << shift;
  };
  return kOpaque | mix(16) | mix(8) | mix(0);
}

#if defined(__SSE2__)
__m128i BlendedHalf(__m128i ground, __m128i colour, __m128i part) {
  const __m128i change = _mm_mullo_epi16(_mm_sub_epi16(colour, ground), part);
  return _mm_add_epi16(ground, _mm_srai_epi16(change, 7));
}
#endif

// A run of pixels towards a colour, each by its own part of ColumnCover::kFull.
void Blend(std::uint32_t* pixels, std::span<const std::int16_t> parts, std::uint32_t colour) {
  std::size_t i = 0;
#if defined(__SSE2__)
  const __m128i zero = _mm_setzero_si128();
  const __m128i wide = _mm_unpacklo_epi8(_mm_set1_epi32(static_cast<int>(colour | kOpaque)), zero);
  for (; i + 4 <= parts.size(); i += 4) {
    auto* place = reinterpret_cast<__m128i*>(pixels + i);
    const __m128i four = _mm_loadl_epi64(reinterpret_cast<const __m128i*>(parts.data() + i));
    const __m128i pairs = _mm_unpacklo_epi16(four, four);  // each twice
    const __m128i ground = _mm_loadu_si128(place);
    const __m128i low =
        BlendedHalf(_mm_unpacklo_epi8(ground, zero), wide, _mm_unpacklo_epi32(pairs, pairs));
    const __m128i high =
        BlendedHalf(_mm_unpackhi_epi8(ground, zero), wide, _mm_unpackhi_epi32(pairs, pairs));
    _mm_storeu_si128(place, _mm_packus_epi16(low, high));
  }
#endif
  for (; i < parts.size(); ++i) pixels[i] = Blended(pixels[i], colour, parts[i]);
}

// Rows become columns: to[c][r] = from[r][c], four by four where that can be done at once.
void Turn(const std::uint32_t* from, std::ptrdiff_t fromStride, int columns, int rows,
          std::uint32_t* to, std::ptrdiff_t toStride) {
  int row = 0;
#if defined(__SSE2__)
  for (; row + 4 <= rows; row += 4) {
    int column = 0;
    for (; column + 4 <= columns; column += 4) {
      const std::uint32_t* source = from + row * fromStride + column;
      std::uint32_t* target = to + column * toStride + row;
      const auto load = [&](int i) {
        return _mm_loadu_si128(reinterpret_cast<const __m128i*>(source + i * fromStride));
      };
      const __m128i ab = _mm_unpacklo_epi32(load(0), load(1));
      const __m128i abHigh = _mm_unpackhi_epi32(load(0), load(1));
      const __m128i cd = _mm_unpacklo_epi32(load(2), load(3));
      const __m128i cdHigh = _mm_unpackhi_epi32(load(2), load(3));
      const auto store = [&](int i, __m128i four) {
        _mm_storeu_si128(reinterpret_cast<__m128i*>(target + i * toStride), four);
      };
      store(0, _mm_unpacklo_epi64(ab, cd));
      store(1, _mm_unpackhi_epi64(ab, cd));
      store(2, _mm_unpacklo_epi64(abHigh, cdHigh));
      store(3, _mm_unpackhi_epi64(abHigh, cdHigh));
    }
    for (; column < columns; ++column) {
      for (int i = row; i < row + 4; ++i) to[column * toStride + i] = from[i * fromStride + column];
    }
  }
#endif
  for (; row < rows; ++row) {
    for (int column = 0; column < columns; ++column) {
      to[column * toStride + row] = from[row * fromStride + column];
    }
  }
}

// An odd number of cache lines, so that neighbouring columns do not compete for the same place in
// the cache.
std::ptrdiff_t PaddedHeight(int height) {
  constexpr int kLine = 16;  // pixels
  return ((height + kLine - 1) / kLine | 1) * kLine;
}

// Some columns of a picture, each in one piece.
class Strip {
 public:
  Strip(const PixelRows& ground, const PixelRows& picture)
      : ground_(ground),
        picture_(picture),
        columnStride_(PaddedHeight(picture.height)),
        pixels_(static_cast<std::size_t>(columnStride_) * kStripWidth) {}

  void Load(int left) {
    left_ = left;
    width_ = std::min(kStripWidth, picture_.width - left);
    Turn(ground_.pixels + left_, ground_.stride, width_, picture_.height, pixels_.data(),
         columnStride_);
  }
  void Store() {
    Turn(pixels_.data(), columnStride_, picture_.height, width_, picture_.pixels + left_,
         picture_.stride);
  }
  [[nodiscard]] int Width() const { return width_; }
  std::uint32_t* Column(int index) { return pixels_.data() + index * columnStride_; }

 private:
  const PixelRows& ground_;
  const PixelRows& picture_;
  int left_ = 0;
  int width_ = 0;
  std::ptrdiff_t columnStride_;
  std::vector<std::uint32_t> pixels_;
};

// One line of a stroke on its way through the picture.
class Pen {
 public:
  Pen(const Stroke& stroke, const PlotLine& line)
      : stroke_(stroke), track_(line, stroke.width), from_(line.front().x), to_(line.back().x) {}

  [[nodiscard]] bool Meets(int left, int right) const {
    return to_ + stroke_.width >= left && from_ - stroke_.width <= right;
  }
  void Draw(std::uint32_t* column, int x, int height, ColumnCover& cover,
            std::vector<std::int16_t>& parts) {
    track_.Cover(x, cover);
    const int first = cover.First();
    const auto covered = cover.Take();
    if (stroke_.isFilled && track_.HasHeight()) Fill(column, height, parts);
    if (covered.empty()) return;
    if (stroke_.opacity < 1) {
      parts.assign(covered.begin(), covered.end());
      for (auto& part : parts) part = static_cast<std::int16_t>(part * stroke_.opacity);
      Blend(column + first, parts, stroke_.colour);
    } else {
      Blend(column + first, covered, stroke_.colour);
    }
  }

 private:
  void Fill(std::uint32_t* column, int height, std::vector<std::int16_t>& parts) const {
    const StrokeFill& fill = stroke_.fill;
    const auto row = [&](double y) {
      return static_cast<int>(std::lround(std::clamp(y, 0.0, static_cast<double>(height))));
    };
    const int from = row(std::min(track_.Height(), fill.base));
    const int to = row(std::max(track_.Height(), fill.base));
    if (from >= to) return;
    parts.resize(static_cast<std::size_t>(to - from));
    const double each = (fill.atBottom - fill.atTop) / std::max(1.0, fill.bottom - fill.top);
    for (int y = from; y < to; ++y) {
      const double part = fill.atTop + (y + 0.5 - fill.top) * each;
      parts[static_cast<std::size_t>(y - from)] =
          static_cast<std::int16_t>(std::clamp(part, 0.0, 1.0) * ColumnCover::kFull + 0.5);
    }
    Blend(column + from, parts, stroke_.colour);
  }

  const Stroke& stroke_;
  ColumnStroke track_;
  double from_;
  double to_;
};

void DrawInStrips(const PixelRows& ground, const PixelRows& picture, std::vector<Pen>& pens) {
  Strip strip(ground, picture);
  ColumnCover cover(picture.height);
  std::vector<std::int16_t> parts;
  for (int left = 0; left < picture.width; left += kStripWidth) {
    strip.Load(left);
    for (Pen& pen : pens) {
      if (!pen.Meets(left, left + strip.Width())) continue;
      for (int i = 0; i < strip.Width(); ++i) {
        pen.Draw(strip.Column(i), left + i, picture.height, cover, parts);
      }
    }
    strip.Store();
  }
}

}  // namespace

void DrawStrokes(const PixelRows& picture, const std::vector<Stroke>& strokes) {
  DrawStrokesOver(picture, picture, strokes);
}

void DrawStrokesOver(const PixelRows& ground, const PixelRows& picture,
                     const std::vector<Stroke>& strokes) {
  if (picture.width <= 0 || picture.height <= 0) return;
  std::vector<Pen> pens;
  for (const Stroke& stroke : strokes) {
    for (const PlotLine& line : stroke.lines) {
      if (!line.empty()) pens.emplace_back(stroke, line);
    }
  }
  DrawInStrips(ground, picture, pens);
}

void DrawArea(const PixelRows& picture, const std::vector<ColumnArea>& area, std::uint32_t colour,
              double opacity) {
  const auto part =
      static_cast<std::int16_t>(std::clamp(opacity, 0.0, 1.0) * ColumnCover::kFull + 0.5);
  // Row by row, as the memory lies.
  std::vector<int> upper(static_cast<std::size_t>(std::max(picture.width, 0)), picture.height);
  std::vector<int> lower(upper.size(), 0);
  const auto row = [&](double y) {
    return static_cast<int>(std::lround(std::clamp(y, 0.0, double{1} * picture.height)));
  };
  for (const ColumnArea& column : area) {
    const double x = std::floor(column.x);
    if (x < 0 || x >= picture.width) continue;
    upper[static_cast<std::size_t>(x)] = row(column.upper);
    lower[static_cast<std::size_t>(x)] = row(column.lower);
  }
  for (int y = 0; y < picture.height; ++y) {
    std::uint32_t* pixel = picture.pixels + y * picture.stride;
    for (std::size_t x = 0; x < upper.size(); ++x, ++pixel) {
      if (y >= upper[x] && y < lower[x]) *pixel = Blended(*pixel, colour, part);
    }
  }
}

}  // namespace kestrel
