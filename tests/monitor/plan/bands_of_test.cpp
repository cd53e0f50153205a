// Files of alarm bands that a plan names.
// SPDX-License-Identifier: MIT
#include "monitor/plan/bands_of.h"

#include <gmock/gmock.h>

#include "alarms/alarm_file.h"
#include "support/memory_files.h"

namespace kestrel::monitor {
namespace {

using testing::HasSubstr;
using testing::SizeIs;

class BandFiles : public testing::Test {
 protected:
  BandFiles() {
    table_(kFLowField, 1, 0) = 30;
    table_(kFHighField, 1, 0) = 60;
    table_(Alarm1Field(Axis::X), 1, 0) = 500;
    files_.contents["/plans/bands/AlarmSpectrum_pump.csv"] = AlarmFileText(table_);
  }
  BandTable table_;
  MemoryFiles files_;
};

TEST_F(BandFiles, AreReadForTheStepsThatNameThemBesideThePlan) {
  Plan plan;
  plan.steps = {{}, {.bands = "bands/AlarmSpectrum_pump.csv"}, {.kind = StepKind::Wide}};
  const auto read = BandsOf(plan, files_, "/plans");
  ASSERT_TRUE(std::holds_alternative<std::vector<std::optional<BandTable>>>(read));
  const auto& all = std::get<std::vector<std::optional<BandTable>>>(read);
  ASSERT_THAT(all, SizeIs(3));
  EXPECT_FALSE(all[0] || all[2]);
  EXPECT_EQ(all[1], table_);
}

TEST_F(BandFiles, EachThatIsNoneIsAMistakeOfItsLine) {
  files_.contents["/plans/bad.csv"] = "no bands";
  Plan plan;
  plan.steps = {{.bands = "bad.csv", .line = 4},
                {.bands = "/plans/bands/AlarmSpectrum_pump.csv", .line = 7},
                {.bands = "none.csv", .line = 9}};
  const auto read = BandsOf(plan, files_, "/plans");
  const auto* mistakes = std::get_if<Mistakes>(&read);
  ASSERT_NE(mistakes, nullptr);
  ASSERT_THAT(*mistakes, SizeIs(2));
  EXPECT_EQ((*mistakes)[0].line, 4U);
  EXPECT_THAT((*mistakes)[0].what, HasSubstr("bad.csv"));
  EXPECT_EQ((*mistakes)[1].line, 9U);
  EXPECT_THAT((*mistakes)[1].what, HasSubstr("none.csv cannot be read"));
}

}  // namespace
}  // namespace kestrel::monitor
