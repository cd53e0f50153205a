// A monitor whose sensor is lost at any transfer: nothing half is kept, and all is accounted for.
// SPDX-License-Identifier: MIT
#include <gtest/gtest.h>

#include "archive/wide_sets.h"
#include "monitor_checks.h"
#include "support/monitored_world.h"
#include "support/sensor_frames.h"

namespace kestrel::monitor {
namespace {

using namespace std::chrono_literals;

struct TransferFault {
  const char* name;
  UsbFault fault;
};
void PrintTo(const TransferFault& fault, std::ostream* out) {
  *out << fault.name;
}

class MonitorWithFaults : public testing::TestWithParam<TransferFault> {
 protected:
  // The next requests of a read-out in part, those around them each.
  static int After(int request) {
    constexpr int kAround = 40;
    constexpr int kStride = 83;
    return request + (request < kAround ? 1 : kStride);
  }

  // Goes on for so long with the fault at that request, and ends it. Whether it came.
  static bool RunWithFault(MonitoredWorld& world, int request, std::chrono::seconds time) {
    const bool isPulled = GetParam().fault == UsbFault::Unplugged;
    world.Usb().FaultAt(request, GetParam().fault, [&] {
      if (isPulled) world.Hardware().Adapter().Unplug(0);
    });
    world.Run(time);
    world.Usb().Mend();
    if (isPulled) world.Hardware().Adapter().Replug(0);
    return world.Usb().Met() != UsbRequest::None;
  }
};

// A fault at the k-th request after a capture has been kept, for all k until the next but one is.
TEST_P(MonitorWithFaults, AccountsForEveryCaptureWhereverItComes) {
  MonitoredWorld world(kPlan);
  world.Start();
  world.Run(25s);
  int met = 0;
  for (int request = 1; request < 6000; request = After(request)) {
    met += RunWithFault(world, request, 20s) ? 1 : 0;
    world.Run(10s);
  }
  world.Run(30s);
  world.Stop();
  EXPECT_GT(met, 60);
  ExpectAllAccounted(world);
  for (const archive::JournalEntry& entry : Entries(world)) {
    EXPECT_TRUE(entry.ended) << entry.kind << ": " << entry.text;
    EXPECT_NE(entry.text, "");
  }
  auto archive = world.OpenArchive();
  const auto ids = archive.Find({});
  EXPECT_GT(ids.size(), 50U);
  for (const std::int64_t id : ids) {
    const auto kept = archive.Get(id);
    EXPECT_TRUE(kept->record.IsNew());
    EXPECT_EQ(kept->record.settings.averages, 2);
    EXPECT_EQ(kept->record.settings.range, 3);
    // What the machine does is loud at its lines, on each axis.
    for (const auto& level : kept->levels) EXPECT_GT(level.value().peakG, 0.01) << id;
  }
}

// The sensor takes and stores a series by itself while the program cannot reach it.
TEST_P(MonitorWithFaults, KeepsEachRecordOfASeriesOnceOrTellsItsAbsence) {
  StoringWorld world(10s);
  int met = 0;
  world.Start();
  for (int request = 1; request < 3000; request = After(request)) {
    met += RunWithFault(world, request, 30s) ? 1 : 0;
    world.Run(20s);
  }
  world.Run(60s);
  world.Stop();
  EXPECT_GT(met, 45);
  auto archive = world.OpenArchive();
  std::set<std::int32_t> counts;
  for (const std::int64_t id : archive.Find({})) {
    counts.insert(archive.Get(id)->record.conditions.recordCount);
  }
  const std::int32_t newest = *counts.rbegin();
  EXPECT_GE(newest, WordAt(world, address::kRecCnt) - 1);
  EXPECT_GT(archive.Count(), met);
  EXPECT_EQ(archive.Count() + MissedOf(Entries(world, "capture lost")), newest);
  for (const archive::JournalEntry& entry : Entries(world)) {
    EXPECT_TRUE(entry.ended) << entry.kind << ": " << entry.text;
  }
}

TEST_P(MonitorWithFaults, BeginsASeriesWhateverStoodInTheWay) {
  int met = 0;
  for (int request = 1; request < 700; request += request < 20 ? 1 : 29) {
    StoringWorld world(10s);
    world.Start();
    met += RunWithFault(world, request, 5s) ? 1 : 0;
    world.Run(30s);
    EXPECT_TRUE(world.Hardware().Sensor().IsInSeries()) << request;
    world.Settle();  // the archive's thread goes by the machine's time
    for (const auto& open : world.Monitor().OpenIncidents()) {
      ADD_FAILURE() << request << ": " << open.kind << ", " << open.text;
    }
    world.Stop();
    EXPECT_GE(Kept(world), 1) << request;
  }
  EXPECT_GT(met, 15);
}

TEST_P(MonitorWithFaults, KeepsWideSpectraWholeOrNotAtAll) {
  MonitoredWorld world("bench = b\nsensor = s\nevery = 60 s\n[wide]\naverages = 1\n");
  world.Start();
  world.Run(50s);
  int met = 0;
  for (int request = 1; request < 12000; request += request < 20 ? 1 : 331) {
    met += RunWithFault(world, request, 60s) ? 1 : 0;
    world.Run(60s);
  }
  world.Run(60s);
  world.Stop();
  EXPECT_GT(met, 25);
  auto archive = world.OpenArchive();
  const auto sets = archive::FindWideSets(archive, {});
  for (const archive::Uid& set : sets) {
    EXPECT_TRUE(archive::GetWideSet(archive, set)->IsWhole());
  }
  EXPECT_EQ(archive.Count(), 4 * static_cast<std::int64_t>(sets.size()));
  EXPECT_EQ(static_cast<std::int64_t>(sets.size()) + MissedOf(Entries(world)), world.Asked());
}

// Lost between setting a register and knowing what it took.
TEST_P(MonitorWithFaults, TakesItsOwnSettingsForNobodyElses) {
  const bool forgets = GetParam().fault == UsbFault::Unplugged;  // without power
  int met = 0;
  for (int request = 90; request < 150; ++request) {
    StoringWorld world(10s);
    world.Start();
    met += RunWithFault(world, request, 5s) ? 1 : 0;
    world.Run(15s);
    EXPECT_EQ(WordAt(world, address::kRecPrd), 10) << request;
    world.Stop();
    EXPECT_TRUE(forgets || Entries(world, "settings changed").empty()) << request;
  }
  EXPECT_GT(met, 35);
}

INSTANTIATE_TEST_SUITE_P(Kinds, MonitorWithFaults,
                         testing::Values(TransferFault{"Absent", UsbFault::Absent},
                                         TransferFault{"Short", UsbFault::Short},
                                         TransferFault{"Late", UsbFault::Late},
                                         TransferFault{"Unplugged", UsbFault::Unplugged}),
                         [](const auto& tested) { return std::string(tested.param.name); });

}  // namespace
}  // namespace kestrel::monitor
