// What the fakes were told, in order, across all of them.
// SPDX-License-Identifier: MIT
#pragma once

#include <algorithm>
#include <iterator>
#include <string>
#include <utility>
#include <vector>

namespace kestrel {

// What the fake windows were told, in order, across all of them.
class Journal {
 public:
  void Note(std::string entry) { entries_.push_back(std::move(entry)); }

  [[nodiscard]] const std::vector<std::string>& Entries() const { return entries_; }
  [[nodiscard]] long Count(const std::string& entry) const {
    return std::count(entries_.begin(), entries_.end(), entry);
  }

  // The entries that start with one of these words, in order.
  [[nodiscard]] std::vector<std::string> Only(const std::vector<std::string>& starts) const {
    std::vector<std::string> found;
    std::copy_if(
        entries_.begin(), entries_.end(), std::back_inserter(found), [&](const std::string& entry) {
          return std::any_of(starts.begin(), starts.end(),
                             [&](const std::string& start) { return entry.rfind(start, 0) == 0; });
        });
    return found;
  }

  void Clear() { entries_.clear(); }

 private:
  std::vector<std::string> entries_;
};

}  // namespace kestrel
