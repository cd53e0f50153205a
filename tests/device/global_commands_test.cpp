// Every function is one frame, with its busy sign.
// SPDX-License-Identifier: MIT
#include "device/global_commands.h"

#include <bit>

#include "support/journal.h"
#include "support/register_bench.h"

namespace kestrel {
namespace {

using namespace std::chrono_literals;
using Words = std::vector<std::string>;
using Waits = std::vector<std::chrono::nanoseconds>;

constexpr auto kAccessGap = 100us;  // after each register access

// The byte of COMMAND that a frame writes, as a word.
int CommandWord(int frame) {
  const int data = frame & 0xFF;
  switch (frame & ~0xFF) {
    case 0xBE00:
      return data;
    case 0xBF00:
      return data << 8;
    default:
      ADD_FAILURE() << "frame " << std::hex << frame;
      return 0;
  }
}

// Keeps what shows of the busy label, each time with the number of frames sent by then.
class Commands : public RegisterBench, public BusyView {
 protected:
  void ShowBusyLabel(bool shown) override { Note(shown ? "shown" : "hidden"); }

  class PaintedLoop : public ScriptedLoop {
   public:
    explicit PaintedLoop(Commands& bench) : ScriptedLoop(bench.clock), bench_(bench) {}
    void YieldToPaint() override {
      ScriptedLoop::YieldToPaint();
      bench_.Note("painted");
    }

   private:
    Commands& bench_;
  };

  void Note(const std::string& what) {
    journal.Note(what + " after " + std::to_string(sensor.AllFrames().size()));
  }

