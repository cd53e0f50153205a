// Blocks one below the other, broken into pages.
// SPDX-License-Identifier: MIT
#pragma once

#include <QPainter>
#include <QPointF>
#include <cstddef>
#include <functional>
#include <memory>
#include <vector>

namespace kestrel {

// What is never broken. Lengths are in units of the page.
struct Block {
  double above = 0;  // free room, not at the top of a page
  double height = 0;
  std::function<void(QPainter&, QPointF)> paint{};  // its top left corner
  bool staysWithNext = false;                       // never the last of a page
  std::shared_ptr<const Block> head{};              // stands above it where it begins a page
};

struct PlacedBlock {
  const Block* block = nullptr;
  double top = 0;  // from the top of the page
};
using Page = std::vector<PlacedBlock>;

// Every block, in order; one that is higher than a page has a page of its own. The blocks live
// longer.
[[nodiscard]] std::vector<Page> Paged(const std::vector<Block>& blocks, double height);

}  // namespace kestrel
