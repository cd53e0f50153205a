// What differs between two set-ups, in words.
// SPDX-License-Identifier: MIT
#include "setup/difference.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "setup/made_setup.h"

namespace kestrel::setup {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

class SetupDifference : public testing::Test {
 protected:
  SetupDifference() { BuildRegisterTable(); }
  ~SetupDifference() override { ResetRegisterTable(); }

  std::vector<Difference> AfterSetting(Register which, std::uint16_t word) {
    now.registers.at(Index(which)) = word;
    return DifferenceOf(MadeSetup(), now);
  }

  setup::Setup now = MadeSetup();
};

TEST_F(SetupDifference, NameTimeAndIdentityAreNoConfiguration) {
  now.name = "other";
  now.when = {};
  now.sensor = {};
  now.program.clear();
  now.revision = 9;
  EXPECT_THAT(DifferenceOf(MadeSetup(), now), IsEmpty());
}

TEST_F(SetupDifference, RegistersOfFieldsDifferFieldByField) {
  EXPECT_THAT(AfterSetting(Register::RecCtrl, 0x2020),
              ElementsAre(Difference{"REC_CTRL, Windowing", "1: Hanning [default]", "2: Flat Top"},
                          Difference{"REC_CTRL, Signal Range", "3: 0 - 70g", "2: 0 - 20g"}));
}

TEST_F(SetupDifference, BitsWithoutAMeaningAreToldToo) {
  EXPECT_THAT(AfterSetting(Register::RecCtrl, 0x1070),
              ElementsAre(Difference{"REC_CTRL, other bits", "0x0", "0x40"}));
}

TEST_F(SetupDifference, NumbersHaveTheirUnits) {
  EXPECT_THAT(AfterSetting(Register::XNull, 100),
              ElementsAre(Difference{"X_NULL", "-2 (-0.0095 g)", "100 (0.4768 g)"}));
}

TEST_F(SetupDifference, TheSystemLimitHasTheUnitOfWhatItWatches) {
  now.registers.at(Index(Register::AlmSMag)) = 1200;
  EXPECT_THAT(AfterSetting(Register::AlmCtrl, 0x0111),
              ElementsAre(Difference{"ALM_S_MAG", "3000 (3.662 V)", "1200 (61.0 \u00B0C)"},
                          Difference{"ALM_CTRL, System Alarm Source", "0: Power supply",
                                     "1: Temperature"}));
}

TEST_F(SetupDifference, BandsDifferInHertzAndG) {
  now.Band(2, 3) = {41, 52, 120, 121, 122, 200, 201, 203};
  EXPECT_THAT(
      DifferenceOf(MadeSetup(), now),
      ElementsAre(Difference{"option 2, band 3, F-low", "40 (122 Hz)", "41 (125 Hz)"},
                  Difference{"option 2, band 3, alarm 2 Z", "202 (0.241 g)", "203 (0.242 g)"}));
}

TEST_F(SetupDifference, NoDifferenceIsOverlooked) {
  const setup::Setup saved = MadeSetup();
  for (std::size_t index = 0; index < kRegisters; ++index) {
    for (unsigned bit = 1; bit <= LargestOf(index); bit <<= 1U) {
      setup::Setup other = saved;
      other.registers.at(index) = static_cast<std::uint16_t>(saved.registers.at(index) ^ bit);
      EXPECT_EQ(DifferenceOf(saved, other).size(), 1U) << kRegisterNames.at(index) << " " << bit;
    }
  }
  for (int option = 0; option < kSampleRateOptions; ++option) {
    for (int band = 1; band <= kAlarmBands; ++band) {
      for (std::size_t field = 0; field < kBandFields.size(); ++field) {
        setup::Setup other = saved;
        other.Band(option, band).at(field) ^= 0x8000U;
        EXPECT_EQ(DifferenceOf(saved, other).size(), 1U) << BandName(option, band) << field;
      }
    }
  }
}

TEST_F(SetupDifference, LevelsOfInputsAreTheWorldsOutside) {
  EXPECT_EQ(WithoutInputs(0x0300, 0x0000), 0x0000);
  EXPECT_EQ(WithoutInputs(0x0301, 0x0000), 0x0101);
  EXPECT_EQ(WithoutInputs(0x0300, 0x0014), 0x0300) << "neither line is general-purpose I/O";
}

}  // namespace
}  // namespace kestrel::setup
