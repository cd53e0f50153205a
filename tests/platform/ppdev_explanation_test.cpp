// Why a parallel port cannot be had, on systems as found in the field.
// SPDX-License-Identifier: MIT
// Why a parallel port cannot be had, on systems as they are found in the field.

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "platform/linux/ppdev_port.h"
#include "platform/linux/ppdev_service.h"
#include "support/other_user.h"
#include "support/parport_settings.h"

namespace kestrel {
namespace {

namespace fs = std::filesystem;
using testing::HasSubstr;
using testing::SizeIs;

class PpdevExplanation : public testing::Test {
 protected:
  PpdevExplanation() { fs::permissions(devices.path(), fs::perms(0755)); }

  std::string Explain(std::int16_t address, const fs::path& device = {}) {
    PpdevPort port(
        [=] { return address; },
        {.device = device, .folders = {.devices = devices.path(), .settings = settings.Folder()}});
    EXPECT_FALSE(port.Claim());
    return port.Explanation();
  }

  ParportSettings settings;
  TemporaryFolder devices;
};

TEST_F(PpdevExplanation, NoPortAtAll) {
  EXPECT_THAT(Explain(0x378), HasSubstr("The system has found no parallel port."));
}

TEST_F(PpdevExplanation, NoParallelPortDriver) {
  PpdevPort port([] { return std::int16_t{0x378}; },
                 {.folders = {.devices = "/dev", .settings = "/nowhere/parport"}});
  EXPECT_FALSE(port.Claim());
  EXPECT_THAT(port.Explanation(), HasSubstr("The system has found no parallel port."));
}

TEST_F(PpdevExplanation, AnAddressThatNoPortHas) {
  settings.Add(10, 0x278);
  settings.Add(2, 0x3BC);
  settings.Add(3, 0);
  EXPECT_EQ(Explain(0x378), "No parallel port has the address 0x378. There is " +
                                (devices.path() / "parport2").string() + " at 0x3BC, " +
                                (devices.path() / "parport3").string() + " without an address, " +
                                (devices.path() / "parport10").string() + " at 0x278.");
}

TEST_F(PpdevExplanation, AMissingAddressDoesNotMeanThePortWithoutOne) {
  settings.Add(0, 0);
  devices.Write("parport0", "");
  EXPECT_THAT(Explain(0), HasSubstr("No parallel port has the address 0x0."));
}

TEST_F(PpdevExplanation, TheDeviceFileIsMissing) {
  settings.Add(0, 0x378);
  EXPECT_THAT(Explain(0x378), HasSubstr("parport0 does not exist. The driver may be missing"));
}

TEST_F(PpdevExplanation, NoPermission) {
  settings.Add(0, 0x378);
  fs::permissions(devices.Write("parport0", ""), fs::perms(0));
  const OtherUser ordinary;
  EXPECT_THAT(Explain(0x378), HasSubstr("group lp"));
}

TEST_F(PpdevExplanation, ANamedDeviceThatIsNoParallelPort) {
  EXPECT_THAT(Explain(0x378, devices.Write("notes.txt", "")),
              HasSubstr("notes.txt cannot be used: Inappropriate ioctl for device."));
}

TEST(PpdevService, AnythingButThePortDriversStartIsNotKnown) {
  PpdevPort port([] { return std::int16_t{0x378}; }, {.device = "/nowhere"});
  PpdevService service(port);
  EXPECT_EQ(service.ReadRegistryValue("SYSTEM\\Services\\other", "Start"), "");
  EXPECT_EQ(service.ReadRegistryValue("SYSTEM\\Services\\giveio", "Start"), "");
  EXPECT_NE(service.RunAndWait("temp.bat"), 0);
  EXPECT_THAT(service.Explanation(), HasSubstr("/nowhere does not exist."));
}

}  // namespace
}  // namespace kestrel
