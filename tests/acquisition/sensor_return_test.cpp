// A lost sensor that is looked for, and found again.
// SPDX-License-Identifier: MIT
#include "acquisition/sensor_return.h"

#include "support/register_bench.h"

namespace kestrel {
namespace {

class LostSensor : public RegisterBench {
 protected:
  LostSensor() { return_.NoteRoad(); }

  void Lose() {
    sensor.UnplugAtRequest(1);
    ASSERT_TRUE(core.usb.FindLost());
  }

  SensorReturn return_{core};
};

TEST_F(LostSensor, IsThereAsLongAsItCanBeReached) {
  const int before = sensor.Requests();
  EXPECT_TRUE(return_.Look());
  EXPECT_EQ(sensor.Requests(), before);
}

TEST_F(LostSensor, IsNotAskedWhileItsBoardIsNotAttached) {
  Lose();
  const int before = sensor.Requests();
  EXPECT_FALSE(return_.Look());
  EXPECT_EQ(sensor.Requests(), before);
  EXPECT_TRUE(messages.Texts().empty());
}

TEST_F(LostSensor, IsTheInterfaceAgainWhenItsBoardIsBack) {
  Lose();
  InterfaceType = kNoInterface;  // somebody searched in vain
  sensor.PlugInAgain();
  EXPECT_TRUE(return_.Look());
  EXPECT_EQ(InterfaceType, kUsbAdapter);
  EXPECT_TRUE(core.registers.Reachable());
  EXPECT_EQ(SelectedAdapter.deviceName, "Ezusb-0");
  sensor.Set(address::kRecCnt, 17);
  std::int16_t count = address::kRecCnt;
  EXPECT_EQ(core.registers.ReadRegWord(count), 17);
  EXPECT_TRUE(messages.Texts().empty());
}

// The board that is there is another one.
TEST_F(LostSensor, IsNotReplacedByAnotherBoard) {
  SelectedAdapter.deviceName = "Ezusb-2";
  return_.NoteRoad();
  UsbPresent = false;
  EXPECT_FALSE(return_.Look());
  EXPECT_FALSE(UsbPresent);
}

TEST_F(LostSensor, ThatDoesNotAnswerIsAskedEverLessOften) {
  class Mute : public ScriptedSensor {
   public:
    using ScriptedSensor::ScriptedSensor;
    [[nodiscard]] bool Attached(const std::string&) override { return true; }
  };
  Mute mute{clock};
  Core lost{Seams{clock, loop, pointer, messages, files, locale, mute, port, driverService}};
  UsbPresent = false;
  mute.UnplugAtRequest(1);
  SensorReturn look(lost);
  look.NoteRoad();
  int asked = 0;
  for (int i = 0; i < 200; ++i) {
    NameFindings = {};
    EXPECT_FALSE(look.Look());
    if (NameFindings[0].openError != 0) ++asked;
  }
  EXPECT_GE(asked, 200 / 17);
  EXPECT_LE(asked, 25);
}

TEST_F(LostSensor, WithoutAnInterfaceIsNotLookedFor) {
  InterfaceType = kNoInterface;
  return_.NoteRoad();
  EXPECT_FALSE(return_.Look());
}

}  // namespace
}  // namespace kestrel
