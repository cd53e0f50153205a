// The register log's content and its places.
// SPDX-License-Identifier: MIT
#include "device/register_log.h"

#include <gtest/gtest.h>

#include "numeric/runtime_error.h"
#include "support/fixed_locale.h"
#include "support/memory_files.h"

namespace kestrel {
namespace {

class RegisterLog : public testing::Test {
 protected:
  MemoryFiles files;
  FixedLocale locale;
};

TEST_F(RegisterLog, HoldsItsNameTheTitleTheMomentAndTheList) {
  EXPECT_EQ(WriteRegisterLog(files, locale, "a\tb\r\n"), "/program/Registers_LOG.txt");
  EXPECT_EQ(files.contents["/program/Registers_LOG.txt"],
            "Registers_LOG.txt\r\nKestrel evaluation program\r\n3/14/2024  9:26:53 AM\r\n\r\n"
            "a\tb\r\n");
}

TEST_F(RegisterLog, ReplacesAnEarlierLog) {
  WriteRegisterLog(files, locale, "a longer list\r\n");
  WriteRegisterLog(files, locale, "b\r\n");
  EXPECT_EQ(files.contents["/program/Registers_LOG.txt"].find("longer"), std::string::npos);
}

TEST_F(RegisterLog, GoesToTheDocumentsWhereTheProgramFolderCannotBeWritten) {
  files.readOnly.insert("/program");
  EXPECT_EQ(WriteRegisterLog(files, locale, ""), "/documents/Registers_LOG.txt");
  EXPECT_EQ(files.contents.count("/documents/Registers_LOG.txt"), 1U);
}

TEST_F(RegisterLog, ALogThatCannotBeWrittenNamesFileAndReasonAndTheEarlierOneStays) {
  WriteRegisterLog(files, locale, "a\r\n");
  const std::string earlier = files.contents["/program/Registers_LOG.txt"];
  files.failure = "No space left on device";
  try {
    WriteRegisterLog(files, locale, "b\r\n");
    ADD_FAILURE() << "no error";
  } catch (const RuntimeError& error) {
    EXPECT_STREQ(error.what(), "/program/Registers_LOG.txt: No space left on device");
  }
  EXPECT_EQ(files.contents["/program/Registers_LOG.txt"], earlier);
}

}  // namespace
}  // namespace kestrel
