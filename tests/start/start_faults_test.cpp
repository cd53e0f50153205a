// Whatever is thrown while the program starts, its main window comes up.
// SPDX-License-Identifier: MIT
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <stdexcept>

#include "device/rec_ctrl.h"
#include "numeric/runtime_error.h"
#include "regmap/register_table.h"
#include "start/start.h"
#include "support/faulty_seams.h"
#include "support/recorded_seams.h"
#include "support/reset_device.h"

namespace kestrel {
namespace {

// The windows before the main window may fail too.
class Windows : public StartWindows {
 public:
  explicit Windows(CallCount& count) : count_(count) {}

  void ShowLoading(const std::string& /*caption*/, const std::string& /*text*/) override {
    count_.Note("ShowLoading");
  }
  void SetLoadingText(const std::string& /*text*/) override { count_.Note("SetLoadingText"); }
  void HideLoading() override { count_.Note("HideLoading"); }
  void ShowMainWindow() override { ++shown; }

  int shown = 0;

 private:
  CallCount& count_;
};

struct Setting {
  const char* name;
  const char* config;  // none for a program that starts the first time
  bool board = false;
  bool quickStart = false;
};

class StartFaults : public testing::TestWithParam<Setting>, protected RecordedSeams {
 protected:
  StartFaults() {
    ResetDevice();
    clock_.SetSecondsPerIteration(1e-8);
    if (GetParam().board) boards_.boards[0] = {};
    if (GetParam().config != nullptr) {
      files_.contents[files_.WorkingFolder() / "CommPort.cfg"] = GetParam().config;
    }
    service_.whileRunning = [this] { service_.registry[kStart] = "3"; };
  }
  ~StartFaults() override { ResetDevice(); }

  // Starts the program with a fault at one call; returns whether there are so many.
  bool Start(int number, const std::function<void()>& fault) {
    ResetDevice();
    messages_.Clear();
    service_.registry.clear();
    faulty_.Count().FaultAt(number, fault);
    Core core(faulty_.All());
    Windows windows(faulty_.Count());
    Main(core, windows, {.quickStart = GetParam().quickStart});
    EXPECT_EQ(windows.shown, 1);
    EXPECT_EQ(RegCount, 57);
    EXPECT_NE(gRecCtrl, nullptr);
    return faulty_.Count().Met();
  }

  // With a fault at every call, one after the other. Returns how many there are.
  int Walk(const std::function<void()>& fault) {
    int number = 1;
    for (;; ++number) {
      SCOPED_TRACE("call " + std::to_string(number) + ", " + faulty_.Count().Place());
      bool met = false;
      EXPECT_NO_THROW(met = Start(number, fault));
      if (HasFailure() || !met) break;
      const bool told = std::any_of(
          messages_.Texts().begin(), messages_.Texts().end(),
          [](const std::string& text) { return text.find("broken") != std::string::npos; });
      const bool explained = std::any_of(
          messages_.explanations.begin(), messages_.explanations.end(),
          [](const std::string& text) { return text.find("broken") != std::string::npos; });
      const bool silent = faulty_.Count().Place() == "Messages::Show";
      EXPECT_TRUE(told || explained || silent) << "nobody is told";
    }
    return number - 1;
  }

  static constexpr const char* kStart = "SYSTEM\\CurrentControlSet\\Services\\giveio|Start";

  FaultySeams faulty_{All()};
};

TEST_P(StartFaults, TheMainWindowComesUpWhateverCallFails) {
  const int calls = Walk([] { throw RuntimeError("broken"); });
  EXPECT_GE(calls, GetParam().quickStart ? 4 : 8);
}

TEST_P(StartFaults, FaultsOfOtherKindsDoNotEndTheProgramEither) {
  Walk([] { throw std::length_error("broken"); });
  EXPECT_NO_THROW(Start(1, [] { throw 42; }));
}

INSTANTIATE_TEST_SUITE_P(Interfaces, StartFaults,
                         testing::Values(Setting{"FirstStart", nullptr},
                                         Setting{"QuickFirstStart", nullptr, false, true},
                                         Setting{"NoSuchInterface", "Interface = 7\n"},
                                         Setting{"WrongValue", "Interface = x\n", false, true},
                                         Setting{"Port", "Interface = 1\nPort Address = 888\n",
                                                 false, true},
                                         Setting{"Adapter", "Interface = 2\n", true, true},
                                         Setting{"AbsentAdapter", "Interface = 2\n", false, true}),
                         [](const auto& setting) { return std::string(setting.param.name); });

}  // namespace
}  // namespace kestrel
