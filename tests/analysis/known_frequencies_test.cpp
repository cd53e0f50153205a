// Behaviour of known frequencies.
// SPDX-License-Identifier: MIT
#include "analysis/known_frequencies.h"

#include <gmock/gmock.h>

#include <algorithm>
#include <limits>

#include "tones.h"

namespace kestrel::analysis {
namespace {

Machine Gearbox() {
  return {.rpm = 59214.0,
          .lineHz = 50.0,
          .meshes = {{"Gear mesh", 23}},
          .bearings = {{"front", {8.33, 11.67, 5.30, 0.42}, std::nullopt}},
          .free = {{"Fan", 1234.0}},
          .harmonics = 5};
}

const KnownFrequency& Of(const std::vector<KnownFrequency>& known, KnownKind kind) {
  return *std::ranges::find(known, kind, &KnownFrequency::kind);
}

Spectrum Option0() {
  return SpectrumOfTones({}, WindowKind::Hanning);
}

TEST(KnownFrequencies, FollowTheShaft) {
  const std::vector<KnownFrequency> known = FrequenciesOf(Gearbox());
  ASSERT_EQ(known.size(), 8U);
  EXPECT_NEAR(Of(known, KnownKind::Shaft).hz, 986.9, 1e-9);
  EXPECT_NEAR(Of(known, KnownKind::GearMesh).hz, 22698.7, 1e-9);
  EXPECT_EQ(Of(known, KnownKind::OuterRace).name, "Outer race, front");
  EXPECT_NEAR(Of(known, KnownKind::OuterRace).hz, 8220.877, 1e-6);
  EXPECT_FALSE(Of(known, KnownKind::Line).order);
}

TEST(KnownFrequencies, WithoutASpeedOnlyWhatDoesNotTurnIsKnown) {
  for (const double rpm : {0.0, -1.0, std::numeric_limits<double>::quiet_NaN(),
                           std::numeric_limits<double>::infinity()}) {
    Machine machine = Gearbox();
    machine.rpm = rpm;
    EXPECT_EQ(FrequenciesOf(machine).size(), 2U) << rpm;
    machine.lineHz = rpm;
    machine.free[0].hz = rpm;
    EXPECT_TRUE(FrequenciesOf(machine).empty()) << rpm;
  }
  EXPECT_TRUE(FrequenciesOf({}).empty());
}

TEST(KnownFrequencies, MeshesWithoutTeethAndBearingsWithoutFactorsAreLeftOut) {
  Machine machine = Gearbox();
  machine.meshes[0].teeth = 0;
  machine.bearings[0].factors.outer = -1;
  EXPECT_EQ(FrequenciesOf(machine).size(), 3U);
}

TEST(KnownFrequencies, BearingsAreDrawnTwoPercentWideAndOthersNarrower) {
  const std::vector<KnownFrequency> known = FrequenciesOf(Gearbox());
  EXPECT_DOUBLE_EQ(WidthOf(Of(known, KnownKind::OuterRace), 40000, 195.7), 800);
  EXPECT_DOUBLE_EQ(WidthOf(Of(known, KnownKind::OuterRace), 4000, 195.7), 195.7);
  EXPECT_DOUBLE_EQ(WidthOf(Of(known, KnownKind::Shaft), 1000, 195.7), 195.7 / 2);
}

TEST(KnownFrequencies, MarkersLieOnTheAxisAndOutsideTheOffset) {
  const std::vector<Marker> markers = MarkersOf(FrequenciesOf(Gearbox()), Option0());
  ASSERT_FALSE(markers.empty());
  for (const Marker& marker : markers) {
    EXPECT_GE(marker.hz, 2 * BinWidth(0));
    EXPECT_LE(marker.hz, 255 * BinWidth(0));
    EXPECT_NE(marker.kind, KnownKind::Line);
  }
  EXPECT_TRUE(std::ranges::is_sorted(markers, std::less{}, &Marker::hz));
  EXPECT_TRUE(MarkersOf(FrequenciesOf(Gearbox()), Spectrum{}).empty());
}

TEST(KnownFrequencies, HarmonicsAndSidebandsNeedThreeBinsBetweenThem) {
  Machine machine = Gearbox();
  const auto count = [&](KnownKind kind) {
    const std::vector<Marker> markers = MarkersOf(FrequenciesOf(machine), Option0());
    return std::ranges::count(markers, kind, &Marker::kind);
  };
  EXPECT_EQ(count(KnownKind::Shaft), 5);
  EXPECT_EQ(count(KnownKind::InnerRace),
            12);  // four harmonics on the axis, the fifth's pair misses
  machine.rpm = 2.9 * BinWidth(0) * 60;
  EXPECT_EQ(count(KnownKind::Shaft), 1);
  EXPECT_EQ(count(KnownKind::InnerRace), 5);
}

TEST(KnownFrequencies, ALineIsNamedByTheMarkerItLiesIn) {
  const std::vector<Marker> markers = MarkersOf(FrequenciesOf(Gearbox()), Option0());
  const auto name = [&](double hz) -> std::string {
    const std::optional<Marker> marker = NearestMarker(markers, {.hz = hz, .hzBound = 1});
    return marker ? marker->name : "";
  };
  EXPECT_EQ(name(987.0), "Shaft 1×");
  EXPECT_EQ(name(1974.3), "Shaft 2×");
  EXPECT_EQ(name(22698.2), "Gear mesh");
  EXPECT_EQ(name(21712), "Gear mesh \u2212 1×");
  EXPECT_EQ(name(23686), "Gear mesh + 1×");
  EXPECT_EQ(name(8220.6), "Outer race, front 1×");
  EXPECT_EQ(name(16439), "Outer race, front 2×");
  EXPECT_EQ(name(1230), "Fan");
  EXPECT_EQ(name(6500), "");
  EXPECT_EQ(name(std::numeric_limits<double>::quiet_NaN()), "");
}

TEST(KnownFrequencies, WhatLiesOffTheAxisNamesTheOptionThatWouldDo) {
  const std::vector<KnownFrequency> known = FrequenciesOf(Gearbox());
  const std::optional<Refusal> refusal = WhyNotSeen(Of(known, KnownKind::Line), Option0());
  ASSERT_TRUE(refusal);
  EXPECT_EQ(refusal->title, "Mains cannot be seen in this record");
  EXPECT_EQ(refusal->reason, "50.0 Hz lies below 392 Hz.");
  EXPECT_EQ(refusal->cureOption, 1);
  EXPECT_FALSE(WhyNotSeen(Of(known, KnownKind::Shaft), Option0()));
  const std::optional<Refusal> never =
      WhyNotSeen({.kind = KnownKind::Free, .name = "Whistle", .hz = 80000}, Option0());
  EXPECT_EQ(never->cure, "No sample-rate option reaches it");
}

TEST(KnownFrequencies, ABearingWithoutANameIsNamedByItsPart) {
  Machine machine = Gearbox();
  machine.bearings[0].name = "";
  EXPECT_EQ(Of(FrequenciesOf(machine), KnownKind::Cage).name, "Cage");
}

TEST(KnownFrequencies, OfTwoMarkersOfOneFrequencyTheFirstNamesTheLine) {
  const std::vector<KnownFrequency> known{
      {.kind = KnownKind::Free, .name = "Fan", .hz = 1000},
      {.kind = KnownKind::Free, .name = "Belt", .hz = 1000},
      {.kind = KnownKind::Free, .name = "Nothing", .hz = std::numeric_limits<double>::quiet_NaN()}};
  const std::vector<Marker> markers = MarkersOf(known, Option0());
  ASSERT_EQ(markers.size(), 2U);
  EXPECT_EQ(NearestMarker(markers, {.hz = 1000, .hzBound = 1})->name, "Fan");
  EXPECT_EQ(NearestMarker(markers, {.hz = 1010, .hzBound = 1})->name, "Fan");
}

}  // namespace
}  // namespace kestrel::analysis
