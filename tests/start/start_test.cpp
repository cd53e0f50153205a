// The start of the program step by step, with each interface.
// SPDX-License-Identifier: MIT
#include "start/start.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "app/plot_scale.h"
#include "device/alm_ctrl.h"
#include "device/rec_ctrl.h"
#include "device/rec_info.h"
#include "regmap/register_table.h"
#include "support/given.h"
#include "support/journal.h"
#include "support/recorded_seams.h"
#include "support/reset_device.h"
#include "transport/port_driver.h"

namespace kestrel {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

constexpr const char* kSelectText = "Please select an interface before taking data";

// Notes what the start-up shows, and what had been done by then.
class JournalWindows : public StartWindows {
 public:
  explicit JournalWindows(Journal& journal) : journal_(journal) {}

  void ShowLoading(const std::string& caption, const std::string& text) override {
    EXPECT_EQ(clrRed, 230.0);
    journal_.Note("show [" + caption + "] " + text);
  }
  void SetLoadingText(const std::string& text) override {
    EXPECT_EQ(RegCount, 57);
    EXPECT_EQ(PlotScale, 0.0);
    journal_.Note("text [" + text + "]");
  }
  void HideLoading() override { journal_.Note("hide"); }
  void ShowMainWindow() override {
    EXPECT_EQ(PlotScale, 1.0);
    journal_.Note("main window");
  }

 private:
  Journal& journal_;
};

class Start : public testing::Test, protected RecordedSeams {
 protected:
  Start() {
    ResetDevice();
    clock_.SetSecondsPerIteration(1e-8);
    clock_.SetSecondsSinceMidnight(40000);
  }
  ~Start() override { ResetDevice(); }

  void Config(const std::string& content) {
    files_.contents[files_.WorkingFolder() / "CommPort.cfg"] = content;
  }
  void Run(const StartOptions& options = {.quickStart = true}) { Main(core_, windows_, options); }

