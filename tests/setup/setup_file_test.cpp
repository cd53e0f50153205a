// Files of set-ups: nothing lost, and nothing taken that is not whole.
// SPDX-License-Identifier: MIT
#include "setup/setup_file.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "setup/made_setup.h"
#include "support/reset_device.h"
#include "support/seeds.h"

namespace kestrel::setup {
namespace {

using testing::HasSubstr;
using testing::StartsWith;

class SetupFile : public testing::Test {
 protected:
  SetupFile() { BuildRegisterTable(); }
  ~SetupFile() override { ResetRegisterTable(); }

  // Why the file is refused once this text stands in the place of that one.
  std::string Refused(const std::string& old, const std::string& text) {
    std::string file = SetupFileText(MadeSetup());
    const std::size_t at = file.find(old);
    EXPECT_NE(at, std::string::npos) << old;
    file.replace(at, old.size(), text);
    return Why(file);
  }
  static std::string Why(const std::string& file) {
    const auto read = ReadSetupFile("pump.json", file);
    return read ? "taken" : read.Why().Text();
  }
};

TEST_F(SetupFile, EverySetupComesBackAsItWas) {
  std::mt19937 random(7);
  for (int i = 0; i < 50; ++i) {
    const setup::Setup setup = RandomSetup(random);
    const auto read = ReadSetupFile("pump.json", SetupFileText(setup));
    ASSERT_TRUE(read) << read.Why().Text();
    EXPECT_EQ(*read, setup);
  }
}

TEST_F(SetupFile, WhatWordsMeanStandsBesideThem) {
  const std::string file = SetupFileText(MadeSetup());
  EXPECT_THAT(file, HasSubstr(R"-({"name":"X_NULL","value":65534,"means":"-2 (-0.0095 g)"})-"));
  EXPECT_THAT(file, HasSubstr(R"-({"name":"ALM_S_MAG","value":3000,"means":"3000 (3.662 V)"})-"));
  EXPECT_THAT(file, HasSubstr(R"("means":"0x010A: Time Unit 1: Minutes, Count 10"})"));
  EXPECT_THAT(file, HasSubstr("F-low 122 Hz, F-high 159 Hz, alarm 1 X 0.143 g"));
}

TEST_F(SetupFile, AFileCutAtAnyByteIsRefusedByNameAndLine) {
  const std::string file = SetupFileText(MadeSetup());
  const std::size_t end = file.find_last_of('}');
  for (std::size_t length = 0; length <= end; ++length) {
    const std::string why = Why(file.substr(0, length));
    ASSERT_THAT(why, StartsWith("pump.json, line ")) << length;
  }
  EXPECT_EQ(Why(file.substr(0, end)), "pump.json, line " +
                                          std::to_string(std::ranges::count(file, '\n')) +
                                          ": the file ends in the middle of the set-up");
  EXPECT_EQ(Why(file.substr(0, end + 1)), "taken") << "a line end at the end is not part of it";
}

TEST_F(SetupFile, AnyByteThatIsAnotherIsRefusedOrTakenAsItStands) {
  const std::string file = SetupFileText(MadeSetup());
  std::mt19937 random(11);
  for (std::size_t at = 0; at < file.size(); at += 1 + random() % 7) {
    std::string damaged = file;
    damaged.at(at) = static_cast<char>(random() % 256);
    const auto read = ReadSetupFile("pump.json", damaged);
    const std::string why = read ? "" : read.Why().Text();
    EXPECT_TRUE(read || why.starts_with("pump.json")) << why;
  }
}

TEST_F(SetupFile, ForeignAndNewerFilesAreTold) {
  EXPECT_EQ(Why("[1, 2]"),
            "pump.json: this is not a set-up of a sensor: its \"format\" is not \"kestrel setup\"");
  EXPECT_EQ(Why(R"({"format": "kestrel records"})"),
            "pump.json: this is not a set-up of a sensor: its \"format\" is not \"kestrel setup\"");
  EXPECT_EQ(Refused(R"("format_version": 1)", R"("format_version": 2)"),
            "pump.json: format_version: \"2\" is newer than this program, which reads version 1; a "
            "newer program reads it");
  EXPECT_EQ(Refused(R"("format_version": 1)", R"("format_version": "one")"),
            "pump.json: format_version: \"one\" is not a version");
  EXPECT_EQ(Why("Sample Rate Option,  Band\r\n"),
            "pump.json, line 1: the text is not valid JSON from \"Sample Rate Option,  Band\" on");
}

TEST_F(SetupFile, ValuesThatNoRegisterHoldsAreNamed) {
  const auto number = [this](const char* text) {
    return Refused(R"("FFT_AVG","value":8)", std::string(R"("FFT_AVG","value":)") + text);
  };
  const std::string bounds = " is not a whole number from 0 to 65535";
  for (const char* text :
       {"65536", "-1", "1.5", "1e3", "true", "null", "18446744073709551615", "1e400"}) {
    EXPECT_NE(number(text), "taken") << text;
  }
  EXPECT_EQ(number("65536"), "pump.json: register FFT_AVG: \"65536\"" + bounds);
  EXPECT_EQ(number("\"8\""), "pump.json: register FFT_AVG: \"8\"" + bounds);
  EXPECT_EQ(number("[8]"), "pump.json: register FFT_AVG: \"[8]\"" + bounds);
  EXPECT_EQ(Refused(R"("REC_PNTR","value":5)", R"("REC_PNTR","value":16)"),
            "pump.json: register REC_PNTR: \"16\" is not a whole number from 0 to 15");
  EXPECT_EQ(Refused(R"("alarm1_y":121)", R"("alarm1_y":70000)"),
            "pump.json: option 2, band 3, alarm1_y: \"70000\"" + bounds);
  EXPECT_EQ(Refused(R"("option":3,"band":6)", R"("option":4,"band":6)"),
            "pump.json: bands, option: \"4\" is not a whole number from 0 to 3");
  EXPECT_EQ(Refused("2024-03-14T08:26:53.250Z", "yesterday"),
            "pump.json: saved: \"yesterday\" is not a time like 2024-03-14T08:26:53Z");
}

TEST_F(SetupFile, WhatIsMissingTwiceOrUnknownIsNamed) {
  EXPECT_EQ(Refused("\"X_NULL\"", "\"Y_NULL\""), "pump.json: registers: Y_NULL stands twice");
  EXPECT_EQ(Refused("\"X_NULL\"", "\"COMMAND\""),
            "pump.json: registers: \"COMMAND\" is not a register of a set-up");
  EXPECT_EQ(Refused(R"("band":6)", R"("band":5)"),
            "pump.json: bands: option 0, band 5 stands twice");
  EXPECT_EQ(Refused(R"("f_low":40)", R"("f_lo":40)"), "pump.json: bands: \"f_low\" is missing");
  EXPECT_EQ(Refused(R"("f_low":40)", R"("f_low":40,"f_low":41)"),
            "pump.json: the key \"f_low\" stands twice");
  EXPECT_EQ(Refused(R"("name": "pump 3")", R"("name": "pump 3", "colour": 1)"),
            "pump.json: the file: \"colour\" is not known");
  const std::string file = SetupFileText(MadeSetup());
  const std::size_t begin = file.find("    {\"name\":\"Y_NULL\"");
  const std::string fewer = file.substr(0, begin) + file.substr(file.find('\n', begin) + 1);
  EXPECT_EQ(Why(fewer), "pump.json: registers: there are 11 of them, not 12");
}

TEST_F(SetupFile, OtherEncodingsAndHugeFilesAreTold) {
  const std::string file = SetupFileText(MadeSetup());
  std::string wide = "\xFF\xFE";
  for (const char c : file) wide += std::string{c, '\0'};
  EXPECT_EQ(Why(wide), "pump.json: it is not UTF-8 text; a set-up is saved in this encoding");
  EXPECT_EQ(Refused("pump 3", "p\xE4mp"),
            "pump.json: it is not UTF-8 text; a set-up is saved in this encoding");
  EXPECT_EQ(Why("\xEF\xBB\xBF" + file), "taken") << "some editors put a mark before the text";
  std::string lines;
  for (const char c : file) lines += c == '\n' ? "\r\n" : std::string{c};
  EXPECT_EQ(Why(lines), "taken");
  EXPECT_EQ(Why(file + std::string(kLargestSetupFile, ' ')),
            "pump.json: it is too large for a set-up: more than 262144 bytes");
  EXPECT_EQ(Why(std::string(100000, '[')),
            "pump.json: its values are nested too deeply for a set-up");
  EXPECT_EQ(Refused("pump 3", std::string(300, 'x')),
            "pump.json: name: \"" + std::string(37, 'x') + "...\" is too long");
}

}  // namespace
}  // namespace kestrel::setup
