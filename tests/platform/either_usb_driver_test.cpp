// Tests of two drivers' boards under one set of names.
// SPDX-License-Identifier: MIT
#include "platform/either_usb_driver.h"

#include <gmock/gmock.h>

#include <array>
#include <set>

namespace kestrel {
namespace {

using testing::ElementsAre;

// Boards that say which driver they were reached by, and whose handles begin at 1.
class NamedDriver : public UsbDriver {
 public:
  explicit NamedDriver(std::uint8_t name) : name_(name) {}

  std::set<std::string> attached;
  std::int32_t fault = 0;  // of every request
  bool tellsOfChanges = false;
  std::vector<Handle> closed;
  std::function<void()> changed;

  Handle CreateFile(const std::string& path, std::uint32_t access, std::uint32_t share,
                    std::uint32_t creation) override {
    EXPECT_EQ(access, 0x40000000U);
    EXPECT_EQ(share, 2U);
    EXPECT_EQ(creation, 3U);
    if (attached.contains(path.substr(4))) return ++last_;
    lastError_ = kUsbNotAttached;
    return -1;
  }
  bool DeviceIoControl(Handle device, std::uint32_t code, std::span<const std::uint8_t> input,
                       std::span<std::uint8_t> output, std::uint32_t& returned) override {
    lastError_ = fault;
    if (fault != 0) return false;
    output[0] = name_;
    output[1] = static_cast<std::uint8_t>(device);
    output[2] = input[0];
    returned = code == kBulkTransfer ? 3 : 0;
    return true;
  }
  void CloseHandle(Handle device) override { closed.push_back(device); }
  bool Attached(const std::string& name) override { return attached.contains(name); }
  bool Watch(std::function<void()> told) override {
    changed = std::move(told);
    return tellsOfChanges;
  }
  std::uint32_t Plugging(Handle /*device*/) override { return 1; }
  std::int32_t LastError() override { return lastError_; }

 private:
  std::uint8_t name_;
  Handle last_ = 0;
  std::int32_t lastError_ = 0;
};

class EitherUsbDriverTest : public testing::Test {
 protected:
  UsbDriver::Handle Open(const std::string& name) {
    return either_.CreateFile("\\\\.\\" + name, 0x40000000, 2, 3);
  }
  std::array<std::uint8_t, 3> Asked(UsbDriver::Handle board) {
    constexpr std::array<std::uint8_t, 1> kRequest{7};
    std::array<std::uint8_t, 3> answer{};
    std::uint32_t returned = 0;
    EXPECT_TRUE(either_.DeviceIoControl(board, kBulkTransfer, kRequest, answer, returned));
    EXPECT_EQ(returned, 3U);
    return answer;
  }

  NamedDriver own_{'o'};
  NamedDriver generic_{'g'};
  EitherUsbDriver either_{own_, generic_};
};

TEST_F(EitherUsbDriverTest, ANameLeadsToTheOwnDriverWhereABoardStandsBehindItThere) {
  own_.attached = {"Ezusb-0"};
  generic_.attached = {"Ezusb-0", "Ezusb-1"};
  const auto first = Open("Ezusb-0");
  const auto second = Open("Ezusb-1");
  EXPECT_NE(first, second);
  EXPECT_THAT(Asked(first), ElementsAre('o', 1, 7));
  EXPECT_THAT(Asked(second), ElementsAre('g', 1, 7));
  EXPECT_TRUE(either_.Attached("Ezusb-0"));
  EXPECT_TRUE(either_.Attached("Ezusb-1"));
  EXPECT_FALSE(either_.Attached("Ezusb-2"));
}

TEST_F(EitherUsbDriverTest, TheChoiceIsMadeAnewAtEachOpening) {
  generic_.attached = {"Ezusb-0"};
  const auto before = Open("Ezusb-0");
  const std::uint32_t plugging = either_.Plugging(before);
  own_.attached = {"Ezusb-0"};
  const auto after = Open("Ezusb-0");
  EXPECT_THAT(Asked(before), ElementsAre('g', 1, 7)) << "what is open stays where it is";
  EXPECT_THAT(Asked(after), ElementsAre('o', 1, 7));
  EXPECT_NE(either_.Plugging(after), plugging);
  EXPECT_NE(plugging, 0U);
  either_.CloseHandle(before);
  EXPECT_THAT(generic_.closed, ElementsAre(1));
  EXPECT_TRUE(own_.closed.empty());
  EXPECT_EQ(either_.Plugging(before), 0U);
}

TEST_F(EitherUsbDriverTest, AFaultIsThatOfTheDriverThatWasAsked) {
  EXPECT_LT(Open("Ezusb-0"), 1);
  EXPECT_EQ(either_.LastError(), kUsbNotAttached);
  generic_.attached = {"Ezusb-0"};
  const auto board = Open("Ezusb-0");
  generic_.fault = 31;
  own_.fault = 121;
  std::array<std::uint8_t, 3> answer{};
  std::uint32_t returned = 0;
  EXPECT_FALSE(either_.DeviceIoControl(board, kBulkTransfer, answer, answer, returned));
  EXPECT_EQ(either_.LastError(), 31);
}

TEST_F(EitherUsbDriverTest, WhatIsNotOpenIsRefused) {
  std::array<std::uint8_t, 3> answer{};
  std::uint32_t returned = 5;
  EXPECT_FALSE(either_.DeviceIoControl(4, kBulkTransfer, answer, answer, returned));
  EXPECT_EQ(returned, 0U);
  EXPECT_EQ(either_.LastError(), 6);
  either_.CloseHandle(4);
  EXPECT_TRUE(own_.closed.empty());
  EXPECT_TRUE(generic_.closed.empty());
}

TEST_F(EitherUsbDriverTest, ChangesAreToldOfBothDriversOrHaveToBeAskedFor) {
  int told = 0;
  generic_.tellsOfChanges = true;
  EXPECT_FALSE(either_.Watch([&told] { ++told; }));
  own_.tellsOfChanges = true;
  EXPECT_TRUE(either_.Watch([&told] { ++told; }));
  own_.changed();
  generic_.changed();
  EXPECT_EQ(told, 2);
  EXPECT_TRUE(either_.Watch({}));
  EXPECT_FALSE(own_.changed);
  EXPECT_FALSE(generic_.changed);
}

}  // namespace
}  // namespace kestrel