  Journal journal_;
  JournalWindows windows_{journal_};
  Core core_{All()};
};

TEST_F(Start, LoadingWindowIsPaintedBeforeTheTrialsBegin) {
  loop_.AtYield(1, [&] {
    journal_.Note("painted");
    EXPECT_THAT(pointer_.Shown(), IsEmpty());
    EXPECT_FALSE(DelayCalibrated);
  });
  Run({});
  EXPECT_TRUE(loop_.ScriptDone());
  EXPECT_THAT(journal_.Entries(),
              ElementsAre("show [Kestrel evaluation program  ] \r\n  LOADING...\r\n\r\n"
                          "  Setting up Delay function\r\n\r\n  3 second trial delay.",
                          "painted", "text [ ]", "hide", "main window"));
  EXPECT_THAT(pointer_.Shown(), ElementsAre("hourglass", "default"));
  EXPECT_EQ(LoopsPer10us, 1000);
}

TEST_F(Start, QuickStartSkipsTheTrialsAndTheLoadingWindow) {
  Run();
  EXPECT_THAT(journal_.Entries(), ElementsAre("text [ ]", "hide", "main window"));
  EXPECT_THAT(pointer_.Shown(), IsEmpty());
  EXPECT_EQ(DelayReport, "Delay calibration was skipped.\r\n");
}

// The waits follow another clock, so the program is usable all the same.
TEST_F(Start, ATimerThatStandsStillGivesOneMessageAndTheProgramStarts) {
  clock_.SetSecondsPerIteration(0);
  boards_.boards[0] = {};
  Config("Interface = 2\n");
  Run({});
  EXPECT_THAT(messages_.Texts(), ElementsAre("CalibrateDelay\nOverflow"));
  EXPECT_THAT(pointer_.Shown(), ElementsAre("hourglass", "default"));
  EXPECT_EQ(journal_.Entries().back(), "main window");
  EXPECT_EQ(InterfaceType, 2);
  EXPECT_TRUE(UsbPresent);
  const auto before = clock_.Monotonic();
  core_.delay.Delay(float{50});
  EXPECT_EQ(clock_.Monotonic() - before, std::chrono::milliseconds{50});
  EXPECT_EQ(messages_.Texts().size(), 1U) << "no second calibration";
}

TEST_F(Start, RegisterTableAndModelsAreThereWhenTheMainWindowShows) {
  Run();
  EXPECT_EQ(RegCount, 57);
  EXPECT_EQ(row::REC_INFO, 57);
  EXPECT_NE(gAlmCtrl, nullptr);
  EXPECT_NE(gRecCtrl, nullptr);
  EXPECT_NE(gRecInfo, nullptr);
}

TEST_F(Start, WithoutConfigFileNoInterfaceIsSelected) {
  Run();
  EXPECT_EQ(InterfaceType, 0);
  EXPECT_THAT(messages_.Texts(), ElementsAre(kSelectText));
  EXPECT_THAT(messages_.Titles(), ElementsAre(""));
  EXPECT_THAT(boards_.Log(), IsEmpty());
  EXPECT_THAT(pins_.Log(), IsEmpty());
  EXPECT_THAT(service_.Log(), IsEmpty());
}

TEST_F(Start, InterfaceThatDoesNotExistSelectsNothing) {
  for (const char* value : {"7", "-1", "3", "0"}) {
    ResetDevice();
    messages_.Clear();
    Config(std::string("Interface = ") + value + "\n");
    Run();
    EXPECT_EQ(InterfaceType, 0) << value;
    EXPECT_THAT(messages_.Texts(), ElementsAre(kSelectText)) << value;
  }
}

TEST_F(Start, ParallelPortIsEnabledAndPutIntoItsIdleState) {
  service_.registry["SYSTEM\\CurrentControlSet\\Services\\giveio|Start"] = "2";
  Config("Interface = 1\nPort Address = 888\nProductNumber = 31407\n");
  Run();
  EXPECT_EQ(InterfaceType, 1);
  EXPECT_EQ(PortAddress, 0x378);
  EXPECT_EQ(ProductNumber, kProduct31407);
  EXPECT_TRUE(PortReady);
  EXPECT_EQ(service_.Log().size(), 1U);
  EXPECT_THAT(pins_.Log(), ElementsAre("giveio", "status=64", "wait 100", "0"));
  EXPECT_THAT(messages_.Texts(), IsEmpty());
}

TEST_F(Start, ParallelPortWithoutItsDriverIsStillTried) {
  Config("Interface = 1\nPort Address = 888\n");
  Run();
  EXPECT_THAT(messages_.Texts(), ElementsAre("The required I/O drivers could not be installed."));
  EXPECT_EQ(InterfaceType, 1);
  EXPECT_TRUE(PortReady);
  EXPECT_THAT(pins_.Log(), ElementsAre("giveio", "status=64", "wait 100", "0"));
}

// Where the user may not write beside the program, the installer's batch file cannot be written.
TEST_F(Start, AProgramFolderThatCannotBeWrittenIsToldAndTheProgramStarts) {
  service_.batchFault = "Access denied";
  Config("Interface = 1\nPort Address = 888\n");
  Run();
  EXPECT_THAT(messages_.Texts(), ElementsAre("The required I/O drivers could not be installed."));
  EXPECT_THAT(messages_.Titles(), ElementsAre("Error"));
  EXPECT_THAT(messages_.explanations,
              ElementsAre("C:\\Program Files\\Kestrel\\temp.bat: Access denied"));
  EXPECT_EQ(journal_.Entries().back(), "main window");
  EXPECT_EQ(InterfaceType, 1);
  EXPECT_TRUE(PortReady);
  EXPECT_THAT(pins_.Log(), ElementsAre("giveio", "status=64", "wait 100", "0"));
}

TEST_F(Start, AdapterGetsItsBitsThenItsSetup) {
  boards_.boards[0] = {};
  Config("Interface = 2\n");
  Run();
  EXPECT_EQ(InterfaceType, 2);
  EXPECT_TRUE(UsbPresent);
  EXPECT_THAT(boards_.Sent(), ElementsAre("00", "0C 78", "0B 19"));
  EXPECT_THAT(messages_.Texts(), IsEmpty());
}

TEST_F(Start, AdapterThatIsNotThereLeavesNoInterface) {
  Config("Interface = 2\n");
  Run();
  EXPECT_EQ(InterfaceType, 0);
  EXPECT_FALSE(UsbPresent);
  EXPECT_THAT(messages_.Texts(), ElementsAre("No USB Buffers Found, Please Verify Setup."));
}

// Requests 1 to 12 find the board among four names; 13 opens it, 14 is the block of the bits.
TEST_F(Start, AdapterThatRefusesTheFirstSettingIsNotSentTheSecond) {
  boards_.boards[0] = {};
  Config("Interface = 2\n");
  boards_.FailAt(14);
  Run();
  EXPECT_FALSE(UsbPresent);
  EXPECT_THAT(boards_.Sent(), ElementsAre("00", "0C 78"));
  EXPECT_THAT(messages_.Texts(), ElementsAre("Error Setting SPI Bits"));
}

TEST_F(Start, InterfaceToBeginWithCountsOnlyWithoutConfigFile) {
  boards_.boards[0] = {};
  Run({.quickStart = true, .interfaceWithoutConfig = kUsbAdapter});
  EXPECT_EQ(InterfaceType, 2);
  ResetDevice();
  Config("ProductNumber = 5\n");
  Run({.quickStart = true, .interfaceWithoutConfig = kUsbAdapter});
  EXPECT_EQ(InterfaceType, 0);
}

TEST_F(Start, DefaultsAreSetBeforeTheConfigFileIsRead) {
  Given(InterfaceType) = 2;
  Given(StopSpiLoop) = false;
  Given(UsbCsPerWord) = false;
  Given(UsbSpiDelay) = 4;
  Given(UsbSpiBits) = 1;
  Given(UsbSpiSetupValue) = 1;
  Given(PortReady) = true;
  Config("Port Address = 632\n");
  Run();
  EXPECT_EQ(InterfaceType, 0);
  EXPECT_EQ(PortAddress, 632);
  EXPECT_TRUE(StopSpiLoop);
  EXPECT_TRUE(UsbCsPerWord);
  EXPECT_EQ(UsbSpiDelay, 1);
  EXPECT_EQ(UsbSpiBits, 120);
  EXPECT_EQ(UsbSpiSetupValue, 25);
  EXPECT_FALSE(PortReady);
}

}  // namespace
}  // namespace kestrel
