// The places of files, and reading and listing them.
// SPDX-License-Identifier: MIT
// Places and reading; replacing is in system_files_replace_test.cpp.
#include "platform/system_files.h"

#include <gtest/gtest.h>
#include <sys/stat.h>

#include <optional>
#include <string>

#include "support/environment.h"
#include "support/other_user.h"
#include "support/temporary_folder.h"

namespace kestrel {
namespace {

namespace fs = std::filesystem;

constexpr std::size_t kNoLimit = 1U << 20U;

class SystemFilesTest : public testing::Test {
 protected:
  ~SystemFilesTest() override { fs::current_path(startFolder_); }

  TemporaryFolder folder_;
  SystemFiles files_;

 private:
  fs::path startFolder_ = fs::current_path();
};

TEST_F(SystemFilesTest, ProgramFolderHoldsTheProgramWhateverTheWorkingFolder) {
  const fs::path before = files_.ProgramFolder();
  EXPECT_TRUE(fs::exists(before / fs::read_symlink("/proc/self/exe").filename()));
  fs::current_path(folder_.path());
  EXPECT_EQ(files_.ProgramFolder(), before);
  EXPECT_NE(before, folder_.path());
}

TEST_F(SystemFilesTest, WorkingFolderFollowsTheProcess) {
  fs::current_path(folder_.path());
  EXPECT_EQ(files_.WorkingFolder(), folder_.path());
}

TEST_F(SystemFilesTest, WorkingFolderThatIsGoneIsNoError) {
  fs::create_directory(folder_.path() / "gone");
  fs::current_path(folder_.path() / "gone");
  fs::remove(folder_.path() / "gone");
  EXPECT_EQ(files_.WorkingFolder(), ".");
}

TEST_F(SystemFilesTest, DocumentsFolderIsTheOneTheUserChose) {
  Environment environment;
  fs::create_directories(folder_.path() / "papers");
  fs::create_directories(folder_.path() / "home" / "Documents");
  environment.Set("HOME", (folder_.path() / "home").string());
  environment.Set("XDG_DOCUMENTS_DIR", (folder_.path() / "papers").string());
  EXPECT_EQ(files_.DocumentsFolder(), folder_.path() / "papers");
  for (const char* chosen : {"gone", ""}) {
    environment.Set("XDG_DOCUMENTS_DIR", *chosen == '\0' ? "" : (folder_.path() / chosen).string());
    EXPECT_EQ(files_.DocumentsFolder(), folder_.path() / "home" / "Documents") << chosen;
  }
}

TEST_F(SystemFilesTest, DocumentsFolderIsInTheHomeFolderOrTheHomeFolderItself) {
  Environment environment;
  environment.Set("XDG_DOCUMENTS_DIR", std::nullopt);
  environment.Set("HOME", folder_.path().string());
  EXPECT_EQ(files_.DocumentsFolder(), folder_.path());
  folder_.Write("Documents", "no folder");
  EXPECT_EQ(files_.DocumentsFolder(), folder_.path());
  fs::remove(folder_.path() / "Documents");
  fs::create_directory(folder_.path() / "Documents");
  EXPECT_EQ(files_.DocumentsFolder(), folder_.path() / "Documents");
}

TEST_F(SystemFilesTest, WithoutAHomeFolderDocumentsAreInTheWorkingFolder) {
  Environment environment;
  environment.Set("XDG_DOCUMENTS_DIR", std::nullopt);
  fs::current_path(folder_.path());
  for (const auto& home : {std::optional<std::string>(), std::optional<std::string>("")}) {
    environment.Set("HOME", home);
    EXPECT_EQ(files_.DocumentsFolder(), folder_.path());
  }
}

TEST_F(SystemFilesTest, OnlyFoldersCanBeWrittenIn) {
  EXPECT_TRUE(files_.CanWriteIn(folder_.path()));
  EXPECT_FALSE(files_.CanWriteIn(folder_.path() / "missing"));
  EXPECT_FALSE(files_.CanWriteIn(fs::path()));
  const fs::path file = folder_.Write("program", "content");
  fs::permissions(file, fs::perms::all);
  EXPECT_FALSE(files_.CanWriteIn(file));
}

TEST_F(SystemFilesTest, AFolderThatTheUserMayNotWriteInIsTold) {
  fs::permissions(folder_.path(), fs::perms::all);
  for (const char* name : {"open", "readOnly", "closed"}) {
    fs::create_directory(folder_.path() / name);
  }
  fs::permissions(folder_.path() / "open", fs::perms::all);
  fs::permissions(folder_.path() / "readOnly", static_cast<fs::perms>(0555));
  fs::permissions(folder_.path() / "closed", static_cast<fs::perms>(0666));
  {
    const OtherUser user;
    EXPECT_TRUE(files_.CanWriteIn(folder_.path() / "open"));
    EXPECT_FALSE(files_.CanWriteIn(folder_.path() / "readOnly"));
    EXPECT_FALSE(files_.CanWriteIn(folder_.path() / "closed"));
  }
  fs::permissions(folder_.path() / "closed", fs::perms::all);
}

TEST_F(SystemFilesTest, ReadsAWholeFileByteForByte) {
  const std::string content("a\r\n\0\xFF=\n", 7);
  EXPECT_EQ(files_.Read(folder_.Write("binary", content), kNoLimit), content);
  EXPECT_EQ(files_.Read(folder_.Write("empty", ""), kNoLimit), "");
}

TEST_F(SystemFilesTest, ReadsAtMostTheLimit) {
  const fs::path file = folder_.Write("file", "0123456789");
  EXPECT_EQ(files_.Read(file, 0), "");
  EXPECT_EQ(files_.Read(file, 4), "0123");
  EXPECT_EQ(files_.Read(file, 10), "0123456789");
  EXPECT_EQ(files_.Read(file, 11), "0123456789");
}

TEST_F(SystemFilesTest, ReadsFilesLargerThanOneChunk) {
  std::string content;
  while (content.size() < 200000) content += std::to_string(content.size());
  const fs::path file = folder_.Write("large", content);
  EXPECT_EQ(files_.Read(file, kNoLimit), content);
  EXPECT_EQ(files_.Read(file, 131073), content.substr(0, 131073));
}

TEST_F(SystemFilesTest, ReadsThroughALink) {
  folder_.Write("file", "content");
  fs::create_symlink("file", folder_.path() / "link");
  EXPECT_EQ(files_.Read(folder_.path() / "link", kNoLimit), "content");
}

TEST_F(SystemFilesTest, WhatIsNoRegularFileReadsAsNothing) {
  folder_.Write("file", "content");
  ASSERT_EQ(mkfifo((folder_.path() / "pipe").c_str(), 0600), 0);
  fs::create_symlink("nowhere", folder_.path() / "dangling");
  for (const fs::path& path :
       {folder_.path() / "missing", folder_.path(), folder_.path() / "pipe",
        folder_.path() / "dangling", folder_.path() / "file" / "below", fs::path("/dev/zero"),
        fs::path(), folder_.path() / std::string(300, 'n')}) {
    EXPECT_EQ(files_.Read(path, kNoLimit), std::nullopt) << path;
  }
}

TEST_F(SystemFilesTest, FileThatMayNotBeReadReadsAsNothing) {
  const fs::path file = folder_.Write("secret", "content");
  fs::permissions(folder_.path(), fs::perms::all);
  fs::permissions(file, fs::perms::none);
  const OtherUser user;
  EXPECT_EQ(files_.Read(file, kNoLimit), std::nullopt);
}

TEST_F(SystemFilesTest, ReadThatFailsHalfWayReadsAsNothing) {
  // A regular file whose first page cannot be read.
  EXPECT_EQ(files_.Read("/proc/self/mem", kNoLimit), std::nullopt);
}

TEST_F(SystemFilesTest, ListsTheRegularFilesOfAFolder) {
  folder_.Write("one.csv", "");
  folder_.Write("two", "content");
  fs::create_directory(folder_.path() / "below");
  std::vector<std::string> names = files_.List(folder_.path());
  std::sort(names.begin(), names.end());
  EXPECT_EQ(names, (std::vector<std::string>{"one.csv", "two"}));
}

TEST_F(SystemFilesTest, AFolderThatCannotBeReadListsAsEmpty) {
  EXPECT_TRUE(files_.List(folder_.path() / "missing").empty());
  EXPECT_TRUE(files_.List(folder_.Write("file", "")).empty());
}

}  // namespace
}  // namespace kestrel
