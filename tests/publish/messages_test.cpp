// Messages as their readers get them.
// SPDX-License-Identifier: MIT
#include "publish/messages.h"

#include <limits>
#include <nlohmann/json.hpp>

namespace kestrel::publish {
namespace {

using nlohmann::json;
using namespace std::chrono_literals;

constexpr Moment kMoment{std::chrono::sys_days{std::chrono::year{2024} / 3 / 14} + 8h + 26min +
                         53s};

TEST(Messages, LevelsTellRecordAndAxes) {
  Levels levels{.of = {"bench 1", "pump"}, .record = {"00ff", kMoment, 1, 2, 70}};
  levels.axes[0] = {0.25, 1.5, 587.25, 2.8, "B"};
  EXPECT_EQ(
      JsonOf(levels),
      R"({"bench":"bench 1","sensor":"pump","time":"2024-03-14T08:26:53.000Z","record":"00ff",)"
      R"("option":1,"window":2,"range_g":70,"axes":{)"
      R"("x":{"rms_g":0.25,"peak_g":1.5,"top_hz":587.25,"severity_mm_s":2.8,"severity_zone":"B"},)"
      R"("y":{"rms_g":null,"peak_g":null,"top_hz":null},)"
      R"("z":{"rms_g":null,"peak_g":null,"top_hz":null}}})");
}

TEST(Messages, AnAlarmTellsWhatItIsAndByHowMuch) {
  const Alarm alarm{.id = "7",
                    .of = {"b", "s"},
                    .event = AlarmEvent::End,
                    .kind = AlarmKind::Threshold,
                    .grade = AlarmGrade::Fault,
                    .axis = Axis::Z,
                    .option = 2,
                    .number = 6,
                    .time = kMoment,
                    .uid = "ab",
                    .level = 1.25,
                    .limit = 1.5,
                    .unit = "g"};
  EXPECT_EQ(
      JsonOf(alarm),
      R"({"id":"7","bench":"b","sensor":"s","event":"end","what":"threshold","grade":"fault",)"
      R"("axis":"z","option":2,"number":6,"time":"2024-03-14T08:26:53.000Z","record":"ab",)"
      R"("level":1.25,"limit":1.5,"unit":"g"})");
  EXPECT_TRUE(json::parse(JsonOf(Alarm{}))["record"].is_null());
}

TEST(Messages, AStatusTellsWhatComesNext) {
  const Status status{.of = {"b", "s"},
                      .state = State::Trouble,
                      .time = kMoment,
                      .nextCapture = kMoment + 10s,
                      .records = 5,
                      .missed = 2,
                      .incidentsOpen = 1,
                      .alarmsOn = 3,
                      .note = "the sensor is unplugged"};
  EXPECT_EQ(
      JsonOf(status),
      R"({"bench":"b","sensor":"s","state":"trouble","time":"2024-03-14T08:26:53.000Z",)"
      R"("next_capture":"2024-03-14T08:27:03.000Z","last_record":null,"records":5,"missed":2,)"
      R"("incidents_open":1,"alarms_on":3,"note":"the sensor is unplugged"})");
  EXPECT_EQ(LostJson({"b", "s"}), R"({"bench":"b","sensor":"s","state":"lost"})");
}

TEST(Messages, ASpectrumIsAnArrayAnAxis) {
  Spectrum spectrum{.of = {"b", "s"}, .record = {"u", kMoment, 0, 1, 5}, .binHz = 195.7};
  spectrum.g = {{{0.1, 0.00030517578125}, {}, {3.0}}};
  const json read = json::parse(JsonOf(spectrum));
  EXPECT_EQ(read["axes"]["x"].get<std::vector<double>>(), spectrum.g[0]);
  EXPECT_TRUE(read["axes"]["y"].empty());
  EXPECT_EQ(read["bin_hz"], 195.7);
  EXPECT_EQ(read["unit"], "g peak");
}

TEST(Messages, NumbersThatAreNoneAreNull) {
  Levels levels;
  levels.axes[1].rmsG = std::numeric_limits<double>::quiet_NaN();
  levels.axes[1].peakG = std::numeric_limits<double>::infinity();
  const json read = json::parse(JsonOf(levels));
  EXPECT_TRUE(read["axes"]["y"]["rms_g"].is_null());
  EXPECT_TRUE(read["axes"]["y"]["peak_g"].is_null());
}

TEST(Messages, WhateverTheNamesHoldTheyAreOneLineOfJson) {
  const Names names{"a\"b\n\xFF{}", std::string("\0\\", 2) + std::string(10'000, 'x')};
  const Status status{.of = names, .note = std::string(100'000, '\n') + "\xC3"};
  for (const std::string& text : {JsonOf(Levels{.of = names}), JsonOf(Alarm{.of = names}),
                                  JsonOf(status), JsonOf(Spectrum{.of = names}), LostJson(names)}) {
    EXPECT_EQ(text.find('\n'), std::string::npos);
    EXPECT_LT(text.size(), 4000U);
    EXPECT_EQ(json::parse(text)["bench"], "a\"b��{}");
  }
}

}  // namespace
}  // namespace kestrel::publish
