// Choices kept as text: nothing chosen is lost, damage stays on its line.
// SPDX-License-Identifier: MIT
#include "study/choice_text.h"

#include <gmock/gmock.h>

#include <clocale>
#include <cmath>
#include <limits>

#include "support/comma_locale.h"
#include "support/seeds.h"

namespace kestrel::study {
namespace {

using ::testing::IsEmpty;

double Anything(Random& random, double most) {
  return random.OneIn(5) ? most : most * random.Below(1'000'003) / 1'000'003.0;
}

template <typename Word>
Word AnyWord(Random& random, Word last) {
  return static_cast<Word>(random.Between(0, static_cast<int>(last)));
}

std::string AnyName(Random& random) {
  std::vector<std::string> names{
      "", "front", "rear, motor side", "\"quoted\" \\n; = [", "a\nb\tc", "Lüfter µm/s² 軸"};
  return random.Of(names) + std::to_string(random.Below(1000));
}

CursorPlaces AnyPlaces(Random& random, double most) {
  CursorPlaces places;
  if (!random.OneIn(3)) places.at = Anything(random, most);
  if (!random.OneIn(3)) places.second = Anything(random, most);
  return places;
}

analysis::Bearing AnyBearing(Random& random) {
  analysis::Bearing bearing{.name = AnyName(random), .factors = {}, .geometry = {}};
  if (random.OneIn(2)) {
    bearing.geometry = {random.Between(1, 200), 1 + Anything(random, 9), 30.1,
                        0.5 * random.Below(180)};
    bearing.factors = *analysis::FactorsOf(*bearing.geometry);
  } else {
    bearing.factors = {1 + Anything(random, 9), 2 + Anything(random, 9), 5.3, 0.1 + 0.2};
  }
  return bearing;
}

analysis::Machine AnyMachine(Random& random) {
  analysis::Machine machine;
  if (random.OneIn(2)) machine.rpm = 1 + Anything(random, 9'999'999);
  if (random.OneIn(2)) machine.lineHz = 1 + Anything(random, 49'999);
  for (int i = random.Below(4); i > 0; --i) {
    machine.meshes.push_back({.name = AnyName(random), .teeth = random.Between(1, 10'000)});
    machine.bearings.push_back(AnyBearing(random));
    machine.free.push_back({.name = AnyName(random), .hz = 1 + Anything(random, 49'999)});
  }
  machine.harmonics = random.Between(1, 50);
  return machine;
}

void ChoosePicture(StudyChoice& choice, Random& random) {
  choice.view = AnyWord(random, View::Monitor);
  choice.up = AnyWord(random, Scale::Logarithmic);
  choice.across = AnyWord(random, Scale::Logarithmic);
  choice.unit = AnyWord(random, analysis::HorizontalUnit::Order);
  for (bool& shown : choice.shown) shown = random.OneIn(2);
  choice.focus = AnyWord(random, Axis::Z);
  for (bool* flag : {&choice.stacked, &choice.showBands, &choice.showLabels, &choice.showKnown,
                     &choice.difference}) {
    *flag = random.OneIn(2);
  }
  for (int i = random.Below(5); i > 0; --i) {
    choice.extras.insert(AnyWord(random, Extra::MinimumHold));
  }
  choice.averageOf = random.Between(1, 10'000);
  for (int i = random.Below(4); i > 0; --i) {
    const double from = Anything(random, 20'000);
    choice.bands.push_back({AnyName(random), from, from + 1 + Anything(random, 20'000)});
    choice.markers.push_back({Anything(random, 50'000), AnyName(random)});
    choice.knownOff.insert(AnyName(random));
  }
}

StudyChoice AnyChoice(Random& random) {
  StudyChoice choice;
  ChoosePicture(choice, random);
  choice.quantity = {
      .quantity = AnyWord(random, analysis::Quantity::Displacement),
      .amplitude = AnyWord(random, analysis::Amplitude::PeakToPeak),
      .reference = AnyWord(random, analysis::LevelReference::MicrometrePerSecondSquared),
      .lowestHz = Anything(random, 50'000)};
  choice.timeQuantity = AnyWord(random, TimeQuantity::Velocity);
  choice.timeFromHz = Anything(random, 50'000);
  choice.meaning = AnyWord(random, analysis::MagnitudeMeaning::Rms);
  choice.timeWindow = AnyWord(random, analysis::WindowKind::FlatTop);
  choice.cursor = AnyWord(random, CursorKind::Sideband);
  choice.inSpectrum = AnyPlaces(random, 50'000);
  choice.inTime = AnyPlaces(random, 1'000);
  choice.cursorMembers = random.Between(1, 50);
  choice.peaks = {.floorG = Anything(random, 1'000),
                  .prominenceDb = Anything(random, 200),
                  .atMost = static_cast<std::size_t>(random.Between(1, 1'000))};
  choice.machine = AnyMachine(random);
  const double ab = 0.01 + Anything(random, 9);
  choice.zones = {AnyName(random), ab, ab * 1.5, ab * 3};
  return choice;
}

// What is kept of a choice: a reference is data, and a difference is to it.
StudyChoice Kept(StudyChoice choice) {
  choice.extras.erase(Extra::Frozen);
  choice.extras.erase(Extra::Reference);
  choice.difference = false;
  return choice;
}

TEST(ChoiceText, WhatWasChosenIsReadBackExactly) {
  WithSeeds(500, [](Random& random) {
    const StudyChoice choice = AnyChoice(random);
    const std::string text = TextOf(choice);
    const ReadChoice read = ChoiceFrom(text);
    EXPECT_EQ(read.choice, Kept(choice)) << text;
    EXPECT_THAT(read.messages, IsEmpty()) << text;
    EXPECT_EQ(TextOf(read.choice), text);
  });
}

TEST(ChoiceText, TheLocaleHasNoSay) {
  const CommaLocale locale;
  if (!locale.installed()) GTEST_SKIP() << "no locale with a comma could be built";
  Random random(3);
  const StudyChoice choice = AnyChoice(random);
  const std::string text = TextOf(choice);
  ASSERT_NE(std::setlocale(LC_NUMERIC, CommaLocale::kName), nullptr);
  const ReadChoice read = ChoiceFrom(text);
  const std::string again = TextOf(choice);
  std::setlocale(LC_NUMERIC, "C");
  EXPECT_EQ(read.choice, Kept(choice));
  EXPECT_EQ(again, text);
}

TEST(ChoiceText, NothingKeptIsWhatAStudyBeginsWith) {
  for (const char* text : {"", "\n", "\r\n \n"}) {
    EXPECT_EQ(ChoiceFrom(text).choice, StudyChoice());
    EXPECT_THAT(ChoiceFrom(text).messages, IsEmpty());
  }
}

TEST(ChoiceText, EachLineIsNeededForWhatItTells) {
  Random random(5);
  StudyChoice choice = AnyChoice(random);
  choice.machine = {.rpm = 59'214, .lineHz = 50, .meshes = {{"pump", 17}}, .harmonics = 7};
  std::string text = TextOf(choice);
  std::size_t lines = 0;
  for (std::size_t begin = 0; begin < text.size(); ++lines) {
    const std::size_t end = text.find('\n', begin) + 1;
    std::string without = text;
    without.erase(begin, end - begin);
    const bool isDefault =
        TextOf(StudyChoice()).find(text.substr(begin, end - begin)) != std::string::npos;
    EXPECT_EQ(ChoiceFrom(without).choice == Kept(choice), isDefault)
        << text.substr(begin, end - begin);
    begin = end;
  }
  EXPECT_GT(lines, 30U);
}

TEST(ChoiceText, DamageStaysOnItsLineAndIsNamed) {
  Random random(7);
  const StudyChoice choice = AnyChoice(random);
  for (const std::string damaged :
       {"average of = 0",
        "average of = 10001",
        "average of = 2.5",
        "average of = \"10\"",
        "average of = ",
        "average of",
        "average of = 10 10",
        "cursor members = 1e9",
        "cursor members = -1",
        "peaks at most = 0",
        "peaks at most = 1e19",
        "peaks from g = nan",
        "peaks from g = NaN",
        "peaks from g = null",
        "peaks above noise dB = -0.1",
        "shaft rpm = -1",
        "shaft rpm = 0",
        "shaft rpm = 1e999",
        "shaft rpm = 10000001",
        "shaft rpm = \"59214\"",
        "shaft rpm = 1.500,5",
        "line Hz = 0",
        "harmonics = 51",
        "view = \"Spectrum\"",
        "view = 1",
        "view = null",
        "view = [\"time\"]",
        "focus = \"W\"",
        "window of samples = \"unknown window\"",
        "trace = \"frozen\"",
        "trace = \"reference\"",
        "axes shown = [true,true]",
        "axes shown = [1,1,1]",
        "axes shown = true",
        "stacked = 1",
        "cursor Hz = [1]",
        "cursor Hz = [-1,null]",
        "cursor Hz = [1,\"2\"]",
        "cursor s = {}",
        "gear mesh = {\"name\":\"a\",\"teeth\":0}",
        "gear mesh = {\"teeth\":3}",
        "gear mesh = []",
        "bearing = {\"name\":\"a\"}",
        "bearing = 3",
        "bearing = {\"name\":\"a\",\"elements\":9,\"element diameter\":40,"
        "\"pitch diameter\":39,\"contact degrees\":0}",
        "bearing = {\"name\":\"a\",\"outer\":1,\"inner\":2,\"spin\":3,\"cage\":1.5}",
        "free frequency = {\"name\":\"a\",\"Hz\":0}",
        "marker = {\"Hz\":-1,\"text\":\"a\"}",
        "marker = {\"Hz\":1,\"text\":2}",
        "band = {\"name\":\"a\",\"from Hz\":2,\"to Hz\":2}",
        "zones = {\"name\":\"a\",\"ab\":2,\"bc\":1,\"cd\":3}",
        "known off = 3",
        "nobody = 1",
        "= 1",
        "\xff\xfe\x01",
        "marker = {\"Hz\":1,\"text\":\"\xff\"}"}) {
    for (const bool isFirst : {true, false}) {
      const std::string text =
          isFirst ? damaged + "\r\n" + TextOf(choice) : TextOf(choice) + damaged + "\n";
      const ReadChoice read = ChoiceFrom(text);
      EXPECT_EQ(read.choice, Kept(choice)) << damaged;
      ASSERT_EQ(read.messages.size(), 1U) << damaged;
      EXPECT_EQ(read.messages[0].starts_with("Line 1 "), isFirst) << damaged;
    }
    EXPECT_EQ(ChoiceFrom(damaged).choice, StudyChoice()) << damaged;
  }
}

TEST(ChoiceText, AMessageNamesTheSetting) {
  EXPECT_THAT(ChoiceFrom("\nshaft rpm = -1").messages,
              testing::ElementsAre("Line 2 cannot be read: shaft rpm"));
  EXPECT_THAT(ChoiceFrom("colour = 1").messages, testing::ElementsAre("Line 1 is not a setting"));
}

TEST(ChoiceText, WhateverIsReadCanBeKeptAgain) {
  WithSeeds(300, [](Random& random) {
    std::string text = TextOf(AnyChoice(random));
    for (int i = random.Between(1, 40); i > 0; --i) {
      const auto place = static_cast<std::size_t>(random.Below(static_cast<int>(text.size())));
      text[place] = static_cast<char>(random.Below(256));
    }
    const ReadChoice read = ChoiceFrom(text);
    const ReadChoice again = ChoiceFrom(TextOf(read.choice));
    EXPECT_EQ(again.choice, read.choice) << text;
    EXPECT_THAT(again.messages, IsEmpty()) << text;
  });
}

TEST(ChoiceText, WhatIsNoTextOrNoNumberIsKeptWithoutHarm) {
  StudyChoice choice;
  choice.markers = {{100, "\xff\xfe"}};
  choice.averageOf = 3;
  choice.peaks.floorG = std::numeric_limits<double>::quiet_NaN();
  choice.quantity.lowestHz = std::numeric_limits<double>::infinity();
  choice.timeWindow = analysis::WindowKind::Unknown;
  const ReadChoice read = ChoiceFrom(TextOf(choice));
  EXPECT_EQ(read.choice.averageOf, 3);
  ASSERT_EQ(read.choice.markers.size(), 1U);
  EXPECT_EQ(read.choice.markers[0].hz, 100);
  EXPECT_EQ(read.choice.peaks, analysis::PeakSettings());
  EXPECT_EQ(read.choice.timeWindow, StudyChoice().timeWindow);
  EXPECT_EQ(read.messages.size(), 2U);
}

TEST(ChoiceText, AHugeTextIsReadAsFarAsAListMayGo) {
  std::string text;
  for (int i = 0; i < 100'000; ++i) text += "marker = {\"Hz\":1,\"text\":\"a\"}\n";
  text += "marker = " + std::string(10'000'000, '[') + "\n";
  text += "known off = " + std::string(60'000, '[') + "\n";
  text += "average of = 7\n";
  const ReadChoice read = ChoiceFrom(text);
  EXPECT_EQ(read.choice.markers.size(), 1'000U);
  EXPECT_EQ(read.choice.averageOf, 7);
  EXPECT_FALSE(read.messages.empty());
  EXPECT_LE(read.messages.size(), 50U);
}

}  // namespace
}  // namespace kestrel::study