  Journal journal;
  PaintedLoop painted{*this};
  GlobalCommands commands{core.registers, core.delay, painted, messages, *this};
};

// COMMAND acts on the byte that is written, so one frame goes out; nothing is read back.
TEST_F(Commands, EveryFunctionIsOneFrame) {
  const Frames frames{0xBE01, 0xBE02, 0xBE04, 0xBE08, 0xBE10, 0xBE20, 0xBE40, 0xBE80,
                      0xBF01, 0xBF02, 0xBF04, 0xBF08, 0xBF10, 0xBF20, 0xBF40, 0xBF80};
  for (int index = 0; index < 16; ++index) {
    SCOPED_TRACE(index);
    commands.cmdWrite_Click(index);
    EXPECT_EQ(TakeFrames(), Frames{frames[static_cast<std::size_t>(index)]});
  }
  EXPECT_TRUE(messages.Texts().empty());
}

TEST_F(Commands, ClearNullValuesIsTheTopBitAndNotNegative) {
  commands.cmdWrite_Click(15);
  EXPECT_EQ(TakeFrames(), Frames{0xBF80});
  EXPECT_EQ(sensor.Word(0x3E), 0x8000);
}

TEST_F(Commands, AnIndexOutsideTheListIsNamedAndNothingSent) {
  for (const int index : {-1, 16}) {
    SCOPED_TRACE(index);
    messages.Clear();
    commands.cmdWrite_Click(index);
    EXPECT_EQ(messages.Texts(),
              Words{"Error: Index must be between 0 and 15   idx = " + std::to_string(index)});
  }
  EXPECT_EQ(TakeFrames(), Frames{});
  EXPECT_EQ(journal.Entries(), Words{});
  EXPECT_EQ(clock.Waits(), Waits{});
}

TEST_F(Commands, TheBusyLabelIsOnTheScreenBeforeAChosenFunctionIsSent) {
  commands.cmdWrite_Click(6);
  EXPECT_EQ(journal.Entries(),
            (Words{"shown after 0", "painted after 0", "hidden after 1", "painted after 1"}));
  EXPECT_EQ(painted.Yields(), 0) << "no handler of the user's runs in between";
}

TEST_F(Commands, AChosenFunctionIsWaitedFor300Ms) {
  for (const int index : {0, 15}) {
    clock.ClearWaits();
    commands.cmdWrite_Click(index);
    EXPECT_EQ(clock.Waits(), (Waits{kAccessGap, 300ms})) << index;
  }
}

struct Direct {
  const char* name;
  void (GlobalCommands::*send)();
  int bit;
  std::chrono::milliseconds busy;
};

const std::array kDirect{
    Direct{"CmdAutonull", &GlobalCommands::CmdAutonull, 0, 700ms},
    Direct{"CmdPowerDown", &GlobalCommands::CmdPowerDown, 1, 51ms},
    Direct{"CmdSelfTest", &GlobalCommands::CmdSelfTest, 2, 51ms},
    Direct{"CmdFactoryReset", &GlobalCommands::CmdFactoryReset, 3, 152ms},
    Direct{"CmdFlashTest", &GlobalCommands::CmdFlashTest, 5, 152ms},
    Direct{"CmdSoftwareReset", &GlobalCommands::CmdSoftwareReset, 7, 51ms},
    Direct{"CmdClearRecords", &GlobalCommands::CmdClearRecords, 8, 51ms},
    Direct{"CmdRecordStartStop", &GlobalCommands::CmdRecordStartStop, 11, 51ms},
    Direct{"CmdSaveAlarmBand", &GlobalCommands::CmdSaveAlarmBand, 12, 51ms},
    Direct{"CmdRetrieveRecord", &GlobalCommands::CmdRetrieveRecord, 13, 51ms}};

TEST_F(Commands, EveryDirectProcedureSendsItsBitAndIsBusyForItsTime) {
  for (const Direct& direct : kDirect) {
    SCOPED_TRACE(direct.name);
    clock.ClearWaits();
    (commands.*direct.send)();
    const Frames frames = TakeFrames();
    ASSERT_EQ(frames.size(), 1U);
    EXPECT_EQ(CommandWord(frames[0]), 1 << direct.bit);
    EXPECT_EQ(clock.Waits(), (Waits{kAccessGap, direct.busy}));
  }
}

TEST_F(Commands, TheBusyLabelOfADirectProcedureShowsOnlyAfterTheWrite) {
  for (const Direct& direct : kDirect) {
    journal.Clear();
    TakeFrames();
    (commands.*direct.send)();
    EXPECT_EQ(journal.Entries(),
              (Words{"shown after 1", "painted after 1", "hidden after 1", "painted after 1"}))
        << direct.name;
  }
}

TEST_F(Commands, EveryWordHasExactlyOneBit) {
  for (int index = 0; index < 16; ++index) commands.cmdWrite_Click(index);
  for (const Direct& direct : kDirect) (commands.*direct.send)();
  const Frames frames = TakeFrames();
  ASSERT_EQ(frames.size(), 16U + kDirect.size());
  for (const int frame : frames) {
    EXPECT_EQ(std::popcount(static_cast<unsigned>(CommandWord(frame))), 1) << std::hex << frame;
  }
}

TEST_F(Commands, BusyTimesMayBeAnyNumber) {
  commands.ShowBusy(std::int16_t{700});
  commands.ShowBusy(2.5F);
  commands.ShowBusy(0.25);
  EXPECT_EQ(clock.Waits(), (Waits{700ms, 2500us, 250us}));
  clock.ClearWaits();
  commands.ShowBusy(0);
  EXPECT_EQ(clock.Waits(), Waits{});
  EXPECT_EQ(journal.Only({"shown", "hidden"}).size(), 8U);
  EXPECT_EQ(journal.Entries().back(), "painted after 0");
}

TEST_F(Commands, ALostSensorGivesOneMessageAndTheLabelIsHiddenAgain) {
  sensor.UnplugAtRequest(1);
  commands.cmdWrite_Click(3);
  EXPECT_EQ(messages.Texts(), Words{"Error Writing SPI"});
  EXPECT_EQ(journal.Entries(),
            (Words{"shown after 0", "painted after 0", "hidden after 0", "painted after 0"}));
}

}  // namespace
}  // namespace kestrel
