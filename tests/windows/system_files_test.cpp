// Files written, replaced and read with the calls of Windows.
// SPDX-License-Identifier: MIT
#include "platform/system_files.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <fstream>

#include "numeric/runtime_error.h"

namespace kestrel {
namespace {

namespace fs = std::filesystem;

constexpr std::size_t kNoLimit = 1U << 20U;

class SystemFilesTest : public testing::Test {
 protected:
  SystemFilesTest() {
    fs::remove_all(folder_);
    fs::create_directories(folder_);
  }
  ~SystemFilesTest() override { fs::remove_all(folder_); }

  const fs::path folder_ = fs::temp_directory_path() / "kestrel test";
  SystemFiles files_;
};

TEST_F(SystemFilesTest, AFileIsWrittenReplacedAndRead) {
  const fs::path file = folder_ / "Datalog_1.csv";
  files_.ReplaceWhole(file, "first\r\n");
  EXPECT_EQ(files_.Read(file, kNoLimit), "first\r\n");
  const std::string large(200000, 'x');
  files_.ReplaceWhole(file, large);
  EXPECT_EQ(files_.Read(file, kNoLimit), large);
  EXPECT_EQ(files_.Read(file, 70000), large.substr(0, 70000));
  EXPECT_EQ(files_.List(folder_), std::vector<std::string>{"Datalog_1.csv"});
}

TEST_F(SystemFilesTest, AFileThatCannotBeWrittenIsNamedAndTheEarlierOneStays) {
  const fs::path file = folder_ / "none" / "Datalog_1.csv";
  try {
    files_.ReplaceWhole(file, "content");
    FAIL() << "nothing was thrown";
  } catch (const RuntimeError& error) {
    EXPECT_EQ(std::string(error.what()).find(file.string() + ": "), 0U) << error.what();
  }
  const fs::path open = folder_ / "open.csv";
  files_.ReplaceWhole(open, "earlier");
  fs::create_directory(folder_ / "below");
  EXPECT_THROW(files_.ReplaceWhole(folder_ / "below", "content"), RuntimeError);
  EXPECT_EQ(files_.Read(open, kNoLimit), "earlier");
  EXPECT_EQ(files_.List(folder_), std::vector<std::string>{"open.csv"})
      << "something was left over";
}

TEST_F(SystemFilesTest, WhatIsNoFileReadsAsNothing) {
  EXPECT_EQ(files_.Read(folder_, kNoLimit), std::nullopt);
  EXPECT_EQ(files_.Read(folder_ / "missing", kNoLimit), std::nullopt);
  EXPECT_EQ(files_.Read("NUL", kNoLimit), std::nullopt);
  EXPECT_TRUE(files_.List(folder_ / "missing").empty());
}

TEST_F(SystemFilesTest, KnowsWhereItMayWrite) {
  EXPECT_TRUE(files_.CanWriteIn(folder_));
  EXPECT_FALSE(files_.CanWriteIn(folder_ / "missing"));
  EXPECT_TRUE(files_.List(folder_).empty());
  EXPECT_TRUE(fs::is_directory(files_.DocumentsFolder()));
  EXPECT_TRUE(fs::exists(files_.ProgramFolder() / "test_windows.exe"));
}

}  // namespace
}  // namespace kestrel
