// Set-ups kept as files, one a name.
// SPDX-License-Identifier: MIT
#include "setup/setup_store.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "numeric/runtime_error.h"
#include "setup/made_setup.h"
#include "setup/setup_file.h"
#include "support/memory_files.h"

namespace kestrel::setup {
namespace {

class Store : public testing::Test {
 protected:
  Store() { BuildRegisterTable(); }
  ~Store() override { ResetRegisterTable(); }

  MemoryFiles files;
  SetupStore store{files, "/data/setups"};
};

TEST_F(Store, WhatIsSavedIsListedAndLoaded) {
  setup::Setup setup = MadeSetup();
  store.Save(setup);
  setup.name = "a pump";
  store.Save(setup);
  const auto entries = store.List();
  ASSERT_EQ(entries.size(), 2U);
  EXPECT_EQ(entries[0].name, "a pump");
  EXPECT_EQ(entries[1].setup, MadeSetup());
  EXPECT_TRUE(store.Has("pump 3"));
  EXPECT_EQ(*store.Load("a pump"), setup);
}

TEST_F(Store, TheNameOfTheFileIsTheNameOfTheSetup) {
  files.contents[store.FileOf("renamed")] = SetupFileText(MadeSetup());
  EXPECT_EQ(store.Load("renamed")->name, "renamed");
}

TEST_F(Store, DamagedAndForeignFilesStandInTheListWithTheirTrouble) {
  files.contents[store.FileOf("damaged")] = SetupFileText(MadeSetup()).substr(0, 500);
  files.contents["/data/setups/notes.txt"] = "no set-up";
  const auto entries = store.List();
  ASSERT_EQ(entries.size(), 1U);
  EXPECT_EQ(entries[0].name, "damaged");
  EXPECT_FALSE(entries[0].setup);
  EXPECT_THAT(entries[0].trouble, testing::HasSubstr("damaged.setup.json, line"));
}

TEST_F(Store, WhatIsDeletedIsGone) {
  store.Save(MadeSetup());
  store.Delete("pump 3");
  EXPECT_FALSE(store.Has("pump 3"));
  EXPECT_EQ(store.Load("pump 3").Why().Text(), "There is no set-up \"pump 3\" in /data/setups.");
}

TEST_F(Store, NamesThatNoFileCanHaveAreRefused) {
  for (const char* name : {"", "  ", "a/b", "..", ".hidden", "x ", "con", "a\nb", "p\xE4mp"}) {
    EXPECT_NE(store.ProblemOf(name), "") << name;
  }
  for (const char* name : {"pump 3", "p\u00FCmpe", "1.5 kW", "\u0645\u0636\u062E\u0629"}) {
    EXPECT_EQ(store.ProblemOf(name), "") << name;
  }
  setup::Setup setup = MadeSetup();
  setup.name = "../escaped";
  EXPECT_THROW(store.Save(setup), RuntimeError);
  EXPECT_TRUE(files.contents.empty());
}

TEST_F(Store, ADiskThatTakesNothingIsToldAndChangesNothing) {
  store.Save(MadeSetup());
  files.failure = "No space left on device";
  setup::Setup other = MadeSetup();
  other.registers.fill(1);
  EXPECT_THROW(store.Save(other), RuntimeError);
  EXPECT_THROW(store.Delete("pump 3"), RuntimeError);
  EXPECT_EQ(*store.Load("pump 3"), MadeSetup());
}

TEST_F(Store, WithoutAHomeThereIsNoPlace) {
  EXPECT_TRUE(UsualSetupFolder([](const char*) { return std::string(); }).empty());
  SetupStore none(files, {});
  EXPECT_TRUE(none.List().empty());
  EXPECT_FALSE(none.Has("pump"));
  EXPECT_NE(none.ProblemOf("pump"), "");
}

TEST_F(Store, SetupsAreKeptBesideTheArchive) {
  const auto folder = UsualSetupFolder([](const char* name) {
    return std::string(name) == "HOME" ? std::string("/home/me") : std::string();
  });
#ifndef _WIN32
  EXPECT_EQ(folder, "/home/me/.local/share/kestrel/setups");
#endif
}

}  // namespace
}  // namespace kestrel::setup
