// The program's modules that write files, over the real disk in a folder of the test's.
// SPDX-License-Identifier: MIT
#pragma once

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "alarms/alarm_file.h"
#include "alarms/alarm_files.h"
#include "app/config_file.h"
#include "app/files_in_folder.h"
#include "app/program_state.h"
#include "connection/core.h"
#include "connection/init_interface.h"
#include "device/register_log.h"
#include "device/register_models.h"
#include "logging/data_log.h"
#include "numeric/runtime_error.h"
#include "platform/system_files.h"
#include "simulator/simulated_hardware.h"
#include "support/change_record.h"
#include "support/environment.h"
#include "support/fake_clock.h"
#include "support/fake_log_view.h"
#include "support/fixed_locale.h"
#include "support/given.h"
#include "support/recording_messages.h"
#include "support/recording_pointer.h"
#include "support/reset_program.h"
#include "support/scripted_loop.h"
#include "support/system_call_faults.h"
#include "support/temporary_folder.h"
#include "transport/adapter_debug.h"

namespace kestrel {

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
inline constexpr Saving kSavings[] = {{"DataLog", "Datalog_1.csv"},
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
    std::filesystem::current_path(folder_.path());
    files_.SetFolder(folder_.path());
    core_.registers.Use(kUsbAdapter);
    InitInterface(core_);
    InitRegisterTable(core_.registers);
    debug_.cmdWriteSpi_Click();
  }
  ~FileFaults() override {
    std::filesystem::current_path(start_);
    ResetProgram();
  }

  // One saving of the kind; what it tells when it fails.
  std::string Save(const Saving& saving, std::int32_t mark) {
    const std::string kind = saving.name;
    try {
      if (kind == "DataLog") {
        Given(DataLogIndex) = 1;
        ChangeRecord(core_.record, [mark](Record& record) { record.Of(Axis::X).data(0) = mark; });
        log_.WriteDataFile();
      } else if (kind == "AlarmFile") {
        Given(AlarmBandTable)(0, 1, 0) = mark;
        alarmFiles_.cmdWriteFile_Click(saving.file);
      } else if (kind == "Configuration") {
        Given(PortAddress) = static_cast<std::int16_t>(mark);
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
      for (const std::string& name : folder->Names())
        std::filesystem::remove(folder->path() / name);
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
  std::filesystem::path start_ = std::filesystem::current_path();
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
  Journal journal_;
  FakeLogView logView_{journal_};
  DataLog log_{core_.record, files_, locale_, loop_, logView_};
  QuietAlarmFilesView alarmView_;
  AlarmFiles alarmFiles_{files_, loop_, messages_, alarmView_};
  QuietDebugView debugView_;
  AdapterDebug debug_{core_.usb, clock_, messages_, debugView_};
};

}  // namespace kestrel
