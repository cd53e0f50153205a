// Which texts can be file names, and why others cannot.
// SPDX-License-Identifier: MIT
#include "app/file_name.h"

#include <gtest/gtest.h>

#include <string>

namespace kestrel {
namespace {

TEST(FileName, OrdinaryNamesHaveNoProblem) {
  for (const char* name :
       {"DATALOG", "pump 7", "a", "2024-03-14 run_2", ".hidden", "a.b.c", "..", "COM", "COM0",
        "COM10", "LPTX", "CONSOLE", "NULL", "AUXILIARY", "50% (new) [x] {y} #1 & co; it's = ok!"}) {
    EXPECT_EQ(FileNameProblem(name), "") << name;
  }
}

TEST(FileName, NamesInAnyScriptAreWelcome) {
  for (const char* name : {"Prüfstand", "насос", "泵", "αντλία", "مضخة", "ポンプ", "🙂"}) {
    EXPECT_EQ(FileNameProblem(name), "") << name;
  }
}

TEST(FileName, CharactersThatASystemForbidsAreNamed) {
  for (const char c : std::string("/\\:*?\"<>|")) {
    const std::string problem = std::string("the character ") + c + " cannot stand in a file name";
    EXPECT_EQ(FileNameProblem(std::string("pump") + c + "7"), problem);
    EXPECT_EQ(FileNameProblem(std::string(1, c)), problem);
  }
  EXPECT_EQ(FileNameProblem("../../etc"), "the character / cannot stand in a file name");
}

TEST(FileName, ControlCharactersAreRefused) {
  for (const char c : {'\0', '\t', '\n', '\r', '\x1B', '\x1F'}) {
    EXPECT_EQ(FileNameProblem(std::string("a") + c + "b"),
              "a control character cannot stand in a file name")
        << static_cast<int>(c);
  }
}

TEST(FileName, ReservedNamesAreRefusedInAnyCaseAndWithAnyExtension) {
  for (const char* name : {"CON", "con", "Prn", "AUX", "nul", "COM1", "com9", "LPT1", "lpt9",
                           "NUL.txt", "con.a.b", "com3."}) {
    EXPECT_EQ(FileNameProblem(name), "this name is reserved by the system") << name;
  }
}

TEST(FileName, LengthCountsInBytes) {
  EXPECT_EQ(FileNameProblem(std::string(240, 'n')), "");
  EXPECT_EQ(FileNameProblem(std::string(241, 'n')), "a name may have 240 bytes, this one has 241");
  std::string umlauts;
  for (int i = 0; i < 120; ++i) umlauts += "ü";
  EXPECT_EQ(FileNameProblem(umlauts), "");
  EXPECT_EQ(FileNameProblem(umlauts + "ü"), "a name may have 240 bytes, this one has 242");
}

}  // namespace
}  // namespace kestrel
