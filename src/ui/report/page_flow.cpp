// Where pages break.
// SPDX-License-Identifier: MIT
#include "ui/report/page_flow.h"

namespace kestrel {
namespace {

// How many blocks from `first` on have to stand on one page, and their height.
struct Together {
  std::size_t count = 0;
  double height = 0;
};

Together TogetherFrom(const std::vector<Block>& blocks, std::size_t first, bool atTop) {
  Together together;
  for (std::size_t i = first; i < blocks.size(); ++i) {
    if (i > first || !atTop) together.height += blocks[i].above;
    together.height += blocks[i].height;
    ++together.count;
    if (!blocks[i].staysWithNext) break;
  }
  return together;
}

class Pager {
 public:
  explicit Pager(double height) : height_(height), pages_(1) {}

  void Begin(const Block& first) {
    if (pages_.back().empty()) return;
    pages_.emplace_back();
    top_ = 0;
    if (first.head) Put(*first.head);
  }
  void Put(const Block& block) {
    if (!pages_.back().empty()) top_ += block.above;
    pages_.back().push_back({&block, top_});
    top_ += block.height;
  }
  [[nodiscard]] bool IsEmpty() const { return pages_.back().empty(); }
  [[nodiscard]] bool Holds(double height) const { return top_ + height <= height_; }
  [[nodiscard]] std::vector<Page> Take() { return std::move(pages_); }

 private:
  double height_;
  double top_ = 0;
  std::vector<Page> pages_;
};

}  // namespace

std::vector<Page> Paged(const std::vector<Block>& blocks, double height) {
  Pager pager(height);
  std::size_t held = 0;  // blocks that are known to fit
  for (std::size_t i = 0; i < blocks.size(); ++i) {
    if (held == 0) {
      const Together together = TogetherFrom(blocks, i, pager.IsEmpty());
      if (!pager.Holds(together.height)) pager.Begin(blocks[i]);
      // Those that do not even fit on a page of their own break where they must.
      held = pager.Holds(together.height) ? together.count : 1;
    }
    pager.Put(blocks[i]);
    --held;
  }
  return pager.Take();
}

}  // namespace kestrel
