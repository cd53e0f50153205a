// The windows over a parallel port that is not held, or goes.
// SPDX-License-Identifier: MIT
// The windows over a parallel port that is not held, or that goes in the middle of an operation.
// The port tells of no failure: nothing is there, so every answer reads 0.

#include <random>

#include "ui/window_faults_operations.h"

namespace kestrel {
namespace {

using Words = std::vector<std::string>;

// A port that has nothing behind it from the n-th access on, the first being 1; or that the system
// takes away then, where it guards its ports.
class FailingPort : public PortIo {
 public:
  explicit FailingPort(PortIo& inner) : inner_(inner) {}

  void FailFrom(int number, bool gone = false) {
    failFrom_ = number;
    accesses_ = 0;
    gone_ = gone;
  }
  [[nodiscard]] bool IsHeld(std::int16_t /*base*/) override {
    return !gone_ || accesses_ < failFrom_;
  }
  [[nodiscard]] int Accesses() const { return accesses_; }

  void giveio() override { inner_.giveio(); }
  void vbOut(std::int16_t port, std::int16_t value) override {
    if (!Fails()) inner_.vbOut(port, value);
  }
  [[nodiscard]] std::int16_t vbInp(std::int16_t port) override {
    return Fails() ? std::int16_t{0xFF} : inner_.vbInp(port);
  }

 private:
  bool Fails() { return ++accesses_ >= failFrom_ && failFrom_ > 0; }

  PortIo& inner_;
  int failFrom_ = 0;
  int accesses_ = 0;
  bool gone_ = false;
};

Operations OneOfEachWindow() {
  Operations all{{"a capture that is stopped", CaptureAndStop,
                  [](Bench& bench) { bench.Find<QCheckBox>("ckAutoPlot").setChecked(false); }},
                 {"cmdReadBuffer", [](Bench& bench) { bench.Press("cmdReadBuffer"); }},
                 Choosing("cbxSignalRange", 1),
                 {"CmdReadStatus", [](Bench& bench) { bench.Press("CmdReadStatus"); }},
                 Clicking("frmAlarmSpectrum", "mnuAlarmSpectrum", "cmdReadAll"),
                 Clicking("frmAlarmSpectrum", "mnuAlarmSpectrum", "cmdWriteAll"),
                 Clicking("frmALM_CTRL", "mnuAlarmCtrl", "ckXenable"),
                 Opening("frmManualReg", "mnuRegisters"),
                 Clicking("frmDIOGPIO", "mnuDIOGPIO", "OpFuncAlarm2"),
                 Clicking("frmCalibration", "MnuCal", "cmdAutoNull"),
                 Clicking("frmRecInfo", "mnuRecInfo", "cmdRead"),
                 CommandOperations().at(4),
                 {"the port's window", [](Bench& bench) { bench.Click("frmPort", "cmdOK"); },
                  [](Bench& bench) { bench.OpenWindow("mnuParallel"); }}};
  return all;
}

class OverPort : public FaultBench {
 protected:
  OverPort() {
    files_.contents[files_.WorkingFolder() / "CommPort.cfg"] =
        "Interface = 1\nPort Address = 888\nProductNumber = 31407\n";
  }
  // The windows belong to the road over the port.
  ~OverPort() override { windows_.reset(); }

  void StartOverPort() {
    windows_ = std::make_unique<QtStartWindows>(
        overPort_, SimulatorControl{[] {}, [] { return false; }, [](bool /*in*/) {}});
    Main(overPort_, *windows_, {.quickStart = true, .interfaceWithoutConfig = kNoInterface});
    ASSERT_EQ(InterfaceType, kParallelPort);
  }

  FailingPort port_{hardware_.Port()};
  Core overPort_{
      {clock_, loop_, pointer_, messages_, files_, locale_, usb_, port_, hardware_.Service()}};
};

class PortFaults : public OverPort, public testing::WithParamInterface<std::size_t> {
 protected:
  void BeginOverPort(const Operation& operation) {
    port_.FailFrom(0);
    Bound();
    CloseWindows();
    Press("CmdReadStatus");
    operation.open(*this);
    Settle();
    messages_.Clear();
  }

