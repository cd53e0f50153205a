// Kestrel evaluation program
// SPDX-License-Identifier: MIT
// The plug is pulled at every single request of a transfer.

#include "transfer_bench.h"

namespace kestrel {
namespace {

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
};

TEST_F(TransferFaults, ALostSensorEndsAReadWithOneMessageAndOnlyWholeBandsArrive) {
  for (const int address : kAddresses) sensor.Set(address, 7);
  const int requests = RequestsOf([this] { transfer.ReadFlash(1); });
  for (int k = 1; k <= requests; ++k) {
    SCOPED_TRACE(k);
    AlarmBandTable = RandomTable(11);
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

TEST_F(TransferFaults, ALostSensorEndsAWriteAndTheBandAtHandIsNotTakenForWritten) {
  AlarmBandTable = RandomTable(12);
  const int requests = RequestsOf([this] { transfer.cmdWriteAll_Click(); });
  for (int k = 1; k <= requests; k += 7) {
    SCOPED_TRACE(k);
    PlugInAgain();
    transfer.ForgetSensor();
    sensor.UnplugAtRequest(k);
    transfer.cmdWriteAll_Click();
    EXPECT_EQ(messages.Texts().size(), 1U);
    EXPECT_EQ(message.find("Writing failed: the sensor was lost. "), 0U) << message;
    const long saved = sensor.Count(kSaveFrame);
    int known = 0;
    for (int option = 0; option < 4; ++option) {
      for (int band = 1; band <= 6; ++band) {
        const auto value = transfer.InSensor(Alarm1Field(Axis::X), band, option);
        if (value && *value == AlarmBandTable(Alarm1Field(Axis::X), band, option)) ++known;
      }
    }
    EXPECT_GE(saved, known);
    EXPECT_LE(saved, known + 1) << "a save went out whose answer never came";
  }
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
