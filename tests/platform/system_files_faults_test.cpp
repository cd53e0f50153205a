// A fault at every call that reading and replacing a file make of the system.
// SPDX-License-Identifier: MIT
// A fault at every call that reading and replacing a file make of the system.

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/stat.h>

#include <cerrno>
#include <cstring>
#include <string>

#include "numeric/runtime_error.h"
#include "platform/system_files.h"
#include "support/killed_child.h"
#include "support/system_call_faults.h"
#include "support/temporary_folder.h"

namespace kestrel {
namespace {

namespace fs = std::filesystem;
using Kind = CallFault::Kind;
using testing::AnyOf;
using testing::ElementsAre;
using testing::IsEmpty;

constexpr int kErrors[] = {ENOSPC, EACCES, EIO};

class SystemFilesFaults : public testing::Test {
 protected:
  // Empty when the file was replaced.
  std::string ErrorOfReplacing(const std::string& content) {
    try {
      files_.ReplaceWhole(file_, content);
    } catch (const RuntimeError& error) {
      return error.what();
    }
    return {};
  }

  void BeginWith(bool existing) {
    fs::remove(file_);
    if (!existing) return;
    folder_.Write("file", "earlier");
    ASSERT_EQ(chmod(file_.c_str(), 0604), 0);
  }

  int CallsOfReplacing(bool existing) {
    BeginWith(existing);
    const SystemCallFaults none;
    files_.ReplaceWhole(file_, "new");
    return static_cast<int>(none.Calls().size());
  }

  void ExpectEarlier(bool existing) {
    if (existing) {
      EXPECT_EQ(folder_.Content("file"), "earlier");
      EXPECT_THAT(folder_.Names(), ElementsAre("file"));
    } else {
      EXPECT_THAT(folder_.Names(), IsEmpty());
    }
  }

  void ExpectNewAndKept(bool existing) {
    EXPECT_EQ(folder_.Content("file"), "new");
    EXPECT_THAT(folder_.Names(), ElementsAre("file"));
    struct stat status {};
    ASSERT_EQ(stat(file_.c_str(), &status), 0);
    EXPECT_TRUE(!existing || (status.st_mode & 0777U) == 0604U);
  }

