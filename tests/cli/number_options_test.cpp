// The options for peaks and levels on the whole command line.
// SPDX-License-Identifier: MIT
#include <gmock/gmock.h>

#include "program_bench.h"
#include "simulator/simulated_hardware.h"
#include "support/failing_usb_driver.h"

namespace kestrel {
namespace {

using Json = nlohmann::json;
using testing::HasSubstr;

class NumberOptions : public ProgramBench {
 protected:
  void ExpectUsage(std::vector<std::string> words, const std::string& explanation) {
    for (const char* command : {"capture", "record"}) {
      std::vector<std::string> arguments{command};
      if (arguments[0] == "record") arguments.emplace_back("0");
      arguments.insert(arguments.end(), words.begin(), words.end());
      EXPECT_EQ(Simulate(arguments), ExitCode::Usage) << testing::PrintToString(arguments);
      EXPECT_THAT(error.str(), HasSubstr(explanation)) << testing::PrintToString(arguments);
      EXPECT_EQ(out.str(), "");
    }
  }
};

TEST_F(NumberOptions, ANumberOfPeaksThatIsNoneIsExplained) {
  for (const char* peaks : {"0", "-1", "1e9", "257", "3,5", "2.5", "x", "nan", ""}) {
    ExpectUsage({"--peaks", peaks}, std::string("\"") + peaks + "\" is not a number of peaks");
  }
  ExpectUsage({"--peaks"}, "--peaks");
}

TEST_F(NumberOptions, AWordThatIsNoneIsExplained) {
  ExpectUsage({"--levels", "--quantity", "x"}, "x not in {g,velocity,displacement,density}");
  ExpectUsage({"--levels", "--amplitude", "mean"}, "mean not in {peak,rms,pp}");
  ExpectUsage({"--levels", "--amplitude"}, "--amplitude");
}

TEST_F(NumberOptions, AQuantityOfNothingIsExplained) {
  ExpectUsage({"--quantity", "velocity"}, "Give --peaks or --levels as well");
  ExpectUsage({"--amplitude", "rms"}, "Give --peaks or --levels as well");
}

TEST_F(NumberOptions, ADensityHasNoAmplitudeButRms) {
  for (const char* amplitude : {"peak", "pp"}) {
    ExpectUsage({"--levels", "--quantity", "density", "--amplitude", amplitude},
                "Leave --amplitude out, or choose another --quantity");
  }
  EXPECT_EQ(Simulate({"capture", "--averages", "1", "--peaks", "1", "--quantity", "density",
                      "--amplitude", "rms"}),
            ExitCode::Success);
}

TEST_F(NumberOptions, WithoutThemTheOutputSaysNothingOfThem) {
  const Json json = SimulateJson({"capture", "--averages", "1"});
  EXPECT_FALSE(json.contains("numbers"));
  EXPECT_FALSE(json["axes"]["X"].contains("peaks"));
  EXPECT_FALSE(json["axes"]["X"].contains("levels"));
}

TEST_F(NumberOptions, BandsAreReadFromTheSensor) {
  const Json json =
      SimulateJson({"--scenario", "bearing-fault", "capture", "--averages", "1", "--levels"});
  const Json bands = json["axes"]["Z"]["levels"]["bands"];
  ASSERT_EQ(bands.size(), 6U);
  EXPECT_EQ(bands[2]["band"], 3);
  EXPECT_EQ(bands[2]["state"], "free");
  EXPECT_GT(bands[2]["warning_headroom_db"], 0);
  EXPECT_GT(bands[2]["fault_headroom_db"], bands[2]["warning_headroom_db"]);
}

// The scenario raises a warning with its fourth capture and a fault with its seventh.
TEST_F(NumberOptions, StatesOfBandsAreThoseOfTheSensor) {
  ASSERT_EQ(
      Simulate({"--scenario", "bearing-fault", "--json", "capture", "--levels", "--count", "7"}),
      ExitCode::Success)
      << error.str();
  std::istringstream all(out.str());
  std::string states;
  for (int number = 1; number <= 7; ++number) {
    Json json;
    all >> json;
    const Json& axis = json["axes"]["Z"];
    const std::string state = axis["levels"]["bands"][2]["state"];
    const std::string alarm = axis["alarm"];
    EXPECT_EQ(state == "fault", alarm == "Fault") << number;
    EXPECT_EQ(state == "warning", alarm == "Warning") << number;
    states += state[0];
  }
  EXPECT_EQ(states, "fffwwwf");
}

TEST_F(NumberOptions, AnInterruptWhileBandsAreReadCapturesNothing) {
  int asked = 0;
  interrupted = [&] { return ++asked == 2; };
  EXPECT_EQ(Simulate({"--json", "capture", "--levels"}), ExitCode::Interrupted);
  EXPECT_EQ(out.str(), "");
}

// Wherever the sensor is lost, on the way to its bands or after, nothing is told as if it were
// there.
TEST_F(NumberOptions, ASensorLostOnTheWayGivesNoNumbers) {
  int last = 0;
  int withoutRecord = 0;
  for (int request = 1; last == 0; request += 53) {
    ASSERT_LT(request, 20000);
    SimulatedHardware hardware(clock);
    FailingUsbDriver failing(hardware.Adapter());
    driver = &failing;
    failing.FailFrom(request);
    const ExitCode end = Run({"--json", "capture", "--averages", "1", "--levels", "--peaks", "1"});
    if (end == ExitCode::Success) {
      last = request;
      continue;
    }
    ASSERT_EQ(end, ExitCode::NoSensor) << request;
    EXPECT_EQ(out.str(), "") << request;
    EXPECT_NE(error.str(), "") << request;
    if (error.str().find("bands") != std::string::npos) ++withoutRecord;
  }
  EXPECT_GT(withoutRecord, 5) << "many requests are those of the bands";
  EXPECT_GT(last, 1000) << withoutRecord;
}

TEST_F(NumberOptions, AnEmptyStoredRecordIsRefusedInWords) {
  EXPECT_EQ(Simulate({"record", "3", "--peaks", "3", "--levels"}), ExitCode::Success);
  EXPECT_THAT(out.str(), HasSubstr("Note: Record 3 of the sensor is empty."));
  EXPECT_THAT(out.str(),
              HasSubstr("X, Y, Z  No peak or level can be determined from this record: All its "
                        "points are the same blank word. Choose a record that has been "
                        "stored.\n"));
}

TEST_F(NumberOptions, OldDataSaySo) {
  int asked = 0;
  interrupted = [&] { return ++asked == 20; };
  EXPECT_EQ(Simulate({"capture", "--averages", "255", "--peaks", "1"}), ExitCode::NotNew);
  EXPECT_THAT(out.str(), HasSubstr("Note: The capture was stopped before data were ready."));
}

}  // namespace
}  // namespace kestrel
