// A fault at every transfer of everything that the windows do.
// SPDX-License-Identifier: MIT
// A fault at every transfer of everything that the windows do with the sensor. Whatever happens,
// nothing hangs, there is one message at most, what is on the screen was read from the sensor, and
// the same thing done again works once the board is back.

#include <algorithm>
#include <random>
#include <tuple>

#include "ui/window_faults_operations.h"

namespace kestrel {
namespace {

using Words = std::vector<std::string>;

struct Group {
  const char* name;
  Operations (*operations)();
};

const std::array kGroups{Group{"SettingsExchange", RecordSettingOperations},
                         Group{"Status", StatusOperations},
                         Group{"Capture", CaptureOperations},
                         Group{"Stop", StopOperations},
                         Group{"Readout", ReadoutOperations},
                         Group{"Search", SearchOperations},
                         Group{"AlarmSpectrum", AlarmSpectrumOperations},
                         Group{"AlarmControl", AlarmControlOperations},
                         Group{"Registers", RegisterOperations},
                         Group{"DioGpio", DioOperations},
                         Group{"Calibration", CalibrationOperations},
                         Group{"Command", CommandOperations},
                         Group{"RecordInfo", RecordInfoOperations},
                         Group{"Adapter", AdapterOperations},
                         Group{"Debug", DebugOperations}};

const std::array kFaultNames{"Absent", "Short", "Late", "Slow", "Garbage", "Babble", "Unplugged"};

bool Loses(UsbFault fault) {
  return fault == UsbFault::Absent || fault == UsbFault::Short || fault == UsbFault::Late ||
         fault == UsbFault::Unplugged;
}

constexpr int kLong = 500;  // requests; such an operation takes a while

// Every request of a short operation; of a long one those at either end and some between.
std::vector<int> Places(int requests) {
  const int first = requests < kLong ? 18 : 10;
  constexpr int kLast = 6;
  constexpr int kSample = 4;
  std::vector<int> places;
  for (int k = 1; k <= requests; ++k) {
    if (k <= first || k > requests - kLast) places.push_back(k);
  }
  if (requests <= first + kLast) return places;
  std::mt19937 random(static_cast<unsigned>(requests));
  std::uniform_int_distribution<int> between(first + 1, requests - kLast);
  for (int i = 0; i < kSample; ++i) places.push_back(between(random));
  return places;
}

class WindowFaults : public FaultBench,
                     public testing::WithParamInterface<std::tuple<std::size_t, UsbFault>> {
 protected:
  // How the operation goes when nothing happens.
  struct Course {
    Screen before;
    Screen after;
    std::vector<int> writes;
    int requests = 0;
  };

  Course WithoutFault(const Operation& operation) {
    Begin(operation);
    Course course;
    course.before = ReadScreen();
    usb_.FailFrom(0);
    operation.press(*this);
    course.requests = usb_.Requests();
    Settle();
    EXPECT_EQ(messages_.Texts(), Words());
    EXPECT_TRUE(core_.registers.Reachable());
    ExpectIdle();
    course.after = ReadScreen();
    course.writes = Writes();
    return course;
  }

  void ExpectMessage(const Operation& operation, bool lost) {
    const Words& texts = messages_.Texts();
    if (operation.isQuiet && lost) {
      EXPECT_EQ(texts, Words());
    } else if (operation.searches) {
      EXPECT_LE(texts.size(), 2U);
      for (const std::string& text : texts) {
        EXPECT_TRUE(TellsOfTheBoard(text) || (!lost && TellsOfAValue(text))) << text;
      }
    } else if (!lost) {
      EXPECT_LE(texts.size(), 1U);
      for (const std::string& text : texts) EXPECT_TRUE(TellsOfAValue(text)) << text;
    } else if (operation.name == "txtLoopDelay") {
      EXPECT_EQ(texts, Words{"Error Setting up SPI"});
    } else {
      const bool reading = usb_.Met() == UsbRequest::Receive;
      EXPECT_EQ(texts, Words{reading ? "Error Reading SPI" : "Error Writing SPI"});
    }
  }

  static bool TellsOfTheBoard(const std::string& text) {
    static const std::set<std::string> kTexts{
        "Error getting Board Info", "No USB Buffers Found, Please Verify Setup.",
        "Error Setting up SPI",     "Error Setting SPI Bits",
        "Error Writing SPI",        "Error Reading SPI"};
    return kTexts.contains(text);
  }
  static bool TellsOfAValue(const std::string& text) {
    return text.starts_with("\n\nError reading Capture Period register") ||
           text.starts_with("\n\nError reading Record Pointer (REC_PNTR) register") ||
           text.starts_with("ERROR.\nSubroutine = ReadCaptureBuffer\nMe.cbxRecMode.ListIndex = ");
  }

  // The parts of notices that a loss, or a sensor that started anew, brings.
  static bool IsNoticeOfALoss(const std::string& control, const std::string& text) {
    static const std::set<std::string> kTexts{
        "",  // of the row itself
        "×",
        "1 more",
        "Select adapter",
        "Restore the earlier settings",
        "The sensor was lost since. The record is as it was read; nothing newer can be.",
        "The sensor has started anew with settings of its own. They are not those that were on the "
        "screen before."};
    return (control.find("otice") != std::string::npos) && kTexts.contains(text);
  }
  // How many controls there are apart from those.
  static std::ptrdiff_t WithoutNotices(const Screen& screen) {
    return std::count_if(screen.begin(), screen.end(), [](const auto& control) {
      return !IsNoticeOfALoss(control.first, control.second);
    });
  }
  // The record's line without the time at its end, and the wait without its seconds: no two
  // captures are of the same second, or take the same time.
  static std::string Timeless(const std::string& control, const std::string& text) {
    if (control == "lblCapturingData") return text.substr(0, text.find("..."));
    return control == "lblRecordLine" ? text.substr(0, text.rfind(", ")) : text;
  }

  // Every control shows what it showed before, or what it shows when all goes well.
  static void ExpectKnownScreen(const Screen& shown, const Course& course,
                                const std::set<std::string>& leftOut = {}) {
    for (const auto& [name, text] : shown) {
      const std::string control = name.substr(name.find('.') + 1);
      if (leftOut.contains(control) || IsNoticeOfALoss(control, text)) continue;
      const auto shows = [&](const Screen& screen) {
        const auto found = screen.find(name);
        return found != screen.end() && Timeless(control, found->second) == Timeless(control, text);
      };
      const bool known = shows(course.before) || shows(course.after);
      EXPECT_TRUE(known) << name << " shows \"" << text << "\"";
    }
  }

  // A stop is asked for until the sensor has none to deliver, twenty times at most.
  static std::vector<int> StopsOnce(std::vector<int> writes) {
    EXPECT_LE(std::count(writes.begin(), writes.end(), 0xE8E8), 20);
    const auto both = [](int a, int b) { return a == 0xE8E8 && b == 0xE8E8; };
    writes.erase(std::unique(writes.begin(), writes.end(), both), writes.end());
    return writes;
  }

  static void ExpectBeginningOf(const std::vector<int>& writes, const std::vector<int>& all) {
    EXPECT_LE(writes.size(), all.size());
    for (std::size_t i = 0; i < std::min(writes.size(), all.size()); ++i) {
      EXPECT_EQ(writes[i], all[i]) << "write " << i;
    }
  }

  static void ExpectInRegisterMap(const std::vector<int>& writes) {
    for (const int frame : writes) {
      EXPECT_TRUE(frame == 0xE8E8 || (frame >> 8 & 0x7F) <= 0x3F) << std::hex << frame;
    }
  }

  // Lets the fault happen at one request and sees what becomes of it.
  void Try(const Operation& operation, const Course& course, UsbFault fault, int number) {
    Begin(operation);
    Let(fault, number);
    Course known = course;  // with the record that is at hand now
    known.before["frm1.lblRecordLine"] = ReadScreen()["frm1.lblRecordLine"];
    operation.press(*this);
    Settle();
    const bool met = usb_.Met() != UsbRequest::None;
    const bool lost = met && Loses(fault);
    if (met && fault != UsbFault::Slow) {
      ExpectMessage(operation, lost);
    } else {
      EXPECT_EQ(messages_.Texts(), Words());
    }
    EXPECT_TRUE(operation.searches || core_.registers.Reachable() == !lost);
    // An interface that was chosen and not found is none.
    if (InterfaceType != kNoInterface) {
      EXPECT_EQ(Find<QFrame>("lostNotice").isHidden(), core_.registers.Reachable());
    }
    ExpectIdle();
    if (lost || fault == UsbFault::Slow) ExpectKnownScreen(ReadScreen(), known, operation.clears);
    const std::vector<int> writes = Writes();
    ExpectInRegisterMap(writes);
    if (!operation.searches) ExpectBeginningOf(StopsOnce(writes), StopsOnce(course.writes));
    messages_.Clear();
  }

  // The board is back, and so is the sensor. What garbage made of the windows goes with reading
  // them again.
  void Again(const Operation& operation) {
    usb_.Mend();
    if (core_.registers.Reachable()) {
      CloseWindows();
      Press("CmdReadStatus");
      operation.open(*this);
    } else {
      hardware_.Adapter().Unplug(0);
      hardware_.Adapter().Replug(0);
      auto& retry = Find<QPushButton>("cmdLostRetry");
      if (retry.isVisible()) retry.click();
    }
    operation.press(*this);
    Settle();
    EXPECT_EQ(messages_.Texts(), Words()) << "done again";
    EXPECT_TRUE(core_.registers.Reachable()) << "done again";
    ExpectIdle();
    messages_.Clear();
  }
};

TEST_P(WindowFaults, OneMessageAtMostAndTheNextTimeItWorks) {
  const auto& [group, fault] = GetParam();
  StartQuietly();
  for (const Operation& operation : kGroups.at(group).operations()) {
    const testing::ScopedTrace what(__FILE__, __LINE__, operation.name);
    const Course course = WithoutFault(operation);
    EXPECT_GT(course.requests, 0);
    for (const int number : Places(course.requests)) {
      const testing::ScopedTrace where(__FILE__, __LINE__, number);
      Try(operation, course, fault, number);
      if (course.requests < kLong || number % 4 == 0) Again(operation);
      if (HasFailure()) return;
    }
    // Nothing of it has stayed.
    const Screen last = WithoutFault(operation).after;
    ExpectKnownScreen(last, {course.after, course.after, {}, 0});
    EXPECT_EQ(WithoutNotices(last), WithoutNotices(course.after));
  }
}

INSTANTIATE_TEST_SUITE_P(Windows, WindowFaults,
                         testing::Combine(testing::Range(std::size_t{0}, kGroups.size()),
                                          testing::Values(UsbFault::Absent, UsbFault::Short,
                                                          UsbFault::Late, UsbFault::Slow,
                                                          UsbFault::Garbage, UsbFault::Babble,
                                                          UsbFault::Unplugged)),
                         [](const auto& tested) {
                           return std::string(kGroups.at(std::get<0>(tested.param)).name) +
                                  kFaultNames.at(
                                      static_cast<std::size_t>(std::get<1>(tested.param)));
                         });

}  // namespace
}  // namespace kestrel
