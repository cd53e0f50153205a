// Repeated captures in words.
// SPDX-License-Identifier: MIT
#include "ui/repeat/repeat_text.h"

#include <gtest/gtest.h>

#include <QDateTime>

namespace kestrel {
namespace {

using std::chrono::system_clock;

TEST(ADuration, IsToldInTheUnitsThatMatter) {
  EXPECT_EQ(DurationWords(0), "0 s");
  EXPECT_EQ(DurationWords(0.2), "1 s") << "not over before it is";
  EXPECT_EQ(DurationWords(59), "59 s");
  EXPECT_EQ(DurationWords(59.5), "1 min 00 s");
  EXPECT_EQ(DurationWords(125), "2 min 05 s");
  EXPECT_EQ(DurationWords(3600 * 3 + 60 * 20), "3 h 20 min");
  EXPECT_EQ(DurationWords(86400 * 2 + 3600 * 4), "2 d 4 h");
  EXPECT_EQ(DurationWords(604800.0 * 1'000'000), "7000000 d 0 h");
}

TEST(TheLineOfARepeat, TellsWhatIsDoneWhatComesAndWhatIsLeft) {
  RepeatProgress progress;
  progress.settings.times = 10;
  progress.state = RepeatState::Waiting;
  progress.done = 3;
  progress.nextIn = 6.5;
  progress.remaining = 70;
  EXPECT_EQ(RepeatLine(progress), "3 of 10 captures done, the next in 7 s, 1 min 10 s left");
  progress.missed = 2;
  progress.gaps = {{}, {}};
  EXPECT_EQ(RepeatLine(progress),
            "3 of 10 captures done, the next in 7 s, 1 min 10 s left, 2 missed, 2 gaps");
}

TEST(TheLineOfARepeat, TellsEachState) {
  RepeatProgress progress;
  progress.done = 1;
  progress.state = RepeatState::Capturing;
  EXPECT_EQ(RepeatLine(progress), "1 capture done, capturing");
  progress.ending = true;
  EXPECT_EQ(RepeatLine(progress), "1 capture done, ending with the capture under way");
  progress.ending = false;
  progress.state = RepeatState::Paused;
  progress.reason = "the sensor was lost";
  EXPECT_EQ(RepeatLine(progress), "1 capture done, paused: the sensor was lost");
  progress.state = RepeatState::Ended;
  EXPECT_EQ(RepeatLine(progress), "1 capture done, the sensor was lost");
  progress.reason.clear();
  EXPECT_EQ(RepeatLine(progress), "1 capture done, complete");
  progress.settings.mode = RepeatMode::FollowTimer;
  progress.state = RepeatState::Waiting;
  EXPECT_EQ(RepeatLine(progress), "1 capture done, waiting for the sensor's next one");
  progress.reason = "The sensor takes records faster than they can be read.";
  EXPECT_EQ(RepeatLine(progress),
            "1 capture done, waiting for the sensor's next one, The sensor takes records faster "
            "than they can be read.");
}

TEST(AGap, IsToldInLocalTime) {
  const QDateTime from(QDate(2026, 3, 14), QTime(9, 26, 53));
  const auto moment = [](const QDateTime& time) {
    return system_clock::time_point{std::chrono::milliseconds{time.toMSecsSinceEpoch()}};
  };
  RepeatGap gap{.from = moment(from), .to = {}, .reason = "the sensor was lost"};
  EXPECT_EQ(GapLine(gap), "since 2026-03-14 09:26:53: the sensor was lost");
  gap.to = moment(from.addSecs(17));
  EXPECT_EQ(GapLine(gap), "2026-03-14 09:26:53 to 09:27:10: the sensor was lost");
  gap.to = moment(from.addDays(1));
  EXPECT_EQ(GapLine(gap), "2026-03-14 09:26:53 to 2026-03-15 09:26:53: the sensor was lost");
}

}  // namespace
}  // namespace kestrel
