// The port driver's calls, served by a mock device.
// SPDX-License-Identifier: MIT
#include "hardware/mock_parallel_port.h"

#include <linux/ppdev.h>
#include <sys/ioctl.h>
#include <unistd.h>

#include <cerrno>
#include <cstdio>

namespace kestrel {
namespace {

constexpr std::int16_t kData = SimulatedPort::kFirstPort;
constexpr std::int16_t kStatus = kData + 1;

std::string Node(MockTestbed& testbed, int number) {
  const std::string name = "parport" + std::to_string(number);
  testbed.Add("P: /devices/virtual/ppdev/" + name + "\nN: " + name +
              "\nE: SUBSYSTEM=ppdev\nE: DEVNAME=/dev/" + name +
              "\nE: MAJOR=99\nE: MINOR=" + std::to_string(number) + "\n");
  return "/dev/" + name;
}

}  // namespace

MockParallelPort::MockParallelPort(MockTestbed& testbed, int number, SimulatedSensor& sensor)
    : pins_(sensor),
      node_(testbed, Node(testbed, number),
            [this](unsigned long request, auto* argument) { return Answer(request, argument); }) {}

long MockParallelPort::Answer(unsigned long request, UMockdevIoctlData* argument) {
  ++requests;
  switch (request) {
    case PPEXCL:
      alone_ = true;
      return 0;
    case PPCLAIM:
      if (claimError != 0) return -claimError;
      if (claimed_) return -EINVAL;
      if (alone_ && refuseAlone) {
        alone_ = false;  // the program opens the port anew for its next try
        return -ENXIO;
      }
      while (holdClaims) usleep(1000);
      claimed_ = true;
      ++claims;
      return 0;
    case PPRELEASE:
      if (!claimed_) return -EINVAL;
      claimed_ = alone_ = false;
      ++releases;
      return 0;
    case PPWDATA:
      if (!claimed_) return -EPERM;
      if (AccessFails()) return -EIO;
      data_ = *Resolve(argument, 0, 1)->data;
      pins_.vbOut(kData, static_cast<std::int16_t>(data_));
      Record();
      return 0;
    case PPRSTATUS:
      if (!claimed_) return -EPERM;
      if (AccessFails()) return -EIO;
      *Resolve(argument, 0, 1)->data = static_cast<std::uint8_t>(pins_.vbInp(kStatus));
      Record();
      return 0;
    default:
      std::fprintf(stderr, "the mock port does not know request %#lx\n", request);
      return -ENOTTY;
  }
}

void MockParallelPort::Record() {
  trace.push_back({data_, static_cast<unsigned>(pins_.vbInp(kStatus))});
}

}  // namespace kestrel
