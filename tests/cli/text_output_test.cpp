// What the commands print for people.
// SPDX-License-Identifier: MIT
// What the commands print for people.

#include <gmock/gmock.h>

#include <algorithm>

#include "alarms/alarm_file.h"
#include "cli/program.h"
#include "program_bench.h"
#include "simulator/simulated_hardware.h"
#include "support/failing_usb_driver.h"

namespace kestrel {
namespace {

using testing::AllOf;
using testing::HasSubstr;
using testing::StartsWith;

class TextOutput : public ProgramBench {
 protected:
  std::string Printed(const std::vector<std::string>& arguments) {
    EXPECT_EQ(Simulate(arguments), ExitCode::Success) << error.str();
    return out.str();
  }
  static auto Lines(const std::string& text) { return std::ranges::count(text, '\n'); }
};

TEST_F(TextOutput, RegistersAreNameWordValueAndScaledValue) {
  const std::string list = Printed({"registers", "list"});
  EXPECT_EQ(Lines(list), 49);
  EXPECT_THAT(list, StartsWith("ENDURANCE     0000       0  0\n"));
  EXPECT_THAT(list, HasSubstr("\nPROD_ID       7AAF   31407  31407\n"));
  EXPECT_EQ(Printed({"registers", "read", "PROD_ID"}), "PROD_ID       7AAF   31407  31407\n");
  EXPECT_THAT(Printed({"registers", "write", "X_NULL", "65535"}),
              StartsWith("X_NULL        FFFF      -1  -0.0"));
}

TEST_F(TextOutput, ARegisterThatCannotBeReadIsWrittenInSilence) {
  EXPECT_EQ(Printed({"registers", "write", "COMMAND", "0x10"}), "");
}

TEST_F(TextOutput, ADumpInJsonNamesItsFile) {
  EXPECT_EQ(SimulateJson({"registers", "dump", "--out", "/data"})["file"],
            "/data/Registers_LOG.txt");
}

TEST_F(TextOutput, BandsAreATableInG) {
  BandTable table;
  table(0, 3, 2) = 40;
  table(1, 3, 2) = 52;
  table(Alarm1Field(Axis::Y), 3, 2) = 1000;
  files.contents["/data/AlarmSpectrum_pump.csv"] = AlarmFileText(table);
  const std::string bands = Printed({"bands", "load", "/data/AlarmSpectrum_pump.csv"});
  EXPECT_EQ(Lines(bands), 25);
  EXPECT_THAT(bands, StartsWith("Option Band F-low F-high  Alarm 1 X, Y, Z in g"));
  EXPECT_THAT(bands, HasSubstr("\n2     3     40     52   0.00000   1.19210   0.00000"));
}

TEST_F(TextOutput, ATransferEndsWithItsMessage) {
  EXPECT_EQ(Printed({"bands", "clear"}), "All bands cleared, in the sensor too.\n");
  EXPECT_EQ(SimulateJson({"bands", "clear"})["message"], "All bands cleared, in the sensor too.");
  EXPECT_EQ(SimulateJson({"bands", "save", "/data/AlarmSpectrum_a.csv"})["file"],
            "/data/AlarmSpectrum_a.csv");
}

TEST_F(TextOutput, ClearingTheStatusOfAFreshSensorChangesNothing) {
  EXPECT_EQ(Printed({"status", "--clear"}), Printed({"status"}));
}

TEST_F(TextOutput, StatusIsALineAFlagAndALineAnAxis) {
  const std::string status = Printed({"status"});
  EXPECT_EQ(Lines(status), 19);
  EXPECT_THAT(status, AllOf(HasSubstr("Data Ready            OK\n"),
                            HasSubstr("Y axis: alarm None, band 0, peak 0.000 g in bin 0\n"),
                            HasSubstr("supply 3.300 V, temperature 24.8 °C\n")));
}

TEST_F(TextOutput, AdaptersAreALineEach) {
  EXPECT_EQ(Printed({"adapters"}),
            "Ezusb-0  FIFO4  Kestrel, simulated USB to SPI adapter, firmware 1.2, USB 2\n");
}

TEST_F(TextOutput, ASpectrumHasPeaksInHertz) {
  const std::string text = Printed({"capture", "--averages", "1", "--data"});
  EXPECT_THAT(text, StartsWith("Capture 1\nSpectrum, 0 to 70 g, Hanning, 1 average, option 0, "
                               "Δf 195.7 Hz\n  X  peak    0."));
  // The tooth mesh of the simulated machine stands out on X.
  EXPECT_THAT(text, AllOf(HasSubstr(" g at bin 116 (22699.3 Hz), alarm: None\n"),
                          HasSubstr("\nbin\tX, g\tY, g\tZ, g\n0\t"), HasSubstr("\n255\t")));
  EXPECT_EQ(Lines(text), 6 + 1 + 256);
}

TEST_F(TextOutput, ATimeRecordHasPeaksInMilliseconds) {
  const std::string text = Printed({"capture", "--mode", "time", "--data"});
  EXPECT_THAT(text, AllOf(HasSubstr("\nTime record, "), HasSubstr(" g at sample "),
                          HasSubstr(" ms)\n"), HasSubstr("\nsample\tX, g\tY, g\tZ, g\n0\t")));
  EXPECT_EQ(Lines(text), 6 + 1 + 512);
}

TEST_F(TextOutput, AStoppedCaptureSaysSo) {
  int asked = 0;
  interrupted = [&] { return ++asked == 20; };
  EXPECT_EQ(Simulate({"capture", "--averages", "255"}), ExitCode::NotNew);
  EXPECT_THAT(out.str(), StartsWith("Capture 1, stopped\n"));
}

TEST_F(TextOutput, CtrlCInThePauseBetweenTwoCapturesEndsTheSeries) {
  int asked = 0;
  bool captured = false;
  interrupted = [&] {
    captured = out.str().find("Capture 1") != std::string::npos;
    return captured && ++asked == 3;
  };
  EXPECT_EQ(Simulate({"capture", "--averages", "1", "--count", "2", "--interval", "60"}),
            ExitCode::Interrupted);
  EXPECT_THAT(out.str(), testing::Not(HasSubstr("Capture 2")));
}

TEST_F(TextOutput, CtrlCEndsATransferOfBands) {
  for (const std::vector<std::string>& arguments :
       {std::vector<std::string>{"bands", "read"},
        {"bands", "save", "/data/AlarmSpectrum_a.csv"}}) {
    int asked = 0;
    interrupted = [&] { return ++asked == 3; };
    EXPECT_EQ(Simulate(arguments), ExitCode::Interrupted);
    EXPECT_EQ(out.str(), "");
    EXPECT_NE(error.str(), "");
    EXPECT_FALSE(files.contents.contains("/data/AlarmSpectrum_a.csv"));
  }
}

TEST_F(TextOutput, AFileThatCannotBeReadOrIsTooLargeIsNamed) {
  EXPECT_EQ(Simulate({"bands", "write", "/data/AlarmSpectrum_none.csv"}), ExitCode::Failure);
  EXPECT_EQ(error.str(), "The file /data/AlarmSpectrum_none.csv cannot be read.\n");
  files.contents["/data/AlarmSpectrum_big.csv"] = std::string(std::size_t{2} << 20, ' ');
  EXPECT_EQ(Simulate({"bands", "load", "/data/AlarmSpectrum_big.csv"}), ExitCode::Failure);
  EXPECT_EQ(error.str(),
            "The file /data/AlarmSpectrum_big.csv is too large to be an alarm file.\n");
}

TEST_F(TextOutput, AFileThatCannotBeWrittenIsAFailure) {
  files.failure = "no space left";
  EXPECT_EQ(Simulate({"registers", "dump"}), ExitCode::Failure);
  EXPECT_THAT(error.str(), HasSubstr("Registers_LOG.txt"));
}

// A board that is unplugged at its k-th request, for every k until the command gets through.
TEST_F(TextOutput, ASensorThatIsLostOnTheWayHasAnExitCodeOfItsOwn) {
  for (const std::vector<std::string>& arguments :
       std::vector<std::vector<std::string>>{{"status"},
                                             {"command", "4"},
                                             {"registers", "list"},
                                             {"registers", "dump"},
                                             {"registers", "read", "PROD_ID"},
                                             {"registers", "write", "FFT_AVG", "1"}}) {
    int last = 0;
    for (int k = 1; last == 0; ++k) {
      ASSERT_LT(k, 2000) << arguments[0];
      SimulatedHardware hardware(clock);
      FailingUsbDriver failing(hardware.Adapter());
      driver = &failing;
      failing.FailFrom(k);
      const ExitCode end = Run(arguments);
      if (end == ExitCode::Success) {
        last = k;
        continue;
      }
      EXPECT_EQ(end, ExitCode::NoSensor) << arguments[0] << " at request " << k;
      EXPECT_NE(error.str(), "") << arguments[0] << " at request " << k;
      EXPECT_FALSE(files.contents.contains("/program/Registers_LOG.txt"));
    }
    EXPECT_GT(last, 10) << arguments[0];
    files.contents.clear();
  }
}

}  // namespace
}  // namespace kestrel
