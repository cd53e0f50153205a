// Texts compared with files that are kept, to the letter.
// SPDX-License-Identifier: MIT
#pragma once

#include <gtest/gtest.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>

namespace kestrel {

// Compares with a file, or writes it where that is asked for: after a change that is meant.
inline void CompareWithGolden(const std::string& name, const std::string& text) {
  const std::filesystem::path file = std::filesystem::path(KESTREL_GOLDEN) / (name + ".txt");
  if (std::getenv("KESTREL_WRITE_GOLDEN") != nullptr) {
    std::ofstream(file, std::ios::binary) << text;
    GTEST_SKIP() << "written anew: " << file;
  }
  std::ifstream stream(file, std::ios::binary);
  ASSERT_TRUE(stream) << file;
  const std::string expected{std::istreambuf_iterator<char>(stream), {}};
  EXPECT_EQ(text, expected);
}

}  // namespace kestrel
