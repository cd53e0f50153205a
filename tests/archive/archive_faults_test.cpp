// What was announced as kept survives faults of every system call, and kills at any moment.
// SPDX-License-Identifier: MIT
#include <fcntl.h>
#include <sys/wait.h>
#include <unistd.h>

#include <csignal>
#include <cstdlib>
#include <set>

#include "archive/operations.h"
#include "archive/place.h"
#include "support/sqlite_call_faults.h"
#include "support/temporary_database.h"

namespace kestrel::archive {
namespace {

using database::DatabaseError;

// The numbers of the records that are there, each of them whole.
std::set<int> WholeRecords(const std::string& file) {
  Archive archive = Open({file});
  EXPECT_TRUE(archive.Damage().empty());
  std::set<int> numbers;
  for (const std::int64_t id : archive.Find({})) {
    const auto kept = archive.Get(id);
    const int number = std::stoi(kept->remarks.note);
    EXPECT_EQ(static_cast<const NewRecord&>(*kept), Numbered(number));
    EXPECT_TRUE(numbers.insert(number).second) << "kept twice: " << number;
  }
  return numbers;
}

// In memory where that can be: forcing to a disk is what takes the time.
class DiskFaults : public testing::TestWithParam<Disk> {
 protected:
  DiskFaults() {
    if (std::filesystem::exists("/dev/shm")) setenv("TMPDIR", "/dev/shm", 1);
  }
  ~DiskFaults() override { unsetenv("TMPDIR"); }
};

TEST_P(DiskFaults, WhatWasKeptBeforeIsThereAndTheRestCanBeKeptAgain) {
  constexpr int kRecords = 3;
  std::set<std::string> met;
  for (int number = 1;; ++number) {
    const TemporaryFile file;
    std::set<int> kept;
    bool isMet = false;
    {
      const SqliteCallFaults faults(number, GetParam().error, GetParam().count);
      for (int record = 0; record < kRecords; ++record) {
        try {
          Archive archive = Open({file.Name()});
          archive.Keep(Numbered(record));
          kept.insert(record);
        } catch (const DatabaseError& error) {
          EXPECT_STRNE(error.what(), "");
        }
      }
      isMet = faults.Met();
      met.insert(faults.Name());
    }
    const std::set<int> there = WholeRecords(file.Name());
    EXPECT_TRUE(std::ranges::includes(there, kept)) << "call " << number;
    Archive archive = Open({file.Name()});
    for (int record = 0; record < kRecords; ++record) archive.Keep(Numbered(record));
    EXPECT_EQ(archive.Count(), kRecords);
    if (!isMet) break;
  }
  for (const char* call : {"open", "pwrite64", "pread64", "fdatasync"})
    EXPECT_TRUE(met.contains(call)) << call;
}

INSTANTIATE_TEST_SUITE_P(Each, DiskFaults, testing::ValuesIn(kDisks),
                         [](const auto& fault) { return fault.param.name; });

// Keeps records from a number on, and tells each through the pipe when it is announced as kept.
[[noreturn]] void KeepForEver(const std::string& file, int pipe, int from) {
  Archive archive = Open({file});
  for (int number = from;; ++number) {
    archive.Keep(Numbered(number));
    if (write(pipe, &number, sizeof number) != sizeof number) _exit(1);
  }
}

// More of them with KESTREL_KILLS=3000.
TEST(Kills, WhatWasAnnouncedAsKeptIsThereAfterAKillAtAnyMoment) {
  const char* chosen = std::getenv("KESTREL_KILLS");
  const int kills = chosen == nullptr ? 25 : std::atoi(chosen);
  ASSERT_GT(kills, 0);
  const TemporaryFile file;
  RandomRecords random(7);
  std::set<int> announced;
  int next = 0;
  for (int kill = 0; kill < kills; ++kill) {
    int ends[2] = {};
    ASSERT_EQ(pipe2(ends, O_CLOEXEC), 0);
    const pid_t child = fork();
    ASSERT_GE(child, 0);
    if (child == 0) KeepForEver(file.Name(), ends[1], next);
    close(ends[1]);
    usleep(static_cast<useconds_t>(random.Number(0, 30'000)));
    ::kill(child, SIGKILL);
    int status = 0;
    ASSERT_EQ(waitpid(child, &status, 0), child);
    EXPECT_TRUE(WIFSIGNALED(status)) << "the child ended by itself";
    for (int number = 0; read(ends[0], &number, sizeof number) == sizeof number;) {
      announced.insert(number);
    }
    close(ends[0]);
    const std::set<int> there = WholeRecords(file.Name());
    ASSERT_TRUE(std::ranges::includes(there, announced)) << "kill " << kill;
    if (!there.empty()) next = *there.rbegin() + 1;
    if (there.size() > 150) {
      std::filesystem::remove(file.Name());
      announced.clear();
    }
  }
}

}  // namespace
}  // namespace kestrel::archive
