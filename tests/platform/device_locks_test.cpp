// Tests of the locks by which programs leave each other's devices alone, with real processes.
// SPDX-License-Identifier: MIT
#include "platform/device_locks.h"

#include <gtest/gtest.h>
#include <sys/wait.h>
#include <unistd.h>

#include <array>
#include <csignal>

#include "platform/locked_usb_driver.h"
#include "support/temporary_folder.h"

namespace kestrel {
namespace {

// A process that has a device until it is killed.
class OtherProgram {
 public:
  OtherProgram(const std::filesystem::path& folder, const std::string& device) {
    std::array<int, 2> ready{};
    if (pipe(ready.data()) != 0) throw std::runtime_error("pipe");
    child_ = fork();
    if (child_ == 0) {
      DeviceLocks locks({folder}, [] { return "kestrel-cli, bench Hall 3"; });
      const char taken = locks.Take(device) ? 'y' : 'n';
      if (write(ready[1], &taken, 1) != 1) _exit(1);
      for (;;) pause();
    }
    char taken = 'n';
    if (read(ready[0], &taken, 1) != 1 || taken != 'y') throw std::runtime_error("not taken");
    close(ready[0]);
    close(ready[1]);
  }
  ~OtherProgram() { Kill(); }
  OtherProgram(const OtherProgram&) = delete;
  OtherProgram& operator=(const OtherProgram&) = delete;
  void Kill() {
    if (child_ <= 0) return;
    kill(child_, SIGKILL);
    waitpid(child_, nullptr, 0);
    child_ = 0;
  }
  [[nodiscard]] pid_t Process() const { return child_; }

 private:
  pid_t child_ = 0;
};

class DeviceLocksTest : public testing::Test {
 protected:
  TemporaryFolder folder_;
  DeviceLocks locks_{{folder_.path()}, [] { return "kestrel"; }};
};

TEST_F(DeviceLocksTest, ADeviceOfAnotherProgramIsRefusedAndItsHolderNamed) {
  OtherProgram other(folder_.path(), "usb-1-2.3");
  EXPECT_FALSE(locks_.Take("usb-1-2.3"));
  EXPECT_EQ(locks_.Holder("usb-1-2.3"),
            "kestrel-cli, bench Hall 3 (process " + std::to_string(other.Process()) + ")");
  EXPECT_TRUE(locks_.Take("usb-1-2.4"));
}

TEST_F(DeviceLocksTest, ADeviceIsFreeAgainWhenItsHolderWasKilled) {
  OtherProgram other(folder_.path(), "usb-1-2");
  EXPECT_FALSE(locks_.Take("usb-1-2"));
  other.Kill();
  EXPECT_TRUE(locks_.Take("usb-1-2"));
  EXPECT_TRUE(locks_.Take("usb-1-2"));
}

TEST_F(DeviceLocksTest, WhereNoFileCanBeMadeNothingIsLocked) {
  DeviceLocks nowhere({folder_.path() / "none"}, [] { return "kestrel"; });
  EXPECT_TRUE(nowhere.Take("usb-1-2"));
}

TEST_F(DeviceLocksTest, ALinkInTheFoldersPlaceIsNotFollowed) {
  const auto victim = folder_.Write("victim", "precious");
  std::filesystem::create_symlink(victim, folder_.path() / "kestrel-usb-1-2.lock");
  EXPECT_TRUE(locks_.Take("usb-1-2"));
  EXPECT_EQ(folder_.Content("victim"), "precious");
}

TEST_F(DeviceLocksTest, NamesOfDevicesAreNamesOfFiles) {
  EXPECT_TRUE(locks_.Take("../../dev/parport0 x"));
  EXPECT_EQ(folder_.Names(), std::vector<std::string>{"kestrel-.._.._dev_parport0_x.lock"});
}

// Boards that open and do whatever is asked.
class OpenBoards : public UsbDriver {
 public:
  Handle CreateFile(const std::string& /*path*/, std::uint32_t /*access*/, std::uint32_t /*share*/,
                    std::uint32_t /*creation*/) override {
    return ++last_;
  }
  bool DeviceIoControl(Handle /*device*/, std::uint32_t /*code*/,
                       std::span<const std::uint8_t> /*input*/, std::span<std::uint8_t> /*output*/,
                       std::uint32_t& returned) override {
    returned = 0;
    return true;
  }
  void CloseHandle(Handle /*device*/) override {}
  bool Watch(std::function<void()> told) override {
    changed = std::move(told);
    return true;
  }
  std::int32_t LastError() override { return 0; }

