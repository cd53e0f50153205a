// Ten thousand captures and a month of timer mode, in memory and time that stay small.
// SPDX-License-Identifier: MIT
#include <gtest/gtest.h>

#include <memory>

#include "simulator/heap_count.h"
#include "simulator/sensor_fixture.h"

namespace kestrel {
namespace {

constexpr unsigned kManyCaptures = 10000;
constexpr auto kOneCapture = 50ms;

TEST(HeapBytes, FollowWhatIsAllocated) {
  const std::size_t before = HeapBytes();
  auto block = std::make_unique<std::vector<char>>(1000000);
  EXPECT_GE(HeapBytes(), before + 1000000);
  block.reset();
  EXPECT_EQ(HeapBytes(), before);
}

TEST(LongRun, TenThousandManualCapturesTakeNoMoreMemory) {
  Bench bench;
  bench.Write(reg::kRecCtrl, RecCtrl(0, 0, 0, 1, 2));
  bench.Write(reg::kFftAvg, 1);
  for (unsigned i = 0; i < 17; ++i) bench.Capture(kOneCapture);  // until flash is full
  const std::size_t before = HeapBytes();
  for (unsigned i = 17; i < kManyCaptures; ++i) bench.Capture(kOneCapture);
  EXPECT_EQ(HeapBytes(), before);
  EXPECT_EQ(bench.Read(reg::kRecCnt), kManyCaptures);
}

TEST(LongRun, TenThousandTimedCapturesTakeNoMoreMemory) {
  Bench bench;
  bench.Write(reg::kRecCtrl, RecCtrl(1, 0, 0, 1, 2));
  bench.Write(reg::kFftAvg, 1);
  bench.Write(reg::kRecPrd, 1);
  bench.StartStop();
  bench.clock.Advance(20s);
  ASSERT_EQ(bench.Read(reg::kRecFlshCnt), 16);
  const std::size_t before = HeapBytes();
  for (unsigned i = 20; i < kManyCaptures; ++i) {
    bench.clock.Advance(1s);
    ASSERT_TRUE(bench.DataReady());
  }
  EXPECT_EQ(HeapBytes(), before);
  EXPECT_EQ(bench.Read(reg::kRecCnt), kManyCaptures);
}

// One capture a second for 30 days. Computing them all would take minutes.
class Month : public ::testing::Test, public Bench {
 protected:
  static constexpr unsigned kRecords = 30 * 86400 + 1;

  void Pass(unsigned storage) {
    Write(reg::kRecCtrl, RecCtrl(1, 0, 0, 1, storage));
    Write(reg::kFftAvg, 1);
    Write(reg::kRecPrd, 1);
    StartStop();
    const auto begin = std::chrono::steady_clock::now();
    clock.Advance(30 * 24h + 500ms);
    EXPECT_TRUE(DataReady());
    taken_ = std::chrono::steady_clock::now() - begin;
  }
  unsigned Stamp() { return Read(reg::kTimeHigh) * 65536U + Read(reg::kTimeLow); }

  std::chrono::nanoseconds taken_{0};
};

TEST_F(Month, PassesAtOnceWithEveryRecordCountedAndTheNewestShown) {
  sensor.SetScenario(SingleTone(BinHz(10, 0), 0.5));
  Pass(0);
  EXPECT_LT(taken_, 10s);
  EXPECT_EQ(Read(reg::kRecCnt), kRecords % 65536);
  EXPECT_EQ(Stamp(), kRecords - 1);
  EXPECT_NEAR(Spectrum(0)[10] * kMagnitudeLsbG[0], 0.5, 0.001);
  clock.Advance(500ms);
  EXPECT_TRUE(sensor.IsCapturing()) << "the series goes on in step";
}

TEST_F(Month, LeavesItsFirstRecordsInFlash) {
  Pass(2);
  EXPECT_LT(taken_, 10s);
  EXPECT_EQ(Read(reg::kRecCnt), kRecords % 65536);
  EXPECT_EQ(Stamp(), kRecords - 1);
  EXPECT_EQ(Read(reg::kRecFlshCnt), 16);
  StopRequest();
  for (unsigned slot = 0; slot < 16; ++slot) {
    Write(reg::kRecPntr, static_cast<std::uint16_t>(slot));
    Command(command::kRetrieveRecord);
    EXPECT_EQ(Stamp(), slot);
  }
}

TEST_F(Month, PassesAtOnceEvenWhileFlashFails) {
  sensor.SetFaults({.flashUpdate = true});
  Pass(2);
  EXPECT_LT(taken_, 10s);
  EXPECT_EQ(Status(), 1 << 7 | 1 << 2);
  EXPECT_EQ(Read(reg::kRecCnt), kRecords % 65536);
  EXPECT_EQ(Read(reg::kRecFlshCnt), 0);
}

}  // namespace
}  // namespace kestrel
