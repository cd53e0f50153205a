// Replacing files whole: permissions, links, full disks.
// SPDX-License-Identifier: MIT
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <signal.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <unistd.h>

#include <atomic>
#include <iterator>
#include <string>
#include <thread>

#include "numeric/runtime_error.h"
#include "platform/system_files.h"
#include "support/other_user.h"
#include "support/temporary_folder.h"

namespace kestrel {
namespace {

namespace fs = std::filesystem;
using testing::ElementsAre;
using testing::UnorderedElementsAre;

mode_t ModeOf(const fs::path& file) {
  struct stat status {};
  stat(file.c_str(), &status);
  return status.st_mode & 07777U;
}

// Files larger than this cannot be written while it lives.
class FileSizeLimit {
 public:
  explicit FileSizeLimit(rlim_t bytes) {
    earlierHandler_ = signal(SIGXFSZ, SIG_IGN);
    getrlimit(RLIMIT_FSIZE, &earlier_);
    const rlimit limited{bytes, earlier_.rlim_max};
    setrlimit(RLIMIT_FSIZE, &limited);
  }
  ~FileSizeLimit() {
    setrlimit(RLIMIT_FSIZE, &earlier_);
    signal(SIGXFSZ, earlierHandler_);
  }
  FileSizeLimit(const FileSizeLimit&) = delete;
  FileSizeLimit& operator=(const FileSizeLimit&) = delete;

 private:
  rlimit earlier_{};
  sighandler_t earlierHandler_;
};

class ReplaceWhole : public testing::Test {
 protected:
  ~ReplaceWhole() override { fs::current_path(startFolder_); }

  std::string ErrorOf(const fs::path& file, const std::string& content = "new") {
    try {
      files_.ReplaceWhole(file, content);
    } catch (const RuntimeError& error) {
      return error.what();
    }
    return "no error";
  }
  [[nodiscard]] fs::path At(const std::string& name) const { return folder_.path() / name; }

  TemporaryFolder folder_;
  SystemFiles files_;

