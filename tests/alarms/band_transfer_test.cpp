// The way of the alarm bands to and from the sensor's flash.
// SPDX-License-Identifier: MIT
#include "alarms/band_transfer.h"

#include <algorithm>

#include "support/given.h"
#include "transfer_bench.h"

namespace kestrel {
namespace {

using namespace std::chrono_literals;
using Words = std::vector<std::string>;

class Transfer : public TransferBench {};

TEST_F(Transfer, ReadingAnOptionRetrievesItsSixBandsOneByOne) {
  transfer.ReadFlash(2);
  Frames frames;
  for (int band = 1; band <= 6; ++band) frames = std::move(frames) + ReadBandFrames(band, 2);
  EXPECT_EQ(TakeFrames(), frames);
  EXPECT_EQ(journal.Entries(), Words{"option 2"});
  EXPECT_EQ(message, "6 bands read.");
}

TEST_F(Transfer, Band3OfOption2IsAddressedWith515) {
  transfer.ReadFlash(2);
  const Frames third = WriteFrames(kPointer, 515);
  EXPECT_EQ(sensor.Transfers().at(2 * 10).frames, third) << "ten transfers a band";
  sensor.ClearFrames();
  transfer.Write6BandsToFlash(2);
  EXPECT_EQ(sensor.Transfers().at(2 * 10 + 8).frames, third) << "after eight registers";
}

TEST_F(Transfer, TheSensorHas20MsToRetrieveABand) {
  transfer.ReadFlash(0);
  const auto commands = sensor.Times(kRetrieveFrame);
  const auto reads = sensor.Times(0x2000);
  ASSERT_EQ(commands.size(), 6U);
  ASSERT_EQ(reads.size(), 6U);
  for (std::size_t i = 0; i < 6; ++i) {
    EXPECT_EQ(reads[i] - commands[i], 20ms + 100us) << i;
  }
}

TEST_F(Transfer, WhatTheRegistersHoldGoesIntoTheTable) {
  for (std::size_t i = 0; i < kAddresses.size(); ++i) {
    sensor.Set(kAddresses[i], 100 + static_cast<int>(i));
  }
  Given(AlarmBandTable)(2, 1, 1) = 77;
  transfer.ReadFlash(1);
  for (int band = 1; band <= 6; ++band) {
    for (std::size_t i = 0; i < kBandFields.size(); ++i) {
      EXPECT_EQ(AlarmBandTable(kBandFields[i], band, 1), 100 + static_cast<int>(i));
      EXPECT_EQ(transfer.InSensor(kBandFields[i], band, 1), 100 + static_cast<int>(i));
      EXPECT_EQ(AlarmBandTable(kBandFields[i], band, 0), 0);
      EXPECT_EQ(transfer.InSensor(kBandFields[i], band, 0), std::nullopt);
    }
  }
  EXPECT_EQ(AlarmBandTable(2, 1, 1), 77) << "a field that is never transferred";
}

TEST_F(Transfer, AnOptionThatIsNoneIsNamedAndTheTableUntouched) {
  Given(AlarmBandTable) = RandomTable(1);
  const BandTable before = AlarmBandTable;
  for (const std::int16_t option : {std::int16_t{4}, std::int16_t{-1}}) {
    messages.Clear();
    transfer.ReadFlash(option);
    EXPECT_EQ(messages.Texts(),
              Words{"Error...\nsub routine = ReadFlash()\nStatusRateOption  = " +
                    std::to_string(option) + "\nValid values for StatusRtaeOption Are 0,1,2,3\n"});
    messages.Clear();
    transfer.Write6BandsToFlash(option);
    EXPECT_EQ(
        messages.Texts(),
        Words{"Error...\nsub routine = WriteBandsFlash()\nStatus Rate Option  = " +
              std::to_string(option) + "\nValid values for Status Rate Option Are 0,1,2,3\n"});
  }
  EXPECT_EQ(AlarmBandTable, before);
  EXPECT_EQ(TakeFrames(), Frames{});
  EXPECT_TRUE(journal.Entries().empty());
}

TEST_F(Transfer, ReadingAllShowsEachOptionAndThenTheFirst) {
  transfer.ReadAllFlash();
  Frames frames;
  for (int option = 0; option < 4; ++option) {
    for (int band = 1; band <= 6; ++band) frames = std::move(frames) + ReadBandFrames(band, option);
  }
  EXPECT_EQ(TakeFrames(), frames);
  EXPECT_EQ(journal.Entries(), (Words{"option 0", "option 1", "option 2", "option 3", "option 0"}));
  EXPECT_EQ(message, "24 bands read.");
  EXPECT_EQ(progress.front(), "Reading 0/24");
  EXPECT_EQ(progress.back(), "Reading 23/24");
  EXPECT_FALSE(shown);
  EXPECT_FALSE(transfer.Running());
}

TEST_F(Transfer, WritingAnOptionLoadsTheRegistersThenThePointerThenSaves) {
  Given(AlarmBandTable) = RandomTable(2);
  transfer.Write6BandsToFlash(3);
  Frames frames;
  for (int band = 1; band <= 6; ++band) {
    frames = std::move(frames) + WriteBandFrames(band, 3, AlarmBandTable);
  }
  EXPECT_EQ(TakeFrames(), frames);
  EXPECT_TRUE(journal.Entries().empty());
}

TEST_F(Transfer, ThePauseOfAWriteIsBeforeTheSaveAndNoneAfterIt) {
  transfer.Write6BandsToFlash(0);
  // Eight registers, the pointer, the save: ten transfers a band.
  ASSERT_EQ(sensor.Transfers().size(), 60U);
  for (std::size_t band = 0; band < 6; ++band) {
    EXPECT_EQ(After(10 * band + 8), 10ms + 100us);
    if (band < 5) {
      EXPECT_EQ(After(10 * band + 9), 100us);
    }
  }
}

TEST_F(Transfer, WritingAllIsOneClearAnd24Saves) {
  Given(AlarmBandTable) = RandomTable(3);
  transfer.cmdWriteAll_Click();
  EXPECT_EQ(sensor.Count(kClearFrame), 1);
  EXPECT_EQ(sensor.Count(kSaveFrame), 24);
  EXPECT_EQ(After(0), 30ms + 100us) << "after the clear";
  Frames frames{kClearFrame};
  for (int option = 0; option < 4; ++option) {
    for (int band = 1; band <= 6; ++band) {
      frames = std::move(frames) + WriteBandFrames(band, option, AlarmBandTable);
    }
  }
  EXPECT_EQ(TakeFrames(), frames);
  EXPECT_EQ(message, "24 bands written.");
  EXPECT_EQ(transfer.InSensor(Alarm2Field(Axis::Z), 6, 3),
            AlarmBandTable(Alarm2Field(Axis::Z), 6, 3));
}

TEST_F(Transfer, ClearingZeroesTheTableAndSendsOneCommandWithoutAPause) {
  Given(AlarmBandTable) = RandomTable(4);
  Given(AlarmBandTable)(2, 1, 0) = 5;
  Given(AlarmBandTable)(0, 0, 4) = 6;
  const auto start = clock.Monotonic();
  transfer.cmdClearAll_Click();
  EXPECT_EQ(TakeFrames(), Frames{kClearFrame});
  EXPECT_EQ(clock.Monotonic() - start, 100us);
  EXPECT_EQ(journal.Entries(), Words{"option 0"});
  BandTable unused;
  unused(2, 1, 0) = 5;
  unused(0, 0, 4) = 6;
  EXPECT_EQ(AlarmBandTable, unused);
  EXPECT_EQ(transfer.InSensor(0, 1, 0), 0);
}

TEST_F(Transfer, WithoutASensorNothingIsSentAndTheLineSaysSo) {
  core.registers.Use(kNoInterface);
  Given(AlarmBandTable) = RandomTable(6);
  const BandTable before = AlarmBandTable;
  transfer.ReadAllFlash();
  EXPECT_EQ(message, "No sensor can be reached.");
  transfer.cmdWriteAll_Click();
  transfer.Write6BandsToFlash(0);
  EXPECT_EQ(AlarmBandTable, before);
  EXPECT_EQ(TakeFrames(), Frames{});
  transfer.cmdClearAll_Click();
  EXPECT_EQ(AlarmBandTable, BandTable{}) << "the table is the host's own";
  EXPECT_EQ(TakeFrames(), Frames{});
  EXPECT_EQ(journal.Entries(), Words{"option 0"});
  EXPECT_EQ(message, "No sensor can be reached. Only this table is cleared.");
  EXPECT_EQ(transfer.InSensor(0, 1, 0), std::nullopt);
}

TEST_F(Transfer, OfBandsThatAreNotUsedNothingIsKnown) {
  transfer.ReadAllFlash();
  for (const int band : {-1, 0, 7, 8}) EXPECT_EQ(transfer.InSensor(0, band, 0), std::nullopt);
  for (const int option : {-1, 4, 5}) EXPECT_EQ(transfer.InSensor(0, 1, option), std::nullopt);
  EXPECT_EQ(transfer.InSensor(0, 6, 3), 0);
}

TEST_F(Transfer, TheShadowHoldsWhatWasWrittenAndThenWhatIsRead) {
  Given(AlarmBandTable)(Alarm2Field(Axis::Y), 1, 0) = 65535;
  transfer.Write6BandsToFlash(0);
  EXPECT_EQ(transfer.InSensor(Alarm2Field(Axis::Y), 1, 0), 65535);
  sensor.Set(0x2C, 65535);
  transfer.ReadFlash(0);
  EXPECT_EQ(transfer.InSensor(Alarm2Field(Axis::Y), 1, 0), 32767) << "read with 15 bits";
  EXPECT_EQ(AlarmBandTable(Alarm2Field(Axis::Y), 1, 0), 32767);
}

TEST_F(Transfer, ForgettingTheSensorForgetsEveryBand) {
  transfer.ReadAllFlash();
  transfer.ForgetSensor();
  EXPECT_EQ(transfer.InSensor(0, 1, 0), std::nullopt);
}

TEST_F(Transfer, WhatCameFromTheSensorGoesBackAsItCame) {
  for (const int address : kAddresses) sensor.Set(address, 0xFFFF);
  transfer.ReadAllFlash();
  EXPECT_EQ(AlarmBandTable(kFLowField, 6, 3), 65535);
  EXPECT_EQ(AlarmBandTable(Alarm2Field(Axis::Y), 6, 3), 32767) << "decoded with 15 bits";
  TakeFrames();
  transfer.cmdWriteAll_Click();
  EXPECT_EQ(messages.Texts(), Words());
  EXPECT_EQ(message, "24 bands written.");
  EXPECT_EQ(sensor.Count(kSaveFrame), 24);
  BandTable all;
  for (const int field : kBandFields) all(field, 1, 0) = 0xFFFF;
  const Frames band = WriteBandFrames(1, 0, all);
  const Frames sent = TakeFrames();
  EXPECT_EQ(Frames(sent.begin() + 1, sent.begin() + 1 + static_cast<std::ptrdiff_t>(band.size())),
            band);
  EXPECT_EQ(transfer.InSensor(Alarm2Field(Axis::Y), 1, 0), 32767) << "as it would be read";
}

TEST_F(Transfer, AChangedValueIsWrittenAsItIs) {
  sensor.Set(0x2C, 0xFFFF);
  transfer.ReadFlash(0);
  Given(AlarmBandTable)(Alarm2Field(Axis::Y), 1, 0) = 32766;
  TakeFrames();
  transfer.Write6BandsToFlash(0);
  const Frames frames = TakeFrames();
  EXPECT_NE(std::ranges::search(frames, WriteFrames(0x2C, 32766)).begin(), frames.end());
}

TEST_F(Transfer, OfANumberThatNoRegisterTakesItIsToldWhatTheSensorHolds) {
  struct Misfit {
    std::int32_t value;
    std::int32_t held;
  };
  for (const Misfit& misfit : {Misfit{65536 + 9, 9}, Misfit{-5, 251}, Misfit{-300, 0xFFD4}}) {
    Given(AlarmBandTable) = {};
    Given(AlarmBandTable)(Alarm1Field(Axis::X), 4, 2) = misfit.value;
    transfer.cmdWriteAll_Click();
    EXPECT_EQ(message,
              "24 bands written. Values that do not fit their registers: 1; of these the sensor "
              "holds another number, see the marked cells.");
    EXPECT_EQ(transfer.InSensor(Alarm1Field(Axis::X), 4, 2), misfit.held);
    EXPECT_EQ(messages.Texts(), Words());
  }
}

}  // namespace
}  // namespace kestrel
