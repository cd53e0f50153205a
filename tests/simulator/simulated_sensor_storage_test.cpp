// Records stored in flash and retrieved.
// SPDX-License-Identifier: MIT
#include <gtest/gtest.h>

#include "simulator/sensor_fixture.h"

namespace kestrel {
namespace {

using namespace command;

// What the registers tell about the record in the buffers.
struct Description {
  std::uint16_t info = 0;
  std::uint16_t supply = 0;
  std::uint16_t temp = 0;
  unsigned stamp = 0;
  bool operator==(const Description&) const = default;
};

// Records are stored, all of them, unless a test says otherwise.
class Storage : public SensorTest {
 protected:
  void SetUp() override { SetMode(0, 2); }

  // Mode 0 takes spectra, mode 2 time records.
  void SetMode(unsigned mode, unsigned storage) {
    Write(reg::kRecCtrl, RecCtrl(mode, 0, 0, 1, storage));
    Write(reg::kFftAvg, 1);
  }
  void CaptureTone(double bin, double amplitudeG = 0.5) {
    sensor.SetScenario(SingleTone(BinHz(bin, 0), amplitudeG));
    Capture(1s);
  }
  void Retrieve(std::uint16_t slot) {
    Write(reg::kRecPntr, slot);
    Command(kRetrieveRecord);
  }
  // The largest of bins 1..255.
  unsigned ToneBin() {
    const auto spectrum = Spectrum(0);
    unsigned largest = 1;
    for (unsigned bin = 1; bin < 256; ++bin) {
      if (spectrum[bin] > spectrum[largest]) largest = bin;
    }
    return largest;
  }
  Description Described() {
    return {Read(reg::kRecInfo), Read(reg::kSupply), Read(reg::kTemp),
            (unsigned{Read(reg::kTimeHigh)} << 16U) + Read(reg::kTimeLow)};
  }
};

TEST_F(Storage, OfAllStoresEveryRecordInTurn) {
  for (const double bin : {10.0, 20.0, 30.0}) CaptureTone(bin);
  EXPECT_EQ(Read(reg::kRecFlshCnt), 3);
  for (std::uint16_t slot = 0; slot < 3; ++slot) {
    Retrieve(slot);
    EXPECT_EQ(ToneBin(), 10U * (slot + 1U));
  }
}

TEST_F(Storage, OfNoneAndOfAlarmsStoresNothing) {
  for (const unsigned storage : {0U, 1U, 3U}) {
    SetMode(0, storage);
    Capture();
    EXPECT_EQ(Read(reg::kRecFlshCnt), 0) << storage;
    EXPECT_EQ(Read(reg::kEndurance), 0) << storage;
  }
  EXPECT_EQ(Read(reg::kRecCnt), 3);
}

TEST_F(Storage, IsAsSetWhenTheCaptureStarts) {
  StartStop();
  SetMode(0, 0);
  clock.Advance(1s);
  EXPECT_EQ(Read(reg::kRecFlshCnt), 1);
}

TEST_F(Storage, RetrievedSpectrumIsUnsignedAndExactlyAsCaptured) {
  Scenario scenario = SingleTone(BinHz(10, 0), 0.9);
  for (unsigned axis = 0; axis < 3; ++axis) scenario.axes[axis].noiseDensityG = 0.001 * (axis + 1);
  sensor.SetScenario(scenario);
  Capture();
  const std::vector<std::uint16_t> captured[] = {Buffer(0, 512), Buffer(1, 512), Buffer(2, 512)};
  ASSERT_GT(captured[0][10], 0x8000);
  ASSERT_EQ(captured[0][256], 0);
  CaptureTone(100);

  Retrieve(0);
  for (unsigned axis = 0; axis < 3; ++axis) EXPECT_EQ(Buffer(axis, 512), captured[axis]) << axis;
}

TEST_F(Storage, RetrievedTimeRecordIsTwosComplementAndExactlyAsCaptured) {
  SetMode(2, 2);
  CaptureTone(1.5, 0.9);
  const auto captured = Samples(2);
  ASSERT_NEAR(captured[85], 0.9 / kSampleLsbG[0], 3);
  ASSERT_NEAR(captured[256], -0.9 / kSampleLsbG[0], 3);
  SetMode(0, 2);
  CaptureTone(100);

  Retrieve(0);
  EXPECT_EQ(Samples(2), captured);
}

TEST_F(Storage, RetrievedRecordIsDescribedAsWhenItWasCaptured) {
  sensor.SetSupply(3.2);
  clock.Advance(70000s);
  Capture(1s);
  const Description first = Described();

  Scenario warmer;
  warmer.supplyV = 3.4;
  warmer.temperatureC = 60.0;
  sensor.SetScenario(warmer);
  Write(reg::kRecCtrl, RecCtrl(0, 3, 1, 2, 2));
  Capture(1s);
  const Description second = Described();
  ASSERT_NE(first.info, second.info);
  ASSERT_NE(first.supply, second.supply);
  ASSERT_NE(first.temp, second.temp);
  ASSERT_NE(first.stamp, second.stamp);
  ASSERT_GT(first.stamp, 65536U);

  Retrieve(0);
  EXPECT_EQ(Described(), first);
  Retrieve(1);
  EXPECT_EQ(Described(), second);
}

TEST_F(Storage, RetrievingChangesNeitherCountsNorStatus) {
  Capture();
  Capture();
  Give(kClearStatus);
  Retrieve(0);
  EXPECT_EQ(Read(reg::kRecCnt), 2);
  EXPECT_EQ(Read(reg::kRecFlshCnt), 2);
  EXPECT_EQ(Read(reg::kEndurance), 2);
  EXPECT_EQ(Status(), 0);
}

TEST_F(Storage, EmptySlotGivesZerosAndLeavesSupplyAndTemperature) {
  CaptureTone(10);
  const Description captured = Described();
  Retrieve(1);
  for (unsigned axis = 0; axis < 3; ++axis) {
    EXPECT_EQ(Buffer(axis, 512), std::vector<std::uint16_t>(512, 0)) << axis;
  }
  EXPECT_EQ(Described(), (Description{0, captured.supply, captured.temp, 0}));
}

TEST_F(Storage, RecordPointerHasFourBits) {
  CaptureTone(10);
  CaptureTone(20);
  Retrieve(0xFFF1);
  EXPECT_EQ(ToneBin(), 20U);
}

TEST_F(Storage, IsFullAfterSixteenAndFurtherRecordsAreOnlyCaptured) {
  for (unsigned i = 0; i < 16; ++i) CaptureTone(10 + i);
  EXPECT_EQ(Read(reg::kRecFlshCnt), 16);
  CaptureTone(100);
  EXPECT_EQ(ToneBin(), 100U);
  EXPECT_EQ(Read(reg::kRecCnt), 17);
  EXPECT_EQ(Read(reg::kRecFlshCnt), 16);
  EXPECT_EQ(Read(reg::kEndurance), 16);
  for (std::uint16_t slot = 0; slot < 16; ++slot) {
    Retrieve(slot);
    EXPECT_EQ(ToneBin(), 10U + slot);
  }
}

TEST_F(Storage, ClearedStartsAgainAtSlotZero) {
  CaptureTone(10);
  CaptureTone(20);
  Command(kClearRecords);
  EXPECT_EQ(Read(reg::kRecFlshCnt), 0);
  EXPECT_EQ(ToneBin(), 20U) << "the buffers are not flash";
  Retrieve(1);
  EXPECT_EQ(Buffer(0, 256), std::vector<std::uint16_t>(256, 0));

  CaptureTone(30);
  EXPECT_EQ(Read(reg::kRecFlshCnt), 1);
  Retrieve(0);
  EXPECT_EQ(ToneBin(), 30U);
}

TEST_F(Storage, EveryStoredRecordAndEveryClearIsAFlashWrite) {
  Capture();
  Capture();
  EXPECT_EQ(Read(reg::kEndurance), 2);
  Command(kClearRecords);
  EXPECT_EQ(Read(reg::kEndurance), 3);
}

TEST_F(Storage, SurvivesASoftwareResetButNotAFactoryReset) {
  CaptureTone(10);
  Command(kSoftwareReset);
  EXPECT_EQ(Read(reg::kRecFlshCnt), 1);
  Retrieve(0);
  EXPECT_EQ(ToneBin(), 10U);

  Command(kFactoryReset);
  EXPECT_EQ(Read(reg::kRecFlshCnt), 0);
  EXPECT_EQ(Read(reg::kEndurance), 2);
  Retrieve(0);
  EXPECT_EQ(Buffer(0, 256), std::vector<std::uint16_t>(256, 0));
}

TEST_F(Storage, WriteToTheBuffersLeavesFlashAlone) {
  Capture();
  Retrieve(0);
  Write(reg::kPointer, 7);
  Write(reg::kXBuf, 0xA55A);
  ASSERT_EQ(Spectrum(0)[7], 0xA55A);
  Retrieve(0);
  EXPECT_EQ(Spectrum(0)[7], 0);
}

TEST_F(Storage, NewRecordTakesThePlaceOfARetrievedOne) {
  CaptureTone(10);
  CaptureTone(20);
  Retrieve(0);
  CaptureTone(30);
  EXPECT_EQ(ToneBin(), 30U);
}

TEST_F(Storage, WhileFlashFailsNothingIsStoredOrClearedAndTheRecordIsDelivered) {
  CaptureTone(10);
  sensor.SetFaults({.flashUpdate = true});
  Capture();
  EXPECT_EQ(Status(), 1 << 7 | 1 << 2);
  EXPECT_EQ(Read(reg::kRecCnt), 2);
  Command(kClearRecords);
  EXPECT_EQ(Read(reg::kRecFlshCnt), 1);
  EXPECT_EQ(Read(reg::kEndurance), 1);
  Retrieve(0);
  EXPECT_EQ(ToneBin(), 10U);
}

}  // namespace
}  // namespace kestrel
