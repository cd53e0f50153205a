// The next file of a series, and the files in its way.
// SPDX-License-Identifier: MIT
#include "logging/log_files.h"

#include <gtest/gtest.h>

#include "logging/data_log.h"
#include "logging/reset_logging.h"
#include "support/fixed_locale.h"
#include "support/given.h"
#include "support/memory_files.h"

namespace kestrel {
namespace {

class LogFiles : public testing::Test {
 protected:
  LogFiles() { ResetLogging(); }
  ~LogFiles() override { ResetLogging(); }

  MemoryFiles files;
  FixedLocale locale;
};

TEST_F(LogFiles, TheNextFileHasNameNumberAndFolder) {
  EXPECT_EQ(NextLogFile(files, locale), "/program/Datalog_1.csv");
  Given(DataLogName) = "pump";
  Given(DataLogIndex) = 12;
  files.readOnly.insert("/program");
  EXPECT_EQ(NextLogFile(files, locale), "/documents/pump_12.csv");
}

TEST_F(LogFiles, FilesOfTheNextNumberAndHigherAreInTheWay) {
  EXPECT_EQ(WarningOfFilesInTheWay(files, locale), "");
  for (const char* name :
       {"Datalog_3.csv", "Datalog_4.csv", "Datalog_11.csv", "Datalog_12.txt", "Datalog_013.csv",
        "Datalog_x.csv", "Datalog_.csv", "pump_5.csv", "Datalog_5.csv.old"}) {
    files.contents[std::filesystem::path("/program") / name] = "earlier";
  }
  Given(DataLogIndex) = 4;
  EXPECT_EQ(LogFilesInTheWay(files, locale), 2);
  EXPECT_EQ(WarningOfFilesInTheWay(files, locale),
            "Earlier files with this or a higher number, which new ones will replace: 2.");
  Given(DataLogName) = "pump";
  EXPECT_EQ(LogFilesInTheWay(files, locale), 1);
}

}  // namespace
}  // namespace kestrel
