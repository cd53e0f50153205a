// Pictures as small files, and whether all of them were drawn.
// SPDX-License-Identifier: MIT
#include "studio.h"

#include <QImage>
#include <algorithm>
#include <cstdio>
#include <functional>
#include <utility>
#include <vector>

#include "picture_list.h"

namespace kestrel {
namespace {

constexpr std::size_t kPaletteSize = 256;

int Distance(QRgb a, QRgb b) {
  const auto square = [](int difference) { return difference * difference; };
  return square(qRed(a) - qRed(b)) + square(qGreen(a) - qGreen(b)) + square(qBlue(a) - qBlue(b));
}

// For a small file: the most frequent colours make a palette, others become the nearest of these.
QImage Shrunk(const QPixmap& picture) {
  QImage image = picture.toImage().convertToFormat(QImage::Format_RGB32);
  std::map<QRgb, int> counts;
  for (int y = 0; y < image.height(); ++y) {
    for (int x = 0; x < image.width(); ++x) ++counts[image.pixel(x, y)];
  }
  std::vector<std::pair<int, QRgb>> byCount;
  for (const auto& [colour, count] : counts) byCount.emplace_back(count, colour);
  std::ranges::sort(byCount, std::greater());
  byCount.resize(std::min(byCount.size(), kPaletteSize));
  std::map<QRgb, QRgb> nearest;
  for (const auto& [colour, count] : counts) {
    nearest[colour] = std::ranges::min(byCount, {}, [colour = colour](const auto& entry) {
                        return Distance(colour, entry.second);
                      }).second;
  }
  for (int y = 0; y < image.height(); ++y) {
    for (int x = 0; x < image.width(); ++x) image.setPixel(x, y, nearest[image.pixel(x, y)]);
  }
  return image.convertToFormat(QImage::Format_Indexed8, Qt::AvoidDither);
}

}  // namespace

void Gallery::AddPicture(const char* name, const QPixmap& picture) {
  constexpr int kSmallest = 0;  // quality of a PNG: how hard it is compressed
  drawn_[name] = Shrunk(picture).save(folder_ + "/" + name, "PNG", kSmallest);
}

bool Gallery::Complete() const {
  bool complete = drawn_.size() == kPictures.size();
  for (const char* name : kPictures) {
    const auto found = drawn_.find(name);
    if (found != drawn_.end() && found->second) continue;
    std::fprintf(stderr, "%s was not drawn\n", name);
    complete = false;
  }
  return complete;
}

}  // namespace kestrel
