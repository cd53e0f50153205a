// An address typed, the port prepared and remembered.
// SPDX-License-Identifier: MIT
#include "transport/port_choice.h"
#include "support/given.h"

#include <algorithm>

#include "app/system_name.h"
#include "port_fixture.h"
#include "support/map_driver_service.h"
#include "support/memory_files.h"
#include "support/recording_boards.h"
#include "support/recording_messages.h"

namespace kestrel {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

constexpr const char* kStart = "SYSTEM\\CurrentControlSet\\Services\\giveio|Start";
constexpr const char* kExample = "\nThe first port of most computers is 378.";

class ParallelPortChoice : public PortTest {
 protected:
  ParallelPortChoice() {
    ResetSystemName();
    Given(InterfaceType) = kNoInterface;
    Given(PortAddress) = 0;
    Given(ProductNumber) = 31407;
    service_.registry[kStart] = "2";
  }
  ~ParallelPortChoice() override { ResetSystemName(); }

  std::string Config() { return files_.contents[files_.WorkingFolder() / "CommPort.cfg"]; }

  // Nothing but the message has happened.
  void ExpectRefused(const std::string& text, const std::string& message) {
    SCOPED_TRACE(text);
    messages_.Clear();
    EXPECT_FALSE(choice_.cmdOK_Click(text));
    EXPECT_THAT(messages_.Texts(), ElementsAre(message));
    EXPECT_EQ(PortAddress, 0);
    EXPECT_EQ(InterfaceType, kNoInterface);
    EXPECT_FALSE(PortReady);
    EXPECT_THAT(pins_.Log(), IsEmpty());
    EXPECT_THAT(service_.Log(), IsEmpty());
    EXPECT_TRUE(files_.contents.empty());
  }

