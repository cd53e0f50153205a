// The port-access driver installed, left alone or missed.
// SPDX-License-Identifier: MIT
#include "transport/port_driver.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "support/map_driver_service.h"
#include "support/recording_messages.h"

namespace kestrel {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

const std::string kStart = "SYSTEM\\CurrentControlSet\\Services\\giveio|Start";

class PortDriver : public testing::Test {
 protected:
  MapDriverService service_;
  RecordingMessages messages_;
};

TEST_F(PortDriver, InstalledDriverIsLeftAlone) {
  service_.registry[kStart] = "2";
  SetupGiveIO(service_, messages_);
  EXPECT_THAT(service_.Log(), ElementsAre("read " + kStart));
  EXPECT_THAT(messages_.Texts(), IsEmpty());
}

TEST_F(PortDriver, MissingDriverIsInstalledAndSetToStartWithTheSystem) {
  service_.whileRunning = [&] { service_.registry[kStart] = "3"; };
  SetupGiveIO(service_, messages_);
  EXPECT_THAT(service_.Log(),
              ElementsAre("read " + kStart,
                          "batch C:\\Program Files\\Kestrel\\temp.bat\n"
                          "\"C:\\Program Files\\Kestrel\\instdrv2\" giveio remove\r\n"
                          "\"C:\\Program Files\\Kestrel\\instdrv2\" giveio "
                          "\"C:\\Program Files\\Kestrel\\Giveio.sys\"\r\n",
                          "run \"C:\\Program Files\\Kestrel\\temp.bat\"", "read " + kStart,
                          "write " + kStart + " type 4 2"));
  EXPECT_EQ(service_.registry[kStart], "2");
  EXPECT_THAT(messages_.Texts(), IsEmpty());
}

TEST_F(PortDriver, DriverThatStartsOnDemandIsInstalledAnew) {
  service_.registry[kStart] = "3";
  SetupGiveIO(service_, messages_);
  EXPECT_EQ(service_.Log().size(), 5U);
  EXPECT_EQ(service_.Log()[2], "run \"C:\\Program Files\\Kestrel\\temp.bat\"");
  EXPECT_EQ(service_.registry[kStart], "2");
  EXPECT_THAT(messages_.Texts(), IsEmpty());
}

TEST_F(PortDriver, DriverThatCannotBeInstalledIsTold) {
  for (const char* after : {"", "1", "2", "4", "33"}) {
    MapDriverService service;
    messages_.Clear();
    service.whileRunning = [&] { service.registry[kStart] = after; };
    SetupGiveIO(service, messages_);
    EXPECT_THAT(messages_.Texts(), ElementsAre("The required I/O drivers could not be installed."))
        << after;
    EXPECT_THAT(messages_.Titles(), ElementsAre("Error"));
    EXPECT_EQ(service.registry[kStart], after);
    EXPECT_EQ(service.Log().size(), 4U);
  }
}

}  // namespace
}  // namespace kestrel
