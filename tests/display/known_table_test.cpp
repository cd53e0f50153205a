// Known frequencies as a table: what is seen, what is not and which option would do.
// SPDX-License-Identifier: MIT
#include "display/known_table.h"

#include <gmock/gmock.h>

#include "study/records.h"

namespace kestrel::study {
namespace {

using ::testing::HasSubstr;

analysis::Bearing Front() {
  return {.name = "front", .factors = {8.33, 11.67, 5.3, 0.417}, .geometry = {}};
}

class KnownTableTest : public ::testing::Test {
 protected:
  KnownTableTest() {
    choice_.machine.rpm = 59214;
    choice_.machine.lineHz = 50;
    choice_.machine = With(With(choice_.machine, Front()),
                           analysis::GearMesh{.name = "Gear mesh, 23 teeth", .teeth = 23});
  }
  KnownTable Table() {
    study_.Choose(choice_);
    return KnownTableOf(study_);
  }
  static const KnownRow& RowOf(const KnownTable& table, const std::string& name) {
    static const KnownRow kNone;
    for (const KnownRow& row : table.rows) {
      if (row.name == name) return row;
    }
    ADD_FAILURE() << "no " << name;
    return kNone;
  }

  Study study_ = StudyWithSeconds();
  StudyChoice choice_;
};

TEST_F(KnownTableTest, TellsFrequencyOrderAndLines) {
  study_.Take(SpectrumRecord(0, {{116, 1000}}));
  const KnownTable table = Table();
  const KnownRow& mesh = RowOf(table, "Gear mesh, 23 teeth");
  EXPECT_EQ(mesh.frequency, "22,698.7");
  EXPECT_EQ(mesh.order, "23×");
  EXPECT_TRUE(mesh.isSeen);
  EXPECT_EQ(RowOf(table, "Cage, front").order, "0.417×");
  EXPECT_EQ(RowOf(table, "Outer race, front").lines, "5");
  EXPECT_EQ(RowOf(table, "Mains").order, "");
}

TEST_F(KnownTableTest, WhatCannotBeSeenSaysWhyAndWhatWouldDo) {
  study_.Take(SpectrumRecord(0, {{116, 1000}}));
  const KnownTable table = Table();
  const KnownRow& mains = RowOf(table, "Mains");
  EXPECT_FALSE(mains.isSeen);
  EXPECT_EQ(mains.lines, "0");
  EXPECT_THAT(mains.why, HasSubstr("option 1"));
  EXPECT_THAT(table.note, HasSubstr("Mains"));
  EXPECT_THAT(table.note, HasSubstr("below"));
  EXPECT_THAT(table.note, HasSubstr("option 1"));
}

TEST_F(KnownTableTest, WithoutARecordNothingIsSaidToBeUnseen) {
  for (const KnownRow& row : Table().rows) {
    EXPECT_TRUE(row.isSeen);
    EXPECT_EQ(row.lines, "");
  }
}

TEST_F(KnownTableTest, GearsAndBearingsWaitForASpeed) {
  choice_.machine.rpm.reset();
  EXPECT_THAT(Table().note, HasSubstr("wait for the shaft's speed"));
}

TEST_F(KnownTableTest, WhatIsSwitchedOffStaysInTheTableAlone) {
  choice_.knownOff = {"Mains"};
  EXPECT_FALSE(RowOf(Table(), "Mains").isOn);
  for (const auto& known : KnownOf(choice_)) EXPECT_NE(known.name, "Mains");
}

TEST_F(KnownTableTest, AnyPartCanBeTakenAwayByItsFrequency) {
  for (const auto& [name, left] : std::vector<std::pair<std::string, std::size_t>>{
           {"Cage, front", 3}, {"Gear mesh, 23 teeth", 6}, {"Mains", 6}}) {
    const auto less = Without(choice_.machine, RowOf(Table(), name).known);
    EXPECT_EQ(analysis::FrequenciesOf(less).size(), left) << name;
  }
  const auto shaft = Without(choice_.machine, RowOf(Table(), "Shaft").known);
  EXPECT_FALSE(shaft.rpm);
  const auto free = With(choice_.machine, analysis::FreeFrequency{.name = "belt", .hz = 1210});
  EXPECT_EQ(Without(free, analysis::FrequenciesOf(free).back()).free.size(), 0U);
}

TEST_F(KnownTableTest, APartOfTheSameNameGivesWay) {
  analysis::Bearing other = Front();
  other.factors.cage = 0.4;
  EXPECT_EQ(With(choice_.machine, other).bearings, std::vector{other});
}

TEST_F(KnownTableTest, TheFirstFrequencyIsShown) {
  StudyChoice choice;
  analysis::Machine machine;
  machine.lineHz = 50;
  ChangeMachine(choice, machine);
  EXPECT_TRUE(choice.showKnown);
  choice.showKnown = false;
  machine.rpm = 1500;
  ChangeMachine(choice, machine);
  EXPECT_FALSE(choice.showKnown);
}

TEST_F(KnownTableTest, TheShaftIsAtTheCursorOrAtTheLargestPeak) {
  EXPECT_FALSE(ShaftHzOf(study_));
  study_.Take(SpectrumRecord(0, {{39, 500}, {40, 1000}, {41, 500}, {90, 300}}));
  choice_.cursor = CursorKind::None;
  study_.Choose(choice_);
  EXPECT_NEAR(*ShaftHzOf(study_), 40 * 195.7, 50);
  choice_.cursor = CursorKind::Single;
  choice_.inSpectrum.at = 1234.5;
  study_.Choose(choice_);
  EXPECT_EQ(*ShaftHzOf(study_), 1234.5);
}

}  // namespace
}  // namespace kestrel::study
