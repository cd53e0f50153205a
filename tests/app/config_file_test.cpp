// CommPort.cfg: read line by line, wrong lines named, written in order.
// SPDX-License-Identifier: MIT
#include "app/config_file.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "app/program_state.h"
#include "support/given.h"
#include "support/memory_files.h"
#include "support/recording_messages.h"
#include "support/seeds.h"

namespace kestrel {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

class ConfigFile : public testing::Test {
 protected:
  ConfigFile() {
    ResetProgramState();
    Given(InterfaceType) = 100;
    Given(PortAddress) = 200;
    Given(ProductNumber) = 300;
  }
  ~ConfigFile() override { ResetProgramState(); }

  bool Read(const std::string& content) {
    Stored() = content;
    return ReadConfigFile(files_, messages_);
  }
  std::string& Stored() { return files_.contents[files_.WorkingFolder() / "CommPort.cfg"]; }
  [[nodiscard]] static std::vector<int> Settings() {
    return {InterfaceType, PortAddress, ProductNumber};
  }
  static std::string Complaint(const std::string& line, const std::string& reason) {
    return "Error reading CommPort.cfg\nLine " + line + "\n" + reason +
           ". The value must be a whole number from -32768 to 32767; this line was ignored.";
  }

  MemoryFiles files_;
  RecordingMessages messages_;
};

TEST_F(ConfigFile, MissingFileChangesNothing) {
  EXPECT_FALSE(ReadConfigFile(files_, messages_));
  EXPECT_THAT(Settings(), ElementsAre(100, 200, 300));
  EXPECT_THAT(messages_.Texts(), IsEmpty());
}

TEST_F(ConfigFile, ThreeSettingsAreRead) {
  EXPECT_TRUE(Read("Interface = 1\nPort Address = 888\nProductNumber = 31407\n"));
  EXPECT_THAT(Settings(), ElementsAre(1, 888, 31407));
  EXPECT_THAT(messages_.Texts(), IsEmpty());
}

TEST_F(ConfigFile, LineEndsMayBeOfEitherKindAndTheLastMayBeMissing) {
  EXPECT_TRUE(Read("Interface = 2\r\nPort Address = 632\r\nProductNumber = 1"));
  EXPECT_THAT(Settings(), ElementsAre(2, 632, 1));
}

TEST_F(ConfigFile, OrderAndEmptyLinesDoNotMatter) {
  EXPECT_TRUE(Read("\n\nProductNumber = 7\n\nInterface = 7\n"));
  EXPECT_THAT(Settings(), ElementsAre(7, 200, 7));
}

TEST_F(ConfigFile, ByteOrderMarkIsSkipped) {
  EXPECT_TRUE(Read("\xEF\xBB\xBFInterface = 1\n"));
  EXPECT_EQ(InterfaceType, 1);
}

TEST_F(ConfigFile, KeyGivenTwiceTakesItsLastValue) {
  EXPECT_TRUE(Read("Interface = 1\nInterface = 2\n"));
  EXPECT_EQ(InterfaceType, 2);
}

TEST_F(ConfigFile, OtherKeysAreIgnored) {
  const char* lines[] = {"interface = 2",  "INTERFACE = 2",     "Interfaces = 2",
                         " Interface = 2", "Interface  = 2",    "Interface=2",
                         "Colour = 2",     "Port  Address = 2", "Product Number = 2"};
  for (const char* line : lines) {
    EXPECT_TRUE(Read(std::string(line) + "\n")) << line;
    EXPECT_THAT(Settings(), ElementsAre(100, 200, 300)) << line;
  }
  EXPECT_THAT(messages_.Texts(), IsEmpty());
}

TEST_F(ConfigFile, LinesWithoutEqualsAreSkipped) {
  EXPECT_TRUE(Read("Interface\n= 1\n=\nInterface = 2\n[Port Address]\n"));
  EXPECT_THAT(Settings(), ElementsAre(2, 200, 300));
  EXPECT_THAT(messages_.Texts(), IsEmpty());
}

TEST_F(ConfigFile, NumbersMayBeWrittenInOtherWays) {
  struct Row {
    const char* text;
    int expected;
  };
  const Row rows[] = {{"-32768", -32768}, {"32767", 32767}, {"  2  ", 2}, {"2.5", 2},
                      {"3.5", 4},         {"1e2", 100},     {"+7", 7}};
  for (const Row& row : rows) {
    EXPECT_TRUE(Read(std::string("Port Address = ") + row.text + "\n"));
    EXPECT_EQ(PortAddress, row.expected) << row.text;
  }
  EXPECT_THAT(messages_.Texts(), IsEmpty());
}

TEST_F(ConfigFile, ValueStartsAfterOneCharacterBehindTheEquals) {
  EXPECT_TRUE(Read("Interface =12\n"));
  EXPECT_EQ(InterfaceType, 2);
}

TEST_F(ConfigFile, ValueThatIsNoNumberKeepsTheSettingAndIsNamed) {
  EXPECT_TRUE(Read("Port Address = 888\nInterface = two\nProductNumber = 5\n"));
  EXPECT_THAT(Settings(), ElementsAre(100, 888, 5));
  EXPECT_THAT(messages_.Texts(), ElementsAre(Complaint("2: Interface = two", "Type mismatch")));
  EXPECT_THAT(messages_.Titles(), ElementsAre(""));
}

TEST_F(ConfigFile, NumberThatIsTooLargeKeepsTheSettingAndIsNamed) {
  EXPECT_TRUE(Read("Port Address = 32768\r\n"));
  EXPECT_EQ(PortAddress, 200);
  EXPECT_THAT(messages_.Texts(), ElementsAre(Complaint("1: Port Address = 32768", "Overflow")));
}

TEST_F(ConfigFile, EmptyAndHexadecimalValuesAreNoNumbers) {
  for (const char* line : {"Interface =", "Interface = ", "Interface = 0x378", "Interface = &H378",
                           "Interface = 1 2", "Interface = inf", "Interface = nan"}) {
    messages_.Clear();
    EXPECT_TRUE(Read(std::string(line) + "\n"));
    EXPECT_EQ(InterfaceType, 100) << line;
    EXPECT_THAT(messages_.Texts(),
                ElementsAre(Complaint("1: " + std::string(line), "Type mismatch")));
  }
}

TEST_F(ConfigFile, OneMessageForTheWholeFile) {
  EXPECT_TRUE(Read("Interface = a\nPort Address = b\nProductNumber = 99999\n"));
  EXPECT_THAT(messages_.Texts(), ElementsAre(Complaint("1: Interface = a", "Type mismatch")));
}

TEST_F(ConfigFile, MessageShowsPrintableCharactersOnlyAndNotTooMany) {
  EXPECT_TRUE(Read(std::string("Interface = \x01\xFF\0\t", 16) + std::string(100, 'x') + "\n"));
  EXPECT_THAT(messages_.Texts(),
              ElementsAre(Complaint("1: Interface = ????" + std::string(44, 'x') + "...",
                                    "Type mismatch")));
}

TEST_F(ConfigFile, BinaryFileChangesNothing) {
  std::string content;
  for (int i = 0; i < 4096; ++i) content += static_cast<char>(i * 37 % 256);
  EXPECT_TRUE(Read(content));
  EXPECT_THAT(Settings(), ElementsAre(100, 200, 300));
}

TEST_F(ConfigFile, EmptyFileChangesNothing) {
  EXPECT_TRUE(Read(""));
  EXPECT_THAT(Settings(), ElementsAre(100, 200, 300));
}

TEST_F(ConfigFile, OnlyTheStartOfAHugeFileIsRead) {
  EXPECT_TRUE(Read("Interface = 1\n" + std::string(70000, '\n') + "Interface = 2\n"));
  EXPECT_EQ(InterfaceType, 1);
  EXPECT_TRUE(Read(std::string(3000000, 'x')));
  EXPECT_THAT(messages_.Texts(), IsEmpty());
}

TEST_F(ConfigFile, WritesThreeLinesInTheirOrder) {
  Given(InterfaceType) = 2;
  Given(PortAddress) = -1;
  Given(ProductNumber) = 31407;
  Stored() = "earlier content, longer than the new one will be ......";
  WriteConfigFile(files_);
  EXPECT_EQ(Stored(), "Interface = 2\nPort Address = -1\nProductNumber = 31407\n");
  EXPECT_EQ(files_.contents.size(), 1U);
}

TEST_F(ConfigFile, WhatIsWrittenReadsBack) {
  Given(InterfaceType) = 1;
  Given(PortAddress) = 888;
  Given(ProductNumber) = -32768;
  WriteConfigFile(files_);
  Given(InterfaceType) = Given(PortAddress) = Given(ProductNumber) = 0;
  EXPECT_TRUE(ReadConfigFile(files_, messages_));
  EXPECT_THAT(Settings(), ElementsAre(1, 888, -32768));
}

TEST_F(ConfigFile, FileThatCannotBeWrittenIsNotReported) {
  files_.failure = "No space left on device";
  EXPECT_NO_THROW(WriteConfigFile(files_));
  EXPECT_THAT(files_.contents, IsEmpty());
  EXPECT_THAT(Settings(), ElementsAre(100, 200, 300));
}

// Whole numbers of any size, letters and nothing, in any order: each setting has its last good
// value and the first bad line is named.
TEST_F(ConfigFile, RandomLinesAreTakenOrNamed) {
  const std::vector<std::string> keys{"Interface", "Port Address", "ProductNumber"};
  const std::vector<std::string> texts{"", "x", "12 mm", "1,5", "0x10", "--1", "nan"};
  WithSeeds(200, [&](Random& random) {
    messages_.Clear();
    std::vector<int> expected = Settings();
    std::string content;
    int firstBad = 0;
    for (int line = 1; line <= 8; ++line) {
      const auto key = static_cast<std::size_t>(random.Below(3));
      const int value = random.Between(-40000, 40000);
      const bool isNumber = !random.OneIn(4);
      const bool fits = isNumber && value >= -32768 && value <= 32767;
      content += keys[key] + " = " + (isNumber ? std::to_string(value) : random.Of(texts)) +
                 (random.OneIn(2) ? "\n" : "\r\n");
      if (fits) expected[key] = value;
      if (!fits && firstBad == 0) firstBad = line;
    }
    EXPECT_TRUE(Read(content));
    EXPECT_EQ(Settings(), expected) << content;
    ASSERT_EQ(messages_.Texts().size(), firstBad == 0 ? 0U : 1U);
    if (firstBad == 0) return;
    const std::string named = "\nLine " + std::to_string(firstBad) + ": ";
    EXPECT_NE(messages_.Texts()[0].find(named), std::string::npos) << messages_.Texts()[0];
  });
}

TEST_F(ConfigFile, AnySettingsReadBack) {
  WithSeeds(100, [this](Random& random) {
    Given(InterfaceType) = static_cast<std::int16_t>(random.Word());
    Given(PortAddress) = static_cast<std::int16_t>(random.Word());
    Given(ProductNumber) = static_cast<std::int16_t>(random.Word());
    const std::vector<int> written = Settings();
    WriteConfigFile(files_);
    ResetProgramState();
    EXPECT_TRUE(ReadConfigFile(files_, messages_));
    EXPECT_EQ(Settings(), written);
    EXPECT_THAT(messages_.Texts(), IsEmpty());
  });
}

}  // namespace
}  // namespace kestrel