 private:
  fs::path startFolder_ = fs::current_path();
};

TEST_F(ReplaceWhole, MakesANewFile) {
  const std::string content("one\r\n\0two\n", 10);
  files_.ReplaceWhole(At("file"), content);
  EXPECT_EQ(folder_.Content("file"), content);
  EXPECT_THAT(folder_.Names(), ElementsAre("file"));
}

TEST_F(ReplaceWhole, NewFileHasTheUsersDefaultPermissions) {
  const mode_t earlier = umask(027);
  files_.ReplaceWhole(At("file"), "new");
  umask(earlier);
  EXPECT_EQ(ModeOf(At("file")), 0640U);
}

TEST_F(ReplaceWhole, TakesTheEarlierFilesPlaceAndPermissions) {
  folder_.Write("file", "a much longer earlier content");
  ASSERT_EQ(chmod(At("file").c_str(), 0604), 0);
  files_.ReplaceWhole(At("file"), "short");
  EXPECT_EQ(folder_.Content("file"), "short");
  EXPECT_EQ(ModeOf(At("file")), 0604U);
  files_.ReplaceWhole(At("file"), "");
  EXPECT_EQ(folder_.Content("file"), "");
  EXPECT_THAT(folder_.Names(), ElementsAre("file"));
}

TEST_F(ReplaceWhole, NameMayBeRelativeAndAsLongAsTheSystemAllows) {
  fs::current_path(folder_.path());
  files_.ReplaceWhole("CommPort.cfg", "relative");
  EXPECT_EQ(folder_.Content("CommPort.cfg"), "relative");
  const std::string longest(255, 'n');
  files_.ReplaceWhole(longest, "long");
  EXPECT_EQ(folder_.Content(longest), "long");
}

TEST_F(ReplaceWhole, LinkKeepsLeadingToTheFile) {
  folder_.Write("file", "earlier");
  fs::create_symlink("file", At("link"));
  files_.ReplaceWhole(At("link"), "new");
  EXPECT_TRUE(fs::is_symlink(At("link")));
  EXPECT_EQ(folder_.Content("file"), "new");
}

TEST_F(ReplaceWhole, LeftOverTemporaryFilesAreNoObstacle) {
  const std::string leftOver = ".kestrel-" + std::to_string(getpid()) + "-0.tmp";
  folder_.Write(leftOver, "left over");
  files_.ReplaceWhole(At("file"), "new");
  EXPECT_EQ(folder_.Content("file"), "new");
  EXPECT_EQ(folder_.Content(leftOver), "left over");
}

TEST_F(ReplaceWhole, ReaderSeesTheEarlierOrTheNewContentAndNothingBetween) {
  const std::string contents[] = {std::string(300000, 'a'), std::string(200000, 'b')};
  files_.ReplaceWhole(At("file"), contents[0]);
  std::atomic<bool> done{false};
  int mixed = 0;
  std::thread reader([&] {
    SystemFiles files;
    while (!done) {
      const auto seen = files.Read(At("file"), 1U << 20U);
      if (!seen || (*seen != contents[0] && *seen != contents[1])) ++mixed;
    }
  });
  for (int i = 0; i < 40; ++i) files_.ReplaceWhole(At("file"), contents[i % 2]);
  done = true;
  reader.join();
  EXPECT_EQ(mixed, 0);
}

TEST_F(ReplaceWhole, MissingFolderIsNamedInTheError) {
  const fs::path file = At("missing") / "file";
  EXPECT_EQ(ErrorOf(file), file.string() + ": No such file or directory");
  EXPECT_THAT(folder_.Names(), ElementsAre());
}

TEST_F(ReplaceWhole, FolderThatIsAFileIsNamedInTheError) {
  folder_.Write("file", "earlier");
  const fs::path below = At("file") / "below";
  EXPECT_EQ(ErrorOf(below), below.string() + ": Not a directory");
  EXPECT_EQ(folder_.Content("file"), "earlier");
}

TEST_F(ReplaceWhole, OnlyRegularFilesAreReplaced) {
  fs::create_directory(At("folder"));
  ASSERT_EQ(mkfifo(At("pipe").c_str(), 0600), 0);
  EXPECT_EQ(ErrorOf(At("folder")), At("folder").string() + ": Is a directory");
  EXPECT_EQ(ErrorOf(At("pipe")), At("pipe").string() + ": Invalid argument");
  EXPECT_EQ(ErrorOf("/dev/null"), "/dev/null: Invalid argument");
  EXPECT_TRUE(fs::is_character_file("/dev/null"));
  EXPECT_TRUE(fs::is_fifo(At("pipe")));
  EXPECT_THAT(folder_.Names(), UnorderedElementsAre("folder", "pipe"));
}

TEST_F(ReplaceWhole, NameThatIsTooLongIsAnError) {
  const fs::path file = At(std::string(256, 'n'));
  EXPECT_EQ(ErrorOf(file), file.string() + ": File name too long");
  EXPECT_THAT(folder_.Names(), ElementsAre());
}

TEST_F(ReplaceWhole, WriteErrorLeavesTheEarlierFileWhole) {
  folder_.Write("file", "earlier");
  std::string error;
  {
    const FileSizeLimit limit(4096);
    error = ErrorOf(At("file"), std::string(10000, 'n'));
  }
  EXPECT_EQ(error, At("file").string() + ": File too large");
  EXPECT_EQ(folder_.Content("file"), "earlier");
  EXPECT_THAT(folder_.Names(), ElementsAre("file"));
}

TEST_F(ReplaceWhole, WriteErrorOfANewFileLeavesNone) {
  std::string error;
  {
    const FileSizeLimit limit(4096);
    error = ErrorOf(At("file"), std::string(10000, 'n'));
  }
  EXPECT_EQ(error, At("file").string() + ": File too large");
  EXPECT_THAT(folder_.Names(), ElementsAre());
}

TEST_F(ReplaceWhole, FolderThatMayNotBeWrittenIsAnError) {
  folder_.Write("file", "earlier");
  ASSERT_EQ(chmod(At("file").c_str(), 0666), 0);
  ASSERT_EQ(chmod(folder_.path().c_str(), 0555), 0);
  std::string error;
  {
    const OtherUser user;
    error = ErrorOf(At("file"));
  }
  ASSERT_EQ(chmod(folder_.path().c_str(), 0755), 0);
  EXPECT_EQ(error, At("file").string() + ": Permission denied");
  EXPECT_EQ(folder_.Content("file"), "earlier");
  EXPECT_THAT(folder_.Names(), ElementsAre("file"));
}

TEST_F(ReplaceWhole, FileThatMayNotBeWrittenStays) {
  folder_.Write("file", "earlier");
  ASSERT_EQ(chmod(At("file").c_str(), 0444), 0);
  ASSERT_EQ(chmod(folder_.path().c_str(), 0777), 0);
  const OtherUser user;
  EXPECT_EQ(ErrorOf(At("file")), At("file").string() + ": Permission denied");
  EXPECT_EQ(folder_.Content("file"), "earlier");
  EXPECT_THAT(folder_.Names(), ElementsAre("file"));
}

TEST_F(ReplaceWhole, FailedRenameLeavesTheEarlierFileWhole) {
  if (geteuid() != 0) GTEST_SKIP() << "takes a file of another user";
  folder_.Write("file", "earlier");
  ASSERT_EQ(chmod(At("file").c_str(), 0666), 0);
  // In such a folder everybody may make files and only their owners may rename over them.
  ASSERT_EQ(chmod(folder_.path().c_str(), 01777), 0);
  const OtherUser user;
  EXPECT_EQ(ErrorOf(At("file")), At("file").string() + ": Operation not permitted");
  EXPECT_EQ(folder_.Content("file"), "earlier");
  EXPECT_THAT(folder_.Names(), ElementsAre("file"));
}

TEST_F(ReplaceWhole, NoDescriptorStaysOpen) {
  const auto count = [] {
    const fs::directory_iterator open("/proc/self/fd");
    return std::distance(begin(open), end(open));
  };
  const auto before = count();
  files_.ReplaceWhole(At("file"), "new");
  EXPECT_NE(ErrorOf(At("missing") / "file"), "no error");
  EXPECT_NE(ErrorOf(folder_.path()), "no error");
  {
    const FileSizeLimit limit(10);
    EXPECT_NE(ErrorOf(At("file"), std::string(20, 'n')), "no error");
  }
  static_cast<void>(files_.Read(At("file"), 100));
  static_cast<void>(files_.Read(folder_.path(), 100));
  EXPECT_EQ(count(), before);
}

TEST_F(ReplaceWhole, FoldersAreMadeAndFilesRemoved) {
  const TemporaryFolder home;
  const fs::path folder = home.path() / "kestrel" / "setups";
  files_.MakeFolder(folder);
  files_.MakeFolder(folder);
  files_.ReplaceWhole(folder / "pump", "content");
  EXPECT_THROW(files_.MakeFolder(folder / "pump"), RuntimeError) << "a file is in the way";
  files_.Remove(folder / "pump");
  EXPECT_FALSE(fs::exists(folder / "pump"));
  files_.Remove(folder / "pump");
  EXPECT_THROW(files_.Remove(home.path() / "kestrel"), RuntimeError) << "it holds another folder";
}

}  // namespace
}  // namespace kestrel