  std::function<void()> changed;

 private:
  Handle last_ = 0;
};

class LockedUsbDriverTest : public DeviceLocksTest {
 protected:
  // Whether another program could have the board.
  [[nodiscard]] bool IsFree(const std::string& place) const {
    DeviceLocks others({folder_.path()}, [] { return "another"; });
    return others.Take(place);
  }
  UsbDriver::Handle Open(int number) {
    return driver_.CreateFile("\\\\.\\Ezusb-" + std::to_string(number), 0, 0, 0);
  }
  void Use(int number) {
    const auto handle = Open(number);
    std::uint32_t returned = 0;
    EXPECT_TRUE(driver_.DeviceIoControl(handle, kBulkTransfer, {}, {}, returned));
    driver_.CloseHandle(handle);
  }

  OpenBoards boards_;
  std::vector<std::string> said_;
  LockedUsbDriver driver_{boards_, locks_, [](const std::string& name) { return "usb-" + name; },
                          [this](const std::string& line) { said_.push_back(line); }};
};

TEST_F(LockedUsbDriverTest, ABoardThatIsOnlyLookedAtIsLetGo) {
  const auto handle = Open(0);
  EXPECT_FALSE(IsFree("usb-Ezusb-0"));
  std::uint32_t returned = 0;
  EXPECT_TRUE(driver_.DeviceIoControl(handle, kGetDeviceDescriptor, {}, {}, returned));
  driver_.CloseHandle(handle);
  EXPECT_TRUE(IsFree("usb-Ezusb-0"));
}

TEST_F(LockedUsbDriverTest, ABoardThatIsUsedStaysTakenUntilAnotherIsUsed) {
  Use(0);
  EXPECT_FALSE(IsFree("usb-Ezusb-0"));
  EXPECT_TRUE(IsFree("usb-Ezusb-1"));
  Use(1);
  EXPECT_TRUE(IsFree("usb-Ezusb-0"));
  EXPECT_FALSE(IsFree("usb-Ezusb-1"));
}

TEST_F(LockedUsbDriverTest, ABoardThatIsLetGoIsFreeUntilItIsUsedAgain) {
  Use(0);
  driver_.LetGo();
  EXPECT_TRUE(IsFree("usb-Ezusb-0"));
  Use(0);
  EXPECT_FALSE(IsFree("usb-Ezusb-0"));
}

TEST_F(LockedUsbDriverTest, BoardsThatComeAndGoAreToldToWhoWatches) {
  int told = 0;
  EXPECT_TRUE(driver_.Watch([&told] { ++told; }));
  ASSERT_TRUE(boards_.changed);
  boards_.changed();
  EXPECT_EQ(told, 1);
}

TEST_F(LockedUsbDriverTest, ABoardThatIsOpenIsLetGoWhenItIsClosed) {
  Use(0);
  const auto handle = Open(0);
  driver_.LetGo();
  EXPECT_FALSE(IsFree("usb-Ezusb-0"));
  driver_.CloseHandle(handle);
  EXPECT_TRUE(IsFree("usb-Ezusb-0"));
}

TEST_F(LockedUsbDriverTest, ABoardOfAnotherProgramIsNotOpened) {
  OtherProgram other(folder_.path(), "usb-Ezusb-0");
  EXPECT_LT(Open(0), 1);
  EXPECT_EQ(driver_.LastError(), kUsbBusyElsewhere);
  EXPECT_LT(Open(0), 1);
  EXPECT_EQ(said_,
            std::vector<std::string>{"Ezusb-0 is in use by kestrel-cli, bench Hall 3 (process " +
                                     std::to_string(other.Process()) + ")."});
  EXPECT_GE(Open(1), 1);
}

}  // namespace
}  // namespace kestrel
