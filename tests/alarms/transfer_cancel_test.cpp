// What happens between two bands of a transfer.
// SPDX-License-Identifier: MIT
// What happens between two bands of a transfer: progress, Cancel, and what else handlers do.

#include "numeric/runtime_error.h"
#include "support/given.h"
#include "transfer_bench.h"

namespace kestrel {
namespace {

using Words = std::vector<std::string>;

class BetweenBands : public TransferBench {};

TEST_F(BetweenBands, AReadCanBeCancelledBetweenAnyTwoBands) {
  for (int band = 0; band < 24; ++band) {
    SCOPED_TRACE(band);
    sensor.ClearFrames();
    loop.AtYield(loop.Yields() + band + 1, [this] { transfer.Cancel(); });
    transfer.ReadAllFlash();
    EXPECT_EQ(sensor.Count(kRetrieveFrame), band);
    EXPECT_EQ(sensor.AllFrames().size(), static_cast<std::size_t>(band) * 19U) << "half a band";
    EXPECT_EQ(message.find("Reading cancelled. Read: "), 0U) << message;
    EXPECT_FALSE(transfer.Running());
    EXPECT_FALSE(shown);
  }
}

TEST_F(BetweenBands, AWriteCanBeCancelledBetweenAnyTwoBands) {
  Given(AlarmBandTable) = RandomTable(7);
  for (int band = 0; band < 24; ++band) {
    SCOPED_TRACE(band);
    transfer.ForgetSensor();
    sensor.ClearFrames();
    loop.AtYield(loop.Yields() + band + 1, [this] { transfer.Cancel(); });
    transfer.cmdWriteAll_Click();
    Frames frames{kClearFrame};
    for (int i = 0; i < band; ++i) {
      frames = std::move(frames) + WriteBandFrames(i % 6 + 1, i / 6, AlarmBandTable);
    }
    EXPECT_EQ(TakeFrames(), frames) << "half a band";
    EXPECT_EQ(message.find("Writing cancelled. Sensor cleared; written: "), 0U) << message;
    for (int i = 0; i < 24; ++i) {
      const int expected = i < band ? AlarmBandTable(3, i % 6 + 1, i / 6) : 0;
      EXPECT_EQ(transfer.InSensor(3, i % 6 + 1, i / 6), expected) << i;
    }
    EXPECT_FALSE(transfer.Running());
    EXPECT_FALSE(shown);
  }
}

TEST_F(BetweenBands, ACancelledReadTellsWhatWasRead) {
  loop.AtYield(1, [this] { transfer.Cancel(); });
  transfer.ReadAllFlash();
  EXPECT_EQ(message, "Reading cancelled. Read: none.");
  loop.AtYield(loop.Yields() + 8, [this] { transfer.Cancel(); });
  transfer.ReadAllFlash();
  EXPECT_EQ(message, "Reading cancelled. Read: option 0 bands 1 to 6, option 1 band 1.");
}

TEST_F(BetweenBands, ACancelledWriteTellsWhatReachedTheSensor) {
  loop.AtYield(9, [this] { transfer.Cancel(); });
  transfer.cmdWriteAll_Click();
  EXPECT_EQ(message,
            "Writing cancelled. Sensor cleared; written: option 0 bands 1 to 6, option 1 bands 1 "
            "to 2.");
  EXPECT_EQ(transfer.InSensor(0, 6, 3), 0) << "cleared, and not written since";
}

TEST_F(BetweenBands, ACancelledWriteOfOneOptionTellsWhatReachedTheSensor) {
  loop.AtYield(4, [this] { transfer.Cancel(); });
  transfer.Write6BandsToFlash(3);
  EXPECT_EQ(message, "Writing cancelled. Written: option 3 bands 1 to 3.");
  EXPECT_EQ(sensor.Count(kClearFrame), 0);
  transfer.Write6BandsToFlash(3);
  EXPECT_EQ(message, "6 bands written.");
}

TEST_F(BetweenBands, ProgressGoesOnceOverAllBands) {
  transfer.ReadFlash(1);
  EXPECT_EQ(progress, (Words{"Reading 0/6", "Reading 0/6", "Reading 1/6", "Reading 2/6",
                             "Reading 3/6", "Reading 4/6", "Reading 5/6"}));
  progress.clear();
  transfer.cmdWriteAll_Click();
  ASSERT_EQ(progress.size(), 25U);
  EXPECT_EQ(progress[0], "Writing 0/24") << "while the sensor is cleared";
  for (std::size_t i = 1; i < 25; ++i) {
    EXPECT_EQ(progress[i], "Writing " + std::to_string(i - 1) + "/24");
  }
}

TEST_F(BetweenBands, AnEarlierCancelDoesNotEndTheNextTransfer) {
  transfer.Cancel();
  transfer.ReadFlash(0);
  EXPECT_EQ(message, "6 bands read.");
}

TEST_F(BetweenBands, NoTransferBeginsInsideAnother) {
  loop.AtYield(2, [this] {
    transfer.cmdWriteAll_Click();
    transfer.cmdClearAll_Click();
    transfer.ReadFlash(3);
    transfer.ReadAllFlash();
    transfer.Write6BandsToFlash(1);
  });
  Given(AlarmBandTable) = RandomTable(5);
  transfer.ReadFlash(0);
  EXPECT_EQ(sensor.Count(kSaveFrame), 0);
  EXPECT_EQ(sensor.Count(kClearFrame), 0);
  EXPECT_EQ(sensor.Count(kRetrieveFrame), 6);
}

TEST_F(BetweenBands, AnErrorOfTheWindowLeavesNoTransferRunning) {
  loop.AtYield(3, [] { throw RuntimeError("Overflow"); });
  EXPECT_THROW(transfer.ReadAllFlash(), RuntimeError);
  EXPECT_FALSE(transfer.Running());
  EXPECT_FALSE(shown);
  transfer.ReadAllFlash();
  EXPECT_EQ(message, "24 bands read.");
}

}  // namespace
}  // namespace kestrel