  MapDriverService service_;
  MemoryFiles files_;
  RecordingMessages messages_;
  RecordingBoards boards_;
  UsbAdapter usb_{boards_, messages_};
  RegisterAccess registers_{usb_, port_, delay_};
  PortChoice choice_{service_, pins_, port_, registers_, files_, messages_};
};

TEST_F(ParallelPortChoice, TakesTheAddressPreparesThePortAndRemembersIt) {
  EXPECT_TRUE(choice_.cmdOK_Click("378"));
  EXPECT_EQ(PortAddress, 888);
  EXPECT_EQ(PortChoice::AddressText(), "378");
  EXPECT_EQ(InterfaceType, kParallelPort);
  EXPECT_TRUE(PortReady);
  EXPECT_THAT(service_.Log(), ElementsAre(std::string("read ") + kStart));
  EXPECT_THAT(pins_.Log(), ElementsAre("giveio", "status=64", "wait 100", "0"));
  EXPECT_EQ(Config(), "Interface = 1\nPort Address = 888\nProductNumber = 31407\n");
  EXPECT_THAT(messages_.Texts(), IsEmpty());
}

TEST_F(ParallelPortChoice, APortThatIsReadyIsNotPreparedAgain) {
  Given(PortReady) = true;
  EXPECT_TRUE(choice_.cmdOK_Click("278"));
  EXPECT_EQ(PortAddress, 0x278);
  EXPECT_EQ(InterfaceType, kParallelPort);
  EXPECT_THAT(service_.Log(), IsEmpty());
  EXPECT_THAT(pins_.Log(), IsEmpty());
  EXPECT_EQ(Config(), "Interface = 1\nPort Address = 632\nProductNumber = 31407\n");
}

TEST_F(ParallelPortChoice, OnlySystemsOfTheNtFamilyNeedTheDriver) {
  struct Row {
    const char* name;
    bool prepared;
  };
  for (const Row& row :
       {Row{"Win95", false}, Row{"Win98", false}, Row{"WinNT", true}, Row{"WinXP", true}}) {
    Given(SystemName) = row.name;
    Given(PortReady) = false;
    pins_.ClearLog();
    EXPECT_TRUE(choice_.cmdOK_Click("378"));
    EXPECT_EQ(PortReady, row.prepared) << row.name;
    EXPECT_EQ(pins_.Log().empty(), !row.prepared) << row.name;
    EXPECT_EQ(InterfaceType, kParallelPort) << row.name;
  }
}

TEST_F(ParallelPortChoice, ADriverThatCannotBeInstalledIsToldAndThePortStillChosen) {
  service_.registry.clear();
  EXPECT_TRUE(choice_.cmdOK_Click("378"));
  EXPECT_THAT(messages_.Texts(), ElementsAre("The required I/O drivers could not be installed."));
  EXPECT_THAT(messages_.Titles(), ElementsAre("Error"));
  EXPECT_TRUE(PortReady);
}

TEST_F(ParallelPortChoice, AProgramFolderThatCannotBeWrittenIsToldAndThePortStillChosen) {
  service_.registry.clear();
  service_.batchFault = "Access denied";
  EXPECT_TRUE(choice_.cmdOK_Click("378"));
  EXPECT_THAT(messages_.Texts(), ElementsAre("The required I/O drivers could not be installed."));
  EXPECT_THAT(messages_.Titles(), ElementsAre("Error"));
  EXPECT_THAT(messages_.explanations,
              ElementsAre("C:\\Program Files\\Kestrel\\temp.bat: Access denied"));
  EXPECT_TRUE(PortReady);
  EXPECT_EQ(Config(), "Interface = 1\nPort Address = 888\nProductNumber = 31407\n");
}

// The driver is there, and yet the ports cannot be had: its libraries cannot be loaded.
TEST_F(ParallelPortChoice, PortsThatCannotBeHadAreToldOnceWithTheReason) {
  service_.explanation = "win95io.dll was not found.";
  pins_.held = false;
  EXPECT_TRUE(choice_.cmdOK_Click("378"));
  EXPECT_THAT(messages_.Texts(), ElementsAre("The required I/O drivers could not be installed."));
  EXPECT_THAT(messages_.Titles(), ElementsAre("Error"));
  EXPECT_THAT(messages_.explanations, ElementsAre("win95io.dll was not found."));
  EXPECT_TRUE(PortReady);
}

TEST_F(ParallelPortChoice, ADriverThatCannotBeInstalledAndLibrariesThatAreMissingAreToldTogether) {
  service_.registry.clear();
  service_.batchFault = "Access denied";
  service_.explanation = "win95io.dll was not found.";
  EXPECT_TRUE(choice_.cmdOK_Click("378"));
  EXPECT_THAT(messages_.explanations,
              ElementsAre("C:\\Program Files\\Kestrel\\temp.bat: Access denied\n"
                          "win95io.dll was not found."));
}

TEST_F(ParallelPortChoice, AnAddressAboveTheSignBitKeepsItsDigits) {
  Given(PortReady) = true;
  EXPECT_TRUE(choice_.cmdOK_Click("fff8"));
  EXPECT_EQ(PortAddress, -8);
  EXPECT_EQ(PortChoice::AddressText(), "FFF8");
  EXPECT_EQ(Config(), "Interface = 1\nPort Address = -8\nProductNumber = 31407\n");
}

TEST_F(ParallelPortChoice, WrongTextsAreNamedAndChangeNothing) {
  for (const char* text : {"3G8", "-378", "LPT1", "37.8"}) {
    ExpectRefused(text, "Port address: \"" + std::string(text) + "\" is not a hexadecimal number." +
                            kExample);
  }
  ExpectRefused(
      "10000", std::string("Port address: \"10000\" does not fit 16 bits (0 to FFFF).") + kExample);
}

TEST_F(ParallelPortChoice, AnEmptyTextIsExplainedAndChangesNothing) {
  for (const char* text : {"", "   "}) {
    ExpectRefused(text, std::string("Port address: enter it in hexadecimal digits.") + kExample);
  }
}

TEST_F(ParallelPortChoice, AConfigFileThatCannotBeWrittenDoesNotHinderTheChoice) {
  files_.failure = "read-only";
  EXPECT_TRUE(choice_.cmdOK_Click("378"));
  EXPECT_EQ(InterfaceType, kParallelPort);
  EXPECT_THAT(messages_.Texts(), IsEmpty());
}

}  // namespace
}  // namespace kestrel
