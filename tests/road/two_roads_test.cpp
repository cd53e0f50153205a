// Any frames reach the sensor as they are, over USB and over the port's pins alike.
// SPDX-License-Identifier: MIT
// Any frames reach the sensor as they are, over USB and over the pins of the port alike.

#include <gtest/gtest.h>

#include <set>
#include <tuple>
#include <vector>

#include "app/program_state.h"
#include "connection/core.h"
#include "connection/init_interface.h"
#include "device/register_models.h"
#include "regmap/register_table.h"
#include "simulator/simulated_hardware.h"
#include "support/fake_clock.h"
#include "support/fixed_locale.h"
#include "support/given.h"
#include "support/memory_files.h"
#include "support/recording_messages.h"
#include "support/recording_pointer.h"
#include "support/reset_program.h"
#include "support/scripted_loop.h"
#include "support/seeds.h"

namespace kestrel {
namespace {

// A bench of its own, and on the same clock a sensor that is spoken to directly.
class Road {
 public:
  explicit Road(std::int16_t interface) : interface_(interface) {
    core.delay.SkipCalibration();
    ChooseInterface(interface);
    ChoosePort(888);
    InitInterface(core);
    InitRegisterTable(core.registers);
    EXPECT_TRUE(messages.Texts().empty());
  }

  // The program speaks over this road from now on.
  void Take() { core.registers.Use(interface_); }

  std::uint16_t Directly(int frame) {
    return reference.Exchange(static_cast<std::uint16_t>(frame));
  }

  FakeClock clock;
  SimulatedHardware hardware{clock};
  SimulatedSensor reference{clock, RunningMachine()};
  ScriptedLoop loop{clock};
  RecordingPointer pointer;
  RecordingMessages messages;
  MemoryFiles files;
  FixedLocale locale;
  Core core{{clock, loop, pointer, messages, files, locale, hardware.Adapter(), hardware.Port(),
             hardware.Service()}};

 private:
  std::int16_t interface_;
};

class TwoRoads : public testing::Test {
 protected:
  TwoRoads() { ResetProgram(); }
  ~TwoRoads() override { ResetProgram(); }
};

// The adapter takes no frame with the high byte FF.
int AnyFrame(Random& random) {
  return random.OneIn(3) ? random.Below(0x78) << 8 : random.Below(0xFF00);
}

TEST_F(TwoRoads, AnyTransferOfTheAdapterIsWhatTheSensorSees) {
  WithSeeds(4, [](Random& random) {
    Road road(kUsbAdapter);
    for (int transfer = 0; transfer < 400; ++transfer) {
      const int frames = random.Between(1, kFramesPerTransfer);
      std::vector<int> answers;
      for (int n = 1; n <= frames; ++n) {
        Given(SpiTx)(n) = AnyFrame(random);
        answers.push_back(road.Directly(SpiTx(n)));
      }
      road.core.usb.UsbSpiTransfer(frames);
      for (int n = 1; n <= frames; ++n) {
        ASSERT_EQ(SpiRx(n), answers[static_cast<std::size_t>(n - 1)])
            << "transfer " << transfer << ", frame " << n << std::hex << " " << SpiTx(n);
      }
      road.clock.Advance(std::chrono::milliseconds{random.Below(300)});
    }
    EXPECT_TRUE(road.messages.Texts().empty());
  });
}

TEST_F(TwoRoads, AnyFrameOverThePinsIsWhatTheSensorSees) {
  WithSeeds(4, [](Random& random) {
    Road road(kParallelPort);
    for (int step = 0; step < 3000; ++step) {
      if (random.OneIn(2)) {
        const int frame = random.Word();
        road.Directly(frame);
        road.core.port.LptShiftOut(frame);
      } else {
        // The answer comes with a second frame, a read of address 0.
        auto address = static_cast<std::int16_t>(random.Below(0x78));
        road.Directly(address << 8);
        const int answer = road.reference.PendingAnswer();
        ASSERT_EQ(road.core.port.LptReadWord(address), answer) << "step " << step;
        road.Directly(0);
      }
      road.clock.Advance(std::chrono::milliseconds{random.Below(100)});
    }
  });
}

// All registers but COMMAND, whose work takes time, and those that tell the time.
TEST_F(TwoRoads, RandomRegisterTrafficGivesTheSameWordsOnBoth) {
  WithSeeds(4, [](Random& random) {
    Road usb(kUsbAdapter);
    Road port(kParallelPort);
    std::set<std::int32_t> values;
    for (int step = 0; step < 1500; ++step) {
      const auto row = static_cast<std::int16_t>(random.Below(RegCount + 1));
      const int word = random.Word();
      if (row != row::COMMAND && random.OneIn(2)) {
        for (Road* road : {&usb, &port}) {
          road->Take();
          road->core.registers.WriteReg(row, word);
        }
        continue;
      }
      usb.Take();
      usb.core.registers.ReadReg(row);
      const auto read = std::tuple(RegValue, RegScaled, RegHighByte, RegLowByte);
      port.Take();
      port.core.registers.ReadReg(row);
      ASSERT_EQ(std::tuple(RegValue, RegScaled, RegHighByte, RegLowByte), read)
          << "step " << step << ", " << RegName[row];
      values.insert(RegValue);
    }
    EXPECT_GT(values.size(), 100U) << "the sensor answers";
  });
}

}  // namespace
}  // namespace kestrel
