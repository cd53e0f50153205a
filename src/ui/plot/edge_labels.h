// The labels at the edges of the alarm bands, over the picture.
// SPDX-License-Identifier: MIT
#pragma once

#include <QLabel>
#include <QString>
#include <array>
#include <optional>

#include "ui/plot/picture_box.h"

namespace kestrel {

// The labels at the edges of the alarm bands, placed over the picture where they cover no other.
// `band` is 1 to kBands; `high` means the upper edge.
class EdgeLabels {
 public:
  static constexpr int kBands = 6;

  // Over this picture, as children of its parent.
  explicit EdgeLabels(PictureBox& picture);

  [[nodiscard]] QLabel* At(bool high, int band) const;
  // Blank text hides the label.
  void SetText(bool high, int band, const QString& text);
  // The label's left edge goes to x in the scale's coordinates, as far as the picture has room.
  void PlaceAt(bool high, int band, double x);

  // After the picture has moved, or its paper or the palette has changed.
  void Place();
  void Colour();

 private:
  struct Edge {
    QLabel* label = nullptr;
    std::optional<double> x;
  };

  void Add(bool high, int band);
  [[nodiscard]] Edge& EdgeOf(bool high, int band);
  [[nodiscard]] QRect FirstPlace(const Edge& edge, bool high) const;

  PictureBox& picture_;
  std::array<std::array<Edge, kBands>, 2> edges_{};
};

}  // namespace kestrel