  void ExpectCalm() {
    EXPECT_EQ(messages_.Texts(), Words());
    EXPECT_EQ(InterfaceType, kParallelPort);
    EXPECT_TRUE(Find<QFrame>("lostNotice").isHidden());
    ExpectIdle();
  }
};

TEST_P(PortFaults, NothingHangsAndTheNextTimeItWorks) {
  const Operation operation = OneOfEachWindow().at(GetParam());
  SCOPED_TRACE(operation.name);
  StartOverPort();
  BeginOverPort(operation);
  port_.FailFrom(0);
  operation.press(*this);
  const int accesses = port_.Accesses();
  ASSERT_GT(accesses, 0);
  ExpectCalm();
  std::mt19937 random(static_cast<unsigned>(accesses));
  std::vector<int> places{1, 2, accesses};
  for (int i = 0; i < 5; ++i) places.push_back(static_cast<int>(random() % 1000003) % accesses + 1);
  for (const int number : places) {
    SCOPED_TRACE(number);
    BeginOverPort(operation);
    port_.FailFrom(number);
    operation.press(*this);
    Settle();
    ExpectCalm();
    port_.FailFrom(0);
    Press("CmdReadStatus");
    overPort_.registers.ReadReg(row::PROD_ID);
    EXPECT_EQ(RegValue, 31407) << "the sensor answers again";
    operation.open(*this);
    operation.press(*this);
    Settle();
    ExpectCalm();
  }
}

// What searches for the sensor says once that the port cannot be had; everything else is calm.
TEST_P(PortFaults, APortThatIsTakenAwayEndsWhatIsUnderWayAndTheNextTimeItWorks) {
  const Operation operation = OneOfEachWindow().at(GetParam());
  SCOPED_TRACE(operation.name);
  StartOverPort();
  for (const int number : {1, 2, 60}) {
    SCOPED_TRACE(number);
    BeginOverPort(operation);
    port_.FailFrom(number, true);
    operation.press(*this);
    Settle();
    EXPECT_LE(messages_.Texts().size(), 1U) << testing::PrintToString(messages_.Texts());
    ExpectIdle();
    port_.FailFrom(0);
    messages_.Clear();
    EXPECT_TRUE(overPort_.registers.Read(row::PROD_ID).has_value()) << "the sensor answers again";
    operation.open(*this);
    operation.press(*this);
    Settle();
    ExpectCalm();
  }
}

INSTANTIATE_TEST_SUITE_P(Windows, PortFaults,
                         testing::Range(std::size_t{0}, OneOfEachWindow().size()));

TEST_F(OverPort, ARepeatPausesWhileThePortIsTakenAwayAndGoesOnOverItOnceItIsBack) {
  loop_.Hurry();
  StartOverPort();
  Choose("cbxFFTAvgs", 1);
  OpenWindow("mnuRepeat");
  Click("frmRepeat", "optAtOnce");
  Type("frmRepeat", "txtTimes", "20");
  port_.FailFrom(0);
  Click("frmRepeat", "cmdRepeatStart");
  const auto now = [this] { return *Repeats().Progress(); };
  ASSERT_TRUE(QTest::qWaitFor([&] { return now().done >= 2; }, 20'000));
  port_.FailFrom(1, true);
  ASSERT_TRUE(QTest::qWaitFor([&] { return now().state == RepeatState::Paused; }, 20'000));
  const Record before = overPort_.record.Get();
  const int done = now().done;
  ASSERT_LT(done, 20);
  QTest::qWait(400);
  EXPECT_EQ(now().state, RepeatState::Paused);
  EXPECT_EQ(now().done, done) << "nothing is taken from no port";
  EXPECT_EQ(overPort_.record.Get(), before);
  port_.FailFrom(0);
  ASSERT_TRUE(QTest::qWaitFor([&] { return !Repeats().Running(); }, 20'000));
  EXPECT_EQ(now().done, 20);
  EXPECT_EQ(now().reason, "");
  ASSERT_EQ(now().gaps.size(), 1U);
  EXPECT_TRUE(now().gaps[0].to.has_value());
  EXPECT_EQ(InterfaceType, kParallelPort);
  EXPECT_NE(overPort_.record.Get(), before);
  EXPECT_EQ(messages_.Texts(), Words()) << "nobody may be there to dismiss a box";
}

}  // namespace
}  // namespace kestrel
