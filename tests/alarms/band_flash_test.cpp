// Bands into the simulated sensor's flash and back.
// SPDX-License-Identifier: MIT
// Bands go into the simulated sensor's flash and come back.

#include <gtest/gtest.h>

#include <random>

#include "alarms/band_transfer.h"
#include "app/program_state.h"
#include "connection/core.h"
#include "connection/init_interface.h"
#include "device/register_models.h"
#include "simulator/simulated_hardware.h"
#include "support/fake_clock.h"
#include "support/fixed_locale.h"
#include "support/given.h"
#include "support/memory_files.h"
#include "support/recording_messages.h"
#include "support/recording_pointer.h"
#include "support/reset_alarms.h"
#include "support/scripted_loop.h"
#include "support/seeds.h"

namespace kestrel {
namespace {

class BandFlash : public testing::Test, public BandTransferView {
 protected:
  BandFlash() {
    ResetAlarms();
    core.delay.SkipCalibration();
    core.registers.Use(kUsbAdapter);
    InitInterface(core);
    InitRegisterTable(core.registers);
  }
  ~BandFlash() override { ResetAlarms(); }

  void DisplaySpectrum(std::int16_t /*option*/) override {}
  void ShowTransfer(const std::string& /*activity*/, int /*done*/, int /*total*/) override {}
  void HideTransfer() override {}
  void SetMessage(const std::string& text) override { message = text; }

  FakeClock clock;
  SimulatedHardware hardware{clock};
  ScriptedLoop loop{clock};
  RecordingPointer pointer;
  RecordingMessages messages;
  MemoryFiles files;
  FixedLocale locale;
  Core core{{clock, loop, pointer, messages, files, locale, hardware.Adapter(), hardware.Port(),
             hardware.Service()}};
  std::string message;
  BandTransfer transfer{core.registers, core.delay, loop, messages, *this};
};

TEST_F(BandFlash, EveryValueComesBackAsItWasWritten) {
  std::mt19937 random(1);
  for (int round = 0; round < 5; ++round) {
    BandTable table;
    for (int option = 0; option < kSampleRateOptions; ++option) {
      for (int band = 1; band <= kAlarmBands; ++band) {
        for (const int field : kBandFields) {
          // The Y axis's alarm 2 register is read with 15 bits.
          const bool isShort = field == Alarm2Field(Axis::Y);
          const std::uint32_t most = field <= kFHighField ? 256U : (isShort ? 32768U : 65536U);
          table(field, band, option) = static_cast<std::int32_t>(random() % most);
        }
      }
    }
    Given(AlarmBandTable) = table;
    transfer.cmdWriteAll_Click();
    EXPECT_EQ(message, "24 bands written.");
    Given(AlarmBandTable) = {};
    transfer.ReadAllFlash();
    EXPECT_EQ(AlarmBandTable, table) << "round " << round;
  }
}

// Whatever was transferred before, and in whatever order.
TEST_F(BandFlash, EveryTransferOfOneOptionLeavesTheOthersAlone) {
  WithSeeds(6, [this](Random& random) {
    transfer.cmdClearAll_Click();
    clock.Advance(std::chrono::seconds{1});
    BandTable held;  // by the sensor
    for (int step = 0; step < 12; ++step) {
      SCOPED_TRACE("step " + std::to_string(step));
      const auto option = static_cast<std::int16_t>(random.Below(kSampleRateOptions));
      for (int changes = 10; changes > 0; --changes) {
        const int field = random.Of(kBandFields);
        ChangeableBands()(field, random.Between(1, kAlarmBands), random.Below(kSampleRateOptions)) =
            random.Below(field <= kFHighField ? 256 : 0x8000);
      }
      const BandTable edited = AlarmBandTable;
      const bool writes = random.OneIn(2);
      writes ? transfer.Write6BandsToFlash(option) : transfer.ReadFlash(option);
      for (int band = 1; band <= kAlarmBands; ++band) {
        for (const int field : kBandFields) {
          if (writes) held(field, band, option) = edited(field, band, option);
          EXPECT_EQ(AlarmBandTable(field, band, option), held(field, band, option));
        }
      }
      const BandTable unsaved = AlarmBandTable;
      transfer.ReadAllFlash();
      EXPECT_EQ(AlarmBandTable, held);
      Given(AlarmBandTable) = unsaved;
    }
    EXPECT_TRUE(messages.Texts().empty());
  });
}

TEST_F(BandFlash, TheLargestCodeOfTheYAxisComesBackWith15Bits) {
  Given(AlarmBandTable)(Alarm2Field(Axis::Y), 1, 0) = 65535;
  Given(AlarmBandTable)(Alarm2Field(Axis::Z), 1, 0) = 65535;
  transfer.Write6BandsToFlash(0);
  transfer.ReadFlash(0);
  EXPECT_EQ(AlarmBandTable(Alarm2Field(Axis::Y), 1, 0), 32767);
  EXPECT_EQ(AlarmBandTable(Alarm2Field(Axis::Z), 1, 0), 65535);
}

TEST_F(BandFlash, ClearedBandsReadAsZeros) {
  Given(AlarmBandTable)(0, 6, 3) = 9;
  transfer.cmdWriteAll_Click();
  transfer.cmdClearAll_Click();
  clock.Advance(std::chrono::seconds{1});
  Given(AlarmBandTable)(0, 6, 3) = 5;
  transfer.ReadAllFlash();
  EXPECT_EQ(AlarmBandTable, BandTable{});
}

}  // namespace
}  // namespace kestrel
