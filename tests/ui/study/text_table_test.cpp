// Columns of a table where there is room for all, for some and again for all.
// SPDX-License-Identifier: MIT
#include "ui/study/text_table.h"

namespace kestrel {
namespace {

class TextTableTest : public ::testing::Test {
 protected:
  TextTableTest() {
    table_.SetColumns(Columns(true));
    table_.Model().SetRows({{{"8,220"}, {"±200"}, {"8.33"}, {"inner race of the bearing"}}});
    table_.show();
    Resize(600);
  }

  static std::vector<TextColumn> Columns(bool hasOrder) {
    return {{.head = "Hz"},
            {.head = "±", .dropped = 1},
            {.head = "Order", .dropped = 2, .isWanted = hasOrder},
            {.head = "Nearest", .alignment = Qt::AlignLeft}};
  }
  void Resize(int width) {
    table_.resize(width, 200);
    QApplication::processEvents();
  }
  std::vector<bool> Shown() const {
    std::vector<bool> shown;
    for (int i = 0; i < 4; ++i) shown.push_back(!table_.isColumnHidden(i));
    return shown;
  }
  // The least width at which all columns are shown.
  int Needed() {
    int width = 600;
    while (width > 20 && Shown() == std::vector{true, true, true, true}) Resize(--width);
    return width + 1;
  }

  TextTable table_{"table"};
};

TEST_F(TextTableTest, TheLeastNeededColumnGoesFirstAndComesBackWithTheRoom) {
  EXPECT_EQ(Shown(), (std::vector{true, true, true, true}));
  const int needed = Needed();
  ASSERT_GT(needed, 100);
  EXPECT_EQ(Shown(), (std::vector{true, false, true, true}));
  Resize(20);
  EXPECT_EQ(Shown(), (std::vector{true, false, false, true}));
  Resize(needed);
  EXPECT_EQ(Shown(), (std::vector{true, true, true, true}));
}

TEST_F(TextTableTest, EveryColumnThatStaysHasItsWholeTexts) {
  for (int width = Needed() + 20; width > 260; width -= 7) {
    Resize(width);
    for (int i = 0; i < 4; ++i) {
      if (table_.isColumnHidden(i)) continue;
      EXPECT_GE(table_.columnWidth(i), table_.sizeHintForIndex(table_.Model().index(0, i)).width())
          << i << " at " << width;
    }
  }
}

TEST_F(TextTableTest, LongerTextsTakeTheRoomOfLessNeededColumns) {
  Resize(Needed());
  table_.Model().SetRows({{{"8,220"}, {"±200"}, {"8.33"}, {"outer race of the other bearing"}}});
  EXPECT_EQ(Shown(), (std::vector{true, false, true, true}));
}

TEST_F(TextTableTest, AColumnThatIsNotWantedIsHiddenAndTakesNoRoom) {
  Resize(Needed() - 1);
  table_.SetColumns(Columns(false));
  EXPECT_EQ(Shown(), (std::vector{true, true, false, true}));
}

TEST_F(TextTableTest, WhatIsCopiedHasEveryColumn) {
  Resize(20);
  EXPECT_EQ(table_.AsTabs(),
            "Hz\t±\tOrder\tNearest\n8,220\t±200\t8.33\tinner race of the bearing\n");
}

}  // namespace
}  // namespace kestrel
