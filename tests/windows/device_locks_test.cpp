// Devices and names that one program has at a time.
// SPDX-License-Identifier: MIT
#include "platform/device_locks.h"

#include <gtest/gtest.h>
#include <windows.h>

#include <system_error>

namespace kestrel {
namespace {

namespace fs = std::filesystem;

class WindowsLocks : public testing::Test {
 protected:
  WindowsLocks() { fs::remove_all(folder_); }
  ~WindowsLocks() override {
    std::error_code ignored;
    fs::remove_all(folder_, ignored);
  }
  [[nodiscard]] DeviceLocks Program(const std::string& name) const {
    return {{folder_}, [name] { return name; }};
  }

  const fs::path folder_ = fs::temp_directory_path() / L"kestrel locks \u00FC";
};

TEST_F(WindowsLocks, ADeviceIsOneProgramsAndTheOthersLearnWhose) {
  DeviceLocks first = Program("kestrel-cli, bench Hall 3");
  DeviceLocks second = Program("kestrel");
  EXPECT_TRUE(first.Take("usb-1-2.3"));
  EXPECT_TRUE(first.Take("usb-1-2.3"));
  EXPECT_FALSE(second.Take("usb-1-2.3"));
  EXPECT_TRUE(second.Take("usb-1-4"));
  EXPECT_EQ(second.Holder("usb-1-2.3"),
            "kestrel-cli, bench Hall 3 (process " + std::to_string(GetCurrentProcessId()) + ")");
  EXPECT_EQ(second.Holder("usb-1-9"), "another program");
}

TEST_F(WindowsLocks, WhatIsGivenBackIsFreeAndLeavesNoFile) {
  DeviceLocks second = Program("kestrel");
  {
    DeviceLocks first = Program("kestrel-cli");
    EXPECT_TRUE(first.Take("usb-1-2"));
    EXPECT_FALSE(second.Take("usb-1-2"));
    first.Release("usb-1-2");
    EXPECT_TRUE(second.Take("usb-1-2"));
    second.Release("usb-1-2");
    EXPECT_TRUE(first.Take("usb-1-2"));
  }
  EXPECT_TRUE(fs::is_empty(folder_));
  EXPECT_TRUE(second.Take("usb-1-2")) << "its holder is gone";
}

TEST_F(WindowsLocks, WhereNoFileCanBeMadeNothingIsLocked) {
  DeviceLocks locks({L"Z:\\no such folder?"}, [] { return "kestrel"; });
  EXPECT_TRUE(locks.Take("usb-1-2"));
}

}  // namespace
}  // namespace kestrel
