// Tests of a plan that is written: mistakes beside their lines, and the list of them.
// SPDX-License-Identifier: MIT
#include "ui/watch/plan_card.h"

#include "support/memory_files.h"

namespace kestrel {
namespace {

constexpr const char* kGood =
    "bench = Hall 3\nsensor = Pump 7\nconnect = simulated\nevery = 10 s\n[capture]\nrange = 5\n";

class Card : public testing::Test {
 protected:
  Card() {
    card_.resize(500, 400);
    card_.show();
  }
  PlanEditor& Editor() { return *card_.findChild<PlanEditor*>(); }
  QListWidget& List() { return *card_.findChild<QListWidget*>("lstMistakes"); }
  QString Summary() { return card_.findChild<QLabel*>("cardPlan_summary")->text(); }

  MemoryFiles files_;
  PlanCard card_{files_};
};

TEST_F(Card, AGoodPlanIsSummedUp) {
  card_.Show(kGood, "/plans/pump.plan", true);
  ASSERT_TRUE(card_.Plan());
  EXPECT_TRUE(List().isHidden());
  EXPECT_EQ(Summary(), "pump.plan: every 10 s, option 0, 5 g, hanning, 1 average");
}

TEST_F(Card, MistakesAreListedAsTheyAreWritten) {
  card_.Show(kGood, "/plans/pump.plan", true);
  Editor().selectAll();
  Editor().insertPlainText("bench = Hall 3\nsensor = Pump 7\nevery = x\n[capture]\nrange = 7\n");
  EXPECT_FALSE(card_.Plan());
  EXPECT_FALSE(card_.IsSaved());
  ASSERT_EQ(List().count(), 2);
  EXPECT_EQ(List().item(0)->text(),
            "Line 3: every: \"x\" is not a time like 10 s, 5 min, 1 h or 1 d");
  EXPECT_EQ(List().item(1)->text(), "Line 5: range: \"7\" is not one of 1, 5, 20, 70 (g)");
  EXPECT_TRUE(Summary().contains("not saved"));
}

TEST_F(Card, AMistakeOfTheListLeadsToItsLine) {
  card_.Show("bench = Hall 3\nsensor = Pump 7\nevery = 10 s\n[capture]\nrange = 7\n", "/p.plan",
             true);
  ASSERT_EQ(List().count(), 1);
  emit List().itemActivated(List().item(0));
  EXPECT_EQ(Editor().textCursor().blockNumber(), 4);
}

TEST_F(Card, AFileOfBandsThatIsMissingIsAMistakeOfItsStep) {
  card_.Show(QString(kGood) + "bands = none.csv\n", "/plans/pump.plan", true);
  EXPECT_FALSE(card_.Plan());
  ASSERT_EQ(List().count(), 1);
  EXPECT_TRUE(List().item(0)->text().contains("/plans/none.csv"));
}

TEST_F(Card, AMistakeIsPaintedBesideItsLine) {
  card_.Show(kGood, "/plans/pump.plan", true);
  const QImage before = Editor().viewport()->grab().toImage();
  card_.Show(QString(kGood).replace("range = 5", "range = 7"), "/plans/pump.plan", true);
  const QImage now = Editor().viewport()->grab().toImage();
  // To the right of the sixth line, where nothing is written.
  const int line = Editor().fontMetrics().lineSpacing();
  const QRect beside(150, 5 * line, 150, line);
  EXPECT_NE(before.copy(beside), now.copy(beside));
  EXPECT_EQ(before.copy(150, 0, 150, 3 * line), now.copy(150, 0, 150, 3 * line));
}

}  // namespace
}  // namespace kestrel