  TemporaryFolder folder_;
  fs::path file_ = folder_.path() / "file";
  SystemFiles files_;
};

class ReplacingFaults : public SystemFilesFaults, public testing::WithParamInterface<bool> {};

TEST_P(ReplacingFaults, AnErrorAtAnyCallNamesFileAndReasonAndLeavesTheEarlierFile) {
  const int calls = CallsOfReplacing(GetParam());
  ASSERT_GE(calls, 7) << "the calls are counted";
  int refused = 0;
  for (const int error : kErrors) {
    for (int k = 1; k <= calls; ++k) {
      BeginWith(GetParam());
      std::string told;
      std::string call;
      {
        const SystemCallFaults faults(k, {Kind::Fails, error});
        told = ErrorOfReplacing("new");
        call = faults.Calls().at(static_cast<std::size_t>(k - 1));
      }
      SCOPED_TRACE(call + ", call " + std::to_string(k) + ": " + std::strerror(error));
      if (told.empty()) {
        ExpectNewAndKept(GetParam());
      } else {
        ++refused;
        EXPECT_EQ(told, file_.string() + ": " + std::strerror(error));
        ExpectEarlier(GetParam());
      }
      EXPECT_EQ(ErrorOfReplacing("new"), "") << "the next time";
      EXPECT_EQ(folder_.Content("file"), "new");
    }
  }
  // All but the synchronising of the folder: open, fsync and close.
  EXPECT_EQ(refused, 3 * (calls - 3));
}

TEST_P(ReplacingFaults, ASignalAtAnyCallDoesNoHarm) {
  const int calls = CallsOfReplacing(GetParam());
  for (int k = 1; k <= calls; ++k) {
    BeginWith(GetParam());
    const SystemCallFaults faults(k, {Kind::Interrupted, 0});
    const std::string told = ErrorOfReplacing("new");
    const std::string& call = faults.Calls().at(static_cast<std::size_t>(k - 1));
    SCOPED_TRACE(call);
    // Only these wait long enough for a signal to meet them.
    EXPECT_TRUE(told.empty() || (call != "write" && call != "fsync" && call != "open")) << told;
    if (told.empty()) {
      ExpectNewAndKept(GetParam());
    } else {
      ExpectEarlier(GetParam());
    }
  }
}

TEST_P(ReplacingFaults, AWriteThatTakesAPartGoesOnWithTheRest) {
  const int calls = CallsOfReplacing(GetParam());
  int met = 0;
  for (int k = 1; k <= calls; ++k) {
    BeginWith(GetParam());
    const SystemCallFaults faults(k, {Kind::TakesHalf, 0});
    EXPECT_EQ(ErrorOfReplacing("new"), "");
    ExpectNewAndKept(GetParam());
    met += faults.Met() ? 1 : 0;
  }
  EXPECT_EQ(met, 1);
}

TEST_P(ReplacingFaults, KilledAtAnyCallTheFileIsTheEarlierOrTheNewOne) {
  const int calls = CallsOfReplacing(GetParam());
  for (const Kind kind : {Kind::KilledBefore, Kind::KilledAfter}) {
    for (int k = 1; k <= calls; ++k) {
      SCOPED_TRACE(k);
      BeginWith(GetParam());
      EXPECT_TRUE(IsKilledDoing([&] {
        const SystemCallFaults faults(k, {kind, 0});
        files_.ReplaceWhole(file_, "new");
      }));
      const bool there = fs::exists(file_);
      EXPECT_TRUE(there || !GetParam());
      if (there) {
        EXPECT_THAT(folder_.Content("file"), AnyOf(GetParam() ? "earlier" : "new", "new"));
      }
      const auto names = folder_.Names();
      EXPECT_LE(names.size(), 2U);
      EXPECT_EQ(ErrorOfReplacing("saved again"), "");
      EXPECT_EQ(folder_.Content("file"), "saved again");
      for (const std::string& name : names) {
        if (name == "file") continue;
        EXPECT_TRUE(name.starts_with(".kestrel-")) << name;
        fs::remove(folder_.path() / name);
      }
      EXPECT_THAT(folder_.Names(), ElementsAre("file"));
    }
  }
}

INSTANTIATE_TEST_SUITE_P(Files, ReplacingFaults, testing::Bool(), [](const auto& tested) {
  return tested.param ? "EarlierFile" : "NewFile";
});

// The alternative is a write that is tried for ever.
TEST_F(SystemFilesFaults, AWriteThatTakesNothingIsAnError) {
  BeginWith(true);
  std::string told;
  {
    const SystemCallFaults count;
    files_.ReplaceWhole(folder_.path() / "other", "x");
  }
  fs::remove(folder_.path() / "other");
  for (int k = 1; told.empty(); ++k) {
    BeginWith(true);
    const SystemCallFaults faults(k, {Kind::TakesNothing, 0});
    told = ErrorOfReplacing("new");
    ASSERT_LT(k, 20);
  }
  EXPECT_EQ(told, file_.string() + ": " + std::strerror(ENOSPC));
  ExpectEarlier(true);
}

// Otherwise its permissions would be lost, or a file replaced that may not be written.
TEST_F(SystemFilesFaults, AnEarlierFileThatCannotBeLookedAtIsNotTakenForNone) {
  BeginWith(true);
  std::string told;
  {
    const SystemCallFaults faults(1, {Kind::Fails, EIO});
    told = ErrorOfReplacing("new");
    ASSERT_EQ(faults.Calls().front(), "stat");
  }
  EXPECT_EQ(told, file_.string() + ": " + std::strerror(EIO));
  ExpectEarlier(true);
}

TEST_F(SystemFilesFaults, AFileIsReadWholeOrNotAtAll) {
  const std::string content(200000, 'x');
  folder_.Write("file", content);
  int calls = 0;
  {
    const SystemCallFaults none;
    ASSERT_EQ(files_.Read(file_, content.size() + 1), content);
    calls = static_cast<int>(none.Calls().size());
  }
  ASSERT_GE(calls, 6);
  for (const int error : kErrors) {
    for (int k = 1; k <= calls; ++k) {
      std::optional<std::string> read;
      std::string call;
      {
        const SystemCallFaults faults(k, {Kind::Fails, error});
        read = files_.Read(file_, content.size() + 1);
        call = faults.Calls().at(static_cast<std::size_t>(k - 1));
      }
      if (call == "close") {
        EXPECT_EQ(read, content);
      } else {
        EXPECT_EQ(read, std::nullopt) << call;
      }
      EXPECT_EQ(files_.Read(file_, content.size() + 1), content) << "the next time";
    }
  }
}

TEST_F(SystemFilesFaults, ASignalDoesNotKeepAFileFromBeingRead) {
  folder_.Write("file", "content");
  for (int k = 1; k <= 4; ++k) {
    const SystemCallFaults faults(k, {Kind::Interrupted, 0});
    const auto read = files_.Read(file_, 100);
    const std::string& call = faults.Calls().at(static_cast<std::size_t>(k - 1));
    EXPECT_TRUE(read == "content" || call == "fstat") << call;
  }
}

}  // namespace
}  // namespace kestrel
