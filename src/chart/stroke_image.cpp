// Filling a picture's columns with the coverage of a stroke.
// SPDX-License-Identifier: MIT
#include "chart/stroke_image.h"

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <span>

#include "chart/column_cover.h"
#include "chart/column_stroke.h"

namespace kestrel {
namespace {

// So many columns are turned on their side and drawn into while they lie in the fast memory...
constexpr int kStripWidth = 16;
// ... in blocks of so many rows, those only into which something is drawn.
constexpr int kBlockHeight = 64;

// An odd number of cache lines, so that neighbouring columns do not compete for the same place in
// the cache.
std::ptrdiff_t PaddedHeight(int height) {
  constexpr int kLine = 16;  // pixels
  return ((height + kLine - 1) / kLine | 1) * kLine;
}

// Some columns of a picture, each in one piece.
class Strip {
 public:
  explicit Strip(const PixelRows& picture)
      : picture_(picture),
        columnStride_(PaddedHeight(picture.height)),
        pixels_(static_cast<std::size_t>(columnStride_) * kStripWidth),
        isLoaded_(static_cast<std::size_t>((picture.height + kBlockHeight - 1) / kBlockHeight)) {}

  // Up to where the next strip begins: where the memory's next line does.
  void Begin(int left) {
    left_ = left;
    const auto place =
        reinterpret_cast<std::uintptr_t>(picture_.pixels + left) / sizeof(*picture_.pixels);
    width_ = std::min(kStripWidth - static_cast<int>(place % kStripWidth), picture_.width - left);
  }
  [[nodiscard]] int Left() const { return left_; }
  [[nodiscard]] int Width() const { return width_; }
  [[nodiscard]] int Height() const { return picture_.height; }

  // The pixels of a column from the first row to before the end.
  std::uint32_t* Rows(int column, int first, int end) {
    for (int block = first / kBlockHeight; block * kBlockHeight < end; ++block) {
      if (!isLoaded_[static_cast<std::size_t>(block)]) Load(block);
    }
    return pixels_.data() + column * columnStride_ + first;
  }

  void Store() {
    for (std::size_t block = 0; block < isLoaded_.size(); ++block) {
      if (!isLoaded_[block]) continue;
      const int top = static_cast<int>(block) * kBlockHeight;
      Turn(pixels_.data() + top, columnStride_, RowsFrom(top), width_, Place(top), picture_.stride);
      isLoaded_[block] = 0;
    }
  }

 private:
  void Load(int block) {
    const int top = block * kBlockHeight;
    Turn(Place(top), picture_.stride, width_, RowsFrom(top), pixels_.data() + top, columnStride_);
    isLoaded_[static_cast<std::size_t>(block)] = 1;
  }
  [[nodiscard]] int RowsFrom(int top) const {
    return std::min(kBlockHeight, picture_.height - top);
  }
  [[nodiscard]] std::uint32_t* Place(int top) const {
    return picture_.pixels + top * picture_.stride + left_;
  }

  const PixelRows& picture_;
  int left_ = 0;
  int width_ = 0;
  std::ptrdiff_t columnStride_;
  std::vector<std::uint32_t> pixels_;
  std::vector<char> isLoaded_;
};

// One line of a stroke on its way through the picture.
class Pen {
 public:
  Pen(const Stroke& stroke, const PlotLine& line)
      : stroke_(stroke), track_(line, stroke.width), from_(line.front().x), to_(line.back().x) {}

  [[nodiscard]] bool Meets(int left, int right) const {
    return to_ + stroke_.width >= left && from_ - stroke_.width <= right;
  }
  void Draw(Strip& strip, int column, ColumnCover& cover, std::vector<std::int16_t>& parts) {
    track_.Cover(strip.Left() + column, cover);
    const int first = cover.First();
    const int end = cover.End();
    const auto covered = cover.Take();
    if (stroke_.isFilled && track_.HasHeight()) Fill(strip, column, parts);
    if (covered.empty()) return;
    std::uint32_t* rows = strip.Rows(column, first, end);
    if (stroke_.opacity < 1) {
      parts.assign(covered.begin(), covered.end());
      for (auto& part : parts) part = static_cast<std::int16_t>(part * stroke_.opacity);
      Blend(rows, parts, stroke_.colour);
    } else {
      Blend(rows, covered, stroke_.colour);
    }
  }

 private:
  void Fill(Strip& strip, int column, std::vector<std::int16_t>& parts) const {
    const StrokeFill& fill = stroke_.fill;
    const auto row = [&](double y) {
      return static_cast<int>(std::lround(std::clamp(y, 0.0, double{1} * strip.Height())));
    };
    const int from = row(std::min(track_.Height(), fill.base));
    const int to = row(std::max(track_.Height(), fill.base));
    if (from >= to) return;
    parts.resize(static_cast<std::size_t>(to - from));
    const double each = (fill.atBottom - fill.atTop) / std::max(1.0, fill.bottom - fill.top);
    for (int y = from; y < to; ++y) {
      const double part = fill.atTop + (y + 0.5 - fill.top) * each;
      parts[static_cast<std::size_t>(y - from)] =
          static_cast<std::int16_t>(std::clamp(part, 0.0, 1.0) * kFullCover + 0.5);
    }
    Blend(strip.Rows(column, from, to), parts, stroke_.colour);
  }

  const Stroke& stroke_;
  ColumnStroke track_;
  double from_;
  double to_;
};

}  // namespace

void DrawStrokes(const PixelRows& picture, const std::vector<Stroke>& strokes) {
  if (picture.width <= 0 || picture.height <= 0) return;
  std::vector<Pen> pens;
  for (const Stroke& stroke : strokes) {
    for (const PlotLine& line : stroke.lines) {
      if (!line.empty()) pens.emplace_back(stroke, line);
    }
  }
  Strip strip(picture);
  ColumnCover cover(picture.height);
  std::vector<std::int16_t> parts;
  for (int left = 0; left < picture.width; left += strip.Width()) {
    strip.Begin(left);
    ClearWideRegisters();
    for (Pen& pen : pens) {
      if (!pen.Meets(left, left + strip.Width())) continue;
      for (int i = 0; i < strip.Width(); ++i) pen.Draw(strip, i, cover, parts);
    }
    strip.Store();
  }
}

void DrawArea(const PixelRows& picture, const std::vector<ColumnArea>& area, std::uint32_t colour,
              double opacity) {
  const auto part = static_cast<std::int16_t>(std::clamp(opacity, 0.0, 1.0) * kFullCover + 0.5);
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
  std::vector<std::int16_t> parts(upper.size());
  ClearWideRegisters();
  for (int y = 0; y < picture.height; ++y) {
    for (std::size_t x = 0; x < parts.size(); ++x) {
      parts[x] = y >= upper[x] && y < lower[x] ? part : std::int16_t{0};
    }
    Blend(picture.pixels + y * picture.stride, parts, colour);
  }
}

}  // namespace kestrel
