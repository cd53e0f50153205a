// Test input that looks random and is the same on every machine.
// SPDX-License-Identifier: MIT
#pragma once

#include <gtest/gtest.h>

#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <functional>
#include <random>
#include <string>
#include <vector>

namespace kestrel {

// Test input that looks random and comes out the same on every machine.
class Random {
 public:
  explicit Random(std::uint32_t seed) : bits_(seed) {}

  // 0 to `count` - 1.
  int Below(int count) { return static_cast<int>(bits_() % static_cast<std::uint32_t>(count)); }
  // Both ends can come out.
  int Between(int first, int last) { return first + Below(last - first + 1); }
  bool OneIn(int count) { return Below(count) == 0; }
  int Word() { return Below(0x10000); }

  template <typename List>
  auto& Of(List& list) {
    return list[static_cast<std::size_t>(Below(static_cast<int>(list.size())))];
  }

 private:
  std::mt19937 bits_;
};

// 1 to `count`, and the seed in KESTREL_SEED where that is set.
inline std::vector<std::uint32_t> Seeds(std::uint32_t count) {
  std::vector<std::uint32_t> seeds;
  for (std::uint32_t seed = 1; seed <= count; ++seed) seeds.push_back(seed);
  if (const char* extra = std::getenv("KESTREL_SEED")) {
    seeds.push_back(static_cast<std::uint32_t>(std::strtoul(extra, nullptr, 10)));
  }
  return seeds;
}

// Does a random test with every seed up to the first that fails; a failure tells the seed, which
// KESTREL_SEED then repeats.
inline void WithSeeds(std::uint32_t count, const std::function<void(Random&)>& test) {
  for (const std::uint32_t seed : Seeds(count)) {
    SCOPED_TRACE("KESTREL_SEED=" + std::to_string(seed));
    Random random(seed);
    test(random);
    if (testing::Test::HasFailure()) return;
  }
}

}  // namespace kestrel
