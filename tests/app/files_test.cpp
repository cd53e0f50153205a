// The folder of the user's files, in writable and read-only places.
// SPDX-License-Identifier: MIT
#include "seams/files.h"

#include <gtest/gtest.h>

#include "support/memory_files.h"

namespace kestrel {
namespace {

TEST(FolderOfUserFilesTest, IsTheProgramsUnlessItIsReadOnly) {
  MemoryFiles files;
  EXPECT_EQ(FolderOfUserFiles(files), "/program");
  files.readOnly.insert("/program");
  EXPECT_EQ(FolderOfUserFiles(files), "/documents");
}

}  // namespace
}  // namespace kestrel
