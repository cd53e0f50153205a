// The views of a plot in the order in which they were seen, to go back and forward in.
// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <utility>
#include <vector>

namespace kestrel {

// Equal neighbours are kept once; a new view after going back drops those that lay ahead.
template <typename View>
class ViewHistory {
 public:
  explicit ViewHistory(std::size_t most = 200) : most_(most) {}

  void Add(View view) {
    if (!views_.empty() && views_[now_] == view) return;
    if (!views_.empty()) views_.resize(now_ + 1);
    views_.push_back(std::move(view));
    if (views_.size() > most_) views_.erase(views_.begin());
    now_ = views_.size() - 1;
  }
  void Clear() {
    views_.clear();
    now_ = 0;
  }

  [[nodiscard]] bool CanGoBack() const { return now_ > 0; }
  [[nodiscard]] bool CanGoForward() const { return now_ + 1 < views_.size(); }
  // Only when they can.
  const View& GoBack() { return views_[--now_]; }
  const View& GoForward() { return views_[++now_]; }

 private:
  std::size_t most_;
  std::vector<View> views_;
  std::size_t now_ = 0;
};

}  // namespace kestrel
