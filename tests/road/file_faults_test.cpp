// Kestrel evaluation program
// SPDX-License-Identifier: MIT
// The modules that write files, over the real disk, with a fault at every call that they make of
// the system. A file is the earlier or the new one, whole, and a failure names it with the reason.

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cerrno>
#include <cstring>
#include <functional>

#include "acquisition/quiet_views.h"
#include "alarms/alarm_file.h"
#include "alarms/alarm_files.h"
#include "app/config_file.h"
#include "app/core.h"
#include "app/files_in_folder.h"
#include "app/program_state.h"
#include "app/start.h"
#include "device/register_log.h"
#include "logging/data_log.h"
#include "numeric/runtime_error.h"
#include "platform/linux/system_files.h"
#include "simulator/simulated_hardware.h"
#include "support/environment.h"
#include "support/fake_clock.h"
#include "support/fixed_locale.h"
#include "support/killed_child.h"
#include "support/recording_messages.h"
#include "support/recording_pointer.h"
#include "support/reset_program.h"
#include "support/scripted_loop.h"
#include "support/system_call_faults.h"
#include "support/temporary_folder.h"
#include "transport/adapter_debug.h"

namespace kestrel {
namespace {

namespace fs = std::filesystem;
using Kind = CallFault::Kind;

class QuietDebugView : public AdapterDebugView {
 public:
  [[nodiscard]] FrameTexts Frames() override {
    FrameTexts frames;
    frames[0] = "0E00";
    return frames;
  }
  void PointAtFrame(int /*number*/) override {}
  void ShowAnswers(const std::vector<std::string>& /*answers*/) override {}
  void ShowBits(const std::string& /*text*/) override {}
  void ShowDelay(const std::string& /*text*/) override {}
  void ShowSetup(const std::string& /*text*/) override {}
  void ShowCounts(std::int64_t /*transfers*/, std::int64_t /*errors*/) override {}
};

class QuietAlarmFilesView : public AlarmFilesView {
 public:
  void ShowReading(const std::string& /*text*/) override { shown = true; }
  void HideReading() override { shown = false; }
  void DisplaySelected() override {}
  void SetMessage(const std::string& /*text*/) override {}

  bool shown = false;
};

struct Saving {
  const char* name;
  const char* file;
  bool tells = true;  // a failure is shown
};
constexpr Saving kSavings[] = {{"DataLog", "Datalog_1.csv"},
                               {"AlarmFile", "AlarmSpectrum_pump.csv"},
                               {"Configuration", "CommPort.cfg", false},
                               {"RegisterList", "Registers_LOG.txt"},
                               {"WireLog", "Adapter_LOG.txt"}};

// Beside the program there is one folder, for documents another.
class FileFaults : public testing::Test {
 protected:
  FileFaults() {
    ResetProgram();
    environment_.Set("XDG_DOCUMENTS_DIR", documents_.path().string());
    fs::current_path(folder_.path());
    files_.SetFolder(folder_.path());
    InterfaceType = kUsbAdapter;
    InitInterface(core_);
    InitRegisterTable(core_.registers);
    debug_.cmdWriteSpi_Click();
  }
  ~FileFaults() override {
    fs::current_path(start_);
    ResetProgram();
  }

  // One saving of the kind; what it tells when it fails.
  std::string Save(const Saving& saving, std::int32_t mark) {
    const std::string kind = saving.name;
    try {
      if (kind == "DataLog") {
        DataLogIndex = 1;
        DataX(0) = mark;
        log_.WriteDataFile();
      } else if (kind == "AlarmFile") {
        AlarmBandTable(0, 1, 0) = mark;
        alarmFiles_.cmdWriteFile_Click(saving.file);
      } else if (kind == "Configuration") {
        PortAddress = static_cast<std::int16_t>(mark);
        WriteConfigFile(files_);
      } else if (kind == "RegisterList") {
        WriteRegisterLog(files_, locale_, "mark " + std::to_string(mark));
      } else {
        static_cast<void>(debug_.cmdSave_Click(files_, locale_, std::to_string(mark)));
      }
    } catch (const RuntimeError& error) {
      return error.what();
    }
    return {};
  }

  [[nodiscard]] static std::string ContentIn(const TemporaryFolder& folder, const Saving& saving) {
    return folder.Content(saving.file);
  }

  void Empty() {
    for (const TemporaryFolder* folder : {&folder_, &documents_}) {
      for (const std::string& name : folder->Names()) fs::remove(folder->path() / name);
    }
  }

  // What is in place after a saving without a fault.
  std::string Wanted(const Saving& saving, std::int32_t mark) {
    Empty();
    EXPECT_EQ(Save(saving, mark), "");
    std::string content = ContentIn(folder_, saving);
    EXPECT_FALSE(content.empty());
    return content;
  }

  // The wire log never replaces an earlier one.
  static bool Replaces(const Saving& saving) { return std::string(saving.name) != "WireLog"; }

  void PutEarlier(const Saving& saving) {
    if (Replaces(saving)) {
      EXPECT_EQ(Save(saving, 1), "");
    }
  }

  // Leaves the earlier file in place and saves once with a fault.
  std::string SaveWithFault(const Saving& saving, int number, CallFault fault) {
    Empty();
    PutEarlier(saving);
    const SystemCallFaults faults(number, fault);
    return Save(saving, 2);
  }

  int CallsOf(const Saving& saving) {
    Empty();
    PutEarlier(saving);
    const SystemCallFaults none;
    EXPECT_EQ(Save(saving, 2), "");
    return static_cast<int>(none.Calls().size());
  }

  static std::vector<std::string> LeftOvers(const TemporaryFolder& folder, const Saving& saving) {
    std::vector<std::string> names = folder.Names();
    std::erase(names, saving.file);
    return names;
  }

  TemporaryFolder folder_;
  TemporaryFolder documents_;
  fs::path start_ = fs::current_path();
  Environment environment_;
  FakeClock clock_;
  SimulatedHardware hardware_{clock_};
  ScriptedLoop loop_{clock_};
  RecordingPointer pointer_;
  RecordingMessages messages_;
  SystemFiles disk_;
  FilesInFolder files_{disk_};
  FixedLocale locale_;
  Core core_{{clock_, loop_, pointer_, messages_, files_, locale_, hardware_.Adapter(),
              hardware_.Port(), hardware_.Service()}};
  QuietViews views_;
  DataLog log_{files_, locale_, loop_, views_};
  QuietAlarmFilesView alarmView_;
  AlarmFiles alarmFiles_{files_, loop_, messages_, alarmView_};
  QuietDebugView debugView_;
  AdapterDebug debug_{core_.usb, clock_, messages_, debugView_};
};

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
    DataLogIndex = 1;
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
    for (int k = 1; k <= 6; ++k) {
      ResetAlarmBandTable();
      std::string told;
      {
        const SystemCallFaults faults(k, {Kind::Fails, error});
        try {
          alarmFiles_.ReadFile(saving.file);
        } catch (const RuntimeError& failure) {
          told = failure.what();
        }
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
      PortAddress = 1;
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
