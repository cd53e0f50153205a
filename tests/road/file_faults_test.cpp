// Saving with a fault at every call of the disk: files stay whole.
// SPDX-License-Identifier: MIT
// The modules that write files, over the real disk, with a fault at every call that they make of
// the system. A file is the earlier or the new one, whole, and a failure names it with the reason.

#include <gmock/gmock.h>

#include <cerrno>
#include <cstring>

#include "file_faults_bench.h"
#include "support/given.h"
#include "support/killed_child.h"

namespace kestrel {
namespace {

namespace fs = std::filesystem;
using Kind = CallFault::Kind;

class SavingFaults : public FileFaults, public testing::WithParamInterface<Saving> {
 protected:
  // What was there and what was to be there.
  void ExpectWhole(const std::string& earlier, const std::string& wanted, bool saved) {
    const std::string here = ContentIn(folder_, GetParam());
    const std::string elsewhere = ContentIn(documents_, GetParam());
    if (saved) {
      EXPECT_TRUE(here == wanted || (here == earlier && elsewhere == wanted)) << here;
    } else {
      EXPECT_EQ(here, earlier);
      EXPECT_EQ(elsewhere, "");
    }
  }
};

TEST_P(SavingFaults, AnErrorAtAnyCallLeavesAWholeFileAndIsToldWithItsReason) {
  const Saving& saving = GetParam();
  const std::string wanted = Wanted(saving, 2);
  const std::string earlier = Replaces(saving) ? Wanted(saving, 1) : "";
  const int calls = CallsOf(saving);
  ASSERT_GE(calls, 6);
  for (const int error : {ENOSPC, EACCES, EIO}) {
    int refused = 0;
    for (int k = 1; k <= calls; ++k) {
      SCOPED_TRACE(std::string(std::strerror(error)) + " at call " + std::to_string(k));
      const std::string told = SaveWithFault(saving, k, {Kind::Fails, error});
      const bool saved = saving.tells ? told.empty() : ContentIn(folder_, saving) == wanted;
      if (!saved) ++refused;
      ExpectWhole(earlier, wanted, saved);
      if (!told.empty()) {
        EXPECT_NE(told.find(saving.file), std::string::npos) << told;
        EXPECT_TRUE(told.ends_with(std::strerror(error))) << told;
      }
      EXPECT_EQ(LeftOvers(folder_, saving), std::vector<std::string>());
      EXPECT_EQ(LeftOvers(documents_, saving), std::vector<std::string>());
      EXPECT_EQ(messages_.Texts(), std::vector<std::string>()) << "one box, that of the handler";
      Empty();
      EXPECT_EQ(Save(saving, 2), "") << "the next time";
      EXPECT_EQ(ContentIn(folder_, saving), wanted);
    }
    EXPECT_GE(refused, 4) << "some of the calls must count";
  }
}

TEST_P(SavingFaults, AWriteThatTakesAPartGoesOn) {
  const Saving& saving = GetParam();
  const std::string wanted = Wanted(saving, 2);
  for (int k = 1, calls = CallsOf(saving); k <= calls; ++k) {
    EXPECT_EQ(SaveWithFault(saving, k, {Kind::TakesHalf, 0}), "");
    EXPECT_EQ(ContentIn(folder_, saving), wanted);
  }
}

TEST_P(SavingFaults, KilledAtAnyCallTheFileIsWholeAndTheNextSavingWorks) {
  const Saving& saving = GetParam();
  const std::string wanted = Wanted(saving, 2);
  const std::string earlier = Replaces(saving) ? Wanted(saving, 1) : "";
  const int calls = CallsOf(saving);
  for (const Kind kind : {Kind::KilledBefore, Kind::KilledAfter}) {
    for (int k = 1; k <= calls; ++k) {
      SCOPED_TRACE(k);
      Empty();
      PutEarlier(saving);
      EXPECT_TRUE(IsKilledDoing([&] {
        const SystemCallFaults faults(k, {kind, 0});
        Save(saving, 2);
      }));
      EXPECT_THAT(ContentIn(folder_, saving), testing::AnyOf(earlier, wanted));
      for (const std::string& name : LeftOvers(folder_, saving)) {
        EXPECT_TRUE(name.starts_with(".kestrel-")) << name;
      }
      if (!Replaces(saving)) fs::remove(folder_.path() / saving.file);
      EXPECT_EQ(Save(saving, 2), "");
      EXPECT_EQ(ContentIn(folder_, saving), wanted);
    }
  }
}

INSTANTIATE_TEST_SUITE_P(Modules, SavingFaults, testing::ValuesIn(kSavings),
                         [](const auto& tested) { return tested.param.name; });

TEST_F(FileFaults, ADataLogThatFailsKeepsItsNumber) {
  for (int k = 1; k <= 12; ++k) {
    Empty();
    Given(DataLogIndex) = 1;
    bool failed = false;
    {
      const SystemCallFaults faults(k, {Kind::Fails, EIO});
      try {
        log_.WriteDataFile();
      } catch (const RuntimeError&) {
        failed = true;
      }
    }
    EXPECT_EQ(DataLogIndex, failed ? 1 : 2) << k;
  }
}

TEST_F(FileFaults, AnAlarmFileThatCannotBeReadLeavesTheTable) {
  const Saving& saving = kSavings[1];
  EXPECT_EQ(Save(saving, 77), "");
  int refused = 0;
  for (const int error : {EACCES, EIO}) {
    bool met = true;
    for (int k = 1; met; ++k) {  // every call, those that look in which folder the file is included
      ResetAlarmBandTable();
      std::string told;
      {
        const SystemCallFaults faults(k, {Kind::Fails, error});
        try {
          alarmFiles_.ReadFile(saving.file);
        } catch (const RuntimeError& failure) {
          told = failure.what();
        }
        met = faults.Met();
      }
      EXPECT_FALSE(alarmView_.shown);
      if (told.empty()) {
        EXPECT_EQ(AlarmBandTable(0, 1, 0), 77) << k;
      } else {
        ++refused;
        EXPECT_EQ(AlarmBandTable, BandTable{}) << k;
        EXPECT_NE(told.find(saving.file), std::string::npos) << told;
        EXPECT_NE(told.find("cannot be read"), std::string::npos) << told;
      }
      alarmFiles_.ReadFile(saving.file);
      EXPECT_EQ(AlarmBandTable(0, 1, 0), 77) << "the next time";
    }
  }
  EXPECT_GE(refused, 6);
}

// A file that cannot be read is none: the program asks for the interface.
TEST_F(FileFaults, ASettingsFileThatCannotBeReadChangesNothing) {
  EXPECT_EQ(Save(kSavings[2], 0x278), "");
  for (const int error : {EACCES, EIO}) {
    for (int k = 1; k <= 5; ++k) {
      Given(PortAddress) = 1;
      bool read = false;
      {
        const SystemCallFaults faults(k, {Kind::Fails, error});
        read = ReadConfigFile(files_, messages_);
      }
      EXPECT_EQ(PortAddress, read ? 0x278 : 1) << k;
      EXPECT_TRUE(messages_.Texts().empty());
      EXPECT_TRUE(ReadConfigFile(files_, messages_)) << "the next time";
      EXPECT_EQ(PortAddress, 0x278);
    }
  }
}

}  // namespace
}  // namespace kestrel
