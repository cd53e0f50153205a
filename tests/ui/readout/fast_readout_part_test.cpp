// The fast read-out in the main window: chosen, remembered, switched off with a notice.
// SPDX-License-Identifier: MIT
#include "ui/readout/fast_readout_part.h"

#include <QSettings>
#include <algorithm>

#include "record/capture_data.h"
#include "ui/parts/notice_strip.h"
#include "ui/window_bench.h"

namespace kestrel {
namespace {

using testing::HasSubstr;
using testing::IsEmpty;

class FastReadoutInWindow : public WindowBench {
 protected:
  static QSettings File() {
    return {QSettings::IniFormat, QSettings::UserScope, "kestrel", "readout"};
  }
  QAction& Item() { return Find<QAction>("mnuFastReadout"); }
  // Blocks of more than two frames come turned around.
  void TurnBlocks() {
    usb_.OnAnswer([](std::span<std::uint8_t> answer) {
      if (answer.size() > 4) std::ranges::reverse(answer);
    });
  }
  int RequestsOfARead() {
    usb_.FailFrom(1 << 30);
    Press("cmdReadBuffer");
    return usb_.Requests();
  }
  void TakeARecord() {
    ChooseShortCaptures();
    Press("cmdStart");
    EXPECT_THAT(messages_.Texts(), IsEmpty());
  }
  void StartAgain() {
    windows_.reset();
    ResetProgram();
    Start();
  }
};

TEST_F(FastReadoutInWindow, IsOffAtTheFirstStartAndChosenByItsEntry) {
  Start();
  EXPECT_FALSE(Item().isChecked());
  TakeARecord();
  const int singly = RequestsOfARead();
  const auto words = std::array{RawX, RawY, RawZ};
  Trigger("mnuFastReadout");
  EXPECT_TRUE(Item().isChecked());
  RequestsOfARead();
  EXPECT_LT(10 * RequestsOfARead(), singly);
  EXPECT_EQ((std::array{RawX, RawY, RawZ}), words);
  EXPECT_THAT(messages_.Texts(), IsEmpty());
}

TEST_F(FastReadoutInWindow, TheChoiceIsRememberedAndCommPortCfgIsNot) {
  Start();
  const auto config = files_.contents;
  Trigger("mnuFastReadout");
  EXPECT_EQ(files_.contents, config);
  StartAgain();
  EXPECT_TRUE(Item().isChecked());
  Trigger("mnuFastReadout");
  StartAgain();
  EXPECT_FALSE(Item().isChecked());
}

TEST_F(FastReadoutInWindow, ABoardThatTurnsBlocksAroundIsToldInTheStripAndRemembered) {
  Start();
  TakeARecord();
  RequestsOfARead();
  const auto words = std::array{RawX, RawY, RawZ};
  Trigger("mnuFastReadout");
  TurnBlocks();
  RequestsOfARead();
  EXPECT_EQ((std::array{RawX, RawY, RawZ}), words);
  EXPECT_TRUE(Find<NoticeStrip>("noticeStrip").Has("fastReadout"));
  EXPECT_THAT(messages_.Texts(), IsEmpty());
  EXPECT_TRUE(Item().isChecked());
  EXPECT_EQ(Item().text(), "&Fast read-out (switched off for this interface)");
  StartAgain();
  EXPECT_TRUE(Item().isChecked());
  EXPECT_EQ(Item().text(), "&Fast read-out (switched off for this interface)");
  EXPECT_FALSE(Find<NoticeStrip>("noticeStrip").Has("fastReadout"));
}

TEST_F(FastReadoutInWindow, ItIsTriedAgainFromTheStripAndByTheEntry) {
  Start();
  TakeARecord();
  Trigger("mnuFastReadout");
  TurnBlocks();
  RequestsOfARead();
  ASSERT_TRUE(Find<NoticeStrip>("noticeStrip").Has("fastReadout"));
  usb_.OnAnswer({});
  const auto buttons = Find<NoticeStrip>("noticeStrip").findChildren<QPushButton*>();
  const auto again = std::ranges::find(buttons, QStringLiteral("Try it again"), &QPushButton::text);
  ASSERT_NE(again, buttons.end());
  (*again)->click();
  EXPECT_FALSE(Find<NoticeStrip>("noticeStrip").Has("fastReadout"));
  EXPECT_EQ(Item().text(), "&Fast read-out");
  RequestsOfARead();
  EXPECT_LT(RequestsOfARead(), 400);
  EXPECT_TRUE(File().value("refused").toStringList().isEmpty());
}

TEST_F(FastReadoutInWindow, ADamagedFileIsNoReasonNotToStart) {
  File().setValue("fast", QStringList{"1", "\xff"});
  File().setValue("refused", 17);
  Start();
  TakeARecord();
  EXPECT_FALSE(Item().isChecked());
}

}  // namespace
}  // namespace kestrel
