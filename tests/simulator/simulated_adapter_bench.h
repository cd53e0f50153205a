// The simulated driver with its requests written short.
// SPDX-License-Identifier: MIT
#pragma once

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "simulator/sensor_fixture.h"
#include "simulator/simulated_adapter.h"

namespace kestrel {

using ::testing::ElementsAre;

using Bytes = std::vector<std::uint8_t>;

class AdapterTest : public ::testing::Test {
 protected:
  UsbDriver::Handle Open(const std::string& name = "Ezusb-0") {
    return adapter_.CreateFile("\\\\.\\" + name, 0x40000000, 2, 3);
  }
  // With the settings that transfers need.
  UsbDriver::Handle OpenSet() {
    const auto device = Open();
    EXPECT_TRUE(Send(device, {12, 120}));
    EXPECT_TRUE(Send(device, {11, 25}));
    return device;
  }
  bool Request(UsbDriver::Handle device, std::uint32_t code, const Bytes& input, Bytes& output) {
    return adapter_.DeviceIoControl(device, code, input, output, returned_);
  }
  bool Send(UsbDriver::Handle device, Bytes block) {
    return Request(device, 0x222051, {0, 0, 0, 0}, block);
  }
  // The answer to a block; empty when the request fails.
  Bytes Fetch(UsbDriver::Handle device, std::size_t size) {
    Bytes answer(size, 0xEE);
    if (!Request(device, 0x222051, {1, 0, 0, 0}, answer)) return {};
    answer.resize(returned_);
    return answer;
  }
  std::string StringOf(UsbDriver::Handle device, std::uint8_t index) {
    Bytes descriptor(4);
    if (!Request(device, 0x222044, {index, 0, 0, 0, 0}, descriptor)) return "failed";
    EXPECT_EQ(returned_, 4);
    descriptor.resize(descriptor[0]);
    if (!Request(device, 0x222044, {index, 0, 0, 0, 0}, descriptor)) return "failed";
    EXPECT_EQ(returned_, descriptor.size());
    EXPECT_EQ(descriptor[1], 3);
    std::string text;
    for (std::size_t at = 2; at + 1 < descriptor.size(); at += 2) {
      text += static_cast<char>(descriptor[at]);
      EXPECT_EQ(descriptor[at + 1], 0);
    }
    return text;
  }

  Bench bench_;
  SimulatedAdapter adapter_{bench_.sensor};
  std::uint32_t returned_ = 0;
};

}  // namespace kestrel
