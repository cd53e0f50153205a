// Alarm bands saved to flash and read back.
// SPDX-License-Identifier: MIT
#include <gtest/gtest.h>

#include "simulator/sensor_fixture.h"

namespace kestrel {
namespace {

using namespace command;

constexpr Band kZeros = {};
constexpr Band kSome = {10, 20, 0x8001, 0x8002, 0x8003, 0xFFFF, 0xFFFE, 0xFFFD};

class Bands : public SensorTest {
 protected:
  Band Registers() {
    Band band{};
    for (unsigned i = 0; i < band.size(); ++i) {
      band[i] = Read(static_cast<std::uint8_t>(reg::kFLow + 2 * i));
    }
    return band;
  }
  Band Retrieve(std::uint16_t pointer) {
    WriteBandRegisters({1, 2, 3, 4, 5, 6, 7, 8});
    Write(reg::kAlmPntr, pointer);
    Command(kRetrieveBand);
    return Registers();
  }
};

TEST_F(Bands, AreZeroUntilSaved) {
  EXPECT_EQ(Retrieve(0x0203), kZeros);
}

TEST_F(Bands, SavedBandComesBack) {
  SaveBand(0x0203, kSome);
  EXPECT_EQ(Retrieve(0x0203), kSome);
}

Band BandOf(unsigned option, unsigned number) {
  Band band{};
  for (unsigned i = 0; i < band.size(); ++i) {
    band[i] = static_cast<std::uint16_t>(1000 * option + 100 * number + i);
  }
  return band;
}

TEST_F(Bands, AreSixForEachOfFourOptions) {
  for (unsigned option = 0; option < 4; ++option) {
    for (unsigned number = 1; number <= 6; ++number) {
      SaveBand(static_cast<std::uint16_t>(option << 8U | number), BandOf(option, number));
    }
  }
  for (unsigned option = 0; option < 4; ++option) {
    for (unsigned number = 1; number <= 6; ++number) {
      EXPECT_EQ(Retrieve(static_cast<std::uint16_t>(option << 8U | number)), BandOf(option, number))
          << option << ", " << number;
    }
  }
}

TEST_F(Bands, CanBeLoadedAndSavedWithoutAPause) {
  for (std::uint16_t number = 1; number <= 6; ++number) {
    WriteBandRegisters(BandOf(0, number));
    Write(reg::kAlmPntr, number);
    Give(kSaveBand);
  }
  for (std::uint16_t number = 1; number <= 6; ++number) {
    EXPECT_EQ(Retrieve(number), BandOf(0, number)) << number;
  }
}

TEST_F(Bands, PointerOutOfRangeIsIgnored) {
  constexpr std::uint16_t kNoBands[] = {0x0000, 0x0007, 0x00FF, 0x0300, 0x0307, 0x0401, 0xFF01};
  for (const std::uint16_t pointer : kNoBands) {
    SaveBand(pointer, kSome);
    EXPECT_EQ(Retrieve(pointer), (Band{1, 2, 3, 4, 5, 6, 7, 8})) << pointer;
  }
  EXPECT_EQ(Read(reg::kEndurance), 0);
  EXPECT_EQ(Retrieve(0x0001), kZeros);
}

TEST_F(Bands, ClearingEmptiesThemAllAndLeavesTheRegisters) {
  SaveBand(0x0001, kSome);
  SaveBand(0x0306, kSome);
  Command(kClearBands);
  EXPECT_EQ(Registers(), kSome);
  EXPECT_EQ(Retrieve(0x0001), kZeros);
  EXPECT_EQ(Retrieve(0x0306), kZeros);
}

TEST_F(Bands, EverySaveAndClearIsAFlashWrite) {
  SaveBand(0x0001, kSome);
  SaveBand(0x0002, kSome);
  Command(kClearBands);
  EXPECT_EQ(Read(reg::kEndurance), 3);
  static_cast<void>(Retrieve(0x0001));
  EXPECT_EQ(Read(reg::kEndurance), 3);
}

TEST_F(Bands, SurviveASoftwareResetButNotAFactoryReset) {
  SaveBand(0x0105, kSome);
  Command(kSoftwareReset);
  EXPECT_EQ(Registers(), kZeros) << "the registers are settings and were not saved";
  EXPECT_EQ(Retrieve(0x0105), kSome);
  Command(kFactoryReset);
  EXPECT_EQ(Retrieve(0x0105), kZeros);
}

TEST_F(Bands, StayAsTheyAreWhileFlashFails) {
  SaveBand(0x0001, kSome);
  sensor.SetFaults({.flashUpdate = true});
  SaveBand(0x0001, BandOf(1, 1));
  EXPECT_EQ(Status(), 1 << 2);
  EXPECT_EQ(Retrieve(0x0001), kSome);
  Command(kClearBands);
  EXPECT_EQ(Retrieve(0x0001), kSome);
  EXPECT_EQ(Read(reg::kEndurance), 1);
}

}  // namespace
}  // namespace kestrel
