// Pages break between blocks, never after a heading, and repeat the heads of tables.
// SPDX-License-Identifier: MIT
#include "ui/report/page_flow.h"

#include <gmock/gmock.h>

namespace kestrel {
namespace {

std::vector<std::vector<const Block*>> Broken(const std::vector<Block>& blocks, double height) {
  std::vector<std::vector<const Block*>> pages;
  for (const Page& page : Paged(blocks, height)) {
    pages.emplace_back();
    for (const PlacedBlock& placed : page) pages.back().push_back(placed.block);
  }
  return pages;
}

TEST(PageFlow, BlocksThatDoNotFitBeginANewPageWithoutTheRoomAboveThem) {
  const std::vector<Block> blocks{
      {.height = 40}, {.above = 5, .height = 40}, {.above = 5, .height = 40}};
  const auto pages = Paged(blocks, 100);
  ASSERT_EQ(pages.size(), 2U);
  EXPECT_EQ(pages[0][1].top, 45);
  EXPECT_EQ(pages[1][0].top, 0);
}

TEST(PageFlow, AHeadingIsNeverTheLastOfAPage) {
  const std::vector<Block> blocks{
      {.height = 80}, {.height = 10, .staysWithNext = true}, {.height = 20}};
  const auto pages = Broken(blocks, 100);
  ASSERT_EQ(pages.size(), 2U);
  EXPECT_EQ(pages[1].front(), &blocks[1]);
}

TEST(PageFlow, TheHeadOfATableIsRepeated) {
  const auto head = std::make_shared<const Block>(Block{.height = 10});
  std::vector<Block> blocks(12, Block{.height = 10, .head = head});
  const auto pages = Broken(blocks, 60);
  ASSERT_EQ(pages.size(), 3U);
  EXPECT_EQ(pages[0].front(), &blocks[0]);
  EXPECT_EQ(pages[1].front(), head.get());
  EXPECT_EQ(pages[1].size(), 6U);
  EXPECT_EQ(pages[2].size(), 2U);
}

TEST(PageFlow, EveryBlockIsThereOnceHoweverHighItIs) {
  std::vector<Block> blocks;
  for (int i = 0; i < 200; ++i) {
    blocks.push_back({.above = i % 3 * 4.0,
                      .height = i % 17 == 0 ? 150.0 : 7.0 + i % 11,
                      .staysWithNext = i % 5 == 0});
  }
  std::vector<const Block*> all;
  for (const auto& page : Broken(blocks, 100)) {
    EXPECT_FALSE(page.empty());
    all.insert(all.end(), page.begin(), page.end());
  }
  ASSERT_EQ(all.size(), blocks.size());
  for (std::size_t i = 0; i < all.size(); ++i) EXPECT_EQ(all[i], &blocks[i]);
}

TEST(PageFlow, NothingIsOneEmptyPage) {
  EXPECT_EQ(Paged({}, 100).size(), 1U);
}

}  // namespace
}  // namespace kestrel
