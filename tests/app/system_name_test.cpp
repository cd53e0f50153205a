// Versions of the system and the names they get.
// SPDX-License-Identifier: MIT
#include "app/system_name.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "support/given.h"
#include "support/recording_messages.h"

namespace kestrel {
namespace {

using Family = SystemVersion::Family;

class SystemNames : public testing::Test {
 protected:
  SystemNames() { ResetSystemName(); }
  ~SystemNames() override { ResetSystemName(); }

  RecordingMessages messages_;
};

TEST_F(SystemNames, EveryVersionHasItsClass) {
  struct Row {
    SystemVersion version;
    const char* name;
  };
  for (const Row& row :
       {Row{{Family::Windows9x, 4, 0}, "Win95"}, Row{{Family::Windows9x, 4, 10}, "Win98"},
        Row{{Family::Windows9x, 4, 90}, "Win98"}, Row{{Family::WindowsNt, 3, 51}, "WinNT"},
        Row{{Family::WindowsNt, 4, 0}, "WinNT"}, Row{{Family::WindowsNt, 5, 0}, "WinNT"},
        Row{{Family::WindowsNt, 5, 1}, "WinXP"}, Row{{Family::WindowsNt, 5, 2}, "WinXP"},
        Row{{Family::WindowsNt, 6, 1}, "WinXP"}, Row{{Family::WindowsNt, 10, 0}, "WinXP"},
        Row{{Family::Other, 0, 0}, "WinNT"}, Row{{Family::Other, 6, 8}, "WinNT"}}) {
    iniSystem2(row.version);
    EXPECT_EQ(SystemName, row.name) << row.version.major << "." << row.version.minor;
  }
}

TEST_F(SystemNames, ASystemThatTellsNothingCountsAsNt) {
  EXPECT_EQ(SystemName, "WinNT");
  iniSystem2({Family::Windows9x, 4, 0});
  ResetSystemName();
  EXPECT_EQ(SystemName, "WinNT");
}

TEST_F(SystemNames, OnlyTheOldestHasNoUsb) {
  for (const char* name : {"Win98", "WinNT", "WinXP"}) {
    Given(SystemName) = name;
    EXPECT_TRUE(UsbOffered(messages_)) << name;
  }
  EXPECT_TRUE(messages_.Texts().empty());
  Given(SystemName) = "Win95";
  EXPECT_FALSE(UsbOffered(messages_));
  EXPECT_THAT(messages_.Texts(), testing::ElementsAre("USB not available for Windows95"));
}

}  // namespace
}  // namespace kestrel
