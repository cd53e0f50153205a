// The plug pulled at every single request of a transfer.
// SPDX-License-Identifier: MIT
// The plug is pulled at every single request of a transfer.

#include "support/given.h"
#include "transfer_bench.h"

namespace kestrel {
namespace {

using namespace std::chrono_literals;

class TransferFaults : public TransferBench {
 protected:
  // How many requests to the driver an operation makes when nothing fails.
  int RequestsOf(const std::function<void()>& operation) {
    const int before = sensor.Requests();
    operation();
    return sensor.Requests() - before;
  }

  void PlugInAgain() {
    sensor.PlugInAgain();
    core.usb.SelectUsbAdapter();
    messages.Clear();
    sensor.ClearFrames();
  }

  // After a write of everything that failed: bands whose save was confirmed are known, the one at
  // hand is not, the others are known as cleared.
  void ExpectShadowAfterWrite() {
    const long saves = sensor.Count(kSaveFrame);
    long written = 0;
    long unknown = 0;
    for (int i = 0; i < 24; ++i) {
      const int band = i % 6 + 1;
      const int option = i / 6;
      const auto held = transfer.InSensor(Alarm1Field(Axis::X), band, option);
      if (!held) {
        ++unknown;
      } else if (written == i && *held == AlarmBandTable(Alarm1Field(Axis::X), band, option)) {
        ++written;
      } else {
        EXPECT_EQ(*held, 0) << i;
      }
    }
    EXPECT_GE(saves, written);
    EXPECT_LE(saves, written + 1) << "a save went out whose answer never came";
    const bool clearFailed = unknown == 24 && sensor.Transfers().size() <= 1;
    EXPECT_TRUE(unknown == 1 || clearFailed) << unknown;
  }
};

TEST_F(TransferFaults, ALostSensorEndsAReadWithOneMessageAndOnlyWholeBandsArrive) {
  for (const int address : kAddresses) sensor.Set(address, 7);
  const int requests = RequestsOf([this] { transfer.ReadFlash(1); });
  for (int k = 1; k <= requests; ++k) {
    SCOPED_TRACE(k);
    Given(AlarmBandTable) = RandomTable(11);
    const BandTable before = AlarmBandTable;
    sensor.UnplugAtRequest(k);
    transfer.ReadFlash(1);
    EXPECT_EQ(messages.Texts().size(), 1U);
    EXPECT_EQ(message.find("Reading failed: the sensor was lost. Read: "), 0U) << message;
    EXPECT_FALSE(shown);
    EXPECT_FALSE(transfer.Running());
    for (int band = 1; band <= 6; ++band) {
      const bool arrived = AlarmBandTable(0, band, 1) == 7 && before(0, band, 1) != 7;
      for (const int field : kBandFields) {
        EXPECT_EQ(AlarmBandTable(field, band, 1), arrived ? 7 : before(field, band, 1));
      }
    }
    PlugInAgain();
  }
}

TEST_F(TransferFaults, AReadThatFailsLeavesWhatWasKnownOfTheSensor) {
  const int requests = RequestsOf([this] { transfer.ReadFlash(1); });
  for (int k = 1; k <= requests; ++k) {
    SCOPED_TRACE(k);
    for (const int address : kAddresses) sensor.Set(address, 7);
    transfer.ReadAllFlash();
    for (const int address : kAddresses) sensor.Set(address, 9);
    sensor.UnplugAtRequest(k);
    transfer.ReadFlash(1);
    for (int band = 1; band <= 6; ++band) {
      for (int option = 0; option < 4; ++option) {
        for (const int field : kBandFields) {
          EXPECT_EQ(transfer.InSensor(field, band, option), AlarmBandTable(field, band, option));
        }
      }
    }
    PlugInAgain();
  }
}

TEST_F(TransferFaults, AReadThatFailsSendsAndWaitsNoMore) {
  const int requests = RequestsOf([this] { transfer.ReadFlash(0); });
  for (int k = 1; k <= requests; ++k) {
    SCOPED_TRACE(k);
    PlugInAgain();
    sensor.UnplugAtRequest(k);
    const int asked = sensor.Requests();
    clock.ClearWaits();
    transfer.ReadFlash(0);
    EXPECT_LE(sensor.Requests() - asked, k) << "asked again";
    EXPECT_LE(std::count(clock.Waits().begin(), clock.Waits().end(), 20ms),
              sensor.Count(kRetrieveFrame));
  }
}

TEST_F(TransferFaults, ALostSensorEndsAWriteAndTheBandAtHandIsNotTakenForWritten) {
  Given(AlarmBandTable) = RandomTable(12);
  const int requests = RequestsOf([this] { transfer.cmdWriteAll_Click(); });
  for (int k = 1; k <= requests; ++k) {
    SCOPED_TRACE(k);
    PlugInAgain();
    sensor.UnplugAtRequest(k);
    transfer.cmdWriteAll_Click();
    EXPECT_EQ(messages.Texts().size(), 1U);
    EXPECT_FALSE(shown);
    EXPECT_FALSE(transfer.Running());
    EXPECT_EQ(message.find("Writing failed: the sensor was lost"), 0U) << message;
    ExpectShadowAfterWrite();
  }
}

TEST_F(TransferFaults, AWriteOfOneOptionThatFailsLeavesTheOtherOptionsKnown) {
  transfer.cmdWriteAll_Click();
  Given(AlarmBandTable) = RandomTable(13);
  PlugInAgain();
  sensor.UnplugAtRequest(70);
  transfer.Write6BandsToFlash(2);
  EXPECT_EQ(message, "Writing failed: the sensor was lost. Written: option 2 bands 1 to 2.");
  for (int band = 1; band <= 6; ++band) {
    EXPECT_EQ(transfer.InSensor(3, band, 0), 0);
    EXPECT_EQ(transfer.InSensor(3, band, 1), 0);
    EXPECT_EQ(transfer.InSensor(3, band, 3), 0);
  }
  EXPECT_EQ(transfer.InSensor(3, 2, 2), AlarmBandTable(3, 2, 2));
  EXPECT_EQ(transfer.InSensor(3, 3, 2), std::nullopt) << "begun";
  EXPECT_EQ(transfer.InSensor(3, 4, 2), 0) << "not touched";
}

TEST_F(TransferFaults, AClearThatFailsLeavesNothingKnown) {
  transfer.ReadAllFlash();
  sensor.UnplugAtRequest(1);
  transfer.cmdWriteAll_Click();
  EXPECT_EQ(message,
            "Writing failed: the sensor was lost while it was cleared; what it holds is not "
            "known.");
  EXPECT_EQ(transfer.InSensor(0, 1, 0), std::nullopt);
  PlugInAgain();
  transfer.ReadAllFlash();
  Given(AlarmBandTable) = RandomTable(14);
  sensor.UnplugAtRequest(1);
  transfer.cmdClearAll_Click();
  EXPECT_EQ(message, "Clearing failed: the sensor was lost. Only this table is cleared.");
  EXPECT_EQ(messages.Texts().size(), 1U);
  EXPECT_EQ(AlarmBandTable, BandTable{});
  EXPECT_EQ(transfer.InSensor(0, 1, 0), std::nullopt);
}

TEST_F(TransferFaults, AnAnswerThatComesShortCountsAsLost) {
  for (const int address : kAddresses) sensor.Set(address, 7);
  sensor.AnswerShort(2 * 10 + 5);
  transfer.ReadFlash(0);
  EXPECT_EQ(message, "Reading failed: the sensor was lost. Read: option 0 bands 1 to 2.");
  EXPECT_EQ(AlarmBandTable(0, 2, 0), 7);
  EXPECT_EQ(AlarmBandTable(0, 3, 0), 0);
}

TEST_F(TransferFaults, AnAdapterThatIsMissedBetweenTwoBandsEndsTheTransfer) {
  loop.AtYield(4, [] { Given(UsbPresent) = false; });
  transfer.ReadAllFlash();
  EXPECT_EQ(message, "Reading failed: the sensor was lost. Read: option 0 bands 1 to 3.");
  EXPECT_EQ(sensor.Count(kRetrieveFrame), 3);
}

TEST_F(TransferFaults, TheNextTransferWorks) {
  sensor.UnplugAtRequest(40);
  transfer.ReadAllFlash();
  EXPECT_EQ(messages.Texts().size(), 1U);
  PlugInAgain();
  transfer.ReadAllFlash();
  EXPECT_EQ(message, "24 bands read.");
  EXPECT_TRUE(messages.Texts().empty());
}

}  // namespace
}  // namespace kestrel
