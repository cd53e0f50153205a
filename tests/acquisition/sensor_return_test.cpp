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
  core.registers.Use(kNoInterface);  // somebody searched in vain
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

TEST_F(LostSensor, ThatDoesNotAnswerIsAskedEverLessOften) {
  class Mute : public ScriptedSensor {
   public:
    using ScriptedSensor::ScriptedSensor;
    [[nodiscard]] bool Attached(const std::string& /*name*/) override { return true; }
    [[nodiscard]] Handle CreateFile(const std::string& path, std::uint32_t access,
                                    std::uint32_t share, std::uint32_t creation) override {
      if (path.ends_with("0")) ++searches;
      return ScriptedSensor::CreateFile(path, access, share, creation);
    }
    int searches = 0;
  };
  Mute mute{clock};
  Core lost{Seams{clock, loop, pointer, messages, files, locale, mute, port, driverService}};
  lost.registers.Use(kUsbAdapter);
  SensorReturn look(lost);
  look.NoteRoad();
  mute.UnplugAtRequest(1);
  std::int16_t count = address::kRecCnt;
  lost.registers.ReadRegWord(count);
  ASSERT_FALSE(lost.registers.Reachable());
  mute.searches = 0;
  for (int i = 0; i < 200; ++i) EXPECT_FALSE(look.Look());
  EXPECT_GE(mute.searches, 200 / 16);
  EXPECT_LE(mute.searches, 25);
}

TEST_F(LostSensor, WithoutAnInterfaceIsNotLookedFor) {
  core.registers.Use(kNoInterface);
  return_.NoteRoad();
  EXPECT_FALSE(return_.Look());
}

}  // namespace
}  // namespace kestrel
